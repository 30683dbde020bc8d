#include "store/RunLock.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <system_error>
#include <thread>
#include <unistd.h>

#include "store/StoreFile.h"

namespace airsync {

RunLock::RunLock(const std::filesystem::path& store, std::chrono::milliseconds patience) {
  std::filesystem::path file = store;
  file += ".lock";
  const std::string operation = "locking the account by";
  makePrivateDirectory(file.parent_path());
  descriptor_ = openStateFile(file, O_RDWR | O_CREAT);
  if (descriptor_ < 0) {
    throw Error({.operation = operation,
                 .subject = file.string(),
                 .cause = openFailure(errno),
                 .advice = "Make the directory writable, or choose another one for the state."});
  }
  if (!isRegularFile(descriptor_)) {
    ::close(descriptor_);
    throw Error({.operation = operation,
                 .subject = file.string(),
                 .cause = "it is no regular file",
                 .advice = "Move it out of the way."});
  }
  const int cause = tryFor(patience);
  if (cause == 0) return;
  ::close(descriptor_);
  if (cause != EWOULDBLOCK) {
    throw Error({.operation = operation,
                 .subject = file.string(),
                 .cause = std::generic_category().message(cause),
                 .advice = "Keep the state on a file system that knows file locks."});
  }
  throw LockedError({.operation = operation,
                     .subject = file.string(),
                     .cause = "another run synchronises this account",
                     .advice = "Wait until it is done, or end it, and try again."});
}

// 0, or an errno.
int RunLock::tryFor(std::chrono::milliseconds patience) const {
  constexpr std::chrono::milliseconds kPause(20);
  const auto end = std::chrono::steady_clock::now() + patience;
  while (::flock(descriptor_, LOCK_EX | LOCK_NB) != 0) {
    const int cause = errno;
    if (cause == EINTR) continue;
    if (cause != EWOULDBLOCK || std::chrono::steady_clock::now() >= end) return cause;
    std::this_thread::sleep_for(kPause);
  }
  return 0;
}

RunLock::~RunLock() { ::close(descriptor_); }

}  // namespace airsync
