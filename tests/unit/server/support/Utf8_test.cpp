#include "support/Utf8.h"

#include <gtest/gtest.h>

namespace demoserver {
namespace {

TEST(DemoUtf8, AcceptsTheFirstAndLastCharacterOfEachLength) {
  for (const char* text : {"", "\x01", "\x7F", "\xC2\x80", "\xDF\xBF", "\xE0\xA0\x80", "\xED\x9F\xBF",
                           "\xEE\x80\x80", "\xEF\xBF\xBF", "\xF0\x90\x80\x80", "\xF4\x8F\xBF\xBF"})
    EXPECT_TRUE(isUtf8(text)) << text;
}

TEST(DemoUtf8, RefusesWhatIsNoCharacter) {
  for (const char* text :
       {"\x80", "\xC0\x80", "\xC1\xBF", "\xC2", "\xC2\x41", "\xE0\x9F\xBF", "\xED\xA0\x80", "\xE2\x82",
        "\xF0\x8F\xBF\xBF", "\xF4\x90\x80\x80", "\xF5\x80\x80\x80", "\xFF", "a\xFE"})
    EXPECT_FALSE(isUtf8(text)) << text;
}

TEST(DemoUtf8, AnItemMayHoldTabsAndLineEndsButNoOtherControls) {
  EXPECT_TRUE(isItemText("a\tb\r\nc"));
  EXPECT_FALSE(isItemText("a\x1B[2J"));
  EXPECT_FALSE(isItemText(std::string_view("a\0b", 3)));
}

TEST(DemoUtf8, CutsBetweenCharacters) {
  EXPECT_EQ(utf8Head("aäb", 4), "aäb");
  EXPECT_EQ(utf8Head("aäb", 3), "aä");
  EXPECT_EQ(utf8Head("aäb", 2), "a");
  EXPECT_EQ(utf8Head("aäb", 0), "");
}

TEST(DemoUtf8, WritesACharacterOfEachLength) {
  EXPECT_EQ(utf8(0x41), "A");
  EXPECT_EQ(utf8(0xE4), "\xC3\xA4");
  EXPECT_EQ(utf8(0x20AC), "\xE2\x82\xAC");
  EXPECT_EQ(utf8(0x1F600), "\xF0\x9F\x98\x80");
  EXPECT_EQ(utf8(0), "");
  EXPECT_EQ(utf8(0xD800), "");
  EXPECT_EQ(utf8(0x110000), "");
}

TEST(DemoUtf8, MarksEveryByteThatAnItemMayNotHold) {
  EXPECT_EQ(itemText("grün\t\r\n"), "grün\t\r\n");
  EXPECT_EQ(itemText(std::string("a\0b\x1F", 4)),
            "a\xEF\xBF\xBD"
            "b\xEF\xBF\xBD");
  EXPECT_EQ(itemText("\xC3"), "\xEF\xBF\xBD");
  EXPECT_EQ(itemText("\xED\xA0\x80"), "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD");
}

}  // namespace
}  // namespace demoserver
