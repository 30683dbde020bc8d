// The commands of airsync, one file each. A command reads its arguments from the context, does its work
// through the store or a session, and tells the result; it returns the exit code or throws Error.
#ifndef AIRSYNC_CLI_COMMANDS_H
#define AIRSYNC_CLI_COMMANDS_H

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "cli/ExitCode.h"
#include "cli/Options.h"
#include "cli/config/Config.h"
#include "cli/config/Password.h"
#include "cli/output/Output.h"
#include "cli/process/FlightRecord.h"
#include "cli/session/SyncAccount.h"
#include "store/Store.h"

namespace airsync {

struct Context {
  const Options& options;
  const Config& config;
  std::filesystem::path state;
  const Password* environment;  // AIRSYNC_PASSWORD; null when it is not set
  Output& output;
  FlightRecord* flight = nullptr;  // of the process that works on one account; null elsewhere

  /// The accounts that the command is about.
  std::vector<const Account*> accounts() const { return config.select(options.account); }

  /// The account of a command that is about one. Throws ExitError(kUsage) when it is not clear which.
  const Account& onlyAccount() const;

  /// What a session for these accounts needs. The environment's password goes to no server but the one that
  /// it was meant for: it counts only when one account is concerned.
  RunOptions runOptions() const;
};

ExitCode runFolders(Context& context);
ExitCode runSync(Context& context);
ExitCode runList(Context& context);
ExitCode runShow(Context& context);
ExitCode runAdd(Context& context);
ExitCode runChange(Context& context);
ExitCode runDelete(Context& context);
ExitCode runMark(Context& context);
ExitCode runFetch(Context& context);
ExitCode runAttachment(Context& context);
ExitCode runRetry(Context& context);
ExitCode runDiscard(Context& context);
ExitCode runTrash(Context& context);
ExitCode runRestore(Context& context);
ExitCode runStatus(Context& context);
ExitCode runOptions(Context& context);
ExitCode runHierarchy(Context& context);
ExitCode runFolderCreate(Context& context);
ExitCode runFolderRename(Context& context);
ExitCode runFolderDelete(Context& context);
ExitCode runEstimate(Context& context);
ExitCode runSend(Context& context);
ExitCode runReply(Context& context);
ExitCode runForward(Context& context);
ExitCode runMove(Context& context);
ExitCode runRespond(Context& context);
ExitCode runNotifyEnable(Context& context);
ExitCode runNotifyDisable(Context& context);
ExitCode runNotifyCarriers(Context& context);
ExitCode runNotifyAddress(Context& context);
ExitCode runNotifyCheck(Context& context);

/// Runs the command. One that asks a server about a single account runs in a process of its own; `sync` and
/// `folders` make one for each account.
ExitCode runCommand(Context& context);

}  // namespace airsync

#endif
