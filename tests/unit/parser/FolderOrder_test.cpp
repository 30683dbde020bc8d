// The order in which added folders are reported: those that every account has at once, the others by their
// ids, each after the parent that waits as well.
#include <cstdio>

#include "ParserRig.h"
#include "support/Memory.h"

namespace airsync_test {
namespace {

struct Folder {
  std::string id;
  std::string parent = "0";
  std::string type = "12";
};

// Keeps the ids in the order in which they were reported.
class OrderStore : public RecordingStore {
 public:
  std::vector<std::string> order;

  SYNC_RESULT UpdateFolder(const BASE_FOLDER* folder, int operation) override {
    EXPECT_EQ(operation, 0);
    order.emplace_back(folder->serverId.text);
    return 0;
  }
};

class ParserFolderOrder : public ParserRig {
 protected:
  SYNC_RESULT Parse(sml_element* tree) {
    orders.order.clear();
    return Run(tree, [this](sml_element* root) { parser.FolderSync(root, &orders, key); });
  }

  static sml_element* TreeOf(const std::vector<Folder>& folders) {
    Nodes changes;
    for (const Folder& folder : folders) {
      changes.push_back(
          {"Add", Nodes{{"ServerId", folder.id}, {"ParentId", folder.parent}, {"Type", folder.type}}});
    }
    return Tree({"FolderSync", Nodes{{"Status", "1"}, {"Changes", changes}}}, kFolderPage);
  }

  Lines Order(const std::vector<Folder>& folders) {
    EXPECT_EQ(Parse(TreeOf(folders)), 0U);
    return orders.order;
  }

