// Inline texts: the fixed-size text fields of the public records. Those that a host fills need no terminator;
// those that the library fills always have one.
#ifndef KROAIRSYNC_SUPPORT_INLINE_TEXT_H
#define KROAIRSYNC_SUPPORT_INLINE_TEXT_H

#include <cstring>

#include "support/Porting.h"
#include "support/types.h"

namespace AIRSYNC_STACK {

// A terminated copy of a field that may fill its whole capacity.
template <UINT32 kCapacity>
struct TerminatedText {
  char text[kCapacity + 1];

  explicit TerminatedText(const char (&field)[kCapacity]) {
    std::memcpy(text, field, kCapacity);
    text[kCapacity] = '\0';
  }
};

// Whether a field holds exactly this text.
template <UINT32 kCapacity>
bool InlineTextEquals(const char (&field)[kCapacity], const char* text) {
  const size_t length = std::strlen(text);
  if (length > kCapacity || std::memcmp(field, text, length) != 0) return false;
  return length == kCapacity || field[length] == '\0';
}

// Copies a text into `destination`, which has room for `capacity` bytes. One that is too long is cut, without
// splitting a UTF-8 sequence; the rest of the destination is cleared, its last byte always.
inline void CopyCutText(char* destination, UINT32 capacity, const char* text) {
  size_t length = std::strlen(text);
  if (length >= capacity) {
    length = capacity - 1;
    while (length > 0 && (static_cast<UINT8>(text[length]) & 0xC0) == 0x80) --length;
  }
  // NOLINTNEXTLINE(bugprone-not-null-terminated-result): the next line ends it
  std::memcpy(destination, text, length);
  SmlMemset(destination + length, 0, capacity - static_cast<UINT32>(length));
}

template <UINT32 kCapacity>
void SetInlineText(char (&field)[kCapacity], const char* text) {
  CopyCutText(field, kCapacity, text);
}

}  // namespace AIRSYNC_STACK

#endif
