// Local changes on their way: handed out, marked, answered, settled.
#ifndef AIRSYNC_HOST_STORE_OUTGOING_CHANGES_H
#define AIRSYNC_HOST_STORE_OUTGOING_CHANGES_H

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>

#include "store/Conflicts.h"
#include "store/SyncFolder.h"

namespace airsync {

/// The outgoing half of one AirSync::Sync; Store.h tells the rules.
///
/// The library asks for changes until one does not fit into the request any more; it keeps that one, and
/// sends it first in the next request. So a change is certain to be in a request once the next one is asked
/// for, and at that moment, which is before the request goes out, it is marked durably with the key, the
/// revision and what is done with it. Where it is edited before the answer comes, the contents that went out
/// are kept (Version::sent).
class OutgoingChanges {
 public:
  struct Handed {
    std::int64_t pendingId = 0;
    ItemNumber item = 0;
    std::optional<std::string> serverId;
    ChangeKind kind = ChangeKind::add;  // of a repetition what it was then
    std::int64_t revision = 0;
    std::unique_ptr<OutgoingRecord> record;  // null for deletions
    bool confirmed = false;                  // it is in the request
  };

  OutgoingChanges(const SyncTables& tables, const SyncFolder& folder, Conflicts& conflicts)
      : tables_(tables), folder_(folder), conflicts_(conflicts) {}

  /// Forgets what earlier runs handed out and never sent. When one sent a request under the folder's key
  /// (`asked`), what was in it, and nothing else, is handed out.
  void begin(bool asked);

  /// The next change, valid until settle(); null when there is none. A transaction of its own.
  const Handed* next();

  /// Within the transaction of a response.
  void added(ItemNumber clientId, const std::string& serverId, INT32 status, SyncOutcome& counts,
             const std::function<bool(ItemNumber)>& isEcho);
  void changed(const std::string& serverId, INT32 status, SyncOutcome& counts);
  void removed(const std::string& serverId, INT32 status, SyncOutcome& counts);

  /// The key of the exchange is about to be stored: what was in its request is settled, and no change is
  /// marked any more. Within the transaction of the response.
  void settle(SyncOutcome& counts);

  /// After that transaction has become durable: releases the records.
  void release();

  /// After the last exchange.
  void end();

  /// No request that was made since the last key reached the server: what was marked for it is not under
  /// way. What earlier runs marked still is.
  void withdraw();

  /// The server answered the request under the folder's key with an error; see Store::blameRequest.
  Blame blame(const std::string& reason);

  /// Whether changes wait that could be sent.
  bool moreToSend();

  /// See Store::setAsideLast.
  std::optional<ItemNumber> setAsideLast(const std::string& reason);

 private:
  bool select(Handed& change);
  void prepare(Handed& change);
  void confirmLast();
  std::optional<std::int64_t> sentRevision(const PendingRow& pending) const;
  void settleSilent(const Handed& change, SyncOutcome& counts);
  void accept(const PendingRow& pending, const ItemRow& item, std::int64_t sent, SyncOutcome& counts);
  void reject(const PendingRow& pending, const ItemRow& item, std::int64_t sent, INT32 status,
              const std::string& reason, SyncOutcome& counts);
  void keepSent(ItemNumber item);
  void showSent(ItemNumber item);
  void goneThere(const PendingRow& pending, const ItemRow& item, SyncOutcome& counts);
  void bind(const PendingRow& pending, const ItemRow& item, const std::string& serverId, std::int64_t sent,
            SyncOutcome& counts);

  SyncTables tables_;
  const SyncFolder& folder_;
  Conflicts& conflicts_;
  // A request that may have reached the server is repeated: only what was in it is handed out.
  bool repeating_ = false;
  bool exhausted_ = false;
  bool markedInThisRequest_ = false;
  std::int64_t cursor_ = 0;
  std::unordered_map<ItemNumber, Handed> handed_;
  std::optional<ItemNumber> last_;
  std::optional<std::pair<ItemNumber, std::int64_t>> lastRevision_;  // kept for setAsideLast
};

}  // namespace airsync

#endif
