// The library's side of the store: AirSyncDBInterface, and the operations around a command.
#include <cstring>
#include <utility>

#include "store/ItemStatus.h"
#include "store/Store.h"
#include "store/StoreParts.h"

namespace airsync {
namespace {

using namespace AIRSYNC_STACK;

constexpr int kNoMoreChanges = 1;

// At most the characters that count in an identifier; the field may be full, without a terminator.
std::string textOf(const SERVER_ID& id) { return {id.text, strnlen(id.text, 48)}; }

int changeKind(ChangeKind kind) {
  return kind == ChangeKind::add      ? AS_CHANGE_ADD
         : kind == ChangeKind::remove ? AS_CHANGE_DELETE
                                      : AS_CHANGE_CHANGE;
}

[[noreturn]] void outOfOrder(const char* operation) {
  throw Error({.operation = operation,
               .subject = {},
               .cause = "it does not belong to the command that is running",
               .advice = "This is an error of the program: report it with this line."});
}

}  // namespace

template <typename Body>
void Store::Parts::callback(const char* operation, Body&& body) noexcept {
  if (failure) return;
  try {
    database.guarded(operation, std::forward<Body>(body));
    return;
  } catch (...) {
    failure = std::current_exception();
  }
  try {
    if (cancel) cancel();
  } catch (...) {
    // The command goes on to its end, then; nothing of it is stored any more, and the failure is told.
  }
}

SyncSession& Store::Parts::sessionOf(INT32 folder) {
  if (!sessionRuns || session->folder() != folder) outOfOrder("storing what the server sent");
  return *session;
}

void Store::Parts::rethrowFailure() {
  if (failure) std::rethrow_exception(std::exchange(failure, nullptr));
}

void Store::setCancel(std::function<void()> cancel) { parts_->cancel = std::move(cancel); }

// --- Around a command ---

_SYNC_KEY Store::beginHierarchy(HierarchyFetch fetch) {
  const std::string stored = hierarchyKey();
  const bool all = fetch == HierarchyFetch::all || stored == "0";
  parts_->failure = nullptr;
  parts_->hierarchy.reset();
  parts_->hierarchy.emplace(parts_->database, all);
  _SYNC_KEY key = {};
  const std::string text = all ? "0" : stored;
  std::memcpy(key.text, text.data(), std::min(text.size(), sizeof(key.text) - 1));
  return key;
}

void Store::commitHierarchy(const _SYNC_KEY& key) {
  if (!parts_->hierarchy && !parts_->failure) outOfOrder("storing the folder hierarchy");
  if (!parts_->failure) {
    try {
      parts_->database.guarded("storing the folder hierarchy in", [&] {
        parts_->hierarchy->commit({key.text, strnlen(key.text, sizeof(key.text))});
      });
    } catch (...) {
      parts_->failure = std::current_exception();
    }
  }
  parts_->hierarchy.reset();
  parts_->rethrowFailure();
}

void Store::rollbackHierarchy() {
  parts_->hierarchy.reset();
  parts_->failure = nullptr;
}

void Store::beginSync(FOLDER_INFO& info) {
  if (info.dataType != DATATYPE_CONTACTS) outOfOrder("beginning to synchronise");
  parts_->failure = nullptr;
  parts_->session.reset();
  const SyncTables tables = {parts_->database, parts_->folders, parts_->items, parts_->pending,
                             parts_->contacts};
  parts_->database.guarded("beginning to synchronise in", [&] { parts_->session.emplace(tables, info); });
  parts_->sessionRuns = true;
}

SyncOutcome Store::endSync(SYNC_RESULT result) {
  if (!parts_->sessionRuns) outOfOrder("ending a synchronisation");
  parts_->sessionRuns = false;
  if (parts_->failure) {
    parts_->session->undo();
    parts_->rethrowFailure();
  }
  return parts_->database.guarded("ending a synchronisation in",
                                  [&] { return parts_->session->end(result == AS_RESULT_OK); });
}

std::optional<ItemNumber> Store::setAsideLast(const std::string& reason) {
  if (!parts_->session) return std::nullopt;
  return parts_->database.guarded("setting a change aside in", [&] {
    parts_->session->undo();
    return parts_->session->setAsideLast(reason);
  });
}

// --- Storage calls ---

SYNC_RESULT Store::StoreSyncKey(INT32 folder, void* /*reserved*/, const char* syncKey) {
  parts_->callback("storing a sync key in",
                   [&] { parts_->sessionOf(folder).storeKey(syncKey == nullptr ? "" : syncKey); });
  return AS_RESULT_OK;
}

int Store::GetNextChange(INT32 folder, void** record, SERVER_ID* id, UINT32* clientId, int* kind) {
  const OutgoingChanges::Handed* change = nullptr;
  parts_->callback("reading a local change from", [&] { change = parts_->sessionOf(folder).nextChange(); });
  if (change == nullptr) return kNoMoreChanges;
  *record = change->record ? change->record->record() : nullptr;
  *id = {};
  if (change->serverId) {
    std::memcpy(id->text, change->serverId->data(), std::min(change->serverId->size(), sizeof(id->text) - 1));
  }
  *clientId = static_cast<UINT32>(change->item);
  *kind = changeKind(change->kind);
  return 0;
}

SYNC_RESULT Store::AddResult(INT32 folder, const UINT32* clientId, const SERVER_ID* id, SYNC_RESULT result) {
  parts_->callback("storing the answer to an addition in",
                   [&] { parts_->sessionOf(folder).added(*clientId, textOf(*id), itemStatus(result)); });
  return AS_RESULT_OK;
}

SYNC_RESULT Store::DeleteResult(INT32 folder, const SERVER_ID* id, SYNC_RESULT result) {
  parts_->callback("storing the answer to a deletion in",
                   [&] { parts_->sessionOf(folder).removed(textOf(*id), itemStatus(result)); });
  return AS_RESULT_OK;
}

SYNC_RESULT Store::ChangeResult(INT32 folder, const SERVER_ID* id, SYNC_RESULT result) {
  parts_->callback("storing the answer to a change in",
                   [&] { parts_->sessionOf(folder).changed(textOf(*id), itemStatus(result)); });
  return AS_RESULT_OK;
}

SYNC_RESULT Store::FetchedItem(INT32 folder, const SERVER_ID* id, const void* record, SYNC_RESULT result) {
  parts_->callback("storing a fetched item in", [&] {
    if (result == AS_RESULT_OK) parts_->sessionOf(folder).fetched(textOf(*id), record);
  });
  return AS_RESULT_OK;
}

SYNC_RESULT Store::AddServerItem(INT32 folder, const SERVER_ID* id, const void* record) {
  parts_->callback("storing an item in", [&] { parts_->sessionOf(folder).put(textOf(*id), record); });
  return AS_RESULT_OK;
}

SYNC_RESULT Store::ChangeServerItem(INT32 folder, const SERVER_ID* id, const void* record) {
  parts_->callback("storing a changed item in", [&] { parts_->sessionOf(folder).put(textOf(*id), record); });
  return AS_RESULT_OK;
}

SYNC_RESULT Store::DeleteServerItem(INT32 folder, const SERVER_ID* id) {
  parts_->callback("deleting an item from", [&] { parts_->sessionOf(folder).remove(textOf(*id)); });
  return AS_RESULT_OK;
}

SYNC_RESULT Store::UpdateFolder(const BASE_FOLDER* folder, int operation) {
  parts_->callback("storing a folder in", [&] {
    if (!parts_->hierarchy) outOfOrder("storing a folder");
    parts_->hierarchy->update(*folder, operation);
  });
  return AS_RESULT_OK;
}

// The commands that these serve (notifications, estimates) are not among those that airsync sends.
SYNC_RESULT Store::GetFolderList(FOLDER_INFO*** folders, int* count) {
  *folders = nullptr;
  *count = 0;
  return AS_RESULT_OK;
}
SYNC_RESULT Store::SetNotifyFolderStatus(INT32 /*folder*/, SYNC_RESULT /*result*/) { return AS_RESULT_OK; }
SYNC_RESULT Store::SetItemEstimate(INT32 /*folder*/, SYNC_RESULT /*result*/, int /*estimate*/) {
  return AS_RESULT_OK;
}

SYNC_RESULT Store::Reserved1() { return AS_RESULT_OK; }
SYNC_RESULT Store::Reserved6() { return AS_RESULT_OK; }
SYNC_RESULT Store::Reserved14() { return AS_RESULT_OK; }
SYNC_RESULT Store::Reserved15() { return AS_RESULT_OK; }
SYNC_RESULT Store::Reserved16() { return AS_RESULT_OK; }

}  // namespace airsync
