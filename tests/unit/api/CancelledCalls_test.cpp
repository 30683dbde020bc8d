// What a command ends with when the transport's call was cancelled, by what that call then says.
#include <gtest/gtest.h>
#include <string>

#include "support/ApiSession.h"

namespace {

using namespace AIRSYNC_STACK;
using namespace airsync_test;

enum class Call { kOpen, kSendHeader, kWrite, kReadResponseHead, kRead };

// Is cancelled in one of its calls, which then returns `result`; until then it answers with `*count` zeros.
class CancelledTransport : public AirSyncTransportInterface {
 public:
  SYNC_RESULT Open(const SERVER_INFO*) override { return At(Call::kOpen); }
  SYNC_RESULT SendHeader(const char*, INT32, UINT32) override { return At(Call::kSendHeader); }
  SYNC_RESULT EndRequest() override { return 0; }
  SYNC_RESULT Write(const UINT8*, INT32, INT32) override { return At(Call::kWrite); }
  SYNC_RESULT ReadResponseHead(UINT16* status, UINT8**, UINT32*, bool, UINT8*, INT32, UINT8*,
                               INT32) override {
    *status = call == Call::kReadResponseHead ? cancelledStatus : 200;
    return At(Call::kReadResponseHead);
  }
  SYNC_RESULT Read(UINT8* destination, INT32* count, INT32) override {
    if (call == Call::kRead) *count = delivered;
    for (INT32 i = 0; i < *count; ++i) destination[i] = 0;
    return At(Call::kRead);
  }
  SYNC_RESULT Close() override { return 0; }
  SYNC_RESULT Reserved7() override { return 0; }
  SYNC_RESULT Reserved8() override { return 0; }
  SYNC_RESULT Cancel() override { return 0; }

  Call call = Call::kOpen;
  SYNC_RESULT result = 0;
  UINT16 cancelledStatus = 0;
  INT32 delivered = 0;
  bool armed = false;

