#include "transport/ResponseHead.h"

#include <algorithm>
#include <boost/asio/buffer.hpp>
#include <boost/beast/http/empty_body.hpp>
#include <boost/beast/http/parser.hpp>
#include <limits>

namespace airsync {

namespace {

namespace http = boost::beast::http;
using Kind = TransportErrorKind;
using Parser = http::response_parser<http::empty_body>;

constexpr const char* kServerAdvice =
    "Check the url; if it is right, the server or a proxy before it is at fault: ask whoever runs it.";

TransportFailure refused(const std::string& peer, const std::string& reason) {
  return {Kind::kProtocol, "The answer of " + peer + " is not proper HTTP: " + reason + '.', kServerAdvice};
}

std::string joined(const Parser::value_type& message, const char* name) {
  std::string values;
  const auto range = message.equal_range(name);
  for (auto line = range.first; line != range.second; ++line) {
    if (!values.empty()) values += ',';
    values.append(line->value().data(), line->value().size());
  }
  return values;
}

bool hasNoBody(unsigned status) { return status < 200 || status == 204 || status == 304; }

// The parser refuses most contradictions; what it lets pass and what this transport can't read is here.
void decideFraming(const Parser& parser, const std::string& peer, ResponseHead& head) {
  const auto& message = parser.get();
  const std::string coding = joined(message, "Transfer-Encoding");
  const bool hasLength = message.find(http::field::content_length) != message.end();
  if (!coding.empty() && hasLength) throw refused(peer, "it has both a length and a transfer coding");
  if (!coding.empty() && !boost::beast::iequals(coding, "chunked")) {
    throw refused(peer, "its transfer coding is unknown (" + printable(coding) + ')');
  }
  const std::string content = joined(message, "Content-Encoding");
  if (head.status == 200 && !content.empty() && !boost::beast::iequals(content, "identity")) {
    throw refused(peer, "its body is encoded (" + printable(content) + "), though that was not asked for");
  }
  if (hasNoBody(head.status)) {
    head.framing = FramingKind::kNone;
  } else if (!coding.empty()) {
    head.framing = FramingKind::kChunked;
  } else if (const auto length = parser.content_length()) {
    head.framing = FramingKind::kLength;
    head.contentLength = *length;
  } else {
    head.framing = FramingKind::kUntilClose;
  }
}

}  // namespace

bool mayBeResponseHead(std::string_view start) {
  constexpr std::string_view beginning = "HTTP/1.";
  const std::size_t count = std::min(beginning.size(), start.size());
  return start.substr(0, count) == beginning.substr(0, count);
}

ResponseHead parseResponseHead(std::string_view text, const std::string& peer) {
  Parser parser;
  parser.header_limit(std::numeric_limits<std::uint32_t>::max());  // the caller's limit holds
  parser.body_limit(std::numeric_limits<std::uint64_t>::max());
  boost::system::error_code error;
  parser.put(boost::asio::buffer(text.data(), text.size()), error);
  if (error && error != http::error::need_more) throw refused(peer, error.message());
  if (!parser.is_header_done()) throw refused(peer, "its head is not complete");

  ResponseHead head;
  const auto& message = parser.get();
  head.status = static_cast<std::uint16_t>(message.result_int());
  if (head.status < 100) throw refused(peer, "its status is " + std::to_string(head.status));
  decideFraming(parser, peer, head);
  head.keepAlive = message.keep_alive() && head.framing != FramingKind::kUntilClose;
  head.location = printable(joined(message, "Location"));
  head.protocolVersions = joined(message, "MS-ASProtocolVersions");
  head.protocolCommands = joined(message, "MS-ASProtocolCommands");
  return head;
}

TransportError statusError(const ResponseHead& head, const std::string& peer) {
  TransportError error;
  error.kind = Kind::kHttpStatus;
  error.httpStatus = head.status;
  error.location = head.location;
  error.what = peer + " answered with HTTP status " + std::to_string(head.status) +
               (head.location.empty() ? std::string() : ", Location: " + head.location) + '.';
  return error;
}

}  // namespace airsync
