// airsync sync [FOLDER...]: both sides hold the same afterwards.
#include <algorithm>
#include <fmt/core.h>

#include "cli/Commands.h"
#include "cli/output/Displayable.h"
#include "cli/output/FailureList.h"
#include "cli/output/Json.h"
#include "cli/output/Words.h"
#include "cli/process/AccountRun.h"

namespace airsync {

namespace {

void tellFolder(Output& output, const std::string& lead, const FolderReport& report) {
  output.endProgress();
  const std::string name = lead + displayable(report.folder.path);
  if (report.begunAnew) output.note(fmt::format("{}: the server had forgotten it, begun anew", name));
  if (report.lookedAnew) {
    output.note(
        fmt::format("{}: what became of earlier additions was not known, so it was received anew", name));
  }
  for (const Conflict& conflict : report.outcome.conflicts) {
    output.note(fmt::format("{}: {}", name, sentenceOf(conflict)));
  }
  if (report.trouble) {
    output.error(report.trouble->message, report.trouble->advice);
    return;
  }
  const std::string done = sentenceOf(report.outcome);
  if (report.notTaken == 0) {
    output.done(fmt::format("{}: {}", name, done));
    return;
  }
  if (done != sentenceOf(SyncOutcome())) output.done(fmt::format("{}: {}", name, done));
  output.error(fmt::format("{}: {} local {} not taken yet: the server answered without a word about {}", name,
                           report.notTaken, report.notTaken == 1 ? "change is" : "changes are",
                           report.notTaken == 1 ? "it" : "them"),
               "run airsync sync again; nothing is lost");
}

// Folders that were passed over, one line for each reason.
void tellSkipped(Output& output, const std::string& lead, const AccountReport& report) {
  std::vector<std::pair<std::string, std::string>> reasons;
  for (const FolderReport& folder : report.folders) {
    if (!folder.skipped) continue;
    auto reason = std::find_if(reasons.begin(), reasons.end(),
                               [&folder](const auto& entry) { return entry.first == folder.whySkipped; });
    if (reason == reasons.end()) reason = reasons.insert(reason, {folder.whySkipped, ""});
    reason->second += (reason->second.empty() ? "" : ", ") + displayable(folder.folder.path);
  }
  for (const auto& [reason, folders] : reasons) output.done(fmt::format("{}{}: {}", lead, reason, folders));
}

// Those that a run which ended early never came to.
void tellNotReached(Output& output, const AccountReport& report) {
  std::string paths;
  std::size_t count = 0;
  for (const FolderReport& folder : report.folders) {
    if (folder.tried || folder.skipped || folder.trouble) continue;
    paths += (paths.empty() ? "" : ", ") + displayable(folder.folder.path);
    ++count;
  }
  if (count == 0) return;
  output.error(fmt::format("account {}: {} {} not reached: {}", report.account, count,
                           count == 1 ? "folder was" : "folders were", paths),
               "run airsync sync again for them");
}

void tellAccount(Context& context, const std::string& lead, const AccountReport& report) {
  Output& output = context.output;
  output.endProgress();
  tellSkipped(output, lead, report);
  for (const std::string& note : report.notes) output.note(note);
  if (report.trouble) output.error(report.trouble->message, report.trouble->advice);
  tellNotReached(output, report);
  if (report.failures.empty()) return;
  std::string text =
      fmt::format("account {}: {} local changes need a decision", report.account, report.failures.size());
  const bool several = context.config.accounts.size() > 1;
  for (const std::string& line : failureLines(report.failures, several ? report.account : "")) {
    text += "\n  " + line;
  }
  output.error(text, "");
}

// In a process of the account's own: tells what is done as soon as it is, since a later folder may end the
// process.
ExitCode syncHere(Context& context, const Account& account, const std::string& lead, Child& child,
                  const LeaveOut& leaveOut) {
  context.flight = &child.flight();
  RunOptions run = context.runOptions();
  run.leaveOut = leaveOut.folders;
  run.knownFoldersOnly = leaveOut.list;
  run.listFailed = [&](const Trouble& trouble) {
    context.output.error(trouble.message, trouble.advice);
    context.output.flush();
  };
  run.planned = [&](const std::vector<FolderReport>& folders) { reportPlan(child, folders); };
  run.folderDone = [&](const FolderReport& report) {
    tellFolder(context.output, lead, report);
    context.output.flush();
    reportFolder(child, report);
  };
  const AccountReport report = syncAccount(account, run);
  tellAccount(context, lead, report);
  reportAccount(child, account, report);
  return report.exitCode();
}

}  // namespace

ExitCode runSync(Context& context) {
  const std::vector<const Account*> accounts = context.accounts();
  std::vector<ExitCode> codes;
  Json reports = Json::array();
  for (const Account* account : accounts) {
    const std::string lead = accounts.size() > 1 ? account->name + ": " : "";
    AccountEnd end = runAccount(context.output, *account, [&](Child& child, const auto& leaveOut) {
      return syncHere(context, *account, lead, child, leaveOut);
    });
    reports.push_back(std::move(end.report));
    codes.push_back(end.code);
    if (codes.back() == ExitCode::kInterrupted) break;
  }
  const ExitCode code = combine(codes);
  context.output.document({{"accounts", std::move(reports)}, {"exit", exitJson(code)}});
  return code;
}

}  // namespace airsync
