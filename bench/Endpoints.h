// The two ends of an exchange, as cheap as they can be: a transport in memory, and a storage that counts.
#ifndef BENCH_ENDPOINTS_H
#define BENCH_ENDPOINTS_H

#include <string>
#include <vector>

#include "api/AirSyncDBInterface.h"
#include "http/Transport.h"

namespace airsync_bench {

/// Delivers a response again and again, and counts what is sent.
class MemoryTransport final : public AIRSYNC_STACK::AirSyncTransportInterface {
 public:
  using SYNC_RESULT = AIRSYNC_STACK::SYNC_RESULT;

  explicit MemoryTransport(const std::string& response) : response_(response) { Rewind(); }

  void Rewind() {
    position_ = response_.data();
    end_ = position_ + response_.size();
  }
  std::size_t Sent() const { return sent_; }

  SYNC_RESULT Read(UINT8* destination, INT32* count, INT32 raw) override;
  SYNC_RESULT Write(const UINT8* bytes, INT32 count, INT32 raw) override;
  SYNC_RESULT Open(const AIRSYNC_STACK::SERVER_INFO*) override { return 0; }
  SYNC_RESULT SendHeader(const char*, INT32, UINT32) override { return 0; }
  SYNC_RESULT EndRequest() override { return 0; }
  SYNC_RESULT ReadResponseHead(UINT16* status, UINT8**, UINT32*, bool, UINT8*, INT32, UINT8*,
                               INT32) override {
    *status = 200;
    return 0;
  }
  SYNC_RESULT Close() override { return 0; }
  SYNC_RESULT Reserved7() override { return 0; }
  SYNC_RESULT Reserved8() override { return 0; }
  SYNC_RESULT Cancel() override { return 0; }

 private:
  const std::string& response_;
  const char* position_ = nullptr;
  const char* end_ = nullptr;
  std::size_t sent_ = 0;
};

/// Counts what it is told, and hands out contacts as local changes.
class CountingStore final : public AIRSYNC_STACK::AirSyncDBInterface {
 public:
  using SYNC_RESULT = AIRSYNC_STACK::SYNC_RESULT;
  using SERVER_ID = AIRSYNC_STACK::SERVER_ID;

  std::size_t Items() const { return items_; }

  /// Each contact goes out once, as an Add. They belong to the caller.
  void HandOut(std::vector<AIRSYNC_STACK::AS_CONTACT_T>* contacts) {
    contacts_ = contacts;
    next_ = 0;
  }

  int GetNextChange(INT32, void** record, SERVER_ID* id, UINT32* clientId, int* kind) override {
    if (contacts_ == nullptr || next_ == contacts_->size()) return 1;
    *record = &(*contacts_)[next_];
    *id = SERVER_ID();
    *clientId = static_cast<UINT32>(++next_);
    *kind = AIRSYNC_STACK::AS_CHANGE_ADD;
    return 0;
  }
  SYNC_RESULT AddServerItem(INT32, const SERVER_ID*, const void*) override { return Count(); }
  SYNC_RESULT ChangeServerItem(INT32, const SERVER_ID*, const void*) override { return Count(); }
  SYNC_RESULT DeleteServerItem(INT32, const SERVER_ID*) override { return Count(); }
  SYNC_RESULT FetchedItem(INT32, const SERVER_ID*, const void*, SYNC_RESULT) override { return Count(); }
  SYNC_RESULT AddResult(INT32, const UINT32*, const SERVER_ID*, SYNC_RESULT) override { return Count(); }
  SYNC_RESULT DeleteResult(INT32, const SERVER_ID*, SYNC_RESULT) override { return Count(); }
  SYNC_RESULT ChangeResult(INT32, const SERVER_ID*, SYNC_RESULT) override { return Count(); }
  SYNC_RESULT StoreSyncKey(INT32, void*, const char*) override { return 0; }
  SYNC_RESULT GetFolderList(AIRSYNC_STACK::FOLDER_INFO***, int*) override { return 1; }
  SYNC_RESULT SetNotifyFolderStatus(INT32, SYNC_RESULT) override { return 0; }
  SYNC_RESULT SetItemEstimate(INT32, SYNC_RESULT, int) override { return 0; }
  SYNC_RESULT UpdateFolder(const AIRSYNC_STACK::BASE_FOLDER*, int) override { return 0; }
  SYNC_RESULT Reserved1() override { return 0; }
  SYNC_RESULT Reserved6() override { return 0; }
  SYNC_RESULT Reserved14() override { return 0; }
  SYNC_RESULT Reserved15() override { return 0; }
  SYNC_RESULT Reserved16() override { return 0; }

 private:
  SYNC_RESULT Count() {
    ++items_;
    return 0;
  }

  std::size_t items_ = 0;
  std::vector<AIRSYNC_STACK::AS_CONTACT_T>* contacts_ = nullptr;
  std::size_t next_ = 0;
};

}  // namespace airsync_bench

#endif
