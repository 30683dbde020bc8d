#include "store/IncomingItems.h"

#include <vector>

namespace airsync {

IncomingItems::IncomingItems(const SyncTables& tables, const SyncFolder& folder, Conflicts& conflicts)
    : tables_(tables), folder_(folder), conflicts_(conflicts) {
  Query newest(tables_.database, "SELECT max(id) FROM item");
  if (newest.step()) newestBefore_ = newest.integer(0);
}

void IncomingItems::put(const std::string& serverId, const void* record, Extent extent, SyncOutcome& counts) {
  if (const auto item = tables_.items.findByServerId(folder_.number, serverId)) {
    if (item->deletedThere) tables_.items.setDeletedThere(item->number, false);
    if (folder_.reconciling) tables_.items.setGeneration(item->number, folder_.generation);
    if (const auto pending = tables_.pending.find(item->number)) {
      conflicts_.changedThere(*item, *pending, record, extent, counts);
    } else {
      tables_.contents.update(item->number, record, extent);
      ++counts.changed;
    }
  } else if (extent == Extent::changes && !tables_.contents.standsAlone(record)) {
    ++counts.ignored;
  } else if (!adopt(serverId, record, counts)) {
    const ItemNumber number = tables_.items.insert(folder_.number, serverId, folder_.generation);
    tables_.contents.write(number, Version::shown, record);
    fresh_.insert(number);
    ++counts.added;
  }
}

void IncomingItems::remove(const std::string& serverId) {
  const auto item = tables_.items.findByServerId(folder_.number, serverId);
  if (!item) return;
  if (item->number > newestBefore_ && !tables_.pending.find(item->number)) {
    tables_.items.remove(item->number);
  } else {
    tables_.items.setDeletedThere(item->number, true);
  }
}

// With a local change the server's version that it was made of is the one to compare with: when the fetched
// one is another, the next response that brings it tells the conflict.
bool IncomingItems::refresh(const std::string& serverId, const void* record) {
  const auto item = tables_.items.findByServerId(folder_.number, serverId);
  if (!item) return false;
  const auto pending = tables_.pending.find(item->number);
  if (!pending || pending->change.kind != ChangeKind::change) {
    tables_.contents.update(item->number, record, Extent::whole);
  } else if (!tables_.contents.canBeAdded() || tables_.contents.same(item->number, Version::server, record)) {
    tables_.contents.updateBehind(item->number, record, Extent::whole);
  }
  return true;
}

bool IncomingItems::isEcho(ItemNumber item, ItemNumber original) {
  if (!fresh_.contains(item)) return false;
  const auto record = tables_.contents.read(item, Version::shown);
  return tables_.contents.covered(original, sentVersion(original), record->record());
}

void IncomingItems::endResponse(bool unansweredChanged) {
  fresh_.clear();
  if (unansweredChanged) unansweredByIdentity_.reset();
}

// What a request carried of it.
Version IncomingItems::sentVersion(ItemNumber item) {
  return tables_.contents.has(item, Version::sent) ? Version::sent : Version::shown;
}

void IncomingItems::loadUnanswered() {
  unansweredByIdentity_.emplace();
  unansweredByLikeness_.clear();
  Query query(tables_.database, "SELECT item_id FROM pending WHERE folder_id = ? AND state = 'unanswered'");
  query.bind(folder_.number);
  while (query.step()) {
    const ItemNumber item = query.integer(0);
    const auto record = tables_.contents.read(item, sentVersion(item));
    const std::string identity = tables_.contents.identity(record->record());
    if (!identity.empty()) unansweredByIdentity_->emplace(identity, item);
    unansweredByLikeness_.emplace(tables_.contents.likeness(record->record()), item);
  }
}

std::optional<ItemNumber> IncomingItems::findUnanswered(const void* record) {
  const auto waits = [&](ItemNumber item) {
    const auto pending = tables_.pending.find(item);
    return pending && pending->change.state == PendingChange::State::unanswered;
  };
  const auto [first, last] = unansweredByIdentity_->equal_range(tables_.contents.identity(record));
  for (auto candidate = first; candidate != last; ++candidate) {
    if (waits(candidate->second)) return candidate->second;
  }
  const auto [begin, end] = unansweredByLikeness_.equal_range(tables_.contents.likeness(record));
  for (auto candidate = begin; candidate != end; ++candidate) {
    const ItemNumber item = candidate->second;
    if (waits(item) && tables_.contents.covered(item, sentVersion(item), record)) return item;
  }
  return std::nullopt;
}

// Whether it is an addition of ours whose answer was lost. Then that is the item, and nothing new.
bool IncomingItems::adopt(const std::string& serverId, const void* record, SyncOutcome& counts) {
  if (!unansweredByIdentity_) loadUnanswered();
  if (unansweredByLikeness_.empty()) return false;
  const auto item = findUnanswered(record);
  return item && adoptAs(*item, serverId, record, counts);
}

bool IncomingItems::adoptAs(ItemNumber item, const std::string& serverId, const void* record,
                            SyncOutcome& counts) {
  const auto pending = tables_.pending.find(item);
  tables_.items.setServerId(item, serverId, folder_.generation);
  if (pending->dropped) {
    tables_.contents.write(item, Version::shown, record);
    tables_.pending.renew(item, ChangeKind::remove);
    tables_.items.bumpRevision(item);
  } else if (tables_.contents.has(item, Version::sent)) {
    // It was edited since: that goes out as a change of what the server has.
    tables_.contents.write(item, Version::server, record);
    tables_.pending.renew(item, ChangeKind::change);
  } else {
    tables_.contents.write(item, Version::shown, record);
    tables_.pending.remove(item);
  }
  tables_.contents.drop(item, Version::sent);
  ++counts.sent;
  return true;
}

void IncomingItems::completeDownload() {
  const auto run = [&](const char* sql) { Query(tables_.database, sql).bind(folder_.number).run(); };
  Query(tables_.database,
        "UPDATE item SET deleted_there = 1 WHERE folder_id = ? AND server_id IS NOT NULL AND generation < ?")
      .bind(folder_.number)
      .bind(folder_.generation)
      .run();
  // The server demonstrably does not have the additions that it never answered. Those to which it answered
  // with an error are not sent again by themselves.
  run("DELETE FROM item WHERE id IN (SELECT item_id FROM pending WHERE folder_id = ? AND "
      "state = 'unanswered' AND dropped = 1)");
  run("UPDATE pending SET state = 'failed', blamed = 0 WHERE folder_id = ? AND state = 'unanswered' AND "
      "blamed = 1");
  run("UPDATE pending SET state = 'waiting', reason = NULL, since = NULL WHERE folder_id = ? AND "
      "state = 'unanswered'");
  tables_.folders.endReconciling(folder_.number);
}

void IncomingItems::carryOutDeletions(SyncOutcome& counts) {
  std::vector<ItemNumber> marked;
  Query deleted(tables_.database, "SELECT id FROM item WHERE folder_id = ? AND deleted_there = 1");
  deleted.bind(folder_.number);
  while (deleted.step()) marked.push_back(deleted.integer(0));
  if (marked.empty()) return;

  std::vector<ItemRow> plain;
  for (const ItemNumber number : marked) {
    const ItemRow item = *tables_.items.find(number);
    const auto pending = tables_.pending.find(number);
    if (pending && pending->change.kind == ChangeKind::remove) {
      tables_.items.remove(number);  // both sides deleted it
    } else if (pending && tables_.contents.canBeAdded()) {
      conflicts_.deletedThere(item, counts);
    } else {
      plain.push_back(item);
    }
  }
  Query known(tables_.database, "SELECT count(*) FROM item WHERE folder_id = ? AND server_id IS NOT NULL");
  known.bind(folder_.number).step();
  const auto items = static_cast<std::size_t>(known.integer(0));
  if (!folder_.rules.allowDeletes && isMassDeletion(plain.size(), items)) {
    counts.withheld = plain.size();
    counts.withheldOf = items;
    return;
  }
  for (const ItemRow& item : plain) {
    tables_.trash.put(item, tables_.contents, "It was deleted on the server.");
    ++counts.deleted;
  }
}

}  // namespace airsync
