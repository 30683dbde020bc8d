#include "cli/output/Words.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "cli/output/FailureList.h"
#include "cli/output/Json.h"
#include "cli/session/Report.h"
#include "cli/session/SupportedClasses.h"

namespace airsync {
namespace {

using namespace AIRSYNC_STACK;

Folder folderOf(std::optional<DATATYPE> dataType) {
  Folder folder;
  folder.number = 3;
  folder.serverId = "f9";
  folder.parentId = "0";
  folder.name = "Contacts";
  folder.path = "Contacts";
  folder.type = 9;
  folder.dataType = dataType;
  folder.syncKey = "k1";
  folder.items = 4;
  folder.pending = 2;
  folder.failed = 1;
  return folder;
}

TEST(Participation, IsDecidedByClassAndFate) {
  EXPECT_EQ(participationOf(folderOf(DATATYPE_CONTACTS)), Participation::yes);
  EXPECT_EQ(participationOf(folderOf(DATATYPE_CALENDAR)), Participation::yes);
  EXPECT_EQ(participationOf(folderOf(DATATYPE_EMAIL)), Participation::yes);
  EXPECT_EQ(participationOf(folderOf(std::nullopt)), Participation::never);
  Folder gone = folderOf(DATATYPE_CONTACTS);
  gone.gone = true;
  EXPECT_EQ(participationOf(gone), Participation::gone);
}

TEST(Words, NameTheStateOfAFolder) {
  Account account;
  EXPECT_EQ(stateOf(account, folderOf(DATATYPE_CONTACTS)), "synchronised");
  EXPECT_EQ(stateOf(account, folderOf(DATATYPE_EMAIL)), "synchronised");
  EXPECT_EQ(stateOf(account, folderOf(std::nullopt)), "never");
  account.policy.selected = false;
  EXPECT_EQ(stateOf(account, folderOf(DATATYPE_CONTACTS)), "not-selected");
}

TEST(Words, SumUpWhatASynchronisationDid) {
  EXPECT_EQ(sentenceOf(SyncOutcome()), "up to date");
  SyncOutcome outcome;
  outcome.added = 1000;
  outcome.deleted = 2;
  outcome.sent = 3;
  EXPECT_EQ(sentenceOf(outcome), "1000 added, 2 deleted, 3 sent to the server");
}

TEST(Words, GiveTheReasonOrTheStatusOfAChange) {
  PendingChange change;
  EXPECT_EQ(reasonOf(change), "");
  change.status = 7;
  EXPECT_EQ(reasonOf(change), "the server refused the change (status 7)");
  change.reason = "too large\n";
  EXPECT_EQ(reasonOf(change), "too large\\x0a");
}

Failure failure() {
  Failure failed;
  failed.folderName = "Ann's";
  failed.item = 12;
  failed.serverId = "s1";
  failed.name = "Bob";
  failed.change.kind = ChangeKind::remove;
  failed.change.state = PendingChange::State::failed;
  failed.change.status = 7;
  return failed;
}

TEST(FailureList, TellsWhatFailedAndWhatToType) {
  EXPECT_THAT(
      failureLines({failure()}, ""),
      testing::ElementsAre("Ann's, item 12 (Bob): delete failed: the server refused the change (status 7)",
                           "  to send it again: airsync retry 'Ann'\\''s' 12; to give it up: airsync "
                           "discard 'Ann'\\''s' 12"));
  EXPECT_THAT(failureLines({failure()}, "work").at(1), testing::HasSubstr("airsync --account work retry "));
}

// To send it again is in vain; and without its addition a new item is nothing at all.
TEST(FailureList, GivesNoAdviceThatCantHelp) {
  Failure large = failure();
  large.change.kind = ChangeKind::add;
  large.change.status = 0;
  large.change.reason = "the change is too large for any request (about 9,400 bytes)";
  EXPECT_EQ(
      failureLines({large}, "").at(1),
      "  it was not sent; to make it smaller: airsync change 'Ann'\\''s' 12 RECORD; to forget the item: "
      "airsync discard 'Ann'\\''s' 12");
}

TEST(Json, OfAFolderHasTheDocumentedShape) {
  EXPECT_EQ(folderJson(Account(), folderOf(DATATYPE_CONTACTS)).dump(),
            R"({"id":"f9","parent":"0","name":"Contacts","path":"Contacts","type":9,"type_name":"contacts")"
            R"(,"class":"contacts","state":"synchronised","sync_key":"k1","items":4,"pending":2,"failed":1)"
            R"(,"last_sync":null})");
}

TEST(Json, OfAFailureHasTheDocumentedShape) {
  const Json change = {{"kind", "delete"},
                       {"state", "failed"},
                       {"status", 7},
                       {"reason", "the server refused the change (status 7)"}};
  const Json expected = {{"folder", "Ann's"},  {"number", 12},     {"id", "s1"},      {"name", "Bob"},
                         {"copy_of", nullptr}, {"change", change}, {"since", nullptr}};
  EXPECT_EQ(failureJson(failure()).dump(), expected.dump());
}

TEST(Json, OfAnItemHasTheDocumentedShape) {
  ItemSummary summary;
  summary.number = 5;
  summary.details = ContactSummary{.name = "Ann", .email = "", .phone = ""};
  EXPECT_EQ(summaryJson(summary).dump(),
            R"({"number":5,"id":null,"name":"Ann","email":"","phone":"","pending":null})");
  StoredItem item;
  item.number = 5;
  item.serverId = "s5";
  std::get<Contact>(item.value).set("FirstName", std::string("Ann"));
  EXPECT_EQ(itemJson(item).dump(), R"({"number":5,"id":"s5","pending":null,"record":{"FirstName":"Ann"}})");
}

TEST(Json, OfARunHasTheDocumentedShape) {
  Account account;
  account.name = "work";
  AccountReport report;
  report.folders.resize(4);
  for (FolderReport& folder : report.folders) {
    folder.folder = folderOf(DATATYPE_CONTACTS);
    folder.tried = true;
  }
  report.folders[0].outcome.added = 3;
  report.folders[0].outcome.conflicts = {
      {.outcome = Conflict::Outcome::keptBoth, .item = 3, .copy = 9, .name = "Ada"}};
  report.folders[1].trouble = Trouble{ExitCode::kServer, "it failed", "Wait."};
  report.folders[1].notTaken = 2;
  report.folders[3].tried = false;
  report.folders[2].skipped = true;
  report.folders[2].whySkipped = "can't be synchronised";
  const std::string zeros =
      R"("changed":0,"deleted":0,"sent":0,"sent_deletions":0,"refused":0,"overwritten":0,"ignored":0})";
  const std::string copied = R"(,"conflicts":[{"outcome":"kept-both","number":3,"copy":9,"name":"Ada"}])";
  EXPECT_EQ(
      reportJson(account, report).dump(),
      R"({"account":"work","exit":{"code":7,"name":"partly-done"},"error":null,"folder_list_error":null,"folders":[)"
      R"({"id":"f9","path":"Contacts","result":"done","begun_anew":false,"changes":{"added":3,)" +
          zeros + R"(,"not_taken":0)" + copied +
          R"(,"error":null},)"
          R"({"id":"f9","path":"Contacts","result":"failed","begun_anew":false,"changes":{"added":0,)" +
          zeros +
          R"(,"not_taken":2,"conflicts":[],"error":{"exit":{"code":6,"name":"server"},"message":"it failed","advice":"Wait."}},)"
          R"({"id":"f9","path":"Contacts","result":"skipped","why":"can't be synchronised"},)"
          R"({"id":"f9","path":"Contacts","result":"not reached"}],"failures":[]})");
}

TEST(AccountReport, TakesTheCodeOfWhatEndedTheAccount) {
  AccountReport report;
  report.folders.resize(1);
  report.trouble = Trouble{ExitCode::kNetwork, "", ""};
  EXPECT_EQ(report.exitCode(), ExitCode::kNetwork);
}

TEST(AccountReport, LetsItsFoldersDecideOtherwise) {
  AccountReport report;
  EXPECT_EQ(report.exitCode(), ExitCode::kDone);
  report.folders.resize(2);
  EXPECT_EQ(report.exitCode(), ExitCode::kDone);
  report.folders[0].trouble = Trouble{ExitCode::kServer, "", ""};
  EXPECT_EQ(report.exitCode(), ExitCode::kPartlyDone);
  report.folders[1].skipped = true;
  EXPECT_EQ(report.exitCode(), ExitCode::kServer);
}

TEST(AccountReport, CountsTheListOfFoldersAsAPiece) {
  AccountReport report;
  report.listTrouble = Trouble{ExitCode::kServer, "", ""};
  EXPECT_EQ(report.exitCode(), ExitCode::kServer);
  report.folders.resize(1);
  EXPECT_EQ(report.exitCode(), ExitCode::kPartlyDone);
}

TEST(AccountReport, IsPartlyDoneWhenTheServerTookNoChange) {
  AccountReport report;
  report.folders.resize(1);
  report.folders[0].notTaken = 1;
  EXPECT_EQ(report.exitCode(), ExitCode::kPartlyDone);
}

TEST(AccountReport, IsPartlyDoneWhileChangesNeedAPerson) {
  AccountReport report;
  report.folders.resize(1);
  report.failures.push_back(failure());
  EXPECT_EQ(report.exitCode(), ExitCode::kPartlyDone);
}

TEST(Report, AddsUpTheOutcomesOfSeveralCalls) {
  SyncOutcome sum;
  SyncOutcome one;
  one.added = 1;
  one.changed = 2;
  one.deleted = 3;
  one.sent = 4;
  one.refused = 5;
  one.overwritten = 6;
  one.ignored = 7;
  one.keys = 8;
  one.initial = true;
  one.moreToSend = true;
  accumulate(sum, one);
  one.initial = false;
  one.moreToSend = false;
  accumulate(sum, one);
  EXPECT_EQ(sum.added, 2U);
  EXPECT_EQ(sum.changed, 4U);
  EXPECT_EQ(sum.deleted, 6U);
  EXPECT_EQ(sum.sent, 8U);
  EXPECT_EQ(sum.refused, 10U);
  EXPECT_EQ(sum.overwritten, 12U);
  EXPECT_EQ(sum.ignored, 14U);
  EXPECT_EQ(sum.keys, 16U);
  EXPECT_FALSE(sum.initial);
  EXPECT_FALSE(sum.moreToSend);
}

}  // namespace
}  // namespace airsync
