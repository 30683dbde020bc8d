// The smallest complete host: it asks "a server" for its folders and prints what storage is told.
//
// A host brings four things: the porting functions (here those of host/porting over the standard library), a
// transport (here one that answers from memory; a real one opens a connection), a storage, and, optionally, a
// log.
#include <cstdio>
#include <cstring>

#include "api/AirSync.h"

using namespace AIRSYNC_STACK;

namespace {

// The answer to a FolderSync: status 1, key "k1", one folder added.
const UINT8 kAnswer[] = {
    0x03, 0x01, 0x6A, 0x00,                                              // WBXML 1.3, UTF-8
    0x00, 0x07,                                                          // page 7, FolderHierarchy
    0x56,                                                                // FolderSync
    0x4C, 0x03, '1',  0x00, 0x01,                                        //   Status "1"
    0x52, 0x03, 'k',  '1',  0x00, 0x01,                                  //   SyncKey "k1"
    0x4E,                                                                //   Changes
    0x57, 0x03, '1',  0x00, 0x01,                                        //     Count "1"
    0x4F,                                                                //     Add
    0x48, 0x03, '5',  0x00, 0x01,                                        //       ServerId "5"
    0x49, 0x03, '0',  0x00, 0x01,                                        //       ParentId "0"
    0x47, 0x03, 'C',  'o',  'n',  't',  'a', 'c', 't', 's', 0x00, 0x01,  //       DisplayName
    0x4A, 0x03, '9',  0x00, 0x01,                                        //       Type "9"
    0x01, 0x01, 0x01,                                                    // ends: Add, Changes, FolderSync
};

class Transport final : public AirSyncTransportInterface {
 public:
  SYNC_RESULT Open(const SERVER_INFO* server) override {
    std::printf("open %s\n", server->host);
    return 0;
  }
  SYNC_RESULT SendHeader(const char* head, INT32, UINT32 contentLength) override {
    std::printf("send %.*s, a body of %u bytes\n", static_cast<int>(std::strcspn(head, "\r")), head,
                static_cast<unsigned>(contentLength));
    return 0;
  }
  SYNC_RESULT Write(const UINT8*, INT32, INT32) override { return 0; }
  SYNC_RESULT ReadResponseHead(UINT16* status, UINT8**, UINT32*, bool, UINT8*, INT32, UINT8*,
                               INT32) override {
    *status = 200;
    return 0;
  }
  SYNC_RESULT Read(UINT8* destination, INT32* count, INT32) override {
    if (static_cast<size_t>(*count) > sizeof(kAnswer) - position_) return AS_RESULT_TRANSPORT_FAILED;
    std::memcpy(destination, kAnswer + position_, static_cast<size_t>(*count));
    position_ += static_cast<size_t>(*count);
    return 0;
  }
  SYNC_RESULT Close() override {
    std::printf("close\n");
    return 0;
  }
  SYNC_RESULT Cancel() override { return 0; }
  SYNC_RESULT EndRequest() override { return 0; }
  SYNC_RESULT Reserved7() override { return 0; }
  SYNC_RESULT Reserved8() override { return 0; }

 private:
  size_t position_ = 0;
};

class Storage final : public AirSyncDBInterface {
 public:
  SYNC_RESULT UpdateFolder(const BASE_FOLDER* folder, int operation) override {
    if (operation == AS_FOLDER_ADDED) {
      std::printf("folder %s: %s, type %d\n", folder->serverId.text, folder->displayName,
                  static_cast<int>(folder->type));
    }
    return 0;
  }

  // Nothing below is called for a FolderSync. A host that synchronises items stores them here.
  SYNC_RESULT StoreSyncKey(INT32, void*, const char*) override { return 0; }
  SYNC_RESULT GetFolderList(FOLDER_INFO***, int*) override { return 0; }
  SYNC_RESULT SetNotifyFolderStatus(INT32, SYNC_RESULT) override { return 0; }
  SYNC_RESULT SetItemEstimate(INT32, SYNC_RESULT, int) override { return 0; }
  int GetNextChange(INT32, void**, SERVER_ID*, UINT32*, int*) override { return 1; }
  SYNC_RESULT AddResult(INT32, const UINT32*, const SERVER_ID*, SYNC_RESULT) override { return 0; }
  SYNC_RESULT DeleteResult(INT32, const SERVER_ID*, SYNC_RESULT) override { return 0; }
  SYNC_RESULT ChangeResult(INT32, const SERVER_ID*, SYNC_RESULT) override { return 0; }
  SYNC_RESULT FetchedItem(INT32, const SERVER_ID*, const void*, SYNC_RESULT) override { return 0; }
  SYNC_RESULT AddServerItem(INT32, const SERVER_ID*, const void*) override { return 0; }
  SYNC_RESULT DeleteServerItem(INT32, const SERVER_ID*) override { return 0; }
  SYNC_RESULT ChangeServerItem(INT32, const SERVER_ID*, const void*) override { return 0; }
  SYNC_RESULT Reserved1() override { return 0; }
  SYNC_RESULT Reserved6() override { return 0; }
  SYNC_RESULT Reserved14() override { return 0; }
  SYNC_RESULT Reserved15() override { return 0; }
  SYNC_RESULT Reserved16() override { return 0; }
};

}  // namespace

int main() {
  Transport transport;
  Storage storage;
  SERVER_INFO server = {};
  std::strcpy(server.host, "mail.example.com");
  std::strcpy(server.path, "/sync");
  std::strcpy(server.user, "ann");
  std::strcpy(server.deviceId, "device1");
  std::strcpy(server.deviceType, "example");

  AirSync* airSync = AirSync::getInstance();
  SYNC_RESULT result =
      airSync->Initialize(server, server.deviceId, &transport, &storage, ENCODING_WBXML, nullptr);
  if (result == 0) result = airSync->Connect();
  _SYNC_KEY key = {"0"};
  if (result == 0) result = airSync->FolderSync(key);
  std::printf("result 0x%08x, key %s\n", static_cast<unsigned>(result), key.text);
  airSync->Disconnect();
  airSync->Uninitialize();
  AirSync::destroyInstance();
  return result == 0 ? 0 : 1;
}
