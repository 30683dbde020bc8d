// Looking at items and changing them.
#include <charconv>

#include "store/FolderTypes.h"
#include "store/Store.h"
#include "store/StoreParts.h"

namespace airsync {
namespace {

constexpr std::size_t kPage = 200;  // lines of a list that are read at once

[[noreturn]] void refuseItem(const std::string& subject) {
  throw Error({.kind = ErrorKind::item,
               .operation = "looking for",
               .subject = subject,
               .cause = "there is no such item",
               .advice = "See \"airsync list\" for the items of a folder."});
}

}  // namespace

void Store::listItems(FolderNumber folder, const std::function<bool(const ItemSummary&)>& each) const {
  const auto state =
      parts_->database.guarded("listing items in", [&] { return parts_->folders.state(folder); });
  if (!state || !folderType(state->type).dataType) return;
  const ItemContents& contents = parts_->classes.ofFolderType(state->type);
  const std::string& table = contents.table();
  const std::string sql = std::string("SELECT item.id, item.server_id, ") + kPendingChangeColumns + ", " +
                          contents.summaryColumns() + " FROM item JOIN " + table + " ON " + table +
                          ".item_id = item.id AND " + table +
                          ".version = 0 LEFT JOIN pending ON pending.item_id = item.id "
                          "WHERE item.folder_id = ? AND item.id > ? AND pending.dropped IS NOT 1 AND "
                          "pending.kind IS NOT 'delete' ORDER BY item.id LIMIT ?";
  // Page by page, so that a slow reader holds no snapshot of the file, and `each` may call the store.
  std::vector<ItemSummary> page;
  ItemNumber last = 0;
  do {
    page.clear();
    parts_->database.guarded("listing items in", [&] {
      Query query(parts_->database, sql);
      query.bind(folder).bind(last).bind(static_cast<std::int64_t>(kPage));
      while (query.step()) {
        page.push_back({.number = query.integer(0),
                        .serverId = query.maybeText(1),
                        .pending = pendingChange(query, 2),
                        .details = contents.summary(query, 6)});
      }
    });
    for (const ItemSummary& line : page) {
      if (!each(line)) return;
      last = line.number;
    }
  } while (page.size() == kPage);
}

ItemNumber Store::findItem(FolderNumber folder, std::string_view text) const {
  return parts_->database.guarded("looking for an item in", [&] {
    ItemNumber number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    std::optional<ItemRow> item;
    if (error == std::errc() && end == text.data() + text.size()) item = parts_->items.find(number);
    if (!item || item->folder != folder) item = parts_->items.findByServerId(folder, std::string(text));
    if (!item) refuseItem("\"" + std::string(text) + "\"");
    return item->number;
  });
}

StoredItem Store::item(ItemNumber item) const {
  return parts_->database.guarded("reading an item in", [&] {
    // An item is many rows: half of it as it was and half as it is would be no item that ever was.
    const Snapshot snapshot(parts_->database);
    const auto row = parts_->items.find(item);
    const auto pending = row ? parts_->pending.find(item) : std::nullopt;
    const bool deleted = pending && (pending->dropped || pending->change.kind == ChangeKind::remove);
    if (!row || deleted) refuseItem("item " + std::to_string(item));
    const auto folder = parts_->folders.state(row->folder);
    if (!folder) refuseItem("item " + std::to_string(item));
    return StoredItem{.number = item,
                      .folder = row->folder,
                      .serverId = row->serverId,
                      .pending = pending ? std::optional(pending->change) : std::nullopt,
                      .value = parts_->classes.ofFolderType(folder->type).load(item, Version::shown)};
  });
}

ItemNumber Store::addItem(FolderNumber folder, const ItemValue& value) {
  return parts_->database.guarded("adding an item to", [&] { return parts_->edits.add(folder, value); });
}

void Store::changeItem(ItemNumber item, const ItemValue& value) {
  parts_->database.guarded("changing an item in", [&] { parts_->edits.change(item, value); });
}

void Store::markMail(ItemNumber item, bool read) {
  parts_->database.guarded("marking a mail in", [&] { parts_->edits.mark(item, read); });
}

void Store::deleteItem(ItemNumber item) {
  parts_->database.guarded("deleting an item in", [&] { parts_->edits.remove(item); });
}

void Store::checkMovable(ItemNumber item, FolderNumber to) const {
  parts_->database.guarded("looking for an item in", [&] { parts_->moves.check(item, to); });
}

void Store::moveItem(ItemNumber item, FolderNumber to, const std::optional<std::string>& newServerId) {
  parts_->database.guarded("moving an item in", [&] { parts_->moves.move(item, to, newServerId); });
}

std::vector<Failure> Store::failures(std::optional<FolderNumber> folder) const {
  static const std::string sql =
      "SELECT folder.id, folder.name, item.id, item.server_id, pending.since, folder.type, item.copy_of, " +
      std::string(kPendingChangeColumns) +
      " FROM pending JOIN item ON item.id = pending.item_id JOIN folder ON folder.id = pending.folder_id "
      "WHERE pending.state <> 'waiting' AND (?1 IS NULL OR pending.folder_id = ?1) ORDER BY pending.id";
  return parts_->database.guarded("reading the failures in", [&] {
    std::vector<Failure> failures;
    Query query(parts_->database, sql);
    query.bind(folder);
    while (query.step()) {
      const auto since = query.maybeText(4);
      const ItemNumber item = query.integer(2);
      ItemContents& contents = parts_->classes.ofFolderType(static_cast<INT32>(query.integer(5)));
      failures.push_back({.folder = static_cast<FolderNumber>(query.integer(0)),
                          .folderName = query.text(1),
                          .item = item,
                          .serverId = query.maybeText(3),
                          .name = contents.displayName(item),
                          .copyOf = query.null(6) ? std::nullopt : std::optional(query.integer(6)),
                          .change = *pendingChange(query, 7),
                          .since = since ? UtcTime::parse(*since) : std::nullopt});
    }
    return failures;
  });
}

void Store::retry(ItemNumber item) {
  parts_->database.guarded("retrying a change in", [&] { parts_->edits.retry(item); });
}

void Store::discard(ItemNumber item) {
  parts_->database.guarded("giving up a change in", [&] { parts_->edits.discard(item); });
}

std::vector<TrashedItem> Store::trash() const {
  return parts_->database.guarded("reading the trash in", [&] {
    const Snapshot snapshot(parts_->database);
    return parts_->trash.list(parts_->classes);
  });
}

ItemValue Store::trashedItem(ItemNumber item) const {
  return parts_->database.guarded("reading the trash in", [&] {
    const Snapshot snapshot(parts_->database);
    const auto type = parts_->trash.typeOf(item);
    if (!type) refuseItem("item " + std::to_string(item) + " of the trash");
    return parts_->classes.ofFolderType(*type).load(item, Version::shown);
  });
}

ItemNumber Store::restoreItem(ItemNumber item, std::optional<FolderNumber> to) {
  return parts_->database.guarded("restoring an item in", [&] { return parts_->edits.restore(item, to); });
}

int Store::purgeTrash() {
  return parts_->database.guarded("emptying the trash in", [&] {
    Transaction transaction(parts_->database, Durability::process);
    const int purged = parts_->trash.purge();
    transaction.commit();
    return purged;
  });
}

}  // namespace airsync
