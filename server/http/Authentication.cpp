#include "http/Authentication.h"

#include <algorithm>
#include <cctype>

namespace demoserver {
namespace {

constexpr std::string_view kScheme = "basic ";

std::string base64(std::string_view bytes) {
  constexpr std::string_view kAlphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string text;
  for (std::size_t i = 0; i < bytes.size(); i += 3) {
    const std::size_t count = std::min<std::size_t>(3, bytes.size() - i);
    unsigned group = 0;
    for (std::size_t k = 0; k < 3; ++k)
      group = group << 8 | (k < count ? static_cast<unsigned char>(bytes[i + k]) : 0u);
    for (std::size_t k = 0; k < 4; ++k) text += k <= count ? kAlphabet[group >> (18 - 6 * k) & 0x3F] : '=';
  }
  return text;
}

bool isEqual(std::string_view given, std::string_view expected) {
  unsigned difference = given.size() == expected.size() ? 0 : 1;
  for (std::size_t i = 0; i < expected.size(); ++i) {
    const char c = i < given.size() ? given[i] : '\0';
    difference |= static_cast<unsigned char>(c) ^ static_cast<unsigned char>(expected[i]);
  }
  return difference == 0;
}

}  // namespace

bool isAuthorized(std::string_view authorization, const Credentials& credentials) {
  if (authorization.size() < kScheme.size()) return false;
  for (std::size_t i = 0; i < kScheme.size(); ++i)
    if (std::tolower(static_cast<unsigned char>(authorization[i])) != kScheme[i]) return false;
  return isEqual(authorization.substr(kScheme.size()),
                 base64(credentials.domain + "/" + credentials.user + ":" + credentials.password));
}

}  // namespace demoserver
