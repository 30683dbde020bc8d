#include "transport/CancelSignal.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <cerrno>
#include <cstdint>
#include <sys/eventfd.h>
#include <system_error>
#include <unistd.h>

namespace airsync {

CancelSignal::CancelSignal() : descriptor_(::eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC)) {
  if (descriptor_ < 0) throw std::system_error(errno, std::generic_category(), "eventfd");
}

CancelSignal::~CancelSignal() { ::close(descriptor_); }

// Nothing but write() may happen here: a signal handler may be running, and its errno is not ours.
void CancelSignal::raise() const noexcept {
  const int saved = errno;
  const std::uint64_t one = 1;
  // It can only fail because the counter is full: then the signal is raised already.
  [[maybe_unused]] const auto written = ::write(descriptor_, &one, sizeof one);
  errno = saved;
}

void CancelSignal::clear() const noexcept {
  std::uint64_t count = 0;
  [[maybe_unused]] const auto got = ::read(descriptor_, &count, sizeof count);
}

WaitResult waitFor(std::span<pollfd> watched, Clock::time_point deadline, const CancelSignal& cancel) {
  assert(watched.size() <= kMaxWatched);
  std::array<pollfd, kMaxWatched + 1> all{};
  all[0] = {cancel.descriptor(), POLLIN, 0};
  std::copy(watched.begin(), watched.end(), all.begin() + 1);
  for (;;) {
    const int ready = ::poll(all.data(), watched.size() + 1, pollTimeout(deadline));
    if (ready < 0 && errno == EINTR) continue;
    if (ready < 0) throw std::system_error(errno, std::generic_category(), "poll");
    if (all[0].revents != 0) return WaitResult::kCancelled;
    if (ready > 0) {
      std::copy_n(all.begin() + 1, watched.size(), watched.begin());
      return WaitResult::kReady;
    }
    if (Clock::now() >= deadline) return WaitResult::kTimedOut;
  }
}

}  // namespace airsync
