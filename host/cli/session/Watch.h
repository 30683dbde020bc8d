// Stands between the library and its transport and storage, and sees what goes by.
#ifndef AIRSYNC_CLI_SESSION_WATCH_H
#define AIRSYNC_CLI_SESSION_WATCH_H

#include <functional>
#include <utility>

#include "api/AirSyncDBInterface.h"
#include "cli/process/FlightRecord.h"
#include "cli/session/AnswerWatch.h"
#include "cli/session/StallGuard.h"
#include "http/Transport.h"

namespace airsync {

/// Passes every call on to `inner`, except that a request which would be in vain is not sent: SendHeader
/// fails then, and the guard tells that it has stalled. Notes in the record what it does.
class WatchedTransport final : public AIRSYNC_STACK::AirSyncTransportInterface {
 public:
  WatchedTransport(AIRSYNC_STACK::AirSyncTransportInterface& inner, StallGuard& guard, FlightRecord& flight)
      : inner_(inner), guard_(guard), flight_(flight) {}

  AIRSYNC_STACK::SYNC_RESULT Open(const AIRSYNC_STACK::SERVER_INFO* server) override;
  AIRSYNC_STACK::SYNC_RESULT SendHeader(const char* head, INT32 length, UINT32 contentLength) override;
  AIRSYNC_STACK::SYNC_RESULT EndRequest() override;
  AIRSYNC_STACK::SYNC_RESULT Write(const UINT8* bytes, INT32 count, INT32 raw) override;
  AIRSYNC_STACK::SYNC_RESULT ReadResponseHead(UINT16* status, UINT8** destination, UINT32* length, bool raw,
                                              UINT8* first, INT32 firstLength, UINT8* second,
                                              INT32 secondLength) override;
  AIRSYNC_STACK::SYNC_RESULT Read(UINT8* destination, INT32* count, INT32 raw) override;
  AIRSYNC_STACK::SYNC_RESULT Close() override;
  AIRSYNC_STACK::SYNC_RESULT Reserved7() override;
  AIRSYNC_STACK::SYNC_RESULT Reserved8() override;
  AIRSYNC_STACK::SYNC_RESULT Cancel() override;

  /// Of the last command.
  const AnswerWatch& answer() const { return answer_; }

 private:
  AIRSYNC_STACK::AirSyncTransportInterface& inner_;
  StallGuard& guard_;
  FlightRecord& flight_;
  AnswerWatch answer_;
};

/// Passes every call on to `inner`, tells the guard of what arrives, and calls `onItem` for each item that
/// the server sends. Notes in the record that something is stored.
class WatchedStorage final : public AIRSYNC_STACK::AirSyncDBInterface {
 public:
  WatchedStorage(AIRSYNC_STACK::AirSyncDBInterface& inner, StallGuard& guard, FlightRecord& flight,
                 std::function<void()> onItem)
      : inner_(inner), guard_(guard), flight_(flight), onItem_(std::move(onItem)) {}

  AIRSYNC_STACK::SYNC_RESULT StoreSyncKey(INT32 folder, void* reserved, const char* syncKey) override;
  AIRSYNC_STACK::SYNC_RESULT Reserved1() override;
  AIRSYNC_STACK::SYNC_RESULT GetFolderList(AIRSYNC_STACK::FOLDER_INFO*** folders, int* count) override;
  AIRSYNC_STACK::SYNC_RESULT SetNotifyFolderStatus(INT32 folder, AIRSYNC_STACK::SYNC_RESULT result) override;
  AIRSYNC_STACK::SYNC_RESULT SetItemEstimate(INT32 folder, AIRSYNC_STACK::SYNC_RESULT result,
                                             int estimate) override;
  int GetNextChange(INT32 folder, void** record, AIRSYNC_STACK::SERVER_ID* id, UINT32* clientId,
                    int* kind) override;
  AIRSYNC_STACK::SYNC_RESULT Reserved6() override;
  AIRSYNC_STACK::SYNC_RESULT AddResult(INT32 folder, const UINT32* clientId,
                                       const AIRSYNC_STACK::SERVER_ID* id,
                                       AIRSYNC_STACK::SYNC_RESULT result) override;
  AIRSYNC_STACK::SYNC_RESULT DeleteResult(INT32 folder, const AIRSYNC_STACK::SERVER_ID* id,
                                          AIRSYNC_STACK::SYNC_RESULT result) override;
  AIRSYNC_STACK::SYNC_RESULT ChangeResult(INT32 folder, const AIRSYNC_STACK::SERVER_ID* id,
                                          AIRSYNC_STACK::SYNC_RESULT result) override;
  AIRSYNC_STACK::SYNC_RESULT FetchedItem(INT32 folder, const AIRSYNC_STACK::SERVER_ID* id, const void* record,
                                         AIRSYNC_STACK::SYNC_RESULT result) override;
  AIRSYNC_STACK::SYNC_RESULT AddServerItem(INT32 folder, const AIRSYNC_STACK::SERVER_ID* id,
                                           const void* record) override;
  AIRSYNC_STACK::SYNC_RESULT DeleteServerItem(INT32 folder, const AIRSYNC_STACK::SERVER_ID* id) override;
  AIRSYNC_STACK::SYNC_RESULT ChangeServerItem(INT32 folder, const AIRSYNC_STACK::SERVER_ID* id,
                                              const void* record) override;
  AIRSYNC_STACK::SYNC_RESULT Reserved14() override;
  AIRSYNC_STACK::SYNC_RESULT Reserved15() override;
  AIRSYNC_STACK::SYNC_RESULT Reserved16() override;
  AIRSYNC_STACK::SYNC_RESULT UpdateFolder(const AIRSYNC_STACK::BASE_FOLDER* folder, int operation) override;

 private:
  void resultArrived();
  void itemArrived();

  AIRSYNC_STACK::AirSyncDBInterface& inner_;
  StallGuard& guard_;
  FlightRecord& flight_;
  std::function<void()> onItem_;
};

}  // namespace airsync

#endif
