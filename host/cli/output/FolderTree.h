// Folders as a tree of lines.
#ifndef AIRSYNC_CLI_OUTPUT_FOLDER_TREE_H
#define AIRSYNC_CLI_OUTPUT_FOLDER_TREE_H

#include <cstddef>
#include <string>
#include <vector>

namespace airsync {

struct TreeFolder {
  std::string id;
  std::string parent;  // "0" at the top
};

struct TreeLine {
  std::size_t folder = 0;  // its index in the list
  std::size_t depth = 0;   // 0 at the top
};

/// The folders in the order of a tree: each below its parent, those of one parent in the order of the list.
/// A server may say what it likes: a folder whose parent is not in the list stands at the top, and so does
/// one of each ring of folders that are each other's parents. Each folder comes exactly once.
std::vector<TreeLine> treeOf(const std::vector<TreeFolder>& folders);

}  // namespace airsync

#endif
