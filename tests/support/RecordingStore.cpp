#include "support/RecordingStore.h"

#include <cstdio>
#include <cstring>
#include <gtest/gtest.h>

#include "support/HostCode.h"

namespace airsync_test {

using namespace AIRSYNC_STACK;

namespace {

std::optional<std::string> TextOf(const SERVER_ID* id) {
  if (id == nullptr) return std::nullopt;
  return std::string(id->text, strnlen(id->text, sizeof id->text));
}

std::string InHex(SYNC_RESULT result) {
  char text[16];
  std::snprintf(text, sizeof text, "0x%08x", static_cast<unsigned>(result));
  return text;
}

}  // namespace

std::string StoreCall::Line() const {
  std::string line = name;
  if (!folderRecord) line += " " + std::to_string(folder);
  if (clientId) line += " client=" + std::to_string(*clientId);
  if (id) line += " id=" + *id;
  if (syncKey) line += " key=" + *syncKey;
  if (number) line += " number=" + std::to_string(*number);
  if (folderRecord) {
    line += std::string(" ") + folderRecord->serverId.text + " in " + folderRecord->parentId.text +
            " type=" + std::to_string(folderRecord->type) + " " + folderRecord->displayName;
  }
  if (operation) line += " operation=" + std::to_string(*operation);
  if (result) line += " result=" + InHex(*result);
  return line;
}

std::vector<std::string> RecordingStore::Lines() const {
  std::vector<std::string> lines;
  for (const StoreCall& call : calls_) lines.push_back(call.Line());
  return lines;
}

std::vector<StoreCall> RecordingStore::CallsOf(const std::string& name) const {
  std::vector<StoreCall> found;
  for (const StoreCall& call : calls_) {
    if (call.name == name) found.push_back(call);
  }
  return found;
}

SYNC_RESULT RecordingStore::Keep(StoreCall call) {
  calls_.push_back(call);
  calls_.back().record = nullptr;
  if (observer_) observer_(call);
  return answer;
}

void RecordingStore::Copy(const void* record, StoreCall& call) const {
  call.record = record;
  if (record == nullptr) return;
  switch (dataType) {
    case DATATYPE_CONTACTS:
      call.contact = CopyContact(*static_cast<const AS_CONTACT_T*>(record));
      break;
    case DATATYPE_CALENDAR:
      call.event = CopyEvent(*static_cast<const AS_CALENDAR_T*>(record));
      break;
    case DATATYPE_EMAIL:
      call.mail = CopyMail(*static_cast<const AS_EMAIL_T*>(record));
      break;
  }
}

SYNC_RESULT RecordingStore::StoreSyncKey(INT32 folder, void* reserved, const char* syncKey) {
  const HostCode host;
  EXPECT_EQ(reserved, nullptr);
  StoreCall call;
  call.name = "StoreSyncKey";
  call.folder = folder;
  call.syncKey = syncKey;
  if (runningFolder != nullptr) {
    std::memset(runningFolder->syncKey.text, 0, sizeof runningFolder->syncKey.text);
    std::strncpy(runningFolder->syncKey.text, syncKey, sizeof runningFolder->syncKey.text - 1);
  }
  return Keep(call);
}

SYNC_RESULT RecordingStore::GetFolderList(FOLDER_INFO*** list, int* count) {
  const HostCode host;
  *list = folders.data();
  *count = static_cast<int>(folders.size());
  StoreCall call;
  call.name = "GetFolderList";
  return Keep(call);
}

SYNC_RESULT RecordingStore::SetNotifyFolderStatus(INT32 folder, SYNC_RESULT result) {
  const HostCode host;
  StoreCall call;
  call.name = "SetNotifyFolderStatus";
  call.folder = folder;
  call.result = result;
  return Keep(call);
}

SYNC_RESULT RecordingStore::SetItemEstimate(INT32 folder, SYNC_RESULT result, int estimate) {
  const HostCode host;
  StoreCall call;
  call.name = "SetItemEstimate";
  call.folder = folder;
  call.result = result;
  call.number = estimate;
  return Keep(call);
}

int RecordingStore::GetNextChange(INT32 folder, void** record, SERVER_ID* id, UINT32* clientId, int* kind) {
  const HostCode host;
  StoreCall call;
  call.name = "GetNextChange";
  call.folder = folder;
  const bool any = !changes_.empty();
  if (any) {
    const LocalChange change = changes_.front();
    changes_.pop_front();
    *record = change.record;
    std::memset(id->text, 0, sizeof id->text);
    std::strncpy(id->text, change.id.c_str(), sizeof id->text - 1);
    *clientId = change.clientId;
    *kind = change.kind;
  }
  Keep(call);
  return any ? 0 : 1;
}

SYNC_RESULT RecordingStore::AddResult(INT32 folder, const UINT32* clientId, const SERVER_ID* id,
                                      SYNC_RESULT result) {
  const HostCode host;
  StoreCall call;
  call.name = "AddResult";
  call.folder = folder;
  if (clientId != nullptr) call.clientId = *clientId;
  // Without success the identifier means nothing.
  (result == 0 ? call.id : call.staleId) = TextOf(id);
  call.result = result;
  return Keep(call);
}

SYNC_RESULT RecordingStore::DeleteResult(INT32 folder, const SERVER_ID* id, SYNC_RESULT result) {
  const HostCode host;
  StoreCall call;
  call.name = "DeleteResult";
  call.folder = folder;
  call.id = TextOf(id);
  call.result = result;
  return Keep(call);
}

SYNC_RESULT RecordingStore::ChangeResult(INT32 folder, const SERVER_ID* id, SYNC_RESULT result) {
  const HostCode host;
  StoreCall call;
  call.name = "ChangeResult";
  call.folder = folder;
  call.id = TextOf(id);
  call.result = result;
  return Keep(call);
}

SYNC_RESULT RecordingStore::FetchedItem(INT32 folder, const SERVER_ID* id, const void* record,
                                        SYNC_RESULT result) {
  const HostCode host;
  StoreCall call;
  call.name = "FetchedItem";
  call.folder = folder;
  call.id = TextOf(id);
  Copy(record, call);
  call.result = result;
  return Keep(call);
}

SYNC_RESULT RecordingStore::AddServerItem(INT32 folder, const SERVER_ID* id, const void* record) {
  const HostCode host;
  StoreCall call;
  call.name = "AddServerItem";
  call.folder = folder;
  call.id = TextOf(id);
  Copy(record, call);
  return Keep(call);
}

SYNC_RESULT RecordingStore::DeleteServerItem(INT32 folder, const SERVER_ID* id) {
  const HostCode host;
  StoreCall call;
  call.name = "DeleteServerItem";
  call.folder = folder;
  call.id = TextOf(id);
  return Keep(call);
}

SYNC_RESULT RecordingStore::ChangeServerItem(INT32 folder, const SERVER_ID* id, const void* record) {
  const HostCode host;
  StoreCall call;
  call.name = "ChangeServerItem";
  call.folder = folder;
  call.id = TextOf(id);
  Copy(record, call);
  return Keep(call);
}

SYNC_RESULT RecordingStore::UpdateFolder(const BASE_FOLDER* folder, int operation) {
  const HostCode host;
  StoreCall call;
  call.name = "UpdateFolder";
  call.folderRecord = *folder;
  call.operation = operation;
  return Keep(call);
}

SYNC_RESULT RecordingStore::Reserved1() {
  ADD_FAILURE() << "the library calls no reserved operation";
  return 0;
}

SYNC_RESULT RecordingStore::Reserved6() { return Reserved1(); }
SYNC_RESULT RecordingStore::Reserved14() { return Reserved1(); }
SYNC_RESULT RecordingStore::Reserved15() { return Reserved1(); }
SYNC_RESULT RecordingStore::Reserved16() { return Reserved1(); }

}  // namespace airsync_test
