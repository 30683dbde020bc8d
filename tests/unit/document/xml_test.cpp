#include "document/xml.h"

#include <gtest/gtest.h>
#include <string>

#include "support/FailingMemory.h"
#include "support/Memory.h"
#include "support/Wire.h"

namespace {

using namespace AIRSYNC_STACK;
using airsync_test::FailingMemory;
using airsync_test::Wire;

class XmlWriter : public testing::Test {
 protected:
  void SetUp() override { FailingMemory::Reset(); }
  void TearDown() override { AdapterFreeAll(); }

  static std::string Written(const sml_element* root) {
    Wire wire;
    XMLSerializeSmlDocument(root, &Communications::Send, wire.comms);
    return wire.Sent();
  }
};

TEST_F(XmlWriter, ClosesAnElementWithoutContentAtOnce) {
  EXPECT_EQ(Written(SE_New("Sync", nullptr)), "<Sync/>");
}

TEST_F(XmlWriter, GivesTheEmptyTextAStartAndAnEnd) {
  EXPECT_EQ(Written(SE_New("Sync", "")), "<Sync></Sync>");
}

TEST_F(XmlWriter, WritesTextBetweenStartAndEnd) {
  EXPECT_EQ(Written(SE_New("Class", "Email")), "<Class>Email</Class>");
}

TEST_F(XmlWriter, WritesTheValueThenTheChildrenWithoutAnyWhiteSpace) {
  sml_element* const root = SE_New("Sync", "x");
  sml_element* const collections = SE_New("Collections", nullptr);
  SE_AddChild(collections, SE_New("Collection", nullptr));
  SE_AddChild(root, SE_New("Version", "2.0"));
  SE_AddChild(root, collections);
  EXPECT_EQ(Written(root), "<Sync>x<Version>2.0</Version><Collections><Collection/></Collections></Sync>");
}

TEST_F(XmlWriter, EscapesTheFiveSpecialCharacters) {
  EXPECT_EQ(Written(SE_New("Body", "&\"'<>")), "<Body>&amp;&quot;&apos;&lt;&gt;</Body>");
  EXPECT_EQ(Written(SE_New("Body", "a&b<c")), "<Body>a&amp;b&lt;c</Body>");
}

TEST_F(XmlWriter, WritesEveryOtherByteAsItIs) {
  std::string text;
  for (int c = 1; c < 256; ++c) {
    if (std::string("&\"'<>").find(static_cast<char>(c)) == std::string::npos) text += static_cast<char>(c);
  }
  EXPECT_EQ(Written(SE_New("Body", text.c_str())), "<Body>" + text + "</Body>");
}

TEST_F(XmlWriter, WritesAnAttributeAsItIsStored) {
  EXPECT_EQ(Written(SE_NewWithAttribute("Sync", "xmlns", "AirSync:", "x")), "<Sync xmlns=AirSync:>x</Sync>");
  EXPECT_EQ(Written(SE_NewWithAttribute("Sync", "a", "\"<&\"", "x")), "<Sync a=\"<&\">x</Sync>");
}

TEST_F(XmlWriter, LeavesTheAttributeOfAnElementWithoutContentOut) {
  EXPECT_EQ(Written(SE_NewWithAttribute("Sync", "xmlns", "AirSync:", nullptr)), "<Sync/>");
}

TEST_F(XmlWriter, KnowsNoPagesAndNoVocabulary) {
  sml_element* const root = SE_New("Anything", nullptr);
  root->CodePage = 77;
  EXPECT_EQ(Written(root), "<Anything/>");
}

TEST_F(XmlWriter, WritesAnElementWithoutATagAsTheEmptyTag) {
  EXPECT_EQ(Written(SE_New(nullptr, "x")), "<>x</>");
}

TEST_F(XmlWriter, AllocatesNothing) {
  const sml_element* const root = SE_NewWithAttribute("Sync", "a", "b", "a&b");
  FailingMemory::Reset();
  Written(root);
  EXPECT_EQ(FailingMemory::Allocations(), 0U);
}

}  // namespace
