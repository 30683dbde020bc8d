#include "data/Moves.h"

namespace demoserver {

Item Moves::move(const Item& item, const std::string& folder) {
  Item moved = items_.add(folder, item.record);
  // Before the old item goes, since what still belongs to it goes with it.
  Query(database_, "UPDATE attachments SET item = ? WHERE item = ?", moved.id, item.id).run();
  Query(database_, "UPDATE messages SET item = ? WHERE item = ?", moved.id, item.id).run();
  items_.remove(item.id);
  Query(database_, "INSERT OR REPLACE INTO moves VALUES(?, ?, ?, ?)", item.id, item.folder, moved.id, folder)
      .run();
  return moved;
}

std::optional<Item> Moves::movedFrom(const std::string& folder, const std::string& id) {
  std::string newFolder;
  std::string newId;
  {
    Query row(database_, "SELECT new_folder, new_item FROM moves WHERE item = ? AND folder = ?", id, folder);
    if (!row.next()) return std::nullopt;
    newFolder = row.text(0);
    newId = row.text(1);
  }
  auto item = items_.find(newFolder, newId);
  if (!item || item->gone) return std::nullopt;
  return item;
}

}  // namespace demoserver
