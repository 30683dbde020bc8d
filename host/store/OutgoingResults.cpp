// The server's answers to local changes; see OutgoingChanges.h.
#include "store/ItemStatus.h"
#include "store/OutgoingChanges.h"

namespace airsync {
namespace {

constexpr INT32 kStatusDone = 0;

}  // namespace

// Which revision of it is on the server's table; empty when it was never sent, so that there is nothing that
// could be answered.
std::optional<std::int64_t> OutgoingChanges::sentRevision(const PendingRow& pending) const {
  if (pending.sentRevision) return pending.sentRevision;
  const auto found = handed_.find(pending.item);
  if (found == handed_.end() || found->second.pendingId != pending.id) return std::nullopt;
  return found->second.revision;
}

void OutgoingChanges::added(ItemNumber clientId, const std::string& serverId, INT32 status,
                            SyncOutcome& counts, const std::function<bool(ItemNumber)>& isEcho) {
  const auto item = tables_.items.find(clientId);
  const auto pending = tables_.pending.find(clientId);
  const bool unsettled = pending && pending->change.kind == ChangeKind::add;
  const auto sent = unsettled ? sentRevision(*pending) : std::nullopt;
  if (!item || item->folder != folder_.number || !sent) {
    answeredAgain(item, clientId, serverId, status, counts);
  } else if (status != kStatusDone) {
    reject(*pending, *item, *sent, status, itemStatusText(status), counts);
  } else if (serverId.empty()) {
    reject(*pending, *item, *sent, status, "The server took the item and gave it no identifier.", counts);
  } else {
    const auto other = tables_.items.findByServerId(folder_.number, serverId);
    const bool taken = other && other->number != item->number;
    if (taken && !isEcho(other->number)) {
      reject(*pending, *item, *sent, status, "The server gave it the identifier of another item.", counts);
      return;
    }
    // The server sent the addition back as one of its own, in the same response.
    if (taken) tables_.items.remove(other->number);
    bind(*pending, *item, serverId, *sent, counts);
  }
}

// An answer for which no addition waits: it is repeated, or about a surplus copy, or about nothing.
void OutgoingChanges::answeredAgain(const std::optional<ItemRow>& item, ItemNumber clientId,
                                    const std::string& serverId, INT32 status, SyncOutcome& counts) {
  const bool known = item && item->folder == folder_.number && item->serverId;
  if (known && item->serverId == serverId) return;
  const auto handed = handed_.find(clientId);
  const bool sentTwice = handed != handed_.end() && handed->second.kind == ChangeKind::add;
  if (known && sentTwice && status == kStatusDone && !serverId.empty()) {
    queueRemoval(serverId);
  } else {
    ++counts.ignored;
  }
}

void OutgoingChanges::bind(const PendingRow& pending, const ItemRow& item, const std::string& serverId,
                           std::int64_t sent, SyncOutcome& counts) {
  tables_.items.setServerId(item.number, serverId, folder_.generation);
  ++counts.sent;
  if (pending.dropped) {
    tables_.pending.renew(item.number, ChangeKind::remove);
    tables_.items.bumpRevision(item.number);
  } else if (item.revision == sent) {
    tables_.pending.remove(item.number);
  } else {
    tables_.pending.renew(item.number, ChangeKind::change);
  }
}

void OutgoingChanges::changed(const std::string& serverId, INT32 status, SyncOutcome& counts) {
  const auto item = tables_.items.findByServerId(folder_.number, serverId);
  const auto pending = item ? tables_.pending.find(item->number) : std::nullopt;
  const auto sent = pending ? sentRevision(*pending) : std::nullopt;
  if (!sent) {
    // It was settled or overwritten by the server's own change, which comes first in a response.
    return;
  }
  if (status == kStatusDone) {
    accept(*pending, *item, *sent, counts);
  } else {
    reject(*pending, *item, *sent, status, itemStatusText(status), counts);
  }
}

void OutgoingChanges::removed(const std::string& serverId, INT32 status, SyncOutcome& counts) {
  changed(serverId, status == kStatusNotFound ? kStatusDone : status, counts);
}

void OutgoingChanges::accept(const PendingRow& pending, const ItemRow& item, std::int64_t sent,
                             SyncOutcome& counts) {
  if (item.revision != sent) {
    // A newer change waits. The server has the older one now, which is not here any more.
    tables_.contents.drop(item.number, Version::server);
    return;
  }
  ++counts.sent;
  if (pending.change.kind == ChangeKind::remove) {
    tables_.items.remove(item.number);
  } else {
    tables_.contents.drop(item.number, Version::server);
    tables_.pending.remove(item.number);
  }
}

// A refusal of an older revision says nothing about the newer one, which is sent next.
void OutgoingChanges::reject(const PendingRow& pending, const ItemRow& item, std::int64_t sent, INT32 status,
                             const std::string& reason, SyncOutcome& counts) {
  if (pending.dropped) {
    tables_.items.remove(item.number);
  } else if (item.revision != sent) {
    tables_.pending.renew(item.number, pending.change.kind);
  } else {
    tables_.pending.fail(item.number, PendingChange::State::failed, status, reason);
    ++counts.refused;
  }
}

// A request that grew since it was first sent could not hold an addition which the server has answered by
// now, and the next one carried it a second time. The surplus item is deleted on the server.
void OutgoingChanges::queueRemoval(const std::string& serverId) {
  if (tables_.items.findByServerId(folder_.number, serverId)) return;
  const ItemNumber number = tables_.items.insert(folder_.number, serverId, folder_.generation);
  tables_.pending.insert({.number = number, .folder = folder_.number, .serverId = serverId, .revision = 0},
                         ChangeKind::remove);
}

}  // namespace airsync
