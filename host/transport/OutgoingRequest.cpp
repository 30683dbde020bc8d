#include "transport/OutgoingRequest.h"

#include <algorithm>
#include <boost/beast/core/string.hpp>
#include <openssl/crypto.h>

#include "transport/RepeatRule.h"

namespace airsync {

namespace {

// Documents are measured in 16 bits; a longer body is no document, whatever it is called.
constexpr UINT32 kKeptLimit = 64 * 1024;
// A message goes out in pieces of about a TLS record.
constexpr std::size_t kPiece = std::size_t{16} * 1024;

// The value of the header line `name`, or nothing.
std::string_view valueOf(std::string_view head, std::string_view name) {
  while (!head.empty()) {
    const auto end = std::min(head.find('\n'), head.size() - 1);
    std::string_view line = head.substr(0, end);
    head.remove_prefix(end + 1);
    const auto colon = line.find(':');
    if (colon == std::string_view::npos ||
        !boost::beast::iequals({line.data(), colon}, {name.data(), name.size()})) {
      continue;
    }
    line.remove_prefix(colon + 1);
    const auto isBlank = [](char c) { return c == ' ' || c == '\t' || c == '\r'; };
    while (!line.empty() && isBlank(line.front())) line.remove_prefix(1);
    while (!line.empty() && isBlank(line.back())) line.remove_suffix(1);
    return line;
  }
  return {};
}

bool declaresMessage(std::string_view head) {
  const std::string_view type = valueOf(head, "Content-Type");
  return boost::beast::iequals({type.data(), type.size()}, "message/rfc822");
}

}  // namespace

void OutgoingRequest::start(std::string_view head, UINT32 contentLength) {
  clear();
  contentLength_ = contentLength;
  given_ = 0;
  message_ = declaresMessage(head);
  kept_ = contentLength <= kKeptLimit && !message_;
  headSize_ = head.size();
  // Room for all of it at once: growing would leave copies of the credentials behind.
  staged_.reserve(std::max(head.size() + (kept_ ? contentLength : 0), kPiece));
  staged_.assign(head.begin(), head.end());
}

bool OutgoingRequest::announce(std::size_t count, bool raw) {
  if (raw) {
    message_ = true;
    kept_ = false;
  }
  if (count > contentLength_ - given_) return false;
  given_ += static_cast<UINT32>(count);
  return true;
}

void OutgoingRequest::stage(std::span<const UINT8> bytes) {
  staged_.insert(staged_.end(), bytes.begin(), bytes.end());
}

void OutgoingRequest::clear() {
  if (!staged_.empty()) OPENSSL_cleanse(staged_.data(), staged_.size());
  staged_.clear();
}

bool OutgoingRequest::mayBeRepeated() const {
  if (!kept_ || staged_.size() < headSize_) return false;
  const std::string_view head(reinterpret_cast<const char*>(staged_.data()), headSize_);
  return changesNothing(head, staged().subspan(headSize_));
}

bool OutgoingRequest::fits(std::size_t count) const { return staged_.size() + count <= kPiece; }

}  // namespace airsync
