// Where a response body lies in what arrives, and where it ends.
#ifndef AIRSYNC_TRANSPORT_BODY_FRAMING_H
#define AIRSYNC_TRANSPORT_BODY_FRAMING_H

#include <cstddef>
#include <cstdint>
#include <span>

#include "support/types.h"

namespace airsync {

enum class FramingKind : std::uint8_t { kNone, kLength, kChunked, kUntilClose };

/// Follows the framing of one body. Holds no bytes: the caller shows it what arrived, takes the runs of body
/// bytes that it points out, and tells how many it took:
///
///   input += skipFraming(input);      // chunk sizes, trailers
///   n = min(runLeft(), input.size()); // so many body bytes stand at the start of input now
///   took(n);
///
/// until done(). Throws TransportFailure: kProtocol, kTooLarge, kClosedEarly.
class BodyFraming {
 public:
  /// `length` counts for kLength only. No more than `limit` body bytes are accepted.
  void start(FramingKind kind, std::uint64_t length, std::uint64_t limit);

  /// Reads the framing at the start of `input` and returns its size. 0 inside a run, and when done.
  std::size_t skipFraming(std::span<const UINT8> input);

  std::uint64_t runLeft() const { return runLeft_; }
  void took(std::uint64_t count);

  /// The connection has ended: the proper end of kUntilClose, a cut body otherwise.
  void inputEnded();

  bool done() const { return state_ == State::kDone; }
  std::uint64_t taken() const { return taken_; }

 private:
  // The states of chunked coding, in the order in which they follow each other; the other kinds know kRun
  // and kDone.
  enum class State : std::uint8_t {
    kSizeStart,
    kSize,
    kExtension,
    kSizeEnd,
    kRun,
    kRunCr,
    kRunLf,
    kTrailerStart,
    kTrailer,
    kTrailerLf,
    kLastLf,
    kDone,
  };

  void step(UINT8 byte);
  void sizeDigit(UINT8 byte);
  void sizeEnds(UINT8 byte);
  void openChunk();

  FramingKind kind_ = FramingKind::kNone;
  State state_ = State::kDone;
  std::uint64_t runLeft_ = 0;
  std::uint64_t taken_ = 0;
  std::uint64_t limit_ = 0;
  std::uint64_t size_ = 0;        // of the chunk whose head is being read
  std::size_t framingBytes_ = 0;  // of that head, or of the trailer: bounded
};

}  // namespace airsync

#endif
