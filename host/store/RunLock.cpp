#include "store/RunLock.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <system_error>
#include <unistd.h>

#include "store/StoreFile.h"

namespace airsync {

RunLock::RunLock(const std::filesystem::path& store) {
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
  int outcome = 0;
  do {
    outcome = ::flock(descriptor_, LOCK_EX | LOCK_NB);
  } while (outcome != 0 && errno == EINTR);
  if (outcome == 0) return;

  const int cause = errno;
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

RunLock::~RunLock() { ::close(descriptor_); }

}  // namespace airsync
