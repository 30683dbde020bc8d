// The WBXML writer. It runs twice for each request, to measure it and to send it.
#include "document/wbxml.h"

#include "api/AirSync.h"
#include "document/Utilities.h"
#include "document/Vocabulary.h"
#include "document/wbxmlTokens.h"
#include "support/Log.h"

namespace AIRSYNC_STACK {

namespace {

struct Writer {
  ByteChannel sink;
  Communications& comms;
  UINT8 page;  // the current code page
};

void Write(const Writer& writer, UINT8 byte) { ByteOut(byte, writer.sink, writer.comms); }

void WriteMultiByteInteger(const Writer& writer, UINT32 value) {
  unsigned shift = 28;
  while (shift && !(value >> shift)) shift -= kGroupBits;
  for (; shift; shift -= kGroupBits) {
    Write(writer, static_cast<UINT8>(((value >> shift) & kGroupMask) | kGroupFollows));
  }
  Write(writer, static_cast<UINT8>(value & kGroupMask));
}

void LogElement(const sml_element* element, const char* tag) {
  const AS_LOG_MESSAGE_SOURCE_T source = AS_LOG_SOURCE_ELEMENT;
  const AS_LOG_LEVEL_T level = AS_LOG_LEVEL_INFO;
  if (!Log::Writes(source, level)) return;
  Log::write(source, level, "Serialize Element Tag: ", tag);
  Log::write(source, level, "Serialize Code Page: ", static_cast<unsigned int>(element->CodePage));
  if (element->pValue) {
    Log::write(source, level, "Serialize Element value: ", element->pValue);
  } else {
    Log::write(source, level, "Serialize Element value: NULL");
  }
}

void WriteValue(const Writer& writer, const sml_element* element) {
  if (element->BinaryFlag) {
    Write(writer, OPAQUE);
    WriteMultiByteInteger(writer, element->ValueLength);
    BytesOut(element->pValue, element->ValueLength, writer.sink, writer.comms);
    return;
  }
  Write(writer, STR_I);
  StringOut(element->pValue, writer.sink, writer.comms);
  Write(writer, '\0');
}

// Attributes are not written: "xmlns" has done its work by setting the code page.
void WriteElement(Writer& writer, const sml_element* element) {
  const char* const tag = element->pTag ? element->pTag : "";
  LogElement(element, tag);
  const UINT8 token = TokenOfTag(element->CodePage, tag);
  if (!token) AirSync::getInstance()->AbortSync(AS_RESULT_MALFORMED_DOCUMENT);
  // A run of elements in one page costs one switch: the page stays until an element needs another.
  if (element->CodePage != writer.page) {
    Write(writer, SWITCH_PAGE);
    Write(writer, element->CodePage);
    writer.page = element->CodePage;
  }
  const bool hasContent = element->pValue || element->NumberOfChildren;
  Write(writer, hasContent ? token | kTagHasContent : token);
  if (!hasContent) return;
  if (element->pValue) WriteValue(writer, element);
  for (UINT16 i = 0; i < element->NumberOfChildren; ++i) WriteElement(writer, element->pChildren[i]);
  Write(writer, END);
}

}  // namespace

void WBXMLSerializeSmlDocument(const sml_element* pRoot, ByteChannel sink, Communications& comms) {
  Writer writer = {sink, comms, 0};
  Write(writer, kWbxmlVersion13);
  Write(writer, kUnknownPublicId);
  Write(writer, kCharsetUtf8);
  Write(writer, 0);  // no string table
  WriteElement(writer, pRoot);
}

}  // namespace AIRSYNC_STACK
