#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "api/AirSync.h"
#include "support/Account.h"
#include "support/ApiSession.h"
#include "support/FailingMemory.h"
#include "support/LogRecorder.h"

namespace {

using namespace AIRSYNC_STACK;
using namespace airsync_test;
using testing::ElementsAre;
using testing::IsEmpty;

// "notification:", 13 bytes, and 33 22 11 00 55 44 77 66 88 99 AA BB CC DD EE FF.
const char kPayload[] = "bm90aWZpY2F0aW9uOjMiEQBVRHdmiJmqu8zd7v8=";
const char kGuid[] = "{00112233-4455-6677-8899-aabbccddeeff}";

// Without Initialize and Connect, unless a test does so.
class NotifyRecv : public testing::Test {
 protected:
  NotifyRecv() { FailingMemory::Reset(); }
  ~NotifyRecv() override {
    airSync_->Disconnect();
    airSync_->Uninitialize();
    AirSync::destroyInstance();
    EXPECT_EQ(FailingMemory::LiveBlocks(), 0U);
  }

  // From a block of exactly the payload's length: AddressSanitizer sees a read behind it.
  SYNC_RESULT Check(const std::string& payload, const std::string& guid = kGuid) {
    const std::vector<unsigned char> bytes(payload.begin(), payload.end());
    _SYNC_KEY key = {};
    Put(key.text, guid);
    return airSync_->NotifyRecv(bytes.data(), static_cast<int>(bytes.size()), key);
  }

