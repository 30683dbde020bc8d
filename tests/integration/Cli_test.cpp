// The commands on the real programs: their output, their errors, their secrets.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "integration/Fixture.h"

namespace airsync::integration {
namespace {

using nlohmann::json;
using testing::HasSubstr;
using testing::Not;

class Cli : public AirsyncTest {};

TEST_F(Cli, WritesNoSecretAtAnyVerbosity) {
  serve({"--contacts", "3", "--password", "hunter2-secret"});
  environment()["AIRSYNC_PASSWORD"] = "hunter2-secret";
  for (const char* verbosity : {"--json", "-q", "-v", "-vv", "-vvv"})
    EXPECT_EQ(run({verbosity, "sync"}).code, 0);
  EXPECT_THAT(written(), HasSubstr("Cmd=Sync"));
  EXPECT_THAT(written(), Not(HasSubstr("hunter2-secret")));
  // base64 of "DEMO/demo:hunter2-secret" begins so.
  EXPECT_THAT(written(), Not(HasSubstr("REVNTy9kZW1vOmh1bnRlcjI")));
  for (const auto& file : std::filesystem::recursive_directory_iterator(directory() / "state")) {
    if (file.is_regular_file()) {
      EXPECT_THAT(readFile(file.path()), Not(HasSubstr("hunter2-secret")));
    }
  }
}

TEST_F(Cli, ShowsContentsOnlyWhenTheyAreAskedFor) {
  serve({"--contacts", "0"});
  server().add("f9", {{"FirstName", "Zacharias-the-content"}});
  const Finished some = run({"-vv", "sync"});
  ASSERT_EQ(some.code, 0);
  EXPECT_THAT(some.errors, Not(HasSubstr("Zacharias-the-content")));
}

TEST_F(Cli, KeepsItsStateForItsOwnerOnly) {
  serve({"--contacts", "1"});
  sync();
  struct stat status {};
  ASSERT_EQ(::stat((directory() / "state" / "airsync").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0700U);
  ASSERT_EQ(::stat((directory() / "state" / "airsync" / "demo.db").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0600U);
}

TEST_F(Cli, ListsAndShowsItems) {
  serve({"--contacts", "0"});
  sync();
  const long long number = addHere({{"FirstName", "Ann"}, {"LastName", "Example"}, {"Body", "one\ntwo"}});
  const Finished list = run({"list", "Contacts"});
  EXPECT_EQ(list.code, 0);
  EXPECT_THAT(list.output, HasSubstr("Ann"));
  EXPECT_THAT(list.output, HasSubstr("add waiting"));
  const Finished show = run({"show", "Contacts", std::to_string(number)});
  EXPECT_EQ(show.output, "Body: one\n    two\nFirstName: Ann\nLastName: Example\n(local add, waiting)\n");
  const json listed = run({"--json", "list", "Contacts"}).json();
  EXPECT_EQ(listed.at("folder").at("id"), "f9");
  EXPECT_EQ(listed.at("items").size(), 1U);
  EXPECT_EQ(run({"--json", "show", "Contacts", std::to_string(number)}).json().at("record").at("FirstName"),
            "Ann");
}

TEST_F(Cli, ShownRecordCanBeAddedAgain) {
  serve({"--contacts", "20"});
  sync();
  const auto shown = contactsHere();
  ASSERT_EQ(shown.size(), 20U);
  std::map<std::string, json> originals;  // by the name that the copy of each has here
  for (const auto& [id, contact] : shown) {
    const Finished added = run({"--json", "add", "f9", "-"}, contact.dump());
    ASSERT_EQ(added.code, 0) << added.errors;
    originals["#" + std::to_string(added.json().at("number").get<long long>())] = contact;
  }
  auto copies = contactsHere();
  EXPECT_EQ(copies.size(), 40U);
  for (const auto& [name, original] : originals) EXPECT_EQ(copies[name], original) << name;
}

// Keeps S20.
TEST_F(Cli, NamesThePlaceOfAnErrorInARecordAndChangesNothing) {
  serve({"--contacts", "0"});
  sync();
  const Finished result = run({"add", "f9", "-"}, "{\n\"Birthday\": \"2001-02-29\"}");
  EXPECT_EQ(result.code, 1);
  EXPECT_THAT(
      result.errors,
      HasSubstr("reading the record from standard input, line 2, column 24: Birthday is a date or time that "
                "does not exist"));
  EXPECT_TRUE(contactsHere().empty());
}

TEST_F(Cli, RefusesToSendABodyOfWhichOnlyAPartIsHere) {
  serve({"--contacts", "0"});
  configure(url(), "truncation = 1\n");
  const std::string id = server().add("f9", {{"FirstName", "Ann"}, {"Body", std::string(5000, 'x')}});
  sync();
  const Finished refused = run({"change", "f9", id, "-"}, R"({"FirstName":"Bea"})");
  EXPECT_EQ(refused.code, 8) << refused.errors;
  EXPECT_THAT(refused.errors, HasSubstr("only the beginning of its Body is here"));
  EXPECT_THAT(refused.errors, HasSubstr("Run airsync fetch f9 1 first"));
  ASSERT_EQ(run({"change", "f9", id, "-"}, R"({"FirstName":"Bea","Body":"new"})").code, 0);
  sync();
  EXPECT_EQ(server().contacts("f9").at(id).at("Body"), "new");
}

TEST_F(Cli, TellsOfFoldersAndItemsThatAreNotThere) {
  serve({"--contacts", "0"});
  sync();
  EXPECT_EQ(run({"list", "Nowhere"}).code, 1);
  EXPECT_EQ(run({"show", "f9", "999"}).code, 1);
  EXPECT_EQ(run({"delete", "id:f9", "999"}).code, 1);
  EXPECT_EQ(run({"sync", "Nowhere"}).code, 1);
}

TEST_F(Cli, ShowsNothingOfTheCommandLineThatDrivesTheTerminal) {
  for (const std::vector<std::string>& arguments :
       {std::vector<std::string>{"status", "--\x1b[31mred"}, {"respond", "f2", "1", "\x1b[31m\xff"}}) {
    const Finished result = run(arguments);
    EXPECT_EQ(result.code, 1);
    EXPECT_THAT(result.errors, testing::AllOf(HasSubstr("\\x1b[31m"), Not(HasSubstr("\x1b"))));
  }
}

TEST_F(Cli, TellsOfAWrongConfigurationWithExitCode2) {
  EXPECT_EQ(run({"status"}).code, 2);
  configure("https://sync.example.com", "colour = 1\n");
  const Finished result = run({"status"});
  EXPECT_EQ(result.code, 2);
  EXPECT_THAT(result.errors, HasSubstr("config.toml:5: account.demo.colour: unknown key"));
}

TEST_F(Cli, TellsOfAWrongCommandLineWithExitCode1) {
  EXPECT_EQ(run({}).code, 1);
  EXPECT_EQ(run({"synchronise"}).code, 1);
  EXPECT_EQ(run({"--help"}).code, 0);
}

TEST_F(Cli, TellsOfADamagedStoreWithExitCode8) {
  serve({"--contacts", "0"});
  sync();
  writeFile(directory() / "state" / "airsync" / "demo.db", std::string(5000, 'x'));
  const Finished result = run({"status"});
  EXPECT_EQ(result.code, 8) << result.errors;
}

}  // namespace
}  // namespace airsync::integration
