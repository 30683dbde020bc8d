// The answer to an estimate request; and elements of other answers where no folder is being synchronised.
#include "ParserRig.h"

namespace airsync_test {
namespace {

class ParserEstimate : public ParserRig {
 protected:
  ParserEstimate() {
    Fill(second.folder.serverId.text, "2:2");
    second.handle = 43;
  }

  static Node Response(const Node& status, const Nodes& collection) {
    return {"Response", Nodes{status, {"Collection", collection}}};
  }

  SYNC_RESULT EstimateTree(sml_element* tree) {
    store.ClearCalls();
    return Run(tree, [this](sml_element* root) { parser.GetItemEstimate(root, &store, folders, 3); });
  }
  SYNC_RESULT Estimate(const Nodes& responses) {
    return EstimateTree(Tree({"GetItemEstimate", responses}, 6));
  }

  FOLDER_INFO second = FolderInUse();
  FOLDER_INFO* folders[3] = {nullptr, &folder, &second};
};

TEST_F(ParserEstimate, ReachesStorageFolderByFolder) {
  EXPECT_EQ(Estimate({Response({"Status", "1"}, {{"Estimate", "7"}, {"CollectionId", "2:2"}}),
                      Response({"Status", "1"}, {{"CollectionId", "2:1"}, {"Estimate", "0"}})}),
            0U);
  EXPECT_EQ(store.Lines(), (Lines{"SetItemEstimate 43 number=7 result=0x00000000",
                                  "SetItemEstimate 42 number=0 result=0x00000000"}));
}

TEST_F(ParserEstimate, OfAFailedFolderIsReportedTwiceWhereThereIsANumber) {
  EXPECT_EQ(Estimate({Response({"Status", "2"}, {{"CollectionId", "2:1"}, {"Estimate", "7"}})}), 0U);
  EXPECT_EQ(store.Lines(), (Lines{"SetItemEstimate 42 number=0 result=0x80010702",
                                  "SetItemEstimate 42 number=7 result=0x80010702"}));
}

TEST_F(ParserEstimate, OfAFailedFolderIsReportedOnceWithoutANumber) {
  EXPECT_EQ(Estimate({Response({"Status", "3"}, {{"CollectionId", "2:1"}})}), 0U);
  EXPECT_EQ(store.Lines(), (Lines{"SetItemEstimate 42 number=0 result=0x80010703"}));
}

TEST_F(ParserEstimate, OfASuccessWithoutANumberIsNotReported) {
  EXPECT_EQ(Estimate({Response({"Status", "1"}, {{"CollectionId", "2:1"}})}), 0U);
  EXPECT_TRUE(store.Calls().empty());
}

TEST_F(ParserEstimate, CarriesAnyStatus) {
  struct {
    Node status;
    const char* result;
  } const rows[] = {{{"Status", "4"}, "0x80010704"},
                    {{"Status", "0"}, "0x80010700"},
                    {{"Status"}, "0x80010700"},
                    {{"Status", "x"}, "0x80010700"},
                    {{"Status", "-1"}, "0xffffffff"}};
  for (const auto& row : rows) {
    EXPECT_EQ(Estimate({Response(row.status, {{"CollectionId", "2:1"}})}), 0U);
    EXPECT_EQ(store.Lines(), Lines{std::string("SetItemEstimate 42 number=0 result=") + row.result});
  }
}

TEST_F(ParserEstimate, ReadsTheStatusBeforeTheCollectionWhateverTheOrder) {
  EXPECT_EQ(Estimate({{"Response", Nodes{{"Collection", Nodes{{"Estimate", "7"}, {"CollectionId", "2:1"}}},
                                         {"Status", "2"}}}}),
            0U);
  EXPECT_EQ(store.Lines(), (Lines{"SetItemEstimate 42 number=0 result=0x80010702",
                                  "SetItemEstimate 42 number=7 result=0x80010702"}));
}

TEST_F(ParserEstimate, WithoutAStatusKeepsThePreviousOneOfThisAnswer) {
  EXPECT_EQ(Estimate({Response({"Status", "2"}, {{"CollectionId", "2:1"}}),
                      {"Response", Nodes{{"Collection", Nodes{{"CollectionId", "2:2"}}}}}}),
            0U);
  EXPECT_EQ(store.Lines(), (Lines{"SetItemEstimate 42 number=0 result=0x80010702",
                                  "SetItemEstimate 43 number=0 result=0x80010702"}));
  EXPECT_EQ(
      Estimate({{"Response", Nodes{{"Collection", Nodes{{"CollectionId", "2:2"}, {"Estimate", "1"}}}}}}), 0U);
  EXPECT_EQ(store.Lines(), (Lines{"SetItemEstimate 43 number=1 result=0x00000000"}));
}

TEST_F(ParserEstimate, NumbersMayBeMissingOrNone) {
  EXPECT_EQ(Estimate({Response({"Status", "1"}, {{"CollectionId", "2:1"}, {"Estimate"}}),
                      Response({"Status", "1"}, {{"CollectionId", "2:1"}, {"Estimate", "many"}}),
                      Response({"Status", "1"}, {{"CollectionId", "2:1"}, {"Estimate", "-3"}})}),
            0U);
  EXPECT_EQ(store.Lines(), (Lines{"SetItemEstimate 42 number=0 result=0x00000000",
                                  "SetItemEstimate 42 number=0 result=0x00000000",
                                  "SetItemEstimate 42 number=-3 result=0x00000000"}));
}

TEST_F(ParserEstimate, OfAFolderThatIsNotInTheListIsRefused) {
  for (const char* const id : {"2:3", "2:11", "2:", ""}) {
    EXPECT_EQ(Estimate({Response({"Status", "1"}, {{"CollectionId", id}, {"Estimate", "1"}})}), 0x80010011U);
    EXPECT_TRUE(store.Calls().empty());
  }
}

TEST_F(ParserEstimate, BeforeAnyFolderWasNamedIsIgnoredWithALine) {
  LogSpy spy;
  Log::SetLevel(AS_LOG_SOURCE_PARSER, AS_LOG_LEVEL_INFO, &spy);
  EXPECT_EQ(Estimate({Response({"Status", "1"}, {{"Estimate", "7"}})}), 0U);
  EXPECT_TRUE(store.Calls().empty());
  EXPECT_EQ(spy.Lines(), (Lines{"Estimate Status:|TRUE", "Estimate Status success",
                                "Ignored, no folder was named before: |Estimate"}));
  Log::SetLevel(AS_LOG_SOURCE_PARSER, AS_LOG_LEVEL_INFO, nullptr);
}

TEST_F(ParserEstimate, BeforeAnyFolderWasNamedIsIgnoredAlsoAfterASync) {
  EXPECT_EQ(Sync(Answer({})), 0U);
  EXPECT_EQ(Estimate({Response({"Status", "1"}, {{"Estimate", "7"}})}), 0U);
  EXPECT_TRUE(store.Calls().empty());
}

TEST_F(ParserEstimate, LogsStatusesAndTheClassThatItIgnores) {
  LogSpy spy;
  Log::SetLevel(AS_LOG_SOURCE_PARSER, AS_LOG_LEVEL_INFO, &spy);
  EXPECT_EQ(Estimate({Response({"Status"}, {{"CollectionId", "2:1"}, {"Class", "Nonsense"}})}), 0U);
  EXPECT_EQ(spy.Lines(), (Lines{"Estimate Status:|FALSE", "Estimate Status error", "Ignoring tag: |Class"}));
  Log::SetLevel(AS_LOG_SOURCE_PARSER, AS_LOG_LEVEL_INFO, nullptr);
}

// A server may put elements of page 0 into a Collection: they take that page as they are read.
TEST_F(ParserEstimate, WithElementsOfASyncIsRefused) {
  for (const char* const tag : {"Class", "CollectionId"}) {
    sml_element* const tree = Tree({"GetItemEstimate", Nodes{Response({"Status", "1"}, {{tag, "2:1"}})}}, 6);
    SE_Search(tree, tag)->CodePage = 0;
    EXPECT_EQ(EstimateTree(tree), 0x80010011U) << tag;
    EXPECT_TRUE(store.Calls().empty());
  }
}

// The list belongs to storage and may be gone by then; AddressSanitizer would tell.
TEST_F(ParserEstimate, LeavesNoFolderListForALaterSync) {
  for (const bool aborted : {false, true}) {
    {
      std::vector<FOLDER_INFO> records(1, FolderInUse());
      std::vector<FOLDER_INFO*> shortLived = {records.data()};
      const Node answer = {"GetItemEstimate",
                           Nodes{Response({"Status", "1"}, {{"CollectionId", aborted ? "?" : "2:1"}})}};
      EXPECT_EQ(Run(Tree(answer, 6),
                    [&](sml_element* root) { parser.GetItemEstimate(root, &store, shortLived.data(), 1); }),
                aborted ? 0x80010011U : 0U);
    }
    sml_element* const tree = Tree({"Sync", Nodes{{"Collections", Nodes{{"Collection", Nodes{}}}}}}, 0);
    sml_element* const id = Tree({"CollectionId", "2:1"}, 6);
    SE_AddChild(SE_Search(tree, "Collection"), id);
    id->CodePage = 6;
    EXPECT_EQ(SyncTree(tree), 0x80010011U);
  }
}

}  // namespace
}  // namespace airsync_test
