#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "support/ApiSession.h"

namespace {

using namespace AIRSYNC_STACK;
using namespace airsync_test;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(Fetch, AsTheFirstCommandReachesStorage) {
  ApiSession session;
  EXPECT_EQ(Perform(session, "Fetch"), 0U);
  EXPECT_THAT(session.store.Lines(),
              ElementsAre("FetchedItem 7 id=5:1 result=0x00000000", "StoreSyncKey 7 key=k2"));
  EXPECT_EQ(session.store.Calls()[0].contact, (ContactFields{{"FileAs", "Ada"}}));
}

TEST(Fetch, HandsAnItemsOwnFailureToStorage) {
  ApiSession session;
  session.transport.Answer(
      HexAndText("03 01 6A 00 45 5C 4F 4E 03 '1' 00 01 46 4A 4D 03 '5:1' 00 01 4E 03 '8' 00 01 1D 01 01 01"
                 "  01 01"));
  EXPECT_EQ(session.airSync->Fetch(&session.folder, session.item), 0U);
  EXPECT_EQ(session.store.Lines()[0], "FetchedItem 7 id=5:1 result=0x80010008");
}

TEST(Fetch, RaisesTheServersStatus) {
  ApiSession session;
  session.transport.Answer(HexAndText("03 01 6A 00 45 4E 03 '4' 00 01 01"));
  EXPECT_EQ(session.airSync->Fetch(&session.folder, session.item), 0x80010e04U);
  EXPECT_THAT(session.store.Calls(), IsEmpty());
}

TEST(Fetch, FromNoFolderSendsNothing) {
  ApiSession session;
  EXPECT_EQ(session.airSync->Fetch(nullptr, session.item), 0x800000ffU);
  EXPECT_THAT(session.transport.Lines(), IsEmpty());
}

TEST(Fetch, DoesNotCareWhetherTheFolderIsSelected) {
  ApiSession session;
  session.folder.selected = 0;
  EXPECT_EQ(Perform(session, "Fetch"), 0U);
}

TEST(Fetch, HasNoLimitOfItsOwn) {
  ApiSession session;
  Put(session.item.text, std::string(52, 'i'));
  Put(session.folder.syncKey.text, std::string(68, 'k'));
  EXPECT_EQ(Perform(session, "Fetch"), 0U);
  EXPECT_NE(session.transport.Requests()[0].body.find(std::string(48, 'i') + '\0'), std::string::npos);
}

TEST(GetItemEstimate, AsksForStoragesFoldersAndTellsIt) {
  ApiSession session;
  EXPECT_EQ(Perform(session, "GetItemEstimate"), 0U);
  EXPECT_THAT(session.store.Lines(),
              ElementsAre("GetFolderList 0", "SetItemEstimate 7 number=12 result=0x00000000"));
}

TEST(GetItemEstimate, TellsStorageOfAFailure) {
  ApiSession session;
  session.transport.Answer(
      HexAndText("03 01 6A 00 00 06 45 4D 4E 03 '2' 00 01 48 4A 03 '5' 00 01 4C 03 '12' 00 01 01 01 01"));
  EXPECT_EQ(session.airSync->GetItemEstimate(), 0U);
  EXPECT_THAT(session.store.Lines(),
              ElementsAre("GetFolderList 0", "SetItemEstimate 7 number=0 result=0x80010702",
                          "SetItemEstimate 7 number=12 result=0x80010702"));
}

TEST(GetItemEstimate, OfAnUnknownFolderIsRefused) {
  ApiSession session;
  session.transport.Answer(HexAndText("03 01 6A 00 00 06 45 4D 4E 03 '1' 00 01 48 4A 03 '6' 00 01 01 01 01"));
  EXPECT_EQ(session.airSync->GetItemEstimate(), 0x80010011U);
}

// An element of page 0 in a Collection: no folder is being synchronised.
TEST(GetItemEstimate, WithAnElementOfASyncIsRefused) {
  ApiSession session;
  for (const char* const element : {"52 03 '5' 00 01", "50 03 'Contacts' 00 01"}) {
    session.transport.Answer(
        HexAndText(std::string("03 01 6A 00 00 06 45 4D 4E 03 '1' 00 01 00 00 4F ") + element + "01 01 01"));
    EXPECT_EQ(session.airSync->GetItemEstimate(), 0x80010011U);
  }
}

// 10 bytes around 62 collections, each of 27 bytes and its two texts: 10 + 62 * (27 + 68 + 66) = 9992; then
// `longer` keys have one more byte.
class EstimateSize : public testing::Test {
 protected:
  SYNC_RESULT Estimate(std::size_t longer) {
    folders_.assign(62, TestFolder());
    session_.store.folders.clear();
    for (std::size_t i = 0; i < folders_.size(); ++i) {
      Put(folders_[i].folder.serverId.text, std::string(68, 'f'));
      Put(folders_[i].syncKey.text, std::string(i < longer ? 67 : 66, 'k'));
      session_.store.folders.push_back(&folders_[i]);
    }
    return session_.airSync->GetItemEstimate();
  }

