// Keeps two synchronisations of one account apart.
#ifndef AIRSYNC_HOST_STORE_RUN_LOCK_H
#define AIRSYNC_HOST_STORE_RUN_LOCK_H

#include <chrono>
#include <filesystem>
#include <string>

#include "support/Error.h"

namespace airsync {

/// Another run synchronises this account.
class LockedError : public Error {
 public:
  using Error::Error;
};

/// Held for the whole of a run that talks to the server. It is a lock of the operating system on a file
/// beside the store ("FILE.lock", mode 0600, which stays when the run is over): it ends with the process,
/// however that ends. Looking at the store and making local changes needs no lock.
class RunLock {
 public:
  /// Throws LockedError when another process, or another object of this one, holds the lock and keeps it for
  /// as long as `patience`; Error (account) when the file can't be made.
  explicit RunLock(const std::filesystem::path& store,
                   std::chrono::milliseconds patience = std::chrono::milliseconds(0));
  ~RunLock();
  RunLock(const RunLock&) = delete;
  RunLock& operator=(const RunLock&) = delete;

 private:
  int tryFor(std::chrono::milliseconds patience) const;

  int descriptor_ = -1;
};

}  // namespace airsync

#endif
