#include "transport/WireTrace.h"

#include <algorithm>
#include <array>
#include <boost/beast/core/string.hpp>
#include <string>

#include "transport/TransportError.h"

namespace airsync {

namespace {

constexpr std::array<std::string_view, 5> kSecretNames = {
    "authorization", "proxy-authorization", "cookie", "set-cookie", "authentication-info",
};

bool isSecret(std::string_view name) {
  while (!name.empty() && (name.back() == ' ' || name.back() == '\t')) name.remove_suffix(1);
  return std::any_of(kSecretNames.begin(), kSecretNames.end(), [&](std::string_view secret) {
    return boost::beast::iequals({secret.data(), secret.size()}, {name.data(), name.size()});
  });
}

std::string shown(std::string_view line) {
  constexpr std::size_t lineLimit = 1000;
  const auto colon = line.find(':');
  if (colon != std::string_view::npos && isSecret(line.substr(0, colon))) {
    return printable(line.substr(0, colon)) + ": (not shown)";
  }
  return printable(line, lineLimit);
}

}  // namespace

void traceHead(const WireTrace& trace, std::string_view mark, std::string_view head) {
  if (!trace) return;
  bool hidden = false;  // a line that starts with white space continues the one before
  while (!head.empty()) {
    const auto end = head.find('\n');
    std::string_view line = head.substr(0, end);
    head.remove_prefix(end == std::string_view::npos ? head.size() : end + 1);
    if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
    if (line.empty()) continue;
    const bool continues = line.front() == ' ' || line.front() == '\t';
    if (!continues) hidden = isSecret(line.substr(0, line.find(':')));
    trace(std::string(mark) + (continues && hidden ? "(not shown)" : shown(line)));
  }
}

}  // namespace airsync
