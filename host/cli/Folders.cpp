// airsync folders [--refresh]: the folders of each account, from the store, or from the server first.
#include <fmt/core.h>

#include "cli/Commands.h"
#include "cli/ExitError.h"
#include "cli/config/Paths.h"
#include "cli/output/Displayable.h"
#include "cli/output/Json.h"
#include "cli/output/Words.h"
#include "cli/process/Child.h"
#include "cli/process/Obituary.h"
#include "cli/session/SupportedClasses.h"
#include "store/FolderTypes.h"

namespace airsync {

namespace {

// "never": it takes part, and no synchronisation of it has come to its end yet.
std::string wordsOf(const Account& account, const Folder& folder) {
  const Participation participation = participationOf(folder);
  if (participation != Participation::yes) return std::string(sentenceOf(participation));
  if (!account.policyFor(folder.name, folder.serverId).selected) return "not selected";
  return folder.lastSync ? "synchronised" : "never";
}

void print(Context& context, const Account& account, const std::vector<Folder>& folders) {
  if (context.accounts().size() > 1) context.output.line(fmt::format("account {}", account.name));
  if (folders.empty()) {
    context.output.note(
        fmt::format("account {}: no folders are known yet; run airsync folders --refresh", account.name));
    return;
  }
  Table table({"FOLDER", "TYPE", "ID", "STATE"});
  for (const Folder& folder : folders) {
    table.add({displayable(folder.path), folderType(folder.type).name, displayable(folder.serverId),
               wordsOf(account, folder)});
  }
  table.print(context.output);
}

// In a process of its own. What went wrong is told already when the result is not kDone.
ExitCode refresh(Context& context, const Account& account) {
  const ChildEnd end = runInChild(context.output, [&](Child& child) {
    context.flight = &child.flight();
    refreshAccount(account, context.runOptions());
    return ExitCode::kDone;
  });
  if (!end.death) return end.code;
  throw obituaryOf(*end.death, {.account = account.name, .operation = "fetching the folders of"});
}

}  // namespace

ExitCode runFolders(Context& context) {
  std::vector<ExitCode> codes;
  Json accounts = Json::array();
  for (const Account* account : context.accounts()) {
    try {
      const ExitCode refreshed = context.options.refresh ? refresh(context, *account) : ExitCode::kDone;
      if (refreshed != ExitCode::kDone) {
        codes.push_back(refreshed);
        continue;
      }
      const Store store(storeFile(context.state, account->name));
      const std::vector<Folder> folders = store.folders();
      Json list = Json::array();
      for (const Folder& folder : folders) list.push_back(folderJson(*account, folder));
      accounts.push_back({{"account", account->name}, {"folders", std::move(list)}});
      print(context, *account, folders);
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
