#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>

#include "api/AirSync.h"
#include "support/ApiSession.h"
#include "support/LogRecorder.h"
#include "support/Memory.h"

namespace {

using namespace AIRSYNC_STACK;
using namespace airsync_test;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

class Lifecycle : public testing::Test {
 protected:
  Lifecycle() { FailingMemory::Reset(); }

  ~Lifecycle() override {
    airSync_->Disconnect();
    airSync_->Uninitialize();
    AirSync::destroyInstance();
    EXPECT_EQ(FailingMemory::LiveBlocks(), 0U);
  }

  SYNC_RESULT Initialize(ENCODINGTYPE encoding = ENCODING_WBXML, Log* log = nullptr) {
    return airSync_->Initialize(TestAccount(), "D-0042", &transport_, &store_, encoding, log);
  }

  AirSync* const airSync_ = AirSync::getInstance();
  ScriptedTransport transport_;
  RecordingStore store_;
};

TEST(Instance, IsOneObjectUntilItIsDestroyed) {
  AirSync* const first = AirSync::getInstance();
  EXPECT_NE(first, nullptr);
  EXPECT_EQ(AirSync::getInstance(), first);
  AirSync::destroyInstance();
}

TEST(Instance, MayBeDestroyedTwice) {
  AirSync::getInstance();
  AirSync::destroyInstance();
  AirSync::destroyInstance();
  ScriptedTransport transport;
  RecordingStore store;
  AirSync* const next = AirSync::getInstance();
  EXPECT_EQ(next->Initialize(TestAccount(), "", &transport, &store, ENCODING_WBXML, nullptr), 0U);
  next->Uninitialize();
  AirSync::destroyInstance();
}

TEST(Instance, IsFreshAfterItWasDestroyed) {
  ScriptedTransport transport;
  RecordingStore store;
  AirSync::getInstance()->Initialize(TestAccount(), "", &transport, &store, ENCODING_WBXML, nullptr);
  AirSync::getInstance()->CancelSync();
  AirSync::getInstance()->Uninitialize();
  AirSync::destroyInstance();
  EXPECT_FALSE(AirSync::getInstance()->CancelRequested());
  EXPECT_EQ(AirSync::getInstance()->Connect(), 0x80000001U);
  AirSync::destroyInstance();
}

TEST_F(Lifecycle, InitializeNeedsATransportAndAStorage) {
  EXPECT_EQ(airSync_->Initialize(TestAccount(), "", nullptr, &store_, ENCODING_WBXML, nullptr), 0x80000001U);
  EXPECT_EQ(airSync_->Initialize(TestAccount(), "", &transport_, nullptr, ENCODING_WBXML, nullptr),
            0x80000001U);
  EXPECT_EQ(airSync_->Connect(), 0x80000001U);
  EXPECT_EQ(Initialize(), 0U);
  EXPECT_EQ(airSync_->Connect(), 0U);
}

TEST_F(Lifecycle, ARefusedInitializeHasReplacedAccountAndEncodingAndNothingElse) {
  ASSERT_EQ(Initialize(), 0U);
  airSync_->CancelSync();
  SERVER_INFO server = TestAccount();
  Put(server.host, "other.example.test");
  ScriptedTransport otherTransport;
  LogRecorder log({AS_LOG_SOURCE_AIRSYNC, AS_LOG_SOURCE_COMMUNICATIONS}, AS_LOG_LEVEL_TRACE);
  EXPECT_EQ(airSync_->Initialize(server, "", &otherTransport, nullptr, ENCODING_XML, Log::getInstance()),
            0x80000001U);
  EXPECT_TRUE(airSync_->CancelRequested());
  EXPECT_EQ(airSync_->Connect(), 0x80010010U);
  EXPECT_EQ(airSync_->Connect(), 0U);

  // Also shows that GetHierarchy reads in the new encoding: there is no XML reader.
  transport_.Answer("");
  BASE_FOLDER* folders = nullptr;
  int count = 0;
  EXPECT_EQ(airSync_->GetHierarchy(folders, count), 0x8001000bU);
  ASSERT_EQ(transport_.Requests().size(), 1U);
  EXPECT_NE(transport_.Requests()[0].head.find("\r\nHost: other.example.test\r\n"), std::string::npos);
  EXPECT_THAT(otherTransport.Lines(), IsEmpty());
  EXPECT_THAT(log.Lines(), IsEmpty());
}

TEST_F(Lifecycle, InitializeCopiesTheAccount) {
  SERVER_INFO server = TestAccount();
  airSync_->Initialize(server, "", &transport_, &store_, ENCODING_WBXML, nullptr);
  Put(server.host, "changed");
  airSync_->Connect();
  EXPECT_STREQ(transport_.OpenedServer()->host, "mail.example.test");
}

TEST_F(Lifecycle, InitializeClearsTheCancelFlag) {
  airSync_->CancelSync();
  EXPECT_TRUE(airSync_->CancelRequested());
  Initialize();
  EXPECT_FALSE(airSync_->CancelRequested());
}

TEST_F(Lifecycle, InitializeTellsTheDeviceIdToTheLogThatItHadBefore) {
  LogRecorder log({AS_LOG_SOURCE_AIRSYNC}, AS_LOG_LEVEL_TRACE);
  airSync_->Initialize(TestAccount(), "first", &transport_, &store_, ENCODING_WBXML, Log::getInstance());
  EXPECT_THAT(log.Lines(), IsEmpty());
  airSync_->Initialize(TestAccount(), "second", nullptr, nullptr, ENCODING_WBXML, nullptr);
  EXPECT_THAT(log.Lines(), ElementsAre("0 Device Id is: |second"));
  log.Clear();
  airSync_->Initialize(TestAccount(), nullptr, &transport_, &store_, ENCODING_WBXML, nullptr);
  EXPECT_THAT(log.Lines(), ElementsAre("0 Device Id is: |"));
  log.Clear();
  airSync_->Initialize(TestAccount(), "fourth", &transport_, &store_, ENCODING_WBXML, nullptr);
  EXPECT_THAT(log.Lines(), IsEmpty());
}

TEST_F(Lifecycle, TheDeviceIdIsATrace) {
  LogRecorder log({AS_LOG_SOURCE_AIRSYNC}, AS_LOG_LEVEL_DETAIL);
  Initialize(ENCODING_WBXML, Log::getInstance());
  Initialize(ENCODING_WBXML, Log::getInstance());
  EXPECT_THAT(log.Lines(), IsEmpty());
}

// LeakSanitizer tells of the generator and the parser.
TEST_F(Lifecycle, InitializeTwiceReleasesWhatTheFirstOneLeft) {
  Initialize();
  AdapterMalloc(100);
  Initialize();
  EXPECT_EQ(FailingMemory::LiveBlocks(), 0U);
}

TEST_F(Lifecycle, InitializeReleasesWhatWasThereBeforeTheFirstOne) {
  AdapterMalloc(100);
  Initialize();
  EXPECT_EQ(FailingMemory::LiveBlocks(), 0U);
}

TEST_F(Lifecycle, ASecondInitializeForgetsTheConnection) {
  Initialize();
  ASSERT_EQ(airSync_->Connect(), 0U);
  SERVER_INFO server = TestAccount();
  Put(server.host, "other.example.test");
  ScriptedTransport otherTransport;
  EXPECT_EQ(airSync_->Initialize(server, "", &otherTransport, &store_, ENCODING_WBXML, nullptr), 0U);
  _SYNC_KEY key = {"h1"};
  EXPECT_EQ(airSync_->FolderSync(key), 0x80000001U);
  EXPECT_EQ(airSync_->Disconnect(), 0x80000001U);
  airSync_->CancelSync();
  EXPECT_THAT(transport_.Lines(), ElementsAre("Open")) << "the old transport is not even closed";
  EXPECT_EQ(airSync_->Connect(), 0x80010010U);

  EXPECT_EQ(airSync_->Connect(), 0U);
  otherTransport.Answer(HexAndText(CommandNamed("FolderSync").answer));
  EXPECT_EQ(airSync_->FolderSync(key), 0U);
  ASSERT_EQ(otherTransport.Requests().size(), 1U);
  EXPECT_NE(otherTransport.Requests()[0].head.find("\r\nHost: other.example.test\r\n"), std::string::npos);
  EXPECT_THAT(transport_.Lines(), ElementsAre("Open"));
  airSync_->Disconnect();
}

TEST_F(Lifecycle, InitializeAfterUninitializeForgetsTheConnectionToo) {
  Initialize();
  ASSERT_EQ(airSync_->Connect(), 0U);
  airSync_->Uninitialize();
  Initialize();
  _SYNC_KEY key = {"h1"};
  EXPECT_EQ(airSync_->FolderSync(key), 0x80000001U);
}

TEST_F(Lifecycle, ConnectOpensTheTransport) {
  Initialize();
  EXPECT_EQ(airSync_->Connect(), 0U);
  EXPECT_THAT(transport_.Lines(), ElementsAre("Open"));
}

TEST_F(Lifecycle, ConnectReturnsTheVeryResultOfOpenAndKeepsTheConnection) {
  Initialize();
  transport_.FailAt(1, 0x87654321);
  EXPECT_EQ(airSync_->Connect(), 0x87654321U);
  transport_.ClearCalls();
  airSync_->CancelSync();
  EXPECT_THAT(transport_.Lines(), ElementsAre("Cancel"));
  EXPECT_EQ(airSync_->Disconnect(), 0U);
}

TEST_F(Lifecycle, ConnectBeforeInitializeIsRefused) {
  EXPECT_EQ(airSync_->Connect(), 0x80000001U);
  EXPECT_THAT(transport_.Lines(), IsEmpty());
}

TEST_F(Lifecycle, ASecondConnectReplacesTheFirstWithoutClosing) {
  LogRecorder log({AS_LOG_SOURCE_COMMUNICATIONS}, AS_LOG_LEVEL_TRACE);
  Initialize(ENCODING_WBXML, Log::getInstance());
  airSync_->Connect();
  log.Clear();
  EXPECT_EQ(airSync_->Connect(), 0U);
  EXPECT_THAT(transport_.Lines(), ElementsAre("Open", "Open"));
  EXPECT_THAT(log.Lines(), ElementsAre("1 Communications::Communications{", "1 ==================}",
                                       "1 Communications::~Communications{", "1 ==================}",
                                       "1 Communications::Start{", "1 Communications::Start}"));
  EXPECT_EQ(airSync_->Disconnect(), 0U);
  EXPECT_EQ(airSync_->Disconnect(), 0x80000001U);
  airSync_->Initialize(TestAccount(), "", &transport_, &store_, ENCODING_WBXML, nullptr);
}

TEST_F(Lifecycle, ConnectAndDisconnectMayBeRepeated) {
  Initialize();
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(airSync_->Connect(), 0U);
    EXPECT_EQ(airSync_->Disconnect(), 0U);
  }
  EXPECT_THAT(transport_.Lines(), ElementsAre("Open", "Close", "Open", "Close", "Open", "Close"));
}

