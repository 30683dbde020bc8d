#include "cli/output/FolderTree.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>

namespace airsync {
namespace {

// "0a 1b": the folder with id a at the top, b below it.
std::string drawn(const std::vector<TreeFolder>& folders) {
  std::string text;
  for (const TreeLine& line : treeOf(folders)) {
    text += (text.empty() ? "" : " ") + std::to_string(line.depth) + folders[line.folder].id;
  }
  return text;
}

TEST(FolderTree, PutsEachFolderBelowItsParentInTheServersOrder) {
  EXPECT_EQ(drawn({{"a", "0"}, {"b", "0"}, {"d", "a"}, {"c", "a"}, {"e", "c"}}), "0a 1d 1c 2e 0b");
  EXPECT_EQ(drawn({{"e", "c"}, {"c", "a"}, {"a", "0"}}), "0a 1c 2e");
  EXPECT_EQ(drawn({}), "");
}

TEST(FolderTree, PutsFoldersWithoutAKnownParentAtTheTop) {
  EXPECT_EQ(drawn({{"a", "gone"}, {"b", ""}, {"c", "a"}}), "0a 1c 0b");
}

TEST(FolderTree, ShowsEachFolderOfARingOnce) {
  EXPECT_EQ(drawn({{"a", "b"}, {"b", "a"}, {"c", "c"}, {"d", "0"}}), "0d 0a 1b 0c");
}

TEST(FolderTree, ShowsFoldersThatShareAnId) {
  EXPECT_EQ(drawn({{"a", "0"}, {"a", "0"}, {"b", "a"}}), "0a 1b 0a");
}

TEST(FolderTree, GoesAsDeepAsTheServerLikes) {
  std::vector<TreeFolder> folders;
  for (int i = 1; i <= 100'000; ++i) folders.push_back({std::to_string(i), std::to_string(i - 1)});
  EXPECT_EQ(treeOf(folders).back().depth, 99'999U);
}

}  // namespace
}  // namespace airsync
