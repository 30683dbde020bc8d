#include "transport/ResponseStream.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>

namespace airsync {

namespace {

using Kind = TransportErrorKind;

constexpr std::size_t kBufferSize = std::size_t{32} * 1024;
// From here on a read goes past the buffer, straight to its destination.
constexpr std::size_t kDirectRead = std::size_t{8} * 1024;
// In which a fetched body is kept.
constexpr std::size_t kBlock = std::size_t{64} * 1024;
constexpr std::string_view kHeadEnd = "\r\n\r\n";

TransportFailure headTooLarge(const std::string& peer, std::size_t limit) {
  return {Kind::kTooLarge,
          "The head of the answer of " + peer + " is larger than " + std::to_string(limit) + " bytes.",
          "The server, or a proxy before it, is at fault; ask whoever runs it."};
}

TransportFailure noHead(const std::string& peer, bool some) {
  return {Kind::kClosedEarly,
          peer + (some ? " closed the connection in the middle of the head of its answer."
                       : " closed the connection without an answer."),
          "Try again."};
}

TransportFailure notHttp(const std::string& peer, std::string_view start) {
  constexpr std::string_view kTlsAlert = "\x15\x03";
  if (start.starts_with(kTlsAlert)) {
    return {Kind::kProtocol, "What answers at " + peer + " speaks TLS, and was asked in plain HTTP.",
            "Let the account's url begin with https://."};
  }
  return {Kind::kProtocol,
          "What answers at " + peer + " does not speak HTTP (it says \"" + printable(start, 40) + "\").",
          "Check the port in the account's url, and whether it should begin with https."};
}

}  // namespace

ResponseStream::ResponseStream(std::size_t maxHead, std::uint64_t maxBody)
    : maxHead_(maxHead), maxBody_(maxBody), buffer_(std::max(kBufferSize, maxHead + 1)) {
  reset();
}

void ResponseStream::reset() {
  begin_ = filled_ = 0;
  begin();
}

void ResponseStream::begin() {
  blocks_.clear();
  fetched_ = false;
  cursor_ = end_ = buffer_.data() + begin_;
  framing_ = BodyFraming();
  arrived_ = 0;
}

// Room behind what has arrived; moves that to the start when there is none.
std::span<UINT8> ResponseStream::freeSpace() {
  if (begin_ == filled_) begin_ = filled_ = 0;
  if (filled_ == buffer_.size() && begin_ != 0) {
    std::copy(buffer_.begin() + static_cast<std::ptrdiff_t>(begin_), buffer_.end(), buffer_.begin());
    filled_ -= begin_;
    begin_ = 0;
  }
  cursor_ = end_ = buffer_.data() + begin_;
  return std::span(buffer_).subspan(filled_);
}

bool ResponseStream::fill(Connection& connection) {
  const std::size_t count = connection.read(freeSpace());
  filled_ += count;
  arrived_ += count;
  return count != 0;
}

bool ResponseStream::takePending(Connection& connection) {
  const std::size_t count = connection.readPending(freeSpace());
  filled_ += count;
  arrived_ += count;
  return count != 0;
}

ResponseHead ResponseStream::readHead(Connection& connection, const WireTrace& trace,
                                      std::optional<std::uint64_t> roomForBody) {
  std::size_t budget = maxHead_;
  for (;;) {
    ResponseHead head = readOneHead(connection, trace, budget);
    if (head.status == 101) {
      throw TransportFailure(Kind::kProtocol, connection.peer() + " wants to speak another protocol.",
                             "Check the account's url.");
    }
    if (head.status < 200) continue;
    const std::uint64_t limit = head.status == 200 ? roomForBody.value_or(maxBody_) : maxBody_;
    framing_.start(head.framing, head.contentLength, limit);
    cursor_ = end_ = buffer_.data() + begin_;  // take() gives nothing before the first read()
    return head;
  }
}

// The offset behind the head, or 0 while its end has not arrived. `scanned` keeps a head that comes byte by
// byte from being searched from its start each time.
std::size_t ResponseStream::findHeadEnd(std::size_t& scanned) const {
  const std::string_view arrived(reinterpret_cast<const char*>(buffer_.data()) + begin_, filled_ - begin_);
  const std::size_t found = arrived.find(kHeadEnd, scanned);
  if (found != std::string_view::npos) return found + kHeadEnd.size();
  scanned = arrived.size() < kHeadEnd.size() ? 0 : arrived.size() - (kHeadEnd.size() - 1);
  return 0;
}

ResponseHead ResponseStream::readOneHead(Connection& connection, const WireTrace& trace,
                                         std::size_t& budget) {
  std::size_t scanned = 0;
  std::size_t size = findHeadEnd(scanned);
  while (size == 0) {
    if (filled_ - begin_ > budget) throw headTooLarge(connection.peer(), maxHead_);
    if (!fill(connection)) throw noHead(connection.peer(), arrived_ != 0);
    const std::string_view start(reinterpret_cast<const char*>(buffer_.data()) + begin_, filled_ - begin_);
    if (!mayBeResponseHead(start)) throw notHttp(connection.peer(), start);
    size = findHeadEnd(scanned);
  }
  if (size > budget) throw headTooLarge(connection.peer(), maxHead_);
  budget -= size;
  const std::string_view text(reinterpret_cast<const char*>(buffer_.data()) + begin_, size);
  traceHead(trace, HeadOf::kAnswer, text);
  ResponseHead head = parseResponseHead(text, connection.peer());
  begin_ += size;
  return head;
}

// Accounts for what take() has taken.
void ResponseStream::settle() {
  const auto taken = static_cast<std::size_t>(cursor_ - (buffer_.data() + begin_));
  begin_ += taken;
  framing_.took(taken);
}

// Opens the next run of body bytes in the buffer, when there is one.
bool ResponseStream::openRun() {
  begin_ += framing_.skipFraming(std::span(buffer_).subspan(begin_, filled_ - begin_));
  const std::uint64_t count = std::min<std::uint64_t>(framing_.runLeft(), filled_ - begin_);
  cursor_ = buffer_.data() + begin_;
  end_ = cursor_ + count;
  return count != 0;
}

void ResponseStream::read(Connection& connection, std::span<UINT8> destination, std::size_t& got) {
  while (got < destination.size()) {
    const std::span<UINT8> rest = destination.subspan(got);
    const std::size_t count = std::min(rest.size(), static_cast<std::size_t>(end_ - cursor_));
    std::copy_n(cursor_, count, rest.begin());
    cursor_ += count;
    got += count;
    if (count == rest.size()) return;
    if (fetched_) {
      if (nextBlock()) continue;
      return;
    }
    settle();
    if (openRun()) continue;
    if (framing_.done()) return;
    const std::uint64_t direct = std::min<std::uint64_t>(rest.size() - count, framing_.runLeft());
    if (begin_ == filled_ && direct >= kDirectRead) {
      const std::size_t arrived = connection.read(rest.subspan(count, static_cast<std::size_t>(direct)));
      arrived_ += arrived;
      got += arrived;
      framing_.took(arrived);
      if (arrived == 0) framing_.inputEnded();
    } else if (!fill(connection)) {
      framing_.inputEnded();
    }
  }
}

void ResponseStream::fetch(Connection& connection) {
  if (fetched_) return;
  for (bool more = true; more;) {
    std::vector<UINT8> block(kBlock);
    std::size_t got = 0;
    read(connection, block, got);
    more = got == kBlock;
    block.resize(got);
    blocks_.push_back(std::move(block));
  }
  fetched_ = true;
  openBlock();
}

// Of a fetched body: hands out the front block.
void ResponseStream::openBlock() {
  cursor_ = blocks_.front().data();
  end_ = cursor_ + blocks_.front().size();
}

bool ResponseStream::nextBlock() {
  if (blocks_.size() <= 1) return false;
  blocks_.pop_front();
  openBlock();
  return true;
}

bool ResponseStream::endsHere(Connection& connection) {
  for (;;) {
    if (cursor_ != end_) return false;
    settle();
    if (openRun()) return false;
    if (framing_.done()) return true;
    if (!fill(connection)) framing_.inputEnded();
  }
}

bool ResponseStream::drain(Connection& connection, std::size_t limit) {
  if (fetched_) return true;
  for (std::uint64_t drained = 0;;) {
    drained += static_cast<std::uint64_t>(end_ - cursor_);
    cursor_ = end_;
    settle();
    if (drained > limit) return false;
    if (openRun()) continue;
    if (framing_.done()) return true;
    if (!fill(connection)) framing_.inputEnded();
  }
}

}  // namespace airsync
