#include "cli/session/AnswerWatch.h"

#include <gtest/gtest.h>

#include "support/HexAndText.h"

namespace airsync {
namespace {

using airsync_test::HexAndText;

AnswerWatch after(const std::string& description) {
  const std::string bytes = HexAndText(description);
  AnswerWatch watch;
  watch.take(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
  return watch;
}

TEST(AnswerWatch, KnowsAHierarchyByItsRoot) {
  EXPECT_TRUE(after("03 01 6A 00 00 07 45 01").isHierarchy());
  EXPECT_TRUE(after("03 01 6A 00 00 07 05").isHierarchy());
  EXPECT_FALSE(after("03 01 6A 00 00 07 56 01").isHierarchy());        // FolderSync
  EXPECT_FALSE(after("03 01 6A 00 45 01").isHierarchy());              // Sync
  EXPECT_FALSE(after("03 01 6A 00 00 07 56 45 01 01").isHierarchy());  // Folders, but below the root
  EXPECT_FALSE(after("").isHierarchy());
}

// A public id from the string table, whose bytes look like elements, and a length of two digits.
TEST(AnswerWatch, PassesOverTheHead) {
  EXPECT_TRUE(after("03 00 00 6A 03 45 46 00 00 07 45 01").isHierarchy());
  EXPECT_TRUE(after("03 01 6A 80 02 45 45 00 07 45 01").isHierarchy());
}

TEST(AnswerWatch, FindsTheResultOfAMeeting) {
  EXPECT_FALSE(after("03 01 6A 00 00 08 47 4B 03 '1' 00 01 01").holdsMeetingResult());
  EXPECT_TRUE(after("03 01 6A 00 00 08 47 4A 4B 03 '1' 00 01 01 01").holdsMeetingResult());
  EXPECT_TRUE(after("03 01 6A 00 00 08 47 0A 01").holdsMeetingResult());
  // Token 0A of another page, in an opaque block, in a text, in attributes.
  EXPECT_FALSE(after("03 01 6A 00 45 4A 01 01").holdsMeetingResult());
  EXPECT_FALSE(after("03 01 6A 00 00 08 47 C3 02 4A 0A 03 4A 0A 00 01").holdsMeetingResult());
  EXPECT_FALSE(after("03 01 6A 00 00 08 C7 0A 03 'x' 00 4A 01 01").holdsMeetingResult());
  EXPECT_FALSE(after("03 01 6A 00 00 08 47 83 4A 02 4A 82 4A C0 04 4A 01").holdsMeetingResult());
}

TEST(AnswerWatch, ReadsTheStatusOfAFetchAndOfNothingElse) {
  // Sync, Collections, Collection, Status 1, Responses, Fetch with Status 5.
  EXPECT_EQ(after("03 01 6A 00 45 5C 4F 4E 03 '1' 00 01 46 4A 4E 03 '5' 00 01 01 01 01 01 01").fetchStatus(),
            5);
  EXPECT_EQ(after("03 01 6A 00 45 5C 4F 4E 03 '1' 00 01 46 47 4E 03 '5' 00 01 01 01 01").fetchStatus(),
            std::nullopt);
  EXPECT_EQ(after("03 01 6A 00 45 4A 4E 03 'none' 00 01").fetchStatus(), 0);
  // A status that no int has is cut; its sign is not lost.
  EXPECT_EQ(after("03 01 6A 00 45 4A 4E 03 '-3' 00 01").fetchStatus(), -3);
  EXPECT_EQ(after("03 01 6A 00 45 4A 4E 03 '12345678901234567890' 00 01").fetchStatus(), 123456789);
}

TEST(AnswerWatch, BeginsAnewWithEachRequest) {
  AnswerWatch watch = after("03 01 6A 00 00 07 45");
  watch.begin();
  EXPECT_FALSE(watch.isHierarchy());
  EXPECT_EQ(watch.fetchStatus(), std::nullopt);
}

TEST(AnswerWatch, TakesEndsThatNothingBegan) {
  EXPECT_FALSE(after("03 01 6A 00 01 01 01 00").holdsMeetingResult());
}

}  // namespace
}  // namespace airsync
