#include "support/InlineText.h"

#include <cstring>
#include <gtest/gtest.h>
#include <string>

namespace {

using namespace AIRSYNC_STACK;

// What is in the field, up to its end, with "." for NUL.
template <UINT32 kCapacity>
std::string Shown(const char (&field)[kCapacity]) {
  std::string text(field, kCapacity);
  for (char& c : text) c = c == '\0' ? '.' : c;
  return text;
}

std::string Set(const char* text) {
  char field[6];
  std::memset(field, 'x', sizeof field);
  SetInlineText(field, text);
  return Shown(field);
}

TEST(InlineText, ThatFillsItsFieldIsCopiedWithATerminator) {
  const char full[4] = {'a', 'b', 'c', 'd'};
  EXPECT_STREQ(TerminatedText<4>(full).text, "abcd");
  EXPECT_STREQ(TerminatedText<4>("abc").text, "abc");
  EXPECT_STREQ(TerminatedText<4>({'a', '\0', 'c', 'd'}).text, "a");
}

TEST(InlineText, EqualsExactlyItsOwnText) {
  const char full[4] = {'a', 'b', 'c', 'd'};
  EXPECT_TRUE(InlineTextEquals(full, "abcd"));
  EXPECT_FALSE(InlineTextEquals(full, "abc"));
  EXPECT_FALSE(InlineTextEquals(full, "abcde"));
  EXPECT_FALSE(InlineTextEquals(full, ""));
  const char shorter[4] = {'a', 'b', '\0', 'x'};
  EXPECT_TRUE(InlineTextEquals(shorter, "ab"));
  EXPECT_FALSE(InlineTextEquals(shorter, "a"));
  EXPECT_FALSE(InlineTextEquals(shorter, "aB"));
  EXPECT_FALSE(InlineTextEquals(shorter, "abx"));
  const char empty[4] = {};
  EXPECT_TRUE(InlineTextEquals(empty, ""));
}

TEST(InlineText, ThatFitsIsSetWithTheRestCleared) {
  EXPECT_EQ(Set(""), "......");
  EXPECT_EQ(Set("ab"), "ab....");
  EXPECT_EQ(Set("abcde"), "abcde.");
}

// Keeps S1.
TEST(InlineText, ThatIsTooLongIsCutAndTerminated) {
  EXPECT_EQ(Set("abcdef"), "abcde.");
  EXPECT_EQ(Set("abcdefgh"), "abcde.");
}

TEST(InlineText, IsCutBetweenUtf8Sequences) {
  EXPECT_EQ(Set("abcd\xC3\xA9"), "abcd..");
  EXPECT_EQ(Set("abc\xC3\xA9z"), "abc\xC3\xA9.");
  EXPECT_EQ(Set("abc\xE2\x82\xAC"), "abc...");
  EXPECT_EQ(Set("ab\xF0\x9F\x98\x80"), "ab....");
  EXPECT_EQ(Set("\x80\x80\x80\x80\x80\x80"), "......");
}

}  // namespace
