#include "cli/output/Displayable.h"

#include <gtest/gtest.h>

namespace airsync {
namespace {

struct Row {
  const char* what;
  std::string text;
  std::string shown;
};

const Row kRows[] = {
    {"plain text", "Ann Example", "Ann Example"},
    {"letters of two, three and four bytes", "\xc3\xbc\xe2\x82\xac\xf0\x9f\x98\x80",
     "\xc3\xbc\xe2\x82\xac\xf0\x9f\x98\x80"},
    {"an escape sequence", "a\x1b[2Jb", "a\\x1b[2Jb"},
    {"line ends", "a\r\nb", "a\\x0d\\x0ab"},
    {"a NUL", std::string("a\0b", 3), "a\\x00b"},
    {"delete", "\x7f", "\\x7f"},
    {"a C1 control, U+009B", "\xc2\x9b", "\\x9b"},
    {"a right-to-left override, U+202E", "\xe2\x80\xae", "\\u202e"},
    {"an isolate, U+2066", "\xe2\x81\xa6", "\\u2066"},
    {"a stray continuation byte", "\x80", "\\x80"},
    {"an overlong slash", "\xc0\xaf", "\\xc0\\xaf"},
    {"a surrogate, U+D800", "\xed\xa0\x80", "\\xed\\xa0\\x80"},
    {"beyond U+10FFFF", "\xf4\x90\x80\x80", "\\xf4\\x90\\x80\\x80"},
    {"a sequence cut short", "\xe2\x82", "\\xe2\\x82"},
};

TEST(Displayable, ShowsTextAndEscapesWhatDrivesTheTerminal) {
  for (const Row& row : kRows) EXPECT_EQ(displayable(row.text), row.shown) << row.what;
}

TEST(Displayable, CutsLongTextsBetweenCharacters) {
  EXPECT_EQ(displayable("abcdef", 6), "abcdef");
  EXPECT_EQ(displayable("abcdefg", 6), "abc...");
  EXPECT_EQ(displayable("\xc3\xbc\xc3\xbc\xc3\xbc\xc3\xbc\xc3\xbc\xc3\xbc\xc3\xbc", 6),
            "\xc3\xbc\xc3\xbc\xc3\xbc...");
  EXPECT_EQ(displayable(std::string(1000, 'x'), 6), "xxx...");
}

TEST(Displayable, CountsColumnsNotBytes) {
  EXPECT_EQ(columnsOf("\xc3\xbc\xe2\x82\xac"
                      "a"),
            3U);
  EXPECT_EQ(columnsOf("\xe6\x97\xa5\xe6\x9c\xac"), 4U) << "two East Asian characters";
  EXPECT_EQ(columnsOf("e\xcc\x81"), 1U) << "a letter and an accent that goes onto it";
}

TEST(Displayable, CutsWideCharactersWhole) {
  EXPECT_EQ(displayable("\xe6\x97\xa5\xe6\x9c\xac\xe8\xaa\x9e\xe6\x97\xa5", 6), "\xe6\x97\xa5...");
}

TEST(DisplayableJson, EscapesWhatDrivesTheTerminalAndMeansTheSame) {
  EXPECT_EQ(displayableJson("{\n  \"a\": \"\x7f\xc2\x9b\xe2\x80\xae \xc3\xbc\"\n}\n"),
            "{\n  \"a\": \"\\u007f\\u009b\\u202e \xc3\xbc\"\n}\n");
  EXPECT_EQ(displayableJson(""), "");
}

}  // namespace
}  // namespace airsync
