// The answers about single items: moves, fetches and answers to meetings.
#include "ParserRig.h"

namespace airsync_test {
namespace {

class ParserItems : public ParserRig {
 protected:
  static Node Moved(const std::string& item, const Nodes& more) {
    Nodes children = {{"SrcMsgId", item}};
    children.insert(children.end(), more.begin(), more.end());
    return {"Response", children};
  }

  static std::string TextOf(const SERVER_ID& id) { return {id.text, strnlen(id.text, sizeof id.text)}; }

  // The outcome of a move of items "a", "b" and "b" once more: "3:6:1 0:0 0:0", status and new id of each.
  std::string Moves(const Nodes& responses) {
    SERVER_ID items[] = {{"a"}, {"b"}, {"b"}};
    FOLDER_ID folders[3] = {};
    SERVER_ID newIds[] = {{"stale"}, {"stale"}, {"stale"}};
    int statuses[] = {99, 99, 99};
    moveResult = Run(Tree({"Moves", responses}, 5), [&](sml_element* root) {
      parser.MoveItems(root, items, folders, folders, newIds, statuses, 3);
    });
    std::string outcome;
    for (int i = 0; i < 3; ++i) {
      if (i != 0) outcome += " ";
      outcome += std::to_string(statuses[i]) + ":" + TextOf(newIds[i]);
    }
    return outcome;
  }

  SYNC_RESULT FetchTree(sml_element* tree) {
    return Run(tree, [this](sml_element* root) {
      parser.SetStorage(&store);
      parser.Fetch(root, &folder);
    });
  }
  SYNC_RESULT Fetch(const Node& answer) { return FetchTree(Tree(answer, kAirSyncPage)); }

  SYNC_RESULT Meeting(const Nodes& results) {
    return Run(Tree({"MeetingResponse", results}, 8),
               [this](sml_element* root) { parser.MeetingResponse(root, request, calendarId); });
  }

