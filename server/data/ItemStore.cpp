#include "data/ItemStore.h"

namespace demoserver {
namespace {

Item readItem(Query& row) {
  Item item{row.text(0), row.text(1), nullptr, row.integer(3), row.integer(4) != 0};
  if (!item.gone) item.record = nlohmann::json::parse(row.text(2));
  return item;
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
  Item item{"i/" + std::to_string(revision), folder, record, revision, false};
  Query(database_, "INSERT INTO items VALUES(?, ?, ?, ?, 0)", item.id, folder, record.dump(), revision).run();
  return item;
}

std::int64_t ItemStore::replace(const std::string& id, const nlohmann::json& record) {
  const std::int64_t revision = database_.nextRevision();
  Query(database_, "UPDATE items SET record = ?, revision = ?, gone = 0 WHERE id = ?", record.dump(),
        revision, id)
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
  Query row(database_, "SELECT id, folder, record, revision, gone FROM items WHERE id = ? AND folder = ?", id,
            folder);
  if (!row.next()) return std::nullopt;
  return readItem(row);
}

std::vector<Item> ItemStore::changedAfter(const std::string& folder, std::int64_t position, int limit) {
  Query rows(database_,
             "SELECT id, folder, record, revision, gone FROM items WHERE folder = ? AND revision > ? "
             "ORDER BY revision LIMIT ?",
             folder, position, limit);
  return readAll(rows);
}

std::vector<Item> ItemStore::list(const std::string& folder) {
  Query rows(database_,
             "SELECT id, folder, record, revision, gone FROM items WHERE folder = ? AND gone = 0 "
             "ORDER BY revision",
             folder);
  return readAll(rows);
}

std::int64_t ItemStore::count(const std::string& folder) {
  Query row(database_, "SELECT count(*) FROM items WHERE folder = ? AND gone = 0", folder);
  row.next();
  return row.integer(0);
}

}  // namespace demoserver
