// Trees on their way: what a codec writes, it reads as the same tree.
#include <gtest/gtest.h>
#include <memory>
#include <optional>
#include <rapidcheck/gtest.h>

#include "Generators.h"
#include "document/Vocabulary.h"
#include "document/wbxml.h"
#include "document/xml.h"
#include "support/CatchAbort.h"
#include "support/Documents.h"
#include "support/FailingMemory.h"
#include "support/Memory.h"
#include "support/Wire.h"

namespace airsync_test {
namespace {

using namespace AIRSYNC_STACK;

struct TreeFree {
  void operator()(sml_element* tree) const { SE_Destroy(tree); }
};
typedef std::unique_ptr<sml_element, TreeFree> OwnedTree;

// The tree without its pages, unmistakably: the lengths of all texts stand before them.
std::string Described(const sml_element* element) {
  const auto counted = [](const char* text) {
    return text == nullptr ? std::string("-") : std::to_string(std::strlen(text)) + ":" + text;
  };
  std::string line = counted(SE_GetTag(element)) + "=" + counted(SE_GetValue(element));
  for (UINT16 i = 0; i < SE_GetNumberOfAttributes(element); ++i) {
    line += counted(SE_GetNthAttributeName(element, i)) + "=" + counted(SE_GetNthAttributeValue(element, i));
  }
  for (UINT16 i = 0; i < SE_GetNumberOfChildren(element); ++i)
    line += Described(SE_GetNthChild(element, i)).append(",");
  return line + ";";
}

// The pages of a tree: as they are, or as they will be when what was written is read. An element then stands
// on the page on which its parent was written.
std::string Pages(const sml_element* element, bool asRead) {
  const sml_element* const parent = SE_GetParent(element);
  std::string line = std::to_string(SE_GetCodePage(asRead && parent != nullptr ? parent : element));
  for (UINT16 i = 0; i < SE_GetNumberOfChildren(element); ++i)
    line += "(" + Pages(SE_GetNthChild(element, i), asRead) + ")";
  return line;
}

// A tag that the page's token leads back to.
std::string AnyTag(UINT8 page) {
  std::vector<std::string> tags;
  for (UINT8 token = 5; token < 0x40; ++token) {
    if (TagOfToken(page, token) != nullptr) tags.push_back(TagOfToken(page, token));
  }
  return *rc::gen::elementOf(tags);
}

UINT8 AnyPage() { return static_cast<UINT8>(*rc::gen::inRange(0, 9)); }

std::optional<std::string> AnyWbxmlText() {
  const int kind = *rc::gen::inRange(0, 100);
  if (kind == 0) return std::string(static_cast<std::size_t>(*rc::gen::inRange(60000, 65536)), *AnyByte());
  if (kind < 30) return std::nullopt;
  return *AnyText();
}

// A tree of up to `depth` levels, in which any element may be on any page: each gets its own page after it
// was attached. Texts go as texts or as opaque bytes.
sml_element* AnyWbxmlTree(int depth) {
  const UINT8 page = AnyPage();
  const std::optional<std::string> text = AnyWbxmlText();
  sml_element* const element = SE_New(AnyTag(page).c_str(), text ? text->c_str() : nullptr);
  element->BinaryFlag = text.has_value() && *rc::gen::inRange(0, 4) == 0;
  for (int children = depth <= 1 ? 0 : *rc::gen::inRange(0, 4); children > 0; --children) {
    sml_element* const child = AnyWbxmlTree(depth - 1);
    const UINT8 childPage = child->CodePage;
    SE_AddChild(element, child);
    child->CodePage = childPage;
  }
  element->CodePage = page;
  return element;
}

const char kLetters[] = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ:_";

std::string AnyOf(const std::string& characters) {
  return *rc::gen::resize(20, rc::gen::container<std::string>(rc::gen::elementOf(characters)));
}

std::string AnyName() {
  return *rc::gen::elementOf(std::string(kLetters)) + AnyOf(std::string(kLetters) + "0123456789-.");
}

// An element with neither text nor children is written without its attribute, and one with children has at
// least the empty text when it is read.
sml_element* AnyXmlTree(int depth) {
  const int children = depth <= 1 ? 0 : *rc::gen::inRange(0, 4);
  const bool hasText = children > 0 || *rc::gen::arbitrary<bool>();
  sml_element* const element = SE_New(AnyName().c_str(), hasText ? (*AnyText()).c_str() : nullptr);
  if (hasText && *rc::gen::arbitrary<bool>()) {
    SE_AddAttribute(element, AnyName().c_str(), AnyOf(std::string(kLetters) + "0123456789-.\"'").c_str());
  }
  for (int i = 0; i < children; ++i) SE_AddChild(element, AnyXmlTree(depth - 1));
  return element;
}

RC_GTEST_PROP(TreeProperties, ATreeReadFromWbxmlIsTheOneThatWasWritten, ()) {
  FailingMemory::Reset();
  const std::size_t before = FailingMemory::LiveBlocks();
  {
    const OwnedTree tree(AnyWbxmlTree(*rc::gen::inRange(1, 7)));
    const OwnedTree back(ReadTree(DocumentOf(tree.get())));
    RC_ASSERT(back != nullptr);
    RC_ASSERT(Described(back.get()) == Described(tree.get()));
    RC_ASSERT(Pages(back.get(), false) == Pages(tree.get(), true));
  }
  RC_ASSERT(FailingMemory::LiveBlocks() == before);
}

RC_GTEST_PROP(TreeProperties, ATreeReadFromXmlIsTheOneThatWasWritten, ()) {
  FailingMemory::Reset();
  const std::size_t before = FailingMemory::LiveBlocks();
  {
    const OwnedTree tree(AnyXmlTree(*rc::gen::inRange(1, 7)));
    Wire out;
    XMLSerializeSmlDocument(tree.get(), &Communications::Send, out.comms);
    Wire in(out.Sent());
    sml_element* read = nullptr;
    const SYNC_RESULT result =
        CatchAbort([&]() { read = XMLParseSmlDocument(&Communications::Read, in.comms); });
    RC_ASSERT(result == 0U);
    const OwnedTree back(read);
    RC_ASSERT(in.transport.Unread() == 0U);
    RC_ASSERT(Described(back.get()) == Described(tree.get()));
  }
  RC_ASSERT(FailingMemory::LiveBlocks() == before);
}

// Whatever arrives, a reader ends with a tree or with one of its three codes, and leaves nothing behind.
template <typename Read>
void EndsWell(const std::string& document, const Read& read) {
  FailingMemory::Reset();
  const std::size_t before = FailingMemory::LiveBlocks();
  Wire in(document);
  sml_element* tree = nullptr;
  const SYNC_RESULT result = CatchAbort([&]() { tree = read(in.comms); });
  if (result == 0) SE_Destroy(tree);
  RC_ASSERT(result == 0U || result == 0x8001000bU || result == 0x8001000cU);
  RC_ASSERT(FailingMemory::LiveBlocks() == before);
}

// Extension tokens and second attributes are assertions: no byte of these documents is one, or begins one.
RC_GTEST_PROP(TreeProperties, AnyBytesEndTheWbxmlReaderWell, ()) {
  const auto byte =
      rc::gen::map(rc::gen::inRange(0, 0x80), [](int value) { return static_cast<char>(value); });
  const std::string bytes = *rc::gen::resize(300, rc::gen::container<std::string>(byte));
  EndsWell(std::string("\x03\x01\x6A\x00", 4) + bytes,
           [](Communications& comms) { return WBXMLParseSmlDocument(&Communications::Read, comms); });
}

// The same for XML: a bare ">" is an assertion, and so is a second attribute.
RC_GTEST_PROP(TreeProperties, AnyPiecesEndTheXmlReaderWell, ()) {
  const std::vector<std::string> pieces = {
      "<a", "<a/>", "<a>", "</a>", "<!--", "<!-- > -->", "<![CDATA[", "<![CDATA[>]]>",
      "&",  "amp;", "&#",  "65",   "x4",   "&lt;&apos;", "?",         "/",
      "!",  "<",    "-",   "[",    " ",    "\n",         "\r",        "\xFF",
      "]]"};
  std::string document = "<a>";
  for (int more = *rc::gen::inRange(0, 60); more > 0; --more) document += *rc::gen::elementOf(pieces);
  EndsWell(document, [](Communications& comms) { return XMLParseSmlDocument(&Communications::Read, comms); });
}

}  // namespace
}  // namespace airsync_test
