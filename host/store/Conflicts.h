// Items that both sides had their hands on.
#ifndef AIRSYNC_HOST_STORE_CONFLICTS_H
#define AIRSYNC_HOST_STORE_CONFLICTS_H

#include <set>

#include "store/SyncFolder.h"

namespace airsync {

/// Decides by the rule of the run who wins, and keeps what loses; ConflictRule tells the rules. All within
/// the transaction of a response, or of the end of a synchronisation.
///
/// A conflict may come to light in the response to the very request that carried our change. Then it is not
/// known whose version the server has: unless it says that it refused ours, the version that is shown here
/// goes out once more (assertUndecided).
class Conflicts {
 public:
  Conflicts(const SyncTables& tables, const SyncFolder& folder) : tables_(tables), folder_(folder) {}

  /// The server changed an item that has a local change.
  void changedThere(const ItemRow& item, const PendingRow& pending, const void* record, Extent extent,
                    SyncOutcome& counts);

  /// The server deleted a contact or an event that was changed here, or does not have it any more.
  void deletedThere(const ItemRow& item, SyncOutcome& counts);

  /// The server refused the local change of this item: it has its own version.
  void refused(ItemNumber item) { undecided_.erase(item); }

  /// With the response's key: see above. After it, or when the response is undone, nothing is undecided.
  void assertUndecided();
  void forgetUndecided() { undecided_.clear(); }

 private:
  void edited(const ItemRow& item, const PendingRow& pending, const void* record, Extent extent,
              SyncOutcome& counts);
  void edited(const ItemRow& item, const void* record, Extent extent, SyncOutcome& counts);
  void takeTheirs(ItemNumber item, const void* record, Extent extent);
  void copyToTrash(const ItemRow& item, const ItemValue& value, const char* reason);
  ItemNumber keepBeside(const ItemRow& item);
  void addAnew(const ItemRow& item);
  void note(Conflict::Outcome outcome, ItemNumber item, ItemNumber copy, SyncOutcome& counts);

  SyncTables tables_;
  const SyncFolder& folder_;
  std::set<ItemNumber> undecided_;
};

}  // namespace airsync

#endif
