#include "data/MessageStore.h"

namespace demoserver {

void MessageStore::keep(const std::string& item, std::string_view message) {
  Query(database_, "INSERT OR REPLACE INTO messages VALUES(?, ?)", item, Bytes{message}).run();
}

std::optional<std::string> MessageStore::find(const std::string& item) {
  Query row(database_, "SELECT content FROM messages WHERE item = ?", item);
  if (!row.next()) return std::nullopt;
  return row.text(0);
}

}  // namespace demoserver
