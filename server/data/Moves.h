// Items that change their folder. An item that is moved ends as a tombstone in its old folder and goes on
// under a new id in the new one, so that devices get a Delete there and an Add here. Its attachments, under
// their handles, and its message go along.
#pragma once

#include <optional>
#include <string>

#include "data/Database.h"
#include "data/ItemStore.h"

namespace demoserver {

class Moves {
 public:
  Moves(Database& database, ItemStore& items) : database_(database), items_(items) {}

  // Moves an item that is not gone, and returns it as it is now.
  Item move(const Item& item, const std::string& folder);

  // The item that one of this id in that folder has become by its last move from there; nothing if it was
  // never moved, or if it no longer is where that move brought it.
  std::optional<Item> movedFrom(const std::string& folder, const std::string& id);

 private:
  Database& database_;
  ItemStore& items_;
};

}  // namespace demoserver