 private:
  SYNC_RESULT At(Call now) {
    if (!armed || now != call) return 0;
    AirSync::getInstance()->CancelSync();
    return result;
  }
};

SYNC_RESULT RunFolderSync() {
  _SYNC_KEY key = {"0"};
  return AirSync::getInstance()->FolderSync(key);
}

SYNC_RESULT RunSendMail() {
  return AirSync::getInstance()->SendMail(reinterpret_cast<const unsigned char*>("Hi"), 2, false, true);
}

SYNC_RESULT RunGetOptions() {
  unsigned char versions[4] = {};
  unsigned char commands[4] = {};
  return AirSync::getInstance()->GetOptions(versions, 4, commands, 4);
}

SYNC_RESULT RunGetAttachment(bool raw) {
  unsigned char buffer[5] = {};
  return AirSync::getInstance()->GetAttachment("5:1:0", buffer, sizeof(buffer), raw);
}

struct CancelledCall {
  const char* name;
  SYNC_RESULT (*run)();
  Call call;
  SYNC_RESULT result;
  UINT16 status;    // of ReadResponseHead
  INT32 delivered;  // by Read
  SYNC_RESULT expected;
  bool later = false;  // the cancel came too late, and is the next command's
};

const CancelledCall kCancelledCalls[] = {
    {"no head, 0", RunFolderSync, Call::kReadResponseHead, 0, 0, 0, 0x80010010},
    {"no head, 0, and no body is wanted", RunSendMail, Call::kReadResponseHead, 0, 0, 0, 0x80010010},
    {"no head, 0, of options", RunGetOptions, Call::kReadResponseHead, 0, 0, 0, 0x80010010},
    {"no head, failed", RunFolderSync, Call::kReadResponseHead, 1, 0, 0, 0x80010010},
    {"no head, failed, of a message", RunSendMail, Call::kReadResponseHead, 1, 0, 0, 0x80010010},
    {"a refused head", RunFolderSync, Call::kReadResponseHead, 1, 404, 0, 0x80020194},
    {"a head", RunFolderSync, Call::kReadResponseHead, 0, 200, 0, 0x80010010},
    {"a head, and no body is wanted", RunSendMail, Call::kReadResponseHead, 0, 200, 0, 0, true},
    {"no body, 0", RunFolderSync, Call::kRead, 0, 0, 0, 0x80010010},
    {"no body, failed", RunFolderSync, Call::kRead, 1, 0, 0, 0x8001000c},
    {"a part of an attachment", [] { return RunGetAttachment(true); }, Call::kRead, 0, 0, 2, 0x80010010},
    {"nothing of an attachment", [] { return RunGetAttachment(true); }, Call::kRead, 0, 0, 0, 0x80010010},
    {"a whole attachment", [] { return RunGetAttachment(true); }, Call::kRead, 0, 0, 5, 0, true},
    {"an attachment, failed", [] { return RunGetAttachment(true); }, Call::kRead, 1, 0, 2, 0x8001000c},
    {"a part, read as a document", [] { return RunGetAttachment(false); }, Call::kRead, 0, 0, 2, 0x80010010},
    {"a request's head", RunFolderSync, Call::kSendHeader, 1, 0, 0, 0x8001000c},
    {"a request's head, 0", RunFolderSync, Call::kSendHeader, 0, 0, 0, 0x80010010},
    {"a request's body", RunSendMail, Call::kWrite, 1, 0, 0, 0x8001000c},
    {"a request's body, 0", RunSendMail, Call::kWrite, 0, 0, 0, 0x80010010},
};

TEST(ACancelledCall, EndsItsCommandWithTheCodeThatTheTransportsHeaderTells) {
  for (const CancelledCall& row : kCancelledCalls) {
    CancelledTransport transport;
    RecordingStore store;
    AirSync* const airSync = AirSync::getInstance();
    airSync->Initialize(TestAccount(), "", &transport, &store, ENCODING_WBXML, nullptr);
    EXPECT_EQ(airSync->Connect(), 0U) << row.name;
    transport.call = row.call;
    transport.result = row.result;
    transport.cancelledStatus = row.status;
    transport.delivered = row.delivered;
    transport.armed = true;
    EXPECT_EQ(row.run(), row.expected) << row.name;
    EXPECT_EQ(airSync->CancelRequested(), row.later) << row.name;
    airSync->Disconnect();
    airSync->Uninitialize();
    AirSync::destroyInstance();
  }
}

TEST(ACancelledCall, OfOpenEndsConnectWithTheTransportsOwnResult) {
  CancelledTransport transport;
  RecordingStore store;
  AirSync* const airSync = AirSync::getInstance();
  airSync->Initialize(TestAccount(), "", &transport, &store, ENCODING_WBXML, nullptr);
  transport.result = 0x87654321;
  transport.armed = true;
  EXPECT_EQ(airSync->Connect(), 0x87654321U);
  EXPECT_FALSE(airSync->CancelRequested());
  airSync->Disconnect();
  airSync->Uninitialize();
  AirSync::destroyInstance();
}

// The same answers without a cancel.
TEST(AShortDelivery, IsAFailureForDocumentsAndTheEndOfAnAttachment) {
  ApiSession session;
  const std::string half = "03 01 6A 00 00 07";
  session.transport.Answer(HexAndText(half));
  EXPECT_EQ(RunFolderSync(), 0x8001000cU);
  unsigned char buffer[5] = {'-', '-', '-', '-', '-'};
  session.transport.Answer("abc");
  EXPECT_EQ(session.airSync->GetAttachment("5:1:0", buffer, sizeof(buffer), true), 0U);
  EXPECT_EQ(std::string(buffer, buffer + sizeof(buffer)), "abc--");
  session.transport.Answer("abc");
  EXPECT_EQ(session.airSync->GetAttachment("5:1:0", buffer, sizeof(buffer), false), 0x8001000cU);
}

}  // namespace
