#include "cli/session/Watch.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace airsync {
namespace {

using namespace AIRSYNC_STACK;
using testing::_;
using testing::Return;
using testing::StrEq;
using testing::StrictMock;

class MockTransport : public AirSyncTransportInterface {
 public:
  MOCK_METHOD(SYNC_RESULT, Open, (const SERVER_INFO*), (override));
  MOCK_METHOD(SYNC_RESULT, SendHeader, (const char*, INT32, UINT32), (override));
  MOCK_METHOD(SYNC_RESULT, EndRequest, (), (override));
  MOCK_METHOD(SYNC_RESULT, Write, (const UINT8*, INT32, INT32), (override));
  MOCK_METHOD(SYNC_RESULT, ReadResponseHead, (UINT16*, UINT8**, UINT32*, bool, UINT8*, INT32, UINT8*, INT32),
              (override));
  MOCK_METHOD(SYNC_RESULT, Read, (UINT8*, INT32*, INT32), (override));
  MOCK_METHOD(SYNC_RESULT, Close, (), (override));
  MOCK_METHOD(SYNC_RESULT, Reserved7, (), (override));
  MOCK_METHOD(SYNC_RESULT, Reserved8, (), (override));
  MOCK_METHOD(SYNC_RESULT, Cancel, (), (override));
};

class MockStorage : public AirSyncDBInterface {
 public:
  MOCK_METHOD(SYNC_RESULT, StoreSyncKey, (INT32, void*, const char*), (override));
  MOCK_METHOD(SYNC_RESULT, Reserved1, (), (override));
  MOCK_METHOD(SYNC_RESULT, GetFolderList, (FOLDER_INFO***, int*), (override));
  MOCK_METHOD(SYNC_RESULT, SetNotifyFolderStatus, (INT32, SYNC_RESULT), (override));
  MOCK_METHOD(SYNC_RESULT, SetItemEstimate, (INT32, SYNC_RESULT, int), (override));
  MOCK_METHOD(int, GetNextChange, (INT32, void**, SERVER_ID*, UINT32*, int*), (override));
  MOCK_METHOD(SYNC_RESULT, Reserved6, (), (override));
  MOCK_METHOD(SYNC_RESULT, AddResult, (INT32, const UINT32*, const SERVER_ID*, SYNC_RESULT), (override));
  MOCK_METHOD(SYNC_RESULT, DeleteResult, (INT32, const SERVER_ID*, SYNC_RESULT), (override));
  MOCK_METHOD(SYNC_RESULT, ChangeResult, (INT32, const SERVER_ID*, SYNC_RESULT), (override));
  MOCK_METHOD(SYNC_RESULT, FetchedItem, (INT32, const SERVER_ID*, const void*, SYNC_RESULT), (override));
  MOCK_METHOD(SYNC_RESULT, AddServerItem, (INT32, const SERVER_ID*, const void*), (override));
  MOCK_METHOD(SYNC_RESULT, DeleteServerItem, (INT32, const SERVER_ID*), (override));
  MOCK_METHOD(SYNC_RESULT, ChangeServerItem, (INT32, const SERVER_ID*, const void*), (override));
  MOCK_METHOD(SYNC_RESULT, Reserved14, (), (override));
  MOCK_METHOD(SYNC_RESULT, Reserved15, (), (override));
  MOCK_METHOD(SYNC_RESULT, Reserved16, (), (override));
  MOCK_METHOD(SYNC_RESULT, UpdateFolder, (const BASE_FOLDER*, int), (override));
};

TEST(WatchedTransport, PassesEveryCallOnWithItsArgumentsAndItsResult) {
  StrictMock<MockTransport> inner;
  StallGuard guard;
  FlightRecord flight;
  WatchedTransport watched(inner, guard, flight);
  const SERVER_INFO server = {};
  UINT8 bytes[2] = {};
  UINT8* destination = nullptr;
  UINT16 status = 0;
  UINT32 length = 0;
  INT32 count = 2;
  EXPECT_CALL(inner, Open(&server)).WillOnce(Return(1));
  EXPECT_CALL(inner, SendHeader(StrEq("head"), 5, 7)).WillOnce(Return(2));
  EXPECT_CALL(inner, EndRequest()).WillOnce(Return(3));
  EXPECT_CALL(inner, Write(bytes, 2, 1)).WillOnce(Return(4));
  EXPECT_CALL(inner, ReadResponseHead(&status, &destination, &length, true, bytes, 1, nullptr, 0))
      .WillOnce(Return(5));
  EXPECT_CALL(inner, Read(bytes, &count, 0)).WillOnce(Return(6));
  EXPECT_CALL(inner, Close()).WillOnce(Return(7));
  EXPECT_CALL(inner, Reserved7()).WillOnce(Return(8));
  EXPECT_CALL(inner, Reserved8()).WillOnce(Return(9));
  EXPECT_CALL(inner, Cancel()).WillOnce(Return(10));
  EXPECT_EQ(watched.Open(&server), 1U);
  EXPECT_EQ(watched.SendHeader("head", 5, 7), 2U);
  EXPECT_EQ(watched.EndRequest(), 3U);
  EXPECT_EQ(watched.Write(bytes, 2, 1), 4U);
  EXPECT_EQ(watched.ReadResponseHead(&status, &destination, &length, true, bytes, 1, nullptr, 0), 5U);
  EXPECT_EQ(watched.Read(bytes, &count, 0), 6U);
  EXPECT_EQ(watched.Close(), 7U);
  EXPECT_EQ(watched.Reserved7(), 8U);
  EXPECT_EQ(watched.Reserved8(), 9U);
  EXPECT_EQ(watched.Cancel(), 10U);
}

TEST(WatchedTransport, DoesNotSendARequestThatWouldBeInVain) {
  StrictMock<MockTransport> inner;
  StallGuard guard;
  FlightRecord flight;
  WatchedTransport watched(inner, guard, flight);
  EXPECT_CALL(inner, SendHeader(_, _, _)).Times(3).WillRepeatedly(Return(AS_RESULT_OK));
  for (int i = 0; i < 3; ++i) EXPECT_EQ(watched.SendHeader("head", 5, 0), 0U);
  EXPECT_EQ(watched.SendHeader("head", 5, 0), 0x8001000cU);
  EXPECT_TRUE(guard.stalled());
}

TEST(WatchedTransport, NotesWhatItDoes) {
  testing::NiceMock<MockTransport> inner;
  StallGuard guard;
  FlightRecord flight;
  WatchedTransport watched(inner, guard, flight);
  EXPECT_EQ(flight.step, Step::beginning);
  watched.Open(nullptr);
  EXPECT_EQ(flight.step, Step::connecting);
  const char head[] = "POST /s?Cmd=Sync&User=ann HTTP/1.1\r\n";
  watched.SendHeader(head, sizeof(head), 0);
  EXPECT_EQ(flight.step, Step::sending);
  EXPECT_EQ(flight.command.get(), "Sync");
  watched.ReadResponseHead(nullptr, nullptr, nullptr, false, nullptr, 0, nullptr, 0);
  EXPECT_EQ(flight.step, Step::waiting);
  watched.Read(nullptr, nullptr, 0);
  EXPECT_EQ(flight.step, Step::reading);
}

class WatchedStorageTest : public testing::Test {
 protected:
  // How many more exchanges the guard lets pass after this one: 3 when it brought something.
  int exchangesLeft() {
    int left = 0;
    while (guard.exchange()) ++left;
    return left;
  }

