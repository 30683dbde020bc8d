// Finding, visiting and removing elements of a tree.
#include "api/AirSync.h"
#include "document/Element.h"
#include "document/FieldList.h"
#include "document/Utilities.h"
#include "support/Assert.h"

namespace AIRSYNC_STACK {

namespace {

const char kPathSeparator = '/';
const UINT32 kSegmentCapacity = 104;

bool HasTag(const sml_element* pSmlElement, const char* tag) { return SameText(pSmlElement->pTag, tag); }

sml_element* FirstChildWithTag(const sml_element* pSmlElement, const char* tag) {
  for (UINT16 i = 0; i < pSmlElement->NumberOfChildren; ++i) {
    if (HasTag(pSmlElement->pChildren[i], tag)) return pSmlElement->pChildren[i];
  }
  return nullptr;
}

UINT32 FirstSegmentLength(const char* path) {
  UINT32 length = 0;
  while (path[length] && path[length] != kPathSeparator) ++length;
  return length;
}

UINT16 WhichChildAmI(const sml_element* pSmlElement) {
  const sml_element* const pParent = pSmlElement->pParent;
  if (!pParent) assert(0);
  UINT16 i = 0;
  while (i < pParent->NumberOfChildren && pParent->pChildren[i] != pSmlElement) ++i;
  if (i == pParent->NumberOfChildren) assert(0);
  return i;
}

void RemoveNthChild(sml_element* pParent, UINT16 ChildIndex) {
  assert(ChildIndex < pParent->NumberOfChildren);
  SE_Destroy(pParent->pChildren[ChildIndex]);
  --pParent->NumberOfChildren;
  for (UINT16 i = ChildIndex; i < pParent->NumberOfChildren; ++i) {
    pParent->pChildren[i] = pParent->pChildren[i + 1];
  }
}

// Pre-order. A null `value` matches any.
sml_element* Search(const sml_element* pSmlElement, const char* tag, const char* value) {
  if (HasTag(pSmlElement, tag) && (!value || SameText(pSmlElement->pValue, value))) {
    return const_cast<sml_element*>(pSmlElement);
  }
  for (UINT16 i = 0; i < pSmlElement->NumberOfChildren; ++i) {
    if (sml_element* const found = Search(pSmlElement->pChildren[i], tag, value)) return found;
  }
  return nullptr;
}

}  // namespace

sml_element* SE_GetChild(const sml_element* pSmlElement, const char* path) {
  sml_element* found = const_cast<sml_element*>(pSmlElement);
  while (found && *path) {
    // No vocabulary has a tag as long as the buffer; the check keeps the copy inside it.
    if (FirstSegmentLength(path) >= kSegmentCapacity) return nullptr;
    char segment[kSegmentCapacity];
    GetFirstTag(segment, path, kPathSeparator);
    found = FirstChildWithTag(found, segment);
    path = RemoveFirstTag(path, kPathSeparator);
  }
  return found;
}

bool SE_HasChild(const sml_element* pSmlElement, const char* path) {
  return SE_GetChild(pSmlElement, path) != nullptr;
}

char* SE_GetValueOfChild(const sml_element* pSmlElement, const char* path) {
  const sml_element* const found = SE_GetChild(pSmlElement, path);
  return found ? found->pValue : nullptr;
}

UINT32 SE_GetIntegerValueOfChild(const sml_element* pSmlElement, const char* path) {
  const char* const value = SE_GetValueOfChild(pSmlElement, path);
  if (!value) assert(0);
  return SmlStringToUnsignedInteger(value);
}

UINT16 SE_CountChildren(const sml_element* pSmlElement, const char* tag) {
  UINT16 count = 0;
  for (UINT16 i = 0; i < pSmlElement->NumberOfChildren; ++i) {
    if (HasTag(pSmlElement->pChildren[i], tag)) ++count;
  }
  return count;
}

void SE_RemoveChild(sml_element* pSmlElement, const char* path) {
  const sml_element* const found = SE_GetChild(pSmlElement, path);
  if (found) RemoveNthChild(found->pParent, WhichChildAmI(found));
}

void SE_ForEach(const sml_element* pSmlElement, const char* tag, void (Parser::*handler)(const sml_element*),
                Parser& parser) {
  // The count is read anew on every pass: a handler may append to this element.
  for (UINT16 i = 0; i < pSmlElement->NumberOfChildren; ++i) {
    if (HasTag(pSmlElement->pChildren[i], tag)) (parser.*handler)(pSmlElement->pChildren[i]);
  }
}

sml_element* SE_Search(const sml_element* pSmlElement, const char* tag, const char* value) {
  return Search(pSmlElement, tag, value ? value : "");
}

sml_element* SE_Search(const sml_element* pSmlElement, const char* tag) {
  return Search(pSmlElement, tag, nullptr);
}

}  // namespace AIRSYNC_STACK
