// airsync folder create NAME, folder rename FOLDER NAME, folder delete FOLDER: on the server, and at once
// here.
#include <algorithm>
#include <array>
#include <fmt/core.h>
#include <string_view>

#include "cli/Commands.h"
#include "cli/ExitError.h"
#include "cli/Item.h"
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
std::string parentId(const Store& store, const std::string& parent, Naming naming) {
  if (parent == "/") return "0";
  return naming == Naming::exact ? findExactRemoteFolder(store, parent).serverId
                                 : findRemoteFolder(store, parent).serverId;
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

// What a deletion takes along, in words; empty when there is nothing.
std::string contentsOf(const Folder& folder, const std::vector<Folder>& below) {
  std::size_t items = folder.items;
  std::size_t unsent = folder.pending + folder.failed;
  std::size_t unknown = folder.lastSync ? 0 : 1;
  std::string paths;
  for (const Folder& each : below) {
    items += each.items;
    unsent += each.pending + each.failed;
    unknown += each.lastSync ? 0 : 1;
    paths += (paths.empty() ? "" : ", ") + each.path;
  }
  std::string parts;
  const auto add = [&parts](const std::string& part) { parts += (parts.empty() ? "" : "; ") + part; };
  if (!below.empty()) add(fmt::format("{} folders below it ({})", below.size(), paths));
  if (items != 0) add(fmt::format("{} items that are known here", items));
  if (unsent != 0) add(fmt::format("{} local changes that have not reached the server", unsent));
  if (unknown == 1 && below.empty()) add("whatever it holds, since it was never synchronised");
  if (unknown != 0 && !below.empty()) {
    add(fmt::format("whatever is in {} of these folders, never synchronised", unknown));
  }
  return parts;
}

void refuseToLose(const Folder& folder, const std::string& contents) {
  if (contents.empty()) return;
  throw ExitError(ExitCode::kNeedsPerson,
                  {.kind = ErrorKind::folder,
                   .operation = "deleting",
                   .subject = fmt::format("folder \"{}\"", folder.path),
                   .cause = "this would go with it, on the server and here: " + contents,
                   .advice = "Give --force to delete all of that. Changes that were not sent stay here as "
                             "failures."});
}

Json deletedJson(const std::vector<Folder>& folders) {
  Json list = Json::array();
  for (const Folder& folder : folders) list.push_back({{"id", folder.serverId}, {"path", folder.path}});
  return list;
}

Json keptJson(const std::vector<Removal::Kept>& kept) {
  Json list = Json::array();
  for (const auto& [folder, trouble] : kept) {
    list.push_back({{"id", folder.serverId}, {"path", folder.path}, {"error", troubleJson(trouble)}});
  }
  return list;
}

ExitCode tellRemoval(Context& context, const Account& account, const Folder& folder, const Removal& removal,
                     const std::string& contents) {
  Output& output = context.output;
  std::vector<ExitCode> codes(removal.deleted.size(), ExitCode::kDone);
  for (const Folder& each : removal.deleted) {
    const bool all = each.number == folder.number && !contents.empty();
    output.done(
        fmt::format("{}: deleted{}", displayable(each.path), all ? ", with " + displayable(contents) : ""));
  }
  for (const auto& [each, trouble] : removal.kept) {
    output.error(trouble.message, trouble.advice);
    codes.push_back(trouble.code);
  }
  const ExitCode code = combine(codes);
  output.document({{"account", account.name},
                   {"action", "delete"},
                   {"folder", folderJson(account, folder)},
                   {"deleted", deletedJson(removal.deleted)},
                   {"kept", keptJson(removal.kept)},
                   {"exit", exitJson(code)}});
  return code;
}

}  // namespace

ExitCode runFolderCreate(Context& context) {
  const Options& options = context.options;
  checkFolderName(options.name);
  Work work(context);
  work.begin();
  const std::string parent =
      options.parent ? parentId(work.turn.store(), *options.parent, Naming::easy) : "0";
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
  const Folder before = findExactRemoteFolder(store, options.folder);
  const std::string parent =
      options.parent ? parentId(store, *options.parent, Naming::exact) : before.parentId;
  work.folders.rename(before, options.name, parent);
  tell(context, work.account, "rename", store.folder(before.number),
       fmt::format("was \"{}\" before", displayable(before.path)));
  return ExitCode::kDone;
}

ExitCode runFolderDelete(Context& context) {
  Work work(context);
  work.begin();
  const Folder folder = findExactRemoteFolder(work.turn.store(), context.options.folder);
  const std::string contents = contentsOf(folder, work.folders.below(folder));
  if (!context.options.force) refuseToLose(folder, contents);
  return tellRemoval(context, work.account, folder, work.folders.remove(folder), contents);
}

}  // namespace airsync
