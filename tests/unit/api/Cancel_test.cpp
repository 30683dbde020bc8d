#include <atomic>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <thread>
#include <vector>

#include "support/ApiSession.h"

namespace {

using namespace AIRSYNC_STACK;
using namespace airsync_test;
using testing::ElementsAre;

TEST(CancelSync, BeforeACommandEndsItAtItsFirstTransferAndOnlyThatOne) {
  for (const ApiCommand& command : ApiCommands()) {
    ApiSession session;
    session.airSync->CancelSync();
    EXPECT_EQ(command.run(session), 0x80010010U) << command.name;
    EXPECT_THAT(session.transport.Lines(), ElementsAre("Cancel")) << command.name;
    EXPECT_FALSE(session.airSync->CancelRequested()) << command.name;
    EXPECT_EQ(FailingMemory::LiveBlocks(), 0U) << command.name;
    EXPECT_EQ(Perform(session, command.name), 0U) << command.name;
  }
}

TEST(CancelSync, BeforeConnectEndsItUnopened) {
  ApiSession session;
  session.airSync->CancelSync();
  session.transport.ClearCalls();
  EXPECT_EQ(session.airSync->Connect(), 0x80010010U);
  EXPECT_TRUE(session.transport.Lines().empty());
  EXPECT_EQ(session.airSync->Connect(), 0U);
}

TEST(CancelSync, SetsTheFlagBeforeItTellsTheTransport) {
  class Watching : public ScriptedTransport {
   public:
    SYNC_RESULT Cancel() override {
      flagWasSet = AirSync::getInstance()->CancelRequested();
      return kFailure;  // ignored
    }
    bool flagWasSet = false;
  } transport;
  RecordingStore store;
  AirSync* const airSync = AirSync::getInstance();
  airSync->Initialize(TestAccount(), "", &transport, &store, ENCODING_WBXML, nullptr);
  airSync->Connect();
  airSync->CancelSync();
  EXPECT_TRUE(transport.flagWasSet);
  airSync->Disconnect();
  airSync->Uninitialize();
  AirSync::destroyInstance();
}

// Answers every FolderSync, and touches nothing in Cancel: whatever two threads share is the library's.
class QuietTransport : public AirSyncTransportInterface {
 public:
  SYNC_RESULT Open(const SERVER_INFO*) override { return 0; }
  SYNC_RESULT SendHeader(const char*, INT32, UINT32) override { return 0; }
  SYNC_RESULT EndRequest() override { return 0; }
  SYNC_RESULT Write(const UINT8*, INT32, INT32) override { return 0; }
  SYNC_RESULT ReadResponseHead(UINT16* status, UINT8**, UINT32*, bool, UINT8*, INT32, UINT8*,
                               INT32) override {
    *status = 200;
    at_ = 0;
    return 0;
  }
  SYNC_RESULT Read(UINT8* destination, INT32* count, INT32) override {
    for (INT32 i = 0; i < *count; ++i) destination[i] = static_cast<UINT8>(answer_[at_++]);
    return 0;
  }
  SYNC_RESULT Close() override { return 0; }
  SYNC_RESULT Reserved7() override { return 0; }
  SYNC_RESULT Reserved8() override { return 0; }
  SYNC_RESULT Cancel() override {
    cancels.fetch_add(1, std::memory_order_relaxed);
    return 0;
  }

  std::atomic<int> cancels{0};

 private:
  const std::string answer_ = HexAndText("03 01 6A 00 00 07 56 4C 03 '1' 00 01 01");
  std::size_t at_ = 0;
};

// Keeps S6.
TEST(CancelSync, MayComeFromAnotherThreadAtAnyTimeOfAConnectionsLife) {
  QuietTransport transport;
  RecordingStore store;
  AirSync* const airSync = AirSync::getInstance();
  airSync->Initialize(TestAccount(), "", &transport, &store, ENCODING_WBXML, nullptr);
  std::atomic<bool> finished{false};
  std::thread canceller([&] {
    while (!finished.load(std::memory_order_relaxed)) airSync->CancelSync();
  });
  EXPECT_THAT(airSync->Connect(), testing::AnyOf(0U, 0x80010010U));
  _SYNC_KEY key = {"0"};
  int cancelled = 0;
  while (cancelled < 100) {
    const SYNC_RESULT result = airSync->FolderSync(key);
    ASSERT_THAT(result, testing::AnyOf(0U, 0x80010010U));
    if (result != 0) ++cancelled;
  }
  finished = true;
  canceller.join();
  EXPECT_GT(transport.cancels.load(), 0);
  airSync->FolderSync(key);  // takes the last cancel, if one is left
  EXPECT_EQ(airSync->FolderSync(key), 0U);
  airSync->Disconnect();
  airSync->Uninitialize();
  AirSync::destroyInstance();
}

// Four threads that cancel, from before anything begins to after everything has ended.
class Cancellers {
 public:
  explicit Cancellers(AirSync* airSync) {
    for (std::thread& thread : threads_) {
      thread = std::thread([this, airSync] {
        while (!finished_.load(std::memory_order_relaxed)) {
          airSync->CancelSync();
          std::this_thread::yield();
        }
      });
    }
  }
  ~Cancellers() {
    finished_ = true;
    for (std::thread& thread : threads_) thread.join();
  }
  Cancellers(const Cancellers&) = delete;
  Cancellers& operator=(const Cancellers&) = delete;

