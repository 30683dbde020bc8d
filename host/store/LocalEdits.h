// What a person does to the items: each call is one transaction.
#ifndef AIRSYNC_HOST_STORE_LOCAL_EDITS_H
#define AIRSYNC_HOST_STORE_LOCAL_EDITS_H

#include <functional>
#include <optional>
#include <vector>

#include "store/Database.h"
#include "store/FolderTable.h"
#include "store/ItemClasses.h"
#include "store/ItemTable.h"
#include "store/TrashTable.h"

namespace airsync {

/// See the operations of the same names in Store.
class LocalEdits {
 public:
  LocalEdits(Database& database, FolderTable& folders, ItemTable& items, PendingTable& pending,
             TrashTable& trash, ItemClasses& classes)
      : database_(database),
        folders_(folders),
        items_(items),
        pending_(pending),
        trash_(trash),
        classes_(classes) {}

  ItemNumber add(FolderNumber folder, const ItemValue& value);
  void change(ItemNumber item, const ItemValue& value);
  void mark(ItemNumber item, bool read);
  void remove(ItemNumber item);
  void retry(ItemNumber item);
  void discard(ItemNumber item);
  ItemNumber restore(ItemNumber item, std::optional<FolderNumber> to);

 private:
  ItemContents& contentsOf(FolderNumber folder);
  void replace(const ItemRow& item, ItemContents& contents, const ItemValue& value);
  ItemRow visibleItem(const char* operation, ItemNumber item);
  PendingRow pendingOf(const char* operation, ItemNumber item);
  void keepSent(const PendingRow& pending, ItemContents& contents);
  void removeAdded(const ItemRow& item, const PendingRow& pending);
  void forgetIfGoneAndEmpty(FolderNumber folder);
  void discardChange(const PendingRow& pending);

  Database& database_;
  FolderTable& folders_;
  ItemTable& items_;
  PendingTable& pending_;
  TrashTable& trash_;
  ItemClasses& classes_;
};

}  // namespace airsync

#endif
