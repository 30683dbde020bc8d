// The Sync response: its frame, the collection, the server's commands, and when the new key is stored.
#include "ParserRig.h"

namespace airsync_test {
namespace {

class ParserSync : public ParserRig {
 protected:
  static Node WithStatus(const Node& statusNode) { return {"Sync", Nodes{statusNode}}; }

  // The result of a collection with these children; what storage was told is forgotten before.
  SYNC_RESULT Collection(const Nodes& children) {
    store.ClearCalls();
    return Sync(AnswerOf(children));
  }

  std::string StoredKey(const Nodes& children) {
    EXPECT_EQ(Collection(children), 0U);
    const std::vector<StoreCall> calls = store.CallsOf("StoreSyncKey");
    return calls.size() == 1 ? *calls[0].syncKey : "(not stored once)";
  }
};

TEST_F(ParserSync, StoresAnAddedContactAndThenTheKey) {
  EXPECT_EQ(SyncGolden("sync-answer-one-contact"), 0U);
  EXPECT_EQ(store.Lines(), (Lines{"AddServerItem 42 id=2:1", "StoreSyncKey 42 key={7}13"}));
  EXPECT_EQ(store.Calls()[0].contact, (ContactFields{{"FirstName", "Zo\xC3\xAB"}, {"LastName", "Byron"}}));
  EXPECT_EQ(status, Parser::PARSER_COMPLETE);
}

TEST_F(ParserSync, TellsThatMoreIsToCome) {
  EXPECT_EQ(SyncGolden("sync-answer-more-to-come"), 0U);
  EXPECT_EQ(store.Lines(), (Lines{"AddServerItem 42 id=2:1", "ChangeServerItem 42 id=2:2",
                                  "DeleteServerItem 42 id=2:3", "StoreSyncKey 42 key={7}13"}));
  EXPECT_EQ(status, Parser::PARSER_MORE);
}

TEST_F(ParserSync, LeavesTheStatusOfThePreviousResponseWhereThereIsNoCollection) {
  EXPECT_EQ(SyncGolden("sync-answer-nothing"), 0U);
  EXPECT_EQ(status, Parser::PARSER_COMPLETE) << "the first response ever";
  EXPECT_EQ(Sync(Answer({{"MoreAvailable"}})), 0U);
  status = Parser::PARSER_NOT_RUN;
  EXPECT_EQ(SyncGolden("sync-answer-nothing"), 0U);
  EXPECT_EQ(status, Parser::PARSER_MORE);
  EXPECT_EQ(Sync(Answer({})), 0U);
  EXPECT_EQ(Sync({"Sync", Nodes{{"Collections"}}}), 0U);
  EXPECT_EQ(status, Parser::PARSER_COMPLETE);
}

TEST_F(ParserSync, StoresNoKeyWhereThereIsNoCollection) {
  EXPECT_EQ(SyncGolden("sync-answer-nothing"), 0U);
  EXPECT_TRUE(store.Calls().empty());
}

TEST_F(ParserSync, TakesAMissingStatusForSuccess) {
  EXPECT_EQ(Sync({"Sync"}), 0U);
  EXPECT_EQ(Sync(WithStatus({"Status", "3"})), 0x80010e03U);
  EXPECT_EQ(Sync({"Sync"}), 0U) << "also after a failure";
}

TEST_F(ParserSync, RaisesEachStatusThatIsNotOne) {
  EXPECT_EQ(Sync(WithStatus({"Status", "12"})), 0x80010e0cU);
  EXPECT_EQ(Sync(WithStatus({"Status", "0"})), 0x80010e00U);
  EXPECT_EQ(Sync(WithStatus({"Status", ""})), 0x80010e00U);
  EXPECT_EQ(Sync(WithStatus({"Status"})), 0x80010e00U);
  EXPECT_EQ(Sync(WithStatus({"Status", "one"})), 0x80010e00U);
  EXPECT_EQ(Sync(WithStatus({"Status", "-1"})), 0xffffffffU);
  EXPECT_EQ(Sync(WithStatus({"Status", "65537"})), 0x80010e00U | 0x10001U);
  EXPECT_EQ(Sync(WithStatus({"Status", "1 and more"})), 0U);
}

TEST_F(ParserSync, ReadsTheStatusBeforeTheCollections) {
  Node answer = Answer({});
  answer.children.push_back({"Status", "4"});
  EXPECT_EQ(Sync(answer), 0x80010e04U);
  EXPECT_TRUE(store.Calls().empty());
}

TEST_F(ParserSync, RaisesTheCollectionsStatus) {
  EXPECT_EQ(Collection({{"SyncKey", "k"}, {"Status", "3"}, {"CollectionId", "2:1"}}), 0x80010e03U);
  EXPECT_EQ(Collection({{"Status"}}), 0x80010e00U);
  EXPECT_TRUE(store.Calls().empty());
}

TEST_F(ParserSync, TakesAMissingCollectionStatusForTheDocuments) { EXPECT_EQ(Collection({}), 0U); }

TEST_F(ParserSync, ComparesTheCollectionBeforeItTestsTheStatus) {
  EXPECT_EQ(Collection({{"Status", "3"}, {"CollectionId", "other"}}), 0x80010011U);
}

TEST_F(ParserSync, TestsTheStatusBeforeItComparesTheClass) {
  EXPECT_EQ(Collection({{"Class", "Email"}, {"Status", "3"}}), 0x80010e03U);
}

TEST_F(ParserSync, ComparesTheClassBeforeAnythingIsStored) {
  EXPECT_EQ(Collection({Commands({Item("Add", "2:1")}), {"Class", "Email"}}), 0x80010011U);
  EXPECT_TRUE(store.Calls().empty());
}

TEST_F(ParserSync, ReadsThatMoreIsToComeBeforeTheCommands) {
  AirSync::getInstance()->CancelSync();
  EXPECT_EQ(Collection({Commands({Item("Add", "2:1")}), {"MoreAvailable"}}), 0x80010010U);
  EXPECT_EQ(Sync({"Sync"}), 0U);
  EXPECT_EQ(status, Parser::PARSER_MORE);
}

TEST_F(ParserSync, RefusesAnotherCollection) {
  for (const char* const id : {"2:2", "2:", "2:10", "", "2"}) {
    EXPECT_EQ(Collection({{"CollectionId", id}}), 0x80010011U) << id;
  }
  EXPECT_EQ(Collection({{"CollectionId"}}), 0x80010011U);
  EXPECT_EQ(Collection({{"CollectionId", "2:1"}}), 0U);
  EXPECT_EQ(Collection({}), 0U) << "a response need not name it";
}

TEST_F(ParserSync, ComparesAnIdThatFillsItsWholeField) {
  const std::string id(68, 'i');
  Fill(folder.folder.serverId.text, id);
  EXPECT_EQ(Collection({{"CollectionId", id}}), 0U);
  EXPECT_EQ(Collection({{"CollectionId", id + "i"}}), 0x80010011U);
  EXPECT_EQ(Collection({{"CollectionId", id.substr(1)}}), 0x80010011U);
}

TEST_F(ParserSync, RefusesAnotherClass) {
  const char* const names[] = {"Contacts", "Calendar", "Email"};
  for (int type = 0; type < 5; ++type) {
    folder.dataType = static_cast<DATATYPE>(type == 4 ? -1 : type);
    for (int named = 0; named < 3; ++named) {
      const SYNC_RESULT expected = named == type ? 0 : 0x80010011U;
      EXPECT_EQ(Collection({{"Class", names[named]}}), expected) << names[named] << " for " << type;
    }
    EXPECT_EQ(Collection({{"Class"}}), 0x80010011U);
    EXPECT_EQ(Collection({{"Class", "contacts"}}), 0x80010011U);
    EXPECT_EQ(Collection({}), 0U) << "a response need not name it";
  }
}

TEST_F(ParserSync, GoesThroughACollectionInItsOwnOrder) {
  const Nodes children = {
      Responses({{"Fetch", Nodes{{"Status", "1"}, {"ServerId", "4"}, {"ApplicationData"}}},
                 {"Delete", Nodes{{"Status", "1"}, {"ServerId", "3"}}},
                 {"Change", Nodes{{"Status", "1"}, {"ServerId", "2"}}},
                 {"Add", Nodes{{"Status", "1"}, {"ServerId", "1"}, {"ClientId", "5"}}}}),
      Commands({Deleted("9"), Item("Change", "8"), Item("Add", "7"), Deleted("6"), Item("Add", "5")}),
      {"Class", "Contacts"},
      {"CollectionId", "2:1"},
      {"Status", "1"},
      {"SyncKey", "new"}};
  EXPECT_EQ(Collection(children), 0U);
  EXPECT_EQ(store.Lines(),
            (Lines{"AddServerItem 42 id=7", "AddServerItem 42 id=5", "ChangeServerItem 42 id=8",
                   "DeleteServerItem 42 id=9", "DeleteServerItem 42 id=6",
                   "AddResult 42 client=5 id=1 result=0x00000000", "ChangeResult 42 id=2 result=0x00000000",
                   "DeleteResult 42 id=3 result=0x00000000", "FetchedItem 42 id=4 result=0x00000000",
                   "StoreSyncKey 42 key=new"}));
}

TEST_F(ParserSync, CutsAKeyToItsFieldWithoutSplittingACharacter) {
  EXPECT_EQ(StoredKey({{"SyncKey", std::string(67, 'k')}}), std::string(67, 'k'));
  EXPECT_EQ(StoredKey({{"SyncKey", std::string(68, 'k')}}), std::string(67, 'k'));
  EXPECT_EQ(StoredKey({{"SyncKey", std::string(66, 'k') + "\xC3\xA9"}}), std::string(66, 'k'));
  EXPECT_EQ(StoredKey({{"SyncKey", std::string(65, 'k') + "\xC3\xA9"}}), std::string(65, 'k') + "\xC3\xA9");
  EXPECT_EQ(StoredKey({{"SyncKey", std::string(64, 'k') + "\xF0\x9F\x98\x80"}}), std::string(64, 'k'));
  EXPECT_EQ(StoredKey({{"SyncKey", std::string(60000, 'k')}}), std::string(67, 'k'));
}

TEST_F(ParserSync, StoresAnEmptyKeyForAnEmptyOne) {
  EXPECT_EQ(StoredKey({{"SyncKey", "old"}}), "old");
  EXPECT_EQ(StoredKey({{"SyncKey", ""}}), "");
  EXPECT_EQ(StoredKey({{"SyncKey"}}), "");
}

TEST_F(ParserSync, StoresNoEarlierResponsesKey) {
  EXPECT_EQ(StoredKey({{"SyncKey", "old"}}), "old");
  EXPECT_EQ(StoredKey({}), "");
}

TEST_F(ParserSync, GoesThroughEveryCollectionThatComes) {
  const Node first = {"Collection", Nodes{{"SyncKey", "a"}, {"MoreAvailable"}}};
  const Node second = {"Collection", Nodes{{"SyncKey", "b"}}};
  EXPECT_EQ(Sync({"Sync", Nodes{{"Collections", Nodes{first, second}}}}), 0U);
  EXPECT_EQ(store.Lines(), (Lines{"StoreSyncKey 42 key=a", "StoreSyncKey 42 key=b"}));
  EXPECT_EQ(status, Parser::PARSER_COMPLETE) << "the last one decides";
}

TEST_F(ParserSync, CutsItemIdsAt48BytesAndReadsAnEmptyOneAsZero) {
  EXPECT_EQ(
      Sync(Answer({Commands({Deleted(std::string(60, 'x')), Deleted(""), {"Delete", Nodes{{"ServerId"}}}})})),
      0U);
  EXPECT_EQ(store.Lines(),
            (Lines{"DeleteServerItem 42 id=" + std::string(48, 'x'), "DeleteServerItem 42 id=0",
                   "DeleteServerItem 42 id=0", "StoreSyncKey 42 key={7}13"}));
}

TEST_F(ParserSync, KeepsTheIdOfThePreviousItemWhereThereIsNone) {
  EXPECT_EQ(Sync(Answer({Commands({Item("Add", "2:1"), {"Delete"}})})), 0U);
  EXPECT_EQ(store.Lines()[1], "DeleteServerItem 42 id=2:1");
}

TEST_F(ParserSync, StoresNothingForAnItemWithoutData) {
  EXPECT_EQ(
      Sync(Answer({Commands({{"Add", Nodes{{"ServerId", "1"}}}, {"Change", Nodes{{"ServerId", "2"}}}})})),
      0U);
  EXPECT_EQ(store.Lines(), Lines{"StoreSyncKey 42 key={7}13"});
}

TEST_F(ParserSync, PassesOverItemsOfClassesThatItDoesNotDecode) {
  for (const int type : {3, 4, -1}) {
    folder.dataType = static_cast<DATATYPE>(type);
    EXPECT_EQ(Collection({Commands({Item("Add", "1"), Item("Change", "2"), Deleted("3")})}), 0U);
    EXPECT_EQ(store.Lines(), (Lines{"DeleteServerItem 42 id=3", "StoreSyncKey 42 key="}));
  }
}

TEST_F(ParserSync, DoesNotCareForWhatStorageAnswers) {
  store.answer = 0x80000000;
  EXPECT_EQ(SyncGolden("sync-answer-more-to-come"), 0U);
  EXPECT_EQ(store.Calls().size(), 4U);
}

// The first five calls are Add, Add, Change, Change, Delete; a sixth would be the second Delete.
TEST_F(ParserSync, EndsBetweenTwoItemsWhenItIsCancelled) {
  const Node answer = Answer({Commands({Item("Add", "1"), Item("Add", "2"), Item("Change", "3"),
                                        Item("Change", "4"), Deleted("5"), Deleted("6")})});
  for (std::size_t n = 1; n <= 5; ++n) {
    store.ClearCalls();
    CancelAtCall(n);
    EXPECT_EQ(Sync(answer), 0x80010010U) << n;
    EXPECT_EQ(store.Calls().size(), n) << "neither another item nor the key";
    EXPECT_FALSE(AirSync::getInstance()->CancelRequested());
  }
}

TEST_F(ParserSync, EndsAtItsEndWhenItIsCancelledMeanwhile) {
  CancelAtCall(1);
  EXPECT_EQ(Sync(Answer({{"MoreAvailable"}})), 0x80010010U);
  EXPECT_EQ(store.Lines(), Lines{"StoreSyncKey 42 key={7}13"});
  EXPECT_EQ(status, Parser::PARSER_MORE) << "handed out before the last test";
}

TEST_F(ParserSync, LogsItsEntryTheVersionAndThatMoreIsToCome) {
  LogSpy spy;
  Log::SetLevel(AS_LOG_SOURCE_PARSER, AS_LOG_LEVEL_TRACE, &spy);
  Node answer = Answer({{"MoreAvailable"}});
  answer.children.push_back({"Version", "2.0"});
  answer.children.push_back({"Version"});
  EXPECT_EQ(Sync(answer), 0U);
  EXPECT_EQ(spy.Lines(), (Lines{"into Parser::SyncCmd", "Version: |TRUE", "Version: |FALSE",
                                "In <MoreAva.>|MoreAvailable"}));
  spy.Clear();
  Log::SetLevel(AS_LOG_SOURCE_PARSER, AS_LOG_LEVEL_INFO, &spy);
  EXPECT_EQ(Sync(answer), 0U);
  EXPECT_EQ(spy.Lines(), (Lines{"Version: |TRUE", "Version: |FALSE", "In <MoreAva.>|MoreAvailable"}));
}

TEST_F(ParserSync, ReadsTheVersionBeforeTheStatus) {
  LogSpy spy;
  Log::SetLevel(AS_LOG_SOURCE_PARSER, AS_LOG_LEVEL_INFO, &spy);
  EXPECT_EQ(Sync({"Sync", Nodes{{"Status", "3"}, {"Version", "2.0"}}}), 0x80010e03U);
  EXPECT_EQ(spy.Lines(), Lines{"Version: |TRUE"});
}

TEST_F(ParserSync, NeedsNoLog) {
  LogSpy spy;
  Log::SetLevel(AS_LOG_SOURCE_PARSER, AS_LOG_LEVEL_TRACE, &spy);
  Parser silent(nullptr);
  Node answer = Answer({{"MoreAvailable"}});
  answer.children.push_back({"Version", "2.0"});
  EXPECT_EQ(
      Run(Tree(answer, kAirSyncPage), [&](sml_element* root) { silent.Sync(root, &store, &folder, status); }),
      0U);
  EXPECT_EQ(spy.Lines(), Lines());
}

}  // namespace
}  // namespace airsync_test
