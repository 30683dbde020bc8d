#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>

#include "cli/attachment/Choice.h"
#include "unit/cli/Support.h"

namespace airsync {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

struct Sample {
  std::string oid = "f5:7/att%20";
  std::int32_t size = 12;
  std::string displayName = "plan.pdf";
};

Mail mailWith(const std::vector<Sample>& samples) {
  Mail mail;
  for (const Sample& sample : samples) {
    auto& attachment = mail.attachments.emplace_back();
    attachment.set("OID", sample.oid);
    attachment.set("Size", sample.size);
    attachment.set("DisplayName", sample.displayName);
  }
  return mail;
}

std::string error(const Mail& mail, std::optional<int> number = std::nullopt) {
  return test::errorOf([&] { chooseAttachment(mail, number, "item 3", "airsync fetch f2 3"); });
}

TEST(AttachmentChoice, TakesTheOnlyOne) {
  const ChosenAttachment chosen =
      chooseAttachment(mailWith({{}}), std::nullopt, "item 3", "airsync fetch f2 3");
  EXPECT_EQ(chosen.number, 1U);
  EXPECT_EQ(chosen.handle, "f5:7/att%20");
  EXPECT_EQ(chosen.size, 12U);
  EXPECT_EQ(chosen.displayName, "plan.pdf");
}

TEST(AttachmentChoice, TakesTheOneOfTheNumber) {
  EXPECT_EQ(chooseAttachment(mailWith({{"a"}, {"b"}, {"c"}}), 3, "item 3", "airsync fetch f2 3").handle, "c");
}

TEST(AttachmentChoice, TakesTheNameWhereThereIsNoHandle) {
  Mail mail = mailWith({{""}});
  mail.attachments[0].set("Name", std::string("att-9"));
  mail.attachments[0].set("DisplayName", std::monostate{});
  const ChosenAttachment chosen = chooseAttachment(mail, 1, "item 3", "airsync fetch f2 3");
  EXPECT_EQ(chosen.handle, "att-9");
  EXPECT_EQ(chosen.displayName, "att-9");
}

TEST(AttachmentChoice, WantsANumberThatThereIs) {
  EXPECT_EQ(error(Mail()), "1 downloading an attachment of item 3: the mail has no attachments");
  EXPECT_EQ(error(mailWith({{}, {}})), "1 downloading an attachment of item 3: the mail has 2 attachments");
  for (const int number : {-1, 0, 3, std::numeric_limits<int>::max()}) {
    EXPECT_THAT(error(mailWith({{}, {}}), number),
                HasSubstr("there is no attachment " + std::to_string(number)));
  }
}

TEST(AttachmentChoice, WantsASizeThatCanBe) {
  EXPECT_THAT(error(mailWith({{"a", 0}})),
              testing::AllOf(StartsWith("6 "), HasSubstr("tells no size for it")));
  EXPECT_THAT(error(mailWith({{"a", -5}})), HasSubstr("its size is -5 bytes, which can't be"));
  EXPECT_EQ(error(mailWith({{"a", 1 << 30}})), "no error");
  EXPECT_THAT(error(mailWith({{"a", (1 << 30) + 1}})), HasSubstr("1073741825 bytes, which is absurd"));
}

TEST(AttachmentChoice, WantsAHandleThatARequestCanCarry) {
  EXPECT_THAT(error(mailWith({{""}})), HasSubstr("tells no name by which it could be asked for"));
  for (const char* handle : {"a b", " a", "a\tb", "a\r\nX: y", "a\x7f", "a&b=c", "a#b", "M\u00e4rz"}) {
    EXPECT_THAT(error(mailWith({{handle}})), HasSubstr("a request's address can't carry")) << handle;
  }
  EXPECT_EQ(error(mailWith({{std::string(994, 'h')}})), "no error");
  EXPECT_THAT(error(mailWith({{std::string(995, 'h')}})), HasSubstr("too long for a request"));
}

}  // namespace
}  // namespace airsync
