// The XML reader: elements, the one attribute, text, comments and CDATA sections. There is no DTD, no
// namespace and no character set handling. What breaks its rules ends the exchange.
#include "api/AirSync.h"
#include "document/Utilities.h"
#include "document/xml.h"
#include "support/Assert.h"
#include "support/Memory.h"

namespace AIRSYNC_STACK {

namespace {

const unsigned kDeepestLevel = 64;

// State of one document. It lives on the stack of XMLParseSmlDocument: an abort leaves nothing behind.
struct Reader {
  ByteChannel In;
  Communications& comms;
  unsigned depth;  // levels that are open
};

// A text that grows as its bytes arrive. A NUL among them ends it, as far as anybody sees.
struct Text {
  char* characters;
  UINT32 length;
  UINT32 capacity;
};

[[noreturn]] void Refuse() { AirSync::getInstance()->AbortSync(AS_RESULT_MALFORMED_DOCUMENT); }

char ReadChar(const Reader& reader) { return static_cast<char>(ByteIn(reader.In, reader.comms)); }

char PeekChar(const Reader& reader) { return static_cast<char>(PeekAtNextByte(reader.In, reader.comms)); }

void StepBack(const Reader& reader, int count) { (reader.comms.*reader.In)(nullptr, -count); }

// Whether this text (of five bytes at most) comes next; it will be read again. No byte beyond the first
// difference is asked for: the document may end there.
bool NextIs(const Reader& reader, const char* text) {
  int matched = 0;
  while (text[matched] != '\0' && ReadChar(reader) == text[matched]) ++matched;
  const bool all = text[matched] == '\0';
  StepBack(reader, all ? matched : matched + 1);
  return all;
}

// Reads this text if it comes next.
bool Accept(const Reader& reader, const char* text) {
  if (!NextIs(reader, text)) return false;
  Expect(text, reader.In, reader.comms);
  return true;
}

Text NewText() {
  const UINT32 firstCapacity = 5;
  return {static_cast<char*>(AdapterMalloc(firstCapacity)), 0, firstCapacity};
}

void Append(Text& text, char c) {
  if (text.length == text.capacity) {
    if (text.capacity > INT32_MAX / 2) Refuse();
    char* grown = static_cast<char*>(AdapterRealloc(text.characters, 2 * text.capacity, text.capacity));
    if (grown == nullptr) AirSync::getInstance()->AbortSync(AS_RESULT_OUT_OF_MEMORY);
    text.characters = grown;
    text.capacity *= 2;
  }
  text.characters[text.length++] = c;
}

void SkipSpace(const Reader& reader) {
  while (IsSpaceChar(PeekChar(reader))) ReadChar(reader);
}

bool StartsName(char c) { return IsLetter(c) || c == ':' || c == '_'; }

bool ContinuesName(char c) { return StartsName(c) || IsDigit(c) || c == '-' || c == '.'; }

bool ContinuesAttributeValue(char c) { return ContinuesName(c) || c == '"' || c == '\''; }

// The caller frees the token.
char* ReadToken(const Reader& reader, bool (*continues)(char)) {
  Text token = NewText();
  while (continues(PeekChar(reader))) Append(token, ReadChar(reader));
  Append(token, '\0');
  return token.characters;
}

char* ReadName(const Reader& reader) {
  if (!StartsName(PeekChar(reader))) Refuse();
  return ReadToken(reader, ContinuesName);
}

void ReadAttributes(const Reader& reader, sml_element* element) {
  for (;;) {
    SkipSpace(reader);
    const char next = PeekChar(reader);
    if (next == '/' || next == '>') return;
    char* name = ReadName(reader);
    SkipSpace(reader);
    Expect("=", reader.In, reader.comms);
    SkipSpace(reader);
    char* value = ReadToken(reader, ContinuesAttributeValue);  // with its quotes
    SE_AddAttribute(element, name, value);
    AdapterFree(value);
    AdapterFree(name);
  }
}

// The ";" behind the digits is not part of the reference: it stays in the text.
char ReadNumericReference(const Reader& reader) {
  const UINT16 base = Accept(reader, "x") ? 16 : 10;
  UINT16 value = 0;
  while (IsBaseNDigit(PeekChar(reader), base)) {
    value = static_cast<UINT16>(value * base + DigitToInt(ReadChar(reader)));
  }
  return static_cast<char>(value & 0xFF);
}

// What follows "&".
char ReadReference(const Reader& reader) {
  if (Accept(reader, "#")) return ReadNumericReference(reader);
  if (Accept(reader, "amp;")) return '&';
  if (Accept(reader, "lt;")) return '<';
  if (Accept(reader, "gt;")) return '>';
  if (Accept(reader, "apos;")) return '\'';
  if (Accept(reader, "quot;")) return '"';
  Refuse();
}

void ReadSection(const Reader& reader, Text& text) {
  while (!Accept(reader, "]]>")) Append(text, ReadChar(reader));
}

// What follows "<!": a comment, which is skipped, or a CDATA section, which is taken literally.
void ReadDeclaration(const Reader& reader, Text& text) {
  if (Accept(reader, "--")) {
    SkipUntil("-->", reader.In, reader.comms);
    return;
  }
  // Byte by byte: the whole of it would be more to give back than any other construct asks for.
  Expect("[CDATA[", reader.In, reader.comms);
  ReadSection(reader, text);
}

[[noreturn]] void StopAtBareBracket(ByteChannel In) {
  // It never holds, and compilers say so: the text of the assertion is what matters.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Waddress"
#ifdef __clang__
#pragma GCC diagnostic ignored "-Wtautological-pointer-compare"
#endif
  assert(__null == &In);  // NOLINT(cert-dcl03-c): it stops the process that gets here
#pragma GCC diagnostic pop
  Refuse();
}

// Everything up to the first tag. The caller frees the text.
char* ReadCharacterData(const Reader& reader) {
  Text text = NewText();
  for (;;) {
    const char c = ReadChar(reader);
    if (c == '&') {
      Append(text, ReadReference(reader));
    } else if (c == '>') {
      StopAtBareBracket(reader.In);
    } else if (c != '<') {
      Append(text, c);
    } else if (Accept(reader, "!")) {
      ReadDeclaration(reader, text);
    } else {
      StepBack(reader, 1);
      Append(text, '\0');
      return text.characters;
    }
  }
}

void ReadEndTag(const Reader& reader, const sml_element* element) {
  Expect("</", reader.In, reader.comms);
  char* name = ReadName(reader);
  if (!SameText(name, element->pTag)) Refuse();
  AdapterFree(name);
  SkipSpace(reader);
  Expect(">", reader.In, reader.comms);
}

sml_element* ReadElement(Reader& reader);

// An element with a start and an end tag always gets a value, if only the empty text. Text after its first
// child is read as markup, and refused.
void ReadContent(Reader& reader, sml_element* element) {
  char* text = ReadCharacterData(reader);
  SE_SetValue(element, text);
  AdapterFree(text);
  SkipSpace(reader);
  while (!NextIs(reader, "</")) {
    SE_AddChild(element, ReadElement(reader));
    SkipSpace(reader);
  }
  ReadEndTag(reader, element);
}

sml_element* ReadElement(Reader& reader) {
  if (reader.depth == kDeepestLevel) Refuse();
  ++reader.depth;
  Expect("<", reader.In, reader.comms);
  char* name = ReadName(reader);
  sml_element* element = SE_New(name, nullptr);
  AdapterFree(name);
  ReadAttributes(reader, element);
  if (Accept(reader, "/")) {
    Expect(">", reader.In, reader.comms);
  } else {
    Expect(">", reader.In, reader.comms);
    ReadContent(reader, element);
  }
  --reader.depth;
  return element;
}

}  // namespace

sml_element* XMLParseSmlDocument(ByteChannel source, Communications& comms) {
  Reader reader = {source, comms, 0};
  while (Accept(reader, "<?xml")) SkipUntil("?>", source, comms);
  return ReadElement(reader);
}

}  // namespace AIRSYNC_STACK
