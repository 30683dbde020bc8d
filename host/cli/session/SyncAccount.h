// One account's turn in a run: the lock, the login, the folders one after the other.
#ifndef AIRSYNC_CLI_SESSION_SYNC_ACCOUNT_H
#define AIRSYNC_CLI_SESSION_SYNC_ACCOUNT_H

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "cli/config/Config.h"
#include "cli/config/Password.h"
#include "cli/session/Report.h"
#include "cli/session/SessionEvents.h"

namespace airsync {

struct RunOptions {
  std::filesystem::path state;
  const Password* environment = nullptr;  // AIRSYNC_PASSWORD, where it may be used
  std::vector<std::string> folders;       // as the user named them; empty: all that are selected
  std::vector<std::string> leaveOut;      // folders not to touch, by their server ids
  bool allowDeletes = false;              // see SyncRules
  bool knownFoldersOnly = false;          // the list of folders is not asked for
  SessionEvents events;
  // Called when the list of folders could not be brought up to date and those that are known go on, before
  // the first folder is tried, and after each that was.
  std::function<void(const Trouble&)> listFailed;
  std::function<void(const std::vector<FolderReport>&)> planned;
  std::function<void(const FolderReport&)> folderDone;
};

/// Brings the list of folders up to date and synchronises the chosen ones. Never throws an Error: what went
/// wrong is in the report.
AccountReport syncAccount(const Account& account, const RunOptions& options);

/// Brings only the list of folders up to date. Throws Error.
void refreshAccount(const Account& account, const RunOptions& options);

}  // namespace airsync

#endif
