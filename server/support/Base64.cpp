#include "support/Base64.h"

#include <algorithm>
#include <cstddef>

namespace demoserver {
namespace {

constexpr std::string_view kAlphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

}  // namespace

std::string base64(std::string_view bytes) {
  std::string text;
  text.reserve((bytes.size() + 2) / 3 * 4);
  for (std::size_t i = 0; i < bytes.size(); i += 3) {
    const std::size_t count = std::min<std::size_t>(3, bytes.size() - i);
    unsigned group = 0;
    for (std::size_t k = 0; k < 3; ++k)
      group = group << 8 | (k < count ? static_cast<unsigned char>(bytes[i + k]) : 0u);
    for (std::size_t k = 0; k < 4; ++k) text += k <= count ? kAlphabet[group >> (18 - 6 * k) & 0x3F] : '=';
  }
  return text;
}

std::optional<std::string> base64Decoded(std::string_view text) {
  std::string bytes;
  bytes.reserve(text.size() / 4 * 3);
  unsigned group = 0, bits = 0;
  for (const char c : text.substr(0, text.find('='))) {
    const std::size_t value = kAlphabet.find(c);
    if (value == std::string_view::npos) return std::nullopt;
    group = (group << 6 | static_cast<unsigned>(value)) & 0xFFFFFFu;
    bits += 6;
    if (bits < 8) continue;
    bits -= 8;
    bytes += static_cast<char>(group >> bits & 0xFFu);
  }
  // Padding, left-over bits and lengths are as they should be if the bytes give the same text again.
  if (base64(bytes) != text) return std::nullopt;
  return bytes;
}

}  // namespace demoserver
