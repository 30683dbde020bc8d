// The end of a process whose mapped file became shorter under its hands.
#ifndef AIRSYNC_CLI_MESSAGE_SHRINK_GUARD_H
#define AIRSYNC_CLI_MESSAGE_SHRINK_GUARD_H

#include <csignal>
#include <cstddef>
#include <string>

namespace airsync {

/// While it exists, touching a part of the mapping that has no file behind it any more ends the process with
/// a sentence on standard error and ExitCode::kNeedsPerson, instead of by a signal that nobody understands.
/// Such bytes can't have been sent, so the message has not gone out whole. Going on is not possible: the
/// access may lie deep within the encryption. One exists at a time.
class ShrinkGuard {
 public:
  ShrinkGuard(const void* mapping, std::size_t size, const std::string& name);
  ~ShrinkGuard();
  ShrinkGuard(const ShrinkGuard&) = delete;
  ShrinkGuard& operator=(const ShrinkGuard&) = delete;

 private:
  struct sigaction before_ = {};
};

}  // namespace airsync

#endif
