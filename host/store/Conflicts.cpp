#include "store/Conflicts.h"

namespace airsync {
namespace {

constexpr const char* kOursLost =
    "It was changed on the server as well, and the configuration lets the server's version win.";
constexpr const char* kTheirsLost =
    "It was changed here as well, and the configuration lets the local version win.";
constexpr const char* kOursDeleted =
    "It was changed here and deleted on the server, and the configuration lets the server win.";
constexpr const char* kTheirsDeleted =
    "It was changed on the server and deleted here, and the configuration lets the local side win.";

}  // namespace

void Conflicts::changedThere(const ItemRow& item, const PendingRow& pending, const void* record,
                             Extent extent, SyncOutcome& counts) {
  ItemContents& contents = tables_.contents;
  if (!contents.canBeAdded()) {
    // A mail: whether it was read says nothing against what else the server changes, nor against a deletion.
    if (pending.change.kind == ChangeKind::change) {
      contents.updateBehind(item.number, record, extent);
    } else {
      contents.update(item.number, record, extent);
    }
    return;
  }
  const bool deletedHere = pending.change.kind == ChangeKind::remove;
  if (deletedHere && contents.same(item.number, Version::shown, record)) return;
  if (deletedHere) {
    edited(item, record, extent, counts);
  } else if (contents.same(item.number, Version::shown, record)) {
    // Both did the same, or it is ours come back.
    if (pending.mayBeUnderWay()) ++counts.sent;
    takeTheirs(item.number, record, extent);
  } else if (contents.same(item.number, Version::server, record) ||
             contents.same(item.number, Version::sent, record)) {
    contents.updateBehind(item.number, record, extent);  // nobody changed it there but we
  } else {
    edited(item, pending, record, extent, counts);
  }
}

// Changed on both sides.
void Conflicts::edited(const ItemRow& item, const PendingRow& pending, const void* record, Extent extent,
                       SyncOutcome& counts) {
  ItemContents& contents = tables_.contents;
  if (pending.mayBeUnderWay()) undecided_.insert(item.number);
  switch (folder_.rules.conflict) {
    case ConflictRule::local: {
      contents.updateBehind(item.number, record, extent);
      copyToTrash(item, contents.load(item.number, Version::server), kTheirsLost);
      // Also when the server takes what is under way: it goes out again, on top of theirs.
      tables_.items.bumpRevision(item.number);
      undecided_.erase(item.number);
      note(Conflict::Outcome::localWon, item.number, 0, counts);
      return;
    }
    case ConflictRule::server:
      copyToTrash(item, contents.load(item.number, Version::shown), kOursLost);
      note(Conflict::Outcome::serverWon, item.number, 0, counts);
      break;
    case ConflictRule::keepBoth:
      note(Conflict::Outcome::keptBoth, item.number, keepBeside(item), counts);
      break;
  }
  ++counts.overwritten;
  ++counts.changed;
  takeTheirs(item.number, record, extent);
}

// Changed there and deleted here.
void Conflicts::edited(const ItemRow& item, const void* record, Extent extent, SyncOutcome& counts) {
  ItemContents& contents = tables_.contents;
  if (folder_.rules.conflict == ConflictRule::local) {
    contents.update(item.number, record, extent);
    copyToTrash(item, contents.load(item.number, Version::shown), kTheirsDeleted);
    note(Conflict::Outcome::localWon, item.number, 0, counts);
    return;
  }
  const auto pending = tables_.pending.find(item.number);
  if (pending && pending->mayBeUnderWay()) undecided_.insert(item.number);
  takeTheirs(item.number, record, extent);
  ++counts.changed;
  note(Conflict::Outcome::broughtBack, item.number, 0, counts);
}

void Conflicts::takeTheirs(ItemNumber item, const void* record, Extent extent) {
  tables_.contents.update(item, record, extent);
  tables_.contents.drop(item, Version::server);
  tables_.contents.drop(item, Version::sent);
  tables_.pending.remove(item);
  tables_.items.bumpRevision(item);
}

void Conflicts::deletedThere(const ItemRow& item, SyncOutcome& counts) {
  if (folder_.rules.conflict != ConflictRule::server) {
    note(Conflict::Outcome::addedAnew, item.number, 0, counts);
    addAnew(item);
    return;
  }
  note(Conflict::Outcome::serverWon, item.number, 0, counts);
  tables_.trash.put(item, tables_.contents, kOursDeleted);
  ++counts.overwritten;
  ++counts.deleted;
}

// What the server had is gone; what a person made of it goes there as a new item.
void Conflicts::addAnew(const ItemRow& item) {
  tables_.items.setServerId(item.number, std::nullopt, folder_.generation);
  tables_.items.setDeletedThere(item.number, false);
  tables_.items.bumpRevision(item.number);
  tables_.contents.drop(item.number, Version::server);
  tables_.contents.drop(item.number, Version::sent);
  tables_.pending.renew(item.number, ChangeKind::add);
}

void Conflicts::copyToTrash(const ItemRow& item, const ItemValue& value, const char* reason) {
  const ItemNumber copy = tables_.trash.makeFor(item.folder, reason);
  tables_.contents.write(copy, Version::shown, value);
}

ItemNumber Conflicts::keepBeside(const ItemRow& item) {
  ItemContents& contents = tables_.contents;
  ItemValue ours = contents.load(item.number, Version::shown);
  contents.identify(ours, true);
  const ItemNumber copy = tables_.items.insert(folder_.number, std::nullopt, folder_.generation);
  tables_.items.setCopyOf(copy, item.number);
  contents.write(copy, Version::shown, ours);
  tables_.items.bumpRevision(copy);
  tables_.pending.insert({.number = copy, .folder = folder_.number, .serverId = std::nullopt, .revision = 1},
                         ChangeKind::add);
  tables_.pending.fail(copy, PendingChange::State::failed, 0,
                       "It is your version of item " + std::to_string(item.number) +
                           ", which was changed on the server as well; that item has the server's version.");
  return copy;
}

void Conflicts::assertUndecided() {
  for (const ItemNumber item : undecided_) {
    const auto row = tables_.items.find(item);
    if (!row || tables_.pending.find(item)) continue;
    const ItemValue shown = tables_.contents.load(item, Version::shown);
    tables_.contents.write(item, Version::server, shown);
    tables_.pending.insert(*row, ChangeKind::change);
    tables_.items.bumpRevision(item);
  }
  undecided_.clear();
}

void Conflicts::note(Conflict::Outcome outcome, ItemNumber item, ItemNumber copy, SyncOutcome& counts) {
  counts.conflicts.push_back(
      {.outcome = outcome, .item = item, .copy = copy, .name = tables_.contents.displayName(item)});
}

}  // namespace airsync