 private:
  std::atomic<bool> finished_{false};
  std::vector<std::thread> threads_{4};
};

// Keeps S6. The sanitizers tell what is touched when it is gone, and what is touched by two at once.
TEST(CancelSync, MayComeFromFourThreadsAtAnyTimeOfTheLibrarysLife) {
  QuietTransport transport;
  RecordingStore store;
  AirSync* const airSync = AirSync::getInstance();
  const auto initialize = [&] {
    return airSync->Initialize(TestAccount(), "", &transport, &store, ENCODING_WBXML, nullptr);
  };
  const auto endsWellOrCancelled = testing::AnyOf(0U, 0x80010010U);
  {
    const Cancellers cancellers(airSync);
    for (int round = 0; round < 50 || transport.cancels.load() < 100; ++round) {
      ASSERT_EQ(initialize(), 0U);
      ASSERT_THAT(airSync->Connect(), endsWellOrCancelled);
      _SYNC_KEY key = {"0"};
      for (int i = 0; i < 5; ++i) ASSERT_THAT(airSync->FolderSync(key), endsWellOrCancelled);
      ASSERT_THAT(airSync->Connect(), endsWellOrCancelled);
      ASSERT_THAT(airSync->FolderSync(key), endsWellOrCancelled);
      ASSERT_EQ(airSync->Disconnect(), 0U);
      ASSERT_THAT(airSync->Connect(), endsWellOrCancelled);
      ASSERT_EQ(airSync->Disconnect(), 0U);
      ASSERT_EQ(initialize(), 0U);
      ASSERT_EQ(airSync->Uninitialize(), 0U);
      AirSync::destroyInstance();
    }
  }
  ASSERT_EQ(initialize(), 0U);
  EXPECT_EQ(airSync->Connect(), 0U);
  _SYNC_KEY key = {"0"};
  EXPECT_EQ(airSync->FolderSync(key), 0U);
  airSync->Disconnect();
  airSync->Uninitialize();
  AirSync::destroyInstance();
}

TEST(CancelSync, MayComeByAnAddressThatWasTakenBeforeTheObjectWasDestroyed) {
  AirSync* const airSync = AirSync::getInstance();
  AirSync::destroyInstance();
  airSync->CancelSync();
  QuietTransport transport;
  RecordingStore store;
  AirSync::getInstance()->Initialize(TestAccount(), "", &transport, &store, ENCODING_WBXML, nullptr);
  EXPECT_EQ(AirSync::getInstance()->Connect(), 0U);
  EXPECT_EQ(transport.cancels.load(), 0);
  AirSync::getInstance()->Disconnect();
  AirSync::getInstance()->Uninitialize();
  AirSync::destroyInstance();
}

TEST(CancelSync, ReachesTheTransportFromConnectOnUntilItsConnectionHasEnded) {
  AirSync* const airSync = AirSync::getInstance();
  class Cancelling : public QuietTransport {
   public:
    SYNC_RESULT Open(const SERVER_INFO*) override {
      AirSync::getInstance()->CancelSync();
      return 0;
    }
    SYNC_RESULT Close() override {
      AirSync::getInstance()->CancelSync();
      return 0;
    }
  } transport;
  RecordingStore store;
  const auto initialize = [&] {
    airSync->Initialize(TestAccount(), "", &transport, &store, ENCODING_WBXML, nullptr);
  };
  initialize();
  airSync->CancelSync();
  EXPECT_EQ(transport.cancels.load(), 0);
  initialize();  // clears the flag
  EXPECT_EQ(airSync->Connect(), 0U);
  EXPECT_EQ(transport.cancels.load(), 1);
  EXPECT_EQ(airSync->Disconnect(), 0U);
  EXPECT_EQ(transport.cancels.load(), 2);
  airSync->CancelSync();
  EXPECT_EQ(transport.cancels.load(), 2);

  // The transport of a connection that nobody ended may be gone after these.
  for (const bool again : {true, false}) {
    initialize();
    EXPECT_EQ(airSync->Connect(), 0U);
    transport.cancels = 0;
    if (again) {
      initialize();
    } else {
      airSync->Uninitialize();
    }
    airSync->CancelSync();
    EXPECT_EQ(transport.cancels.load(), 0) << again;
    airSync->Disconnect();
    airSync->Uninitialize();
  }
  AirSync::destroyInstance();
}

// A transport that blocks in Read until it is cancelled.
class BlockingTransport : public QuietTransport {
 public:
  SYNC_RESULT Read(UINT8*, INT32*, INT32) override {
    blocked = true;
    blocked.notify_all();
    cancelled.wait(false);
    return 1;
  }
  SYNC_RESULT Cancel() override {
    cancelled = true;
    cancelled.notify_all();
    return 0;
  }

  std::atomic<bool> blocked{false};
  std::atomic<bool> cancelled{false};
};

TEST(CancelSync, EndsACallThatBlocks) {
  BlockingTransport transport;
  RecordingStore store;
  AirSync* const airSync = AirSync::getInstance();
  airSync->Initialize(TestAccount(), "", &transport, &store, ENCODING_WBXML, nullptr);
  EXPECT_EQ(airSync->Connect(), 0U);
  std::thread canceller([&] {
    transport.blocked.wait(false);
    airSync->CancelSync();
  });
  _SYNC_KEY key = {"0"};
  // The transport's own failure comes first: the flag is tested before each transfer, not after it.
  EXPECT_EQ(airSync->FolderSync(key), 0x8001000cU);
  canceller.join();
  EXPECT_FALSE(airSync->CancelRequested());
  airSync->Disconnect();
  airSync->Uninitialize();
  AirSync::destroyInstance();
}

}  // namespace
