// A storage that keeps what it is told, and hands out the changes that it was given.
#ifndef TESTS_SUPPORT_RECORDING_STORE_H
#define TESTS_SUPPORT_RECORDING_STORE_H

#include <cstddef>
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "api/AirSyncDBInterface.h"
#include "support/ItemCopies.h"

namespace airsync_test {

/// One call of the library, with copies of everything that it brought.
struct StoreCall {
  std::string name;  // "AddServerItem"
  INT32 folder = 0;
  std::optional<std::string> id;
  std::optional<std::string> staleId;  // AddResult of a failure: what its meaningless identifier held
  std::optional<UINT32> clientId;
  std::optional<AIRSYNC_STACK::SYNC_RESULT> result;
  std::optional<std::string> syncKey;                      // StoreSyncKey
  std::optional<int> number;                               // SetItemEstimate
  std::optional<AIRSYNC_STACK::BASE_FOLDER> folderRecord;  // UpdateFolder
  std::optional<int> operation;                            // UpdateFolder
  std::optional<ContactFields> contact;                    // a record, when the class is contacts
  std::optional<ItemFields> event;                         // when it is events
  std::optional<ItemFields> mail;                          // when it is mails

  const void* record = nullptr;  // as it came: it lives while the observer is called

  /// "AddResult 7 client=1 id=2:1 result=0x00000000", without the record's fields.
  std::string Line() const;
};

/// One local change for GetNextChange; the record belongs to the test.
struct LocalChange {
  AIRSYNC_STACK::AS_CHANGE_KIND_T kind = AIRSYNC_STACK::AS_CHANGE_ADD;
  std::string id;
  UINT32 clientId = 0;
  void* record = nullptr;
};

class RecordingStore : public AIRSYNC_STACK::AirSyncDBInterface {
 public:
  using SYNC_RESULT = AIRSYNC_STACK::SYNC_RESULT;
  using SERVER_ID = AIRSYNC_STACK::SERVER_ID;

  /// The class of the records that come.
  AIRSYNC_STACK::DATATYPE dataType = AIRSYNC_STACK::DATATYPE_CONTACTS;

  /// What GetFolderList hands out.
  std::vector<AIRSYNC_STACK::FOLDER_INFO*> folders;

  /// What every operation but GetNextChange returns: the library must not care.
  SYNC_RESULT answer = 0;

  /// When set, StoreSyncKey also renews this record's key, as a storage must.
  AIRSYNC_STACK::FOLDER_INFO* runningFolder = nullptr;

  void HandOut(LocalChange change) { changes_.push_back(std::move(change)); }
  std::size_t ChangesLeft() const { return changes_.size(); }
  void ForgetChanges() { changes_.clear(); }

  /// Called at the end of each call.
  void OnCall(std::function<void(const StoreCall&)> observer) { observer_ = std::move(observer); }

  const std::vector<StoreCall>& Calls() const { return calls_; }
  std::vector<std::string> Lines() const;
  /// The calls of that name.
  std::vector<StoreCall> CallsOf(const std::string& name) const;
  void ClearCalls() { calls_.clear(); }

  SYNC_RESULT StoreSyncKey(INT32 folder, void* reserved, const char* syncKey) override;
  SYNC_RESULT Reserved1() override;
  SYNC_RESULT GetFolderList(AIRSYNC_STACK::FOLDER_INFO*** list, int* count) override;
  SYNC_RESULT SetNotifyFolderStatus(INT32 folder, SYNC_RESULT result) override;
  SYNC_RESULT SetItemEstimate(INT32 folder, SYNC_RESULT result, int estimate) override;
  int GetNextChange(INT32 folder, void** record, SERVER_ID* id, UINT32* clientId, int* kind) override;
  SYNC_RESULT Reserved6() override;
  SYNC_RESULT AddResult(INT32 folder, const UINT32* clientId, const SERVER_ID* id,
                        SYNC_RESULT result) override;
  SYNC_RESULT DeleteResult(INT32 folder, const SERVER_ID* id, SYNC_RESULT result) override;
  SYNC_RESULT ChangeResult(INT32 folder, const SERVER_ID* id, SYNC_RESULT result) override;
  SYNC_RESULT FetchedItem(INT32 folder, const SERVER_ID* id, const void* record, SYNC_RESULT result) override;
  SYNC_RESULT AddServerItem(INT32 folder, const SERVER_ID* id, const void* record) override;
  SYNC_RESULT DeleteServerItem(INT32 folder, const SERVER_ID* id) override;
  SYNC_RESULT ChangeServerItem(INT32 folder, const SERVER_ID* id, const void* record) override;
  SYNC_RESULT Reserved14() override;
  SYNC_RESULT Reserved15() override;
  SYNC_RESULT Reserved16() override;
  SYNC_RESULT UpdateFolder(const AIRSYNC_STACK::BASE_FOLDER* folder, int operation) override;

 private:
  SYNC_RESULT Keep(StoreCall call);
  void Copy(const void* record, StoreCall& call) const;

  std::deque<LocalChange> changes_;
  std::vector<StoreCall> calls_;
  std::function<void(const StoreCall&)> observer_;
};

}  // namespace airsync_test

#endif
