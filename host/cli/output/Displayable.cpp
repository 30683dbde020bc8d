#include "cli/output/Displayable.h"

#include <cstdint>
#include <fmt/core.h>

namespace airsync {

namespace {

struct CodePoint {
  std::uint32_t value = 0;
  std::size_t length = 0;  // bytes; 0: what stands here is no UTF-8
};

bool isContinuation(char byte) { return (static_cast<unsigned char>(byte) & 0xc0) == 0x80; }

// Sequences that are too short, overlong, surrogates or beyond the last code point do not count.
CodePoint decode(std::string_view text) {
  const auto lead = static_cast<unsigned char>(text.front());
  if (lead < 0x80) return {lead, 1};
  const std::size_t length = lead >= 0xf0 ? 4 : lead >= 0xe0 ? 3 : 2;
  if (lead < 0xc2 || lead > 0xf4 || text.size() < length) return {};
  std::uint32_t value = lead & (0xffU >> (length + 1));
  for (std::size_t i = 1; i < length; ++i) {
    if (!isContinuation(text[i])) return {};
    value = (value << 6) | (static_cast<unsigned char>(text[i]) & 0x3fU);
  }
  const std::uint32_t least = length == 2 ? 0x80 : length == 3 ? 0x800 : 0x10000;
  const bool surrogate = value >= 0xd800 && value <= 0xdfff;
  if (value < least || value > 0x10ffff || surrogate) return {};
  return {value, length};
}

bool drivesTheTerminal(std::uint32_t value) { return value < 0x20 || (value >= 0x7f && value < 0xa0); }

// Line and paragraph separators, and the marks that change the direction of the text after them.
bool reordersTheLine(std::uint32_t value) {
  return value == 0x061c || value == 0x200e || value == 0x200f || (value >= 0x2028 && value <= 0x202e) ||
         (value >= 0x2066 && value <= 0x2069);
}

}  // namespace

std::string displayable(std::string_view text) {
  std::string shown;
  shown.reserve(text.size());
  while (!text.empty()) {
    const CodePoint point = decode(text);
    const std::size_t length = point.length == 0 ? 1 : point.length;
    if (point.length == 0) {
      shown += fmt::format("\\x{:02x}", static_cast<unsigned char>(text.front()));
    } else if (drivesTheTerminal(point.value)) {
      shown += fmt::format("\\x{:02x}", point.value);
    } else if (reordersTheLine(point.value)) {
      shown += fmt::format("\\u{:04x}", point.value);
    } else {
      shown += text.substr(0, length);
    }
    text.remove_prefix(length);
  }
  return shown;
}

std::string displayable(std::string_view text, std::size_t columns) {
  // No character takes more than four bytes: a prefix is enough, however long the text is.
  std::string shown = displayable(text.substr(0, 4 * columns + 4));
  if (columnsOf(shown) <= columns && text.size() <= 4 * columns + 4) return shown;
  std::size_t end = 0;
  for (std::size_t kept = 0; end < shown.size(); ++end) {
    if (!isContinuation(shown[end]) && ++kept + 3 > columns) break;
  }
  return shown.substr(0, end) + "...";
}

std::size_t columnsOf(std::string_view text) {
  std::size_t columns = 0;
  for (const char byte : text) columns += isContinuation(byte) ? 0 : 1;
  return columns;
}

}  // namespace airsync
