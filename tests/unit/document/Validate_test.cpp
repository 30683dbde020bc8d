#include "document/Validate.h"

#include <gtest/gtest.h>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "support/Documents.h"
#include "support/FailingMemory.h"
#include "support/Memory.h"

namespace {

using namespace AIRSYNC_STACK;
using airsync_test::FailingMemory;
using airsync_test::Node;
using airsync_test::Tree;

const SYNC_RESULT kInvalid = 0x8001000b;

class Validate : public testing::Test {
 protected:
  void SetUp() override { FailingMemory::Reset(); }
  void TearDown() override { AdapterFreeAll(); }

  static SYNC_RESULT Element(const Node& node) { return ValidateSmlElement(Tree(node, 0)); }
  static SYNC_RESULT Document(const Node& node) { return ValidateSyncML(Tree(node, 0)); }
};

// The children that each element with a rule may have.
struct Rule {
  const char* element;
  const char* children;
};

const Rule kRules[] = {
    {"Collection",
     "Class SyncKey CollectionId DeleteAsMoves GetChanges WindowSize Options Status MoreAvailable Commands"},
    {"Collections", "Collection"},
    {"Commands", "Add Delete Change Fetch"},
    {"Sync", "Version Collections"},
    {"Class", ""},
    {"Change", "ServerId ApplicationData Status"},
    {"Delete", "ServerId Status"},
    {"ServerId", ""},
    {"ClientId", ""},
    {"ApplicationData", ""},
    {"Status", ""},
    {"SyncKey", ""},
    {"CollectionId", ""},
    {"DeleteAsMoves", ""},
    {"Options", "FilterType Truncation Conflict"},
    {"FolderSync", "Status SyncKey Changes"},
    {"Changes", "Count Add"},
};

std::set<std::string> Words(const std::string& text) {
  std::istringstream words(text);
  std::set<std::string> set;
  for (std::string word; words >> word;) set.insert(word);
  return set;
}

std::set<std::string> AllNames() {
  std::set<std::string> names = {"DeletesAsMoves", "Responses", "Nonsense", "sync", "Class|SyncKey", ""};
  for (const Rule& rule : kRules) {
    names.insert(rule.element);
    names.merge(Words(rule.children));
  }
  return names;
}

TEST_F(Validate, AllowsExactlyTheChildrenOfEachRule) {
  for (const Rule& rule : kRules) {
    const std::set<std::string> allowed = Words(rule.children);
    for (const std::string& name : AllNames()) {
      const SYNC_RESULT expected = allowed.count(name) != 0 ? 0 : kInvalid;
      EXPECT_EQ(Element(Node(rule.element, {Node(name)})), expected) << name << " in " << rule.element;
    }
  }
}

TEST_F(Validate, AcceptsEveryElementWithoutChildren) {
  for (const std::string& name : AllNames()) EXPECT_EQ(Element(Node(name)), 0U) << name;
}

TEST_F(Validate, LooksNotIntoElementsWithoutARule) {
  const Node wrong("Class", {Node("Nonsense")});
  for (const char* const name : {"Add", "Fetch", "Responses", "Version", "Nonsense", "GetChanges"}) {
    EXPECT_EQ(Element(Node(name, {wrong})), 0U) << name;
  }
}

TEST_F(Validate, AWrongNumberOfChildrenMakesNoElementInvalid) {
  EXPECT_EQ(Element(Node("Collection", {Node("SyncKey"), Node("SyncKey")})), 0U);
  EXPECT_EQ(Element(Node("Collections", {Node("Collection"), Node("Collection")})), 0U);
  EXPECT_EQ(Element(Node("Collection")), 0U) << "without the Class that it needs";
  EXPECT_EQ(Element(Node("Options", {Node("Conflict"), Node("Conflict"), Node("Conflict")})), 0U);
}

TEST_F(Validate, AnInvalidChildMakesItsParentsInvalid) {
  const Node collection("Collection", {Node("Class"), Node("Options", {Node("Nonsense")})});
  EXPECT_EQ(Element(collection), kInvalid);
  EXPECT_EQ(Document(Node("Sync", {Node("Version"), Node("Collections", {collection})})), kInvalid);
}

TEST_F(Validate, FindsTheLastOfManyChildren) {
  std::vector<Node> children(20, Node("Add"));
  EXPECT_EQ(Element(Node("Commands", children)), 0U);
  children.emplace_back("Nonsense");
  EXPECT_EQ(Element(Node("Commands", children)), kInvalid);
}

TEST_F(Validate, AcceptsAWholeSyncDocument) {
  EXPECT_EQ(Document(Node(
                "Sync", {Node("Version", "2.0"),
                         Node("Collections",
                              {Node("Collection", {Node("Class", "Contacts"), Node("SyncKey", "1"),
                                                   Node("CollectionId", "3"),
                                                   Node("Commands", {Node("Add", {Node("ClientId")})})})})})),
            0U);
}

TEST_F(Validate, AcceptsAFolderSyncDocumentOfItsOwnPage) {
  EXPECT_EQ(ValidateSyncML(Tree(Node("FolderSync", {Node("SyncKey", "0")}), 7)), 0U);
}

TEST_F(Validate, RefusesDocumentsWithAnotherRoot) {
  for (const char* const root :
       {"Collection", "FolderCreate", "Add", "GetItemEstimate", "sync", "FolderSyncs"}) {
    EXPECT_EQ(Document(Node(root)), kInvalid) << root;
  }
  EXPECT_EQ(ValidateSyncML(SE_New(nullptr, nullptr)), kInvalid);
}

TEST_F(Validate, RefusesAChildWithoutATag) {
  sml_element* const parent = SE_New("Sync", nullptr);
  SE_AddChild(parent, SE_New(nullptr, nullptr));
  EXPECT_EQ(ValidateSmlElement(parent), kInvalid);
}

TEST_F(Validate, AllowsTheDeletesFlagByItsOddNameOnly) {
  EXPECT_EQ(Element(Node("Collection", {Node("DeleteAsMoves")})), 0U);
  EXPECT_EQ(Element(Node("Collection", {Node("DeletesAsMoves")})), kInvalid);
}

TEST(ValidateNumber, RequirementTypesHaveTheirNumbers) {
  EXPECT_EQ(REQUIREMENT_OPTIONAL, 0);
  EXPECT_EQ(REQUIREMENT_ANY, 1);
  EXPECT_EQ(REQUIREMENT_ONE, 2);
  EXPECT_EQ(REQUIREMENT_ONE_OR_MORE, 3);
}

TEST(ValidateNumber, JudgesCountsByTheRequirement) {
  const struct {
    REQUIREMENTTYPE type;
    UINT16 count;
    SYNC_RESULT result;
  } cases[] = {
      {REQUIREMENT_OPTIONAL, 0, 0},
      {REQUIREMENT_OPTIONAL, 1, 0},
      {REQUIREMENT_OPTIONAL, 2, kInvalid},
      {REQUIREMENT_OPTIONAL, 65535, kInvalid},
      {REQUIREMENT_ANY, 0, 0},
      {REQUIREMENT_ANY, 1, 0},
      {REQUIREMENT_ANY, 65535, 0},
      {REQUIREMENT_ONE, 0, kInvalid},
      {REQUIREMENT_ONE, 1, 0},
      {REQUIREMENT_ONE, 2, kInvalid},
      {REQUIREMENT_ONE_OR_MORE, 0, kInvalid},
      {REQUIREMENT_ONE_OR_MORE, 1, 0},
      {REQUIREMENT_ONE_OR_MORE, 65535, 0},
  };
  for (const auto& row : cases) {
    EXPECT_EQ(ValidateNumberOfChildren(row.type, row.count), row.result) << row.type << " " << row.count;
  }
}

TEST(ValidateNumberDeathTest, ThereIsNoFifthRequirement) {
  EXPECT_DEATH(ValidateNumberOfChildren(static_cast<REQUIREMENTTYPE>(4), 1), "ValidateNumberOfChildren.*`0'");
}

TEST_F(Validate, AlternativesAreSeparatedByBars) {
  EXPECT_TRUE(IsAlternative("Add", "Add|Change|Delete"));
  EXPECT_TRUE(IsAlternative("Change", "Add|Change|Delete"));
  EXPECT_TRUE(IsAlternative("Delete", "Add|Change|Delete"));
  EXPECT_TRUE(IsAlternative("Add", "Add"));
  EXPECT_FALSE(IsAlternative("Ad", "Add|Change"));
  EXPECT_FALSE(IsAlternative("Adds", "Add|Change"));
  EXPECT_FALSE(IsAlternative("add", "Add|Change"));
  EXPECT_FALSE(IsAlternative("Add|Change", "Add|Change"));
}

TEST_F(Validate, ChildrenCountForARequirementByAnyAlternative) {
  const sml_element* const commands =
      Tree(Node("Commands", {Node("Add"), Node("Fetch"), Node("Change"), Node("Add", {Node("Change")})}), 0);
  EXPECT_EQ(CountAlternatives(commands, "Add"), 2);
  EXPECT_EQ(CountAlternatives(commands, "Add|Change"), 3);
  EXPECT_EQ(CountAlternatives(commands, "Delete|Fetch"), 1);
  EXPECT_EQ(CountAlternatives(commands, "Delete"), 0);
}

}  // namespace
