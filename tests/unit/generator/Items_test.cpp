// The requests about single items: estimates, moves, fetches and answers to meetings.
#include "GeneratorRig.h"

namespace airsync_test {
namespace {

class GeneratorItems : public GeneratorRig {
 protected:
  ~GeneratorItems() override { EXPECT_EQ(FailingMemory::LiveBlocks(), blocksBefore); }

  static std::string OutlineOf(sml_element* request) {
    std::string outline = Outline(request);
    SE_Destroy(request);
    return outline;
  }

  static void Expect(sml_element* request, const std::string& golden) {
    EXPECT_EQ(InHex(Written(request)), InHex(GoldenDocument(golden)));
  }

  static FOLDER_INFO Folder(DATATYPE type, const std::string& id, const std::string& key) {
    FOLDER_INFO folder = FolderInUse();
    folder.dataType = type;
    Fill(folder.folder.serverId.text, id);
    Fill(folder.syncKey.text, key);
    return folder;
  }

  FOLDER_INFO contacts = Folder(DATATYPE_CONTACTS, "2:1", "{7}12");
  FOLDER_INFO calendar = Folder(DATATYPE_CALENDAR, "2:2", "0");
  FOLDER_INFO mail = Folder(DATATYPE_EMAIL, "2:3", "{9}4");
  SERVER_ID item = {"2:1:17"};
};

TEST_F(GeneratorItems, EstimateNamesEachFolderThatTakesPart) {
  calendar.options.calendar.filterType = 4;
  mail.options.email.filterType = 2;
  FOLDER_INFO* folders[] = {&contacts, &calendar, &mail};
  Expect(generator.GetItemEstimate(folders, 3), "estimate-three-folders");
}

TEST_F(GeneratorItems, EstimateHasThePageOfEstimatesEverywhere) {
  FOLDER_INFO* folders[] = {&contacts};
  EXPECT_EQ(OutlineOf(generator.GetItemEstimate(folders, 1)),
            "GetItemEstimate@6(Collections@6(Collection@6(Class@6=\"Contacts\" CollectionId@6=\"2:1\""
            " A:FilterType@6=\"0\" A:SyncKey@6=\"{7}12\")))");
}

TEST_F(GeneratorItems, EstimateLeavesOutFoldersThatTakeNoPartAndGaps) {
  contacts.selected = 0;
  mail.selected = 2;
  FOLDER_INFO* folders[] = {&contacts, nullptr, &mail};
  EXPECT_EQ(OutlineOf(generator.GetItemEstimate(folders, 3)),
            "GetItemEstimate@6(Collections@6(Collection@6(Class@6=\"Email\" CollectionId@6=\"2:3\""
            " A:FilterType@6=\"0\" A:SyncKey@6=\"{9}4\")))");
}

TEST_F(GeneratorItems, EstimateOfNoFolderHasEmptyCollections) {
  contacts.selected = 0;
  FOLDER_INFO* folders[] = {&contacts};
  EXPECT_EQ(OutlineOf(generator.GetItemEstimate(folders, 1)), "GetItemEstimate@6(Collections@6)");
  EXPECT_EQ(OutlineOf(generator.GetItemEstimate(nullptr, 0)), "GetItemEstimate@6(Collections@6)");
  EXPECT_EQ(InHex(Written(generator.GetItemEstimate(nullptr, 0))), "03 01 6A 00 00 06 45 07 01");
}

TEST_F(GeneratorItems, EstimateOfAnUnknownClassHasNeitherClassNorFilter) {
  contacts.dataType = static_cast<DATATYPE>(3);
  FOLDER_INFO* folders[] = {&contacts};
  EXPECT_EQ(OutlineOf(generator.GetItemEstimate(folders, 1)),
            "GetItemEstimate@6(Collections@6(Collection@6(CollectionId@6=\"2:1\" A:SyncKey@6=\"{7}12\")))");
}

TEST_F(GeneratorItems, EstimateReadsNoFurtherThanTheEndOfAFullField) {
  Fill(contacts.folder.serverId.text, std::string(68, 'i'));
  Fill(contacts.syncKey.text, std::string(68, 'k'));
  FOLDER_INFO* folders[] = {&contacts};
  EXPECT_EQ(OutlineOf(generator.GetItemEstimate(folders, 1)),
            "GetItemEstimate@6(Collections@6(Collection@6(Class@6=\"Contacts\" CollectionId@6=\"" +
                std::string(68, 'i') + "\" A:FilterType@6=\"0\" A:SyncKey@6=\"" + std::string(68, 'k') +
                "\")))");
}

TEST_F(GeneratorItems, EstimateHasNoNamespace) {
  sml_element* const request = generator.GetItemEstimate(nullptr, 0);
  EXPECT_EQ(SE_GetNumberOfAttributes(request), 0);
  SE_Destroy(request);
}

TEST_F(GeneratorItems, EstimateVersionStandsApart) {
  EXPECT_EQ(OutlineOf(generator.EstimateVersion()), "Version=\"2.0\"");
}

TEST_F(GeneratorItems, MovesRunInStep) {
  const SERVER_ID items[] = {{"5:1"}, {"8:20"}};
  const FOLDER_ID sources[] = {{"5"}, {"8"}};
  const FOLDER_ID destinations[] = {{"6"}, {"9"}};
  Expect(generator.MoveItems(items, sources, destinations, 2), "moveitems-two");
}

TEST_F(GeneratorItems, MoveOfNothingIsEmpty) {
  EXPECT_EQ(OutlineOf(generator.MoveItems(nullptr, nullptr, nullptr, 0)), "Moves@5");
  EXPECT_EQ(InHex(Written(generator.MoveItems(nullptr, nullptr, nullptr, 0))), "03 01 6A 00 00 05 05");
}

TEST_F(GeneratorItems, MoveWritesIdsInTheirTextForm) {
  const SERVER_ID items[] = {{""}, {}};
  SERVER_ID full = {};
  Fill(full.text, std::string(52, 'i'));
  const FOLDER_ID nothing = {};
  FOLDER_ID fullFolder = {};
  Fill(fullFolder.text, std::string(68, 'f'));
  EXPECT_EQ(OutlineOf(generator.MoveItems(items, &nothing, &fullFolder, 1)),
            "Moves@5(Move@5(SrcMsgId@5=\"0\" SrcFldId@5=\"\" DstFldId@5=\"" + std::string(68, 'f') + "\"))");
  EXPECT_EQ(OutlineOf(generator.MoveItems(&full, &nothing, &nothing, 1)),
            "Moves@5(Move@5(SrcMsgId@5=\"" + std::string(48, 'i') + "\" SrcFldId@5=\"\" DstFldId@5=\"\"))");
}

TEST_F(GeneratorItems, FetchOfAContactHasNoFilter) {
  EXPECT_EQ(OutlineOf(generator.Fetch(&contacts, item)),
            "Sync(Collections(Collection(Class=\"Contacts\" SyncKey=\"{7}12\" CollectionId=\"2:1\""
            " DeletesAsMoves GetChanges Options(Truncation=\"4\") Commands(Fetch(ServerId=\"2:1:17\")))))");
  Expect(generator.Fetch(&contacts, item), "fetch-contact");
}

TEST_F(GeneratorItems, FetchOfAMailFiltersBeforeItTruncates) {
  mail.options.email.filterType = 3;
  Expect(generator.Fetch(&mail, item), "fetch-mail");
}

TEST_F(GeneratorItems, FetchOfAnEventFilters) {
  calendar.options.calendar.filterType = 6;
  calendar.truncation = -1;
  EXPECT_EQ(OutlineOf(generator.Fetch(&calendar, item)),
            "Sync(Collections(Collection(Class=\"Calendar\" SyncKey=\"0\" CollectionId=\"2:2\""
            " DeletesAsMoves GetChanges Options(FilterType=\"6\" Truncation=\"-1\")"
            " Commands(Fetch(ServerId=\"2:1:17\")))))");
  Expect(generator.Fetch(&calendar, item), "fetch-event");
}

TEST_F(GeneratorItems, FetchAsksForMovesAndChangesInEverySyncMode) {
  const std::string normal = OutlineOf(generator.Fetch(&contacts, item));
  for (const INT32 mode : {1, 2}) {
    contacts.syncMode = mode;
    EXPECT_EQ(OutlineOf(generator.Fetch(&contacts, item)), normal);
  }
}

TEST_F(GeneratorItems, FetchAsksStorageForNothing) {
  contacts.notifyGuid = 1;
  AS_CONTACT_T local = {};
  HandOut(AS_CHANGE_ADD, "", 1, &local);
  SE_Destroy(generator.Fetch(&contacts, item));
  EXPECT_TRUE(store.Calls().empty());
}

TEST_F(GeneratorItems, FetchFromNoFolderIsNoRequest) { EXPECT_EQ(generator.Fetch(nullptr, item), nullptr); }

TEST_F(GeneratorItems, MeetingResponseCarriesTheAnswerAsANumber) {
  FOLDER_ID collection = {"5"};
  Expect(generator.MeetingResponse(item, collection, AS_MEETING_RESPONSE_DECLINE), "meetingresponse-decline");
  struct {
    AS_MEETING_RESPONSE_ENUM_T response;
    const char* text;
  } const rows[] = {{AS_MEETING_RESPONSE_ACCEPT, "1"},
                    {AS_MEETING_RESPONSE_TENTATIVE, "2"},
                    {AS_MEETING_RESPONSE_DECLINE, "3"},
                    {static_cast<AS_MEETING_RESPONSE_ENUM_T>(-7), "-7"}};
  for (const auto& row : rows) {
    EXPECT_EQ(OutlineOf(generator.MeetingResponse(item, collection, row.response)),
              std::string("MeetingResponse@8(Request@8(UserResponse@8=\"") + row.text +
                  "\" CollectionId@8=\"5\" ReqId@8=\"2:1:17\"))");
  }
}

TEST_F(GeneratorItems, MeetingResponseWritesIdsInTheirTextForm) {
  EXPECT_EQ(OutlineOf(generator.MeetingResponse({}, {}, AS_MEETING_RESPONSE_ACCEPT)),
            "MeetingResponse@8(Request@8(UserResponse@8=\"1\" CollectionId@8=\"\" ReqId@8=\"0\"))");
}

TEST_F(GeneratorItems, MovesAndMeetingResponsesNameTheirNamespace) {
  sml_element* const moves = generator.MoveItems(nullptr, nullptr, nullptr, 0);
  sml_element* const response = generator.MeetingResponse({}, {}, AS_MEETING_RESPONSE_ACCEPT);
  EXPECT_STREQ(SE_GetNthAttributeName(moves, 0), "xmlns");
  EXPECT_STREQ(SE_GetNthAttributeValue(moves, 0), "Move:");
  EXPECT_STREQ(SE_GetNthAttributeName(response, 0), "xmlns");
  EXPECT_STREQ(SE_GetNthAttributeValue(response, 0), "MeetingResponse:");
  SE_Destroy(moves);
  SE_Destroy(response);
}

TEST_F(GeneratorItems, FetchAndMeetingResponseAreTraced) {
  LogSpy spy;
  Log::SetLevel(AS_LOG_SOURCE_GENERATOR, AS_LOG_LEVEL_TRACE, &spy);
  SE_Destroy(generator.Fetch(&contacts, item));
  SE_Destroy(generator.MeetingResponse({}, {}, AS_MEETING_RESPONSE_ACCEPT));
  SE_Destroy(generator.MoveItems(nullptr, nullptr, nullptr, 0));
  SE_Destroy(generator.GetItemEstimate(nullptr, 0));
  EXPECT_EQ(spy.Lines(),
            (std::vector<std::string>{"into Generator::Fetch", "into Generator::MeetingResponse"}));
  spy.Clear();
  Log::SetLevel(AS_LOG_SOURCE_GENERATOR, AS_LOG_LEVEL_DETAIL, &spy);
  SE_Destroy(generator.MeetingResponse({}, {}, AS_MEETING_RESPONSE_ACCEPT));
  EXPECT_TRUE(spy.Lines().empty());
  Log::SetLevel(AS_LOG_SOURCE_GENERATOR, AS_LOG_LEVEL_DETAIL, nullptr);
}

}  // namespace
}  // namespace airsync_test
