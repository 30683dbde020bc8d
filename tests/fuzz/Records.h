// A storage that reads every field of every record that it is given.
#ifndef TESTS_FUZZ_RECORDS_H
#define TESTS_FUZZ_RECORDS_H

#include <vector>

#include "api/AirSyncDBInterface.h"
#include "fuzz/Harness.h"
#include "support/ServerId.h"

namespace airsync_fuzz {

class ReadingStore final : public AIRSYNC_STACK::AirSyncDBInterface {
 public:
  typedef AIRSYNC_STACK::SYNC_RESULT SYNC_RESULT;
  typedef AIRSYNC_STACK::SERVER_ID SERVER_ID;

  explicit ReadingStore(AIRSYNC_STACK::FOLDER_INFO& folder) : folder_(folder), folders_{&folder} {}

  SYNC_RESULT StoreSyncKey(INT32, void*, const char* syncKey) override {
    Touch(syncKey);
    return 0;
  }
  SYNC_RESULT Reserved1() override { return 0; }
  SYNC_RESULT GetFolderList(AIRSYNC_STACK::FOLDER_INFO*** list, int* count) override {
    *list = folders_.data();
    *count = static_cast<int>(folders_.size());
    return 0;
  }
  SYNC_RESULT SetNotifyFolderStatus(INT32, SYNC_RESULT) override { return 0; }
  SYNC_RESULT SetItemEstimate(INT32, SYNC_RESULT, int) override { return 0; }
  int GetNextChange(INT32, void**, SERVER_ID*, UINT32*, int*) override { return 1; }
  SYNC_RESULT Reserved6() override { return 0; }
  SYNC_RESULT AddResult(INT32, const UINT32*, const SERVER_ID* id, SYNC_RESULT) override { return Id(id); }
  SYNC_RESULT DeleteResult(INT32, const SERVER_ID* id, SYNC_RESULT) override { return Id(id); }
  SYNC_RESULT ChangeResult(INT32, const SERVER_ID* id, SYNC_RESULT) override { return Id(id); }
  SYNC_RESULT FetchedItem(INT32, const SERVER_ID* id, const void* record, SYNC_RESULT) override {
    return Item(id, record);
  }
  SYNC_RESULT AddServerItem(INT32, const SERVER_ID* id, const void* record) override {
    return Item(id, record);
  }
  SYNC_RESULT DeleteServerItem(INT32, const SERVER_ID* id) override { return Id(id); }
  SYNC_RESULT ChangeServerItem(INT32, const SERVER_ID* id, const void* record) override {
    return Item(id, record);
  }
  SYNC_RESULT Reserved14() override { return 0; }
  SYNC_RESULT Reserved15() override { return 0; }
  SYNC_RESULT Reserved16() override { return 0; }
  SYNC_RESULT UpdateFolder(const AIRSYNC_STACK::BASE_FOLDER*, int) override { return 0; }

 private:
  static SYNC_RESULT Id(const SERVER_ID* id) {
    char text[AIRSYNC_STACK::ServerId::kLength + 1];
    Touch(AIRSYNC_STACK::ServerId::toChar(*id, text));
    return 0;
  }
  SYNC_RESULT Item(const SERVER_ID* id, const void* record) const;

  AIRSYNC_STACK::FOLDER_INFO& folder_;
  std::vector<AIRSYNC_STACK::FOLDER_INFO*> folders_;
};

}  // namespace airsync_fuzz

#endif
