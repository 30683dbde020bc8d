// Responses, read from a connection through a buffer.
#ifndef AIRSYNC_TRANSPORT_RESPONSE_STREAM_H
#define AIRSYNC_TRANSPORT_RESPONSE_STREAM_H

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <deque>
#include <optional>
#include <span>
#include <vector>

#include "support/types.h"
#include "transport/BodyFraming.h"
#include "transport/Connection.h"
#include "transport/ResponseHead.h"
#include "transport/WireTrace.h"

namespace airsync {

/// One response after the other of one connection. Body bytes are handed out where they arrived, in the
/// buffer: a small read is a comparison and a copy (take), and only an empty buffer costs a call (read).
/// Large reads go past the buffer. Throws what Connection, parseResponseHead and BodyFraming throw.
class ResponseStream {
 public:
  ResponseStream(std::size_t maxHead, std::uint64_t maxBody);

  /// A new connection: nothing of the old one counts any more.
  void reset();

  /// A new response on the same connection.
  void begin();

  /// Skips interim responses (1xx). The body follows; with status 200 it may have `roomForBody` bytes, where
  /// that is given, otherwise as many as any body.
  ResponseHead readHead(Connection& connection, const WireTrace& trace,
                        std::optional<std::uint64_t> roomForBody = std::nullopt);

  /// The fast path: succeeds when all `count` bytes are at hand, and does nothing otherwise.
  bool take(UINT8* destination, INT32 count) {
    if (count <= 0 || count > end_ - cursor_) return false;
    if (count == 1) {
      *destination = *cursor_++;
      return true;
    }
    std::memcpy(destination, cursor_, static_cast<std::size_t>(count));
    cursor_ += count;
    return true;
  }

  /// Fills `destination`. `got` counts along, so that it holds also after a failure; it stays short without
  /// one when the body ends.
  void read(Connection& connection, std::span<UINT8> destination, std::size_t& got);

  /// Reads the whole body and keeps it, so that whatever is wrong with its framing shows before anything of
  /// it is handed out. The memory goes as the bytes are read.
  void fetch(Connection& connection);

  /// Whether the body ends here. Waits for what tells it, and takes no byte of the body.
  bool endsHere(Connection& connection);

  /// Reads the rest of the body away, at most `limit` bytes. False when it is longer.
  bool drain(Connection& connection, std::size_t limit);

  /// Takes what has arrived already, without waiting. False when there is nothing.
  bool takePending(Connection& connection);

  /// Hands out nothing more of this body, but keeps its place for drain.
  void pause() { end_ = cursor_; }

  /// Whether the body has ended, by its framing, without a single byte.
  bool endedEmpty() const { return framing_.done() && framing_.taken() == 0 && cursor_ == end_; }
  /// Body bytes read so far; exact after a read that came back short.
  std::uint64_t bodyBytes() const { return framing_.taken(); }
  /// Bytes of this response that have arrived, head included.
  std::uint64_t arrived() const { return arrived_; }
  /// Whether there are bytes behind the end of the body: nobody asked for them.
  bool hasSurplus() const { return begin_ != filled_; }

 private:
  std::span<UINT8> freeSpace();
  bool fill(Connection& connection);
  std::size_t findHeadEnd(std::size_t& scanned) const;
  ResponseHead readOneHead(Connection& connection, const WireTrace& trace, std::size_t& budget);
  void settle();
  bool openRun();
  void openBlock();
  bool nextBlock();

  std::size_t maxHead_;
  std::uint64_t maxBody_;
  std::vector<UINT8> buffer_;
  std::size_t begin_ = 0;   // buffer_[begin_, filled_) has arrived and is not used up,
  std::size_t filled_ = 0;  // apart from what take() has taken of the run since
  // The run of body bytes that take() serves: starts at buffer_[begin_].
  const UINT8* cursor_ = nullptr;
  const UINT8* end_ = nullptr;
  std::deque<std::vector<UINT8>> blocks_;  // of a body that was fetched; the front one is being read
  bool fetched_ = false;
  BodyFraming framing_;
  std::uint64_t arrived_ = 0;
};

}  // namespace airsync

#endif
