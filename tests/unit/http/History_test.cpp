// The history of the last 69 bytes, from which decoders read again what they gave back.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>
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

// `length` bytes that differ from all their neighbours within 251.
std::string Pattern(std::size_t length) {
  std::string text;
  for (std::size_t i = 0; i < length; ++i) text += static_cast<char>(i % 251);
  return text;
}

class History : public testing::Test {
 protected:
  ~History() override { AirSync::destroyInstance(); }

  void BeginWith(const std::string& body) {
    transport_.Answer(body);
    comms_.ReadHTTPHeader();
    transport_.ClearCalls();
  }

  std::string Read(std::size_t count) {
    // Exactly as large as what is read, so that AddressSanitizer sees one byte more.
    const auto buffer = std::make_unique<UINT8[]>(count);
    comms_.Read(buffer.get(), static_cast<int>(count));
    return std::string(reinterpret_cast<const char*>(buffer.get()), count);
  }

  void StepBack(int count) { comms_.Read(nullptr, -count); }

  ScriptedTransport transport_;
  Communications comms_{TestAccount(), &transport_, nullptr};
};

typedef History HistoryDeathTest;

TEST_F(History, IsEmptyAtTheBeginning) {
  EXPECT_EQ(comms_.BufferedBytesAvaliable(), 0U);
  UINT8 byte = 7;
  EXPECT_EQ(comms_.ReadFromBuffer(&byte, 1), 0U);
  EXPECT_EQ(byte, 7);
}

TEST_F(History, HandsOutAgainWhatWasGivenBackThenFreshBytes) {
  BeginWith("abcdefg");
  EXPECT_EQ(Read(3), "abc");
  StepBack(3);
  EXPECT_EQ(comms_.BufferedBytesAvaliable(), 3U);
  EXPECT_EQ(Read(5), "abcde");
  EXPECT_THAT(transport_.Lines(), ElementsAre("Read 3 document", "Read 2 document"));
  EXPECT_EQ(Read(2), "fg");
}

TEST_F(History, AsksTheTransportForNothingThatItHolds) {
  BeginWith("abcdef");
  EXPECT_EQ(Read(6), "abcdef");
  transport_.ClearCalls();
  StepBack(4);
  EXPECT_EQ(Read(1), "c");
  EXPECT_EQ(Read(3), "def");
  EXPECT_THAT(transport_.Lines(), IsEmpty());
  EXPECT_EQ(comms_.BufferedBytesAvaliable(), 0U);
}

TEST_F(History, ReadOfNothingDoesNothing) {
  BeginWith("ab");
  EXPECT_EQ(Read(1), "a");
  transport_.ClearCalls();
  comms_.Read(nullptr, 0);
  UINT8 byte = 7;
  comms_.Read(&byte, 0);
  EXPECT_EQ(byte, 7);
  EXPECT_EQ(comms_.BufferedBytesAvaliable(), 0U);
  EXPECT_THAT(transport_.Lines(), IsEmpty());
}

TEST_F(History, KeepsTheLast69BytesOfALongRead) {
  BeginWith(Pattern(200));
  EXPECT_EQ(Read(150), Pattern(150));
  StepBack(69);
  EXPECT_EQ(comms_.BufferedBytesAvaliable(), 69U);
  EXPECT_EQ(Read(70), Pattern(200).substr(81, 70));
  EXPECT_THAT(transport_.Lines(), ElementsAre("Read 150 document", "Read 1 document"));
}

TEST_F(History, KeepsTheLast69BytesOfManySmallReads) {
  BeginWith(Pattern(100));
  for (int i = 0; i < 50; ++i) EXPECT_EQ(Read(2), Pattern(100).substr(static_cast<std::size_t>(2 * i), 2));
  StepBack(69);
  EXPECT_EQ(Read(69), Pattern(100).substr(31));
}

TEST_F(History, StepsBackSeveralTimesInARow) {
  BeginWith(Pattern(69));
  Read(69);
  StepBack(30);
  StepBack(39);
  EXPECT_EQ(comms_.BufferedBytesAvaliable(), 69U);
  EXPECT_EQ(Read(69), Pattern(69));
}

TEST_F(HistoryDeathTest, AStepBackOf70BytesIsAsserted) {
  BeginWith(Pattern(100));
  Read(100);
  EXPECT_DEATH(StepBack(70),
               "Communications\\.cpp:[0-9]+: void AIRSYNC_STACK::Communications::Read\\(UINT8\\*, int\\): "
               "Assertion .g_ReadBufferPosition >= g_ReadBuffer' failed");
}

