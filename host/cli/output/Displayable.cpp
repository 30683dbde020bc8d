#include "cli/output/Displayable.h"

#include <algorithm>
#include <cstdint>
#include <fmt/core.h>
#include <iterator>

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

struct Range {
  std::uint32_t first;
  std::uint32_t last;
};

// Rough on purpose: enough to align the names of people and folders.
constexpr Range kWide[] = {{0x1100, 0x115f}, {0x2e80, 0xa4cf},   {0xac00, 0xd7a3},
                           {0xf900, 0xfaff}, {0xfe30, 0xfe6f},   {0xff00, 0xff60},
                           {0xffe0, 0xffe6}, {0x1f300, 0x1faff}, {0x20000, 0x3fffd}};
constexpr Range kCombining[] = {{0x0300, 0x036f}, {0x0591, 0x05bd}, {0x064b, 0x0652},
                                {0x0941, 0x0948}, {0x200b, 0x200d}, {0xfe00, 0xfe0f}};

template <std::size_t size>
bool isIn(const Range (&ranges)[size], std::uint32_t value) {
  return std::any_of(std::begin(ranges), std::end(ranges),
                     [value](const Range& range) { return value >= range.first && value <= range.last; });
}

std::size_t widthOf(std::uint32_t value) {
  if (isIn(kCombining, value)) return 0;
  return isIn(kWide, value) ? 2 : 1;
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
  // No character takes more than four bytes, and few take no column: a prefix is enough.
  const std::string_view prefix = text.substr(0, 8 * columns);
  std::string shown = displayable(prefix);
  if (columnsOf(shown) <= columns && prefix.size() == text.size()) return shown;
  constexpr std::size_t kDots = 3;
  std::string_view rest = shown;
  for (std::size_t used = 0; !rest.empty();) {
    const CodePoint point = decode(rest);
    used += widthOf(point.value);
    if (used + kDots > columns) break;
    rest.remove_prefix(point.length);
  }
  return shown.substr(0, shown.size() - rest.size()) + "...";
}

std::string displayableJson(std::string_view document) {
  std::string shown;
  shown.reserve(document.size());
  while (!document.empty()) {
    const CodePoint point = decode(document);
    const std::size_t length = point.length == 0 ? 1 : point.length;
    const bool layout = point.value == '\n';
    if (point.length != 0 && !layout && (drivesTheTerminal(point.value) || reordersTheLine(point.value))) {
      shown += fmt::format("\\u{:04x}", point.value);
    } else {
      shown += document.substr(0, length);
    }
    document.remove_prefix(length);
  }
  return shown;
}

std::size_t columnsOf(std::string_view text) {
  std::size_t columns = 0;
  while (!text.empty()) {
    const CodePoint point = decode(text);
    columns += point.length == 0 ? 1 : widthOf(point.value);
    text.remove_prefix(point.length == 0 ? 1 : point.length);
  }
  return columns;
}

}  // namespace airsync
