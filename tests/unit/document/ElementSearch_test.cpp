#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "document/Element.h"
#include "parser/Parser.h"
#include "support/Documents.h"
#include "support/FailingMemory.h"
#include "support/Memory.h"

namespace {

using namespace AIRSYNC_STACK;
using airsync_test::FailingMemory;
using airsync_test::Node;
using airsync_test::Outline;
using airsync_test::Tree;
using testing::ElementsAre;

class ElementSearch : public testing::Test {
 protected:
  void SetUp() override { FailingMemory::Reset(); }
  void TearDown() override { AdapterFreeAll(); }

  // Two collections: the first has no status, the second has one.
  sml_element* const tree_ = Tree(
      Node("Sync", {Node("Collections", {Node("Collection", {Node("SyncKey", "5")}),
                                         Node("Collection", {Node("Status", "1"), Node("SyncKey", "6")})}),
                    Node("Version", "2.0"), Node("Class")}),
      0);
};

typedef ElementSearch ElementSearchDeathTest;

TEST_F(ElementSearch, TheEmptyPathIsTheElementItself) { EXPECT_EQ(SE_GetChild(tree_, ""), tree_); }

TEST_F(ElementSearch, APathOfOneTagIsTheFirstSuchChild) {
  sml_element* const collections = SE_GetChild(tree_, "Collections");
  EXPECT_EQ(collections, SE_GetNthChild(tree_, 0));
  EXPECT_EQ(SE_GetChild(collections, "Collection"), SE_GetNthChild(collections, 0));
}

TEST_F(ElementSearch, APathDescends) {
  EXPECT_STREQ(SE_GetValue(SE_GetChild(tree_, "Collections/Collection/SyncKey")), "5");
}

TEST_F(ElementSearch, APathNeverGoesBack) {
  EXPECT_EQ(SE_GetChild(tree_, "Collections/Collection/Status"), nullptr);
}

TEST_F(ElementSearch, APathLooksAtDirectChildrenOnly) {
  EXPECT_EQ(SE_GetChild(tree_, "Collection"), nullptr);
  EXPECT_EQ(SE_GetChild(tree_, "Sync"), nullptr);
}

TEST_F(ElementSearch, TagsAreComparedExactly) {
  EXPECT_EQ(SE_GetChild(tree_, "version"), nullptr);
  EXPECT_EQ(SE_GetChild(tree_, "Vers"), nullptr);
  EXPECT_EQ(SE_GetChild(tree_, "Versions"), nullptr);
}

TEST_F(ElementSearch, APathMayEndWithASeparator) {
  EXPECT_EQ(SE_GetChild(tree_, "Version/"), SE_GetNthChild(tree_, 1));
}

TEST_F(ElementSearch, ASegmentHasAtMost103Characters) {
  const std::string longest(103, 'x');
  sml_element* const parent = SE_New("Sync", nullptr);
  sml_element* const child = SE_New(longest.c_str(), nullptr);
  SE_AddChild(parent, child);
  SE_AddChild(child, SE_New("Status", "1"));
  SE_AddChild(parent, SE_New(std::string(104, 'x').c_str(), nullptr));
  EXPECT_EQ(SE_GetChild(parent, longest.c_str()), child);
  EXPECT_STREQ(SE_GetValueOfChild(parent, (longest + "/Status").c_str()), "1");
  EXPECT_EQ(SE_GetChild(parent, std::string(104, 'x').c_str()), nullptr);
  EXPECT_EQ(SE_GetChild(parent, std::string(5000, 'x').c_str()), nullptr);
}

TEST_F(ElementSearch, TellsWhetherThereIsSuchAChild) {
  EXPECT_TRUE(SE_HasChild(tree_, "Version"));
  EXPECT_TRUE(SE_HasChild(tree_, ""));
  EXPECT_FALSE(SE_HasChild(tree_, "Collections/Status"));
}

TEST_F(ElementSearch, GivesAChildsValueOrNull) {
  EXPECT_STREQ(SE_GetValueOfChild(tree_, "Version"), "2.0");
  EXPECT_EQ(SE_GetValueOfChild(tree_, "Class"), nullptr) << "no value";
  EXPECT_EQ(SE_GetValueOfChild(tree_, "None"), nullptr) << "no child";
}

TEST_F(ElementSearch, GivesAChildsNumber) {
  EXPECT_EQ(SE_GetIntegerValueOfChild(tree_, "Collections/Collection/SyncKey"), 5U);
  EXPECT_EQ(SE_GetIntegerValueOfChild(tree_, "Version"), 2U);
}

TEST_F(ElementSearchDeathTest, ANumberThatIsMissingIsAMistake) {
  EXPECT_DEATH(SE_GetIntegerValueOfChild(tree_, "None"), "SE_GetIntegerValueOfChild.*`0'");
  EXPECT_DEATH(SE_GetIntegerValueOfChild(tree_, "Class"), "SE_GetIntegerValueOfChild.*`0'");
}

TEST_F(ElementSearch, CountsDirectChildrenOnly) {
  EXPECT_EQ(SE_CountChildren(tree_, "Collections"), 1);
  EXPECT_EQ(SE_CountChildren(tree_, "Collection"), 0);
  EXPECT_EQ(SE_CountChildren(SE_GetChild(tree_, "Collections"), "Collection"), 2);
  EXPECT_EQ(SE_CountChildren(tree_, "Collections/Collection"), 0) << "a tag, not a path";
  EXPECT_EQ(SE_CountChildren(tree_, ""), 0);
}

TEST_F(ElementSearch, FindsTheElementItselfFirst) { EXPECT_EQ(SE_Search(tree_, "Sync"), tree_); }

TEST_F(ElementSearch, FindsInDocumentOrderAtAnyDepth) {
  EXPECT_EQ(SE_Search(tree_, "SyncKey"), SE_GetChild(tree_, "Collections/Collection/SyncKey"));
  EXPECT_STREQ(SE_GetValue(SE_Search(tree_, "Status")), "1");
  EXPECT_EQ(SE_Search(tree_, "None"), nullptr);
}

TEST_F(ElementSearch, FindsATagWithAValue) {
  const sml_element* const second = SE_GetNthChild(SE_GetChild(tree_, "Collections"), 1);
  EXPECT_EQ(SE_Search(tree_, "SyncKey", "6"), SE_GetChild(second, "SyncKey"));
  EXPECT_EQ(SE_Search(tree_, "SyncKey", "7"), nullptr);
  EXPECT_EQ(SE_Search(tree_, "Status", "6"), nullptr);
}

TEST_F(ElementSearch, TakesAMissingValueAsEmpty) {
  const sml_element* const withoutText = SE_GetChild(tree_, "Class");
  EXPECT_EQ(SE_Search(tree_, "Class", ""), withoutText);
  EXPECT_EQ(SE_Search(tree_, "Class", nullptr), withoutText);
  EXPECT_EQ(SE_Search(tree_, "Class", "x"), nullptr);
  EXPECT_EQ(SE_Search(tree_, "Version", nullptr), nullptr);
}

TEST_F(ElementSearch, PassesElementsWithoutATag) {
  sml_element* const parent = SE_New(nullptr, nullptr);
  SE_AddChild(parent, SE_New(nullptr, "x"));
  SE_AddChild(parent, SE_New("Status", "1"));
  EXPECT_STREQ(SE_GetValueOfChild(parent, "Status"), "1");
  EXPECT_STREQ(SE_GetValue(SE_Search(parent, "Status")), "1");
  EXPECT_EQ(SE_CountChildren(parent, "Status"), 1);
}

TEST_F(ElementSearch, RemovesTheElementAtAPathAndClosesTheGap) {
  SE_RemoveChild(tree_, "Version");
  EXPECT_EQ(Outline(tree_),
            "Sync(Collections(Collection(SyncKey=\"5\") Collection(Status=\"1\" SyncKey=\"6\")) Class)");
  SE_RemoveChild(tree_, "Collections/Collection");
  EXPECT_EQ(Outline(tree_), "Sync(Collections(Collection(Status=\"1\" SyncKey=\"6\")) Class)");
  SE_RemoveChild(tree_, "Class");
  EXPECT_EQ(Outline(tree_), "Sync(Collections(Collection(Status=\"1\" SyncKey=\"6\")))");
}

TEST_F(ElementSearch, RemovingDestroysTheElementAndKeepsTheArray) {
  const std::size_t before = FailingMemory::LiveBlocks();
  FailingMemory::Record(true);
  SE_RemoveChild(tree_, "Version");
  // The element, its tag and its value, each with its node.
  EXPECT_EQ(before - FailingMemory::LiveBlocks(), 6U);
  EXPECT_EQ(FailingMemory::CallsAsText(), "free, free, free, free, free, free");
}

TEST_F(ElementSearch, RemovesAnElementByItsOwnEmptyPath) {
  SE_RemoveChild(SE_GetChild(tree_, "Collections"), "");
  EXPECT_EQ(Outline(tree_), "Sync(Version=\"2.0\" Class)");
}

TEST_F(ElementSearch, RemovesNothingWhereNothingIs) {
  const std::string before = Outline(tree_);
  SE_RemoveChild(tree_, "None");
  EXPECT_EQ(Outline(tree_), before);
}

TEST_F(ElementSearch, RoomMadeByRemovingIsUsedAgain) {
  SE_RemoveChild(tree_, "Collections");
  SE_AddChild(tree_, SE_New("Add", nullptr));
  EXPECT_EQ(Outline(tree_), "Sync(Version=\"2.0\" Class Add)");
}

TEST_F(ElementSearchDeathTest, AnElementThatItsParentDoesNotHaveCannotBeRemoved) {
  sml_element* const stray = SE_New("Class", nullptr);
  stray->pParent = tree_;
  EXPECT_DEATH(SE_RemoveChild(stray, ""), "`0'");
}

TEST_F(ElementSearchDeathTest, ARootCannotBeRemoved) { EXPECT_DEATH(SE_RemoveChild(tree_, ""), "`0'"); }

// A parser that notes which elements it is given.
class Visitor : public Parser {
 public:
  Visitor() : Parser(nullptr) {}