TEST_F(Lifecycle, DisconnectIgnoresWhatCloseSays) {
  Initialize();
  airSync_->Connect();
  transport_.FailAt(1);
  EXPECT_EQ(airSync_->Disconnect(), 0U);
}

TEST_F(Lifecycle, DisconnectTwiceClosesOnce) {
  Initialize();
  airSync_->Connect();
  EXPECT_EQ(airSync_->Disconnect(), 0U);
  EXPECT_EQ(airSync_->Disconnect(), 0x80000001U);
  EXPECT_THAT(transport_.Lines(), ElementsAre("Open", "Close"));
}

TEST_F(Lifecycle, DisconnectWithoutAConnectionDoesNothing) {
  EXPECT_EQ(airSync_->Disconnect(), 0x80000001U);
  Initialize();
  EXPECT_EQ(airSync_->Disconnect(), 0x80000001U);
  EXPECT_THAT(transport_.Lines(), IsEmpty());
}

TEST_F(Lifecycle, DisconnectIsNotCancelled) {
  Initialize();
  airSync_->Connect();
  airSync_->CancelSync();
  EXPECT_EQ(airSync_->Disconnect(), 0U);
  EXPECT_TRUE(airSync_->CancelRequested());
}

TEST_F(Lifecycle, UninitializeReleasesTrackedMemory) {
  Initialize();
  AdapterMalloc(100);
  EXPECT_EQ(airSync_->Uninitialize(), 0U);
  EXPECT_EQ(FailingMemory::LiveBlocks(), 0U);
}

