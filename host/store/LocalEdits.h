// What a person does to the items: each call is one transaction.
#ifndef AIRSYNC_HOST_STORE_LOCAL_EDITS_H
#define AIRSYNC_HOST_STORE_LOCAL_EDITS_H

#include <functional>
#include <optional>
#include <vector>

#include "store/ContactTable.h"
#include "store/Database.h"
#include "store/FolderTable.h"
#include "store/ItemTable.h"

namespace airsync {

/// See the operations of the same names in Store.
class LocalEdits {
 public:
  LocalEdits(Database& database, FolderTable& folders, ItemTable& items, PendingTable& pending,
             ContactTable& contacts)
      : database_(database), folders_(folders), items_(items), pending_(pending), contacts_(contacts) {}

  ItemNumber add(FolderNumber folder, const Contact& contact);
  void change(ItemNumber item, const Contact& contact);
  void remove(ItemNumber item);
  void retry(ItemNumber item);
  void discard(ItemNumber item);

 private:
  ItemRow visibleItem(const char* operation, ItemNumber item);
  PendingRow pendingOf(const char* operation, ItemNumber item);
  void removeAdded(const ItemRow& item, const PendingRow& pending);
  void discardChange(const PendingRow& pending);

  Database& database_;
  FolderTable& folders_;
  ItemTable& items_;
  PendingTable& pending_;
  ContactTable& contacts_;
};

}  // namespace airsync

#endif
