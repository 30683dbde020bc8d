// What the server sends of its own accord.
#ifndef AIRSYNC_HOST_STORE_INCOMING_ITEMS_H
#define AIRSYNC_HOST_STORE_INCOMING_ITEMS_H

#include <optional>
#include <string>
#include <unordered_map>
#include <unordered_set>

#include "store/Conflicts.h"
#include "store/SyncFolder.h"

namespace airsync {

/// The incoming half of one AirSync::Sync; Store.h tells the rules. All within the transaction of a response,
/// but for completeDownload and carryOutDeletions, which are called in one of their own.
class IncomingItems {
 public:
  IncomingItems(const SyncTables& tables, const SyncFolder& folder, Conflicts& conflicts);

  /// An addition of an item that is known is a change of it, and the other way round.
  void put(const std::string& serverId, const void* record, Extent extent, SyncOutcome& counts);
  /// The item is marked; it goes with carryOutDeletions. One that came in this AirSync::Sync is forgotten at
  /// once: nobody has seen it.
  void remove(const std::string& serverId);

  /// An item that was fetched: only its contents are news. False: it is not known here (any more).
  bool refresh(const std::string& serverId, const void* record);

  /// Whether the item came new with this response and looks like `original`.
  bool isEcho(ItemNumber item, ItemNumber original);

  /// The response is stored, or undone. `unansweredChanged`: local changes have become unanswered, or are so
  /// again.
  void endResponse(bool unansweredChanged);

  /// All items have come after a reset: what did not come is not on the server.
  void completeDownload();

  /// The server has said all that it had to say: what it deleted goes to the trash, unless it is too much.
  void carryOutDeletions(SyncOutcome& counts);

 private:
  using Unanswered = std::unordered_multimap<std::string, ItemNumber>;

  bool adopt(const std::string& serverId, const void* record, SyncOutcome& counts);
  bool adoptAs(ItemNumber item, const std::string& serverId, const void* record, SyncOutcome& counts);
  std::optional<ItemNumber> findUnanswered(const void* record);
  void loadUnanswered();
  Version sentVersion(ItemNumber item);

  SyncTables tables_;
  const SyncFolder& folder_;
  Conflicts& conflicts_;
  ItemNumber newestBefore_ =
      0;  // items with higher numbers came in this AirSync::Sync, or were made meanwhile
  std::unordered_set<ItemNumber> fresh_;  // items that came new with this response
  // Additions without an answer, by what they are called by everywhere, and by their likeness; see
  // ItemContents.
  std::optional<Unanswered> unansweredByIdentity_;
  Unanswered unansweredByLikeness_;
};

}  // namespace airsync

#endif
