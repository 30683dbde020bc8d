#include "cli/session/ServerFolders.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "unit/cli/Support.h"

namespace airsync {
namespace {

TEST(FolderName, HasUpTo63BytesOfShowableText) {
  EXPECT_EQ(test::errorOf([] { checkFolderName(std::string(63, 'n')); }), "no error");
  EXPECT_EQ(test::errorOf([] {
              checkFolderName(
                  "B\xc3\xbc"
                  "cher / \\ 2026");
            }),
            "no error");
  EXPECT_THAT(test::errorOf([] { checkFolderName(std::string(64, 'n')); }),
              testing::HasSubstr("a folder's name has at most 63 bytes"));
  EXPECT_EQ(test::errorOf([] { checkFolderName(""); }), "1 \"\": a folder needs a name");
  for (const char* name : {"a\nb", "a\x1b[2J", "\xff",
                           "\xe2\x80\xae"
                           "abc"}) {
    EXPECT_THAT(test::errorOf([&] { checkFolderName(name); }),
                testing::HasSubstr("without control characters"));
  }
}

}  // namespace
}  // namespace airsync
