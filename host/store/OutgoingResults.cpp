// The server's answers to local changes; see OutgoingChanges.h.
#include "store/ItemStatus.h"
#include "store/OutgoingChanges.h"

namespace airsync {
namespace {

constexpr INT32 kStatusDone = 0;
constexpr INT32 kStatusConflict = 7;

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
  const bool known = item && item->folder == folder_.number;
  if (!known || !sent) {
    // An answer for which no addition waits: repeated, or about nothing.
    if (!known || item->serverId != serverId) ++counts.ignored;
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

void OutgoingChanges::bind(const PendingRow& pending, const ItemRow& item, const std::string& serverId,
                           std::int64_t sent, SyncOutcome& counts) {
  tables_.items.setServerId(item.number, serverId, folder_.generation);
  ++counts.sent;
  if (pending.dropped) {
    showSent(item.number);
    tables_.pending.renew(item.number, ChangeKind::remove);
    tables_.items.bumpRevision(item.number);
  } else if (item.revision == sent) {
    tables_.pending.remove(item.number);
  } else {
    keepSent(item.number);
    tables_.pending.renew(item.number, ChangeKind::change);
  }
}

// A newer change waits, and what was sent is what the server has now.
void OutgoingChanges::keepSent(ItemNumber item) {
  if (tables_.contents.has(item, Version::sent)) {
    tables_.contents.move(item, Version::sent, Version::server);
  } else {
    tables_.contents.drop(item, Version::server);
  }
}

// The same where the newer change is a deletion: were it given up, the server's version would show.
void OutgoingChanges::showSent(ItemNumber item) {
  if (tables_.contents.has(item, Version::sent)) {
    tables_.contents.move(item, Version::sent, Version::shown);
  }
}

void OutgoingChanges::changed(const std::string& serverId, INT32 status, SyncOutcome& counts) {
  const auto item = tables_.items.findByServerId(folder_.number, serverId);
  if (item && status != kStatusDone) conflicts_.refused(item->number);
  const auto pending = item ? tables_.pending.find(item->number) : std::nullopt;
  const auto sent = pending ? sentRevision(*pending) : std::nullopt;
  if (!sent) {
    // It was settled or overwritten by the server's own change, which comes first in a response.
    return;
  }
  const bool change = pending->sentKind.value_or(pending->change.kind) == ChangeKind::change;
  if (status == kStatusDone) {
    accept(*pending, *item, *sent, counts);
  } else if (status == kStatusNotFound && change && tables_.contents.canBeAdded()) {
    goneThere(*pending, *item, counts);
  } else if (status == kStatusConflict && pending->change.status != kStatusConflict) {
    // The server has a version of its own, and our rule decides when it is here. A server that says so again
    // without having sent it has refused the change.
    tables_.pending.postpone(pending->id, status);
    counts.receiveAgain = true;
  } else {
    reject(*pending, *item, *sent, status, itemStatusText(status), counts);
  }
}

void OutgoingChanges::removed(const std::string& serverId, INT32 status, SyncOutcome& counts) {
  changed(serverId, status == kStatusNotFound ? kStatusDone : status, counts);
}

void OutgoingChanges::goneThere(const PendingRow& pending, const ItemRow& item, SyncOutcome& counts) {
  if (pending.change.kind == ChangeKind::remove) {
    tables_.items.remove(item.number);
  } else {
    conflicts_.deletedThere(item, counts);
  }
}

void OutgoingChanges::accept(const PendingRow& pending, const ItemRow& item, std::int64_t sent,
                             SyncOutcome& counts) {
  const bool deletion = pending.change.kind == ChangeKind::remove;
  if (item.revision != sent) {
    if (deletion) {
      showSent(item.number);
    } else {
      keepSent(item.number);
    }
    return;
  }
  ++counts.sent;
  if (deletion) {
    ++counts.sentDeletions;
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
    return;
  }
  tables_.contents.drop(item.number, Version::sent);
  if (item.revision != sent) {
    tables_.pending.renew(item.number, pending.change.kind);
  } else {
    tables_.pending.fail(item.number, PendingChange::State::failed, status, reason);
    ++counts.refused;
  }
}

}  // namespace airsync
