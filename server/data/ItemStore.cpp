#include "data/ItemStore.h"

#include "data/ItemEnd.h"

namespace demoserver {
namespace {

Item readItem(Query& row) {
  Item item{row.text(0),         row.text(1),    nullptr,       row.integer(3),
            row.integer(4) != 0, row.integer(5), row.integer(6)};
  if (!item.gone) item.record = nlohmann::json::parse(row.text(2));
  return item;
}

bool differByMoreThanRead(nlohmann::json a, nlohmann::json b) {
  a.erase("Read");
  b.erase("Read");
  return a != b;
}

std::vector<Item> readAll(Query& rows) {
  std::vector<Item> items;
  while (rows.next()) items.push_back(readItem(rows));
  return items;
}

}  // namespace

Item ItemStore::add(const std::string& folder, const nlohmann::json& record) {
  const std::int64_t revision = database_.nextRevision();
  // The number of the change that made it is an item's identity: it is never used again. Clients treat ids
  // as opaque, so this server puts a slash into every one.
  Item item{"i/" + std::to_string(revision), folder, record, revision, false, revision, endOf(record)};
  Query(database_, "INSERT INTO items VALUES(?, ?, ?, ?, 0, ?, ?)", item.id, folder, record.dump(), revision,
        revision, item.until)
      .run();
  return item;
}

std::int64_t ItemStore::replace(const std::string& id, const nlohmann::json& record) {
  const std::int64_t revision = database_.nextRevision();
  std::int64_t contentRevision = revision;
  {
    Query row(database_, "SELECT record, content_revision FROM items WHERE id = ? AND gone = 0", id);
    if (row.next() && !differByMoreThanRead(nlohmann::json::parse(row.text(0)), record))
      contentRevision = row.integer(1);
  }
  Query(database_,
        "UPDATE items SET record = ?, revision = ?, gone = 0, content_revision = ?, until = ? WHERE id = ?",
        record.dump(), revision, contentRevision, endOf(record), id)
      .run();
  return revision;
}

std::int64_t ItemStore::remove(const std::string& id) {
  const std::int64_t revision = database_.nextRevision();
  Query(database_, "UPDATE items SET record = '', revision = ?, gone = 1 WHERE id = ?", revision, id).run();
  return revision;
}

void ItemStore::forgetFolder(const std::string& folder) {
  Query(database_, "DELETE FROM items WHERE folder = ?", folder).run();
}

std::optional<Item> ItemStore::find(const std::string& folder, const std::string& id) {
  Query row(database_,
            "SELECT id, folder, record, revision, gone, content_revision, until FROM items "
            "WHERE id = ? AND folder = ?",
            id, folder);
  if (!row.next()) return std::nullopt;
  return readItem(row);
}

std::vector<Item> ItemStore::changedAfter(const std::string& folder, std::int64_t position, int limit) {
  Query rows(database_,
             "SELECT id, folder, record, revision, gone, content_revision, until FROM items "
             "WHERE folder = ? AND revision > ? ORDER BY revision LIMIT ?",
             folder, position, limit);
  return readAll(rows);
}

std::vector<Item> ItemStore::heldIn(const std::string& folder, const std::string& device,
                                    const EndRange& ends, std::int64_t position, int limit) {
  Query rows(database_,
             "SELECT id, folder, record, revision, gone, content_revision, until FROM items i "
             "WHERE folder = ?1 AND until >= ?3 AND until < ?4 AND gone = 0 AND revision <= ?5 AND EXISTS "
             "(SELECT 1 FROM known k WHERE k.device = ?2 AND k.collection = ?1 AND k.item = i.id) "
             "ORDER BY until LIMIT ?6",
             folder, device, ends.from, ends.to, position, limit);
  return readAll(rows);
}

std::vector<Item> ItemStore::notHeldIn(const std::string& folder, const std::string& device,
                                       const EndRange& ends, std::int64_t position, int limit) {
  Query rows(
      database_,
      "SELECT id, folder, record, revision, gone, content_revision, until FROM items i "
      "WHERE folder = ?1 AND until >= ?3 AND until < ?4 AND gone = 0 AND revision <= ?5 AND NOT EXISTS "
      "(SELECT 1 FROM known k WHERE k.device = ?2 AND k.collection = ?1 AND k.item = i.id) "
      "ORDER BY until DESC LIMIT ?6",
      folder, device, ends.from, ends.to, position, limit);
  return readAll(rows);
}

std::optional<Item> ItemStore::findByText(const std::string& folder, const std::string& field,
                                          const std::string& text) {
  // The record of a tombstone is no JSON.
  Query row(database_,
            "SELECT id, folder, record, revision, gone, content_revision, until FROM items WHERE folder = ? "
            "AND gone = 0 AND CASE gone WHEN 0 THEN json_extract(record, '$.' || ?) END = ? "
            "ORDER BY revision LIMIT 1",
            folder, field, text);
  if (!row.next()) return std::nullopt;
  return readItem(row);
}

std::vector<Item> ItemStore::list(const std::string& folder) {
  Query rows(database_,
             "SELECT id, folder, record, revision, gone, content_revision, until FROM items "
             "WHERE folder = ? AND gone = 0 ORDER BY revision",
             folder);
  return readAll(rows);
}

std::int64_t ItemStore::count(const std::string& folder) {
  Query row(database_, "SELECT count(*) FROM items WHERE folder = ? AND gone = 0", folder);
  row.next();
  return row.integer(0);
}

}  // namespace demoserver
