#include "support/Documents.h"

#include <gtest/gtest.h>

#include "document/wbxml.h"
#include "http/Communications.h"
#include "support/CatchAbort.h"
#include "support/ScriptedTransport.h"

namespace airsync_test {

using namespace AIRSYNC_STACK;

sml_element* Tree(const Node& node, UINT8 codePage) {
  sml_element* const element = SE_New(node.tag.c_str(), node.text ? node.text->c_str() : nullptr);
  element->CodePage = codePage;
  for (const Node& child : node.children) SE_AddChild(element, Tree(child, codePage));
  return element;
}

std::string DocumentOf(const sml_element* root) {
  ScriptedTransport transport;
  Communications comms(SERVER_INFO(), &transport, nullptr);
  const SYNC_RESULT result =
      CatchAbort([&]() { WBXMLSerializeSmlDocument(root, &Communications::Send, comms); });
  EXPECT_EQ(result, 0U) << "the tree can't be written";
  return result == 0 ? transport.Requests().back().body : "";
}

std::string Written(sml_element* tree) {
  std::string document = DocumentOf(tree);
  SE_Destroy(tree);
  return document;
}

sml_element* ReadTree(const std::string& document) {
  ScriptedTransport transport(document);
  transport.BeginBody();
  Communications comms(SERVER_INFO(), &transport, nullptr);
  sml_element* tree = nullptr;
  const SYNC_RESULT result =
      CatchAbort([&]() { tree = WBXMLParseSmlDocument(&Communications::Read, comms); });
  EXPECT_EQ(result, 0U) << "the document can't be read";
  EXPECT_EQ(transport.Unread(), 0U) << "the document ends before its bytes do";
  return tree;
}

std::string Outline(const sml_element* tree) {
  if (tree == nullptr) return "(null)";
  std::string line = SE_GetTag(tree);
  if (SE_GetCodePage(tree) != 0) line.append("@").append(std::to_string(SE_GetCodePage(tree)));
  if (SE_GetValue(tree) != nullptr) line.append("=\"").append(SE_GetValue(tree)).append("\"");
  const UINT16 count = SE_GetNumberOfChildren(tree);
  if (count == 0) return line;
  line += "(";
  for (UINT16 i = 0; i < count; ++i) {
    if (i != 0) line += " ";
    line += Outline(SE_GetNthChild(tree, i));
  }
  return line + ")";
}

}  // namespace airsync_test
