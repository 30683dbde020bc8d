#include "document/wbxml.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>

#include "document/Vocabulary.h"
#include "support/CatchAbort.h"
#include "support/Documents.h"
#include "support/FailingMemory.h"
#include "support/GoldenDocument.h"
#include "support/LogSpy.h"
#include "support/Memory.h"
#include "support/Wire.h"

namespace {

using namespace AIRSYNC_STACK;
using airsync_test::CatchAbort;
using airsync_test::FailingMemory;
using airsync_test::GoldenDocument;
using airsync_test::HexBytes;
using airsync_test::InHex;
using airsync_test::LogSpy;
using airsync_test::Wire;
using testing::ElementsAre;

const ByteChannel kSend = &Communications::Send;

class WbxmlWriter : public testing::Test {
 protected:
  void SetUp() override { FailingMemory::Reset(); }
  void TearDown() override {
    Log::destroyInstance();
    AdapterFreeAll();
  }

  static std::string Written(const sml_element* root) {
    Wire wire;
    WBXMLSerializeSmlDocument(root, kSend, wire.comms);
    return InHex(wire.Sent());
  }

  static sml_element* OnPage(UINT8 page, const char* tag, const char* value) {
    sml_element* const element = SE_New(tag, value);
    element->CodePage = page;
    return element;
  }