  SYNC_RESULT moveResult = 0;
  SERVER_ID request = {"5:1"};
  SERVER_ID calendarId = {"stale"};
};

TEST_F(ParserItems, MoveTellsStatusAndNewIdOfEachItem) {
  EXPECT_EQ(Moves({Moved("b", {{"Status", "3"}, {"DstMsgId", "6:2"}}),
                   Moved("a", {{"DstMsgId", "6:1"}, {"Status", "3"}})}),
            "3:6:1 3:6:2 0:0");
  EXPECT_EQ(moveResult, 0U);
  EXPECT_TRUE(store.Calls().empty());
}

TEST_F(ParserItems, MoveOfAnUnknownItemChangesNothing) {
  EXPECT_EQ(Moves({Moved("c", {{"Status", "3"}, {"DstMsgId", "6:2"}})}), "0:0 0:0 0:0");
  EXPECT_EQ(Moves({Moved("A", {{"Status", "3"}, {"DstMsgId", "6:2"}})}), "0:0 0:0 0:0");
  EXPECT_EQ(Moves({Moved("", {{"Status", "3"}, {"DstMsgId", "6:2"}})}), "0:0 0:0 0:0");
  EXPECT_EQ(Moves({}), "0:0 0:0 0:0");
  EXPECT_EQ(moveResult, 0U);
}

TEST_F(ParserItems, MoveOfAnItemNamedTwiceIsTheFirstOnes) {
  EXPECT_EQ(Moves({Moved("b", {{"Status", "3"}, {"DstMsgId", "6:2"}}),
                   Moved("b", {{"Status", "3"}, {"DstMsgId", "6:3"}})}),
            "0:0 3:6:3 0:0");
}

TEST_F(ParserItems, MoveWithoutAStatusSucceeded) {
  EXPECT_EQ(Moves({Moved("a", {{"DstMsgId", "6:1"}})}), "3:6:1 0:0 0:0");
  EXPECT_EQ(Moves({Moved("a", {{"Status", "1"}}), Moved("b", {{"DstMsgId", "6:2"}})}), "1:0 3:6:2 0:0")
      << "also after one that failed";
}

TEST_F(ParserItems, MoveHasANewIdOnlyWithStatusThree) {
  for (const char* const text : {"1", "2", "4", "5", "6", "7", "0", "8", "-3", "33", "300"}) {
    EXPECT_EQ(Moves({Moved("a", {{"Status", text}, {"DstMsgId", "6:1"}})}), std::string(text) + ":0 0:0 0:0");
  }
  EXPECT_EQ(Moves({Moved("a", {{"Status"}, {"DstMsgId", "6:1"}})}), "0:0 0:0 0:0") << "no text is 0";
  EXPECT_EQ(Moves({Moved("a", {{"Status", "ok"}, {"DstMsgId", "6:1"}})}), "0:0 0:0 0:0");
}

TEST_F(ParserItems, MoveWithoutANewIdGetsNoOtherItemsId) {
  EXPECT_EQ(Moves({Moved("a", {{"Status", "3"}, {"DstMsgId", "6:1"}}), Moved("b", {{"Status", "3"}})}),
            "3:6:1 3:0 0:0");
  EXPECT_EQ(Moves({Moved("a", {{"DstMsgId"}})}), "3:0 0:0 0:0");
  EXPECT_EQ(Moves({Moved("a", {{"DstMsgId", ""}})}), "3:0 0:0 0:0");
}

TEST_F(ParserItems, MoveWithoutAnItemIsAboutTheOneNamedLast) {
  EXPECT_EQ(Moves({Moved("a", {{"Status", "1"}}), {"Response", Nodes{{"Status", "2"}}}}), "2:0 0:0 0:0");
}

TEST_F(ParserItems, MoveCutsIdsLikeAllItemIds) {
  EXPECT_EQ(Moves({Moved("a", {{"DstMsgId", std::string(70, 'i')}})}),
            "3:" + std::string(48, 'i') + " 0:0 0:0");
}

TEST_F(ParserItems, MoveClearsTheOutgoingIdsWhole) {
  SERVER_ID items[] = {{"a"}};
  SERVER_ID newIds[1];
  std::memset(newIds, 0xEE, sizeof newIds);
  int statuses[] = {7};
  EXPECT_EQ(
      Run(Tree({"Moves", Nodes{}}, 5),
          [&](sml_element* root) { parser.MoveItems(root, items, nullptr, nullptr, newIds, statuses, 1); }),
      0U);
  EXPECT_EQ(std::string(newIds[0].text, sizeof newIds[0].text), "0" + std::string(51, '\0'));
  EXPECT_EQ(statuses[0], 0);
}

TEST_F(ParserItems, MoveOfNothingReadsItsAnswer) {
  EXPECT_EQ(
      Run(Tree({"Moves", Nodes{Moved("a", {{"Status", "3"}})}}, 5),
          [&](sml_element* root) { parser.MoveItems(root, nullptr, nullptr, nullptr, nullptr, nullptr, 0); }),
      0U);
}

TEST_F(ParserItems, MoveEndsAtAnElementOfAnotherPage) {
  sml_element* const tree = Tree({"Moves", Nodes{Moved("a", {{"DstMsgId", "6:1"}})}}, 5);
  SE_GetChild(tree, "Response/DstMsgId")->CodePage = 0;
  SERVER_ID items[] = {{"a"}};
  SERVER_ID newIds[1] = {};
  int statuses[1] = {};
  EXPECT_EQ(
      Run(tree,
          [&](sml_element* root) { parser.MoveItems(root, items, nullptr, nullptr, newIds, statuses, 1); }),
      0x8001000bU);
}

// The arrays are the caller's, who may have released them by then.
TEST_F(ParserItems, MoveLeavesItsArraysAloneAfterwards) {
  for (const bool aborted : {false, true}) {
    SERVER_ID items[] = {{"a"}};
    SERVER_ID newIds[1] = {};
    int statuses[1] = {};
    sml_element* const tree = Tree({"Moves", Nodes{Moved("a", {{"Status", "3"}, {"DstMsgId", "6:1"}})}}, 5);
    if (aborted) SE_GetChild(tree, "Response/DstMsgId")->CodePage = 0;
    EXPECT_EQ(
        Run(tree,
            [&](sml_element* root) { parser.MoveItems(root, items, nullptr, nullptr, newIds, statuses, 1); }),
        aborted ? 0x8001000bU : 0U);
    EXPECT_EQ(Run(Tree(Moved("a", {{"Status", "5"}}), 5),
                  [this](sml_element* response) { parser.ChildHandler(response); }),
              0x8001000bU);
    EXPECT_EQ(statuses[0], 3);
  }
}

TEST_F(ParserItems, FetchStoresTheItemThenTheKey) {
  EXPECT_EQ(Fetch(Answer({Responses({{"Fetch", Nodes{{"ServerId", "2:4"},
                                                     {"Status", "1"},
                                                     {"ApplicationData", Nodes{{"FirstName", "Ada"}}}}}})})),
            0U);
  EXPECT_EQ(store.Lines(), (Lines{"FetchedItem 42 id=2:4 result=0x00000000", "StoreSyncKey 42 key={7}13"}));
  EXPECT_EQ(store.Calls()[0].contact, (ContactFields{{"FirstName", "Ada"}}));
}

TEST_F(ParserItems, FetchRaisesTheServersStatus) {
  EXPECT_EQ(Fetch({"Sync", Nodes{{"Status", "4"}}}), 0x80010e04U);
  EXPECT_EQ(Fetch({"Sync", Nodes{{"Status"}}}), 0x80010e00U);
  EXPECT_EQ(Fetch(AnswerOf({{"Status", "3"}, {"SyncKey", "x"}})), 0x80010e03U);
  EXPECT_EQ(Fetch({"Sync", Nodes{{"Version", "2.0"}}}), 0U) << "a missing status is success";
  EXPECT_TRUE(store.Calls().empty());
}

TEST_F(ParserItems, FetchOfAnotherCollectionOrClassIsRefused) {
  EXPECT_EQ(Fetch(AnswerOf({{"Status", "1"}, {"CollectionId", "2:2"}})), 0x80010011U);
  EXPECT_EQ(Fetch(AnswerOf({{"Status", "1"}, {"Class", "Email"}})), 0x80010011U);
}

TEST_F(ParserItems, FetchEndsWhenItWasCancelled) {
  CancelAtCall(1);
  EXPECT_EQ(Fetch(Answer({})), 0x80010010U);
  EXPECT_EQ(store.Lines(), (Lines{"StoreSyncKey 42 key={7}13"}));
}

TEST_F(ParserItems, FetchAndMeetingResponseAreTraced) {
  LogSpy spy;
  Log::SetLevel(AS_LOG_SOURCE_PARSER, AS_LOG_LEVEL_TRACE, &spy);
  Fetch({"Sync", Nodes{{"Version", "2.0"}}});
  Meeting({});
  EXPECT_EQ(spy.Lines(), (Lines{"into Parser::Fetch", "Version: |TRUE", "into Parser::MeetingResponse"}));
  Log::SetLevel(AS_LOG_SOURCE_PARSER, AS_LOG_LEVEL_TRACE, nullptr);
}

TEST_F(ParserItems, MeetingResponseHandsOutTheCalendarItem) {
  EXPECT_EQ(Meeting({{"Result", Nodes{{"CalId", "7:3"}, {"Status", "1"}, {"ReqId", "5:1"}}}}), 0U);
  EXPECT_EQ(TextOf(calendarId), "7:3");
}

TEST_F(ParserItems, MeetingResponseWithoutACalendarItemHandsOutNone) {
  for (const Nodes& results : {Nodes{{"Result", Nodes{{"Status", "1"}, {"ReqId", "5:1"}}}},
                               Nodes{{"Result", Nodes{{"ReqId", "5:1"}, {"CalId"}}}}, Nodes{}}) {
    EXPECT_EQ(Meeting({{"Result", Nodes{{"CalId", "7:3"}}}}), 0U);
    EXPECT_EQ(Meeting(results), 0U);
    EXPECT_EQ(TextOf(calendarId), "0");
  }
}

TEST_F(ParserItems, MeetingResponseWithoutAStatusSucceeded) {
  EXPECT_EQ(Meeting({{"Result", Nodes{{"ReqId", "5:1"}, {"Status", "2"}}}}), 0x80010802U);
  EXPECT_EQ(Meeting({{"Result", Nodes{{"ReqId", "5:1"}, {"CalId", "7:3"}}}}), 0U);
  EXPECT_EQ(TextOf(calendarId), "7:3");
}

TEST_F(ParserItems, MeetingResponseToAnotherRequestIsRefused) {
  for (const char* const id : {"5:2", "5:11", "5:", "", "0"}) {
    EXPECT_EQ(Meeting({{"Result", Nodes{{"ReqId", id}, {"Status", "1"}, {"CalId", "7:3"}}}}), 0x80010011U);
  }
  EXPECT_EQ(TextOf(calendarId), "stale");
}

TEST_F(ParserItems, MeetingResponseChecksTheRequestBeforeTheStatus) {
  EXPECT_EQ(Meeting({{"Result", Nodes{{"Status", "2"}, {"ReqId", "5:2"}}}}), 0x80010011U);
}

TEST_F(ParserItems, MeetingResponseRaisesEachStatusThatIsNotOne) {
  struct {
    Node status;
    SYNC_RESULT result;
  } const rows[] = {{{"Status", "2"}, 0x80010802U}, {{"Status", "4"}, 0x80010804U},
                    {{"Status", "0"}, 0x80010800U}, {{"Status"}, 0x80010800U},
                    {{"Status", "x"}, 0x80010800U}, {{"Status", "-1"}, 0xffffffffU}};
  for (const auto& row : rows) {
    EXPECT_EQ(Meeting({{"Result", Nodes{{"ReqId", "5:1"}, row.status, {"CalId", "7:3"}}}}), row.result);
  }
  EXPECT_EQ(TextOf(calendarId), "stale");
}

TEST_F(ParserItems, MeetingResponseHandsOutTheItemAlsoWhenItWasCancelled) {
  AirSync::getInstance()->CancelSync();
  EXPECT_EQ(Meeting({{"Result", Nodes{{"ReqId", "5:1"}, {"CalId", "7:3"}}}}), 0x80010010U);
  EXPECT_EQ(TextOf(calendarId), "7:3");
}

TEST_F(ParserItems, MeetingResponseWithAnyStatusInTheRootIsNotLookedAt) {
  EXPECT_EQ(Meeting({{"Status", "2"}, {"Version", "2.0"}}), 0U);
}

}  // namespace
}  // namespace airsync_test
