// The whole hierarchy as an array.
#include "ParserRig.h"

namespace airsync_test {
namespace {

class ParserHierarchy : public ParserRig {
 protected:
  ~ParserHierarchy() override { EXPECT_EQ(FailingMemory::LiveBlocks(), blocksBefore); }

  // The array stays for the test to release.
  SYNC_RESULT Get(sml_element* tree) {
    const SYNC_RESULT result = CatchAbort([&]() { parser.GetHierarchy(tree, folders, count); });
    if (result == 0) {
      SE_Destroy(tree);
    } else {
      parser.ForgetTrackedMemory();
    }
    return result;
  }

  BASE_FOLDER* folders = nullptr;
  int count = -1;
};

TEST_F(ParserHierarchy, ListsTheFoldersInTheServersOrder) {
  ASSERT_EQ(Get(ReadTree(GoldenDocument("gethierarchy-answer"))), 0U);
  ASSERT_EQ(count, 2);
  EXPECT_STREQ(folders[0].displayName, "Inbox");
  EXPECT_STREQ(folders[0].serverId.text, "5");
  EXPECT_STREQ(folders[0].parentId.text, "0");
  EXPECT_EQ(folders[0].type, 2);
  EXPECT_STREQ(folders[1].displayName, "Z\xC3\xBCrich");
  EXPECT_STREQ(folders[1].serverId.text, "20");
  EXPECT_STREQ(folders[1].parentId.text, "5");
  EXPECT_EQ(folders[1].type, 12);
  AdapterFree(folders);
}

TEST_F(ParserHierarchy, TakesIdsOf64BytesWholeAndNamesOf63) {
  const Node longTexts = {"Folder", Nodes{{"DisplayName", std::string(64, 'n')},
                                          {"ServerId", std::string(64, 's')},
                                          {"ParentId", std::string(64, 'p')}}};
  ASSERT_EQ(Get(Tree({"Folders", Nodes{longTexts}}, kFolderPage)), 0U);
  EXPECT_EQ(std::string(folders[0].displayName, 64), std::string(63, 'n') + '\0');
  EXPECT_EQ(std::string(folders[0].serverId.text, 68), std::string(64, 's') + std::string(4, '\0'));
  EXPECT_EQ(std::string(folders[0].parentId.text, 68), std::string(64, 'p') + std::string(4, '\0'));
  AdapterFree(folders);
}

TEST_F(ParserHierarchy, CutsLongerIdsTo64Bytes) {
  const Node longTexts = {
      "Folder", Nodes{{"ServerId", std::string(65, 's')}, {"ParentId", std::string(63, 'p') + "\xC3\xBC"}}};
  ASSERT_EQ(Get(Tree({"Folders", Nodes{longTexts}}, kFolderPage)), 0U);
  EXPECT_EQ(std::string(folders[0].serverId.text, 68), std::string(64, 's') + std::string(4, '\0'));
  EXPECT_EQ(folders[0].parentId.text, std::string(63, 'p')) << "a character is not split";
  AdapterFree(folders);
}

TEST_F(ParserHierarchy, HandsOutAnEmptyHierarchyAsABlockToo) {
  ASSERT_EQ(Get(Tree({"Folders"}, kFolderPage)), 0U);
  EXPECT_EQ(count, 0);
  ASSERT_NE(folders, nullptr);
  AdapterFree(folders);
}

TEST_F(ParserHierarchy, ClearsWhatAFolderDoesNotSay) {
  ASSERT_EQ(Get(Tree({"Folders", Nodes{{"Folder"}, {"Other"}, {"Folder", Nodes{{"Type"}}}}}, kFolderPage)),
            0U);
  ASSERT_EQ(count, 2);
  for (int i = 0; i < 2; ++i) {
    EXPECT_STREQ(folders[i].displayName, "");
    EXPECT_STREQ(folders[i].serverId.text, "");
    EXPECT_STREQ(folders[i].parentId.text, "");
    EXPECT_EQ(folders[i].type, 0);
  }
  AdapterFree(folders);
}

TEST_F(ParserHierarchy, DoesNotTestTheRoot) {
  ASSERT_EQ(Get(Tree({"AnyName", Nodes{{"Folder", Nodes{{"ServerId", "1"}}}}}, kFolderPage)), 0U);
  EXPECT_EQ(count, 1);
  AdapterFree(folders);
}

// On that page a folder is one of a notification: there is none to tell storage of.
TEST_F(ParserHierarchy, TellsStorageNothingOfNotificationFolders) {
  EXPECT_EQ(Sync(ParserRig::Answer({})), 0U);
  store.ClearCalls();
  EXPECT_EQ(Get(Tree({"Folders", Nodes{{"Folder", Nodes{{"ServerId", "2:1"}}}}}, 3)), 0x80010011U);
  EXPECT_EQ(Sync(ParserRig::Answer({})), 0U);
  store.ClearCalls();
  EXPECT_EQ(Get(Tree({"Folders", Nodes{{"Folder", Nodes{{"Status", "1"}}}}}, 3)), 0U);
  EXPECT_TRUE(store.Calls().empty());
  AdapterFree(folders);
}

TEST_F(ParserHierarchy, RefusesFoldersOfAnotherPage) {
  for (const int page : {0, 2, 6, 8}) {
    sml_element* const tree =
        Tree({"Folders", Nodes{{"Folder", Nodes{{"ServerId", "1"}}}}}, static_cast<UINT8>(page));
    EXPECT_EQ(Get(tree), 0x8001000bU);
    EXPECT_EQ(folders, nullptr);
    EXPECT_EQ(count, -1);
  }
}

TEST_F(ParserHierarchy, EndsWithoutMemoryForTheArray) {
  for (const std::size_t k : {1U, 2U}) {
    sml_element* const tree = Tree({"Folders", Nodes{{"Folder"}}}, kFolderPage);
    FailingMemory::FailAt(k);
    EXPECT_EQ(Get(tree), 0x8001000dU);
    EXPECT_EQ(folders, nullptr);
  }
}

TEST_F(ParserHierarchy, TakesAStrayFolderOfAnotherResponseForNothing) {
  ASSERT_EQ(Get(Tree({"Folders", Nodes{{"Folder"}}}, kFolderPage)), 0U);
  sml_element* const stray = Tree({"Folder", Nodes{{"ServerId", "1"}}}, kFolderPage);
  parser.ProcessHierarchyFolder(stray);
  SE_Destroy(stray);
  EXPECT_STREQ(folders[0].serverId.text, "");
  AdapterFree(folders);
}

}  // namespace
}  // namespace airsync_test
