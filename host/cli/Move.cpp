// airsync move FOLDER ID... --to FOLDER: on the server, and at once here.
#include <algorithm>
#include <fmt/core.h>

#include "cli/Commands.h"
#include "cli/ExitError.h"
#include "cli/output/Displayable.h"
#include "cli/output/Json.h"
#include "cli/session/Moves.h"

namespace airsync {

namespace {

// An item that is named twice is moved once.
std::vector<RemoteItem> itemsOf(const Store& store, const Options& options, const Folder& to) {
  std::vector<RemoteItem> items;
  for (const std::string& text : options.items) {
    RemoteItem item = findExactRemoteItem(store, options.folder, text);
    const bool known = std::any_of(items.begin(), items.end(),
                                   [&item](const RemoteItem& other) { return other.number == item.number; });
    if (known) continue;
    store.checkMovable(item.number, to.number);
    items.push_back(std::move(item));
  }
  return items;
}

Json movedJson(const MovedItem& moved) {
  Json json = {{"number", moved.item.number}, {"id", moved.item.id}};
  json["new_id"] = moved.newId ? Json(*moved.newId) : Json(nullptr);
  json["status"] = moved.status;
  json["error"] = troubleJson(moved.trouble);
  return json;
}

}  // namespace

ExitCode runMove(Context& context) {
  const Account& account = context.onlyAccount();
  Turn turn(account, context.runOptions());
  const Folder to = findExactRemoteFolder(turn.store(), context.options.to);
  // All of them are checked before the first one is moved.
  const std::vector<RemoteItem> items = itemsOf(turn.store(), context.options, to);
  turn.session().connect();
  std::vector<ExitCode> codes;
  std::size_t count = 0;
  Json list = Json::array();
  for (const MovedItem& moved : moveItems(turn, items, to)) {
    list.push_back(movedJson(moved));
    codes.push_back(moved.trouble ? moved.trouble->code : ExitCode::kDone);
    if (!moved.trouble) ++count;
    if (!moved.trouble) continue;
    context.output.error(
        fmt::format("moving {}: {}", displayable(moved.item.subject()), moved.trouble->message),
        moved.trouble->advice);
  }
  const ExitCode code = combine(codes);
  context.output.document({{"account", account.name},
                           {"folder", items.front().folder.serverId},
                           {"to", to.serverId},
                           {"items", std::move(list)},
                           {"exit", exitJson(code)}});
  context.output.done(fmt::format("{} of {} items moved to {}", count, items.size(), displayable(to.path)));
  return code;
}

}  // namespace airsync
