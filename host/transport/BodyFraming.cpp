#include "transport/BodyFraming.h"

#include <algorithm>
#include <limits>
#include <string>

#include "transport/TransportError.h"

namespace airsync {

namespace {

using Kind = TransportErrorKind;

// Of one chunk's head line, and of all trailer lines: nobody needs more.
constexpr std::size_t kFramingLimit = 4096;

constexpr const char* kServerAdvice = "The server, or a proxy before it, is at fault; ask whoever runs it.";

TransportFailure malformed() {
  return {Kind::kProtocol, "The answer's chunked coding is broken.", kServerAdvice};
}

int hexValue(UINT8 byte) {
  if (byte >= '0' && byte <= '9') return byte - '0';
  if (byte >= 'a' && byte <= 'f') return byte - 'a' + 10;
  if (byte >= 'A' && byte <= 'F') return byte - 'A' + 10;
  return -1;
}

void expect(UINT8 byte, char wanted) {
  if (byte != static_cast<UINT8>(wanted)) throw malformed();
}

TransportFailure tooLarge(std::uint64_t limit) {
  return {Kind::kTooLarge, "The answer's body is larger than " + std::to_string(limit) + " bytes.",
          kServerAdvice};
}

}  // namespace

void BodyFraming::start(FramingKind kind, std::uint64_t length, std::uint64_t limit) {
  *this = BodyFraming();
  kind_ = kind;
  limit_ = std::min(limit, std::numeric_limits<std::uint64_t>::max() - 1);
  switch (kind) {
    case FramingKind::kNone:
      return;
    case FramingKind::kLength:
      if (length > limit) throw tooLarge(limit);
      runLeft_ = length;
      state_ = length == 0 ? State::kDone : State::kRun;
      return;
    case FramingKind::kChunked:
      state_ = State::kSizeStart;
      return;
    case FramingKind::kUntilClose:
      runLeft_ = limit_ + 1;  // the byte too many is how it is noticed
      state_ = State::kRun;
      return;
  }
}

std::size_t BodyFraming::skipFraming(std::span<const UINT8> input) {
  std::size_t used = 0;
  while (used < input.size() && state_ != State::kRun && state_ != State::kDone) {
    if (++framingBytes_ > kFramingLimit) throw malformed();
    step(input[used++]);
  }
  return used;
}

void BodyFraming::took(std::uint64_t count) {
  runLeft_ -= count;
  taken_ += count;
  if (taken_ > limit_) throw tooLarge(limit_);
  if (runLeft_ != 0 || state_ != State::kRun) return;
  state_ = kind_ == FramingKind::kChunked ? State::kRunCr : State::kDone;
}

void BodyFraming::inputEnded() {
  if (state_ == State::kDone) return;
  if (kind_ != FramingKind::kUntilClose) {
    throw TransportFailure(Kind::kClosedEarly,
                           "The server closed the connection in the middle of its answer, after " +
                               std::to_string(taken_) + " bytes of the body.",
                           "Try again.");
  }
  runLeft_ = 0;
  state_ = State::kDone;
}

void BodyFraming::step(UINT8 byte) {
  switch (state_) {
    case State::kSizeStart:
      if (hexValue(byte) < 0) throw malformed();
      size_ = 0;
      state_ = State::kSize;
      [[fallthrough]];
    case State::kSize:
      return sizeDigit(byte);
    case State::kExtension:
      return sizeEnds(byte);
    case State::kSizeEnd:
      expect(byte, '\n');
      return openChunk();
    case State::kRunCr:
      expect(byte, '\r');
      state_ = State::kRunLf;
      return;
    case State::kRunLf:
      expect(byte, '\n');
      framingBytes_ = 0;
      state_ = State::kSizeStart;
      return;
    case State::kTrailerStart:
      state_ = byte == '\r' ? State::kLastLf : State::kTrailer;
      return;
    case State::kTrailer:
      if (byte == '\r') state_ = State::kTrailerLf;
      return;
    case State::kTrailerLf:
      expect(byte, '\n');
      state_ = State::kTrailerStart;
      return;
    case State::kLastLf:
      expect(byte, '\n');
      state_ = State::kDone;
      return;
    case State::kRun:
    case State::kDone:
      return;
  }
}

void BodyFraming::sizeDigit(UINT8 byte) {
  const int value = hexValue(byte);
  if (value < 0) return sizeEnds(byte);
  if (size_ >> 60U != 0) throw malformed();
  size_ = size_ << 4U | static_cast<std::uint64_t>(value);
}

// Blanks after the size are sent by servers that pad it; like extensions they are skipped, but a line feed
// among them would let two readers see two different bodies.
void BodyFraming::sizeEnds(UINT8 byte) {
  if (byte == '\r') {
    state_ = State::kSizeEnd;
  } else if (byte == '\n' || (state_ == State::kSize && byte != ';' && byte != ' ' && byte != '\t')) {
    throw malformed();
  } else {
    state_ = State::kExtension;
  }
}

void BodyFraming::openChunk() {
  if (size_ > limit_ - taken_) throw tooLarge(limit_);
  framingBytes_ = 0;
  runLeft_ = size_;
  state_ = size_ == 0 ? State::kTrailerStart : State::kRun;
}

}  // namespace airsync
