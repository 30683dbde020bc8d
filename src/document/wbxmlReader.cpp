// The WBXML reader. Everything here comes from the network: each length, offset and number is checked before
// it is used, and what breaks the rules ends the exchange.
#include "api/AirSync.h"
#include "document/Utilities.h"
#include "document/Vocabulary.h"
#include "document/wbxml.h"
#include "document/wbxmlTokens.h"
#include "support/Assert.h"
#include "support/Memory.h"

namespace AIRSYNC_STACK {

namespace {

const unsigned kDeepestLevel = 64;
const UINT32 kHighestEntity = 255;

// What a peer may make the reader allocate on its bare word. Longer blocks grow as their bytes arrive.
const UINT32 kTrustedLength = 65535;

// How much text a document may take from its string table: so much, and the table (or its first 8 MiB) so
// many times over. Three bytes lead to an entry, as often as a peer likes: without a limit a small document
// fills the host's memory.
const UINT32 kFreeTableText = 8 * 1024 * 1024;
const UINT32 kTableTextFactor = 16;

// A byte can be an element, and an element takes some 250 bytes of memory: half a gigabyte is the most that a
// document gets that way. 30,000 full contacts in one document stay below it.
const UINT32 kMostElements = 2 * 1024 * 1024;

// State of one document. It lives on the stack of WBXMLParseSmlDocument: an abort leaves nothing behind.
struct Reader {
  ByteChannel source;
  Communications& comms;
  UINT8 page;             // the current code page
  unsigned depth;         // levels that are open
  char* stringTable;      // null when the document has none
  UINT32 stringTableEnd;  // offsets below it lead to a string that ends inside the table
  UINT32 tableTextLeft;   // characters that may still be taken from the table
  UINT32 elementsLeft;    // that may still come
};

// The character data of one element, gathered piece by piece.
struct Text {
  char* characters;  // null as long as there was no piece
  UINT32 length;
  UINT32 capacity;
};

[[noreturn]] void Refuse() { AirSync::getInstance()->AbortSync(AS_RESULT_MALFORMED_DOCUMENT); }

UINT8 ReadByte(const Reader& reader) { return ByteIn(reader.source, reader.comms); }

UINT32 ReadMultiByteInteger(const Reader& reader) {
  const int mostBytes = 5;
  UINT32 value = 0;
  for (int i = 0; i < mostBytes; ++i) {
    const UINT8 byte = ReadByte(reader);
    if (value >> (32 - kGroupBits)) Refuse();
    value = (value << kGroupBits) | (byte & kGroupMask);
    if (!(byte & kGroupFollows)) return value;
  }
  Refuse();
}

UINT8 ReadPage(const Reader& reader) {
  const UINT8 page = ReadByte(reader);
  if (page >= kCodePages) Refuse();
  return page;
}

char* Grow(char* block, UINT32 newSize, UINT32 oldSize) {
  block = static_cast<char*>(AdapterRealloc(block, newSize, oldSize));
  if (!block) AirSync::getInstance()->AbortSync(AS_RESULT_OUT_OF_MEMORY);
  return block;
}

// `length` bytes in a block that has room for `spare` more.
char* ReadBlock(const Reader& reader, UINT32 length, UINT32 spare) {
  if (length > INT32_MAX) Refuse();
  UINT32 capacity = length < kTrustedLength ? length : kTrustedLength;
  char* block = static_cast<char*>(AdapterMalloc(capacity + spare));
  UINT32 filled = 0;
  while (filled < length) {
    if (filled == capacity) {
      const UINT32 grown = length - capacity < capacity ? length : 2 * capacity;
      block = Grow(block, grown + spare, capacity + spare);
      capacity = grown;
    }
    (reader.comms.*reader.source)(reinterpret_cast<UINT8*>(block) + filled,
                                  static_cast<int>(capacity - filled));
    filled = capacity;
  }
  return block;
}

void ReadStringTable(Reader& reader) {
  UINT32 length = ReadMultiByteInteger(reader);
  if (!length) return;
  reader.stringTable = ReadBlock(reader, length, 0);
  while (length && reader.stringTable[length - 1]) --length;
  reader.stringTableEnd = length;
  const UINT32 counted = length < kFreeTableText ? length : kFreeTableText;
  reader.tableTextLeft = kFreeTableText + kTableTextFactor * counted;
}

// The string of the table that the next number leads to.
const char* ReadTableString(const Reader& reader) {
  const UINT32 offset = ReadMultiByteInteger(reader);
  if (offset >= reader.stringTableEnd) Refuse();
  return reader.stringTable + offset;
}

void Append(Text& text, const char* piece) {
  const UINT32 length = SmlStrlen(piece);
  const UINT32 longest = INT32_MAX / 2;
  // A single block may be longer than what may be put together.
  if (text.length > longest || length > longest - text.length) Refuse();
  const UINT32 needed = text.length + length + 1;
  if (needed > text.capacity) {
    const UINT32 grown = text.characters && needed < 2 * text.capacity ? 2 * text.capacity : needed;
    text.characters = Grow(text.characters, grown, text.capacity);
    text.capacity = grown;
  }
  SmlMemcpy(text.characters + text.length, piece, length + 1);
  text.length += length;
}

void AppendFromTable(Reader& reader, Text& text) {
  const char* const piece = ReadTableString(reader);
  const UINT32 length = SmlStrlen(piece);
  if (length > reader.tableTextLeft) Refuse();
  reader.tableTextLeft -= length;
  Append(text, piece);
}

// As Append, for a piece in tracked memory, a block of `capacity` bytes, which is used up.
void AppendOwned(Text& text, char* piece, UINT32 capacity) {
  if (text.characters) {
    Append(text, piece);
    AdapterFree(piece);
    return;
  }
  text.characters = piece;
  text.length = SmlStrlen(piece);
  text.capacity = capacity;
}

// A character 0 ends its own piece, as it does in opaque content: it contributes nothing, and what follows
// is still appended.
void AppendEntity(const Reader& reader, Text& text) {
  const UINT32 character = ReadMultiByteInteger(reader);
  if (character > kHighestEntity) Refuse();
  const char piece[] = {static_cast<char>(character), '\0'};
  Append(text, piece);
}

void AppendOpaque(const Reader& reader, Text& text) {
  const UINT32 length = ReadMultiByteInteger(reader);
  char* const piece = ReadBlock(reader, length, 1);
  piece[length] = '\0';
  AppendOwned(text, piece, length + 1);
}

void AppendInline(const Reader& reader, Text& text) {
  UINT32 capacity = 0;
  char* const piece = StringIn(reader.source, reader.comms, capacity);
  AppendOwned(text, piece, capacity);
}

void ReadAttributeValue(const Reader& reader, ByteChannel In, sml_element* element, const char* name) {
  switch (ReadByte(reader)) {
    case STR_T:
    case EXT_T_0:
    case EXT_T_1:
    case EXT_T_2:
      SE_AddAttribute(element, name, ReadTableString(reader));
      return;
    case STR_I:
    case EXT_I_0:
    case EXT_I_1:
    case EXT_I_2: {
      char* const value = StringIn(In, reader.comms);
      SE_AddAttribute(element, name, value);
      AdapterFree(value);
      return;
    }
    case EXT_0:
    case EXT_1:
    case EXT_2:
      // It never holds, and compilers say so: the text of the assertion is what matters.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Waddress"
#ifdef __clang__
#pragma GCC diagnostic ignored "-Wtautological-pointer-compare"
#endif
      assert(__null == &In);  // NOLINT(cert-dcl03-c)
#pragma GCC diagnostic pop
  }
  Refuse();
}

void ReadAttributes(const Reader& reader, sml_element* element) {
  for (;;) {
    const UINT8 byte = ReadByte(reader);
    if (byte == END) return;
    if (byte != LITERAL) Refuse();
    const char* const name = ReadTableString(reader);
    ReadAttributeValue(reader, reader.source, element, name);
  }
}

sml_element* ReadElement(Reader& reader, UINT8 tagByte);

void ReadContent(Reader& reader, sml_element* element) {
  Text text = {nullptr, 0, 0};
  for (;;) {
    const UINT8 byte = ReadByte(reader);
    switch (byte) {
      case END:
        if (!text.characters) return;
        SE_SetValue(element, text.characters);
        AdapterFree(text.characters);
        return;
      case SWITCH_PAGE:
        reader.page = ReadPage(reader);
        break;
      case ENTITY:
        AppendEntity(reader, text);
        break;
      case STR_I:
      case EXT_I_0:
      case EXT_I_1:
      case EXT_I_2:
        AppendInline(reader, text);
        break;
      case EXT_T_0:
      case EXT_T_1:
      case EXT_T_2:
      case STR_T:
        AppendFromTable(reader, text);
        break;
      case OPAQUE:
        AppendOpaque(reader, text);
        break;
      case PI:
        Refuse();
      default:
        SE_AddChild(element, ReadElement(reader, byte));
    }
  }
}

// A child is read whole before it is attached. Attached, it takes the page that its parent has at that
// moment: the one in which the parent's tag was read, or which the parent's "xmlns" names; the parent takes
// its own parent's only afterwards. So a page switch or an "xmlns" brings an element's children to a page
// that is not the root's.
sml_element* ReadElement(Reader& reader, UINT8 tagByte) {
  if (reader.depth == kDeepestLevel || !reader.elementsLeft) Refuse();
  --reader.elementsLeft;
  const char* const tag = TagOfToken(reader.page, tagByte & kTagTokenMask);
  if (!tag) Refuse();
  ++reader.depth;
  sml_element* const element = SE_New(tag, nullptr);
  element->CodePage = reader.page;
  if (tagByte & kTagHasAttributes) ReadAttributes(reader, element);
  if (tagByte & kTagHasContent) ReadContent(reader, element);
  --reader.depth;
  return element;
}

sml_element* ReadRoot(Reader& reader) {
  UINT8 byte = ReadByte(reader);
  if (byte == SWITCH_PAGE) {
    reader.page = ReadPage(reader);
    byte = ReadByte(reader);
  }
  return ReadElement(reader, byte);
}

void ReadHead(Reader& reader) {
  ExpectByte(kWbxmlVersion13, reader.source, reader.comms);
  // The public identifier is of no use: a number, or 0 and an offset into the table.
  if (PeekAtNextByte(reader.source, reader.comms) == kPublicIdInTable) ReadByte(reader);
  ReadMultiByteInteger(reader);
  const UINT8 charset = ReadByte(reader);
  if (charset != kCharsetUnknown && charset != kCharsetAscii && charset != kCharsetUtf8) Refuse();
  ReadStringTable(reader);
}

}  // namespace

sml_element* WBXMLParseSmlDocument(ByteChannel source, Communications& comms) {
  Reader reader = {source, comms, 0, 0, nullptr, 0, 0, kMostElements};
  ReadHead(reader);
  sml_element* const root = ReadRoot(reader);
  if (reader.stringTable) AdapterFree(reader.stringTable);
  return root;
}

}  // namespace AIRSYNC_STACK
