// Sending, answering and forwarding, against the demo server. Messages to the account's own address arrive in
// its Inbox.
#include <algorithm>
#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "integration/Fixture.h"

namespace airsync::integration {
namespace {

using nlohmann::json;
using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;

constexpr char kMessage[] =
    "From: demo@example.com\r\nTo: demo@example.com\r\nSubject: Tea\r\n"
    "Date: Sat, 21 Nov 2026 12:00:00 +0000\r\nMessage-ID: <1@example.com>\r\n\r\nAt four.\r\n";

class MailCommands : public AirsyncTest {
 protected:
  std::string refusal(const std::vector<std::string>& arguments, const std::string& input = {}) {
    const Finished result = run(arguments, input);
    return std::to_string(result.code) + " " + result.errors;
  }

  json ask(std::vector<std::string> arguments, const std::string& input = {}) {
    arguments.insert(arguments.begin(), "--json");
    const Finished result = run(arguments, input);
    EXPECT_EQ(result.code, 0) << result.output << result.errors;
    return result.code == 0 ? result.json() : json();
  }

  // The mails of a folder as this side has them after a synchronisation.
  json mails(const std::string& folder) {
    const Finished result = run({"sync", folder});
    EXPECT_EQ(result.code, 0) << result.output << result.errors;
    return ask({"list", folder}).at("items");
  }

