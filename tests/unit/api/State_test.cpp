// What a command leaves in the facade and in the records that it was given, and what it leaves alone.
#include <cstdlib>
#include <cstring>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>

#include "support/ApiSession.h"
#include "support/LogRecorder.h"

namespace {

using namespace AIRSYNC_STACK;
using namespace airsync_test;
using testing::ElementsAre;

// Whether the facade's own bytes hold the text.
bool Holds(const AirSync* airSync, const std::string& text) {
  const std::string object(reinterpret_cast<const char*>(airSync), sizeof(AirSync));
  return object.find(text) != std::string::npos;
}

TEST(FacadeState, KeepsACopyOfTheKeyThatTheLastSyncWasGiven) {
  ApiSession session;
  Put(session.key.text, "last-guid-1");
  EXPECT_EQ(Perform(session, "Sync"), 0U);
  EXPECT_TRUE(Holds(session.airSync, "last-guid-1"));
  Put(session.key.text, "last-guid-2");
  EXPECT_TRUE(Holds(session.airSync, "last-guid-1"));
  session.airSync->CancelSync();
  EXPECT_EQ(session.airSync->Sync(session.key, &session.folder), 0x80010010U);
  EXPECT_TRUE(Holds(session.airSync, "last-guid-2")) << "it is kept before anything can fail";
  EXPECT_FALSE(Holds(session.airSync, "last-guid-1"));
}

TEST(FacadeState, DoesNotKeepTheKeyOfASyncThatIsRefused) {
  ApiSession session;
  Put(session.key.text, "last-guid-1");
  EXPECT_EQ(session.airSync->Sync(session.key, nullptr), 0x80000001U);
  session.folder.selected = 0;
  EXPECT_EQ(session.airSync->Sync(session.key, &session.folder), 0x80000000U);
  EXPECT_FALSE(Holds(session.airSync, "last-guid-1"));
}

TEST(FacadeState, KeepsTheLogBeyondUninitialize) {
  LogRecorder log({AS_LOG_SOURCE_AIRSYNC}, AS_LOG_LEVEL_TRACE);
  ApiSession session(ENCODING_WBXML, Log::getInstance());
  session.airSync->Uninitialize();
  log.Clear();
  session.airSync->Initialize(TestAccount(), "next", &session.transport, &session.store, ENCODING_WBXML,
                              nullptr);
  EXPECT_THAT(log.Lines(), ElementsAre("0 Device Id is: |next"));
  session.airSync->Disconnect();
}

TEST(FacadeState, ChangesNoFolderRecordByItself) {
  for (const char* const name : {"Sync", "Fetch", "GetItemEstimate", "NotifyEnable"}) {
    ApiSession session;
    session.store.runningFolder = nullptr;
    const FOLDER_INFO before = session.folder;
    EXPECT_EQ(Perform(session, name), 0U) << name;
    EXPECT_EQ(std::memcmp(&before, &session.folder, sizeof before), 0) << name;
    session.ReleaseLists();
  }
}

TEST(FacadeState, TakesStoragesFoldersAsTheyAreWhateverItReturns) {
  for (const char* const name : {"Sync", "Fetch", "GetItemEstimate", "NotifyEnable", "FolderSync"}) {
    ApiSession session;
    session.store.answer = 0x8000abcd;
    EXPECT_EQ(Perform(session, name), 0U) << name;
    session.ReleaseLists();
  }
}

// A storage that fails before it has filled the list.
class SilentStore : public RecordingStore {
 public:
  SYNC_RESULT GetFolderList(FOLDER_INFO***, int*) override { return 0x8000abcd; }
};

TEST(FacadeState, TakesAStorageThatHandsOutNoListForOneWithoutFolders) {
  ApiSession session;
  SilentStore silent;
  session.airSync->Initialize(TestAccount(), "", &session.transport, &silent, ENCODING_WBXML, nullptr);
  session.airSync->Connect();
  session.transport.Answer(HexAndText("03 01 6A 00 00 06 05"));
  EXPECT_EQ(session.airSync->GetItemEstimate(), 0U);
  session.transport.Answer(HexAndText("03 01 6A 00 00 03 45 50 03 '1' 00 01 01"));
  EXPECT_EQ(CommandNamed("NotifyEnable").run(session), 0U);
  ASSERT_EQ(session.transport.Requests().size(), 2U);
  EXPECT_EQ(session.transport.Requests()[0].body, HexAndText("03 01 6A 00 00 06 45 07 01"));
  EXPECT_EQ(session.transport.Requests()[1].body,
            HexAndText("03 01 6A 00 00 03 45 48 03 '60' 00 01 49 57 03 'Ada' 00 01 4D 03 'ada@x' 00 01 01"
                       "  0A 01"));
}

// In a process of its own, which ends without looking for leaks: what is left open is the point.
TEST(FacadeStateDeathTest, IsDestroyedWithoutClosingTheTransport) {
  const auto destroy = [] {
    ScriptedTransport transport;
    RecordingStore store;
    AirSync* const airSync = AirSync::getInstance();
    airSync->Initialize(TestAccount(), "", &transport, &store, ENCODING_WBXML, nullptr);
    airSync->Connect();
    transport.ClearCalls();
    AirSync::destroyInstance();
    std::_Exit(transport.Lines().empty() ? 7 : 1);
  };
  EXPECT_EXIT(destroy(), testing::ExitedWithCode(7), "");
}

}  // namespace
