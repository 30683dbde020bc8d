#include "transport/WireTrace.h"

#include <algorithm>
#include <boost/beast/core/string.hpp>
#include <cstddef>
#include <iterator>
#include <string>

#include "transport/TransportError.h"

namespace airsync {

namespace {

// What this side sends beside what is known here.
constexpr std::string_view kSentSecrets[] = {"authorization", "proxy-authorization", "cookie"};

// Of what a server sends, the lines whose values are shown. Any other may hold whatever the server likes, in
// whatever encoding: what it was told to keep to itself, for example.
constexpr std::string_view kShownAnswers[] = {
    "cache-control",
    "connection",
    "content-encoding",
    "content-length",
    "content-type",
    "date",
    "keep-alive",
    "location",
    "ms-asprotocolcommands",
    "ms-asprotocolversions",
    "retry-after",
    "transfer-encoding",
};

template <std::size_t size>
bool isAmong(const std::string_view (&names)[size], std::string_view name) {
  return std::any_of(std::begin(names), std::end(names), [&](std::string_view other) {
    return boost::beast::iequals({other.data(), other.size()}, {name.data(), name.size()});
  });
}

bool isHidden(HeadOf side, std::string_view line) {
  const auto colon = line.find(':');
  if (colon == std::string_view::npos) return false;
  std::string_view name = line.substr(0, colon);
  while (!name.empty() && (name.back() == ' ' || name.back() == '\t')) name.remove_suffix(1);
  return side == HeadOf::kRequest ? isAmong(kSentSecrets, name) : !isAmong(kShownAnswers, name);
}

// Of an answer's first line what is no text of the server: "HTTP/1.1 302".
std::string_view withoutReason(std::string_view line) {
  const auto status = line.find(' ');
  if (status == std::string_view::npos) return line;
  return line.substr(0, line.find_first_not_of("0123456789", status + 1));
}

std::string shown(std::string_view line, bool hidden) {
  constexpr std::size_t lineLimit = 1000;
  constexpr std::string_view kNotShown = "(not shown)";
  if (!hidden) return printable(line, lineLimit);
  const bool continues = line.front() == ' ' || line.front() == '\t';
  const std::string name = continues ? std::string() : printable(line.substr(0, line.find(':'))) + ": ";
  return name + std::string(kNotShown);
}

}  // namespace

void traceHead(const WireTrace& trace, HeadOf side, std::string_view head) {
  if (!trace) return;
  const std::string mark = side == HeadOf::kRequest ? "> " : "< ";
  bool hidden = false;  // a line that starts with white space continues the one before
  for (bool first = true; !head.empty(); first = false) {
    const auto end = head.find('\n');
    std::string_view line = head.substr(0, end);
    head.remove_prefix(end == std::string_view::npos ? head.size() : end + 1);
    if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
    if (line.empty()) continue;
    if (first && side == HeadOf::kAnswer) line = withoutReason(line);
    const bool continues = line.front() == ' ' || line.front() == '\t';
    if (!continues) hidden = !first && isHidden(side, line);
    trace(mark + shown(line, hidden));
  }
}

}  // namespace airsync
