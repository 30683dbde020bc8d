#include "transport/PollingSocket.h"

#include <array>
#include <linux/sockios.h>
#include <sys/ioctl.h>

namespace airsync {

bool PollingSocket::wait(short event, boost::system::error_code& error) {
  const Clock::time_point idleEnd = Clock::now() + patience_.idle;
  std::array<pollfd, 1> watched{{{socket_.native_handle(), event, 0}}};
  switch (waitFor(watched, std::min(idleEnd, patience_.end), cancel_)) {
    case WaitResult::kReady:
      waitEnd_ = WaitEnd::kReady;
      break;
    case WaitResult::kCancelled:
      waitEnd_ = WaitEnd::kCancelled;
      break;
    case WaitResult::kTimedOut:
      waitEnd_ = patience_.end <= idleEnd ? WaitEnd::kTotal : WaitEnd::kIdle;
      break;
  }
  error = waitEnd_ == WaitEnd::kReady ? boost::system::error_code()
                                      : boost::system::error_code(boost::asio::error::operation_aborted);
  return waitEnd_ == WaitEnd::kReady;
}

bool PollingSocket::hasUnconfirmed() {
  int waiting = 0;
  return ::ioctl(socket_.native_handle(), SIOCOUTQ, &waiting) == 0 && waiting > 0;
}

bool PollingSocket::isResetWithin(std::chrono::milliseconds time) {
  std::array<pollfd, 1> watched{{{socket_.native_handle(), 0, 0}}};
  return waitFor(watched, Clock::now() + time, cancel_) == WaitResult::kReady;
}

void PollingSocket::progress(std::size_t count) {
  moved_ += count;
  if (moved_ < Patience::kProgress || patience_.renewal.count() == 0) return;
  moved_ = 0;
  patience_.end = Clock::now() + patience_.renewal;
}

}  // namespace airsync
