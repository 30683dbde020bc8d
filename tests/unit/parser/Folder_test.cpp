// The answers of the folder commands, but for the order of added folders (FolderOrder_test.cpp).
#include <cstring>

#include "ParserRig.h"

namespace airsync_test {
namespace {

class ParserFolder : public ParserRig {
 protected:
  static Node Answer(const std::string& root, const Nodes& children) { return {root, children}; }

  static Node Changes(const Nodes& changes) {
    return {"FolderSync", Nodes{{"Status", "1"}, {"SyncKey", "{1}4"}, {"Changes", changes}}};
  }

  SYNC_RESULT Create(sml_element* tree) {
    return Run(tree, [this](sml_element* root) { parser.FolderCreate(root, &record, key); });
  }
  SYNC_RESULT Delete(sml_element* tree) {
    return Run(tree, [this](sml_element* root) { parser.FolderDelete(root, key); });
  }
  SYNC_RESULT Update(sml_element* tree) {
    return Run(tree, [this](sml_element* root) { parser.FolderUpdate(root, key); });
  }

  // The folder of the only call that FolderSync makes for this change.
  BASE_FOLDER Reported(const Node& change) {
    store.ClearCalls();
    EXPECT_EQ(FolderSync(Changes({change})), 0U);
    EXPECT_EQ(store.Calls().size(), 1U);
    return store.Calls().empty() ? BASE_FOLDER() : *store.Calls()[0].folderRecord;
  }

