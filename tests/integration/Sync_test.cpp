// Both sides hold the same: airsync against the demo server, over loopback.
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "integration/Fixture.h"

namespace airsync::integration {
namespace {

using nlohmann::json;
using testing::HasSubstr;

// Every form of field that is uploaded.
const json kAnn = {{"FirstName", "Ann"},
                   {"LastName", "Exämple"},
                   {"FileAs", "Exämple, Ann"},
                   {"Email1Address", "ann@example.com"},
                   {"Birthday", "1970-01-31T00:00:00Z"},
                   {"Categories", {"Friends", "Rowing"}},
                   {"Children", {"Bob", "Cat"}},
                   {"Body", "one\ntwo <&> \"three\""}};

class Sync : public AirsyncTest {};

TEST_F(Sync, BringsAThousandContactsTheFirstTimeAndNothingTheSecondTime) {
  serve({"--contacts", "1000"});
  const Finished first = run({"--json", "sync", "Contacts"});
  ASSERT_EQ(first.code, 0) << first.errors;
  const json result = first.json().at("accounts").at(0).at("folders").at(0);
  EXPECT_EQ(result.at("id"), "f9");
  EXPECT_EQ(result.at("result"), "done");
  EXPECT_EQ(result.at("changes").at("added"), 1000);
  EXPECT_EQ(contactsHere().size(), 1000U);
  expectSameOnBothSides();

  const Finished second = run({"sync", "Contacts"});
  EXPECT_EQ(second.code, 0) << second.errors;
  EXPECT_EQ(second.output, "Contacts: up to date\n");
}

TEST_F(Sync, SendsLocalAdditionsChangesAndDeletions) {
  serve();
  sync();
  const auto before = server().contacts("f9");
  const std::string changed = before.begin()->first;
  const std::string deleted = before.rbegin()->first;
  const long long added = addHere(kAnn);
  ASSERT_EQ(run({"change", "f9", changed, "-"}, R"({"JobTitle":"Chief","Suffix":null})").code, 0);
  ASSERT_EQ(run({"delete", "id:f9", deleted}).code, 0);
  EXPECT_EQ(folder("f9").at("pending"), 3);

  const Finished result = run({"--json", "sync", "f9"});
  ASSERT_EQ(result.code, 0) << result.errors;
  EXPECT_EQ(result.json().at("accounts").at(0).at("folders").at(0).at("changes").at("sent"), 3);
  expectSameOnBothSides();
  const auto after = server().contacts("f9");
  EXPECT_EQ(after.size(), 100U);
  EXPECT_EQ(after.count(deleted), 0U);
  EXPECT_EQ(after.at(changed).at("JobTitle"), "Chief");
  const json shown = run({"--json", "show", "f9", std::to_string(added)}).json();
  ASSERT_TRUE(shown.at("id").is_string());
  EXPECT_TRUE(shown.at("pending").is_null());
  EXPECT_EQ(after.at(shown.at("id")).at("LastName"), "Exämple");
  EXPECT_EQ(folder("f9").at("pending"), 0);

  EXPECT_EQ(run({"sync", "f9"}).output, "Contacts: up to date\n");
}

TEST_F(Sync, BringsTheServersAdditionsChangesAndDeletions) {
  serve();
  sync();
  const auto before = server().contacts("f9");
  const std::string changed = before.begin()->first;
  const std::string deleted = before.rbegin()->first;
  json contact = before.at(changed);
  contact["JobTitle"] = "Chief";
  const std::string added = server().add("f9", kAnn);
  server().replace("f9", changed, contact);
  server().remove("f9", deleted);

  const Finished result = run({"sync", "f9"});
  ASSERT_EQ(result.code, 0) << result.errors;
  EXPECT_EQ(result.output, "Contacts: 1 added, 1 changed, 1 deleted\n");
  expectSameOnBothSides();
  const auto here = contactsHere();
  EXPECT_EQ(here.at(added).at("LastName"), "Exämple");
  EXPECT_EQ(here.at(changed).at("JobTitle"), "Chief");
  EXPECT_EQ(here.count(deleted), 0U);
}

// The record comes through a pipe, so slowly that a synchronisation is faster.
TEST_F(Sync, KeepsTheServersChangeThatCameWhileARecordWasRead) {
  serve();
  sync();
  auto [id, contact] = *server().contacts("f9").begin();
  const std::filesystem::path pipe = directory() / "record";
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  const auto process = start({"change", "f9", id, pipe.string()});
  {
    std::ofstream record(pipe);  // waits until airsync reads
    contact["CompanyName"] = "Theirs";
    server().replace("f9", id, contact);
    sync();
    record << R"({"JobTitle": "Ours"})";
  }
  ASSERT_EQ(process->wait(), 0) << process->errors();
  sync();
  contact["JobTitle"] = "Ours";
  EXPECT_EQ(server().contacts("f9").at(id), contact);
  expectSameOnBothSides();
}

TEST_F(Sync, SendsHundredsOfChangesInAsManyRequestsAsItTakes) {
  serve({"--contacts", "0"});
  sync();
  for (int i = 0; i < 40; ++i) {
    json contact = kAnn;
    contact["FirstName"] = "Ann " + std::to_string(i);
    contact["Body"] = std::string(900, 'x');
    addHere(contact);
  }
  sync();
  EXPECT_EQ(server().contacts("f9").size(), 40U);
  expectSameOnBothSides();
}

TEST_F(Sync, PassesOverFoldersThatTheProtocolNeverSynchronises) {
  serve({"--contacts", "0"});
  const Finished result = run({"sync"});
  ASSERT_EQ(result.code, 0) << result.errors;
  EXPECT_THAT(result.output, HasSubstr("can't be synchronised: "));
  EXPECT_THAT(result.output, HasSubstr("Calendar: "));
  EXPECT_THAT(result.output, HasSubstr("Inbox: "));
  const Finished named = run({"sync", "Tasks"});
  EXPECT_EQ(named.code, 1);
  EXPECT_THAT(named.errors, HasSubstr("folder \"Tasks\" of account demo: can't be synchronised"));
}

TEST_F(Sync, CopesWithSeveralHundredFolders) {
  serve({"--contacts", "0", "--folders", "600"});
  const Finished result = run({"--json", "folders", "--refresh"});
  ASSERT_EQ(result.code, 0) << result.errors;
  EXPECT_EQ(result.json().at("accounts").at(0).at("folders").size(), 619U);
  EXPECT_EQ(run({"sync", "x3"}).code, 0);
}

TEST_F(Sync, ForgetsAFolderThatTheServerDeleted) {
  serve({"--contacts", "0"});
  sync();
  EXPECT_FALSE(folder("k1").is_null());
  server().removeFolder("k1");
  sync();
  EXPECT_TRUE(folder("k1").is_null());
}

// A server that has lost its state knows neither the hierarchy's key nor the folder's.
TEST_F(Sync, BeginsAnewWhenTheServerDoesNotKnowItsKeys) {
  serve({"--contacts", "30"});
  sync();
  const long long added = addHere(kAnn);
  server().stop();
  std::filesystem::remove(directory() / "server.db");
  std::filesystem::remove(directory() / "server.db-wal");
  std::filesystem::remove(directory() / "server.db-shm");
  serve({"--contacts", "20", "--seed", "7"});
  const Finished result = run({"sync", "f9"});
  ASSERT_EQ(result.code, 0) << result.output << result.errors;
  EXPECT_THAT(result.errors, HasSubstr("begun anew"));
  EXPECT_EQ(server().contacts("f9").size(), 21U);
  EXPECT_EQ(run({"show", "f9", std::to_string(added)}).code, 0);
  expectSameOnBothSides();
}

struct ConflictRow {
  const char* conflict;
  const char* winner;
};

class Conflict : public AirsyncTest, public testing::WithParamInterface<ConflictRow> {};

TEST_P(Conflict, IsWonByTheSideThatIsConfigured) {
  serve({"--contacts", "5"});
  configure(url(), std::string("conflict = \"") + GetParam().conflict + "\"\n");
  sync();
  const std::string id = server().contacts("f9").begin()->first;
  json contact = server().contacts("f9").begin()->second;
  contact["JobTitle"] = "there";
  ASSERT_EQ(run({"change", "f9", id, "-"}, R"({"JobTitle":"here"})").code, 0);
  server().replace("f9", id, contact);
  const Finished result = run({"sync", "f9"});
  EXPECT_EQ(result.code, 0) << result.errors;
  EXPECT_EQ(server().contacts("f9").at(id).at("JobTitle"), GetParam().winner) << result.errors;
  expectSameOnBothSides();
  // What lost is in the trash, and comes back from there as an item of its own.
  const json trash = run({"--json", "trash"}).json().at("items");
  ASSERT_EQ(trash.size(), 1U);
  const std::string loser = std::to_string(trash.at(0).at("number").get<long long>());
  const char* lost = GetParam().winner == std::string("here") ? "there" : "here";
  EXPECT_EQ(run({"--json", "trash", loser}).json().at("record").at("JobTitle"), lost);
  ASSERT_EQ(run({"restore", loser}).code, 0);
  sync();
  EXPECT_EQ(server().contacts("f9").size(), 6U);
  expectSameOnBothSides();
}

INSTANTIATE_TEST_SUITE_P(, Conflict,
                         testing::Values(ConflictRow{"local", "here"}, ConflictRow{"server", "there"}),
                         [](const auto& row) { return std::string(row.param.winner); });

TEST_F(Sync, KeepsBothVersionsOfAnItemThatBothSidesChanged) {
  serve({"--contacts", "5"});
  sync();
  const std::string id = server().contacts("f9").begin()->first;
  json contact = server().contacts("f9").begin()->second;
  contact["JobTitle"] = "there";
  ASSERT_EQ(run({"change", "f9", id, "-"}, R"({"JobTitle":"here"})").code, 0);
  server().replace("f9", id, contact);
  const Finished result = run({"--json", "sync", "f9"});
  EXPECT_EQ(result.code, 7) << result.errors;  // a person has to decide about the copy
  const json conflicts = result.json().at("accounts").at(0).at("folders").at(0).at("conflicts");
  ASSERT_EQ(conflicts.size(), 1U);
  EXPECT_EQ(conflicts.at(0).at("outcome"), "kept-both");
  const std::string copy = std::to_string(conflicts.at(0).at("copy").get<long long>());
  EXPECT_EQ(server().contacts("f9").at(id).at("JobTitle"), "there");
  EXPECT_EQ(run({"--json", "show", "f9", copy}).json().at("record").at("JobTitle"), "here");
  EXPECT_THAT(run({"status"}).output + run({"status"}).errors, HasSubstr("airsync retry"));
  EXPECT_EQ(server().contacts("f9").size(), 5U);
  ASSERT_EQ(run({"retry", "f9", copy}).code, 0);
  sync();
  EXPECT_EQ(server().contacts("f9").size(), 6U);
  expectSameOnBothSides();
}

TEST_F(Sync, StopsBeforeItDeletesMuchOfAFolderOnTheServer) {
  serve({"--contacts", "10"});
  sync();
  for (const auto& [id, contact] : server().contacts("f9")) {
    if (contactsHere().size() > 4) {
      ASSERT_EQ(run({"delete", "id:f9", id}).code, 0);
    }
  }
  const Finished stopped = run({"sync"});
  EXPECT_EQ(stopped.code, 7);  // that folder only
  EXPECT_THAT(stopped.errors,
              HasSubstr("6 of its 10 items would be deleted on the server, and nothing was sent"));
  EXPECT_EQ(run({"sync", "f9"}).code, 8);
  EXPECT_EQ(server().contacts("f9").size(), 10U);
  const Finished meant = run({"--json", "sync", "f9", "--allow-deletes"});
  EXPECT_EQ(meant.code, 0);
  EXPECT_EQ(meant.json().at("accounts").at(0).at("folders").at(0).at("changes").at("sent_deletions"), 6);
  EXPECT_EQ(server().contacts("f9").size(), 4U);
  expectSameOnBothSides();
}

TEST_F(Sync, StopsBeforeTheServerDeletesMuchOfAFolderHere) {
  serve({"--contacts", "10"});
  sync();
  int left = 10;
  for (const auto& [id, contact] : server().contacts("f9")) {
    if (left-- > 4) server().remove("f9", id);
  }
  const Finished stopped = run({"sync", "f9"});
  EXPECT_EQ(stopped.code, 8);
  EXPECT_THAT(stopped.errors, HasSubstr("the server deleted 6 of its 10 items, and they are kept here"));
  EXPECT_EQ(contactsHere().size(), 10U);
  EXPECT_EQ(run({"sync", "f9"}).code, 8);  // and stays so
  EXPECT_EQ(run({"sync", "f9", "--allow-deletes"}).code, 0);
  expectSameOnBothSides();
  EXPECT_EQ(run({"--json", "trash"}).json().at("items").size(), 6U);
}

TEST_F(Sync, SetsAChangeAsideThatIsTooLargeAndSendsTheRest) {
  serve({"--contacts", "0"});
  sync();
  json large = kAnn;
  large["Body"] = std::string(20000, 'x');
  const Finished noted = run({"add", "f9", "-"}, large.dump());
  EXPECT_EQ(noted.code, 0);
  EXPECT_THAT(noted.errors, HasSubstr("a request has room for about 9400"));
  addHere(kAnn);
  const Finished result = run({"sync", "f9"});
  EXPECT_EQ(result.code, 7) << result.errors;
  EXPECT_THAT(result.errors, HasSubstr("the change is too large for any request"));
  EXPECT_EQ(server().contacts("f9").size(), 1U);
  const Finished status = run({"--json", "status"});
  const json failures = status.json().at("accounts").at(0).at("failures");
  ASSERT_EQ(failures.size(), 1U);
  const std::string number = std::to_string(failures.at(0).at("number").get<long long>());
  EXPECT_EQ(failures.at(0).at("change").at("state"), "failed");
  ASSERT_EQ(run({"discard", "f9", number}).code, 0);
  EXPECT_EQ(run({"sync", "f9"}).code, 0);
  expectSameOnBothSides();
}

}  // namespace
}  // namespace airsync::integration