  testing::NiceMock<MockStorage> inner;
  StallGuard guard;
  int items = 0;
  FlightRecord flight;
  WatchedStorage watched{inner, guard, flight, [this] { ++items; }};
  SERVER_ID id = {};
  UINT32 clientId = 0;
};

TEST_F(WatchedStorageTest, CountsItemsThatTheServerSends) {
  watched.AddServerItem(1, &id, nullptr);
  watched.ChangeServerItem(1, &id, nullptr);
  watched.DeleteServerItem(1, &id);
  watched.FetchedItem(1, &id, nullptr, 0);
  watched.AddResult(1, &clientId, &id, 0);
  watched.StoreSyncKey(1, nullptr, "1");
  EXPECT_EQ(items, 4);
}

TEST_F(WatchedStorageTest, TellsTheGuardOfEverythingThatArrives) {
  const std::function<void()> arrivals[] = {
      [this] { watched.AddServerItem(1, &id, nullptr); },
      [this] { watched.ChangeServerItem(1, &id, nullptr); },
      [this] { watched.DeleteServerItem(1, &id); },
      [this] { watched.FetchedItem(1, &id, nullptr, 0); },
      [this] { watched.AddResult(1, &clientId, &id, 0); },
      [this] { watched.ChangeResult(1, &id, 0); },
      [this] { watched.DeleteResult(1, &id, 0); },
      [this] { watched.StoreSyncKey(1, nullptr, "2"); },
  };
  for (const auto& arrival : arrivals) {
    guard.begin("1");
    guard.exchange();
    arrival();
    EXPECT_EQ(exchangesLeft(), 3);
  }
  guard.begin("1");
  guard.exchange();
  watched.StoreSyncKey(1, nullptr, "1");
  EXPECT_EQ(exchangesLeft(), 2) << "the key is not a new one";
}

TEST_F(WatchedStorageTest, PassesCallsOnWithTheirArgumentsAndResults) {
  void* record = nullptr;
  int kind = 0;
  int count = 0;
  FOLDER_INFO** folders = nullptr;
  const BASE_FOLDER folder = {};
  EXPECT_CALL(inner, StoreSyncKey(1, nullptr, StrEq("k"))).WillOnce(Return(1));
  EXPECT_CALL(inner, GetFolderList(&folders, &count)).WillOnce(Return(2));
  EXPECT_CALL(inner, SetNotifyFolderStatus(1, 5)).WillOnce(Return(3));
  EXPECT_CALL(inner, SetItemEstimate(1, 5, 6)).WillOnce(Return(4));
  EXPECT_CALL(inner, GetNextChange(1, &record, &id, &clientId, &kind)).WillOnce(Return(5));
  EXPECT_CALL(inner, AddResult(1, &clientId, &id, 7)).WillOnce(Return(6));
  EXPECT_CALL(inner, DeleteResult(1, &id, 7)).WillOnce(Return(7));
  EXPECT_CALL(inner, ChangeResult(1, &id, 7)).WillOnce(Return(8));
  EXPECT_CALL(inner, FetchedItem(1, &id, &kind, 7)).WillOnce(Return(9));
  EXPECT_CALL(inner, AddServerItem(1, &id, &kind)).WillOnce(Return(10));
  EXPECT_CALL(inner, DeleteServerItem(1, &id)).WillOnce(Return(11));
  EXPECT_CALL(inner, ChangeServerItem(1, &id, &kind)).WillOnce(Return(12));
  EXPECT_CALL(inner, UpdateFolder(&folder, 2)).WillOnce(Return(13));
  EXPECT_EQ(watched.StoreSyncKey(1, nullptr, "k"), 1U);
  EXPECT_EQ(watched.GetFolderList(&folders, &count), 2U);
  EXPECT_EQ(watched.SetNotifyFolderStatus(1, 5), 3U);
  EXPECT_EQ(watched.SetItemEstimate(1, 5, 6), 4U);
  EXPECT_EQ(watched.GetNextChange(1, &record, &id, &clientId, &kind), 5);
  EXPECT_EQ(watched.AddResult(1, &clientId, &id, 7), 6U);
  EXPECT_EQ(watched.DeleteResult(1, &id, 7), 7U);
  EXPECT_EQ(watched.ChangeResult(1, &id, 7), 8U);
  EXPECT_EQ(watched.FetchedItem(1, &id, &kind, 7), 9U);
  EXPECT_EQ(watched.AddServerItem(1, &id, &kind), 10U);
  EXPECT_EQ(watched.DeleteServerItem(1, &id), 11U);
  EXPECT_EQ(watched.ChangeServerItem(1, &id, &kind), 12U);
  EXPECT_EQ(watched.UpdateFolder(&folder, 2), 13U);
}

}  // namespace
}  // namespace airsync
