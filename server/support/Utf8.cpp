#include "support/Utf8.h"

namespace demoserver {
namespace {

bool isContinuation(char c) { return (static_cast<unsigned char>(c) & 0xC0u) == 0x80u; }

// The length of the well-formed sequence at the start of the text, 0 when there is none.
std::size_t sequenceLength(std::string_view text) {
  const auto at = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  const unsigned lead = at(0);
  if (lead < 0x80) return 1;
  const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
  if (lead < 0xC2 || lead > 0xF4 || text.size() < length) return 0;
  for (std::size_t i = 1; i < length; ++i)
    if (!isContinuation(text[i])) return 0;
  const unsigned second = at(1);
  const bool overlong = (lead == 0xE0 && second < 0xA0) || (lead == 0xF0 && second < 0x90);
  const bool surrogate = lead == 0xED && second > 0x9F;
  const bool beyond = lead == 0xF4 && second > 0x8F;
  return overlong || surrogate || beyond ? 0 : length;
}

bool isForbidden(char c) {
  return static_cast<unsigned char>(c) < 0x20 && c != '\t' && c != '\n' && c != '\r';
}

}  // namespace

bool isUtf8(std::string_view text) {
  while (!text.empty()) {
    const std::size_t length = sequenceLength(text);
    if (length == 0) return false;
    text.remove_prefix(length);
  }
  return true;
}

bool isItemText(std::string_view text) {
  for (const char c : text)
    if (isForbidden(c)) return false;
  return isUtf8(text);
}

std::string itemText(std::string_view text) {
  std::string good;
  good.reserve(text.size());
  while (!text.empty()) {
    const std::size_t length = isForbidden(text.front()) ? 0 : sequenceLength(text);
    good.append(length == 0 ? std::string_view("\xEF\xBF\xBD") : text.substr(0, length));
    text.remove_prefix(length == 0 ? 1 : length);
  }
  return good;
}

std::string utf8(std::uint32_t character) {
  const auto tail = [&](unsigned shift) { return static_cast<char>(0x80u | (character >> shift & 0x3Fu)); };
  if (character == 0 || character > 0x10FFFF || (character >= 0xD800 && character <= 0xDFFF)) return {};
  if (character < 0x80) return {static_cast<char>(character)};
  if (character < 0x800) return {static_cast<char>(0xC0u | character >> 6), tail(0)};
  if (character < 0x10000) return {static_cast<char>(0xE0u | character >> 12), tail(6), tail(0)};
  return {static_cast<char>(0xF0u | character >> 18), tail(12), tail(6), tail(0)};
}

std::string_view utf8Head(std::string_view text, std::size_t limit) {
  if (text.size() <= limit) return text;
  while (limit > 0 && isContinuation(text[limit])) --limit;
  return text.substr(0, limit);
}

}  // namespace demoserver
