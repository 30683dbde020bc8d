#include "cli/output/FolderTree.h"

#include <map>
#include <set>

namespace airsync {

namespace {

class Tree {
 public:
  explicit Tree(const std::vector<TreeFolder>& folders) : placed_(folders.size(), false) {
    std::set<std::string> ids;
    for (const TreeFolder& folder : folders) ids.insert(folder.id);
    for (std::size_t index = 0; index < folders.size(); ++index) {
      const std::string& parent = folders[index].parent;
      ids_.push_back(folders[index].id);
      if (ids.contains(parent)) {
        children_[parent].push_back(index);
      } else {
        tops_.push_back(index);
      }
    }
  }

  std::vector<TreeLine> lines() {
    for (const std::size_t top : tops_) place(top);
    // What is left goes round in a ring.
    for (std::size_t index = 0; index < placed_.size(); ++index) place(index);
    return lines_;
  }

 private:
  // Without recursion: how deep it goes is the server's to say.
  void place(std::size_t top) {
    std::vector<TreeLine> waiting = {{top, 0}};
    while (!waiting.empty()) {
      const TreeLine line = waiting.back();
      waiting.pop_back();
      if (placed_[line.folder]) continue;
      placed_[line.folder] = true;
      lines_.push_back(line);
      const auto below = children_.find(ids_[line.folder]);
      if (below == children_.end()) continue;
      for (auto child = below->second.rbegin(); child != below->second.rend(); ++child) {
        waiting.push_back({*child, line.depth + 1});
      }
    }
  }

  std::vector<std::string> ids_;
  std::vector<std::size_t> tops_;
  std::map<std::string, std::vector<std::size_t>> children_;
  std::vector<bool> placed_;
  std::vector<TreeLine> lines_;
};

}  // namespace

std::vector<TreeLine> treeOf(const std::vector<TreeFolder>& folders) { return Tree(folders).lines(); }

}  // namespace airsync
