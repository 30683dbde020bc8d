// airsync trash [ID], restore ID: what the server deleted, and versions that lost a conflict.
#include <charconv>
#include <fmt/core.h>

#include "cli/Commands.h"
#include "cli/Item.h"
#include "cli/config/Paths.h"
#include "cli/output/Displayable.h"
#include "cli/output/Json.h"
#include "cli/output/RecordText.h"
#include "cli/output/Words.h"
#include "formats/ItemJson.h"

namespace airsync {

namespace {

constexpr std::size_t kNameColumns = 40;

// Where it was: the folder's path as it is now, or the name that it had.
std::string placeOf(const Store& store, const TrashedItem& item) {
  for (const Folder& folder : store.uncountedFolders()) {
    if (folder.number == item.folder) return folder.path;
  }
  return item.folderName;
}

Json trashedJson(const Store& store, const TrashedItem& item) {
  return {{"number", item.number},          {"folder", placeOf(store, item)},
          {"class", nameOf(item.dataType)}, {"name", item.name},
          {"reason", item.reason},          {"since", item.since ? Json(item.since->text()) : Json(nullptr)}};
}

ItemNumber trashedNumber(const std::string& text) {
  ItemNumber number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size()) {
    refuse("looking in the trash for", fmt::format("\"{}\"", displayable(text)), "it is not a number",
           "Items in the trash go by the numbers that airsync trash lists.");
  }
  return number;
}

void listTrash(Output& output, const Account& account, const Store& store) {
  const std::vector<TrashedItem> items = store.trash();
  Json list = Json::array();
  for (const TrashedItem& item : items) {
    list.push_back(trashedJson(store, item));
    output.line(fmt::format(
        "{:>6}  {}  {} ({}): {}", item.number, item.since ? item.since->text() : std::string(),
        displayable(item.name, kNameColumns), displayable(placeOf(store, item)), displayable(item.reason)));
  }
  if (items.empty()) output.note("the trash is empty");
  output.document({{"account", account.name}, {"items", std::move(list)}});
}

void showTrashed(Output& output, const Account& account, const Store& store, const std::string& text) {
  const ItemNumber number = trashedNumber(text);
  const Json record = itemToJson(store.trashedItem(number));
  if (output.json()) {
    output.document({{"account", account.name}, {"number", number}, {"record", record}});
    return;
  }
  for (const std::string& line : recordLines(record)) output.line(line);
}

}  // namespace

ExitCode runTrash(Context& context) {
  const Account& account = context.onlyAccount();
  const Store store(storeFile(context.state, account.name));
  if (context.options.item.empty()) {
    listTrash(context.output, account, store);
  } else {
    showTrashed(context.output, account, store, context.options.item);
  }
  return ExitCode::kDone;
}

ExitCode runRestore(Context& context) {
  const Account& account = context.onlyAccount();
  Store store(storeFile(context.state, account.name));
  const ItemNumber number = trashedNumber(context.options.item);
  std::optional<FolderNumber> to;
  if (!context.options.to.empty()) to = store.findFolder(context.options.to).number;
  store.restoreItem(number, to);
  const Folder folder = store.folder(store.item(number).folder);
  context.output.document(
      {{"account", account.name}, {"folder", folder.serverId}, {"number", number}, {"action", "restore"}});
  context.output.done(
      fmt::format("{}: item {} is back; the next sync sends it", displayable(folder.path), number));
  return ExitCode::kDone;
}

}  // namespace airsync