  OrderStore orders;
};

TEST_F(ParserFolderOrder, ReportsDefaultFoldersAtOnceInTheServersOrder) {
  EXPECT_EQ(Order({{"z", "0", "2"},
                   {"a", "0", "12"},
                   {"y", "0", "3"},
                   {"x", "0", "4"},
                   {"w", "0", "5"},
                   {"v", "0", "6"},
                   {"u", "0", "8"},
                   {"t", "0", "9"}}),
            (Lines{"z", "y", "x", "w", "v", "u", "t", "a"}));
}

TEST_F(ParserFolderOrder, LetsEveryOtherTypeWait) {
  for (const char* const type : {"0", "1", "7", "10", "11", "12", "13", "18", "-2", "", "two"}) {
    EXPECT_EQ(Order({{"a", "0", type}, {"b", "0", "2"}}), (Lines{"b", "a"})) << type;
  }
}

TEST_F(ParserFolderOrder, ReportsUnrelatedFoldersInTheByteOrderOfTheirIds) {
  EXPECT_EQ(Order({{"b"}, {"\xC3\xA9"}, {"9"}, {"B"}, {"10"}, {"a"}, {"1"}}),
            (Lines{"1", "10", "9", "B", "a", "b", "\xC3\xA9"}));
}

TEST_F(ParserFolderOrder, ReportsAParentFirst) { EXPECT_EQ(Order({{"1", "2"}, {"2"}}), (Lines{"2", "1"})); }

TEST_F(ParserFolderOrder, ReportsAllAncestorsFirst) {
  EXPECT_EQ(Order({{"1", "5"}, {"2"}, {"3", "4"}, {"4"}, {"5", "3"}}), (Lines{"4", "3", "5", "1", "2"}));
}

TEST_F(ParserFolderOrder, DoesNotWaitForAParentThatIsNotAmongThem) {
  EXPECT_EQ(Order({{"2"}, {"1", "9"}}), (Lines{"1", "2"}));
  EXPECT_EQ(Order({{"1", "9"}, {"9", "0", "2"}}), (Lines{"9", "1"}));
}

TEST_F(ParserFolderOrder, TakesParentZeroForTheRootEvenWhereAFolderHasThatId) {
  EXPECT_EQ(Order({{"!", "0"}, {"0", "9"}}), (Lines{"!", "0"}));
}

TEST_F(ParserFolderOrder, EndsAtACircleOfParents) {
  EXPECT_EQ(Order({{"1", "1"}}), Lines{"1"});
  EXPECT_EQ(Order({{"1", "2"}, {"2", "1"}}), (Lines{"2", "1"}));
  EXPECT_EQ(Order({{"1", "2"}, {"2", "3"}, {"3", "1"}, {"4", "3"}}), (Lines{"3", "2", "1", "4"}));
}

TEST_F(ParserFolderOrder, ReportsOnlyTheLastOfFoldersWithOneId) {
  RecordingStore recording;
  const Node answer = {
      "FolderSync",
      Nodes{{"Status", "1"},
            {"Changes", Nodes{{"Add", Nodes{{"ServerId", "1"}, {"DisplayName", "first"}, {"Type", "12"}}},
                              {"Add", Nodes{{"ServerId", "1"}, {"DisplayName", "last"}, {"Type", "12"}}}}}}};
  EXPECT_EQ(
      Run(Tree(answer, kFolderPage), [&](sml_element* root) { parser.FolderSync(root, &recording, key); }),
      0U);
  EXPECT_EQ(recording.Lines(), Lines{"UpdateFolder 1 in  type=12 last operation=0"});
}

TEST_F(ParserFolderOrder, ReportsFoldersWithoutIdParentOrType) {
  const Node answer = {"FolderSync", Nodes{{"Status", "1"}, {"Changes", Nodes{{"Add"}, {"Other"}}}}};
  EXPECT_EQ(Parse(Tree(answer, kFolderPage)), 0U);
  EXPECT_EQ(orders.order, Lines{""});
  EXPECT_EQ(Order({{"", ""}, {"a", ""}}), (Lines{"", "a"}));
}

TEST_F(ParserFolderOrder, ReportsWhatHasMoreThanOneParentElementByTheFirst) {
  EXPECT_EQ(Order({{"1", "2"}, {"2", "3"}, {"3", "missing"}}), (Lines{"3", "2", "1"}));
}

// Deep enough to use up any stack, if each folder took a frame of it.
TEST_F(ParserFolderOrder, WalksAChainOf60000FoldersWithoutRecursion) {
  const int count = 60000;
  sml_element* const root = Tree({"FolderSync", Nodes{{"Status", "1"}, {"Changes"}}}, kFolderPage);
  sml_element* const changes = SE_GetChild(root, "Changes");
  // Put together by hand: growing the array one by one would take longer than everything else.
  changes->pChildren = static_cast<sml_element**>(AdapterMalloc(count * sizeof(sml_element*)));
  for (int i = 0; i < count; ++i) {
    char id[8];
    char parent[8];
    std::snprintf(id, sizeof id, "%05d", i);
    std::snprintf(parent, sizeof parent, "%05d", i + 1);
    changes->pChildren[i] = Tree({"Add", Nodes{{"ServerId", id}, {"ParentId", parent}}}, kFolderPage);
    changes->pChildren[i]->pParent = changes;
  }
  changes->NumberOfChildren = count;
  EXPECT_EQ(Parse(root), 0U);
  ASSERT_EQ(orders.order.size(), 60000U);
  for (int i = 0; i < count; ++i) {
    char id[8];
    std::snprintf(id, sizeof id, "%05d", count - 1 - i);
    ASSERT_EQ(orders.order[static_cast<std::size_t>(i)], id);
  }
}

// The map of waiting folders is filled when the memory for the walk is asked for.
TEST_F(ParserFolderOrder, BeginsAnewAfterAnAbort) {
  for (const std::size_t k : {1U, 2U}) {
    sml_element* const tree = TreeOf({{"1"}, {"2", "0", "2"}});
    FailingMemory::FailAt(k);
    EXPECT_EQ(Parse(tree), 0x8001000dU) << k;
    EXPECT_EQ(orders.order, Lines{"2"}) << "what was reported stays reported";
    EXPECT_EQ(Order({{"3"}}), Lines{"3"});
  }
}

}  // namespace
}  // namespace airsync_test
