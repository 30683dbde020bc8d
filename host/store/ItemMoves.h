// Items that the server moved from one folder to another.
#ifndef AIRSYNC_HOST_STORE_ITEM_MOVES_H
#define AIRSYNC_HOST_STORE_ITEM_MOVES_H

#include <optional>
#include <string>

#include "store/Database.h"
#include "store/FolderTable.h"
#include "store/ItemClasses.h"
#include "store/ItemTable.h"

namespace airsync {

/// See Store::checkMovable and Store::moveItem.
class ItemMoves {
 public:
  ItemMoves(Database& database, FolderTable& folders, ItemTable& items, PendingTable& pending,
            ItemClasses& classes)
      : database_(database), folders_(folders), items_(items), pending_(pending), classes_(classes) {}

  void check(ItemNumber item, FolderNumber to);

  /// A transaction of its own.
  void move(ItemNumber item, FolderNumber to, const std::optional<std::string>& newServerId);

 private:
  void moveTo(const ItemRow& item, FolderNumber to, const std::string& newServerId,
              const FolderState& target);
  void moveWithoutId(const ItemRow& item, FolderNumber to, const FolderState& target);

  Database& database_;
  FolderTable& folders_;
  ItemTable& items_;
  PendingTable& pending_;
  ItemClasses& classes_;
};

}  // namespace airsync

#endif
