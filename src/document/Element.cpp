// Building, reading and freeing elements, and the dispatch to the codecs.
#include "document/Element.h"

#include "api/AirSync.h"
#include "document/Utilities.h"
#include "document/Validate.h"
#include "document/wbxml.h"
#include "document/xml.h"
#include "http/Communications.h"
#include "support/Assert.h"
#include "support/Log.h"
#include "support/Memory.h"

namespace AIRSYNC_STACK {

namespace {

void FreeIfPresent(void* block) {
  if (block) AdapterFree(block);
}

void LogChild(const sml_element* pChild) {
  const AS_LOG_MESSAGE_SOURCE_T source = AS_LOG_SOURCE_ELEMENT;
  const AS_LOG_LEVEL_T level = AS_LOG_LEVEL_INFO;
  if (!Log::Writes(source, level)) return;
  const char* const tag = pChild->pTag ? pChild->pTag : "";
  Log::write(source, level, "Element Tag: ", tag);
  if (!pChild->pValue) {
    Log::write(source, level, "Element Value: NULL");
  } else if (SameText(tag, "DisplayName")) {
    // Names of folders and attachments may be in any script: bytes show what came.
    Log::write(source, level, "Element Value: ", reinterpret_cast<const unsigned char*>(pChild->pValue),
               SmlStrlen(pChild->pValue));
  } else {
    Log::write(source, level, "Element Value: ", pChild->pValue);
  }
}

void SerializeDocument(const sml_element* pRoot, ENCODINGTYPE encoding, ByteChannel sink,
                       Communications& comms) {
  if (encoding == ENCODING_WBXML) {
    WBXMLSerializeSmlDocument(pRoot, sink, comms);
  } else if (encoding == ENCODING_XML) {
    XMLSerializeSmlDocument(pRoot, sink, comms);
  } else {
    assert(0);
  }
}

}  // namespace

sml_element* SE_New(const char* tag, const char* value) {
  sml_element* const pSmlElement = static_cast<sml_element*>(AdapterMalloc(sizeof(sml_element)));
  *pSmlElement = sml_element();
  pSmlElement->pTag = AdapterStrdup(tag);
  SE_SetValue(pSmlElement, value);
  return pSmlElement;
}

sml_element* SE_NewWithAttribute(const char* tag, const char* attributeName, const char* attributeValue,
                                 const char* value) {
  sml_element* const pSmlElement = SE_New(tag, value);
  SE_AddAttribute(pSmlElement, attributeName, attributeValue);
  return pSmlElement;
}

void SE_Destroy(sml_element* pSmlElement) {
  if (!pSmlElement) return;
  while (pSmlElement->NumberOfChildren) {
    SE_Destroy(pSmlElement->pChildren[--pSmlElement->NumberOfChildren]);
  }
  FreeIfPresent(pSmlElement->pChildren);
  while (pSmlElement->NumberOfAttributes) {
    --pSmlElement->NumberOfAttributes;
    FreeIfPresent(pSmlElement->Attributes[pSmlElement->NumberOfAttributes].name);
    FreeIfPresent(pSmlElement->Attributes[pSmlElement->NumberOfAttributes].value);
  }
  FreeIfPresent(pSmlElement->pTag);
  FreeIfPresent(pSmlElement->pValue);
  AdapterFree(pSmlElement);
}

void SE_AddAttribute(sml_element* pSmlElement, const char* name, const char* value) {
  assert(pSmlElement->NumberOfAttributes < 1);
  pSmlElement->Attributes[pSmlElement->NumberOfAttributes].name = AdapterStrdup(name);
  pSmlElement->Attributes[pSmlElement->NumberOfAttributes].value = AdapterStrdup(value);
  ++pSmlElement->NumberOfAttributes;
  if (SameText(name, "xmlns")) pSmlElement->CodePage = LookupCodePage(value);
}

void SE_AddChild(sml_element* pParent, sml_element* pChild) {
  assert(pParent);
  if (!pChild) return;
  LogChild(pChild);
  assert(!pChild->pParent);

  const UINT32 count = pParent->NumberOfChildren;
  if (count == UINT16_MAX) AirSync::getInstance()->AbortSync(AS_RESULT_MALFORMED_DOCUMENT);
  const UINT32 slot = sizeof(void*);
  void* const children = AdapterRealloc(pParent->pChildren, (count + 1) * slot, count * slot);
  if (!children) AirSync::getInstance()->AbortSync(AS_RESULT_OUT_OF_MEMORY);
  pParent->pChildren = static_cast<sml_element**>(children);
  pParent->pChildren[count] = pChild;
  ++pParent->NumberOfChildren;
  pChild->pParent = pParent;
  // Deliberate: a child lives in its parent's page, whatever page it was made in. Its own children keep
  // theirs, so a part that was built under "xmlns" keeps its page once its head hangs here.
  pChild->CodePage = pParent->CodePage;
}

UINT16 SE_GetNumberOfChildren(const sml_element* pSmlElement) { return pSmlElement->NumberOfChildren; }

sml_element* SE_GetNthChild(const sml_element* pSmlElement, UINT16 ChildIndex) {
  assert(ChildIndex < pSmlElement->NumberOfChildren);
  return pSmlElement->pChildren[ChildIndex];
}

UINT8 SE_GetNumberOfAttributes(const sml_element* pSmlElement) { return pSmlElement->NumberOfAttributes; }

char* SE_GetNthAttributeName(const sml_element* pSmlElement, UINT16 index) {
  return pSmlElement->Attributes[index].name;
}

char* SE_GetNthAttributeValue(const sml_element* pSmlElement, UINT16 index) {
  return pSmlElement->Attributes[index].value;
}

char* SE_GetValue(const sml_element* pSmlElement) { return pSmlElement->pValue; }

UINT16 SE_GetValueLength(const sml_element* pSmlElement) { return pSmlElement->ValueLength; }

void SE_SetValue(sml_element* pSmlElement, const char* value) {
  assert(!pSmlElement->pValue);
  assert(!pSmlElement->ValueLength);
  if (!value) return;
  const UINT32 length = SmlStrlen(value);
  pSmlElement->pValue = AdapterStrndup(value, length);
  pSmlElement->ValueLength = static_cast<UINT16>(length);
}

char* SE_GetTag(const sml_element* pSmlElement) { return pSmlElement->pTag; }

UINT8 SE_GetCodePage(const sml_element* pSmlElement) { return pSmlElement->CodePage; }

sml_element* SE_GetParent(const sml_element* pSmlElement) { return pSmlElement->pParent; }

bool SE_BinaryContents(const sml_element* pSmlElement) { return pSmlElement->BinaryFlag; }

void SE_Serialize(const sml_element* pRoot, ENCODINGTYPE encoding, ByteChannel sink, Communications& comms) {
  // The verdict is not acted upon: a request goes out as it was built.
  ValidateSyncML(pRoot);
  SerializeDocument(pRoot, encoding, sink, comms);
}

UINT16 SE_HowLongIsIt(const sml_element* pRoot, ENCODINGTYPE encoding, ByteChannel counter,
                      Communications& comms) {
  comms.ResetOutCount();
  SerializeDocument(pRoot, encoding, counter, comms);
  return static_cast<UINT16>(comms.OutCount());
}

sml_element* SE_Deserialize(ENCODINGTYPE encoding, ByteChannel source, Communications& comms) {
  if (encoding == ENCODING_WBXML) return WBXMLParseSmlDocument(source, comms);
  if (encoding != ENCODING_XML) assert(0);
  return nullptr;
}

}  // namespace AIRSYNC_STACK
