#include "document/xml.h"

#include "document/Utilities.h"

namespace AIRSYNC_STACK {

namespace {

struct Writer {
  ByteChannel sink;
  Communications& comms;
};

void Write(const Writer& writer, const char* text) { StringOut(text, writer.sink, writer.comms); }

const char* EscapeFor(char c) {
  switch (c) {
    case '&':
      return "&amp;";
    case '"':
      return "&quot;";
    case '\'':
      return "&apos;";
    case '<':
      return "&lt;";
    case '>':
      return "&gt;";
    default:
      return nullptr;
  }
}

// Stretches without a special character go out in one piece.
void WriteEscaped(const Writer& writer, const char* text) {
  const char* stretch = text;
  for (; *text; ++text) {
    const char* const escape = EscapeFor(*text);
    if (!escape) continue;
    BytesOut(stretch, static_cast<UINT32>(text - stretch), writer.sink, writer.comms);
    Write(writer, escape);
    stretch = text + 1;
  }
  Write(writer, stretch);
}

void WriteElement(const Writer& writer, const sml_element* element) {
  const char* const tag = element->pTag ? element->pTag : "";
  Write(writer, "<");
  Write(writer, tag);
  if (!element->pValue && !element->NumberOfChildren) {
    Write(writer, "/>");
    return;
  }
  for (UINT8 i = 0; i < element->NumberOfAttributes; ++i) {
    Write(writer, " ");
    Write(writer, element->Attributes[i].name);
    Write(writer, "=");
    Write(writer, element->Attributes[i].value);
  }
  Write(writer, ">");
  if (element->pValue) WriteEscaped(writer, element->pValue);
  for (UINT16 i = 0; i < element->NumberOfChildren; ++i) WriteElement(writer, element->pChildren[i]);
  Write(writer, "</");
  Write(writer, tag);
  Write(writer, ">");
}

}  // namespace

void XMLSerializeSmlDocument(const sml_element* pRoot, ByteChannel sink, Communications& comms) {
  WriteElement(Writer{sink, comms}, pRoot);
}

}  // namespace AIRSYNC_STACK