TEST_F(HistoryDeathTest, StepsBackOf70BytesInAllAreAsserted) {
  BeginWith(Pattern(100));
  Read(100);
  StepBack(69);
  EXPECT_DEATH(StepBack(1), "Assertion .g_ReadBufferPosition >= g_ReadBuffer' failed");
}

TEST_F(HistoryDeathTest, TheLargestStepBackIsAsserted) {
  EXPECT_DEATH(comms_.Read(nullptr, INT32_MIN), "Assertion .g_ReadBufferPosition >= g_ReadBuffer' failed");
}

TEST_F(HistoryDeathTest, ACopyOfNothingIsAsserted) {
  UINT8 byte = 0;
  EXPECT_DEATH(comms_.ReadFromBuffer(&byte, 0),
               "Communications\\.cpp:[0-9]+: UINT16 "
               "AIRSYNC_STACK::Communications::ReadFromBuffer\\(UINT8\\*, unsigned int\\): "
               "Assertion .BytesRequested > 0' failed");
}

TEST_F(HistoryDeathTest, ACopyOf65536BytesFromItIsACopyOfNothing) {
  UINT8 byte = 0;
  EXPECT_DEATH(comms_.ReadFromBuffer(&byte, 65536), "Assertion .BytesRequested > 0' failed");
}

TEST_F(History, ServesCountsModulo65536) {
  BeginWith("abc");
  Read(3);
  StepBack(3);
  UINT8 bytes[4] = "...";
  EXPECT_EQ(comms_.ReadFromBuffer(bytes, 65536 + 2), 2U);
  EXPECT_STREQ(reinterpret_cast<const char*>(bytes), "ab.");
  EXPECT_EQ(comms_.BufferedBytesAvaliable(), 1U);
  EXPECT_EQ(comms_.ReadFromBuffer(nullptr, 65536), 0U);
  EXPECT_EQ(comms_.BufferedBytesAvaliable(), 1U);
}

TEST_F(History, SkipsWhereThereIsNoDestination) {
  BeginWith("abcd");
  Read(4);
  StepBack(4);
  EXPECT_EQ(comms_.ReadFromBuffer(nullptr, 0), 0U);
  EXPECT_EQ(comms_.ReadFromBuffer(nullptr, 3), 3U);
  EXPECT_EQ(Read(1), "d");
  StepBack(2);
  EXPECT_EQ(comms_.ReadFromBuffer(nullptr, 9), 2U);
}

TEST_F(History, ServesNoMoreThanItHolds) {
  BeginWith("abcd");
  Read(4);
  StepBack(2);
  UINT8 bytes[5] = "....";
  EXPECT_EQ(comms_.ReadFromBuffer(bytes, 4), 2U);
  EXPECT_STREQ(reinterpret_cast<const char*>(bytes), "cd..");
}

TEST_F(History, NotifyKeepsTheNumberOfBytesToHandOutAgain) {
  BeginWith("abc");
  Read(3);
  StepBack(2);
  UINT8 more[] = {'d', 'e'};
  comms_.NotifyBufferOfRead(more, 2);
  EXPECT_EQ(comms_.BufferedBytesAvaliable(), 2U);
  UINT8 bytes[3] = "..";
  comms_.ReadFromBuffer(bytes, 2);
  EXPECT_STREQ(reinterpret_cast<const char*>(bytes), "de");
  StepBack(5);
  EXPECT_EQ(Read(5), "abcde");
}

TEST_F(History, NotifyOfNothingChangesNothing) {
  BeginWith("ab");
  Read(2);
  comms_.NotifyBufferOfRead(nullptr, 0);
  comms_.NotifyBufferOfRead(nullptr, -1);
  StepBack(2);
  EXPECT_EQ(Read(2), "ab");
}

TEST_F(History, DoesNotLimitTheSizeOfARead) {
  for (const std::size_t size : {65535U, 65536U, 65537U, 200000U}) {
    BeginWith(Pattern(size));
    EXPECT_EQ(Read(size), Pattern(size)) << size;
    EXPECT_THAT(transport_.Lines(), ElementsAre("Read " + std::to_string(size) + " document"));
    StepBack(69);
    EXPECT_EQ(Read(69), Pattern(size).substr(size - 69)) << size;
  }
}

TEST_F(History, LeadsALongReadAfterAStepBack) {
  BeginWith(Pattern(65600));
  Read(64);
  StepBack(64);
  EXPECT_EQ(Read(65600), Pattern(65600));
  EXPECT_THAT(transport_.Lines(), ElementsAre("Read 64 document", "Read 65536 document"));
}

