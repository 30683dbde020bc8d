#include "cli/session/Moves.h"

#include <gtest/gtest.h>

#include "unit/cli/Support.h"

namespace airsync {
namespace {

RemoteItem itemOf(const std::string& id, const std::string& folder) {
  RemoteItem item;
  item.id = id;
  item.folder.serverId = folder;
  return item;
}

// The document of the moves "5:1" from 5 to 6 and "8:20" from 8 to 9 has 47 bytes.
TEST(Moves, MeasureAMoveAsTheEncodingWritesIt) {
  EXPECT_EQ(measuredMove("5:1", "5", "6"), 19U);
  EXPECT_EQ(measuredMove("8:20", "8", "9"), 20U);
  EXPECT_EQ(kMovesFrame + 19 + 20, 47U);
}

TEST(Moves, FillARequestToItsLastByte) {
  const std::vector<RemoteItem> items(10, itemOf("5:1", "5"));  // 19 bytes each, to "6"
  EXPECT_EQ(batchSize(items, 0, "6", 8 + 3 * 19), 3U);
  EXPECT_EQ(batchSize(items, 0, "6", 8 + 3 * 19 - 1), 2U);
  EXPECT_EQ(batchSize(items, 8, "6", 8 + 3 * 19), 2U);
  EXPECT_EQ(batchSize(items, 0, "6", 8 + 10 * 19), 10U);
}

TEST(Moves, PutAnItemThatIsLargerThanARequestIntoOneOfItsOwn) {
  const std::vector<RemoteItem> items(2, itemOf("5:1", "5"));
  EXPECT_EQ(batchSize(items, 0, "6", 10), 1U);
}

// 48 characters of an item, 67 of each folder: 196 bytes a move.
TEST(Moves, StayWellBelowTheLibrarysLimitWithTheLongestIds) {
  const std::string folder(67, 'f');
  const std::vector<RemoteItem> items(500, itemOf(std::string(48, 'i'), folder));
  EXPECT_EQ(measuredMove(items[0].id, folder, folder), 196U);
  EXPECT_EQ(batchSize(items, 0, folder), 40U);
  EXPECT_LE(kMovesFrame + 40 * 196, kLargestMoves);
  EXPECT_GT(kMovesFrame + 41 * 196, kLargestMoves);
}

TEST(RemoteItem, GoesIntoARequestLineWithVisibleCharactersOnly) {
  EXPECT_EQ(test::errorOf([] { requireInRequestLine(itemOf("5:1/%2b+{}", "f9"), "answering"); }), "no error");
  for (const char* id : {"", "a b", "a\tb", "a\nb", "a\x7f", "a&b", "a#b", "\xc3\xb6"}) {
    EXPECT_EQ(test::errorOf([&] { requireInRequestLine(itemOf(id, "f9"), "answering"); }).substr(0, 12),
              "1 answering ")
        << id;
    EXPECT_EQ(test::errorOf([&] { requireInRequestLine(itemOf("1", id), "answering"); }).substr(0, 12),
              "1 answering ")
        << id;
  }
}

}  // namespace
}  // namespace airsync
