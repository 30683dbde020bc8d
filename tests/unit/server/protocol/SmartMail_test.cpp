#include "protocol/SmartMail.h"

#include <gtest/gtest.h>

#include "protocol/Status.h"
#include "support/Mailroom.h"

namespace demoserver {
namespace {

using nlohmann::json;

class DemoSmartMail : public Mailroom {
 protected:
  DemoSmartMail() {
    posting.saveInSent = true;
    original = state.items
                   .add("m%2F1", {{"From", "Ada <ada@example.org>"},
                                  {"To", "demo@example.com"},
                                  {"Subject", "Plans"},
                                  {"DateReceived", "2026-11-20T08:00:00Z"},
                                  {"Importance", 1},
                                  {"Read", true},
                                  {"Body", "first\r\nsecond\n\nlast"}})
                   .id;
  }
  void send(SmartKind kind, const MailReference& reference) {
    sendSmart(state, posting, kind, reference, "To: ada@example.org\r\nSubject: Re: Plans\r\n\r\nMine");
  }
  json sent() { return records("f5").at(0); }

  std::string original;
};

TEST_F(DemoSmartMail, AReplyQuotesTheOriginal) {
  send(SmartKind::Reply, {{original}, {"m%2F1"}});
  EXPECT_EQ(sent()["Body"],
            "Mine\n\nAda <ada@example.org> wrote on 2026-11-20 08:00:00 UTC:\n"
            "> first\n> second\n> \n> last\n");
  EXPECT_EQ(sent()["Subject"], "Re: Plans");
  EXPECT_FALSE(sent().contains("Attachments"));
}

TEST_F(DemoSmartMail, AForwardHasHeadingTextAndAttachments) {
  state.attachments.add(original, "a.png", "image/png", std::string("\0\n", 2));
  state.attachments.add(original, "empty", "", "");
  send(SmartKind::Forward, {{original}, {"m%2F1"}});
  EXPECT_EQ(sent()["Body"],
            "Mine\n\n----- Original message -----\nFrom: Ada <ada@example.org>\n"
            "Sent: 2026-11-20 08:00:00 UTC\nTo: demo@example.com\nSubject: Plans\n\nfirst\nsecond\n\nlast");
  const json attachments = sent()["Attachments"];
  ASSERT_EQ(attachments.size(), 2u);
  EXPECT_EQ(attachments[0]["Name"], "a.png");
  EXPECT_EQ(state.attachments.find(attachments[0]["OID"])->content, std::string("\0\n", 2));
  EXPECT_EQ(state.attachments.find(attachments[1]["OID"])->content, "");
  EXPECT_EQ(state.attachments.list(original).size(), 2u);
}

TEST_F(DemoSmartMail, TheCompletedMessageIsKept) {
  send(SmartKind::Reply, {{original}, {"m%2F1"}});
  const std::string message = *state.messages.find(state.items.list("f5").at(0).id);
  EXPECT_EQ(parseMessage(message).body, sent()["Body"]);
}

TEST_F(DemoSmartMail, TriesEverySpellingInItsOrder) {
  send(SmartKind::Reply, {{"i%2F99", original}, {"m/1", "m%2F1"}});
  EXPECT_EQ(state.items.count("f5"), 1);
}

TEST_F(DemoSmartMail, FindsAMailThatWasMoved) {
  state.moves.move(*state.items.find("m%2F1", original), "f4");
  send(SmartKind::Reply, {{original}, {"m%2F1"}});
  EXPECT_EQ(state.items.count("f5"), 1);
}

TEST_F(DemoSmartMail, NeedsAMail) {
  const std::string contact = state.items.add("f9", {{"FirstName", "A"}}).id;
  const MailReference table[] = {{{original}, {"f2"}}, {{"i/99"}, {"m%2F1"}}, {{contact}, {"f9"}}, {{}, {}},
                                 {{original}, {}},     {{original}, {"gone"}}};
  for (const MailReference& reference : table) {
    EXPECT_THROW(send(SmartKind::Reply, reference), NotFound);
    EXPECT_THROW(send(SmartKind::Forward, reference), NotFound);
  }
  EXPECT_THROW(sendSmart(state, posting, SmartKind::Reply, {{original}, {"m%2F1"}}, ""), BadRequest);
  EXPECT_EQ(state.items.count("f5"), 0);
}

TEST_F(DemoSmartMail, LosesNothingOfAMessageThatIsTooMuch) {
  std::string message = "To: demo@example.com\n";
  for (int i = 0; i < 50'001; ++i) message += "\n--";
  EXPECT_THROW(sendSmart(state, posting, SmartKind::Reply, {{original}, {"m%2F1"}}, message), TooLarge);
  EXPECT_EQ(state.items.count("f5"), 0);
}

TEST_F(DemoSmartMail, RefusesAttachmentsBeyondTheLimit) {
  // Announced as 6 bytes each: 4 of base64 and a line end.
  state.attachments.add(original, "a", "", "abc");
  state.attachments.add(original, "b", "", "def");
  const std::string_view message = "To: ada@example.org\r\n\r\nMine";
  const MailReference reference = {{original}, {"m%2F1"}};
  EXPECT_THROW(sendSmart(state, posting, SmartKind::Forward, reference, message, message.size() + 11),
               TooLarge);
  EXPECT_EQ(state.items.count("f5"), 0);
  sendSmart(state, posting, SmartKind::Reply, reference, message, message.size());
  sendSmart(state, posting, SmartKind::Forward, reference, message, message.size() + 12);
  EXPECT_EQ(state.items.count("f5"), 2);
}

TEST_F(DemoSmartMail, AnOriginalWithoutFieldsIsAnsweredAllTheSame) {
  const std::string bare = put("", "f2");
  state.items.replace(bare, json::object());
  send(SmartKind::Reply, {{bare}, {"f2"}});
  EXPECT_EQ(sent()["Body"], "Mine\n\nSomebody wrote:\n");
}

}  // namespace
}  // namespace demoserver
