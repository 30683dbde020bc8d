// The request that is being put together: its head, and the body bytes that have not gone out yet.
#ifndef AIRSYNC_TRANSPORT_OUTGOING_REQUEST_H
#define AIRSYNC_TRANSPORT_OUTGOING_REQUEST_H

#include <cstddef>
#include <span>
#include <string_view>
#include <vector>

#include "support/types.h"

namespace airsync {

/// Collects what the library writes byte by byte, so that it goes out in few pieces. A document is kept
/// whole until its response has begun: one that changes nothing may have to be sent a second time. A message
/// is not kept: it must not be sent twice, and may be large.
class OutgoingRequest {
 public:
  OutgoingRequest() = default;
  ~OutgoingRequest() { clear(); }
  OutgoingRequest(const OutgoingRequest&) = delete;
  OutgoingRequest& operator=(const OutgoingRequest&) = delete;

  /// A new request. A body that the head declares to be a message counts as one, whichever way it is
  /// written.
  void start(std::string_view head, UINT32 contentLength);

  /// Counts `count` body bytes in. False when they are more than were announced.
  bool announce(std::size_t count, bool raw);

  /// Adds bytes to what is staged.
  void stage(std::span<const UINT8> bytes);
  std::span<const UINT8> staged() const { return staged_; }
  /// Forgets what is staged, after it has gone out, and overwrites it: it holds the credentials.
  void clear();

  bool isKept() const { return kept_; }
  /// Whether it may go out again when its first sending may have reached the server.
  bool mayBeRepeated() const;
  /// Whether it carries a message: declared as one, or written raw.
  bool isMessage() const { return message_; }
  bool isComplete() const { return given_ == contentLength_; }
  UINT32 contentLength() const { return contentLength_; }
  UINT32 given() const { return given_; }
  /// Whether `count` more bytes of a message are to be staged rather than sent from where they are.
  bool fits(std::size_t count) const;

 private:
  std::vector<UINT8> staged_;
  UINT32 contentLength_ = 0;
  UINT32 given_ = 0;
  std::size_t headSize_ = 0;
  bool kept_ = false;
  bool message_ = false;
};

}  // namespace airsync

#endif
