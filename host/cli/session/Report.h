// What a run did, account by account and folder by folder, for people and for machines.
#ifndef AIRSYNC_CLI_SESSION_REPORT_H
#define AIRSYNC_CLI_SESSION_REPORT_H

#include <optional>
#include <string>
#include <vector>

#include "cli/ExitCode.h"
#include "store/StoreTypes.h"
#include "support/Error.h"

namespace airsync {

/// A failure as it is reported. Its texts are displayable.
struct Trouble {
  ExitCode code = ExitCode::kInternal;
  std::string message;
  std::string advice;
};

Trouble troubleOf(const Error& error);

struct FolderReport {
  Folder folder;
  bool skipped = false;
  std::string whySkipped;
  bool tried = false;        // false at the end of a run that ended before: it was not reached
  bool begunAnew = false;    // the server did not know the key
  bool lookedAnew = false;   // additions of an earlier run were looked for in a full download
  SyncOutcome outcome;       // summed up over all calls
  std::size_t notTaken = 0;  // local changes that wait though they were sent: the server did not take them
  std::optional<Trouble> trouble;

  ExitCode exitCode() const;
};

struct AccountReport {
  std::string account;
  std::vector<FolderReport> folders;
  std::vector<Failure> failures;       // local changes that need a person
  std::vector<std::string> notes;      // displayable
  std::optional<Trouble> listTrouble;  // why the list of folders is as it was
  std::optional<Trouble> trouble;      // what ended the account

  /// An account that was ended has the code of what ended it; otherwise its folders and the list of them
  /// decide, and changes that need a person make it partly done.
  ExitCode exitCode() const;
};

/// Adds what one more call did; `initial` and `moreToSend` become those of the last call.
void accumulate(SyncOutcome& sum, const SyncOutcome& outcome);

}  // namespace airsync

#endif