  // Attaches a child that keeps its own page.
  static void Attach(sml_element* parent, sml_element* child) {
    const UINT8 page = child->CodePage;
    SE_AddChild(parent, child);
    child->CodePage = page;
  }
};

TEST_F(WbxmlWriter, WritesAnEmptyRootAsHeadAndToken) {
  EXPECT_EQ(Written(SE_New("Sync", nullptr)), "03 01 6A 00 05");
}

TEST_F(WbxmlWriter, WritesATextAsAnInlineString) {
  sml_element* const root = SE_New("Sync", nullptr);
  SE_AddChild(root, SE_New("Status", "1"));
  EXPECT_EQ(Written(root), "03 01 6A 00 45 4E 03 31 00 01 01");
}

TEST_F(WbxmlWriter, WritesAnEmptyTextAsAnEmptyInlineString) {
  EXPECT_EQ(Written(SE_New("Sync", "")), "03 01 6A 00 45 03 00 01");
}

TEST_F(WbxmlWriter, WritesTheValueBeforeTheChildren) {
  sml_element* const root = SE_New("Sync", "x");
  SE_AddChild(root, SE_New("Version", nullptr));
  SE_AddChild(root, SE_New("Class", nullptr));
  EXPECT_EQ(Written(root), "03 01 6A 00 45 03 78 00 11 10 01");
}

TEST_F(WbxmlWriter, WritesNoAttributes) {
  EXPECT_EQ(Written(SE_NewWithAttribute("Sync", "xmlns", "Sync:", nullptr)), "03 01 6A 00 05");
}

TEST_F(WbxmlWriter, SwitchesPagesBeforeTheElementThatNeedsIt) {
  EXPECT_EQ(Written(OnPage(7, "FolderSync", nullptr)), "03 01 6A 00 00 07 16");
}

TEST_F(WbxmlWriter, ARunOfElementsInOnePageCostsOneSwitch) {
  sml_element* const root = SE_New("Sync", nullptr);
  Attach(root, OnPage(0, "SyncKey", nullptr));
  Attach(root, OnPage(1, "FileAs", "A"));
  Attach(root, OnPage(1, "LastName", "B"));
  Attach(root, OnPage(0, "Status", "1"));
  Attach(root, OnPage(4, "Subject", "C"));
  EXPECT_EQ(Written(root), InHex(GoldenDocument("codec-page-switches")));
}

TEST_F(WbxmlWriter, ThePageStaysAfterAnElementHasEnded) {
  sml_element* const root = SE_New("Sync", nullptr);
  sml_element* const data = SE_New("ApplicationData", nullptr);
  Attach(data, OnPage(1, "FileAs", nullptr));
  SE_AddChild(root, data);
  Attach(root, OnPage(1, "LastName", nullptr));
  SE_AddChild(root, SE_New("Class", nullptr));
  EXPECT_EQ(Written(root), "03 01 6A 00 45 5D 00 01 1E 01 29 00 00 10 01");
}

TEST_F(WbxmlWriter, EachDocumentStartsInPageZero) {
  sml_element* const root = OnPage(7, "FolderSync", nullptr);
  Wire wire;
  WBXMLSerializeSmlDocument(root, kSend, wire.comms);
  WBXMLSerializeSmlDocument(root, kSend, wire.comms);
  EXPECT_EQ(InHex(wire.Sent()), "03 01 6A 00 00 07 16 03 01 6A 00 00 07 16");
}

TEST_F(WbxmlWriter, WritesBinaryContentAsOpaqueBytes) {
  sml_element* const root = SE_New("Sync", "abcd");
  root->BinaryFlag = 1;
  root->pValue[1] = '\0';
  EXPECT_EQ(Written(root), "03 01 6A 00 45 C3 04 61 00 63 64 01");
}

TEST_F(WbxmlWriter, WritesEmptyBinaryContentAsLengthZero) {
  sml_element* const root = SE_New("Sync", "");
  root->BinaryFlag = 1;
  EXPECT_EQ(Written(root), "03 01 6A 00 45 C3 00 01");
}

TEST_F(WbxmlWriter, WritesLengthsInGroupsOfSevenBits) {
  const struct {
    UINT16 length;
    const char* bytes;
  } cases[] = {{1, "01"},        {127, "7F"},         {128, "81 00"},     {255, "81 7F"},
               {16383, "FF 7F"}, {16384, "81 80 00"}, {65535, "83 FF 7F"}};
  for (const auto& row : cases) {
    sml_element* const root = SE_New("Sync", std::string(row.length, 'x').c_str());
    root->BinaryFlag = 1;
    const std::string expected = HexBytes("03 01 6A 00 45 C3") + HexBytes(row.bytes);
    Wire wire;
    WBXMLSerializeSmlDocument(root, kSend, wire.comms);
    EXPECT_EQ(InHex(wire.Sent().substr(0, expected.size())), InHex(expected)) << row.length;
    EXPECT_EQ(wire.Sent().size(), expected.size() + row.length + 1);
    SE_Destroy(root);
  }
}

TEST_F(WbxmlWriter, WritesAliasesWithTheTokensOfTheirFirstNames) {
  sml_element* const root = SE_New("Sync", nullptr);
  SE_AddChild(root, SE_New("A:SyncKey", nullptr));
  SE_AddChild(root, SE_New("A:FilterType", nullptr));
  EXPECT_EQ(Written(root), "03 01 6A 00 45 0B 18 01");
}

TEST_F(WbxmlWriter, WritesAnAliasInItsOwnPageWithoutASwitch) {
  sml_element* const root = OnPage(6, "GetItemEstimate", nullptr);
  SE_AddChild(root, SE_New("A:SyncKey", "0"));
  EXPECT_EQ(Written(root), "03 01 6A 00 00 06 45 4B 03 30 00 01 01");
}

TEST_F(WbxmlWriter, WritesEveryTagOfEveryPage) {
  for (UINT8 page = 0; page < 9; ++page) {
    const TagList tags = TagsOfPage(page);
    for (unsigned i = 0; i < tags.count; ++i) {
      std::string expected = HexBytes("03 01 6A 00");
      if (page != 0) expected += std::string(1, '\0') + static_cast<char>(page);
      expected += static_cast<char>(tags.entries[i].token);
      EXPECT_EQ(Written(OnPage(page, tags.entries[i].tag, nullptr)), InHex(expected)) << tags.entries[i].tag;
    }
  }
}

struct BadElement {
  const char* why;
  UINT8 page;
  const char* tag;
};

TEST_F(WbxmlWriter, EndsTheExchangeWhenAPageDoesNotHoldTheTag) {
  const BadElement cases[] = {{"a tag of page 1 on page 0", 0, "FileAs"},
                              {"a tag of no page", 0, "Nonsense"},
                              {"a tag of page 0 on page 1", 1, "Sync"},
                              {"there is no such page", 9, "Sync"},
                              {"there is no tag", 0, nullptr}};
  for (const BadElement& row : cases) {
    const sml_element* const root = OnPage(row.page, row.tag, "x");
    Wire wire;
    EXPECT_EQ(CatchAbort([&] { WBXMLSerializeSmlDocument(root, kSend, wire.comms); }), 0x8001000bU)
        << row.why;
    EXPECT_EQ(InHex(wire.Sent()), "03 01 6A 00") << row.why;
  }
}

TEST_F(WbxmlWriter, LooksATagUpBeforeItSwitchesPages) {
  const sml_element* const root = OnPage(1, "Sync", nullptr);
  Wire wire;
  EXPECT_EQ(CatchAbort([&] { WBXMLSerializeSmlDocument(root, kSend, wire.comms); }), 0x8001000bU);
  EXPECT_EQ(InHex(wire.Sent()), "03 01 6A 00");
}

TEST_F(WbxmlWriter, AllocatesNothing) {
  sml_element* const root = SE_New("Sync", "x");
  SE_AddChild(root, SE_New("Version", "2.0"));
  FailingMemory::Reset();
  Wire wire;
  WBXMLSerializeSmlDocument(root, kSend, wire.comms);
  EXPECT_EQ(FailingMemory::Allocations(), 0U);
}

TEST_F(WbxmlWriter, SendsEachTextInOnePiece) {
  Wire wire;
  WBXMLSerializeSmlDocument(SE_New("Sync", "a long text"), kSend, wire.comms);
  EXPECT_THAT(wire.SentPieces(),
              ElementsAre(HexBytes("03"), HexBytes("01"), HexBytes("6A"), HexBytes("00"), HexBytes("45"),
                          HexBytes("03"), "a long text", HexBytes("00"), HexBytes("01")));
}

TEST_F(WbxmlWriter, WritesThreeLogLinesForEachElement) {
  sml_element* const root = OnPage(7, "FolderSync", nullptr);
  SE_AddChild(root, SE_New("SyncKey", "0"));
  LogSpy spy;
  Log::getInstance();
  Log::SetLevel(AS_LOG_SOURCE_ELEMENT, AS_LOG_LEVEL_INFO, &spy);
  Written(root);
  EXPECT_THAT(spy.Lines(), ElementsAre("Serialize Element Tag: |FolderSync", "Serialize Code Page: |<7>",
                                       "Serialize Element value: NULL", "Serialize Element Tag: |SyncKey",
                                       "Serialize Code Page: |<7>", "Serialize Element value: |0"));
  Log::destroyInstance();
}

TEST_F(WbxmlWriter, WritesLogLinesOfAnElementThatItRefuses) {
  const sml_element* const root = OnPage(0, "Nonsense", "x");
  LogSpy spy;
  Log::getInstance();
  Log::SetLevel(AS_LOG_SOURCE_ELEMENT, AS_LOG_LEVEL_INFO, &spy);
  Wire wire;
  CatchAbort([&] { WBXMLSerializeSmlDocument(root, kSend, wire.comms); });
  EXPECT_THAT(spy.Lines(), ElementsAre("Serialize Element Tag: |Nonsense", "Serialize Code Page: |<0>",
                                       "Serialize Element value: |x"));
  Log::destroyInstance();
}

TEST_F(WbxmlWriter, WritesItsLogLinesAtTheLevelOfFacts) {
  LogSpy spy;
  Log::getInstance();
  Log::SetLevel(AS_LOG_SOURCE_ELEMENT, static_cast<AS_LOG_LEVEL_T>(3), &spy);
  Written(SE_New("Sync", "x"));
  EXPECT_THAT(spy.Lines(), ElementsAre());
  Log::destroyInstance();
}

}  // namespace
