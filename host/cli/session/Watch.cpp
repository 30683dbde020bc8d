#include "cli/session/Watch.h"

namespace airsync {

using namespace AIRSYNC_STACK;

SYNC_RESULT WatchedTransport::Open(const SERVER_INFO* server) {
  flight_.step = Step::connecting;
  return inner_.Open(server);
}

SYNC_RESULT WatchedTransport::SendHeader(const char* head, INT32 length, UINT32 contentLength) {
  if (!guard_.exchange()) return AS_RESULT_TRANSPORT_FAILED;
  answer_.begin();
  flight_.step = Step::sending;
  flight_.command.set(commandIn({head, static_cast<std::size_t>(length)}));
  return inner_.SendHeader(head, length, contentLength);
}

SYNC_RESULT WatchedTransport::EndRequest() { return inner_.EndRequest(); }

SYNC_RESULT WatchedTransport::Write(const UINT8* bytes, INT32 count, INT32 raw) {
  return inner_.Write(bytes, count, raw);
}

SYNC_RESULT WatchedTransport::ReadResponseHead(UINT16* status, UINT8** destination, UINT32* length, bool raw,
                                               UINT8* first, INT32 firstLength, UINT8* second,
                                               INT32 secondLength) {
  flight_.step = Step::waiting;
  return inner_.ReadResponseHead(status, destination, length, raw, first, firstLength, second, secondLength);
}

SYNC_RESULT WatchedTransport::Read(UINT8* destination, INT32* count, INT32 raw) {
  flight_.step = Step::reading;
  const SYNC_RESULT result = inner_.Read(destination, count, raw);
  if (result == AS_RESULT_OK && raw == 0 && count != nullptr && *count > 0) {
    answer_.take(destination, static_cast<std::size_t>(*count));
  }
  return result;
}

SYNC_RESULT WatchedTransport::Close() { return inner_.Close(); }
SYNC_RESULT WatchedTransport::Reserved7() { return inner_.Reserved7(); }
SYNC_RESULT WatchedTransport::Reserved8() { return inner_.Reserved8(); }
SYNC_RESULT WatchedTransport::Cancel() { return inner_.Cancel(); }

void WatchedStorage::resultArrived() {
  flight_.step = Step::storing;
  guard_.brought();
}

void WatchedStorage::itemArrived() {
  resultArrived();
  onItem_();
}

SYNC_RESULT WatchedStorage::StoreSyncKey(INT32 folder, void* reserved, const char* syncKey) {
  flight_.step = Step::storing;
  guard_.key(syncKey == nullptr ? "" : syncKey);
  return inner_.StoreSyncKey(folder, reserved, syncKey);
}

SYNC_RESULT WatchedStorage::Reserved1() { return inner_.Reserved1(); }

SYNC_RESULT WatchedStorage::GetFolderList(FOLDER_INFO*** folders, int* count) {
  return inner_.GetFolderList(folders, count);
}

SYNC_RESULT WatchedStorage::SetNotifyFolderStatus(INT32 folder, SYNC_RESULT result) {
  return inner_.SetNotifyFolderStatus(folder, result);
}

SYNC_RESULT WatchedStorage::SetItemEstimate(INT32 folder, SYNC_RESULT result, int estimate) {
  return inner_.SetItemEstimate(folder, result, estimate);
}

int WatchedStorage::GetNextChange(INT32 folder, void** record, SERVER_ID* id, UINT32* clientId, int* kind) {
  return inner_.GetNextChange(folder, record, id, clientId, kind);
}

SYNC_RESULT WatchedStorage::Reserved6() { return inner_.Reserved6(); }

SYNC_RESULT WatchedStorage::AddResult(INT32 folder, const UINT32* clientId, const SERVER_ID* id,
                                      SYNC_RESULT result) {
  resultArrived();
  return inner_.AddResult(folder, clientId, id, result);
}

SYNC_RESULT WatchedStorage::DeleteResult(INT32 folder, const SERVER_ID* id, SYNC_RESULT result) {
  resultArrived();
  return inner_.DeleteResult(folder, id, result);
}

SYNC_RESULT WatchedStorage::ChangeResult(INT32 folder, const SERVER_ID* id, SYNC_RESULT result) {
  resultArrived();
  return inner_.ChangeResult(folder, id, result);
}

SYNC_RESULT WatchedStorage::FetchedItem(INT32 folder, const SERVER_ID* id, const void* record,
                                        SYNC_RESULT result) {
  itemArrived();
  return inner_.FetchedItem(folder, id, record, result);
}

SYNC_RESULT WatchedStorage::AddServerItem(INT32 folder, const SERVER_ID* id, const void* record) {
  itemArrived();
  return inner_.AddServerItem(folder, id, record);
}

SYNC_RESULT WatchedStorage::DeleteServerItem(INT32 folder, const SERVER_ID* id) {
  itemArrived();
  return inner_.DeleteServerItem(folder, id);
}

SYNC_RESULT WatchedStorage::ChangeServerItem(INT32 folder, const SERVER_ID* id, const void* record) {
  itemArrived();
  return inner_.ChangeServerItem(folder, id, record);
}

SYNC_RESULT WatchedStorage::Reserved14() { return inner_.Reserved14(); }
SYNC_RESULT WatchedStorage::Reserved15() { return inner_.Reserved15(); }
SYNC_RESULT WatchedStorage::Reserved16() { return inner_.Reserved16(); }

SYNC_RESULT WatchedStorage::UpdateFolder(const BASE_FOLDER* folder, int operation) {
  flight_.step = Step::storing;
  return inner_.UpdateFolder(folder, operation);
}

}  // namespace airsync
