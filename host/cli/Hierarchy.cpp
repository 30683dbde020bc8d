// airsync hierarchy: the server's folders as they are now, as a tree. Nothing is changed here.
#include <algorithm>
#include <fmt/core.h>
#include <vector>

#include "cli/Commands.h"
#include "cli/ExitError.h"
#include "cli/output/Displayable.h"
#include "cli/output/FolderTree.h"
#include "cli/output/Json.h"
#include "cli/session/Turn.h"
#include "store/FolderTypes.h"

namespace airsync {

namespace {

using namespace AIRSYNC_STACK;

// The library's array is copied at once: a later command may release it, and the session's end does.
std::vector<BASE_FOLDER> fetch(AccountSession& session, const Account& account) {
  BASE_FOLDER* folders = nullptr;
  int count = 0;
  session.beginCommand();
  session.require(session.airSync().GetHierarchy(folders, count), "fetching the folders of",
                  "account " + account.name, ErrorKind::account);
  if (!session.answer().isHierarchy()) {
    throw ExitError(ExitCode::kServer,
                    {.operation = "fetching the folders of",
                     .subject = "account " + account.name,
                     .cause = "the server's answer is no list of folders",
                     .advice = "Run it again; if it stays so, tell the server's administrator."});
  }
  std::vector<BASE_FOLDER> copy;
  if (folders != nullptr) copy.assign(folders, folders + count);
  return copy;
}

Json jsonOf(const BASE_FOLDER& folder) {
  return {{"id", folder.serverId.text},
          {"parent", folder.parentId.text},
          {"name", folder.displayName},
          {"type", folder.type},
          {"type_name", folderType(folder.type).name}};
}

}  // namespace

ExitCode runHierarchy(Context& context) {
  const Account& account = context.onlyAccount();
  Turn turn(account, context.runOptions());
  turn.session().connect();
  const std::vector<BASE_FOLDER> folders = fetch(turn.session(), account);
  std::vector<TreeFolder> nodes;
  nodes.reserve(folders.size());
  for (const BASE_FOLDER& folder : folders) nodes.push_back({folder.serverId.text, folder.parentId.text});
  Json list = Json::array();
  Table table({"FOLDER", "TYPE", "ID"});
  for (const TreeLine& line : treeOf(nodes)) {
    const BASE_FOLDER& folder = folders[line.folder];
    constexpr std::size_t kDeepest = 30;
    table.add({std::string(2 * std::min(line.depth, kDeepest), ' ') + displayable(folder.displayName),
               folderType(folder.type).name, displayable(folder.serverId.text)});
    list.push_back(jsonOf(folder));
  }
  if (folders.empty()) context.output.note("the server has no folders");
  table.print(context.output);
  context.output.document({{"account", account.name}, {"folders", std::move(list)}});
  return ExitCode::kDone;
}

}  // namespace airsync
