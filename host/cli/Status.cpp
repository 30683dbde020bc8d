// airsync status: what is synchronised, what waits and what failed; nothing is asked of the server.
#include <fmt/core.h>

#include "cli/Commands.h"
#include "cli/ExitError.h"
#include "cli/config/Paths.h"
#include "cli/output/Displayable.h"
#include "cli/output/FailureList.h"
#include "cli/output/Json.h"
#include "cli/output/Words.h"
#include "cli/session/SupportedClasses.h"

namespace airsync {

namespace {

constexpr std::size_t kKeyColumns = 24;

// Folders that take part, and those with changes that got stuck.
bool isWorthALine(const Folder& folder) {
  return participationOf(folder) == Participation::yes || folder.pending != 0 || folder.failed != 0;
}

void print(Context& context, const Account& account, const std::vector<Folder>& folders,
           const std::vector<Failure>& failures) {
  Output& output = context.output;
  output.line(
      fmt::format("account {}: {} at {}", account.name, displayable(account.user), account.url.authority()));
  Table table({"FOLDER", "ITEMS", "PENDING", "FAILED", "LAST SYNC", "KEY"});
  for (const Folder& folder : folders) {
    if (!isWorthALine(folder)) continue;
    table.add({displayable(folder.path), std::to_string(folder.items), std::to_string(folder.pending),
               std::to_string(folder.failed), folder.lastSync ? folder.lastSync->text() : "never",
               displayable(folder.syncKey, kKeyColumns)});
  }
  table.print(output);
  const bool several = context.config.accounts.size() > 1;
  for (const std::string& line : failureLines(failures, several ? account.name : "")) output.line(line);
}

}  // namespace

ExitCode runStatus(Context& context) {
  std::vector<ExitCode> codes;
  Json accounts = Json::array();
  for (const Account* account : context.accounts()) {
    try {
      const Store store(storeFile(context.state, account->name));
      const std::vector<Folder> folders = store.folders();
      const std::vector<Failure> failures = store.failures();
      print(context, *account, folders, failures);
      Json json = {{"account", account->name}, {"folders", Json::array()}, {"failures", Json::array()}};
      for (const Folder& folder : folders) json["folders"].push_back(folderJson(*account, folder));
      for (const Failure& failure : failures) json["failures"].push_back(failureJson(failure));
      accounts.push_back(std::move(json));
      codes.push_back(ExitCode::kDone);
    } catch (const Error& error) {
      context.output.error(error);
      codes.push_back(exitCodeOf(error));
    }
  }
  context.output.document({{"accounts", std::move(accounts)}});
  return combine(codes);
}

}  // namespace airsync
