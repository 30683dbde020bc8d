// The bell that Cancel rings.
#ifndef AIRSYNC_TRANSPORT_CANCEL_SIGNAL_H
#define AIRSYNC_TRANSPORT_CANCEL_SIGNAL_H

#include <poll.h>
#include <span>

#include "transport/Deadline.h"

namespace airsync {

/// A flag that a poll() can wait for. `raise` may be called from any thread and from a signal handler; it
/// stays raised until `clear`.
class CancelSignal {
 public:
  CancelSignal();
  ~CancelSignal();
  CancelSignal(const CancelSignal&) = delete;
  CancelSignal& operator=(const CancelSignal&) = delete;

  void raise() const noexcept;
  void clear() const noexcept;
  int descriptor() const noexcept { return descriptor_; }

 private:
  int descriptor_;
};

enum class WaitResult { kReady, kTimedOut, kCancelled };

/// Waits until one of `watched` is ready (its revents say which), until `deadline`, or until `cancel` is
/// raised; that wins over the others. `watched` holds at most kMaxWatched entries.
inline constexpr std::size_t kMaxWatched = 15;
WaitResult waitFor(std::span<pollfd> watched, Clock::time_point deadline, const CancelSignal& cancel);

}  // namespace airsync

#endif
