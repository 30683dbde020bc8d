// Which handler an element goes to, entry by entry; and which elements have none.
#include <set>

#include "ParserRig.h"

namespace airsync_test {
namespace {

struct DispatchRow {
  const char* tag;
  UINT8 page;
  Parser::Handler handler;
};

const DispatchRow kRows[] = {
    {"Add", 0, &Parser::ProcessAdd},
    {"Change", 0, &Parser::ProcessChange},
    {"Delete", 0, &Parser::ProcessDelete},
    {"Class", 0, &Parser::ProcessClass},
    {"Version", 0, &Parser::ProcessVersion},
    {"ApplicationData", 0, &Parser::ProcessApplicationData},
    {"Collections", 0, &Parser::ProcessCollections},
    {"Collection", 0, &Parser::ProcessCollection},
    {"SyncKey", 0, &Parser::ProcessSyncKey},
    {"Status", 0, &Parser::ProcessStatus},
    {"MoreAvailable", 0, &Parser::ProcessMoreAvailable},
    {"Commands", 0, &Parser::ProcessCommands},
    {"Responses", 0, &Parser::ProcessResponses},
    {"ClientId", 0, &Parser::ProcessClientID},
    {"ServerId", 0, &Parser::ProcessServerID},
    {"CollectionId", 0, &Parser::ProcessCollectionID},
    {"SyncKey", 7, &Parser::ProcessFolderSyncKey},
    {"Status", 7, &Parser::ProcessFolderStatus},
    {"Changes", 7, &Parser::ProcessChanges},
    {"Count", 7, &Parser::ProcessFolderCount},
    {"Add", 7, &Parser::ProcessFolderAdd},
    {"Update", 7, &Parser::ProcessFolderUpdate},
    {"Delete", 7, &Parser::ProcessFolderDelete},
    {"ServerId", 7, &Parser::ProcessFolderServerId},
    {"Folder", 7, &Parser::ProcessHierarchyFolder},
    {"Response", 6, &Parser::ProcessEstimateResponse},
    {"Status", 6, &Parser::ProcessEstimateStatus},
    {"Collection", 6, &Parser::ProcessEstimateCollection},
    {"CollectionId", 6, &Parser::ProcessEstimateCollectionId},
    {"Class", 6, &Parser::ProcessEstimateClass},
    {"Estimate", 6, &Parser::ProcessEstimateEstimate},
    {"Status", 3, &Parser::ProcessNotifyStatus},
    {"Responses", 3, &Parser::ProcessNotifyResponses},
    {"Folder", 3, &Parser::ProcessNotifyFolder},
    {"ServerId", 3, &Parser::ProcessNotifyFolderServerId},
    {"ValidCarrierProfiles", 3, &Parser::ProcessNotifyValidCarrierProfiles},
    {"CarrierProfile", 3, &Parser::ProcessNotifyCarrierProfile},
    {"NotifyGUID", 3, &Parser::NotifyGUID},
    {"Response", 5, &Parser::ProcessMoveResponse},
    {"SrcMsgId", 5, &Parser::ProcessMoveSrcMsgId},
    {"Status", 5, &Parser::ProcessMoveStatus},
    {"DstMsgId", 5, &Parser::ProcessMoveDstMsgId},
    {"Result", 8, &Parser::ProcessMeetingResponseResult},
    {"ReqId", 8, &Parser::ProcessMeetingResponseReqId},
    {"Status", 8, &Parser::ProcessMeetingResponseStatus},
    {"CalId", 8, &Parser::ProcessMeetingResponseCalId},
};

// Elements of requests and of items, roots, and what only looks like an entry.
const char* const kOtherTags[] = {
    "AirNotify",
    "GetItemEstimate",
    "Moves",
    "MeetingResponse",
    "Lifetime",
    "SrcFldId",
    "UserResponse",
    "Request",
    "Sync",
    "Fetch",
    "FolderSync",
    "CreateCmd",
    "DeleteCmd",
    "Folders",
    "Type",
    "DisplayName",
    "ParentId",
    "Body",
    "Subject",
    "Read",
    "Timezone",
    "Categories",
    "Supported",
    "Options",
    "Command",
    "add",
    "ADD",
    "Add ",
    "",
    "A:SyncKey",
    "MoreAvailable2",
    "statuS",
};

TEST(ParserDispatch, KnowsTheHandlerOfEachEntry) {
  for (const DispatchRow& row : kRows) {
    Parser::Handler handler = nullptr;
    ASSERT_EQ(CatchAbort([&]() { handler = Parser::GetProcessorFromTag(row.tag, row.page); }), 0U) << row.tag;
    EXPECT_TRUE(handler == row.handler) << row.tag << " of page " << static_cast<int>(row.page);
  }
}

TEST(ParserDispatch, RefusesEveryOtherPair) {
  std::set<std::pair<std::string, int>> known;
  std::set<std::string> tags(std::begin(kOtherTags), std::end(kOtherTags));
  for (const DispatchRow& row : kRows) {
    known.emplace(row.tag, row.page);
    tags.insert(row.tag);
  }
  ASSERT_EQ(known.size(), 46U) << "47 rows, of which one never matches";
  for (const std::string& tag : tags) {
    for (int page = 0; page < 256; ++page) {
      if (known.count({tag, page}) != 0) continue;
      const SYNC_RESULT result =
          CatchAbort([&]() { Parser::GetProcessorFromTag(tag.c_str(), static_cast<UINT8>(page)); });
      ASSERT_EQ(result, 0x8001000bU) << tag << " of page " << page;
    }
  }
}

class ParserFrame : public ParserRig {};

TEST_F(ParserFrame, EndsTheExchangeAtAnElementOfAnotherPage) {
  sml_element* const tree = Tree(Answer({}), kAirSyncPage);
  SE_GetChild(tree, "Collections/Collection/Status")->CodePage = 1;
  EXPECT_EQ(SyncTree(tree), 0x8001000bU);
  EXPECT_TRUE(store.Calls().empty());
}

TEST_F(ParserFrame, DoesNotVisitElementsThatItHasNoUseFor) {
  EXPECT_EQ(
      Sync({"Sync", Nodes{{"Unheard"}, {"Collections", Nodes{{"Command"}, {"Options", Nodes{{"x"}}}}}}}), 0U);
}

TEST_F(ParserFrame, FindsTheTextOfAnElementAtAnyDepth) {
  sml_element* const tree =
      Tree({"a", Nodes{{"b", Nodes{{"c", "deep"}}}, {"c", "flat"}, {"empty"}, {"e", ""}}}, 0);
  EXPECT_STREQ(Parser::ProcessDataElement(tree, "c"), "deep");
  EXPECT_STREQ(Parser::ProcessDataElement(tree, "e"), "");
  EXPECT_EQ(Parser::ProcessDataElement(tree, "empty"), nullptr);
  EXPECT_EQ(Parser::ProcessDataElement(tree, "missing"), nullptr);
  SE_Destroy(tree);
}

class ParserDeath : public ParserRig {
 protected:
  static sml_element* Root() { return Tree({"Other"}, 0); }