  AirSync* const airSync_ = AirSync::getInstance();
};

TEST_F(NotifyRecv, AcceptsItsOwnGuid) { EXPECT_EQ(Check(kPayload), 0U); }

TEST_F(NotifyRecv, AcceptsItWithMoreBytesBehindIt) {
  EXPECT_EQ(Check("bm90aWZpY2F0aW9uOjMiEQBVRHdmiJmqu8zd7v9tb3Jl"), 0U);  // "more"
}

TEST_F(NotifyRecv, RefusesAGuidWithOneDifferingCharacter) {
  for (std::size_t at = 0; at < sizeof kGuid - 1; ++at) {
    std::string guid = kGuid;
    guid[at] = guid[at] == '0' ? '1' : '0';
    EXPECT_EQ(Check(kPayload, guid), 0x80000000U) << guid;
  }
  EXPECT_EQ(Check(kPayload, "{00112233-4455-6677-8899-AABBCCDDEEFF}"), 0x80000000U);
  EXPECT_EQ(Check(kPayload, std::string(kGuid) + " "), 0x80000000U);
  EXPECT_EQ(Check(kPayload, ""), 0x80000000U);
  EXPECT_EQ(Check(kPayload, std::string(68, '{')), 0x80000000U) << "a key that fills its field";
}

TEST_F(NotifyRecv, RefusesAnEmptyPayloadWithoutDecoding) {
  _SYNC_KEY key = {};
  Put(key.text, kGuid);
  const unsigned char* const payload = reinterpret_cast<const unsigned char*>(kPayload);
  EXPECT_EQ(airSync_->NotifyRecv(payload, 0, key), 0x80000000U);
  EXPECT_EQ(airSync_->NotifyRecv(payload, -1, key), 0x80000000U);
  EXPECT_EQ(airSync_->NotifyRecv(nullptr, 40, key), 0x80000000U);
  EXPECT_EQ(FailingMemory::Allocations(), 0U);
}

TEST_F(NotifyRecv, RefusesFewerThan29Bytes) {
  EXPECT_EQ(Check("bm90aWZpY2F0aW9uOjMiEQBVRHdmiJmqu8zd7g=="), 0x80000000U);  // 28
  EXPECT_EQ(Check("bm90aWZpY2F0aW9uOjMiEQBVRHdmiJmqu8zd"), 0x80000000U);      // 27
  EXPECT_EQ(Check("AA=="), 0x80000000U);
  EXPECT_EQ(Check("===="), 0x80000000U);
}

// The decoder stops there; the zeros behind are not the server's.
TEST_F(NotifyRecv, RefusesWhatEndsWithPaddingInTheMiddle) {
  const std::string zeros = "{00000000-0000-0000-0000-000000000000}";
  EXPECT_EQ(Check(std::string(40, 'A'), zeros), 0U);
  EXPECT_EQ(Check("AA==" + std::string(40, 'A'), zeros), 0x80000000U);
  EXPECT_EQ(Check("AAA=" + std::string(40, 'A'), zeros), 0x80000000U);
}

TEST_F(NotifyRecv, RefusesWhatIsNoBase64) {
  EXPECT_EQ(Check(std::string(kPayload).substr(0, 39)), 0x80000000U);
  EXPECT_EQ(Check("*" + std::string(kPayload).substr(1)), 0x80000000U);
  EXPECT_EQ(Check(std::string(40, '\n')), 0x80000000U);
  EXPECT_EQ(Check("A"), 0x80000000U);
}

TEST_F(NotifyRecv, ReadsNoFurtherThanANulInThePayload) {
  EXPECT_EQ(Check(std::string(kPayload) + '\0' + "garbage"), 0U);
  EXPECT_EQ(Check(std::string(40, '\0')), 0x80000000U);
}

TEST_F(NotifyRecv, ReturnsWhereMemoryRunsOut) {
  for (std::size_t k = 1; k <= 4; ++k) {
    FailingMemory::Reset();
    FailingMemory::FailAt(k);
    EXPECT_EQ(Check(kPayload), 0x8001000dU) << k;
    EXPECT_EQ(FailingMemory::LiveBlocks(), 0U);
  }
  FailingMemory::Reset();
  EXPECT_EQ(Check(kPayload), 0U);
  EXPECT_EQ(FailingMemory::Allocations(), 4U);
}

// A block and its node.
TEST_F(NotifyRecv, LeavesTheDecodedBytesUntilTheNextRelease) {
  EXPECT_EQ(Check(kPayload), 0U);
  EXPECT_EQ(FailingMemory::LiveBlocks(), 2U);
  EXPECT_EQ(Check("****"), 0x80000000U);
  EXPECT_EQ(FailingMemory::LiveBlocks(), 4U);
  airSync_->Uninitialize();
  EXPECT_EQ(FailingMemory::LiveBlocks(), 0U);
}

TEST_F(NotifyRecv, SendsNothingAndAsksStorageForNothing) {
  ScriptedTransport transport;
  RecordingStore store;
  airSync_->Initialize(TestAccount(), "", &transport, &store, ENCODING_WBXML, nullptr);
  EXPECT_EQ(Check(kPayload), 0U);
  EXPECT_EQ(airSync_->Connect(), 0U);
  airSync_->CancelSync();
  transport.ClearCalls();
  EXPECT_EQ(Check(kPayload), 0U);
  EXPECT_TRUE(airSync_->CancelRequested()) << "it belongs to the next command";
  EXPECT_THAT(transport.Lines(), IsEmpty());
  EXPECT_THAT(store.Calls(), IsEmpty());
  airSync_->Disconnect();
}

TEST_F(NotifyRecv, LogsOnlyTheIdentifierAsAFact) {
  ScriptedTransport transport;
  RecordingStore store;
  LogRecorder log({AS_LOG_SOURCE_AIRSYNC}, AS_LOG_LEVEL_INFO);
  airSync_->Initialize(TestAccount(), "", &transport, &store, ENCODING_WBXML, Log::getInstance());
  EXPECT_EQ(Check(kPayload), 0U);
  EXPECT_EQ(Check("bm8="), 0x80000000U);
  EXPECT_THAT(log.Lines(), ElementsAre(std::string("0 guid: |") + kGuid));
  airSync_->Initialize(TestAccount(), "", &transport, &store, ENCODING_WBXML, nullptr);
}

TEST_F(NotifyRecv, LogsWhatItGotAndWhatItIs) {
  ScriptedTransport transport;
  RecordingStore store;
  LogRecorder log({AS_LOG_SOURCE_AIRSYNC}, AS_LOG_LEVEL_DETAIL);
  airSync_->Initialize(TestAccount(), "", &transport, &store, ENCODING_WBXML, Log::getInstance());
  EXPECT_EQ(Check(kPayload), 0U);
  EXPECT_THAT(
      log.Lines(),
      ElementsAre(std::string("0 base64 encoded text: |") + kPayload,
                  "0 base64 decoded text: |[6E]|[6F]|[74]|[69]|[66]|[69]|[63]|[61]|[74]|[69]|[6F]|[6E]"
                  "|[3A]|[33]|[22]|[11]|[00]|[55]|[44]|[77]|[66]|[88]|[99]|[AA]|[BB]|[CC]|[DD]|[EE]"
                  "|[FF]",
                  std::string("0 guid: |") + kGuid));
  log.Clear();
  EXPECT_EQ(Check("****"), 0x80000000U);
  EXPECT_THAT(log.Lines(), IsEmpty());
  EXPECT_EQ(Check("bm8="), 0x80000000U);
  EXPECT_THAT(log.Lines(), ElementsAre("0 base64 encoded text: |bm8=", "0 base64 decoded text: |[6E]|[6F]"));
  log.Clear();
  Log::SetLevel(AS_LOG_SOURCE_AIRSYNC, AS_LOG_LEVEL_INFO, nullptr);
  airSync_->Initialize(TestAccount(), "", &transport, &store, ENCODING_WBXML, nullptr);
}

}  // namespace
