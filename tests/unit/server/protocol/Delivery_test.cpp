#include "protocol/Delivery.h"

#include <gtest/gtest.h>

#include "protocol/Status.h"
#include "support/Mailroom.h"

namespace demoserver {
namespace {

using nlohmann::json;
using DemoDelivery = Mailroom;

constexpr char kToOthers[] =
    "From: \"Demo\" <demo@example.com>\r\n"
    "To: Ada Lovelace <ada@example.org>, bob@example.org\r\n"
    "Cc: carol@example.org\r\n"
    "Reply-To: desk@example.org\r\n"
    "Subject: AW: Re:  Plans\r\n"
    "Date: Fri, 20 Nov 2026 08:00:00 +0000\r\n"
    "Importance: low\r\n"
    "\r\n"
    "Hello\r\n";

TEST_F(DemoDelivery, SavesInSentItemsWhenAsked) {
  posting.saveInSent = true;
  deliver(state, posting, kToOthers);
  const json expected = {{"From", "Demo <demo@example.com>"},
                         {"To", "Ada Lovelace <ada@example.org>, bob@example.org"},
                         {"Cc", "carol@example.org"},
                         {"ReplyTo", "desk@example.org"},
                         {"Subject", "AW: Re:  Plans"},
                         {"ThreadTopic", "Plans"},
                         {"DisplayTo", "Ada Lovelace; bob@example.org"},
                         {"DateReceived", "2026-11-20T08:00:00Z"},
                         {"Importance", 0},
                         {"Read", true},
                         {"MessageClass", "IPM.Note"},
                         {"Body", "Hello\n"}};
  EXPECT_EQ(records("f5"), std::vector<json>{expected});
  EXPECT_EQ(state.items.count("f2"), 0);
}

TEST_F(DemoDelivery, KeepsTheMessageByteForByte) {
  posting.saveInSent = true;
  const std::string odd = std::string(kToOthers) + std::string("\0\xFF\nno end", 9);
  deliver(state, posting, odd);
  EXPECT_EQ(state.messages.find(state.items.list("f5").at(0).id), odd);
}

TEST_F(DemoDelivery, SavesNothingUnasked) {
  deliver(state, posting, kToOthers);
  EXPECT_EQ(state.items.count("f5"), 0);
  EXPECT_EQ(state.items.count("f2"), 0);
}

TEST_F(DemoDelivery, ArrivesUnreadInTheInboxOfTheOwnAddress) {
  for (const char* line : {"To: x@example.org, Me <DEMO@Example.com>", "Cc: demo@example.com"})
    deliver(state, posting, std::string(line) + "\r\nDate: Fri, 20 Nov 2026 08:00:00 +0000\r\n\r\nHi");
  for (const json& record : records("f2")) {
    EXPECT_EQ(record["Read"], false);
    EXPECT_EQ(record["DateReceived"], "2026-11-21T09:00:00Z");
  }
  EXPECT_EQ(state.items.count("f2"), 2);
  deliver(state, posting, "Bcc: demo@example.com\r\n\r\nHi");
  deliver(state, posting, "To: demo@example.com.example.org\r\n\r\nHi");
  EXPECT_EQ(state.items.count("f2"), 2);
}

TEST_F(DemoDelivery, EachCopyHasItsOwnAttachments) {
  posting.saveInSent = true;
  deliver(state, posting,
          "To: demo@example.com\r\nContent-Type: multipart/mixed; boundary=x\r\n\r\n"
          "--x\r\n\r\ntext\r\n--x\r\nContent-Type: image/png; name=\"a b.png\"\r\n"
          "Content-Transfer-Encoding: base64\r\n\r\nAAEC\r\n--x--\r\n");
  const json sent = records("f5").at(0)["Attachments"].at(0);
  const json received = records("f2").at(0)["Attachments"].at(0);
  EXPECT_EQ(sent["Name"], "a b.png");
  EXPECT_EQ(sent["DisplayName"], "a b.png");
  EXPECT_EQ(sent["Size"], 6);
  EXPECT_EQ(sent["Method"], 1);
  EXPECT_NE(sent["OID"], received["OID"]);
  EXPECT_EQ(state.attachments.find(sent["OID"])->content, std::string("\0\1\2", 3));
  EXPECT_EQ(state.attachments.find(received["OID"])->type, "image/png");
  EXPECT_EQ(records("f2").at(0)["Body"], "text");
}

TEST_F(DemoDelivery, TakesAMessageWithoutHeaders) {
  posting.saveInSent = true;
  deliver(state, posting, "\r\njust text");
  const json expected = {{"DateReceived", "2026-11-21T09:00:00Z"},
                         {"Importance", 1},
                         {"Read", true},
                         {"MessageClass", "IPM.Note"},
                         {"Body", "just text"}};
  EXPECT_EQ(records("f5"), std::vector<json>{expected});
}

TEST_F(DemoDelivery, RefusesAnEmptyMessage) { EXPECT_THROW(deliver(state, posting, ""), BadRequest); }

}  // namespace
}  // namespace demoserver
