#include "http/Authentication.h"

#include <algorithm>
#include <cctype>

#include "support/Base64.h"

namespace demoserver {
namespace {

constexpr std::string_view kScheme = "basic ";

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
