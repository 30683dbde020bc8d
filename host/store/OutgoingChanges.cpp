#include "store/OutgoingChanges.h"

#include <utility>
#include <vector>

namespace airsync {

void OutgoingChanges::begin(bool asked) {
  repeating_ = asked;
  Query busy(tables_.database, "SELECT 1 FROM pending WHERE folder_id = ? AND handed = 1 LIMIT 1");
  if (!busy.bind(folder_.number).step()) return;
  Transaction transaction(tables_.database);
  const auto run = [&](const char* sql) { Query(tables_.database, sql).bind(folder_.number).run(); };
  run("DELETE FROM item WHERE id IN (SELECT item_id FROM pending WHERE folder_id = ? AND handed = 1 AND "
      "sent_key IS NULL AND dropped = 1)");
  run("UPDATE pending SET handed = 0 WHERE folder_id = ? AND handed = 1 AND sent_key IS NULL");
  transaction.commit();
  Query sent(tables_.database,
             "SELECT 1 FROM pending WHERE folder_id = ? AND handed = 1 AND sent_key = ? LIMIT 1");
  repeating_ = asked || sent.bind(folder_.number).bind(folder_.key).step();
}

const OutgoingChanges::Handed* OutgoingChanges::next() {
  Handed change;
  if (!last_ && (exhausted_ || !select(change))) return nullptr;  // spares the transaction
  // The first mark of a request must survive a power failure, or the next run would not know that there was
  // a request; for the others the end of the process is enough.
  const bool first = last_ && !markedInThisRequest_;
  Transaction transaction(tables_.database, first ? Durability::power : Durability::process);
  confirmLast();
  const bool full = last_ && folder_.oneByOne;
  const bool found = !exhausted_ && !full && select(change);
  if (found) prepare(change);
  transaction.commit();
  if (last_) handed_.at(*last_).confirmed = true;
  markedInThisRequest_ = markedInThisRequest_ || first;
  last_.reset();
  if (!found) {
    exhausted_ = exhausted_ || repeating_;
    return nullptr;
  }
  cursor_ = change.pendingId;
  last_ = change.item;
  lastRevision_ = std::pair(change.item, change.revision);
  return &handed_.insert_or_assign(*last_, std::move(change)).first->second;
}

void OutgoingChanges::prepare(Handed& change) {
  Query(tables_.database, "UPDATE pending SET handed = 1 WHERE id = ?").bind(change.pendingId).run();
  if (!repeating_) tables_.contents.drop(change.item, Version::sent);
  if (change.kind == ChangeKind::remove) return;
  const bool edited = tables_.contents.has(change.item, Version::sent);
  change.record = tables_.contents.read(change.item, edited ? Version::sent : Version::shown);
}

// A repeated request carries what the first one did, byte for byte, whatever has become of it here meanwhile.
bool OutgoingChanges::select(Handed& change) {
  const std::string columns = "SELECT pending.id, item_id, server_id, " +
                              std::string(repeating_ ? "sent_kind" : "kind") +
                              ", revision FROM pending JOIN item ON item.id = item_id "
                              "WHERE pending.folder_id = ? AND pending.id > ? AND state = 'waiting' AND ";
  Query query(tables_.database, columns + (repeating_ ? "handed = 1 AND sent_key = ? " : "dropped = 0 ") +
                                    "ORDER BY pending.id LIMIT 1");
  query.bind(folder_.number).bind(cursor_);
  if (repeating_) query.bind(folder_.key);
  if (!query.step()) return false;
  change.pendingId = query.integer(0);
  change.item = query.integer(1);
  change.serverId = query.maybeText(2);
  change.kind = kindOf(query.text(3));
  change.revision = query.integer(4);
  return true;
}

// The revision that went out first under a key is the one that counts: a server that got the first request
// answers a repetition without looking at it.
void OutgoingChanges::confirmLast() {
  if (!last_) return;
  const Handed& change = handed_.at(*last_);
  const std::string kind = kindText(change.kind);
  Query(tables_.database,
        "UPDATE pending SET sent_revision = CASE WHEN sent_key = ?1 THEN sent_revision ELSE ?2 END, "
        "sent_key = ?1, sent_kind = ?4 WHERE id = ?3 AND handed = 1")
      .bind(folder_.key)
      .bind(change.revision)
      .bind(change.pendingId)
      .bind(kind)
      .run();
}

void OutgoingChanges::settle(SyncOutcome& counts) {
  for (const auto& [item, change] : handed_) {
    if (change.confirmed) settleSilent(change, counts);
  }
  const std::int64_t kept = last_ ? handed_.at(*last_).pendingId : 0;
  Query(tables_.database,
        "UPDATE pending SET handed = (id = ?2), sent_key = NULL, sent_revision = NULL, sent_kind = NULL "
        "WHERE folder_id = ?1 AND handed = 1")
      .bind(folder_.number)
      .bind(kept)
      .run();
}

// Nothing came for it: the server took it, unless it is an addition.
void OutgoingChanges::settleSilent(const Handed& change, SyncOutcome& counts) {
  const auto pending = tables_.pending.find(change.item);
  const auto item = tables_.items.find(change.item);
  if (!pending || !item || pending->id != change.pendingId || pending->sentKind != change.kind ||
      !pending->sentRevision) {
    return;  // answered, or overtaken by something that came from the server
  }
  if (change.kind == ChangeKind::add) {
    tables_.pending.fail(change.item, PendingChange::State::unanswered, 0,
                         "It was sent, and the server did not say what became of it.");
    ++counts.refused;
    return;
  }
  accept(*pending, *item, *pending->sentRevision, counts);
}

void OutgoingChanges::release() {
  std::erase_if(handed_, [](const auto& entry) { return entry.second.confirmed; });
  markedInThisRequest_ = false;
  exhausted_ = exhausted_ || repeating_;
}

void OutgoingChanges::end() {
  if (handed_.empty()) return;
  Query(
      tables_.database,
      "UPDATE pending SET handed = 0 WHERE folder_id = ? AND handed = 1 AND sent_key IS NULL AND dropped = 0")
      .bind(folder_.number)
      .run();
}

void OutgoingChanges::withdraw() {
  for (const auto& [item, change] : handed_) {
    if (!repeating_) tables_.pending.withdraw(change.pendingId);
  }
}

Blame OutgoingChanges::blame(const std::string& reason) {
  std::vector<ItemNumber> carried;
  for (const auto& [item, change] : handed_) {
    if (change.confirmed) carried.push_back(item);
  }
  if (carried.empty()) return Blame::nothing;
  if (carried.size() > 1) {
    tables_.folders.setOneByOne(folder_.number, true);
    return Blame::several;
  }
  const ItemNumber culprit = carried.front();
  if (handed_.at(culprit).kind == ChangeKind::add) {
    tables_.pending.blame(culprit, reason);
  } else {
    tables_.pending.fail(culprit, PendingChange::State::failed, 0, reason);
  }
  return Blame::one;
}

bool OutgoingChanges::moreToSend() {
  Query query(tables_.database,
              "SELECT 1 FROM pending WHERE folder_id = ? AND state = 'waiting' AND dropped = 0 LIMIT 1");
  return query.bind(folder_.number).step();
}

std::optional<ItemNumber> OutgoingChanges::setAsideLast(const std::string& reason) {
  if (!lastRevision_) return std::nullopt;
  Transaction transaction(tables_.database);
  const auto [number, revision] = *lastRevision_;
  const auto item = tables_.items.find(number);
  if (!item || item->revision != revision || !tables_.pending.find(number)) return std::nullopt;
  tables_.pending.fail(number, PendingChange::State::failed, 0, reason);
  transaction.commit();
  return number;
}

}  // namespace airsync
