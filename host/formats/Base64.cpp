#include "formats/Base64.h"

#include <cstddef>

namespace airsync {

namespace {

constexpr std::string_view kAlphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

}  // namespace

std::string base64Of(std::span<const std::uint8_t> bytes) {
  std::string text;
  for (std::size_t i = 0; i < bytes.size(); i += 3) {
    const std::size_t count = bytes.size() - i < 3 ? bytes.size() - i : 3;
    std::uint32_t bits = 0;
    for (std::size_t j = 0; j < 3; ++j) bits = bits << 8U | (j < count ? bytes[i + j] : 0U);
    for (std::size_t j = 0; j < 4; ++j) {
      text += j <= count ? kAlphabet[bits >> (18 - 6 * j) & 0x3fU] : '=';
    }
  }
  return text;
}

std::optional<std::vector<std::uint8_t>> bytesOfBase64(std::string_view text) {
  std::vector<std::uint8_t> bytes;
  std::uint32_t bits = 0;
  unsigned count = 0;  // of bits at hand
  const std::string_view digits = text.substr(0, text.find('='));
  for (const char c : digits) {
    const std::size_t digit = kAlphabet.find(c);
    if (digit == std::string_view::npos) return std::nullopt;
    bits = bits << 6U | static_cast<std::uint32_t>(digit);
    count += 6;
    if (count < 8) continue;
    count -= 8;
    bytes.push_back(static_cast<std::uint8_t>(bits >> count));
  }
  // There is one text for some bytes: this one, or none.
  if (base64Of(bytes) != text) return std::nullopt;
  return bytes;
}

}  // namespace airsync
