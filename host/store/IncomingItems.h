// What the server sends of its own accord.
#ifndef AIRSYNC_HOST_STORE_INCOMING_ITEMS_H
#define AIRSYNC_HOST_STORE_INCOMING_ITEMS_H

#include <optional>
#include <string>
#include <unordered_map>
#include <unordered_set>

#include "store/SyncFolder.h"

namespace airsync {

/// The incoming half of one AirSync::Sync; Store.h tells the rules. All within the transaction of a response,
/// but for completeDownload, which is called in one of its own.
class IncomingItems {
 public:
  IncomingItems(const SyncTables& tables, const SyncFolder& folder) : tables_(tables), folder_(folder) {}

  /// An addition of an item that is known is a change of it, and the other way round.
  void put(const std::string& serverId, const void* record, Extent extent, SyncOutcome& counts);
  void remove(const std::string& serverId, SyncOutcome& counts);

  /// An item that was fetched: only its contents are news. False: it is not known here (any more).
  bool refresh(const std::string& serverId, const void* record);

  /// Whether the item came new with this response and looks like `original`.
  bool isEcho(ItemNumber item, ItemNumber original);

  /// The response is stored, or undone. `unansweredChanged`: local changes have become unanswered, or are so
  /// again.
  void endResponse(bool unansweredChanged);

  /// All items have come after a reset: what did not come is not on the server.
  void completeDownload(SyncOutcome& counts);

 private:
  void update(const ItemRow& item, const void* record, Extent extent, SyncOutcome& counts);
  bool adopt(const std::string& serverId, const void* record, SyncOutcome& counts);
  void loadUnanswered();
  void addAnew(ItemNumber item);
  void addMissingAnew();

  SyncTables tables_;
  const SyncFolder& folder_;
  std::unordered_set<ItemNumber> fresh_;  // items that came new with this response
  // Additions without an answer, by their likeness; see ItemContents.
  std::optional<std::unordered_multimap<std::string, ItemNumber>> unanswered_;
};

}  // namespace airsync

#endif
