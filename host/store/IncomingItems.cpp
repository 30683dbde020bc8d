#include "store/IncomingItems.h"

#include <vector>

namespace airsync {

void IncomingItems::put(const std::string& serverId, const void* record, Extent extent, SyncOutcome& counts) {
  if (const auto item = tables_.items.findByServerId(folder_.number, serverId)) {
    if (folder_.reconciling) tables_.items.setGeneration(item->number, folder_.generation);
    update(*item, record, extent, counts);
  } else if (extent == Extent::changes && !tables_.contents.standsAlone(record)) {
    ++counts.ignored;
  } else if (!adopt(serverId, record, counts)) {
    const ItemNumber number = tables_.items.insert(folder_.number, serverId, folder_.generation);
    tables_.contents.write(number, Version::shown, record);
    fresh_.insert(number);
    ++counts.added;
  }
}

void IncomingItems::update(const ItemRow& item, const void* record, Extent extent, SyncOutcome& counts) {
  const auto pending = tables_.pending.find(item.number);
  const bool localStays = pending && (folder_.clientWins || folder_.reconciling);
  if (localStays && pending->change.kind == ChangeKind::change) {
    tables_.contents.updateBehind(item.number, record, extent);
    return;
  }
  tables_.contents.update(item.number, record, extent);
  ++counts.changed;
  if (pending && !localStays) {
    tables_.contents.drop(item.number, Version::server);
    tables_.pending.remove(item.number);
    ++counts.overwritten;
  }
}

void IncomingItems::remove(const std::string& serverId, SyncOutcome& counts) {
  const auto item = tables_.items.findByServerId(folder_.number, serverId);
  if (!item) return;
  const auto pending = tables_.pending.find(item->number);
  const bool changedHere = pending && pending->change.kind == ChangeKind::change;
  if (changedHere && tables_.contents.canBeAdded() && (folder_.clientWins || folder_.reconciling)) {
    addAnew(item->number);
    return;
  }
  tables_.items.remove(item->number);
  ++counts.deleted;
  if (changedHere) ++counts.overwritten;
}

// What the server had is gone; what a person made of it goes there as a new item.
void IncomingItems::addAnew(ItemNumber item) {
  tables_.items.setServerId(item, std::nullopt, folder_.generation);
  tables_.items.bumpRevision(item);
  tables_.contents.drop(item, Version::server);
  tables_.pending.renew(item, ChangeKind::add);
}

bool IncomingItems::refresh(const std::string& serverId, const void* record) {
  const auto item = tables_.items.findByServerId(folder_.number, serverId);
  if (!item) return false;
  const auto pending = tables_.pending.find(item->number);
  if (pending && pending->change.kind == ChangeKind::change) {
    tables_.contents.updateBehind(item->number, record, Extent::whole);
  } else {
    tables_.contents.update(item->number, record, Extent::whole);
  }
  return true;
}

bool IncomingItems::isEcho(ItemNumber item, ItemNumber original) {
  if (!fresh_.contains(item)) return false;
  const auto record = tables_.contents.read(item, Version::shown);
  return tables_.contents.covered(original, record->record());
}

void IncomingItems::endResponse(bool unansweredChanged) {
  fresh_.clear();
  if (unansweredChanged) unanswered_.reset();
}

void IncomingItems::loadUnanswered() {
  unanswered_.emplace();
  Query query(tables_.database, "SELECT item_id FROM pending WHERE folder_id = ? AND state = 'unanswered'");
  query.bind(folder_.number);
  while (query.step()) {
    const ItemNumber item = query.integer(0);
    const auto record = tables_.contents.read(item, Version::shown);
    unanswered_->emplace(tables_.contents.likeness(record->record()), item);
  }
}

// Whether it is an addition of ours whose answer was lost. Then that is the item, and nothing new.
bool IncomingItems::adopt(const std::string& serverId, const void* record, SyncOutcome& counts) {
  if (!unanswered_) loadUnanswered();
  if (unanswered_->empty()) return false;
  const auto [begin, end] = unanswered_->equal_range(tables_.contents.likeness(record));
  for (auto candidate = begin; candidate != end; ++candidate) {
    const ItemNumber item = candidate->second;
    if (!tables_.contents.covered(item, record)) continue;
    const auto pending = tables_.pending.find(item);
    if (!pending || pending->change.state != PendingChange::State::unanswered) continue;
    tables_.items.setServerId(item, serverId, folder_.generation);
    tables_.contents.write(item, Version::shown, record);
    if (pending->dropped) {
      tables_.pending.renew(item, ChangeKind::remove);
      tables_.items.bumpRevision(item);
    } else {
      tables_.pending.remove(item);
    }
    unanswered_->erase(candidate);
    ++counts.sent;
    return true;
  }
  return false;
}

// What was changed here goes to the server as a new item.
void IncomingItems::addMissingAnew() {
  std::vector<ItemNumber> changedHere;
  Query changed(tables_.database,
                "SELECT item.id FROM pending JOIN item ON item.id = item_id WHERE pending.folder_id = ? AND "
                "kind = 'change' AND generation < ?");
  changed.bind(folder_.number).bind(folder_.generation);
  while (changed.step()) changedHere.push_back(changed.integer(0));
  for (const ItemNumber item : changedHere) addAnew(item);
}

void IncomingItems::completeDownload(SyncOutcome& counts) {
  if (tables_.contents.canBeAdded()) addMissingAnew();
  counts.deleted += static_cast<std::size_t>(
      Query(tables_.database,
            "DELETE FROM item WHERE folder_id = ? AND server_id IS NOT NULL AND generation < ?")
          .bind(folder_.number)
          .bind(folder_.generation)
          .run());
  // The server demonstrably does not have the additions that it never answered.
  const auto run = [&](const char* sql) { Query(tables_.database, sql).bind(folder_.number).run(); };
  run("DELETE FROM item WHERE id IN (SELECT item_id FROM pending WHERE folder_id = ? AND "
      "state = 'unanswered' AND dropped = 1)");
  run("UPDATE pending SET state = 'waiting', reason = NULL, since = NULL WHERE folder_id = ? AND "
      "state = 'unanswered'");
  tables_.folders.endReconciling(folder_.number);
}

}  // namespace airsync