TEST_F(Lifecycle, UninitializeLeavesNothingOfTheAccountBehind) {
  Initialize();
  const auto holds = [this](const std::string& text) {
    const std::string object(reinterpret_cast<const char*>(airSync_), sizeof(AirSync));
    return object.find(text) != std::string::npos;
  };
  EXPECT_TRUE(holds("s3cret"));
  airSync_->Uninitialize();
  EXPECT_FALSE(holds("s3cret"));
  EXPECT_FALSE(holds("mail.example.test"));
}

TEST_F(Lifecycle, UninitializeMayBeCalledAtAnyTime) {
  EXPECT_EQ(airSync_->Uninitialize(), 0U);
  Initialize();
  EXPECT_EQ(airSync_->Uninitialize(), 0U);
  EXPECT_EQ(airSync_->Uninitialize(), 0U);
  EXPECT_THAT(transport_.Lines(), IsEmpty());
}

TEST_F(Lifecycle, UninitializeLeavesTheConnectionAlone) {
  Initialize();
  airSync_->Connect();
  airSync_->Uninitialize();
  EXPECT_THAT(transport_.Lines(), ElementsAre("Open"));
  EXPECT_EQ(airSync_->Disconnect(), 0U);
  EXPECT_THAT(transport_.Lines(), ElementsAre("Open", "Close"));
}

