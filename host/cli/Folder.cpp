// airsync folder create NAME, folder rename FOLDER NAME, folder delete FOLDER: on the server, and at once
// here.
#include <algorithm>
#include <array>
#include <fmt/core.h>
#include <string_view>

#include "cli/Commands.h"
#include "cli/ExitError.h"
#include "cli/RemoteItem.h"
#include "cli/output/Displayable.h"
#include "cli/output/Json.h"
#include "cli/session/ServerFolders.h"

namespace airsync {

namespace {

struct CreatableType {
  std::string_view name;
  INT32 number;
};

constexpr std::array<CreatableType, 3> kCreatable = {{{"mail", 12}, {"calendar", 13}, {"contacts", 14}}};

INT32 typeNumber(const std::string& name) {
  const auto* row = std::find_if(kCreatable.begin(), kCreatable.end(),
                                 [&name](const CreatableType& entry) { return entry.name == name; });
  return row == kCreatable.end() ? kCreatable.front().number : row->number;
}

// The server id of the folder that --parent names.
std::string parentId(const Store& store, const std::string& parent) {
  return parent == "/" ? "0" : findRemoteFolder(store, parent).serverId;
}

// Connected, with the folders as the server has them now.
struct Work {
  explicit Work(Context& context)
      : account(context.onlyAccount()), turn(account, context.runOptions()), folders(turn, account) {}

  void begin() {
    turn.session().connect();
    turn.session().refreshFolders();
  }

  const Account& account;
  Turn turn;
  ServerFolders folders;
};

void tell(Context& context, const Account& account, std::string_view action, const Folder& folder,
          const std::string& sentence) {
  context.output.document(
      {{"account", account.name}, {"action", action}, {"folder", folderJson(account, folder)}});
  context.output.done(fmt::format("{}: {}", displayable(folder.path), sentence));
}

void refuseToLoseChanges(const Folder& folder, const std::vector<Folder>& below) {
  std::size_t unsent = folder.pending + folder.failed;
  for (const Folder& each : below) unsent += each.pending + each.failed;
  if (unsent == 0) return;
  throw ExitError(ExitCode::kNeedsPerson,
                  {.kind = ErrorKind::folder,
                   .operation = "deleting",
                   .subject = fmt::format("folder \"{}\"", folder.path),
                   .cause = fmt::format("{} local changes in it have not reached the server", unsent),
                   .advice = "Synchronise it first, or give --force: they stay here as failures then."});
}

}  // namespace

ExitCode runFolderCreate(Context& context) {
  const Options& options = context.options;
  checkFolderName(options.name);
  Work work(context);
  work.begin();
  const std::string parent = options.parent ? parentId(work.turn.store(), *options.parent) : "0";
  const Folder folder = work.folders.create(options.name, typeNumber(options.type), parent);
  tell(context, work.account, "create", folder, "made");
  return ExitCode::kDone;
}

ExitCode runFolderRename(Context& context) {
  const Options& options = context.options;
  checkFolderName(options.name);
  Work work(context);
  work.begin();
  Store& store = work.turn.store();
  const Folder before = findRemoteFolder(store, options.folder);
  const std::string parent = options.parent ? parentId(store, *options.parent) : before.parentId;
  work.folders.rename(before, options.name, parent);
  tell(context, work.account, "rename", store.folder(before.number),
       fmt::format("was \"{}\" before", displayable(before.path)));
  return ExitCode::kDone;
}

ExitCode runFolderDelete(Context& context) {
  Work work(context);
  work.begin();
  const Folder folder = findRemoteFolder(work.turn.store(), context.options.folder);
  if (!context.options.force) refuseToLoseChanges(folder, work.folders.below(folder));
  work.folders.remove(folder);
  tell(context, work.account, "delete", folder, "deleted, with all that was in it");
  return ExitCode::kDone;
}

}  // namespace airsync
