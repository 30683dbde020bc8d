// The synchronisation of one account, in as many processes as it takes: when a folder's answer ends one, or
// the list of folders does, the next one goes on with the other folders.
#ifndef AIRSYNC_CLI_PROCESS_ACCOUNT_RUN_H
#define AIRSYNC_CLI_PROCESS_ACCOUNT_RUN_H

#include <functional>
#include <string>
#include <vector>

#include "cli/config/Config.h"
#include "cli/output/Json.h"
#include "cli/output/Output.h"
#include "cli/process/Child.h"
#include "cli/session/Report.h"

namespace airsync {

struct AccountEnd {
  ExitCode code = ExitCode::kInternal;
  Json report;  // as reportJson makes it
};

/// What earlier processes of the run have done, or died over.
struct LeaveOut {
  std::vector<std::string> folders;  // their server ids
  bool list = false;                 // the list of folders; those that are known go on
};

/// What each process does: synchronises the account but for what it is to leave out, and reports by the
/// functions below.
using AccountWork = std::function<ExitCode(Child& child, const LeaveOut& leaveOut)>;

AccountEnd runAccount(Output& output, const Account& account, const AccountWork& work);

/// Which folders it will try; once, before the first.
void reportPlan(const Child& child, const std::vector<FolderReport>& folders);
/// A folder that was tried.
void reportFolder(const Child& child, const FolderReport& folder);
/// The whole of it, at the end.
void reportAccount(const Child& child, const Account& account, const AccountReport& report);

}  // namespace airsync

#endif
