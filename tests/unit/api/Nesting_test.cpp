// What a callback may call while a command runs: NotifyRecv and CancelSync, and nothing else.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>

#include "support/ApiSession.h"

namespace {

using namespace AIRSYNC_STACK;
using namespace airsync_test;
using testing::ElementsAre;

// 29 bytes of which those from offset 13 are the GUID below.
const char kPayload[] = "MDEyMzQ1Njc4OWFiYzMiEQBVRHdmiJmqu8zd7v8A";
const _SYNC_KEY kGuid = {"{00112233-4455-6677-8899-aabbccddeeff}"};

SYNC_RESULT CheckNotification(ApiSession& session) {
  return session.airSync->NotifyRecv(reinterpret_cast<const unsigned char*>(kPayload), sizeof kPayload - 1,
                                     kGuid);
}

// Two collections with a deletion each; the second is another folder's.
const char kTwoCollections[] =
    "03 01 6A 00 45 5C"
    "  4F 4B 03 'k2' 00 01 52 03 '5' 00 01 56 49 4D 03 '5:1' 00 01 01 01 01"
    "  4F 4B 03 'k3' 00 01 52 03 '6' 00 01 01"
    "  01 01";

// Two deletions in one collection.
const char kTwoDeletions[] =
    "03 01 6A 00 45 5C 4F 4B 03 'k2' 00 01 52 03 '5' 00 01"
    "  56 49 4D 03 '5:1' 00 01 01 49 4D 03 '5:2' 00 01 01 01 01 01 01";

TEST(Nesting, NotifyRecvInACallbackLeavesTheCommandItsFrame) {
  ApiSession session;
  SYNC_RESULT checked = 1;
  session.store.OnCall([&](const StoreCall& call) {
    if (call.name == "DeleteServerItem") checked = CheckNotification(session);
  });
  session.transport.Answer(HexAndText(kTwoCollections));
  EXPECT_EQ(session.airSync->Sync(session.key, &session.folder), 0x80010011U) << "an abort after it";
  EXPECT_EQ(checked, 0U);
  EXPECT_EQ(FailingMemory::LiveBlocks(), 0U);
  EXPECT_EQ(Perform(session, "Sync"), 0U);
}

TEST(Nesting, NotifyRecvThatFailsInACallbackTakesNothingFromTheCommand) {
  ApiSession session;
  SYNC_RESULT checked = 0;
  std::size_t left = 1;
  session.store.OnCall([&](const StoreCall& call) {
    if (call.name != "DeleteServerItem" || *call.id != "5:1") return;
    const std::size_t before = FailingMemory::LiveBlocks();
    FailingMemory::FailAt(3);  // the second block of NotifyRecv
    checked = CheckNotification(session);
    left = FailingMemory::LiveBlocks() - before;
  });
  session.transport.Answer(HexAndText(kTwoDeletions));
  EXPECT_EQ(session.airSync->Sync(session.key, &session.folder), 0U);
  EXPECT_EQ(checked, 0x8001000dU);
  EXPECT_EQ(left, 0U);
  EXPECT_THAT(session.store.Lines(), ElementsAre("GetNextChange 7", "DeleteServerItem 7 id=5:1",
                                                 "DeleteServerItem 7 id=5:2", "StoreSyncKey 7 key=k2"));
  EXPECT_EQ(FailingMemory::LiveBlocks(), 0U);
}

TEST(Nesting, NotifyRecvThatFailsInACallbackTakesNoCancelFromTheCommand) {
  ApiSession session;
  session.store.OnCall([&](const StoreCall& call) {
    if (call.name != "DeleteServerItem") return;
    session.airSync->CancelSync();
    FailingMemory::FailAt(1);
    EXPECT_EQ(CheckNotification(session), 0x8001000dU);
  });
  session.transport.Answer(HexAndText(kTwoDeletions));
  EXPECT_EQ(session.airSync->Sync(session.key, &session.folder), 0x80010010U);
}

TEST(Nesting, ACallbackRunsNoOtherOperation) {
  ApiSession session;
  ScriptedTransport otherTransport;
  std::size_t tried = 0;
  const auto tryAll = [&] {
    AirSync* const airSync = session.airSync;
    for (const ApiCommand& command : ApiCommands()) {
      EXPECT_EQ(command.run(session), 0x80000001U) << command.name;
      ++tried;
    }
    EXPECT_EQ(airSync->Initialize(TestAccount(), "", &otherTransport, &session.store, ENCODING_XML, nullptr),
              0x80000001U);
    EXPECT_EQ(airSync->Connect(), 0x80000001U);
    EXPECT_EQ(airSync->Disconnect(), 0x80000001U);
    EXPECT_EQ(airSync->Uninitialize(), 0x80000001U);
    AirSync::destroyInstance();
  };
  session.store.OnCall([&](const StoreCall& call) {
    if (call.name == "DeleteServerItem") tryAll();
  });
  session.transport.Answer(HexAndText(kTwoDeletions));
  EXPECT_EQ(session.airSync->Sync(session.key, &session.folder), 0U);
  EXPECT_EQ(tried, 2 * ApiCommands().size());
  EXPECT_EQ(session.transport.Count("Open") + session.transport.Count("Close"), 0U);
  EXPECT_EQ(session.transport.Requests().size(), 1U);
  EXPECT_EQ(session.store.Lines().size(), 4U) << "storage was asked for no list";
  EXPECT_EQ(FailingMemory::LiveBlocks(), 0U);
}

TEST(Nesting, ACallbackOfConnectDoesNotConnect) {
  ApiSession session;
  SYNC_RESULT inner = 0;
  session.transport.OnCall([&](std::size_t, const std::string& line) {
    if (line == "Open") inner = session.airSync->Connect();
  });
  EXPECT_EQ(session.airSync->Connect(), 0U);
  EXPECT_EQ(inner, 0x80000001U);
  EXPECT_EQ(session.transport.Count("Open"), 1U);
}

}  // namespace
