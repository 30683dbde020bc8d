#include "store/SyncSession.h"

#include <algorithm>
#include <cstring>

#include "support/Error.h"

namespace airsync {
namespace {

using namespace AIRSYNC_STACK;

constexpr const char* kNoKey = "0";
constexpr INT32 kOnlySend = 1;
constexpr INT32 kOnlyReceive = 2;

std::string nameOf(const FOLDER_INFO& info) {
  return {info.folder.displayName, strnlen(info.folder.displayName, sizeof(info.folder.displayName))};
}

// Results after which no answer to the request is outstanding, and none will be kept by the server.
bool serverRefused(SYNC_RESULT result) {
  constexpr SYNC_RESULT kFamily = 0xffffff00;
  return (result & kFamily) == AS_RESULT_FAMILY_SYNC || result == AS_RESULT_HTTP_UNAUTHORIZED ||
         result == AS_RESULT_HTTP_BAD_REQUEST || result == AS_RESULT_REQUEST_TOO_LARGE ||
         result == AS_RESULT_NO_REQUEST;
}

void add(SyncOutcome& sum, const SyncOutcome& part) {
  sum.added += part.added;
  sum.changed += part.changed;
  sum.deleted += part.deleted;
  sum.sent += part.sent;
  sum.sentDeletions += part.sentDeletions;
  sum.refused += part.refused;
  sum.overwritten += part.overwritten;
  sum.ignored += part.ignored;
  sum.receiveAgain = sum.receiveAgain || part.receiveAgain;
  sum.conflicts.insert(sum.conflicts.end(), part.conflicts.begin(), part.conflicts.end());
}

}  // namespace

SyncSession::SyncSession(const SyncTables& tables, FOLDER_INFO& info, SessionKind kind,
                         const SyncRules& rules)
    : tables_(tables),
      info_(info),
      kind_(kind),
      conflicts_(tables, folder_),
      outgoing_(tables, folder_, conflicts_),
      incoming_(tables, folder_, conflicts_) {
  const auto state = tables_.folders.state(info.handle);
  const std::string key(info.syncKey.text, strnlen(info.syncKey.text, sizeof(info.syncKey.text)));
  if (!state || state->gone || state->syncKey != key) {
    throw Error({.kind = ErrorKind::folder,
                 .operation = "beginning to synchronise",
                 .subject = nameOf(info),
                 .cause = "the folder has changed in the store meanwhile",
                 .advice = "Synchronise again."});
  }
  folder_ = {.number = info.handle,
             .key = key,
             .generation = state->generation,
             .reconciling = state->reconciling,
             .oneByOne = state->oneByOne,
             .rules = rules};
  beganAnew_ = key == kNoKey;
  checkAnswered();
  outgoing_.begin(state->asked);
  noteAsked();
}

// Durable before the request goes out, like the marks of changes, also when it carries none: should the
// answer not arrive, the next request under this key may be answered with it, whatever that request carries.
void SyncSession::noteAsked() {
  Transaction transaction(tables_.database);
  tables_.folders.noteAsked(folder_.number);
  transaction.commit();
}

void SyncSession::checkAnswered() const {
  const char* cause = nullptr;
  if (kind_ == SessionKind::sync) {
    if (!tables_.folders.additionsUnanswered(folder_.number)) return;
    cause = "additions were sent, and the server's answer has not arrived";
  } else if (beganAnew_) {
    cause = "the folder was not synchronised yet";
  } else if (tables_.folders.repetitionDue(folder_.number)) {
    cause = "the server's answer to an earlier request has not arrived yet";
  } else {
    return;
  }
  throw Error({.kind = ErrorKind::folder,
               .operation = kind_ == SessionKind::sync ? "synchronising" : "fetching from",
               .subject = nameOf(info_),
               .cause = cause,
               .advice = "Synchronise the folder first."});
}

void SyncSession::open() {
  if (transaction_) return;
  transaction_.emplace(tables_.database);
  otherNews_ = false;
}

// The library reads a missing identifier as "0" or leaves it empty.
bool SyncSession::usable(const std::string& serverId) {
  if (!serverId.empty() && serverId != "0") return true;
  ++response_.ignored;
  return false;
}

// The library asks for changes between responses. If a transaction is open all the same, the last response
// came to no end, and is as if it had not come.
const OutgoingChanges::Handed* SyncSession::nextChange() {
  undo();
  return outgoing_.next();
}

void SyncSession::put(const std::string& serverId, const void* record, Extent extent) {
  open();
  if (record == nullptr) {
    ++response_.ignored;
  } else if (usable(serverId)) {
    otherNews_ = true;
    incoming_.put(serverId, record, extent, response_);
  }
}

void SyncSession::remove(const std::string& serverId) {
  open();
  if (!usable(serverId)) return;
  otherNews_ = true;
  incoming_.remove(serverId);
}

void SyncSession::fetched(const std::string& serverId, const void* record, SYNC_RESULT result) {
  open();
  const bool asked = serverId == awaited_;
  if (asked) fetch_.item = result;
  if (result != AS_RESULT_OK || record == nullptr || !usable(serverId)) return;
  const bool here = incoming_.refresh(serverId, record);
  if (asked) {
    fetched_ = here || fetched_;
  } else {
    otherNews_ = otherNews_ || here;
  }
}

void SyncSession::added(ItemNumber clientId, const std::string& serverId, INT32 status) {
  open();
  otherNews_ = true;
  const std::string id = serverId == "0" ? std::string() : serverId;
  outgoing_.added(clientId, id, status, response_,
                  [&](ItemNumber item) { return incoming_.isEcho(item, clientId); });
}

void SyncSession::changed(const std::string& serverId, INT32 status) {
  open();
  if (!usable(serverId)) return;
  otherNews_ = true;
  outgoing_.changed(serverId, status, response_);
}

void SyncSession::removed(const std::string& serverId, INT32 status) {
  open();
  if (!usable(serverId)) return;
  otherNews_ = true;
  outgoing_.removed(serverId, status, response_);
}

void SyncSession::storeKey(const std::string& key) {
  if (key.empty()) {
    commitFetchedAlone();
    undo();
    return;
  }
  open();
  outgoing_.settle(response_);
  conflicts_.assertUndecided();
  tables_.folders.storeKey(folder_.number, key);
  transaction_->commit();
  transaction_.reset();

  fetch_.arrived = fetch_.arrived || fetched_;
  fetched_ = false;
  outgoing_.release();
  incoming_.endResponse(response_.refused > 0);
  add(total_, response_);
  response_ = {};
  ++total_.keys;
  if (folder_.key != kNoKey) ++contentKeys_;
  folder_.key = key;
  std::memset(info_.syncKey.text, 0, sizeof(info_.syncKey.text));
  std::memcpy(info_.syncKey.text, key.data(), std::min(key.size(), sizeof(info_.syncKey.text) - 1));
}

// A response without a key brings nothing that would not come again, but for an item that was asked for.
void SyncSession::commitFetchedAlone() {
  if (!transaction_ || !fetched_ || otherNews_) return;
  transaction_->commit();
  transaction_.reset();
  fetch_.arrived = true;
  fetched_ = false;
  add(total_, response_);
  response_ = {};
}

void SyncSession::undo() {
  if (!transaction_) return;
  transaction_.reset();
  fetched_ = false;
  incoming_.endResponse(true);
  conflicts_.forgetUndecided();
  response_ = {};
}

SyncOutcome SyncSession::end(bool success, Reached reached) {
  undo();
  Transaction transaction(tables_.database);
  if (reached == Reached::no) {
    outgoing_.withdraw();
    tables_.folders.forgetAsked(folder_.number);
  }
  outgoing_.end();
  total_.initial = success && beganAnew_ && total_.keys == 1;
  if (success && folder_.reconciling && contentKeys_ > 0 && info_.syncMode != kOnlySend) {
    incoming_.completeDownload();
  }
  if (success && !total_.initial) {
    incoming_.carryOutDeletions(total_);
    tables_.folders.storeLastSync(folder_.number);
  }
  if (success) tables_.folders.forgetAsked(folder_.number);
  if (success && folder_.oneByOne && !outgoing_.moreToSend()) {
    tables_.folders.setOneByOne(folder_.number, false);
  }
  total_.moreToSend = total_.keys > 0 && info_.syncMode != kOnlyReceive && outgoing_.moreToSend();
  transaction.commit();
  return total_;
}

FetchOutcome SyncSession::endFetch(SYNC_RESULT result, Reached reached) {
  commitFetchedAlone();
  undo();
  if (result == AS_RESULT_OK || reached == Reached::no || serverRefused(result)) {
    tables_.folders.forgetAsked(folder_.number);
  }
  total_.moreToSend = total_.keys > 0 && info_.syncMode != kOnlyReceive && outgoing_.moreToSend();
  fetch_.changes = total_;
  return fetch_;
}

}  // namespace airsync
