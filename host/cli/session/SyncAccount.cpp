#include "cli/session/SyncAccount.h"

#include <algorithm>
#include <fmt/core.h>
#include <iterator>

#include "cli/ExitError.h"
#include "cli/output/Displayable.h"
#include "cli/session/SupportedClasses.h"
#include "cli/session/Turn.h"

namespace airsync {

namespace {

constexpr INT32 kDeletedItems = 4;

Trouble notSupported(const Account& account, const Folder& folder) {
  return troubleOf(ExitError(
      ExitCode::kUsage, {.operation = "synchronising",
                         .subject = fmt::format("folder \"{}\" of account {}", folder.path, account.name),
                         .cause = std::string(sentenceOf(participationOf(folder))),
                         .advice = "see airsync folders for those that can be synchronised"}));
}

// A folder that was named is tried even when it is not selected, and it is a failure when it can't be tried.
FolderReport planNamed(const Account& account, const Folder& folder) {
  FolderReport report;
  report.folder = folder;
  if (participationOf(folder) != Participation::yes) report.trouble = notSupported(account, folder);
  return report;
}

FolderReport planAny(const Account& account, const Folder& folder) {
  FolderReport report;
  report.folder = folder;
  const Participation participation = participationOf(folder);
  const bool selected = account.policyFor(folder.name, folder.serverId).selected;
  report.skipped = participation != Participation::yes || !selected;
  if (report.skipped) {
    report.whySkipped =
        participation != Participation::yes ? sentenceOf(participation) : "not selected in the configuration";
  }
  return report;
}

std::vector<FolderReport> plan(const Account& account, const Store& store, const RunOptions& options) {
  std::vector<FolderReport> reports;
  if (options.folders.empty()) {
    for (const Folder& folder : store.uncountedFolders()) reports.push_back(planAny(account, folder));
    // Deletions in other folders bring mails there.
    std::stable_partition(reports.begin(), reports.end(),
                          [](const FolderReport& report) { return report.folder.type != kDeletedItems; });
    return reports;
  }
  for (const std::string& name : options.folders) {
    FolderReport report = planNamed(account, store.findFolder(name));
    const bool known = std::any_of(reports.begin(), reports.end(), [&report](const FolderReport& other) {
      return other.folder.number == report.folder.number;
    });
    if (!known) reports.push_back(std::move(report));
  }
  return reports;
}

void syncOne(const Account& account, Turn& turn, const RunOptions& options, FolderReport& report) {
  report.tried = true;
  try {
    const FolderSettings settings = account.settingsFor(report.folder);
    const SyncRules rules = {.conflict = settings.conflict, .allowDeletes = options.allowDeletes};
    turn.session().syncFolder(settings, rules, report);
  } catch (const Error& error) {
    report.trouble = troubleOf(error);
    if (error.kind() == ErrorKind::account || error.kind() == ErrorKind::cancelled) throw;
  }
}

// Tables of the configuration that are about nothing: most likely a name is misspelt.
std::vector<std::string> unusedTables(const Account& account, const Store& store) {
  std::vector<std::string> notes;
  const std::vector<Folder> folders = store.uncountedFolders();
  for (const auto& [name, policy] : account.folders) {
    const bool used = std::any_of(folders.begin(), folders.end(), [&key = name](const Folder& folder) {
      return folder.name == key || folder.serverId == key;
    });
    if (used) continue;
    notes.push_back(
        fmt::format("account {}: the configuration has a table for folder \"{}\", "
                    "and the server has no such folder",
                    account.name, displayable(name)));
  }
  return notes;
}

std::vector<Failure> failuresOf(const Store& store, const RunOptions& options,
                                const std::vector<FolderReport>& reports) {
  if (options.folders.empty()) return store.failures();
  std::vector<Failure> failures;
  for (const FolderReport& report : reports) {
    const auto some = store.failures(report.folder.number);
    failures.insert(failures.end(), some.begin(), some.end());
  }
  return failures;
}

// Without a new list the folders that are known can be synchronised all the same.
void refresh(Turn& turn, const RunOptions& options, AccountReport& report) {
  if (options.knownFoldersOnly) return;
  try {
    turn.session().refreshFolders();
  } catch (const Error& error) {
    if (error.kind() > ErrorKind::folder || turn.store().hierarchyKey() == "0") throw;
    report.listTrouble = troubleOf(error);
    options.listFailed(*report.listTrouble);
  }
}

void run(const Account& account, const RunOptions& options, AccountReport& report) {
  Turn turn(account, options);
  turn.session().connect();
  turn.store().purgeTrash();
  refresh(turn, options, report);
  // An earlier process died over the first list: there is nothing to go on with.
  if (options.knownFoldersOnly && turn.store().hierarchyKey() == "0") return;
  report.notes = unusedTables(account, turn.store());
  const std::vector<FolderReport> all = plan(account, turn.store(), options);
  std::copy_if(all.begin(), all.end(), std::back_inserter(report.folders), [&](const FolderReport& each) {
    return std::find(options.leaveOut.begin(), options.leaveOut.end(), each.folder.serverId) ==
           options.leaveOut.end();
  });
  options.planned(report.folders);
  for (FolderReport& folder : report.folders) {
    if (folder.skipped) continue;
    if (!folder.trouble) syncOne(account, turn, options, folder);
    options.folderDone(folder);
  }
  report.failures = failuresOf(turn.store(), options, all);
}

}  // namespace

AccountReport syncAccount(const Account& account, const RunOptions& options) {
  AccountReport report;
  report.account = account.name;
  try {
    run(account, options, report);
  } catch (const Error& error) {
    report.trouble = troubleOf(error);
  }
  return report;
}

void refreshAccount(const Account& account, const RunOptions& options) {
  Turn turn(account, options);
  turn.session().connect();
  turn.session().refreshFolders();
}

}  // namespace airsync
