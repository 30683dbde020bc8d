#include "http/Communications.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>
#include <string>

#include "api/AirSync.h"
#include "support/Account.h"
#include "support/CatchAbort.h"
#include "support/LogRecorder.h"
#include "support/ScriptedTransport.h"

namespace {

using namespace AIRSYNC_STACK;
using airsync_test::CatchAbort;
using airsync_test::LogRecorder;
using airsync_test::Put;
using airsync_test::ScriptedTransport;
using airsync_test::TestAccount;
using airsync_test::WbxmlHead;
using testing::ElementsAre;
using testing::IsEmpty;

class CommunicationsTest : public testing::Test {
 protected:
  ~CommunicationsTest() override { AirSync::destroyInstance(); }

  bool CancelFlag() const { return AirSync::getInstance()->CancelRequested(); }

  UINT8 bytes_[4] = {'a', 'b', 'c', 'd'};
  ScriptedTransport transport_;
  Communications comms_{TestAccount(), &transport_, nullptr};
};

TEST_F(CommunicationsTest, StartOpensTheTransportWithItsOwnCopyOfTheAccount) {
  SERVER_INFO server = TestAccount();
  Communications comms(server, &transport_, nullptr);
  Put(server.host, "changed");
  EXPECT_EQ(comms.Start(), 0U);
  EXPECT_THAT(transport_.Lines(), ElementsAre("Open"));
  EXPECT_NE(transport_.OpenedServer(), &server);
  EXPECT_STREQ(transport_.OpenedServer()->host, "mail.example.test");
}

TEST_F(CommunicationsTest, StartRaisesTheVeryResultOfOpen) {
  transport_.FailAt(1, 0x8123abcd);
  EXPECT_EQ(CatchAbort([&] { comms_.Start(); }), 0x8123abcdU);
}

TEST_F(CommunicationsTest, StartOpensNothingWhenCancelled) {
  comms_.CancelSync();
  AirSync::getInstance()->CancelSync();
  transport_.ClearCalls();
  EXPECT_EQ(CatchAbort([&] { comms_.Start(); }), 0x80010010U);
  EXPECT_THAT(transport_.Lines(), IsEmpty());
  EXPECT_FALSE(CancelFlag());
}

TEST_F(CommunicationsTest, StartEmptiesTheHistory) {
  comms_.NotifyBufferOfRead(bytes_, 4);
  comms_.Read(nullptr, -4);
  EXPECT_EQ(comms_.BufferedBytesAvaliable(), 4U);
  comms_.Start();
  EXPECT_EQ(comms_.BufferedBytesAvaliable(), 0U);
}

TEST_F(CommunicationsTest, PrologueSendsTheHeadWithItsTerminatorCounted) {
  EXPECT_EQ(comms_.Prologue(27, "Sync", ENCODING_WBXML, "POST"), 0U);
  ASSERT_EQ(transport_.Calls().size(), 1U);
  EXPECT_EQ(transport_.Calls()[0].bytes, WbxmlHead("Sync", "27"));
  EXPECT_EQ(transport_.Calls()[0].line,
            "SendHeader " + std::to_string(WbxmlHead("Sync", "27").size() + 1) + " 27");
}

TEST_F(CommunicationsTest, PrologueTakesLengthsBeyondSixteenBits) {
  comms_.Prologue(4000000000U, "SendMail", ENCODING_RAW_MESSAGE, "POST");
  ASSERT_EQ(transport_.Requests().size(), 1U);
  EXPECT_EQ(transport_.Requests()[0].contentLength, 4000000000U);
  EXPECT_NE(transport_.Requests()[0].head.find("Content-Length: 4000000000\r\n"), std::string::npos);
}

TEST_F(CommunicationsTest, PrologueRaisesATransportFailure) {
  transport_.FailAt(1);
  EXPECT_EQ(CatchAbort([&] { comms_.Prologue(0, "Sync", ENCODING_WBXML, "POST"); }), 0x8001000cU);
}

TEST_F(CommunicationsTest, PrologueSendsNothingWhenCancelled) {
  AirSync::getInstance()->CancelSync();
  EXPECT_EQ(CatchAbort([&] { comms_.Prologue(0, "Sync", ENCODING_WBXML, "POST"); }), 0x80010010U);
  EXPECT_THAT(transport_.Lines(), IsEmpty());
  EXPECT_FALSE(CancelFlag());
}

TEST_F(CommunicationsTest, PrologueSendsNothingOfAHeadThatCantBeWritten) {
  EXPECT_EQ(CatchAbort([&] { comms_.Prologue(0, "Sync\r\nX: y", ENCODING_WBXML, "POST"); }), 0x80000001U);
  const std::string tooLong(8192, 'c');
  EXPECT_EQ(CatchAbort([&] { comms_.Prologue(0, tooLong.c_str(), ENCODING_WBXML, "POST"); }), 0x80000001U);
  EXPECT_THAT(transport_.Lines(), IsEmpty());
}

TEST_F(CommunicationsTest, SendWritesDocumentBytesAndSendFileRawOnes) {
  comms_.Send(bytes_, 4);
  comms_.SendFile(bytes_ + 1, 2);
  EXPECT_THAT(transport_.Lines(), ElementsAre("Write 4 document", "Write 2 raw"));
  EXPECT_EQ(transport_.Calls()[0].bytes, "abcd");
  EXPECT_EQ(transport_.Calls()[1].bytes, "bc");
}

TEST_F(CommunicationsTest, SendAndSendFileRaiseATransportFailure) {
  transport_.FailAt(1);
  EXPECT_EQ(CatchAbort([&] { comms_.Send(bytes_, 4); }), 0x8001000cU);
  transport_.FailAt(1);
  EXPECT_EQ(CatchAbort([&] { comms_.SendFile(bytes_, 4); }), 0x8001000cU);
}

TEST_F(CommunicationsTest, SendAndSendFileWriteNothingWhenCancelled) {
  AirSync::getInstance()->CancelSync();
  EXPECT_EQ(CatchAbort([&] { comms_.Send(bytes_, 4); }), 0x80010010U);
  EXPECT_FALSE(CancelFlag());
  AirSync::getInstance()->CancelSync();
  EXPECT_EQ(CatchAbort([&] { comms_.SendFile(bytes_, 4); }), 0x80010010U);
  EXPECT_FALSE(CancelFlag());
  EXPECT_THAT(transport_.Lines(), IsEmpty());
}

TEST_F(CommunicationsTest, CountOutStreamAddsUpAndSendsNothing) {
  comms_.CountOutStream(bytes_, 4);
  comms_.CountOutStream(nullptr, 70000);
  EXPECT_EQ(comms_.OutCount(), 70004);
  comms_.ResetOutCount();
  EXPECT_EQ(comms_.OutCount(), 0);
  EXPECT_THAT(transport_.Lines(), IsEmpty());
}

TEST_F(CommunicationsTest, EpilogueEndsTheRequest) {
  comms_.Epilogue();
  EXPECT_THAT(transport_.Lines(), ElementsAre("EndRequest"));
  transport_.FailAt(1);
  EXPECT_EQ(CatchAbort([&] { comms_.Epilogue(); }), 0x8001000cU);
}

TEST_F(CommunicationsTest, StopClosesAndIgnoresTheResult) {
  transport_.FailAt(1);
  EXPECT_EQ(CatchAbort([&] { comms_.Stop(); }), 0U);
  EXPECT_THAT(transport_.Lines(), ElementsAre("Close"));
}

TEST_F(CommunicationsTest, CancelSyncTellsTheTransportAndLeavesTheFlag) {
  comms_.CancelSync();
  EXPECT_THAT(transport_.Lines(), ElementsAre("Cancel"));
  EXPECT_FALSE(CancelFlag());
}

// What one whole life logs under source 1, from a level on.
std::vector<std::string> LoggedLife(AS_LOG_LEVEL_T level) {
  LogRecorder log({AS_LOG_SOURCE_COMMUNICATIONS}, level);
  ScriptedTransport transport("");
  {
    Communications comms(TestAccount(), &transport, Log::getInstance());
    comms.Start();
    comms.Prologue(5, "Sync", ENCODING_WBXML, "POST");
    UINT8 byte = 0;
    comms.Send(&byte, 1);
    comms.CountOutStream(&byte, 1);
    comms.Epilogue();
    comms.ReadHTTPHeader();
    comms.CancelSync();
    comms.Stop();
  }
  AirSync::destroyInstance();
  return log.Lines();
}

TEST(CommunicationsLog, TracesEachStepInItsOrder) {
  EXPECT_THAT(
      LoggedLife(AS_LOG_LEVEL_TRACE),
      ElementsAre("1 Communications::Communications{", "1 ==================}", "1 Communications::Start{",
                  "1 Communications::Start}", "1 Communications::Prologue{",
                  "1 Communications::Prologue, http header now is |" + WbxmlHead("Sync", "5"),
                  "1 Communications::Prologue, http header now is |<5>", "1 Communications::Prologue}",
                  "1 Communications::Epilogue{}", "1 Communications::BeforeRead{}",
                  "1 Communications::Stop{}", "1 Communications::~Communications{", "1 ==================}"));
}

TEST(CommunicationsLog, OnlyTheHeadIsADetail) {
  EXPECT_THAT(LoggedLife(AS_LOG_LEVEL_DETAIL),
              ElementsAre("1 Communications::Prologue, http header now is |" + WbxmlHead("Sync", "5"),
                          "1 Communications::Prologue, http header now is |<5>"));
  EXPECT_THAT(LoggedLife(AS_LOG_LEVEL_INFO), IsEmpty());
}

TEST(CommunicationsLog, StopsWhereAStepFails) {
  LogRecorder log({AS_LOG_SOURCE_COMMUNICATIONS}, AS_LOG_LEVEL_TRACE);
  ScriptedTransport transport;
  {
    Communications comms(TestAccount(), &transport, Log::getInstance());
    log.Clear();
    transport.FailAt(1);
    EXPECT_NE(CatchAbort([&] { comms.Start(); }), 0U);
    EXPECT_THAT(log.Lines(), ElementsAre("1 Communications::Start{"));
    log.Clear();
    AirSync::getInstance()->CancelSync();
    EXPECT_NE(CatchAbort([&] { comms.Prologue(5, "Sync", ENCODING_WBXML, "POST"); }), 0U);
    EXPECT_THAT(log.Lines(), ElementsAre("1 Communications::Prologue{"));
  }
  AirSync::destroyInstance();
}

}  // namespace