  BASE_FOLDER record = {};
};

TEST_F(ParserFolder, ReportsDeletionsThenAdditionsThenUpdates) {
  EXPECT_EQ(FolderSyncTree(ReadTree(GoldenDocument("foldersync-answer-mixed"))), 0U);
  EXPECT_EQ(store.Lines(),
            (Lines{"UpdateFolder 8 in  type=0  operation=1", "UpdateFolder 5 in 0 type=2 Inbox operation=0",
                   "UpdateFolder 30 in 0 type=14 Orte operation=0",
                   "UpdateFolder 20 in 30 type=14 Z\xC3\xBCrich operation=0",
                   "UpdateFolder 9 in 0 type=12 Vereine operation=2"}));
  EXPECT_STREQ(key.text, "{1}4");
}

TEST_F(ParserFolder, HandsOutTheKeyWhereNothingHasChanged) {
  EXPECT_EQ(FolderSync(Answer("FolderSync", {{"SyncKey", "{1}5"}, {"Status", "1"}})), 0U);
  EXPECT_STREQ(key.text, "{1}5");
  EXPECT_TRUE(store.Calls().empty());
}

TEST_F(ParserFolder, LeavesTheKeyWhereTheAnswerHasNone) {
  Fill(key.text, "{1}4");
  EXPECT_EQ(FolderSync(Answer("FolderSync", {{"Status", "1"}})), 0U);
  EXPECT_STREQ(key.text, "{1}4");
  EXPECT_EQ(Delete(Tree(Answer("DeleteCmd", {{"Status", "1"}}), kFolderPage)), 0U);
  EXPECT_STREQ(key.text, "{1}4");
}

TEST_F(ParserFolder, KeepsWhatItReportedBeforeAnAbortAndHandsOutNoKey) {
  Fill(key.text, "{1}3");
  sml_element* const tree = Tree(
      Changes({{"Update", Nodes{{"ServerId", "2"}}}, {"Delete", Nodes{{"ServerId", "1"}}}}), kFolderPage);
  SE_GetChild(tree, "Changes/Update")->CodePage = 4;
  EXPECT_EQ(FolderSyncTree(tree), 0x8001000bU);
  EXPECT_EQ(store.Lines(), Lines{"UpdateFolder 1 in  type=0  operation=1"});
  EXPECT_STREQ(key.text, "{1}3");
}

TEST_F(ParserFolder, CutsTheKeyToItsField) {
  EXPECT_EQ(
      FolderSync(Answer("FolderSync", {{"Status", "1"}, {"SyncKey", std::string(66, 'k') + "\xC3\xA9"}})),
      0U);
  EXPECT_EQ(std::string(key.text, sizeof key.text), std::string(66, 'k') + std::string(2, '\0'));
}

TEST_F(ParserFolder, RaisesEachStatusThatIsNotOneAndLeavesTheKey) {
  struct {
    Node status;
    SYNC_RESULT result;
  } const rows[] = {{{"Status", "9"}, 0x80010109U},  {{"Status", "0"}, 0x80010100U},
                    {{"Status", ""}, 0x80010100U},   {{"Status"}, 0x80010100U},
                    {{"Status", "-1"}, 0xffffffffU}, {{"Status", "no"}, 0x80010100U}};
  for (const auto& row : rows) {
    const Nodes children = {{"SyncKey", "new"},
                            {"ServerId", "new"},
                            row.status,
                            {"Changes", Nodes{{"Delete", Nodes{{"ServerId", "1"}}}}}};
    EXPECT_EQ(FolderSync(Answer("FolderSync", children)), row.result);
    EXPECT_EQ(Create(Tree(Answer("CreateCmd", children), kFolderPage)), row.result);
    EXPECT_EQ(Delete(Tree(Answer("DeleteCmd", children), kFolderPage)), row.result);
    EXPECT_EQ(Update(Tree(Answer("UpdateCmd", children), kFolderPage)), row.result);
  }
  EXPECT_STREQ(key.text, "");
  EXPECT_STREQ(record.serverId.text, "");
  EXPECT_TRUE(store.Calls().empty());
}

TEST_F(ParserFolder, KeepsThePreviousStatusWhereTheAnswerHasNone) {
  EXPECT_EQ(FolderSync(Answer("FolderSync", {})), 0x80010100U) << "none yet: 0";
  EXPECT_EQ(FolderSync(Answer("FolderSync", {{"Status", "1"}})), 0U);
  EXPECT_EQ(FolderSync(Answer("FolderSync", {})), 0U);
  EXPECT_EQ(FolderSync(Answer("FolderSync", {{"Status", "9"}})), 0x80010109U);
  EXPECT_EQ(FolderSync(Answer("FolderSync", {})), 0x80010109U);
}

TEST_F(ParserFolder, CutsTextsToTheirFieldsWithoutSplittingACharacter) {
  const std::string umlaut = "\xC3\xBC";
  for (const char* const kind : {"Add", "Update"}) {
    const BASE_FOLDER told = Reported({kind, Nodes{{"ServerId", std::string(66, 's') + umlaut},
                                                   {"ParentId", std::string(100, 'p')},
                                                   {"DisplayName", std::string(62, 'n') + umlaut},
                                                   {"Type", "12"}}});
    EXPECT_EQ(told.serverId.text, std::string(66, 's'));
    EXPECT_EQ(told.parentId.text, std::string(67, 'p'));
    EXPECT_EQ(told.displayName, std::string(62, 'n'));
    EXPECT_EQ(told.type, 12);
    EXPECT_EQ(Reported({kind, Nodes{{"DisplayName", std::string(70, 'n')}}}).displayName,
              std::string(63, 'n'));
    EXPECT_EQ(Reported({kind, Nodes{{"DisplayName", std::string(63, 'n')}}}).displayName,
              std::string(63, 'n'));
  }
}

TEST_F(ParserFolder, ClearsTheRecordForEachFolder) {
  const Node full = {"Add",
                     Nodes{{"ServerId", "1"}, {"ParentId", "2"}, {"DisplayName", "n"}, {"Type", "12"}}};
  for (const Node& bare : {Node("Update", Nodes{}), Node("Update", Nodes{{"ServerId"}, {"Type"}}),
                           Node("Delete", Nodes{{"ParentId", "not read"}, {"Type", "1"}})}) {
    Reported(full);
    const BASE_FOLDER told = Reported(bare);
    const BASE_FOLDER nothing = {};
    EXPECT_EQ(std::memcmp(&told, &nothing, sizeof nothing), 0);
  }
}

TEST_F(ParserFolder, ReadsTheCountAndDoesNotBelieveIt) {
  EXPECT_EQ(FolderSync(Changes({{"Count", "99999"}, {"Delete", Nodes{{"ServerId", "1"}}}})), 0U);
  EXPECT_EQ(store.Calls().size(), 1U);
}

TEST_F(ParserFolder, GivesACreatedFolderItsId) {
  Fill(record.displayName, "Orte");
  Fill(record.serverId.text, "stale");
  record.type = 12;
  EXPECT_EQ(Create(ReadTree(GoldenDocument("foldercreate-answer"))), 0U);
  EXPECT_EQ(std::string(record.serverId.text, sizeof record.serverId.text), "31" + std::string(66, '\0'));
  EXPECT_STREQ(record.displayName, "Orte");
  EXPECT_EQ(record.type, 12);
  EXPECT_STREQ(key.text, "{1}5");
}

TEST_F(ParserFolder, GivesACreatedFolderNoEarlierId) {
  EXPECT_EQ(Create(ReadTree(GoldenDocument("foldercreate-answer"))), 0U);
  EXPECT_EQ(Create(Tree(Answer("CreateCmd", {{"Status", "1"}, {"ServerId"}}), kFolderPage)), 0U);
  EXPECT_STREQ(record.serverId.text, "");
  EXPECT_EQ(Create(ReadTree(GoldenDocument("foldercreate-answer"))), 0U);
  EXPECT_EQ(Create(Tree(Answer("CreateCmd", {{"Status", "1"}}), kFolderPage)), 0U);
  EXPECT_STREQ(record.serverId.text, "");
}

TEST_F(ParserFolder, HandsOutTheKeyOfADeletion) {
  EXPECT_EQ(Delete(ReadTree(GoldenDocument("folderdelete-answer"))), 0U);
  EXPECT_STREQ(key.text, "{1}6");
}

TEST_F(ParserFolder, HandsOutTheKeyOfAnUpdateThatWasNotRefused) {
  EXPECT_EQ(Update(ReadTree(GoldenDocument("folderupdate-answer-refused"))), 0x80010104U);
  EXPECT_STREQ(key.text, "");
  EXPECT_EQ(Update(Tree(Answer("UpdateCmd", {{"Status", "1"}, {"SyncKey", "{1}7"}}), kFolderPage)), 0U);
  EXPECT_STREQ(key.text, "{1}7");
}

TEST_F(ParserFolder, RefusesAnAnswerOnAnotherPage) {
  EXPECT_EQ(FolderSyncTree(Tree({"FolderSync", Nodes{{"Status", "1"}}}, 2)), 0x8001000bU);
  EXPECT_EQ(Delete(Tree({"DeleteCmd", Nodes{{"Status", "1"}}}, 4)), 0x8001000bU);
}

}  // namespace
}  // namespace airsync_test
