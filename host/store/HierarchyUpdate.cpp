#include "store/HierarchyUpdate.h"

#include <cstring>
#include <vector>

#include "store/FolderTypes.h"
#include "support/Error.h"

namespace airsync {
namespace {

using namespace AIRSYNC_STACK;

template <std::size_t size>
std::string textOf(const char (&field)[size]) {
  return {field, strnlen(field, size)};
}

}  // namespace

void HierarchyUpdate::begin() {
  if (!transaction_) transaction_.emplace(database_);
}

void HierarchyUpdate::update(const BASE_FOLDER& folder, int operation) {
  const std::string serverId = textOf(folder.serverId.text);
  if (serverId.empty()) return;  // nothing could ever be said about such a folder
  begin();
  if (operation != AS_FOLDER_DELETED) {
    store(folder, serverId);
    return;
  }
  Query query(database_, "SELECT id FROM folder WHERE server_id = ?");
  if (query.bind(serverId).step()) remove(static_cast<FolderNumber>(query.integer(0)));
}

void HierarchyUpdate::store(const BASE_FOLDER& folder, const std::string& serverId) {
  seen_.insert(serverId);
  // A folder can't keep items of a class that it has no more.
  Query known(database_, "SELECT id, type FROM folder WHERE server_id = ?");
  if (known.bind(serverId).step() &&
      folderType(static_cast<INT32>(known.integer(1))).dataType != folderType(folder.type).dataType) {
    remove(static_cast<FolderNumber>(known.integer(0)));
  }
  const std::string parentId = textOf(folder.parentId.text);
  const std::string name = textOf(folder.displayName);
  Query(database_,
        "INSERT INTO folder(server_id, parent_id, name, type) VALUES (?, ?, ?, ?) ON CONFLICT(server_id) "
        "DO UPDATE SET parent_id = excluded.parent_id, name = excluded.name, type = excluded.type")
      .bind(serverId)
      .bind(parentId)
      .bind(name)
      .bind(folder.type)
      .run();
}

bool HierarchyUpdate::isForMail(FolderNumber folder) {
  Query query(database_, "SELECT type FROM folder WHERE id = ?");
  return query.bind(folder).step() &&
         folderType(static_cast<INT32>(query.integer(0))).dataType == DATATYPE_EMAIL;
}

// What a person added or changed there and could not be sent stays, as failures in a folder that is marked;
// everything else goes to the trash. A mail does, too, when its mark was not sent: the mark says nothing
// without it.
void HierarchyUpdate::remove(FolderNumber folder) {
  const auto run = [&](const char* sql) { Query(database_, sql).bind(folder).run(); };
  if (isForMail(folder)) run("DELETE FROM pending WHERE folder_id = ? AND kind = 'change'");
  run("DELETE FROM item WHERE id IN (SELECT item_id FROM pending WHERE folder_id = ? AND (kind = 'delete' OR "
      "dropped = 1))");
  const std::string now = UtcTime::now().text();
  Query(database_,
        "INSERT INTO trash(item_id, folder_id, folder_name, type, reason, since) SELECT item.id, folder.id, "
        "folder.name, folder.type, 'Its folder was deleted on the server.', ? FROM item JOIN folder ON "
        "folder.id = folder_id WHERE folder_id = ? AND NOT EXISTS (SELECT 1 FROM pending WHERE item_id = "
        "item.id)")
      .bind(now)
      .bind(folder)
      .run();
  run("UPDATE item SET folder_id = 0, server_id = NULL, deleted_there = 0, revision = revision + 1 WHERE "
      "folder_id = ? AND id IN (SELECT item_id FROM trash)");
  for (const char* table : {"contact", "event", "mail"}) {
    Query(database_, std::string("DELETE FROM ") + table +
                         " WHERE version > 0 AND item_id IN (SELECT item_id FROM trash WHERE folder_id = ?)")
        .bind(folder)
        .run();
  }
  run("DELETE FROM folder WHERE id = ? AND NOT EXISTS (SELECT 1 FROM item WHERE folder_id = folder.id)");
  run("UPDATE folder SET gone = 1, server_id = NULL, sync_key = '0', asked_key = NULL, reconciling = 0 "
      "WHERE id = ?");
  run("UPDATE item SET server_id = NULL, deleted_there = 0 WHERE folder_id = ?");
  run("DELETE FROM contact WHERE version > 0 AND item_id IN (SELECT id FROM item WHERE folder_id = ?)");
  run("DELETE FROM event WHERE version > 0 AND item_id IN (SELECT id FROM item WHERE folder_id = ?)");
  Query(database_,
        "UPDATE pending SET kind = 'add', state = 'failed', status = 0, handed = 0, sent_key = NULL, "
        "sent_revision = NULL, sent_kind = NULL, blamed = 0, reason = 'Its folder was deleted on the "
        "server.', since = ? WHERE folder_id = ?")
      .bind(now)
      .bind(folder)
      .run();
}

void HierarchyUpdate::removeMissing() {
  if (seen_.empty()) {
    throw Error({.kind = ErrorKind::folder,
                 .operation = "storing the folder hierarchy",
                 .subject = {},
                 .cause = "the server listed no folders at all",
                 .advice = "Nothing was changed here. Try again later, or ask the server's administrator.",
                 .result = AS_RESULT_MALFORMED_DOCUMENT});
  }
  std::vector<FolderNumber> missing;
  Query query(database_, "SELECT id, server_id FROM folder WHERE gone = 0");
  while (query.step()) {
    if (!seen_.contains(query.text(1))) missing.push_back(static_cast<FolderNumber>(query.integer(0)));
  }
  for (const FolderNumber folder : missing) remove(folder);
}

void HierarchyUpdate::commit(const std::string& key) {
  begin();
  if (all_) removeMissing();
  const std::string now = UtcTime::now().text();
  Query(database_, "UPDATE account SET hierarchy_key = ?, hierarchy_time = ?").bind(key).bind(now).run();
  transaction_->commit();
}

}  // namespace airsync
