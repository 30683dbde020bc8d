// Answers that leave something out, and advice that is of use.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "integration/Fixture.h"
#include "support/HexAndText.h"

namespace airsync::integration {
namespace {

using airsync_test::HexAndText;
using nlohmann::json;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

std::string text(const std::string& value) { return HexAndText("03") + value + HexAndText("00 01"); }

class Answers : public AirsyncTest {
 protected:
  // From now on every such command is answered so, on the same data.
  void serveAnswer(const std::string& command, const std::string& bytes,
                   std::vector<std::string> switches = {}) {
    writeFile(directory() / "answer", bytes);
    switches.insert(switches.end(),
                    {"--fail-cmd", command, "--answer-file", (directory() / "answer").string()});
    serve(switches);
  }
};

TEST_F(Answers, ToAMeetingWithoutAResultAreAFailure) {
  const std::vector<std::string> mails = {"--mails", "60"};
  serveAnswer("MeetingResponse", HexAndText("03 01 6A 00 00 08 47 01"), mails);
  ASSERT_EQ(run({"sync", "f2"}).code, 0);
  std::string request;
  const json inbox = run({"--json", "list", "f2"}).json().at("items");
  for (const json& mail : inbox) {
    if (mail.at("meeting_request") == true) request = mail.at("id");
  }
  ASSERT_FALSE(request.empty());
  const Finished result = run({"respond", "f2", request, "accept"});
  EXPECT_EQ(result.code, 6);
  EXPECT_THAT(result.errors, HasSubstr("the server did not say what became of the answer"));
  EXPECT_EQ(result.output, "");
}

TEST_F(Answers, ToHierarchyWithAnotherRootAreNotNoFolders) {
  serveAnswer("GetHierarchy", HexAndText("03 01 6A 00 00 07 56 4C") + text("6") + HexAndText("01"));
  const Finished result = run({"hierarchy"});
  EXPECT_EQ(result.code, 6);
  EXPECT_THAT(result.errors, AllOf(HasSubstr("the server's answer is no list of folders"),
                                   Not(HasSubstr("the server has no folders"))));
}

class AnswersWithoutAWord : public Answers, public testing::WithParamInterface<const char*> {};

TEST_P(AnswersWithoutAWord, LeaveAChangeNotTaken) {
  serve({"--contacts", "5"});
  sync();
  addHere({{"LastName", "Waiting"}});
  const bool empty = GetParam() == std::string("Empty");
  if (empty) {
    serveAnswer("Sync", "");
  } else {
    serve({"--fail-cmd", "Sync", "--no-collection"});
  }
  const Finished result = run({"sync", "f9"});
  EXPECT_EQ(result.code, 7) << result.errors;
  EXPECT_THAT(result.output, Not(HasSubstr("up to date")));
  EXPECT_THAT(result.errors, HasSubstr("Contacts: 1 local change is not taken yet"));
  EXPECT_EQ(run({"--json", "sync", "f9"}).json().at("accounts").at(0).at("folders").at(0).at("not_taken"), 1);
  serve({});
  sync();
  expectSameOnBothSides();
  EXPECT_EQ(contactsHere().size(), 6U);
}

INSTANTIATE_TEST_SUITE_P(, AnswersWithoutAWord, testing::Values("Empty", "WithoutCollections"),
                         [](const auto& row) { return std::string(row.param); });

// Only receiving, nothing is offered to the server that it could not take.
TEST_F(Answers, WithoutAWordAreFineWhereNothingIsSent) {
  serve({"--contacts", "5"});
  sync();
  addHere({{"LastName", "Waiting"}});
  serve({"--habit", "empty-when-idle"});
  configure(url(), "sync_mode = 2\n");
  const Finished result = run({"sync", "f9"});
  EXPECT_EQ(result.code, 0) << result.errors;
  EXPECT_EQ(result.output, "Contacts: up to date\n");
}

struct FetchRow {
  const char* status;
  const char* told;
};

TEST_F(Answers, ToAFetchAreToldByTheirStatus) {
  serve({"--contacts", "5"});
  sync();
  const std::string id = contactsHere().begin()->first;
  constexpr FetchRow kRows[] = {{"4", "the server found the request malformed (status 4)"},
                                {"5", "the server failed while it read the item (status 5)"},
                                {"8", "the server does not have it any more (status 8)"},
                                {"77", "the server refused to give the item (status 77)"}};
  for (const FetchRow& row : kRows) {
    SCOPED_TRACE(row.status);
    serveAnswer("Sync", HexAndText("03 01 6A 00 45 5C 4F 4B") + text("k") + HexAndText("52") + text("f9") +
                            HexAndText("4E") + text("1") + HexAndText("46 4A 4D") + text(id) +
                            HexAndText("4E") + text(row.status) + HexAndText("01 01 01 01 01"));
    const Finished result = run({"fetch", "f9", id});
    EXPECT_EQ(result.code, 6);
    EXPECT_THAT(result.errors, HasSubstr(row.told));
  }
}

TEST_F(Answers, ToTheListOfCarriersAreWordedForIt) {
  serveAnswer("Notify", HexAndText("03 01 6A 00 00 03 45 50") + text("3") + HexAndText("01"));
  const Finished result = run({"notify", "carriers"});
  EXPECT_EQ(result.code, 6) << result.output;
  EXPECT_THAT(result.errors, HasSubstr("the server refused to list its carriers (status 3)"));
}

TEST_F(Answers, AnAttendeeWithoutAnAddressIsRefusedWhenAdded) {
  serve({"--contacts", "0"});
  sync();
  const std::string event =
      R"({"Subject": "Tea", "StartTime": "2026-11-21T16:00:00Z", "EndTime": "2026-11-21T17:00:00Z")";
  const Finished refused = run({"add", "f8", "-"}, event + R"(, "Attendees": [{"Name": "Bo"}]})");
  EXPECT_EQ(refused.code, 1);
  EXPECT_THAT(refused.errors, HasSubstr("its attendee \"Bo\" has no e-mail address"));
  EXPECT_EQ(run({"add", "f8", "-"}, event + R"(, "Attendees": [{"Email": "bo@example.com"}]})").code, 0);
}

// --- Advice ---

class Advice : public Answers {};

TEST_F(Advice, OnATooLargeChangeIsNotToSendItAgain) {
  serve({"--contacts", "0"});
  sync();
  const long long item = addHere({{"LastName", "Long"}, {"Body", std::string(20'000, 'x')}});
  const std::string number = std::to_string(item);
  const Finished synced = run({"sync", "f9"});
  EXPECT_EQ(synced.code, 7);
  EXPECT_THAT(synced.errors,
              AllOf(HasSubstr("it was not sent; to make it smaller: airsync change 'Contacts' " + number +
                              " RECORD; to forget the item: airsync discard"),
                    Not(HasSubstr("airsync retry"))));
  const Finished retried = run({"retry", "f9", number});
  EXPECT_EQ(retried.code, 8);
  EXPECT_THAT(retried.errors, HasSubstr("it was never sent, since no request has room for it"));
  ASSERT_EQ(run({"change", "f9", number, "-"}, R"({"Body": "short"})").code, 0);
  sync();
  expectSameOnBothSides();
  EXPECT_EQ(contactsHere().size(), 1U);
}

TEST_F(Advice, OnADiscardedAdditionSaysThatTheItemIsGone) {
  serve({"--contacts", "1"});
  sync();
  const std::string added = std::to_string(addHere({{"LastName", "New"}}));
  EXPECT_EQ(run({"discard", "f9", added}).output,
            "Contacts: item " + added + " is gone: the server does not have it\n");
  const std::string id = contactsHere().begin()->first;
  ASSERT_EQ(run({"change", "f9", id, "-"}, R"({"LastName": "Changed"})").code, 0);
  EXPECT_THAT(run({"discard", "f9", id}).output, HasSubstr(" is again as the server has it\n"));
  ASSERT_EQ(run({"delete", "Contacts", id}).code, 0);
  EXPECT_THAT(run({"discard", "f9", "1"}).output, HasSubstr(" is again as the server has it\n"));
}

}  // namespace
}  // namespace airsync::integration
