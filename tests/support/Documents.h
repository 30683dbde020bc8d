// Documents of tests: as trees written down in place, and as bytes.
#ifndef TESTS_SUPPORT_DOCUMENTS_H
#define TESTS_SUPPORT_DOCUMENTS_H

#include <optional>
#include <string>
#include <vector>

#include "document/Element.h"

namespace airsync_test {

/// One element of a tree: its tag, its text (or none), its children.
struct Node {
  std::string tag;
  std::optional<std::string> text;
  std::vector<Node> children;

  Node(std::string elementTag) : tag(std::move(elementTag)) {}
  Node(std::string elementTag, std::string elementText)
      : tag(std::move(elementTag)), text(std::move(elementText)) {}
  Node(std::string elementTag, std::vector<Node> elementChildren)
      : tag(std::move(elementTag)), children(std::move(elementChildren)) {}
};

/// The tree in tracked memory, every element on `codePage`, as a response of that page is after reading.
/// Whoever calls it destroys it, unless an abort did.
AIRSYNC_STACK::sml_element* Tree(const Node& node, UINT8 codePage);

/// The WBXML bytes of a document with this root, which need not be a tree's.
std::string DocumentOf(const AIRSYNC_STACK::sml_element* root);

/// The same for a tree, which is destroyed.
std::string Written(AIRSYNC_STACK::sml_element* tree);

/// The tree of a WBXML document.
AIRSYNC_STACK::sml_element* ReadTree(const std::string& document);

/// The tree as one line: Sync(Status="1" Collections(...)); a page other than 0 follows the tag: "Body@1".
std::string Outline(const AIRSYNC_STACK::sml_element* tree);

}  // namespace airsync_test

#endif
