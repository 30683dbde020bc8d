// The tables of items and of their pending local changes.
#ifndef AIRSYNC_HOST_STORE_ITEM_TABLE_H
#define AIRSYNC_HOST_STORE_ITEM_TABLE_H

#include <optional>
#include <string>

#include "store/Database.h"
#include "store/StoreTypes.h"

namespace airsync {

struct ItemRow {
  ItemNumber number = 0;
  FolderNumber folder = 0;
  std::optional<std::string> serverId;
  // Grows with each local change, so that a change made while an older one is under way can be told from it.
  std::int64_t revision = 0;
  bool deletedThere = false;  // by the server; it goes at the end of the synchronisation
};

/// Items, whatever they hold.
class ItemTable {
 public:
  explicit ItemTable(Database& database) : database_(database) {}

  /// Not one that is in the trash.
  std::optional<ItemRow> find(ItemNumber number);
  std::optional<ItemRow> findByServerId(FolderNumber folder, const std::string& serverId);

  /// Throws std::length_error when the numbers that fit a client id are used up.
  ItemNumber insert(FolderNumber folder, const std::optional<std::string>& serverId, std::int64_t generation);

  /// Takes the contents and the pending change along.
  void remove(ItemNumber number);

  void setServerId(ItemNumber number, const std::optional<std::string>& serverId, std::int64_t generation);
  /// To another folder, with its pending change, which counts as never sent from now on.
  void move(ItemNumber number, FolderNumber folder, const std::optional<std::string>& serverId,
            std::int64_t generation);

  void setGeneration(ItemNumber number, std::int64_t generation);
  void setDeletedThere(ItemNumber number, bool deleted);
  void setCopyOf(ItemNumber number, ItemNumber original);
  void bumpRevision(ItemNumber number);

 private:
  Database& database_;
};

struct PendingRow {
  std::int64_t id = 0;
  ItemNumber item = 0;
  FolderNumber folder = 0;
  PendingChange change;
  bool dropped = false;
  bool handed = false;
  std::optional<std::string> sentKey;
  std::optional<std::int64_t> sentRevision;
  std::optional<ChangeKind> sentKind;

  /// Whether the server may have got it, or get it any moment.
  bool mayBeUnderWay() const { return handed || sentKey.has_value(); }
};

/// Pending local changes; the columns are explained in Schema.cpp.
class PendingTable {
 public:
  explicit PendingTable(Database& database) : database_(database) {}

  std::optional<PendingRow> find(ItemNumber item);

  void insert(const ItemRow& item, ChangeKind kind);
  void remove(ItemNumber item);

  /// It waits (again), as a change of this kind that was never sent.
  void renew(ItemNumber item, ChangeKind kind);

  /// It is to be sent with its newest contents; what is known about its sending stays.
  void wake(ItemNumber item, ChangeKind kind);

  /// It needs a person from now on. It is not under way any more.
  void fail(ItemNumber item, PendingChange::State state, INT32 status, const std::string& reason);

  void setDropped(ItemNumber item);

  /// It never was in a request that reached the server.
  void withdraw(std::int64_t id);

  /// It waits on, with the status that the server gave it.
  void postpone(std::int64_t id, INT32 status);

  /// The server answered with an error to a request that carried this alone. `reason` tells with which.
  void blame(ItemNumber item, const std::string& reason);

 private:
  Database& database_;
};

/// The words of the column `pending.kind`, and the columns of a query that pendingChange reads.
const char* kindText(ChangeKind kind);
ChangeKind kindOf(const std::string& text);
constexpr const char* kPendingChangeColumns = "pending.kind, pending.state, pending.status, pending.reason";

/// A pending change from four columns, beginning at `column`; empty when they are null.
std::optional<PendingChange> pendingChange(const Query& query, int column);

}  // namespace airsync

#endif
