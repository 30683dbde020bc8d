// One AirSync::Sync, seen from the store.
#ifndef AIRSYNC_HOST_STORE_SYNC_SESSION_H
#define AIRSYNC_HOST_STORE_SYNC_SESSION_H

#include <optional>
#include <string>

#include "api/Records.h"
#include "store/IncomingItems.h"
#include "store/OutgoingChanges.h"
#include "store/SyncFolder.h"

namespace airsync {

// The command that runs: AirSync::Sync, or AirSync::Fetch, whose request carries no local changes.
enum class SessionKind { sync, fetch };

/// Takes the library's calls about one folder, collects what a response brings in one transaction, and makes
/// it durable with the key. Members throw; Store keeps that from the library.
class SyncSession {
 public:
  /// Throws Error (folder) when the record does not fit the folder any more, or the folder can't be fetched
  /// from now (see Store::beginFetch), or has to begin anew (see Store::nextStep).
  SyncSession(const SyncTables& tables, AIRSYNC_STACK::FOLDER_INFO& info, SessionKind kind,
              const SyncRules& rules);

  FolderNumber folder() const { return folder_.number; }

  /// Of a fetch: the item that was asked for. Others may come back; they don't count as what arrived.
  void await(const std::string& serverId) { awaited_ = serverId; }

  const OutgoingChanges::Handed* nextChange();

  void put(const std::string& serverId, const void* record, Extent extent);
  void remove(const std::string& serverId);
  void fetched(const std::string& serverId, const void* record, AIRSYNC_STACK::SYNC_RESULT result);

  void added(ItemNumber clientId, const std::string& serverId, INT32 status);
  void changed(const std::string& serverId, INT32 status);
  void removed(const std::string& serverId, INT32 status);

  /// Ends the exchange. An empty key is none: what the response brought is undone.
  void storeKey(const std::string& key);

  /// Undoes what came after the last key. `success`: the server had nothing more to say. `reached`: whether
  /// the last request may have reached it.
  SyncOutcome end(bool success, Reached reached);
  FetchOutcome endFetch(AIRSYNC_STACK::SYNC_RESULT result, Reached reached);

  /// Undoes what came after the last key.
  void undo();

  /// See Store::blameRequest.
  Blame blame(const std::string& reason) { return outgoing_.blame(reason); }

  std::optional<ItemNumber> setAsideLast(const std::string& reason) { return outgoing_.setAsideLast(reason); }

 private:
  void open();
  bool usable(const std::string& serverId);
  void checkAnswered() const;
  void noteAsked();
  void commitFetchedAlone();

  SyncTables tables_;
  AIRSYNC_STACK::FOLDER_INFO& info_;
  SessionKind kind_;
  SyncFolder folder_;
  Conflicts conflicts_;
  OutgoingChanges outgoing_;
  IncomingItems incoming_;
  std::optional<Transaction> transaction_;
  SyncOutcome response_;  // counts of the response that is being stored
  SyncOutcome total_;
  std::string awaited_;
  bool fetched_ = false;    // by the response that is being stored
  bool otherNews_ = false;  // that response brought something beside
  FetchOutcome fetch_;
  bool beganAnew_ = false;       // with the key "0"
  std::size_t contentKeys_ = 0;  // keys of exchanges that were asked with another key than "0"
};

}  // namespace airsync

#endif
