// The trash: what a server deleted, and versions that lost a conflict.
#ifndef AIRSYNC_HOST_STORE_TRASH_TABLE_H
#define AIRSYNC_HOST_STORE_TRASH_TABLE_H

#include <string>
#include <vector>

#include "store/Database.h"
#include "store/ItemClasses.h"
#include "store/ItemTable.h"
#include "store/StoreTypes.h"

namespace airsync {

/// How long something stays in the trash, in days.
constexpr int kTrashDays = 30;

/// What is in the trash are items like others, of the folder 0, which nobody sees; they have no server id and
/// no local change. All but list() within a transaction of the caller's.
class TrashTable {
 public:
  explicit TrashTable(Database& database) : database_(database) {}

  /// Takes an item out of its folder; its number stays. Of its versions the one that people see is kept.
  void put(const ItemRow& item, ItemContents& contents, const std::string& reason);

  /// A new item for the trash, made of a version that an item had. Its contents are the caller's to write.
  ItemNumber makeFor(FolderNumber origin, const std::string& reason);

  /// By the time they came in, the oldest first.
  std::vector<TrashedItem> list(ItemClasses& classes);

  /// The folder type of an item's origin; empty when it is not in the trash.
  std::optional<INT32> typeOf(ItemNumber item);
  std::optional<FolderNumber> originOf(ItemNumber item);

  /// Takes it out, into a folder, as an item that the server does not know.
  void takeOut(ItemNumber item, FolderNumber to, std::int64_t generation);

  /// Forgets what has been there for more than kTrashDays. Returns how many items.
  int purge();

 private:
  void note(ItemNumber item, FolderNumber origin, const std::string& reason);

  Database& database_;
};

}  // namespace airsync

#endif
