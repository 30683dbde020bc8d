#include "http/Message.h"

#include <gtest/gtest.h>

namespace demoserver {
namespace {

TEST(DemoTarget, IsSplitIntoPathAndParameters) {
  HttpRequest request;
  ASSERT_TRUE(parseTarget("/a/b?Cmd=Sync&User=d%C3%A9mo&Empty=&Flag&Cmd=Other", request));
  EXPECT_EQ(request.path, "/a/b");
  EXPECT_EQ(request.parameter("Cmd"), "Sync");
  EXPECT_EQ(request.parameter("User"), "démo");
  EXPECT_EQ(request.parameter("Empty"), "");
  EXPECT_TRUE(request.query.contains("Flag"));
  EXPECT_EQ(request.parameter("missing"), "");
}

TEST(DemoTarget, MayHaveNoQuery) {
  HttpRequest request;
  ASSERT_TRUE(parseTarget("/x", request));
  EXPECT_EQ(request.path, "/x");
  EXPECT_TRUE(request.query.empty());
}

TEST(DemoTarget, KeepsPlusSignsAndEqualSignsInValues) {
  HttpRequest request;
  ASSERT_TRUE(parseTarget("/x?a=1+2=3", request));
  EXPECT_EQ(request.parameter("a"), "1+2=3");
}

TEST(DemoTarget, BrokenPercentEncodingOfANameIsRefused) {
  HttpRequest request;
  EXPECT_FALSE(parseTarget("/x?%zz=1", request));
}

TEST(DemoTarget, KeepsAValueThatIsNotPercentEncoded) {
  for (const char* value : {"%", "%4", "%4g", "%g4", "100%25%"}) {
    HttpRequest request;
    EXPECT_TRUE(parseTarget(std::string("/x?a=") + value, request)) << value;
    EXPECT_EQ(request.parameter("a"), value);
  }
}

using Spellings = std::vector<std::string>;

Spellings spellingsOf(const std::string& handle) {
  HttpRequest request;
  EXPECT_TRUE(parseTarget("/x?Cmd=GetAttachment&AttachmentName=" + handle + "&User=u&DeviceId=d", request));
  return request.spellings("AttachmentName");
}

TEST(DemoTarget, TakesAHandleAsItStandsBeforeItTakesItDecoded) {
  EXPECT_EQ(spellingsOf("Att/1:a+b=c.pdf"), Spellings{"Att/1:a+b=c.pdf"});
  EXPECT_EQ(spellingsOf("a%20b"), (Spellings{"a%20b", "a b"}));
  EXPECT_EQ(spellingsOf("100%"), Spellings{"100%"});
  EXPECT_EQ(spellingsOf(""), Spellings{""});
}

TEST(DemoTarget, AnAmpersandEndsAHandleOnlyBeforeAParameter) {
  EXPECT_EQ(spellingsOf("a&b&c=d"), Spellings{"a&b&c=d"});
  EXPECT_EQ(spellingsOf("a&Username=x"), Spellings{"a&Username=x"});
  EXPECT_EQ(spellingsOf("a&ItemId=x"), Spellings{"a"});
}

TEST(DemoTarget, HasNoSpellingsOfWhatIsNotThere) {
  HttpRequest request;
  EXPECT_TRUE(parseTarget("/x?XItemId=1&a=ItemId=2", request));
  EXPECT_EQ(request.spellings("ItemId"), Spellings{});
  EXPECT_TRUE(parseTarget("/x?ItemId=3", request));
  EXPECT_EQ(request.spellings("ItemId"), Spellings{"3"});
}

}  // namespace
}  // namespace demoserver
