#include "store/ItemTable.h"

#include <limits>
#include <stdexcept>
#include <string>

namespace airsync {
namespace {

std::optional<ItemRow> rowOf(Query& query) {
  if (!query.step()) return std::nullopt;
  return ItemRow{.number = query.integer(0),
                 .folder = static_cast<FolderNumber>(query.integer(1)),
                 .serverId = query.maybeText(2),
                 .revision = query.integer(3),
                 .deletedThere = query.integer(4) != 0};
}

constexpr const char* kWaiting = "waiting";
constexpr const char* kFailed = "failed";
constexpr const char* kUnanswered = "unanswered";

}  // namespace

std::optional<ItemRow> ItemTable::find(ItemNumber number) {
  Query query(database_,
              "SELECT id, folder_id, server_id, revision, deleted_there FROM item WHERE id = ? AND "
              "folder_id <> 0");
  return rowOf(query.bind(number));
}

std::optional<ItemRow> ItemTable::findByServerId(FolderNumber folder, const std::string& serverId) {
  Query query(database_,
              "SELECT id, folder_id, server_id, revision, deleted_there FROM item WHERE folder_id = ? AND "
              "server_id = ?");
  return rowOf(query.bind(folder).bind(serverId));
}

ItemNumber ItemTable::insert(FolderNumber folder, const std::optional<std::string>& serverId,
                             std::int64_t generation) {
  Query(database_, "INSERT INTO item(folder_id, server_id, generation) VALUES (?, ?, ?)")
      .bind(folder)
      .bind(serverId)
      .bind(generation)
      .run();
  const ItemNumber number = database_.connection().getLastInsertRowid();
  // Requests write client ids as signed numbers of 32 bits.
  if (number > std::numeric_limits<INT32>::max()) throw std::length_error("all item numbers are used up");
  return number;
}

void ItemTable::remove(ItemNumber number) {
  Query(database_, "DELETE FROM item WHERE id = ?").bind(number).run();
}

void ItemTable::setServerId(ItemNumber number, const std::optional<std::string>& serverId,
                            std::int64_t generation) {
  Query(database_, "UPDATE item SET server_id = ?, generation = ? WHERE id = ?")
      .bind(serverId)
      .bind(generation)
      .bind(number)
      .run();
}

void ItemTable::move(ItemNumber number, FolderNumber folder, const std::optional<std::string>& serverId,
                     std::int64_t generation) {
  Query(database_, "UPDATE item SET folder_id = ?, server_id = ?, generation = ? WHERE id = ?")
      .bind(folder)
      .bind(serverId)
      .bind(generation)
      .bind(number)
      .run();
  Query(
      database_,
      "UPDATE pending SET folder_id = ?, handed = 0, sent_key = NULL, sent_revision = NULL, sent_kind = NULL "
      "WHERE item_id = ?")
      .bind(folder)
      .bind(number)
      .run();
}

void ItemTable::setGeneration(ItemNumber number, std::int64_t generation) {
  Query(database_, "UPDATE item SET generation = ? WHERE id = ?").bind(generation).bind(number).run();
}

void ItemTable::setDeletedThere(ItemNumber number, bool deleted) {
  Query(database_, "UPDATE item SET deleted_there = ? WHERE id = ?").bind(deleted ? 1 : 0).bind(number).run();
}

void ItemTable::setCopyOf(ItemNumber number, ItemNumber original) {
  Query(database_, "UPDATE item SET copy_of = ? WHERE id = ?").bind(original).bind(number).run();
}

void ItemTable::bumpRevision(ItemNumber number) {
  Query(database_, "UPDATE item SET revision = revision + 1 WHERE id = ?").bind(number).run();
}

std::optional<PendingRow> PendingTable::find(ItemNumber item) {
  Query query(database_,
              std::string("SELECT ") + kPendingChangeColumns +
                  ", id, folder_id, dropped, handed, sent_key, sent_revision, sent_kind FROM pending WHERE "
                  "item_id = ?");
  if (!query.bind(item).step()) return std::nullopt;
  PendingRow row;
  row.change = *pendingChange(query, 0);
  row.id = query.integer(4);
  row.item = item;
  row.folder = static_cast<FolderNumber>(query.integer(5));
  row.dropped = query.integer(6) != 0;
  row.handed = query.integer(7) != 0;
  row.sentKey = query.maybeText(8);
  if (!query.null(9)) row.sentRevision = query.integer(9);
  if (const auto kind = query.maybeText(10)) row.sentKind = kindOf(*kind);
  return row;
}

void PendingTable::insert(const ItemRow& item, ChangeKind kind) {
  const std::string word = kindText(kind);
  Query(database_, "INSERT INTO pending(item_id, folder_id, kind) VALUES (?, ?, ?)")
      .bind(item.number)
      .bind(item.folder)
      .bind(word)
      .run();
}

void PendingTable::remove(ItemNumber item) {
  Query(database_, "DELETE FROM pending WHERE item_id = ?").bind(item).run();
}

void PendingTable::renew(ItemNumber item, ChangeKind kind) {
  const std::string word = kindText(kind);
  Query(
      database_,
      "UPDATE pending SET kind = ?, state = 'waiting', status = 0, reason = NULL, since = NULL, dropped = 0, "
      "handed = 0, sent_key = NULL, sent_revision = NULL, sent_kind = NULL, blamed = 0 WHERE item_id = ?")
      .bind(word)
      .bind(item)
      .run();
}

void PendingTable::wake(ItemNumber item, ChangeKind kind) {
  const std::string word = kindText(kind);
  Query(database_,
        "UPDATE pending SET kind = ?, state = 'waiting', status = 0, reason = NULL, since = NULL, "
        "blamed = 0 WHERE item_id = ?")
      .bind(word)
      .bind(item)
      .run();
}

void PendingTable::fail(ItemNumber item, PendingChange::State state, INT32 status,
                        const std::string& reason) {
  const std::string now = UtcTime::now().text();
  const std::string word = state == PendingChange::State::failed ? kFailed : kUnanswered;
  Query(database_,
        "UPDATE pending SET state = ?, status = ?, reason = ?, since = ?, handed = 0, sent_key = NULL, "
        "sent_revision = NULL, sent_kind = NULL WHERE item_id = ?")
      .bind(word)
      .bind(status)
      .bind(reason)
      .bind(now)
      .bind(item)
      .run();
}

void PendingTable::setDropped(ItemNumber item) {
  Query(database_, "UPDATE pending SET dropped = 1 WHERE item_id = ?").bind(item).run();
}

void PendingTable::withdraw(std::int64_t id) {
  Query(database_,
        "UPDATE pending SET handed = 0, sent_key = NULL, sent_revision = NULL, sent_kind = NULL WHERE id = ?")
      .bind(id)
      .run();
}

void PendingTable::postpone(std::int64_t id, INT32 status) {
  withdraw(id);
  Query(database_, "UPDATE pending SET status = ? WHERE id = ?").bind(status).bind(id).run();
}

void PendingTable::blame(ItemNumber item, const std::string& reason) {
  fail(item, PendingChange::State::unanswered, 0, reason);
  Query(database_, "UPDATE pending SET blamed = 1 WHERE item_id = ?").bind(item).run();
}

const char* kindText(ChangeKind kind) {
  return kind == ChangeKind::add ? "add" : kind == ChangeKind::change ? "change" : "delete";
}

ChangeKind kindOf(const std::string& text) {
  return text == "add" ? ChangeKind::add : text == "change" ? ChangeKind::change : ChangeKind::remove;
}

std::optional<PendingChange> pendingChange(const Query& query, int column) {
  const auto kind = query.maybeText(column);
  if (!kind) return std::nullopt;
  const std::string state = query.text(column + 1);
  PendingChange change;
  change.kind = kindOf(*kind);
  change.state = state == kWaiting  ? PendingChange::State::waiting
                 : state == kFailed ? PendingChange::State::failed
                                    : PendingChange::State::unanswered;
  change.status = static_cast<INT32>(query.integer(column + 2));
  change.reason = query.text(column + 3);
  return change;
}

}  // namespace airsync