  ApiSession session_;
  std::vector<FOLDER_INFO> folders_;
};

TEST_F(EstimateSize, OfExactly10000BytesIsSent) {
  session_.transport.Answer(HexAndText("03 01 6A 00 00 06 05"));
  EXPECT_EQ(Estimate(8), 0U);
  ASSERT_EQ(session_.transport.Requests().size(), 1U);
  EXPECT_EQ(session_.transport.Requests()[0].contentLength, 10000U);
  EXPECT_EQ(session_.transport.Requests()[0].body.size(), 10000U);
}

TEST_F(EstimateSize, Of10001BytesIsNot) {
  EXPECT_EQ(Estimate(9), 0x8001000eU);
  EXPECT_THAT(session_.transport.Lines(), IsEmpty());
  EXPECT_EQ(FailingMemory::LiveBlocks(), 0U);
}

TEST(MoveItems, HandsOutStatusAndNewId) {
  ApiSession session;
  EXPECT_EQ(Perform(session, "MoveItems"), 0U);
  EXPECT_EQ(session.moved, 3);
  EXPECT_STREQ(session.newItem.text, "6:9");
  EXPECT_THAT(session.store.Calls(), IsEmpty());
}

TEST(MoveItems, FailingLeavesTheCallersValuesAlone) {
  ApiSession session;
  session.transport.Answer(HexAndText("03 01 6A 00 00 05 45 4A"));
  EXPECT_EQ(CommandNamed("MoveItems").run(session), 0x8001000cU);
  EXPECT_EQ(session.moved, -1);
  EXPECT_STREQ(session.newItem.text, "none");
}

TEST(MoveItems, OfNothingIsSentAllTheSame) {
  ApiSession session;
  session.transport.Answer(HexAndText("03 01 6A 00 00 05 05"));
  EXPECT_EQ(session.airSync->MoveItems(nullptr, nullptr, nullptr, nullptr, nullptr, 0), 0U);
  EXPECT_EQ(session.transport.Requests()[0].body, HexAndText("03 01 6A 00 00 05 05"));
}

// 8 bytes around 51 moves, each of 14 bytes and its three texts: 8 + 51 * (14 + 48 + 68 + 65) = 9953; then
// `longer` destinations have one more byte.
class MoveSize : public testing::Test {
 protected:
  SYNC_RESULT Move(std::size_t longer) {
    std::vector<SERVER_ID> items(51), newIds(51);
    std::vector<FOLDER_ID> sources(51), destinations(51);
    std::vector<int> statuses(51);
    for (std::size_t i = 0; i < items.size(); ++i) {
      Put(items[i].text, std::string(48, 'i'));
      Put(sources[i].text, std::string(68, 's'));
      Put(destinations[i].text, std::string(i < longer ? 66 : 65, 'd'));
    }
    return session_.airSync->MoveItems(items.data(), sources.data(), destinations.data(), newIds.data(),
                                       statuses.data(), 51);
  }

  ApiSession session_;
};

TEST_F(MoveSize, OfExactly10000BytesIsSent) {
  session_.transport.Answer(HexAndText("03 01 6A 00 00 05 05"));
  EXPECT_EQ(Move(47), 0U);
  ASSERT_EQ(session_.transport.Requests().size(), 1U);
  EXPECT_EQ(session_.transport.Requests()[0].body.size(), 10000U);
}

TEST_F(MoveSize, Of10001BytesIsNot) {
  EXPECT_EQ(Move(48), 0x8001000eU);
  EXPECT_THAT(session_.transport.Lines(), IsEmpty());
}

TEST(MeetingResponse, HandsOutTheCalendarItem) {
  ApiSession session;
  EXPECT_EQ(Perform(session, "MeetingResponse"), 0U);
  EXPECT_STREQ(session.calendarItem.text, "7:3");
}

TEST(MeetingResponse, HandsOutNoneWhereNoneWasMade) {
  ApiSession session;
  EXPECT_EQ(Perform(session, "MeetingResponse"), 0U);
  session.transport.Answer(HexAndText("03 01 6A 00 00 08 47 4A 48 03 '5:1' 00 01 4B 03 '1' 00 01 01 01"));
  EXPECT_EQ(CommandNamed("MeetingResponse").run(session), 0U);
  EXPECT_STREQ(session.calendarItem.text, "0");
}

TEST(MeetingResponse, RaisesTheServersStatusAndOtherRequests) {
  ApiSession session;
  session.transport.Answer(
      HexAndText("03 01 6A 00 00 08 47 4A 48 03 '5:1' 00 01 4B 03 '2' 00 01 45 03 '7:3' 00 01 01 01"));
  EXPECT_EQ(CommandNamed("MeetingResponse").run(session), 0x80010802U);
  session.transport.Answer(
      HexAndText("03 01 6A 00 00 08 47 4A 48 03 '5:2' 00 01 4B 03 '1' 00 01 45 03 '7:3' 00 01 01 01"));
  EXPECT_EQ(CommandNamed("MeetingResponse").run(session), 0x80010011U);
  EXPECT_STREQ(session.calendarItem.text, "none");
}

}  // namespace