  void Note(const sml_element* element) {
    visited.push_back(SE_GetValue(element));
    if (parent != nullptr && visited.size() < 3) {
      SE_AddChild(parent, SE_New("Status", std::to_string(visited.size() + 10).c_str()));
    }
  }
  virtual void NoteVirtually(const sml_element* element) { Note(element); }

  std::vector<std::string> visited;
  sml_element* parent = nullptr;  // grows while it is visited, when set
};

class EagerVisitor : public Visitor {
 public:
  void NoteVirtually(const sml_element*) override { visited.push_back("eager"); }
};

const Parser::Handler kNote = static_cast<Parser::Handler>(&Visitor::Note);
const Parser::Handler kNoteVirtually = static_cast<Parser::Handler>(&Visitor::NoteVirtually);

sml_element* Statuses() {
  return Tree(Node("Collection", {Node("Status", "1"), Node("SyncKey", "2"), Node("Status", "3"),
                                  Node("Options", {Node("Status", "4")})}),
              0);
}

TEST_F(ElementSearch, VisitsDirectChildrenWithTheTagInOrder) {
  Visitor visitor;
  SE_ForEach(Statuses(), "Status", kNote, visitor);
  EXPECT_THAT(visitor.visited, ElementsAre("1", "3"));
}

TEST_F(ElementSearch, VisitsNobodyWhenNobodyHasTheTag) {
  Visitor visitor;
  SE_ForEach(Statuses(), "Add", kNote, visitor);
  EXPECT_THAT(visitor.visited, ElementsAre());
}

TEST_F(ElementSearch, VisitsByVirtualHandlersToo) {
  EagerVisitor visitor;
  SE_ForEach(Statuses(), "Status", kNoteVirtually, visitor);
  EXPECT_THAT(visitor.visited, ElementsAre("eager", "eager"));
}

TEST_F(ElementSearch, VisitsChildrenThatAreAppendedMeanwhile) {
  Visitor visitor;
  sml_element* const tree = Statuses();
  visitor.parent = tree;
  SE_ForEach(tree, "Status", kNote, visitor);
  EXPECT_THAT(visitor.visited, ElementsAre("1", "3", "11", "12"));
}

}  // namespace
