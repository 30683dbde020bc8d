// The commands that ask the server at once, against the demo server; those about mail are in
// MailCommands_test.cpp.
#include <chrono>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <iterator>
#include <signal.h>
#include <thread>

#include "integration/Fixture.h"

namespace airsync::integration {
namespace {

using nlohmann::json;
using testing::HasSubstr;

class Commands : public AirsyncTest {
 protected:
  // A command that is expected to end well, with the JSON that it writes.
  json ask(std::vector<std::string> arguments, const std::string& input = {}) {
    arguments.insert(arguments.begin(), "--json");
    const Finished result = run(arguments, input);
    EXPECT_EQ(result.code, 0) << result.output << result.errors;
    return result.code == 0 ? result.json() : json();
  }

  // The code, and what was said.
  std::string refusal(const std::vector<std::string>& arguments, const std::string& input = {}) {
    const Finished result = run(arguments, input);
    return std::to_string(result.code) + " " + result.errors;
  }

  json hierarchyFolder(const std::string& id) {
    const json hierarchy = ask({"hierarchy"});
    for (const json& folder : hierarchy.at("folders")) {
      if (folder.at("id") == id) return folder;
    }
    return nullptr;
  }
};

TEST_F(Commands, OptionsTellVersionsAndCommands) {
  serve();
  const json options = ask({"options"});
  EXPECT_THAT(options.at("versions").get<std::vector<std::string>>(), testing::Contains("2.0"));
  EXPECT_THAT(options.at("commands").get<std::vector<std::string>>(),
              testing::IsSupersetOf({"Sync", "SendMail", "MoveItems", "Notify"}));
  const Finished people = run({"options"});
  EXPECT_THAT(people.output, testing::MatchesRegex("versions: .*2\\.0.*\ncommands: .*Sync.*\n"));
}

TEST_F(Commands, HierarchyShowsTheServersFoldersAndChangesNothingHere) {
  serve();
  const json hierarchy = ask({"hierarchy"});
  EXPECT_EQ(hierarchy.at("folders").size(), 19U);
  EXPECT_EQ(
      hierarchyFolder("f9"),
      json({{"id", "f9"}, {"parent", "0"}, {"name", "Contacts"}, {"type", 9}, {"type_name", "contacts"}}));
  EXPECT_THAT(run({"hierarchy"}).output, HasSubstr("\n  Reisen "));
  EXPECT_TRUE(ask({"folders"}).at("accounts").at(0).at("folders").empty());
}

TEST_F(Commands, FoldersAreMadeRenamedMovedAndDeletedOnBothSides) {
  serve();
  const json made = ask({"folder", "create", "Friends", "--type", "contacts", "--parent", "Contacts"});
  const std::string id = made.at("folder").at("id");
  EXPECT_EQ(made.at("action"), "create");
  EXPECT_EQ(made.at("folder").at("path"), "Contacts/Friends");
  EXPECT_EQ(hierarchyFolder(id).at("name"), "Friends");
  EXPECT_EQ(hierarchyFolder(id).at("type"), 14);

  const json renamed = ask({"folder", "rename", "Contacts/Friends", "Old friends", "--parent", "/"});
  EXPECT_EQ(renamed.at("folder").at("path"), "Old friends");
  EXPECT_EQ(hierarchyFolder(id).at("parent"), "0");
  EXPECT_EQ(folder(id).at("path"), "Old friends");

  EXPECT_EQ(ask({"folder", "delete", "id:" + id, "--force"}).at("action"), "delete");
  EXPECT_TRUE(hierarchyFolder(id).is_null());
  EXPECT_THAT(refusal({"list", id}), testing::StartsWith("1 "));
  sync();
}

TEST_F(Commands, ADeletedFolderTakesTheFoldersBelowItAlong) {
  serve();
  ask({"folders", "--refresh"});
  ask({"folder", "delete", "id:k2", "--force"});  // k3 is below it
  EXPECT_TRUE(hierarchyFolder("k3").is_null());
  EXPECT_THAT(refusal({"list", "k3"}), testing::StartsWith("1 "));
}

TEST_F(Commands, RefusalsOfFolderCommandsSayWhatToDo) {
  serve();
  EXPECT_THAT(refusal({"folder", "create", "Contacts", "--type", "contacts"}),
              testing::AllOf(testing::StartsWith("8 "), HasSubstr("a folder of that name is there already"),
                             HasSubstr("AS_RESULT_FAMILY_FOLDER | 2")));
  EXPECT_THAT(refusal({"folder", "delete", "Inbox", "--force"}), HasSubstr("AS_RESULT_FAMILY_FOLDER | 3"));
  EXPECT_THAT(refusal({"folder", "rename", "id:k2", "Ring", "--parent", "id:k3"}),
              HasSubstr("AS_RESULT_FAMILY_FOLDER | 5"));
  EXPECT_THAT(refusal({"folder", "rename", "nothing", "Name"}), testing::StartsWith("1 "));
  EXPECT_THAT(refusal({"folder", "create", std::string(64, 'n')}), HasSubstr("at most 63 bytes"));
  EXPECT_FALSE(hierarchyFolder("f2").is_null());
}

TEST_F(Commands, AFolderWithUnsentChangesIsDeletedOnlyByForce) {
  serve();
  sync();
  const Finished added = run({"--json", "add", "k1", "-"}, R"({"LastName": "Unsent"})");
  ASSERT_EQ(added.code, 0);
  EXPECT_THAT(refusal({"folder", "delete", "id:k1"}),
              testing::AllOf(testing::StartsWith("8 "),
                             HasSubstr("1 local changes that have not reached the server")));
  EXPECT_FALSE(hierarchyFolder("k1").is_null());
  ask({"folder", "delete", "id:k1", "--force"});
  EXPECT_TRUE(hierarchyFolder("k1").is_null());
  EXPECT_THAT(run({"status"}).output, HasSubstr("Unsent"));
}

TEST_F(Commands, WhatIsLeftOfADeletedFolderIsNoFolderOfTheServer) {
  serve();
  sync();
  ASSERT_EQ(run({"add", "k1", "-"}, R"({"LastName": "Unsent"})").code, 0);
  const std::string name = ask({"folder", "delete", "id:k1", "--force"}).at("folder").at("name");
  const auto refused = testing::AllOf(testing::StartsWith("1 "), HasSubstr("it was deleted on the server"));
  EXPECT_THAT(refusal({"folder", "delete", name, "--force"}), refused);
  EXPECT_THAT(refusal({"folder", "rename", name, "Anew"}), refused);
  EXPECT_THAT(refusal({"folder", "create", "Below", "--parent", name}), refused);
}

TEST_F(Commands, EstimatesCountWhatTheNextSyncWillBring) {
  serve();
  ask({"folders", "--refresh"});
  const json before = ask({"estimate", "f9"}).at("folders").at(0);
  EXPECT_EQ(before.at("synchronised"), false);
  EXPECT_TRUE(before.at("items").is_null());
  sync();
  EXPECT_EQ(ask({"estimate", "f9"}).at("folders").at(0).at("items"), 0);
  server().add("f9", {{"LastName", "One"}});
  server().add("f9", {{"LastName", "Two"}});
  const json after = ask({"estimate"});
  for (const json& entry : after.at("folders")) {
    const int expected = entry.at("id") == "f9" ? 2 : 0;
    if (entry.at("synchronised") == false) continue;
    EXPECT_EQ(entry.at("items"), expected) << entry;
  }
  EXPECT_THAT(run({"estimate", "f9"}).output, HasSubstr("Contacts  2"));
  EXPECT_THAT(refusal({"estimate", "f7"}), HasSubstr("can't be synchronised"));
}

TEST_F(Commands, MovesManyItemsInSeveralRequests) {
  serve({"--contacts", "600"});
  sync();
  const std::size_t there = contactsHere("k1").size();
  std::vector<std::string> arguments = {"move", "id:f9"};
  for (const auto& [id, contact] : contactsHere()) arguments.push_back(id);
  const std::size_t count = arguments.size() - 2;
  ASSERT_GT(count, 500U);
  arguments.insert(arguments.end(), {"--to", "id:k1"});
  const json moved = ask(arguments);
  ASSERT_EQ(moved.at("items").size(), count);
  for (const json& item : moved.at("items")) {
    EXPECT_EQ(item.at("status"), 3);
    EXPECT_TRUE(item.at("new_id").is_string());
  }
  EXPECT_EQ(contactsHere().size(), 0U);
  EXPECT_EQ(contactsHere("k1").size(), there + count);
  sync();
  expectSameOnBothSides("f9");
  expectSameOnBothSides("k1");
}

TEST_F(Commands, AMoveThatTheServerRefusesInPartIsPartlyDone) {
  serve();
  sync();
  const auto contacts = contactsHere();
  const std::string gone = contacts.begin()->first;
  const std::string good = std::next(contacts.begin())->first;
  server().remove("f9", gone);
  const Finished result = run({"--json", "move", "id:f9", gone, good, "--to", "id:k1"});
  EXPECT_EQ(result.code, 7) << result.errors;
  EXPECT_THAT(result.errors, HasSubstr("the server does not find it in its folder (status 1)"));
  EXPECT_EQ(result.json().at("items").at(0).at("status"), 1);
  EXPECT_EQ(result.json().at("items").at(1).at("status"), 3);
  EXPECT_EQ(contactsHere().count(good), 0U);
  EXPECT_EQ(contactsHere().count(gone), 1U);
  sync();
  expectSameOnBothSides("f9");
  expectSameOnBothSides("k1");
}

TEST_F(Commands, AMoveIsRefusedBeforeAnythingIsSent) {
  serve();
  sync();
  const std::string item = contactsHere().begin()->first;
  EXPECT_THAT(refusal({"move", "id:f9", item, "--to", "id:f9"}), testing::StartsWith("1 "));
  EXPECT_THAT(refusal({"move", "id:f9", item, "--to", "id:f2"}), testing::StartsWith("1 "));
  EXPECT_THAT(refusal({"move", "id:f9", "nobody", "--to", "id:k1"}), testing::StartsWith("1 "));
  const long long unsent = addHere({{"LastName", "Unsent"}});
  EXPECT_THAT(refusal({"move", "id:f9", item, std::to_string(unsent), "--to", "id:k1"}),
              testing::StartsWith("1 "));
  EXPECT_EQ(contactsHere().count(item), 1U);
}

TEST_F(Commands, ABatchThatFailsLeavesTheEarlierOnesMoved) {
  serve({"--contacts", "600", "--fail-cmd", "MoveItems", "--fail-after", "1", "--fail-status", "503"});
  sync();
  std::vector<std::string> arguments = {"--json", "move", "id:f9"};
  for (const auto& [id, contact] : contactsHere()) arguments.push_back(id);
  arguments.insert(arguments.end(), {"--to", "id:k1"});
  const Finished result = run(arguments);
  EXPECT_EQ(result.code, 7);
  std::size_t moved = 0;
  const json items = result.json().at("items");
  for (const json& item : items) moved += item.at("error").is_null() ? 1 : 0;
  EXPECT_GT(moved, 100U);
  EXPECT_EQ(contactsHere().size(), items.size() - moved);
  serve({"--contacts", "600"});
  sync();
  expectSameOnBothSides("f9");
  expectSameOnBothSides("k1");
}

TEST_F(Commands, AMoveForWhichTheServerDoesNotLetUsInSaysWhyAndMovesNothing) {
  serve();
  sync();
  const std::string item = contactsHere().begin()->first;
  environment()["AIRSYNC_PASSWORD"] = "wrong";
  EXPECT_THAT(refusal({"move", "id:f9", item, "--to", "id:k1"}),
              testing::AllOf(testing::StartsWith("3 "), HasSubstr("refused the user name or the password"),
                             HasSubstr("Check `user`"), testing::Not(HasSubstr("is not known"))));
  EXPECT_EQ(contactsHere().count(item), 1U);
}

TEST_F(Commands, NotificationsAreSetUpAndSwitchedOff) {
  serve();
  sync();
  const std::vector<std::string> carriers = ask({"notify", "carriers"}).at("carriers");
  ASSERT_FALSE(carriers.empty());
  const json enabled =
      ask({"notify", "enable", "+49151234", "--carrier", carriers.front(), "--lifetime", "60", "f9", "f2"});
  EXPECT_EQ(enabled.at("lifetime"), 60);
  ASSERT_EQ(enabled.at("folders").size(), 2U);
  for (const json& entry : enabled.at("folders")) EXPECT_TRUE(entry.at("error").is_null()) << entry;
  const json devices = server().devices();
  ASSERT_EQ(devices.size(), 1U);
  EXPECT_EQ(devices[0].at("address"), "+49151234");
  EXPECT_EQ(devices[0].at("carrier"), carriers.front());
  EXPECT_EQ(devices[0].at("lifetime"), 60);
  EXPECT_EQ(devices[0].at("folders"), json({"f2", "f9"}));
  EXPECT_EQ(ask({"notify", "disable"}).at("action"), "disable");
  EXPECT_EQ(server().devices()[0].at("folders"), json::array());
  EXPECT_FALSE(ask({"notify", "enable", "ann@example.com"}).at("folders").empty());
}

TEST_F(Commands, AnUnknownCarrierIsRefusedWithTheOnesThatAreKnown) {
  serve();
  sync();
  const std::string said = refusal({"notify", "enable", "+49151234", "--carrier", "No Such Carrier"});
  EXPECT_THAT(said, testing::AllOf(testing::StartsWith("8 "), HasSubstr("carriers that the server knows: "),
                                   HasSubstr("AS_RESULT_FAMILY_NOTIFY | 3")));
}

TEST_F(Commands, AnAddressAloneCantBeToldAndTheErrorSaysWhy) {
  serve();
  EXPECT_THAT(refusal({"notify", "address", "+49151234", "--carrier", "c"}),
              testing::AllOf(testing::StartsWith("8 "), HasSubstr("0x8001000b"),
                             HasSubstr("notify enable, which registers the address")));
}

// 13 bytes, then the GUID's 16 in their little-endian order.
TEST_F(Commands, ANotificationIsCheckedWithoutTheServer) {
  configure("http://127.0.0.1:1/service");
  environment().erase("AIRSYNC_PASSWORD");
  const std::string payload = "AAAAAAAAAAAAAAAAAGdFIwGrie/NASNFZ4mrze8=";
  const std::string guid = "01234567-89ab-cdef-0123-456789abcdef";
  EXPECT_EQ(ask({"notify", "check", guid, payload}).at("matches"), true);
  EXPECT_EQ(ask({"notify", "check", "{" + guid + "}", "-"}, payload + "\n").at("matches"), true);
  EXPECT_THAT(refusal({"notify", "check", "11234567-89ab-cdef-0123-456789abcdef", payload}),
              testing::StartsWith("1 "));
  EXPECT_THAT(refusal({"notify", "check", guid, "????"}), testing::StartsWith("1 "));
  EXPECT_THAT(refusal({"notify", "check", "guid", payload}), HasSubstr("is no identifier of a set-up"));
}

TEST_F(Commands, AreEndedByAnInterrupt) {
  serve({"--fail-cmd", "GetHierarchy", "--delay-ms", "1000000"});
  const auto process = start({"-vv", "hierarchy"});
  while (process->running() && process->errors().find("> POST ") == std::string::npos) {
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  process->signal(SIGINT);
  EXPECT_EQ(process->wait(), 130);
}

}  // namespace
}  // namespace airsync::integration
