// The library's side of the store: AirSyncDBInterface.
#include <algorithm>
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
  parts_->callback("storing a fetched item in",
                   [&] { parts_->sessionOf(folder).fetched(textOf(*id), record, result); });
  return AS_RESULT_OK;
}

SYNC_RESULT Store::AddServerItem(INT32 folder, const SERVER_ID* id, const void* record) {
  parts_->callback("storing an item in",
                   [&] { parts_->sessionOf(folder).put(textOf(*id), record, Extent::whole); });
  return AS_RESULT_OK;
}

SYNC_RESULT Store::ChangeServerItem(INT32 folder, const SERVER_ID* id, const void* record) {
  parts_->callback("storing a changed item in",
                   [&] { parts_->sessionOf(folder).put(textOf(*id), record, Extent::changes); });
  return AS_RESULT_OK;
}

SYNC_RESULT Store::DeleteServerItem(INT32 folder, const SERVER_ID* id) {
  parts_->callback("deleting an item from", [&] { parts_->sessionOf(folder).remove(textOf(*id)); });
  return AS_RESULT_OK;
}

SYNC_RESULT Store::UpdateFolder(const BASE_FOLDER* folder, int operation) {
  parts_->callback("storing a folder in", [&] {
    if (!parts_->hierarchy) Parts::outOfOrder("storing a folder");
    parts_->hierarchy->update(*folder, operation);
  });
  return AS_RESULT_OK;
}

SYNC_RESULT Store::GetFolderList(FOLDER_INFO*** folders, int* count) {
  *folders = parts_->offer.infos();
  *count = parts_->offer.count();
  return AS_RESULT_OK;
}

SYNC_RESULT Store::SetNotifyFolderStatus(INT32 folder, SYNC_RESULT result) {
  parts_->callback("noting a notification's status for",
                   [&] { parts_->offer.report(FolderNotifyStatus{.folder = folder, .result = result}); });
  return AS_RESULT_OK;
}

SYNC_RESULT Store::SetItemEstimate(INT32 folder, SYNC_RESULT result, int estimate) {
  parts_->callback("noting an estimate for", [&] {
    parts_->offer.report(FolderEstimate{.folder = folder, .result = result, .items = estimate});
  });
  return AS_RESULT_OK;
}

SYNC_RESULT Store::Reserved1() { return AS_RESULT_OK; }
SYNC_RESULT Store::Reserved6() { return AS_RESULT_OK; }
SYNC_RESULT Store::Reserved14() { return AS_RESULT_OK; }
SYNC_RESULT Store::Reserved15() { return AS_RESULT_OK; }
SYNC_RESULT Store::Reserved16() { return AS_RESULT_OK; }

}  // namespace airsync