TEST_F(History, SurvivesThousandsOfSingleBytes) {
  const std::string body = Pattern(10000);
  BeginWith(body);
  for (std::size_t i = 0; i < body.size(); ++i) {
    ASSERT_EQ(Read(1), body.substr(i, 1)) << i;
    if (i < 68) continue;
    StepBack(69);
    ASSERT_EQ(Read(69), body.substr(i - 68, 69)) << i;
  }
}

TEST_F(History, ReadFileNeitherUsesNorFillsIt) {
  BeginWith("abcdef");
  EXPECT_EQ(Read(2), "ab");
  StepBack(2);
  UINT8 bytes[4] = "...";
  comms_.ReadFile(bytes, 3);
  EXPECT_STREQ(reinterpret_cast<const char*>(bytes), "cde");
  EXPECT_EQ(comms_.BufferedBytesAvaliable(), 2U);
  EXPECT_EQ(Read(3), "abf");
  EXPECT_THAT(transport_.Lines(), ElementsAre("Read 2 document", "Read 3 raw", "Read 1 document"));
}

TEST_F(History, ReadsRaiseATransportFailure) {
  BeginWith("abc");
  UINT8 byte = 0;
  transport_.FailAt(1);
  EXPECT_EQ(CatchAbort([&] { comms_.Read(&byte, 1); }), 0x8001000cU);
  transport_.FailAt(1);
  EXPECT_EQ(CatchAbort([&] { comms_.ReadFile(&byte, 1); }), 0x8001000cU);
}

TEST_F(History, ReadsRaiseWhenFewerBytesComeThanWanted) {
  ScriptedResponse response;
  response.pieces = {"ab", "cd"};
  transport_.Answer(response);
  comms_.ReadHTTPHeader();
  UINT8 bytes[4] = {};
  EXPECT_EQ(CatchAbort([&] { comms_.Read(bytes, 3); }), 0x8001000cU);
}

TEST_F(History, LeavesTheLengthOfARawReadToTheTransport) {
  BeginWith("ab");
  UINT8 bytes[5] = "....";
  EXPECT_EQ(CatchAbort([&] { comms_.ReadFile(bytes, 4); }), 0U);
  EXPECT_STREQ(reinterpret_cast<const char*>(bytes), "ab..");
}

// Claims to have delivered more than was wanted.
class BoastfulTransport : public ScriptedTransport {
 public:
  SYNC_RESULT Read(UINT8*, INT32* count, INT32) override {
    *count += claim;
    return 0;
  }
  INT32 claim = 0;
};

TEST_F(History, ReadsRaiseWhenAnImpossibleNumberOfBytesComes) {
  BoastfulTransport transport;
  Communications comms(TestAccount(), &transport, nullptr);
  UINT8 byte = 0;
  for (const INT32 claim : {1, 1000000, -1, -2}) {
    transport.claim = claim;
    EXPECT_EQ(CatchAbort([&] { comms.Read(&byte, 1); }), 0x8001000cU) << claim;
  }
}

TEST_F(History, ReadsAskNothingWhenCancelled) {
  BeginWith("abc");
  UINT8 byte = 0;
  AirSync* const airSync = AirSync::getInstance();
  airSync->CancelSync();
  EXPECT_EQ(CatchAbort([&] { comms_.Read(&byte, 1); }), 0x80010010U);
  EXPECT_FALSE(airSync->CancelRequested());
  airSync->CancelSync();
  EXPECT_EQ(CatchAbort([&] { comms_.ReadFile(&byte, 1); }), 0x80010010U);
  EXPECT_FALSE(airSync->CancelRequested());
  EXPECT_THAT(transport_.Lines(), IsEmpty());
}

TEST_F(History, AlsoBytesThatItHoldsAreNotReadWhenCancelled) {
  BeginWith("abc");
  Read(1);
  StepBack(1);
  AirSync::getInstance()->CancelSync();
  UINT8 byte = 0;
  EXPECT_EQ(CatchAbort([&] { comms_.Read(&byte, 1); }), 0x80010010U);
  EXPECT_EQ(byte, 0);
}

TEST_F(History, StepsBackAreRefusedWhenCancelled) {
  BeginWith("abc");
  Read(1);
  AirSync::getInstance()->CancelSync();
  EXPECT_EQ(CatchAbort([&] { StepBack(1); }), 0x80010010U);
  EXPECT_EQ(comms_.BufferedBytesAvaliable(), 0U);
}

}  // namespace
