// Folders and items are destroyed and moved only where there is no doubt which ones are meant, and what goes
// with them was told before.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <iterator>

#include "integration/Fixture.h"
#include "support/HexAndText.h"

namespace airsync::integration {
namespace {

using airsync_test::HexAndText;
using nlohmann::json;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

class FolderDelete : public AirsyncTest {
 protected:
  std::string refusal(const std::vector<std::string>& arguments) {
    const Finished result = run(arguments);
    return std::to_string(result.code) + " " + result.errors;
  }

  // From the server's hierarchy, and from the list here, which is as it was left.
  bool isThere(const std::string& id) { return holds(run({"--json", "hierarchy"}).json(), id); }
  bool isHere(const std::string& id) {
    return holds(run({"--json", "folders"}).json().at("accounts").at(0), id);
  }

  // Answers the n-th deletion of a folder with a refusal (status 7).
  void serveRefusal(const std::string& after) {
    writeFile(directory() / "answer", HexAndText("03 01 6A 00 00 07 54 4C 03 '7' 00 01 01"));
    serve({"--contacts", "20", "--fail-cmd", "FolderDelete", "--fail-after", after, "--fail-count", "1",
           "--answer-file", (directory() / "answer").string()});
  }

 private:
  static bool holds(const json& list, const std::string& id) {
    for (const json& folder : list.at("folders")) {
      if (folder.at("id") == id) return true;
    }
    return false;
  }
};

TEST_F(FolderDelete, AsksForEachFolderTheDeepestFirst) {
  serveRefusal("1");  // k3 goes, k2 above it is refused
  const Finished result = run({"--json", "folder", "delete", "id:k2", "--force"});
  EXPECT_EQ(result.code, 7) << result.errors;
  EXPECT_THAT(result.errors, HasSubstr("the server does not allow it (status 7)"));
  EXPECT_EQ(result.json().at("deleted").at(0).at("id"), "k3");
  EXPECT_EQ(result.json().at("kept").at(0).at("id"), "k2");
  EXPECT_FALSE(isHere("k3"));
  EXPECT_FALSE(isThere("k3"));
  EXPECT_TRUE(isHere("k2"));
  EXPECT_TRUE(isThere("k2"));
}

TEST_F(FolderDelete, KeepsHereWhatTheServerKeepsAndTheFoldersAboveIt) {
  serveRefusal("0");
  const Finished result = run({"--json", "folder", "delete", "id:k2", "--force"});
  EXPECT_EQ(result.code, 8) << result.errors;
  EXPECT_EQ(result.json().at("deleted"), json::array());
  EXPECT_THAT(result.errors, HasSubstr("was not deleted, because a folder below it stays"));
  for (const char* id : {"k2", "k3"}) {
    EXPECT_TRUE(isHere(id)) << id;
    EXPECT_TRUE(isThere(id)) << id;
  }
}

TEST_F(FolderDelete, OfAFolderThatIsNotEmptyNeedsForceAndSaysWhatGoes) {
  serve({"--contacts", "20"});
  sync();
  EXPECT_THAT(refusal({"folder", "delete", "Contacts"}),
              AllOf(StartsWith("8 "),
                    HasSubstr("this would go with it, on the server and here: 2 folders "
                              "below it (Contacts/Клиенты/Архив, Contacts/Клиенты); "),
                    HasSubstr(" items that are known here"), HasSubstr("Give --force")));
  EXPECT_TRUE(isThere("f9"));
  EXPECT_TRUE(isThere("k3"));
}

TEST_F(FolderDelete, OfAFolderThatIsKnownToBeEmptyNeedsNoForce) {
  serve({"--contacts", "0"});
  ASSERT_EQ(run({"folder", "create", "Rowing", "--type", "contacts"}).code, 0);
  EXPECT_THAT(refusal({"folder", "delete", "Rowing"}),
              AllOf(StartsWith("8 "), HasSubstr("whatever it holds, since it was never synchronised")));
  ASSERT_EQ(run({"sync", "Rowing"}).code, 0);
  const Finished result = run({"folder", "delete", "Rowing"});
  EXPECT_EQ(result.code, 0) << result.errors;
  EXPECT_EQ(result.output, "Rowing: deleted\n");
}

TEST_F(FolderDelete, TakesNoNameAndNoPlainId) {
  serve({"--contacts", "20"});
  sync();
  EXPECT_THAT(refusal({"folder", "delete", "Архив", "--force"}),
              AllOf(StartsWith("1 "), HasSubstr("the name of Contacts/Клиенты/Архив (id:k3)")));
  EXPECT_THAT(refusal({"folder", "delete", "k3", "--force"}),
              AllOf(StartsWith("1 "), HasSubstr("the id of Contacts/Клиенты/Архив (id:k3)")));
  EXPECT_THAT(refusal({"folder", "rename", "k3", "Attic"}), StartsWith("1 "));
  EXPECT_THAT(refusal({"delete", "f9", "1"}), StartsWith("1 "));
  const std::string item = contactsHere().begin()->first;
  EXPECT_THAT(refusal({"move", "Contacts", item, "--to", "k1"}), StartsWith("1 "));
  EXPECT_THAT(refusal({"move", "f9", item, "--to", "id:k1"}), StartsWith("1 "));
  EXPECT_TRUE(isThere("k3"));
  EXPECT_EQ(contactsHere().count(item), 1U);
}

TEST_F(FolderDelete, RepeatedHitsNoOtherFolder) {
  serve({"--contacts", "0"});
  ASSERT_EQ(run({"folder", "create", "Rowing", "--type", "contacts"}).code, 0);
  ASSERT_EQ(run({"folder", "create", "Rowing", "--type", "contacts", "--parent", "Contacts"}).code, 0);
  EXPECT_EQ(run({"folder", "delete", "Rowing", "--force"}).code, 0);
  EXPECT_THAT(refusal({"folder", "delete", "Rowing", "--force"}), StartsWith("1 "));
  EXPECT_THAT(run({"hierarchy"}).output, HasSubstr("\n  Rowing "));
}

// A name of as many bytes as its field has goes out and comes back whole.
TEST_F(FolderDelete, LongestNameIsWholeOnBothSides) {
  serve({"--contacts", "0"});
  const std::string name = std::string(62, 'n') + "!";
  const Finished made = run({"--json", "folder", "create", name});
  ASSERT_EQ(made.code, 0) << made.errors;
  EXPECT_EQ(made.json().at("folder").at("name"), name);
  EXPECT_THAT(run({"hierarchy"}).output, HasSubstr(name + " "));
  const std::string other = std::string(62, 'm') + "?";
  ASSERT_EQ(run({"folder", "rename", name, other}).code, 0);
  EXPECT_THAT(run({"hierarchy"}).output, AllOf(HasSubstr(other + " "), Not(HasSubstr(name))));
}

TEST_F(FolderDelete, FoldersAreNeverSynchronisedUntilTheyAre) {
  serve({"--contacts", "20"});
  ASSERT_EQ(run({"folders", "--refresh"}).code, 0);
  EXPECT_THAT(run({"folders"}).output, testing::ContainsRegex("Contacts +contacts +f9 +never\n"));
  ASSERT_EQ(run({"sync", "Contacts"}).code, 0);
  EXPECT_THAT(run({"folders"}).output, testing::ContainsRegex("Contacts +contacts +f9 +synchronised\n"));
}

}  // namespace
}  // namespace airsync::integration
