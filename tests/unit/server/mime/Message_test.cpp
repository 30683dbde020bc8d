#include "mime/Message.h"

#include <gtest/gtest.h>

#include "support/Utf8.h"

namespace demoserver {
namespace {

std::vector<std::string> namesOf(const MimeMessage& message) {
  std::vector<std::string> names;
  for (const MimeAttachment& each : message.attachments) names.push_back(each.name);
  return names;
}

TEST(DemoMessage, HasItsHeadersDecoded) {
  const MimeMessage message = parseMessage(
      "From: =?utf-8?q?J=C3=BCrgen_M?= <jm@example.org>\r\n"
      "To: \"Lovelace, Ada\" <ada@example.org>,\r\n bob@example.org\r\n"
      "Cc: team: carol@example.org, Dan <dan@example.org>;\r\n"
      "Reply-To: desk@example.org\r\n"
      "Subject: =?iso-8859-1?Q?Gr=FC=DFe?= aus\r\n Wien\r\n"
      "Importance: High\r\n"
      "Date: Sat, 21 Nov 2026 10:30:00 +0130\r\n"
      "\r\n"
      "Hello\r\nthere\r\n");
  EXPECT_EQ(message.from, "Jürgen M <jm@example.org>");
  EXPECT_EQ(message.to, "\"Lovelace, Ada\" <ada@example.org>, bob@example.org");
  EXPECT_EQ(message.replyTo, "desk@example.org");
  EXPECT_EQ(message.subject, "Grüße aus Wien");
  EXPECT_EQ(message.importance, "high");
  EXPECT_EQ(message.body, "Hello\nthere\n");
  ASSERT_TRUE(message.date);
  EXPECT_EQ(message.date->time_since_epoch().count(), 1'795'251'600);  // 2026-11-21T09:00:00Z
  ASSERT_EQ(message.recipients.size(), 4u);
  EXPECT_EQ(message.recipients[0].name, "Lovelace, Ada");
  EXPECT_EQ(message.recipients[1].name, "");
  EXPECT_EQ(message.recipients[2].address, "carol@example.org");
  EXPECT_EQ(message.recipients[3].address, "dan@example.org");
}

constexpr char kMixed[] =
    "Subject: S\r\n"
    "Content-Type: multipart/mixed; boundary=x\r\n"
    "\r\n"
    "--x\r\n"
    "Content-Type: multipart/alternative; boundary=y\r\n"
    "\r\n"
    "--y\r\n"
    "Content-Type: text/plain; charset=iso-8859-1\r\n"
    "Content-Transfer-Encoding: quoted-printable\r\n"
    "\r\n"
    "Gr=FC=DFe\r\n"
    "--y\r\n"
    "Content-Type: text/html\r\n"
    "\r\n"
    "<p>Hi</p>\r\n"
    "--y--\r\n"
    "--x\r\n"
    "Content-Type: application/pdf; name=\"a b.pdf\"\r\n"
    "Content-Transfer-Encoding: base64\r\n"
    "Content-Disposition: attachment; filename*=utf-8''Pl%C3%A4ne.pdf\r\n"
    "\r\n"
    "AAEC/w==\r\n"
    "--x\r\n"
    "Content-Type: text/plain\r\n"
    "Content-Disposition: attachment; filename=notes.txt\r\n"
    "\r\n"
    "note\r\n"
    "--x\r\n"
    "Content-Type: message/rfc822\r\n"
    "\r\n"
    "Subject: Inner\r\n"
    "\r\n"
    "inner text\r\n"
    "--x--\r\n";

TEST(DemoMessage, IsSortedIntoTextAndAttachments) {
  const MimeMessage message = parseMessage(kMixed);
  EXPECT_EQ(message.body, "Grüße");
  EXPECT_EQ(namesOf(message), (std::vector<std::string>{"Pläne.pdf", "notes.txt", "Inner.eml"}));
  EXPECT_EQ(message.attachments[0].type, "application/pdf");
  EXPECT_EQ(message.attachments[0].content, std::string("\0\1\2\xFF", 4));
  EXPECT_EQ(message.attachments[1].content, "note");
  EXPECT_EQ(message.attachments[2].type, "message/rfc822");
  EXPECT_NE(message.attachments[2].content.find("inner text"), std::string::npos);
}

TEST(DemoMessage, InHtmlAloneKeepsThatAsAnAttachment) {
  const MimeMessage message = parseMessage("Content-Type: text/html\r\n\r\n<b>x</b>");
  EXPECT_EQ(message.body, "");
  EXPECT_EQ(namesOf(message), std::vector<std::string>{"message.html"});
}

TEST(DemoMessage, MayHaveNoHeaders) {
  for (const char* bytes : {"\r\n\r\nonly text", "\nonly text", "", "\r\n", "no colon here"}) {
    const MimeMessage message = parseMessage(bytes);
    EXPECT_EQ(message.from, "") << bytes;
    EXPECT_FALSE(message.date) << bytes;
    EXPECT_TRUE(message.recipients.empty()) << bytes;
  }
  EXPECT_EQ(parseMessage("\nonly text").body, "only text");
}

TEST(DemoMessage, ShowsWhatIsNoTextAsAMark) {
  const std::string mark = "\xEF\xBF\xBD";
  EXPECT_EQ(parseMessage(std::string("Subject: a\r\n\r\nb\0c\x01\xFF\tz", 21)).body,
            "b" + mark + "c" + mark + mark + "\tz");
  EXPECT_TRUE(isItemText(parseMessage("Subject: \xFF\xFE\x01 =?utf-8?b?AAEC?=\r\n\r\n").subject));
}

TEST(DemoMessage, SurvivesBrokenEncodings) {
  const MimeMessage message = parseMessage(
      "Subject: =?utf-8?b?!!!?= =?nowhere?q?=zz?=\r\n"
      "To: <<<>>,,;:\"\r\n"
      "Date: yesterday\r\n"
      "Content-Type: text/plain; charset=\"no-such\"\r\n"
      "Content-Transfer-Encoding: base64\r\n"
      "\r\n"
      "*** not base64 ***=\r\n");
  EXPECT_TRUE(isItemText(message.body));
  EXPECT_TRUE(isItemText(message.subject));
  EXPECT_FALSE(message.date);
}

TEST(DemoMessage, SurvivesEveryCutAndManyMutations) {
  const std::string good = kMixed;
  for (std::size_t at = 0; at < good.size(); ++at) {
    EXPECT_TRUE(isItemText(parseMessage(good.substr(0, at)).body)) << at;
    for (const char byte : {'\0', '\n', '\xFF', '-', '='}) {
      std::string bad = good;
      bad[at] = byte;
      const MimeMessage message = parseMessage(bad);
      EXPECT_TRUE(isItemText(message.body) && isItemText(message.subject)) << at;
      for (const std::string& name : namesOf(message)) EXPECT_TRUE(isItemText(name) && !name.empty()) << at;
    }
  }
}

std::string nested(int depth) {
  std::string message = "Subject: deep\r\n";
  for (int i = 0; i < depth; ++i) {
    const std::string boundary = "b" + std::to_string(i);
    message += "Content-Type: multipart/mixed; boundary=" + boundary + "\r\n\r\n--" + boundary + "\r\n";
  }
  return message + "Content-Type: text/plain\r\n\r\nbottom\r\n";
}

TEST(DemoMessage, IsReadToALimitedDepth) {
  EXPECT_EQ(parseMessage(nested(kMaxNesting)).body, "bottom\n");
  EXPECT_EQ(parseMessage(nested(kMaxNesting + 1)).body, "");
  EXPECT_EQ(parseMessage(nested(5000)).body, "");
}

TEST(DemoMessage, HasALimitedNumberOfAttachments) {
  std::string bytes = "Content-Type: multipart/mixed; boundary=x\r\n\r\n";
  for (std::size_t i = 0; i < kMaxAttachments + 5; ++i)
    bytes += "--x\r\nContent-Type: image/png\r\n\r\n1\r\n";
  EXPECT_EQ(parseMessage(bytes + "--x--\r\n").attachments.size(), kMaxAttachments);
}

TEST(DemoMessage, IsReadUpToALimitedNumberOfLinesThatMayBeginAPart) {
  const std::string head = "Content-Type: multipart/mixed; boundary=b\n\n";
  std::string lines;
  for (int i = 0; i < 50'000; ++i) lines += "--c\n";
  const std::string last = "--b\n\nlast\n";
  EXPECT_EQ(parseMessage(head + last + lines.substr(4)).body.substr(0, 4), "last");
  EXPECT_EQ(parseMessage(head + lines.substr(4) + last).body, "last\n");
  EXPECT_TRUE(isReadWhole(head + lines.substr(4) + last));
  EXPECT_EQ(parseMessage(head + lines + last).body, "");
  EXPECT_FALSE(isReadWhole(head + lines + last));
}

TEST(DemoMessage, HasALimitedBodyAndLimitedHeaders) {
  const MimeMessage message = parseMessage("Subject: " + std::string(kMaxHeaderText + 9, 's') + "\r\n\r\n" +
                                           std::string(kMaxBody + 9, 'b'));
  EXPECT_EQ(message.subject.size(), kMaxHeaderText);
  EXPECT_EQ(message.body.size(), kMaxBody);
}

TEST(DemoMessage, SurvivesALineOf50Megabytes) {
  const std::string line(50'000'000, 'x');
  EXPECT_EQ(parseMessage("Subject: a\r\n\r\n" + line).body.size(), kMaxBody);
  EXPECT_EQ(parseMessage(line).from, "");
  EXPECT_LE(parseMessage("Subject: " + line).subject.size(), kMaxHeaderText);
}

TEST(DemoMailboxes, AreReadFromALine) {
  const auto mailboxes = parseMailboxes("\"Ada Lovelace\" <ada@example.org>, bob@example.org");
  ASSERT_EQ(mailboxes.size(), 2u);
  EXPECT_EQ(mailboxes[0].name, "Ada Lovelace");
  EXPECT_EQ(mailboxes[0].address, "ada@example.org");
  EXPECT_EQ(mailboxes[1].address, "bob@example.org");
  EXPECT_TRUE(parseMailboxes("").empty());
}

}  // namespace
}  // namespace demoserver
