// Mails: what comes, what may be changed, and getting one whole.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "integration/Fixture.h"

namespace airsync::integration {
namespace {

using nlohmann::json;
using testing::HasSubstr;
using testing::Not;

constexpr const char* kInbox = "f2";
constexpr const char* kDeletedItems = "f4";
constexpr const char* kNow = "2026-11-21T12:00:00Z";

json mail(const std::string& subject = "Lunch?") {
  return {{"To", "\"Demo\" <demo@example.com>"},
          {"Cc", "cc@example.com"},
          {"From", "\"Ann\" <ann@example.com>"},
          {"ReplyTo", "reply@example.com"},
          {"DateReceived", "2026-11-20T08:30:00Z"},
          {"Subject", subject},
          {"DisplayTo", "Demo"},
          {"Importance", 2},
          {"Read", false},
          {"MessageClass", "IPM.Note"},
          {"ThreadTopic", "Lunch"},
          {"Body", "one\ntwo Ünï"}};
}

class MailSync : public AirsyncTest {
 protected:
  MailSync() { serve({"--contacts", "0", "--now", kNow}); }

  json show(const std::string& item) { return run({"--json", "show", "Inbox", item}).json().at("record"); }
};

TEST_F(MailSync, BringsAMailWithItsMeetingRequest) {
  json invitation = mail("Invitation");
  invitation["MessageClass"] = "IPM.Schedule.Meeting.Request";
  invitation["MeetingRequest"] = {{"StartTime", "2026-11-25T09:00:00Z"},
                                  {"EndTime", "2026-11-25T10:00:00Z"},
                                  {"DtStamp", "2026-11-20T08:00:00Z"},
                                  {"Location", "Room 1"},
                                  {"Reminder", 15},
                                  {"AllDayEvent", false},
                                  {"BusyStatus", 2},
                                  {"Sensitivity", 0},
                                  {"InstanceType", 1},
                                  {"Organizer", "ann@example.com"},
                                  {"ResponseRequested", 1},
                                  {"GlobalObjId", "040000008200E00074C5"},
                                  {"Recurrence", {{"Type", 1}, {"Interval", 2}, {"DayOfWeek", 8}}}};
  const std::string id = server().add(kInbox, invitation);
  const Finished result = run({"sync", "Inbox"});
  ASSERT_EQ(result.code, 0) << result.errors;
  EXPECT_EQ(result.output, "Inbox: 1 added\n");
  const json here = show(id);
  for (const auto& [name, value] : invitation.items()) {
    if (name == "MeetingRequest") continue;
    EXPECT_EQ(here.at(name), value) << name;
  }
  for (const auto& [name, value] : invitation.at("MeetingRequest").items()) {
    EXPECT_EQ(here.at("MeetingRequest").at(name), value) << name;
  }
  const json item = run({"--json", "list", "Inbox"}).json().at("items").at(0);
  EXPECT_EQ(item.at("meeting_request"), true);
  EXPECT_THAT(run({"show", "Inbox", id}).output, HasSubstr("MeetingRequest:\n"));
}

TEST_F(MailSync, TellsTheServerWhatWasReadHere) {
  const std::string id = server().add(kInbox, mail());
  sync();
  const Finished marked = run({"mark", "Inbox", id, "--read"});
  EXPECT_EQ(marked.code, 0) << marked.errors;
  EXPECT_THAT(marked.output, HasSubstr("is read; airsync sync tells the server"));
  EXPECT_EQ(folder(kInbox).at("pending"), 1);
  EXPECT_EQ(run({"--json", "mark", "Inbox", id, "--read"}).json().at("action"), "none");
  EXPECT_EQ(run({"sync", "Inbox"}).output, "Inbox: 1 sent to the server\n");
  EXPECT_EQ(server().items(kInbox).at(id).at("Read"), true);
  EXPECT_EQ(server().items(kInbox).at(id).at("Subject"), "Lunch?");

  ASSERT_EQ(run({"mark", "Inbox", id, "--unread"}).code, 0);
  sync();
  EXPECT_EQ(server().items(kInbox).at(id).at("Read"), false);
}

TEST_F(MailSync, LearnsWhatWasReadElsewhereAndKeepsTheRest) {
  const std::string id = server().add(kInbox, mail());
  sync();
  const json before = show(id);
  json read = mail();
  read["Read"] = true;
  server().replace(kInbox, id, read);
  EXPECT_EQ(run({"sync", "Inbox"}).output, "Inbox: 1 changed\n");
  json expected = before;
  expected["Read"] = true;
  EXPECT_EQ(show(id), expected);
}

TEST_F(MailSync, BringsWhatItMovesToDeletedItemsInTheSameRun) {
  const std::string id = server().add(kInbox, mail());
  sync();
  ASSERT_EQ(run({"delete", "Inbox", id}).code, 0);
  sync();
  const auto here = itemsHere(kDeletedItems);
  ASSERT_EQ(here.size(), 1U);
  EXPECT_EQ(here.begin()->second.at("Subject"), "Lunch?");
}

TEST_F(MailSync, MovesDeletedMailsToDeletedItems) {
  const std::string id = server().add(kInbox, mail());
  sync();
  ASSERT_EQ(run({"delete", "Inbox", id}).code, 0);
  sync();
  EXPECT_TRUE(server().items(kInbox).empty());
  ASSERT_EQ(server().items(kDeletedItems).size(), 1U);
  EXPECT_EQ(server().items(kDeletedItems).begin()->second.at("Subject"), "Lunch?");
}

TEST_F(MailSync, FetchesAMailWhoseBodyWasCut) {
  json longMail = mail();
  longMail["Body"] = "begin " + std::string(9000, 'x') + " end";
  const std::string id = server().add(kInbox, longMail);
  configure(url(), "truncation = 1\n");
  sync();
  EXPECT_EQ(show(id).at("BodyTruncated"), true);
  EXPECT_LT(show(id).at("Body").get<std::string>().size(), 5000U);
  EXPECT_EQ(run({"--json", "list", "Inbox"}).json().at("items").at(0).at("truncated"), true);
  EXPECT_THAT(run({"list", "Inbox"}).output, HasSubstr("cut"));

  const Finished fetched = run({"fetch", "Inbox", id});
  ASSERT_EQ(fetched.code, 0) << fetched.errors;
  EXPECT_THAT(fetched.output, HasSubstr("is here in full; its Body has 9010 bytes"));
  EXPECT_EQ(show(id).at("Body"), longMail.at("Body"));
  EXPECT_NE(show(id).value("BodyTruncated", false), true);
  EXPECT_EQ(run({"--json", "list", "Inbox"}).json().at("items").at(0).at("truncated"), false);
  // It stays whole.
  EXPECT_EQ(run({"sync", "Inbox"}).output, "Inbox: up to date\n");
  EXPECT_EQ(show(id).at("Body"), longMail.at("Body"));
  EXPECT_EQ(run({"--json", "fetch", "Inbox", id}).json().at("body_bytes"), 9010);
}

TEST_F(MailSync, SaysWhereABodyIsLongerThanTheProtocolCarries) {
  json longMail = mail();
  longMail["Body"] = std::string(70000, 'x');
  const std::string id = server().add(kInbox, longMail);
  sync();
  EXPECT_EQ(show(id).at("BodyTruncated"), true);
  EXPECT_EQ(show(id).at("BodySize"), 70000);
  EXPECT_EQ(show(id).at("Body"), std::string(65536, 'x'));
  const Finished fetched = run({"fetch", "Inbox", id});
  EXPECT_EQ(fetched.code, 0) << fetched.errors;
  EXPECT_THAT(fetched.output,
              HasSubstr("is here but for the end of its Body, of which 65536 bytes came: the protocol "
                        "carries no more"));
}

TEST_F(MailSync, FetchMakesAnEventWithACutBodyFitForAChange) {
  const json event = {{"Subject", "Long"},
                      {"Body", std::string(6000, 'y')},
                      {"StartTime", "2026-11-23T09:00:00Z"},
                      {"EndTime", "2026-11-23T10:00:00Z"}};
  const std::string id = server().add("f8", event);
  configure(url(), "truncation = 1\n");
  sync();
  ASSERT_TRUE(run({"--json", "show", "f8", id}).json().at("record").at("BodyTruncated").get<bool>());
  const Finished refused = run({"change", "f8", id, "-"}, R"({"Location":"here"})");
  EXPECT_EQ(refused.code, 8);
  EXPECT_THAT(refused.errors, HasSubstr("Run airsync fetch f8 1 first"));
  ASSERT_EQ(run({"fetch", "f8", id}).code, 0);
  ASSERT_EQ(run({"change", "f8", id, "-"}, R"({"Location":"here"})").code, 0);
  sync();
  EXPECT_EQ(server().items("f8").at(id).at("Body"), event.at("Body"));
  EXPECT_EQ(server().items("f8").at(id).at("Location"), "here");
}

TEST_F(MailSync, FetchBringsTheServersChangesToo) {
  const std::string id = server().add(kInbox, mail());
  sync();
  const std::string other = server().add(kInbox, mail("Another"));
  const Finished fetched = run({"fetch", "Inbox", id});
  ASSERT_EQ(fetched.code, 0) << fetched.errors;
  EXPECT_THAT(fetched.output, HasSubstr("Inbox: 1 added"));
  EXPECT_EQ(show(other).at("Subject"), "Another");
}

TEST_F(MailSync, FetchTellsWhatIsNotOnTheServer) {
  const std::string id = server().add(kInbox, mail());
  sync();
  server().remove(kInbox, id);
  const Finished gone = run({"fetch", "Inbox", id});
  EXPECT_EQ(gone.code, 6);
  EXPECT_THAT(gone.errors, HasSubstr("airsync sync"));
  const Finished unknown = run({"fetch", "Inbox", "999"});
  EXPECT_EQ(unknown.code, 1);
  const long long added = addHere({{"FirstName", "Ann"}});
  const Finished unsent = run({"fetch", "f9", std::to_string(added)});
  EXPECT_EQ(unsent.code, 1);
  EXPECT_THAT(unsent.errors, HasSubstr("the server does not know it yet"));
}

// A request that was never answered is repeated before anything else is asked under its key.
TEST_F(MailSync, FetchSynchronisesFirstWhenAnAnswerWasLost) {
  const std::string id = server().add(kInbox, mail());
  sync();
  ASSERT_EQ(run({"mark", "Inbox", id, "--read"}).code, 0);
  serve({"--now", kNow, "--fail-cmd", "Sync", "--close-before-answer"});
  EXPECT_EQ(run({"sync", "Inbox"}).code, 4);
  serve({"--now", kNow});
  const Finished fetched = run({"fetch", "Inbox", id});
  ASSERT_EQ(fetched.code, 0) << fetched.errors;
  EXPECT_THAT(fetched.errors, HasSubstr("a request had not been answered, so it was synchronised first"));
  EXPECT_EQ(folder(kInbox).at("pending"), 0);
  EXPECT_EQ(server().items(kInbox).at(id).at("Read"), true);
  EXPECT_EQ(show(id).at("Read"), true);
}

TEST_F(MailSync, FetchThatBreaksOffLeavesTheItemAsItWas) {
  json longMail = mail();
  longMail["Body"] = std::string(9000, 'x');
  const std::string id = server().add(kInbox, longMail);
  configure(url(), "truncation = 1\n");
  sync();
  const json before = show(id);
  serve({"--now", kNow, "--fail-cmd", "Sync", "--cut-body", "500"});
  const Finished cut = run({"fetch", "Inbox", id});
  EXPECT_EQ(cut.code, 4) << cut.errors;
  EXPECT_THAT(cut.errors, HasSubstr("fetching item 1 of folder \"Inbox\""));
  EXPECT_EQ(show(id), before);
  serve({"--now", kNow});
  ASSERT_EQ(run({"fetch", "Inbox", id}).code, 0);
  EXPECT_EQ(show(id).at("Body"), longMail.at("Body"));
}

TEST_F(MailSync, KeepsToTheFilterOfTheConfiguration) {
  json old = mail("Old");
  old["DateReceived"] = "2026-11-01T08:00:00Z";
  const std::string oldId = server().add(kInbox, old);
  const std::string recentId = server().add(kInbox, mail("Recent"));
  configure(url(), "[account.demo.folder.Inbox]\nfilter = 3\n");
  sync();
  EXPECT_EQ(run({"show", "Inbox", oldId}).code, 1);
  EXPECT_EQ(run({"show", "Inbox", recentId}).code, 0);
}

TEST_F(MailSync, ListsMailsWithTheirColumns) {
  server().add(kInbox, mail());
  sync();
  const std::string list = run({"list", "Inbox"}).output;
  EXPECT_EQ(list.substr(0, list.find('\n')),
            "NUMBER  DATE                  FROM                     SUBJECT  FLAGS   LOCAL CHANGE");
  EXPECT_THAT(list, HasSubstr("2026-11-20T08:30:00Z  \"Ann\" <ann@example.com>  Lunch?   unread\n"));
  const json item = run({"--json", "list", "Inbox"}).json().at("items").at(0);
  EXPECT_EQ(item.at("from"), "\"Ann\" <ann@example.com>");
  EXPECT_EQ(item.at("received"), "2026-11-20T08:30:00Z");
  EXPECT_EQ(item.at("read"), false);
  EXPECT_EQ(item.at("attachments"), 0);
}

TEST_F(MailSync, RefusesToAddOrChangeMailsByARecord) {
  const std::string id = server().add(kInbox, mail());
  sync();
  const Finished added = run({"add", "Inbox", "-"}, R"({"Subject":"x"})");
  EXPECT_EQ(added.code, 1);
  EXPECT_THAT(added.errors, HasSubstr("airsync send FILE"));
  const Finished changed = run({"change", "Inbox", id, "-"}, R"({"Subject":"x"})");
  EXPECT_EQ(changed.code, 1);
  EXPECT_THAT(changed.errors, HasSubstr("airsync mark FOLDER ID --read"));
  const long long contact = addHere({{"FirstName", "Ann"}});
  const Finished marked = run({"mark", "f9", std::to_string(contact), "--read"});
  EXPECT_EQ(marked.code, 1);
  EXPECT_THAT(marked.errors, HasSubstr("it is no mail"));
}

}  // namespace
}  // namespace airsync::integration
