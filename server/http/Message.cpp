#include "http/Message.h"

#include <optional>

namespace demoserver {
namespace {

int hexDigit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

std::optional<std::string> percentDecoded(std::string_view text) {
  std::string decoded;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '%') {
      decoded += text[i];
      continue;
    }
    const int high = text.size() - i > 2 ? hexDigit(text[i + 1]) : -1;
    const int low = high < 0 ? -1 : hexDigit(text[i + 2]);
    if (low < 0) return std::nullopt;
    decoded += static_cast<char>(high * 16 + low);
    i += 2;
  }
  return decoded;
}

}  // namespace

bool parseTarget(std::string_view target, HttpRequest& request) {
  const std::size_t mark = target.find('?');
  request.path = target.substr(0, mark);
  std::string_view rest = mark == std::string_view::npos ? std::string_view() : target.substr(mark + 1);
  while (!rest.empty()) {
    const std::string_view pair = rest.substr(0, rest.find('&'));
    rest.remove_prefix(pair.size() < rest.size() ? pair.size() + 1 : pair.size());
    const std::size_t equals = pair.find('=');
    const auto name = percentDecoded(pair.substr(0, equals));
    const auto value =
        percentDecoded(equals == std::string_view::npos ? std::string_view() : pair.substr(equals + 1));
    if (!name || !value) return false;
    request.query.emplace(*name, *value);
  }
  return true;
}

}  // namespace demoserver
