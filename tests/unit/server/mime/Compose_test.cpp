#include "mime/Compose.h"

#include <gtest/gtest.h>

namespace demoserver {
namespace {

constexpr char kPlain[] = "Subject: Re: A\r\nX-Mine: kept\r\nTo: a@example.org\r\n\r\nMy answer";

TEST(DemoCompose, AppendsToThePlainText) {
  const std::string bytes = completeMessage(kPlain, "\n> grün\n", {});
  const MimeMessage message = parseMessage(bytes);
  EXPECT_EQ(message.body, "My answer\n> grün\n");
  EXPECT_EQ(message.subject, "Re: A");
  EXPECT_EQ(message.to, "a@example.org");
  EXPECT_NE(bytes.find("X-Mine: kept\r\n"), std::string::npos);
  EXPECT_TRUE(message.attachments.empty());
}

TEST(DemoCompose, AddsAttachmentsToAPlainMessage) {
  const std::string content("\0\r\n\xFF", 4);
  const std::string bytes = completeMessage(
      kPlain, "\ntext", {{"ä b.bin", "image/png", content}, {"note.txt", "text/plain", "a\nb"}});
  const MimeMessage message = parseMessage(bytes);
  EXPECT_EQ(message.body, "My answer\ntext");
  EXPECT_EQ(message.subject, "Re: A");
  EXPECT_NE(bytes.find("X-Mine: kept\r\n"), std::string::npos);
  ASSERT_EQ(message.attachments.size(), 2u);
  EXPECT_EQ(message.attachments[0].name, "ä b.bin");
  EXPECT_EQ(message.attachments[0].type, "image/png");
  EXPECT_EQ(message.attachments[0].content, content);
  EXPECT_EQ(message.attachments[1].content, "a\nb");
}

TEST(DemoCompose, AddsToAMultipartMessageBehindItsParts) {
  const std::string bytes = completeMessage(
      "Content-Type: multipart/mixed; boundary=x\r\n\r\n--x\r\n\r\nfirst\r\n--x\r\n"
      "Content-Type: image/png; name=own.png\r\n\r\n1\r\n--x--\r\n",
      " added", {{"new.png", "image/png", "2"}});
  const MimeMessage message = parseMessage(bytes);
  EXPECT_EQ(message.body, "first added");
  ASSERT_EQ(message.attachments.size(), 2u);
  EXPECT_EQ(message.attachments[0].name, "own.png");
  EXPECT_EQ(message.attachments[1].name, "new.png");
}

TEST(DemoCompose, GivesAMessageWithoutPlainTextOne) {
  const MimeMessage page = parseMessage(completeMessage("Content-Type: text/html\r\n\r\n<p>", "text", {}));
  EXPECT_EQ(page.body, "text");
  EXPECT_EQ(parseMessage(completeMessage("Subject: x\r\n\r\n", "text", {})).body, "text");
}

}  // namespace
}  // namespace demoserver
