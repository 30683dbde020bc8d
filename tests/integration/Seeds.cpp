#include "integration/Seeds.h"

#include <cctype>
#include <cstdint>
#include <string_view>

#include "formats/Base64.h"

namespace airsync::integration {

namespace {

std::string hexOf(const std::string& text, std::string_view digits, const std::string& before) {
  std::string dump;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    dump += before;
    dump += {digits[byte >> 4U], digits[byte & 0xfU]};
  }
  return dump;
}

// What of a text's base64 does not depend on its neighbours, when `offset` bytes come before it.
std::string base64At(const std::string& text, std::size_t offset) {
  const std::string padded = std::string(offset, 'x') + text;
  std::string whole = base64Of({reinterpret_cast<const std::uint8_t*>(padded.data()), padded.size()});
  while (!whole.empty() && whole.back() == '=') whole.pop_back();
  const std::size_t begin = (8 * offset + 5) / 6;
  const std::size_t end = 8 * (offset + text.size()) / 6;
  return whole.substr(begin, end - begin);
}

std::string percentEncoded(const std::string& text) {
  std::string encoded;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    const bool plain = std::isalnum(byte) != 0 || std::string_view("-._~").find(c) != std::string_view::npos;
    encoded += plain ? std::string(1, c) : hexOf({c}, "0123456789ABCDEF", "%");
  }
  return encoded;
}

std::string wide(const std::string& text) {
  std::string result;
  for (const char c : text) result += {c, '\0'};
  return result;
}

}  // namespace

std::vector<std::string> formsOf(const std::string& secret) {
  constexpr std::string_view kSmall = "0123456789abcdef";
  constexpr std::string_view kCapital = "0123456789ABCDEF";
  return {secret,
          base64At(secret, 0),
          base64At(secret, 1),
          base64At(secret, 2),
          percentEncoded(secret),
          hexOf(secret, kSmall, ""),
          hexOf(secret, kCapital, ""),
          hexOf(secret, kSmall, " "),
          hexOf(secret, kCapital, " "),
          hexOf(secret, kCapital, "%"),
          wide(secret)};
}

std::vector<std::string> leaks(const std::string& text, const std::vector<std::string>& secrets) {
  std::vector<std::string> found;
  for (const std::string& secret : secrets) {
    for (const std::string& form : formsOf(secret)) {
      const std::size_t at = text.find(form);
      if (at == std::string::npos) continue;
      const std::size_t begin = text.rfind('\n', at) + 1;
      found.push_back(secret + " as " + form + " in: " + text.substr(begin, text.find('\n', at) - begin));
    }
  }
  return found;
}

}  // namespace airsync::integration