TEST_F(Lifecycle, ASecondLifeWorks) {
  Initialize();
  airSync_->Connect();
  airSync_->Disconnect();
  airSync_->Uninitialize();
  EXPECT_EQ(Initialize(), 0U);
  EXPECT_EQ(airSync_->Connect(), 0U);
}

TEST_F(Lifecycle, CancelSyncWithoutAConnectionOnlySetsTheFlag) {
  airSync_->CancelSync();
  EXPECT_TRUE(airSync_->CancelRequested());
  EXPECT_THAT(transport_.Lines(), IsEmpty());
}

// Each command where it is out of order.
class OutOfOrder : public Lifecycle {
 protected:
  // Runs every command on an ApiSession's values, but on this test's state of the library.
  void ExpectRefused(AirSync* airSync) {
    _SYNC_KEY key = {"h1"};
    BASE_FOLDER entry = {"New", 12, {"9"}, {"3"}};
    BASE_FOLDER* folders = nullptr;
    int count = 0;
    FOLDER_INFO folder = TestFolder();
    EXPECT_EQ(airSync->FolderSync(key), 0x80000001U);
    EXPECT_EQ(airSync->GetHierarchy(folders, count), 0x80000001U);
    EXPECT_EQ(airSync->FolderCreate(key, &entry), 0x80000001U);
    EXPECT_EQ(airSync->FolderDelete(entry.serverId, key), 0x80000001U);
    EXPECT_EQ(airSync->FolderUpdate(key, &entry), 0x80000001U);
    EXPECT_EQ(airSync->Sync(key, &folder), 0x80000001U);
    folder.selected = 0;
    EXPECT_EQ(airSync->Sync(key, &folder), 0x80000000U);
    EXPECT_EQ(airSync->Sync(key, nullptr), 0x80000001U);
    ExpectItemCommandsRefused(airSync);
    ExpectMailCommandsRefused(airSync);
    EXPECT_EQ(FailingMemory::LiveBlocks(), 0U);
    for (const StoreCall& call : store_.Calls()) EXPECT_EQ(call.name, "GetFolderList");
    EXPECT_STREQ(key.text, "h1");
  }