  json newest(const std::string& folder) {
    const json all = mails(folder);
    return all.empty() ? json() : ask({"show", folder, std::to_string(all.back().at("number").get<int>())});
  }
};

TEST_F(MailCommands, AMessageArrivesAndACopyIsKept) {
  serve();
  ASSERT_EQ(run({"sync", "f2", "f5"}).code, 0);
  const std::size_t received = mails("f2").size();
  const std::size_t sent = mails("f5").size();
  const json told = ask({"send", "-"}, kMessage);
  EXPECT_EQ(told.at("bytes"), std::string(kMessage).size());
  EXPECT_EQ(told.at("copy"), true);
  EXPECT_EQ(mails("f2").size(), received + 1);
  EXPECT_EQ(mails("f5").size(), sent + 1);
  EXPECT_EQ(newest("f2").at("record").at("Subject"), "Tea");
  EXPECT_EQ(newest("f2").at("record").at("Read"), false);
}

TEST_F(MailCommands, NoCopyIsKeptWhereNobodyWantsOne) {
  serve();
  const std::size_t sent = mails("f5").size();
  writeFile(directory() / "letter.eml", kMessage);
  const json told = ask({"send", (directory() / "letter.eml").string(), "--no-copy"});
  EXPECT_EQ(told.at("copy"), false);
  EXPECT_EQ(mails("f5").size(), sent);
}

TEST_F(MailCommands, ALargeMessageGoesOutWhole) {
  serve();
  std::string message = kMessage;
  while (message.size() < 12 * 1024 * 1024)
    message += "0123456789012345678901234567890123456789012345678901234567\r\n";
  writeFile(directory() / "letter.eml", message);
  EXPECT_EQ(ask({"send", (directory() / "letter.eml").string()}).at("bytes"), message.size());
}

TEST_F(MailCommands, RefusesWhatIsNoMessageBeforeItConnects) {
  configure("http://127.0.0.1:1/service");
  EXPECT_THAT(refusal({"send", "-"}, "Dear Ann"), AllOf(StartsWith("1 "), HasSubstr("header line")));
  EXPECT_THAT(refusal({"send", "-"}, ""), AllOf(StartsWith("1 "), HasSubstr("it is empty")));
  EXPECT_THAT(refusal({"send", (directory() / "missing").string()}), StartsWith("1 "));
  const std::string large = (directory() / "large").string();
  writeFile(large, kMessage);
  std::filesystem::resize_file(large, 50 * 1024 * 1024 + 1);
  EXPECT_THAT(refusal({"send", large}), AllOf(StartsWith("1 "), HasSubstr("larger than 50 MiB")));
  writeFile(large, kMessage);
  EXPECT_THAT(refusal({"send", large}), AllOf(StartsWith("4 "), HasSubstr("connecting")));
}

TEST_F(MailCommands, SaysThatAMessageWasRefused) {
  serve({"--fail-cmd", "SendMail", "--fail-status", "403"});
  EXPECT_THAT(refusal({"send", "-"}, kMessage),
              AllOf(StartsWith("8 "), HasSubstr("(HTTP 403)"), HasSubstr("the server refused the message"),
                    testing::Not(HasSubstr("not known"))));
}

TEST_F(MailCommands, DoesNotKnowWhatBecameOfAMessageOverWhichTheServerFailed) {
  serve({"--fail-cmd", "SendMail", "--fail-status", "500"});
  EXPECT_THAT(refusal({"send", "-"}, kMessage),
              AllOf(StartsWith("6 "), HasSubstr("whether the message went out is not known"),
                    HasSubstr("Look into Sent Items"), testing::Not(HasSubstr("refused"))));
}

// Keeps S21.
TEST_F(MailCommands, SaysThatNobodyKnowsWhetherAMessageWithoutAnAnswerWentOut) {
  serve({"--fail-cmd", "SendMail", "--close-before-answer"});
  EXPECT_THAT(refusal({"send", "-"}, kMessage),
              AllOf(StartsWith("4 "), HasSubstr("whether the message went out is not known"),
                    HasSubstr("Look into Sent Items")));
}

TEST_F(MailCommands, AReplyHoldsTheMailThatItAnswers) {
  serve();
  ask({"send", "-"}, kMessage);
  const json mail = newest("f2");
  const std::string number = std::to_string(mail.at("number").get<int>());
  const std::string answer =
      "From: demo@example.com\r\nTo: demo@example.com\r\nSubject: Re: Tea\r\n\r\nGladly.\r\n";
  const json told = ask({"reply", "f2", number, "-"}, answer);
  EXPECT_EQ(told.at("action"), "reply");
  EXPECT_EQ(told.at("id"), mail.at("id"));
  const json arrived = newest("f2");
  EXPECT_EQ(arrived.at("record").at("Subject"), "Re: Tea");
  EXPECT_THAT(arrived.at("record").at("Body").get<std::string>(),
              AllOf(HasSubstr("Gladly."), HasSubstr("> At four.")));
}

TEST_F(MailCommands, AForwardedMailArrivesWithItsText) {
  serve();
  ask({"send", "-"}, kMessage);
  const std::string number = std::to_string(newest("f2").at("number").get<int>());
  const std::string letter =
      "From: demo@example.com\r\nTo: demo@example.com\r\nSubject: Fw: Tea\r\n\r\nLook.\r\n";
  EXPECT_EQ(ask({"forward", "f2", number, "-", "--no-copy"}, letter).at("action"), "forward");
  EXPECT_THAT(newest("f2").at("record").at("Body").get<std::string>(),
              AllOf(HasSubstr("Look."), HasSubstr("At four.")));
}

TEST_F(MailCommands, AReplyToAMailThatIsGoneSaysSo) {
  serve();
  ask({"send", "-"}, kMessage);
  const json mail = newest("f2");
  server().remove("f2", mail.at("id"));
  const std::string number = std::to_string(mail.at("number").get<int>());
  EXPECT_THAT(refusal({"reply", "f2", number, "-"}, kMessage),
              AllOf(StartsWith("6 "), HasSubstr("does not find the mail any more (HTTP 404)")));
}

TEST_F(MailCommands, OnlyMailsAreAnswered) {
  serve();
  sync();
  const std::string contact = contactsHere().begin()->first;
  EXPECT_THAT(refusal({"reply", "f9", contact, "-"}, kMessage),
              AllOf(StartsWith("1 "), HasSubstr("the folder holds no mail")));
  EXPECT_THAT(refusal({"forward", "f9", contact, "-"}, kMessage), StartsWith("1 "));
  EXPECT_THAT(refusal({"respond", "f9", contact, "accept"}), StartsWith("1 "));
}

TEST_F(MailCommands, OnlyMeetingRequestsAreRespondedTo) {
  serve();
  ask({"send", "-"}, kMessage);
  const std::string number = std::to_string(newest("f2").at("number").get<int>());
  EXPECT_THAT(refusal({"respond", "f2", number, "accept"}),
              AllOf(StartsWith("1 "), HasSubstr("it is no meeting request")));
}

TEST_F(MailCommands, AnAcceptedMeetingComesIntoTheCalendar) {
  serve({"--mails", "60"});
  ASSERT_EQ(run({"sync", "f2", "f8"}).code, 0);
  const json inbox = ask({"list", "f2"}).at("items");
  const auto request = std::find_if(inbox.begin(), inbox.end(),
                                    [](const json& mail) { return mail.at("meeting_request") == true; });
  ASSERT_NE(request, inbox.end());
  const json told = ask({"respond", "f2", request->at("id"), "accept"});
  EXPECT_EQ(told.at("action"), "accept");
  ASSERT_TRUE(told.at("calendar_id").is_string());
  const json calendar = mails("f8");
  const auto meeting = std::find_if(calendar.begin(), calendar.end(), [&told](const json& event) {
    return event.at("id") == told.at("calendar_id");
  });
  EXPECT_NE(meeting, calendar.end());
}

TEST_F(MailCommands, ADeclinedMeetingStaysOutOfTheCalendar) {
  serve({"--mails", "60"});
  ASSERT_EQ(run({"sync", "f2", "f8"}).code, 0);
  const json inbox = ask({"list", "f2"}).at("items");
  std::vector<json> requests;
  std::copy_if(inbox.begin(), inbox.end(), std::back_inserter(requests),
               [](const json& mail) { return mail.at("meeting_request") == true; });
  ASSERT_GE(requests.size(), 2U);
  const std::size_t before = server().items("f8").size();
  const json declined = ask({"respond", "f2", requests[0].at("id"), "decline"});
  EXPECT_EQ(declined.at("action"), "decline");
  EXPECT_TRUE(declined.at("calendar_id").is_null()) << declined;
  EXPECT_EQ(server().items("f8").size(), before);
  const json tentative = ask({"respond", "f2", requests[1].at("id"), "tentative"});
  ASSERT_TRUE(tentative.at("calendar_id").is_string()) << tentative;
  EXPECT_EQ(server().items("f8").size(), before + 1);
  EXPECT_EQ(server().items("f8").at(tentative.at("calendar_id")).at("BusyStatus"), 1);
}

TEST_F(MailCommands, MailsMoveToOtherFolders) {
  serve();
  ask({"send", "-"}, kMessage);
  const json mail = newest("f2");
  const std::string number = std::to_string(mail.at("number").get<int>());
  ASSERT_EQ(run({"sync", "m/1"}).code, 0);
  const json moved = ask({"move", "id:f2", number, "--to", "id:m/1"});
  EXPECT_EQ(moved.at("items").at(0).at("status"), 3);
  EXPECT_EQ(mails("f2").size(), 0U);
  EXPECT_EQ(newest("m/1").at("record").at("Subject"), "Tea");
}

}  // namespace
}  // namespace airsync::integration