  UINT8 (*list)[64] = nullptr;
  UINT16 count = 0;
  SERVER_ID id = {};
};

// Keeps S3.
TEST_F(ParserDeath, StopsAtAnotherRootThanSync) {
  EXPECT_DEATH(parser.Sync(Root(), &store, &folder, status),
               testing::HasSubstr("!SmlStrcmp(SE_GetTag(pSyncCmd), \"Sync\")"));
}

TEST_F(ParserDeath, StopsAtAnotherRootThanFolderSync) {
  EXPECT_DEATH(parser.FolderSync(Root(), &store, key),
               testing::HasSubstr("!SmlStrcmp(SE_GetTag(pFolderSyncCmd), \"FolderSync\")"));
}

TEST_F(ParserDeath, StopsAtAnotherRootThanCreateCmd) {
  EXPECT_DEATH(parser.FolderCreate(Root(), &folder.folder, key),
               testing::HasSubstr("!SmlStrcmp(SE_GetTag(pFolderCreate), \"CreateCmd\")"));
}

TEST_F(ParserDeath, StopsAtAnotherRootThanDeleteCmd) {
  EXPECT_DEATH(parser.FolderDelete(Root(), key),
               testing::HasSubstr("!SmlStrcmp(SE_GetTag(pFolderDelete), \"DeleteCmd\")"));
}

TEST_F(ParserDeath, StopsAtAnotherRootThanUpdateCmd) {
  EXPECT_DEATH(parser.FolderUpdate(Root(), key),
               testing::HasSubstr("!SmlStrcmp(SE_GetTag(pFolderUpdate), \"UpdateCmd\")"));
}

TEST_F(ParserDeath, StopsAtAnotherRootThanAirNotify) {
  EXPECT_DEATH(parser.GetCarrierList(Root(), list, count),
               testing::HasSubstr("!SmlStrcmp(SE_GetTag(p), \"AirNotify\")"));
  EXPECT_DEATH(parser.SetDeviceAddress(Root()),
               testing::HasSubstr("!SmlStrcmp(SE_GetTag(p), \"AirNotify\")"));
  EXPECT_DEATH(parser.NotifyEnable(Root(), &store, nullptr, 0, list, count),
               testing::HasSubstr("!SmlStrcmp(SE_GetTag(pAirNotify), \"AirNotify\")"));
}

TEST_F(ParserDeath, StopsAtAnotherRootThanGetItemEstimate) {
  EXPECT_DEATH(parser.GetItemEstimate(Root(), &store, nullptr, 0),
               testing::HasSubstr("!SmlStrcmp(SE_GetTag(pSyncEstimate), \"GetItemEstimate\")"));
}

TEST_F(ParserDeath, StopsAtAnotherRootThanMoves) {
  EXPECT_DEATH(parser.MoveItems(Root(), nullptr, nullptr, nullptr, nullptr, nullptr, 0),
               testing::HasSubstr("!SmlStrcmp(SE_GetTag(pMoveItems), \"Moves\")"));
}

TEST_F(ParserDeath, StopsAtAnotherRootThanSyncInAnAnswerToAFetch) {
  EXPECT_DEATH(parser.Fetch(Root(), &folder),
               testing::HasSubstr("!SmlStrcmp(SE_GetTag(pFetchCmd), \"Sync\")"));
}

TEST_F(ParserDeath, StopsAtAnotherRootThanMeetingResponse) {
  EXPECT_DEATH(parser.MeetingResponse(Root(), id, id),
               testing::HasSubstr("!SmlStrcmp(SE_GetTag(pMeetingResponse), \"MeetingResponse\")"));
}

}  // namespace
}  // namespace airsync_test