  static void ExpectItemCommandsRefused(AirSync* airSync) {
    FOLDER_INFO folder = TestFolder();
    const SERVER_ID item = {"5:1"};
    const FOLDER_ID place = {"5"};
    SERVER_ID newItem = {"none"};
    int moved = -1;
    unsigned char(*carriers)[64] = nullptr;
    unsigned short count = 77;
    EXPECT_EQ(airSync->Fetch(&folder, item), 0x80000001U);
    EXPECT_EQ(airSync->GetItemEstimate(), 0x80000001U);
    EXPECT_EQ(airSync->MoveItems(&item, &place, &place, &newItem, &moved, 1), 0x80000001U);
    EXPECT_EQ(airSync->MeetingResponse(item, place, AS_MEETING_RESPONSE_ACCEPT, newItem), 0x80000001U);
    EXPECT_EQ(airSync->NotifyEnable(nullptr, "", "", 0, carriers, count), 0x80000001U);
    EXPECT_EQ(airSync->GetCarrierList(carriers, count), 0x80000001U);
    EXPECT_EQ(airSync->SetDeviceAddress(nullptr, "", ""), 0x80000001U);
    EXPECT_STREQ(newItem.text, "none");
    EXPECT_EQ(moved, -1);
    EXPECT_EQ(carriers, nullptr);
    EXPECT_EQ(count, 77);
  }

  static void ExpectMailCommandsRefused(AirSync* airSync) {
    unsigned char bytes[4] = {};
    EXPECT_EQ(airSync->SendMail(bytes, 4, true, false), 0x80000001U);
    EXPECT_EQ(airSync->SmartReply(bytes, 4, true, {}, {}, false), 0x80000001U);
    EXPECT_EQ(airSync->SmartForward(bytes, 4, true, {}, {}, false), 0x80000001U);
    EXPECT_EQ(airSync->GetAttachment("a", bytes, 4, false), 0x80000001U);
    EXPECT_EQ(airSync->GetOptions(bytes, 4, bytes, 4), 0x80000001U);
  }
};

TEST_F(OutOfOrder, CommandsBeforeInitializeAreRefused) {
  ExpectRefused(airSync_);
  EXPECT_THAT(store_.Calls(), IsEmpty());
  EXPECT_THAT(transport_.Lines(), IsEmpty());
}

TEST_F(OutOfOrder, CommandsWithoutAConnectionAreRefused) {
  Initialize();
  ExpectRefused(airSync_);
  EXPECT_THAT(transport_.Lines(), IsEmpty());
}

TEST_F(OutOfOrder, CommandsAfterDisconnectAreRefused) {
  Initialize();
  airSync_->Connect();
  airSync_->Disconnect();
  ExpectRefused(airSync_);
  EXPECT_THAT(transport_.Lines(), ElementsAre("Open", "Close"));
}

TEST_F(OutOfOrder, CommandsAfterUninitializeAreRefused) {
  Initialize();
  airSync_->Connect();
  airSync_->Uninitialize();
  ExpectRefused(airSync_);
  EXPECT_THAT(transport_.Lines(), ElementsAre("Open"));
}

TEST_F(OutOfOrder, RefusedCommandsHaveLoggedTheirEntry) {
  LogRecorder log({AS_LOG_SOURCE_AIRSYNC}, AS_LOG_LEVEL_TRACE);
  Initialize(ENCODING_WBXML, Log::getInstance());
  ExpectRefused(airSync_);
  EXPECT_THAT(log.Lines(), ElementsAre("0 Into FolderSync", "0 Into GetHierarchy", "0 Into FolderCreate",
                                       "0 Into DeleteCollection", "0 Into FolderUpdate", "0 Into sync cmd",
                                       "0 begin sync db: |TRUE", "0 Into sync cmd", "0 Into sync cmd",
                                       "0 Into Fetch", "0 GetItemEstimate", "0 Into MoveItems",
                                       "0 Into SendMeetingResponse", "0 Into SendMail", "0 Into SmartReply",
                                       "0 Into SmartForward", "0 Into GetAttachment", "0 Into GetOptions"));
  airSync_->Initialize(TestAccount(), "", &transport_, &store_, ENCODING_WBXML, nullptr);
}

}  // namespace
