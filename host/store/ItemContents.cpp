#include "store/ItemContents.h"

#include <utility>

namespace airsync {

ItemContents::ItemContents(Database& database, std::string table)
    : database_(database), table_(std::move(table)) {}

void ItemContents::update(ItemNumber item, const void* record, Extent /*extent*/) {
  write(item, Version::shown, record);
}

void ItemContents::updateBehind(ItemNumber item, const void* record, Extent /*extent*/) {
  write(item, Version::server, record);
}

bool ItemContents::has(ItemNumber item, Version version) {
  Query query(database_, "SELECT 1 FROM " + table_ + " WHERE item_id = ? AND version = ?");
  return query.bind(item).bind(columnOf(version)).step();
}

void ItemContents::move(ItemNumber item, Version from, Version to) {
  drop(item, to);
  Query(database_, "UPDATE " + table_ + " SET version = ? WHERE item_id = ? AND version = ?")
      .bind(columnOf(to))
      .bind(item)
      .bind(columnOf(from))
      .run();
}

void ItemContents::drop(ItemNumber item, Version version) {
  Query(database_, "DELETE FROM " + table_ + " WHERE item_id = ? AND version = ?")
      .bind(item)
      .bind(columnOf(version))
      .run();
}

}  // namespace airsync
