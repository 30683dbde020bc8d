// Points in time until which a call waits.
#ifndef AIRSYNC_TRANSPORT_DEADLINE_H
#define AIRSYNC_TRANSPORT_DEADLINE_H

#include <algorithm>
#include <chrono>
#include <limits>

namespace airsync {

using Clock = std::chrono::steady_clock;

/// The time left until `deadline` as poll() wants it: rounded up, so that a wait never ends just before it.
inline int pollTimeout(Clock::time_point deadline, Clock::time_point now = Clock::now()) {
  if (deadline <= now) return 0;
  const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - now).count();
  return static_cast<int>(std::min<decltype(left)>(left, std::numeric_limits<int>::max()));
}

}  // namespace airsync

#endif
