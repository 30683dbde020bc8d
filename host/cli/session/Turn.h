// Everything that a connection to an account needs, in the order in which it is taken and given back.
#ifndef AIRSYNC_CLI_SESSION_TURN_H
#define AIRSYNC_CLI_SESSION_TURN_H

#include <filesystem>

#include "cli/config/Config.h"
#include "cli/session/AccountSession.h"
#include "cli/session/SyncAccount.h"
#include "store/RunLock.h"
#include "store/Store.h"

namespace airsync {

/// The account's lock, its store and a session. Made, it asks the server nothing yet: whatever can be refused
/// without the server is refused before session().connect(). One exists at a time.
class Turn {
 public:
  /// Throws Error: another run holds the lock, the store can't be opened, there is no password. Of `options`,
  /// only `state`, `environment` and `events` are used.
  Turn(const Account& account, const RunOptions& options);

  Store& store() { return store_; }
  AccountSession& session() { return session_; }

 private:
  std::filesystem::path file_;
  RunLock lock_;
  Store store_;
  AccountSession session_;
};

}  // namespace airsync

#endif
