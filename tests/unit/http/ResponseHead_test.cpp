#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>

#include "api/AirSync.h"
#include "http/Communications.h"
#include "support/Account.h"
#include "support/CatchAbort.h"
#include "support/ScriptedTransport.h"

namespace {

using namespace AIRSYNC_STACK;
using airsync_test::CatchAbort;
using airsync_test::ScriptedResponse;
using airsync_test::ScriptedTransport;
using airsync_test::TestAccount;
using testing::ElementsAre;
using testing::IsEmpty;

class ResponseHead : public testing::Test {
 protected:
  ~ResponseHead() override { AirSync::destroyInstance(); }

  SYNC_RESULT ReadHead(UINT16 status, SYNC_RESULT headResult) {
    ScriptedResponse response;
    response.status = status;
    response.headResult = headResult;
    transport_.Answer(response);
    return CatchAbort([&] { EXPECT_EQ(comms_.ReadHTTPHeader(), 0U); });
  }

  ScriptedTransport transport_;
  Communications comms_{TestAccount(), &transport_, nullptr};
};

TEST_F(ResponseHead, ThatTheTransportAcceptsIsAcceptedWhateverItsStatus) {
  EXPECT_EQ(ReadHead(200, 0), 0U);
  EXPECT_EQ(ReadHead(401, 0), 0U);
  EXPECT_EQ(ReadHead(500, 0), 0U);
  EXPECT_EQ(ReadHead(0, 0), 0U);
}

TEST_F(ResponseHead, ThatTheTransportRefusesIsRaisedByItsStatus) {
  EXPECT_EQ(ReadHead(401, 1), 0x80010012U);
  EXPECT_EQ(ReadHead(400, 1), 0x80010013U);
  EXPECT_EQ(ReadHead(500, 1), 0x80010014U);
  EXPECT_EQ(ReadHead(404, 1), 0x80020194U);
  EXPECT_EQ(ReadHead(200, 1), 0x800200c8U);
  EXPECT_EQ(ReadHead(0, 1), 0x80020000U);
  EXPECT_EQ(ReadHead(402, 0x80001234), 0x80020192U);
  EXPECT_EQ(ReadHead(501, 0x80001234), 0x800201f5U);
  EXPECT_EQ(ReadHead(503, 0x80001234), 0x800201f7U);
  EXPECT_EQ(ReadHead(65535, 1), 0x8002ffffU);
}

TEST_F(ResponseHead, IsNotReadWhenCancelled) {
  AirSync::getInstance()->CancelSync();
  EXPECT_EQ(CatchAbort([&] { comms_.ReadHTTPHeader(); }), 0x80010010U);
  EXPECT_THAT(transport_.Lines(), IsEmpty());
  EXPECT_FALSE(AirSync::getInstance()->CancelRequested());
}

TEST_F(ResponseHead, BeginsWithAnEmptyHistory) {
  UINT8 bytes[] = {'a', 'b', 'c'};
  comms_.NotifyBufferOfRead(bytes, 3);
  comms_.Read(nullptr, -3);
  EXPECT_EQ(ReadHead(200, 0), 0U);
  EXPECT_EQ(comms_.BufferedBytesAvaliable(), 0U);
}

// Keeps what ReadResponseHead was given, and changes what it may change.
class HeadSpy : public ScriptedTransport {
 public:
  SYNC_RESULT ReadResponseHead(UINT16* status, UINT8** destination, UINT32* length, bool raw, UINT8* first,
                               INT32 firstLength, UINT8* second, INT32 secondLength) override {
    destination_ = *destination;
    length_ = *length;
    raw_ = raw;
    first_ = first;
    firstLength_ = firstLength;
    second_ = second;
    secondLength_ = secondLength;
    *status = 200;
    *destination = nullptr;
    *length = 0;
    return 0;
  }

  const UINT8* destination_ = nullptr;
  UINT32 length_ = 0;
  bool raw_ = false;
  const UINT8* first_ = nullptr;
  INT32 firstLength_ = 0;
  const UINT8* second_ = nullptr;
  INT32 secondLength_ = 0;
};

TEST_F(ResponseHead, PassesTheCallersValuesThrough) {
  HeadSpy transport;
  Communications comms(TestAccount(), &transport, nullptr);
  UINT8 destination[8] = {};
  UINT8 first[4] = {};
  UINT8 second[2] = {};
  EXPECT_EQ(comms.BeforeRead(destination, 8, true, first, 4, second, 2), 0U);
  EXPECT_EQ(transport.destination_, destination);
  EXPECT_EQ(transport.length_, 8U);
  EXPECT_TRUE(transport.raw_);
  EXPECT_EQ(transport.first_, first);
  EXPECT_EQ(transport.firstLength_, 4);
  EXPECT_EQ(transport.second_, second);
  EXPECT_EQ(transport.secondLength_, 2);
}

TEST_F(ResponseHead, OfADocumentIsReadWithZerosOnly) {
  HeadSpy transport;
  transport.length_ = 1;
  transport.raw_ = true;
  transport.firstLength_ = 1;
  transport.secondLength_ = 1;
  UINT8 any = 0;
  transport.destination_ = &any;
  transport.first_ = &any;
  transport.second_ = &any;
  Communications comms(TestAccount(), &transport, nullptr);
  EXPECT_EQ(comms.ReadHTTPHeader(), 0U);
  EXPECT_EQ(transport.destination_, nullptr);
  EXPECT_EQ(transport.length_, 0U);
  EXPECT_FALSE(transport.raw_);
  EXPECT_EQ(transport.first_, nullptr);
  EXPECT_EQ(transport.firstLength_, 0);
  EXPECT_EQ(transport.second_, nullptr);
  EXPECT_EQ(transport.secondLength_, 0);
}

}  // namespace
