// The element tree: the form that every request and every response has in memory.
//
// A tree is built bottom-up (make an element, add its children, add it to its parent) and freed as a whole by
// SE_Destroy on its root. All memory is tracked: an abort releases every tree at once, and running out of
// memory never returns to these functions. A tree belongs to the one exchange in progress and to one thread.
//
// Misuse stops the process by an assertion, whose expression is named at each function.
//
// Paths name tags from the element downwards, separated by "/" ("Collections/Collection"); at each step the
// first child with the tag is taken, without backtracking. The empty path is the element itself. Tags are
// compared exactly. A segment has at most 103 characters.
#ifndef KROAIRSYNC_DOCUMENT_ELEMENT_H
#define KROAIRSYNC_DOCUMENT_ELEMENT_H

#include "api/Records.h"
#include "document/ByteChannel.h"

namespace AIRSYNC_STACK {

class Parser;

struct sml_element {
  struct {
    char* name;
    char* value;
  } Attributes[1];
  char* pTag;               // owned; or null
  char* pValue;             // owned; null when the element has no content
  sml_element** pChildren;  // owned: exactly NumberOfChildren pointers, in document order
  sml_element* pParent;     // not owned; null for a root
  UINT16 ValueLength;       // bytes, without the terminator
  UINT16 NumberOfChildren;
  UINT8 NumberOfAttributes;  // 0 or 1
  UINT8 BinaryFlag : 1;      // the content is ValueLength opaque bytes; set by hand only
  UINT8 CodePage;            // 0 to 8: the page in which the tag lives
};
static_assert(sizeof(sml_element) == (sizeof(void*) == 4 ? 32 : 56), "six pointers and the counts");
typedef sml_element SmlElement;

/// A new element with copies of `tag` and `value`, each of which may be null.
sml_element* SE_New(const char* tag, const char* value);

/// SE_New and SE_AddAttribute in one. Mind the order: the element's value comes last.
sml_element* SE_NewWithAttribute(const char* tag, const char* attributeName, const char* attributeValue,
                                 const char* value);

/// Frees an element and everything below it. Null does nothing. The element's parent, if any, is not told.
void SE_Destroy(sml_element* pSmlElement);

/// Stores copies of the name and the value (neither may be null). "xmlns" also sets the code page that the
/// value names (page 0 for a value that names none).
/// Asserts "pSmlElement->NumberOfAttributes < 1".
void SE_AddAttribute(sml_element* pSmlElement, const char* name, const char* value);

/// Appends `pChild`, which the parent owns from then on; a null child is ignored. The child takes the
/// parent's code page, its own children keep theirs. The 65,536th child ends the exchange with
/// AS_RESULT_MALFORMED_DOCUMENT.
/// Asserts "pParent", "!pChild->pParent".
void SE_AddChild(sml_element* pParent, sml_element* pChild);

/// Destroys the element at the path, if there is one, and closes the gap. The path must not lead to a root.
void SE_RemoveChild(sml_element* pSmlElement, const char* path);

/// The element at the path, or null.
sml_element* SE_GetChild(const sml_element* pSmlElement, const char* path);
bool SE_HasChild(const sml_element* pSmlElement, const char* path);

/// The value of the element at the path; null when there is no such element, or no value.
char* SE_GetValueOfChild(const sml_element* pSmlElement, const char* path);

/// That value's leading decimal digits as a number. Asserts "0" when there is no such element or no value.
UINT32 SE_GetIntegerValueOfChild(const sml_element* pSmlElement, const char* path);

/// How many direct children have the tag.
UINT16 SE_CountChildren(const sml_element* pSmlElement, const char* tag);
UINT16 SE_GetNumberOfChildren(const sml_element* pSmlElement);

/// Asserts "ChildIndex < pSmlElement->NumberOfChildren".
sml_element* SE_GetNthChild(const sml_element* pSmlElement, UINT16 ChildIndex);

UINT8 SE_GetNumberOfAttributes(const sml_element* pSmlElement);
/// The attribute's texts. `index` must be 0, and is not checked.
char* SE_GetNthAttributeName(const sml_element* pSmlElement, UINT16 index);
char* SE_GetNthAttributeValue(const sml_element* pSmlElement, UINT16 index);

/// Calls the handler on each direct child that has the tag, in document order. Children that a handler
/// appends are visited too.
void SE_ForEach(const sml_element* pSmlElement, const char* tag, void (Parser::*handler)(const sml_element*),
                Parser& parser);

/// The first element, this one included, in document order that has the tag (and the value); or null.
sml_element* SE_Search(const sml_element* pSmlElement, const char* tag, const char* value);
sml_element* SE_Search(const sml_element* pSmlElement, const char* tag);

char* SE_GetValue(const sml_element* pSmlElement);
UINT16 SE_GetValueLength(const sml_element* pSmlElement);

/// Stores a copy of `value`, once; null leaves the element without one. The length is counted modulo 65,536.
/// Asserts "!pSmlElement->pValue", "!pSmlElement->ValueLength".
void SE_SetValue(sml_element* pSmlElement, const char* value);

char* SE_GetTag(const sml_element* pSmlElement);
UINT8 SE_GetCodePage(const sml_element* pSmlElement);
sml_element* SE_GetParent(const sml_element* pSmlElement);
bool SE_BinaryContents(const sml_element* pSmlElement);

/// Writes the document through the sink, in XML or WBXML. It is validated before, and written whatever the
/// validation says. Asserts "0" for any other encoding.
void SE_Serialize(const sml_element* pRoot, ENCODINGTYPE encoding, ByteChannel sink, Communications& comms);

/// The length in bytes of the written document, modulo 65,536. `counter` is Communications::CountOutStream.
UINT16 SE_HowLongIsIt(const sml_element* pRoot, ENCODINGTYPE encoding, ByteChannel counter,
                      Communications& comms);

/// Reads one whole WBXML document; the caller destroys the tree. With ENCODING_XML it returns null and reads
/// nothing. Asserts "0" for any other encoding.
sml_element* SE_Deserialize(ENCODINGTYPE encoding, ByteChannel source, Communications& comms);

}  // namespace AIRSYNC_STACK

#endif
