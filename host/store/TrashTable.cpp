#include "store/TrashTable.h"

#include "store/FolderTypes.h"

namespace airsync {

void TrashTable::note(ItemNumber item, FolderNumber origin, const std::string& reason) {
  const std::string now = UtcTime::now().text();
  Query(database_,
        "INSERT INTO trash(item_id, folder_id, folder_name, type, reason, since) "
        "SELECT ?, id, name, type, ?, ? FROM folder WHERE id = ?")
      .bind(item)
      .bind(reason)
      .bind(now)
      .bind(origin)
      .run();
}

void TrashTable::put(const ItemRow& item, ItemContents& contents, const std::string& reason) {
  note(item.number, item.folder, reason);
  Query(database_, "DELETE FROM pending WHERE item_id = ?").bind(item.number).run();
  contents.drop(item.number, Version::server);
  contents.drop(item.number, Version::sent);
  Query(database_,
        "UPDATE item SET folder_id = 0, server_id = NULL, deleted_there = 0, revision = revision + 1 WHERE "
        "id = ?")
      .bind(item.number)
      .run();
}

ItemNumber TrashTable::makeFor(FolderNumber origin, const std::string& reason) {
  Query(database_, "INSERT INTO item(folder_id, generation) VALUES (0, 0)").run();
  const ItemNumber item = database_.connection().getLastInsertRowid();
  note(item, origin, reason);
  return item;
}

std::vector<TrashedItem> TrashTable::list(ItemClasses& classes) {
  std::vector<TrashedItem> items;
  Query query(
      database_,
      "SELECT item_id, folder_id, folder_name, type, reason, since FROM trash ORDER BY since, item_id");
  while (query.step()) {
    const auto type = static_cast<INT32>(query.integer(3));
    const ItemNumber number = query.integer(0);
    items.push_back({.number = number,
                     .folder = static_cast<FolderNumber>(query.integer(1)),
                     .folderName = query.text(2),
                     .dataType = folderType(type).dataType.value_or(AIRSYNC_STACK::DATATYPE_CONTACTS),
                     .name = classes.ofFolderType(type).displayName(number),
                     .reason = query.text(4),
                     .since = UtcTime::parse(query.text(5))});
  }
  return items;
}

std::optional<INT32> TrashTable::typeOf(ItemNumber item) {
  Query query(database_, "SELECT type FROM trash WHERE item_id = ?");
  if (!query.bind(item).step()) return std::nullopt;
  return static_cast<INT32>(query.integer(0));
}

std::optional<FolderNumber> TrashTable::originOf(ItemNumber item) {
  Query query(database_, "SELECT folder_id FROM trash WHERE item_id = ?");
  if (!query.bind(item).step()) return std::nullopt;
  return static_cast<FolderNumber>(query.integer(0));
}

void TrashTable::takeOut(ItemNumber item, FolderNumber to, std::int64_t generation) {
  Query(database_, "DELETE FROM trash WHERE item_id = ?").bind(item).run();
  Query(database_,
        "UPDATE item SET folder_id = ?, generation = ?, copy_of = NULL, revision = revision + 1 WHERE id = ?")
      .bind(to)
      .bind(generation)
      .bind(item)
      .run();
}

int TrashTable::purge() {
  const std::string age = "-" + std::to_string(kTrashDays) + " days";
  return Query(database_,
               "DELETE FROM item WHERE id IN (SELECT item_id FROM trash WHERE since < "
               "strftime('%Y-%m-%dT%H:%M:%SZ', 'now', ?))")
      .bind(age)
      .run();
}

}  // namespace airsync
