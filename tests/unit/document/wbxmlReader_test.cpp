#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>

#include "document/Vocabulary.h"
#include "document/wbxml.h"
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
using airsync_test::LogSpy;
using airsync_test::Outline;
using airsync_test::Wire;
using testing::ElementsAre;

const ByteChannel kRead = &Communications::Read;
const char kHead[] = "03 01 6A 00 ";  // version 1.3, public id unknown, UTF-8, no string table

class WbxmlReader : public testing::Test {
 protected:
  void SetUp() override {
    AdapterFreeAll();
    FailingMemory::Reset();
    liveBefore_ = FailingMemory::LiveBlocks();
  }
  void TearDown() override {
    Log::destroyInstance();
    FailingMemory::Reset();
    AdapterFreeAll();
  }

  // Reads the whole document, and nothing behind it.
  static sml_element* Read(const std::string& document) {
    Wire wire(document + "behind");
    sml_element* const root = WBXMLParseSmlDocument(kRead, wire.comms);
    EXPECT_EQ(wire.transport.Unread(), 6U);
    return root;
  }
  static std::string OutlineOf(const std::string& hex) { return Outline(Read(HexBytes(kHead + hex))); }

  // The code that reading ends with, and that nothing is left behind.
  SYNC_RESULT Refusal(const std::string& document) const {
    Wire wire(document);
    const SYNC_RESULT code = CatchAbort([&wire] { WBXMLParseSmlDocument(kRead, wire.comms); });
    EXPECT_EQ(FailingMemory::LiveBlocks(), liveBefore_);
    return code;
  }

  std::size_t liveBefore_ = 0;
};

typedef WbxmlReader WbxmlReaderDeathTest;

TEST_F(WbxmlReader, ReadsAnEmptyRoot) {
  const sml_element* const root = Read(HexBytes("03 01 6A 00 05"));
  EXPECT_EQ(Outline(root), "Sync");
  EXPECT_EQ(SE_GetValue(root), nullptr);
  EXPECT_EQ(SE_GetParent(root), nullptr);
}

TEST_F(WbxmlReader, ReadsTextsAndChildrenInOrder) {
  EXPECT_EQ(OutlineOf("45                  # Sync\n"
                      "  4E 03 31 00 01    # Status 1\n"
                      "  5C                # Collections\n"
                      "    4F              # Collection\n"
                      "      4B 03 37 00 01  # SyncKey 7\n"
                      "      10            # Class, empty\n"
                      "    01\n"
                      "  01\n"
                      "01"),
            "Sync(Status=\"1\" Collections(Collection(SyncKey=\"7\" Class)))");
}

TEST_F(WbxmlReader, CountsTheLengthOfAValue) {
  const sml_element* const root = Read(HexBytes("03 01 6A 00 45 03 61 62 63 00 01"));
  EXPECT_STREQ(SE_GetValue(root), "abc");
  EXPECT_EQ(SE_GetValueLength(root), 3);
  EXPECT_FALSE(SE_BinaryContents(root));
}

TEST_F(WbxmlReader, ContentWithoutTextLeavesNoValue) {
  EXPECT_EQ(SE_GetValue(Read(HexBytes("03 01 6A 00 45 01"))), nullptr);
}

TEST_F(WbxmlReader, AnEmptyStringIsAValue) {
  EXPECT_STREQ(SE_GetValue(Read(HexBytes("03 01 6A 00 45 03 00 01"))), "");
}

TEST_F(WbxmlReader, JoinsEveryKindOfTextAndKeepsTheChildrenBetween) {
  const sml_element* const root = Read(GoldenDocument("codec-every-text"));
  EXPECT_STREQ(SE_GetValue(root), "a&bcdstringgtrxyz\xFF");
  EXPECT_EQ(SE_GetValueLength(root), 18);
  EXPECT_EQ(SE_GetNumberOfChildren(root), 2);
  EXPECT_STREQ(SE_GetTag(SE_GetNthChild(root, 0)), "Version");
  EXPECT_STREQ(SE_GetValueOfChild(root, "Status"), "1");
}

TEST_F(WbxmlReader, JoinsStringEntityAndString) {
  EXPECT_EQ(OutlineOf("45 03 61 00 02 26 03 62 00 01"), "Sync=\"a&b\"");
}

// Keeps S1.
TEST_F(WbxmlReader, CutsOpaqueContentAtItsFirstNul) {
  const sml_element* const root = Read(HexBytes("03 01 6A 00 45 C3 05 61 62 00 63 64 01"));
  EXPECT_STREQ(SE_GetValue(root), "ab");
  EXPECT_EQ(SE_GetValueLength(root), 2);
  EXPECT_FALSE(SE_BinaryContents(root)) << "opaque content is text from then on";
}

TEST_F(WbxmlReader, AppendsToOpaqueContentWhereItWasCut) {
  EXPECT_EQ(OutlineOf("45 C3 03 61 00 62 03 63 00 01"), "Sync=\"ac\"");
}

TEST_F(WbxmlReader, AnEntityOfZeroContributesNothing) {
  EXPECT_EQ(OutlineOf("45 03 61 00 02 00 03 62 00 01"), "Sync=\"ab\"");
  EXPECT_STREQ(SE_GetValue(Read(HexBytes("03 01 6A 00 45 02 00 01"))), "");
}

TEST_F(WbxmlReader, JoinsManyPiecesInOrder) {
  std::string document = HexBytes("03 01 6A 00 45");
  std::string expected;
  for (int i = 0; i < 5000; ++i) {
    const char c = static_cast<char>('a' + i % 26);
    document += '\x02';
    document += c;
    expected += c;
  }
  document += '\x01';
  EXPECT_EQ(SE_GetValue(Read(document)), expected);
}

TEST_F(WbxmlReader, ReadsEveryTokenOfEveryPageAsItsFirstTag) {
  for (UINT8 page = 0; page < 9; ++page) {
    for (UINT8 token = 0x05; token < 0x40; ++token) {
      const char* const tag = TagOfToken(page, token);
      if (tag == nullptr) continue;
      const sml_element* const root =
          Read(HexBytes("03 01 6A 00 00") + static_cast<char>(page) + static_cast<char>(token));
      EXPECT_STREQ(SE_GetTag(root), tag);
      EXPECT_EQ(SE_GetCodePage(root), page);
    }
  }
}

TEST_F(WbxmlReader, ReadsTheTokenOfAnAliasByItsPage) {
  EXPECT_EQ(OutlineOf("0B"), "SyncKey");
  EXPECT_EQ(OutlineOf("00 06 0B"), "A:SyncKey@6");
}

TEST_F(WbxmlReader, FollowsPageSwitchesBetweenChildren) {
  EXPECT_EQ(OutlineOf("45        # Sync\n"
                      "  00 01   # page 1\n"
                      "  05      # Anniversary\n"
                      "  00 02   # page 2\n"
                      "  00 04   # page 4, at once\n"
                      "  05      # Timezone\n"
                      "  00 00   # page 0\n"
                      "  05      # Sync\n"
                      "01"),
            "Sync(Anniversary Timezone Sync)");
}

TEST_F(WbxmlReader, APageStaysAfterAnElementHasEnded) {
  EXPECT_EQ(OutlineOf("45 5D 00 01 1E 01 29 01"), "Sync(ApplicationData(FileAs) LastName)");
}

TEST_F(WbxmlReader, EachDocumentStartsInPageZero) {
  EXPECT_EQ(OutlineOf("00 07 16"), "FolderSync@7");
  EXPECT_EQ(OutlineOf("05"), "Sync");
}

TEST_F(WbxmlReader, EveryElementEndsInThePageOfItsParent) {
  // A child is attached after it was read whole: it takes the page that its parent has at that moment.
  EXPECT_EQ(OutlineOf("00 07     # page 7\n"
                      "56        # FolderSync\n"
                      "  00 01   # page 1\n"
                      "  5E      # FileAs\n"
                      "    29    # LastName\n"
                      "  01\n"
                      "01"),
            "FolderSync@7(FileAs@7(LastName@1))");
}

TEST_F(WbxmlReader, ReadsAttributesWhoseNamesStandInTheStringTable) {
  const sml_element* const root = Read(GoldenDocument("codec-attributes"));
  EXPECT_EQ(SE_GetNumberOfAttributes(root), 1);
  EXPECT_STREQ(SE_GetNthAttributeName(root, 0), "xmlns");
  EXPECT_STREQ(SE_GetNthAttributeValue(root, 0), "POOMCAL:");
  EXPECT_EQ(SE_GetCodePage(root), 4);
  const char* const expected[][3] = {
      {"Status", "xmlns", "POOMCAL"}, {"ServerId", "POOMCAL", "x"},     {"ServerId", "POOMCAL", "y"},
      {"ServerId", "POOMCAL", ""},    {"ServerId", "POOMCAL", "xmlns"}, {"ServerId", "POOMCAL", "mlns"},
      {"ServerId", "POOMCAL", ""},
  };
  for (UINT16 i = 0; i < 7; ++i) {
    const sml_element* const child = SE_GetNthChild(root, i);
    EXPECT_STREQ(SE_GetTag(child), expected[i][0]);
    EXPECT_STREQ(SE_GetNthAttributeName(child, 0), expected[i][1]) << i;
    EXPECT_STREQ(SE_GetNthAttributeValue(child, 0), expected[i][2]) << i;
    EXPECT_EQ(SE_GetCodePage(child), 4) << "the page of its parent";
  }
  EXPECT_STREQ(SE_GetTag(SE_GetNthChild(root, 7)), "Version");
  EXPECT_EQ(SE_GetNumberOfAttributes(SE_GetNthChild(root, 7)), 0);
}

TEST_F(WbxmlReader, AcceptsThreeCharsets) {
  EXPECT_EQ(Outline(Read(HexBytes("03 01 00 00 05"))), "Sync");
  EXPECT_EQ(Outline(Read(HexBytes("03 01 03 00 05"))), "Sync");
  EXPECT_EQ(Outline(Read(HexBytes("03 01 6A 00 05"))), "Sync");
}

TEST_F(WbxmlReader, AcceptsAnyPublicIdentifier) {
  EXPECT_EQ(Outline(Read(HexBytes("03 00 05 6A 00 05"))), "Sync") << "0 and an offset";
  EXPECT_EQ(Outline(Read(HexBytes("03 00 00 6A 00 05"))), "Sync") << "0 and the offset 0";
  EXPECT_EQ(Outline(Read(HexBytes("03 9F 53 6A 00 05"))), "Sync") << "a number of two bytes";
}

TEST_F(WbxmlReader, PassesTextOnAsBytes) {
  EXPECT_STREQ(SE_GetValue(Read(HexBytes("03 01 03 00 45 03 C3 A4 FF 00 01"))), "\xC3\xA4\xFF");
}

TEST_F(WbxmlReader, ReadsNumbersOfUpToFiveBytes) {
  // Entity 38, with as many leading groups of zeros as fit.
  EXPECT_EQ(OutlineOf("45 02 80 80 80 80 26 01"), "Sync=\"&\"");
}

TEST_F(WbxmlReader, FreesEverythingButTheTree) {
  SE_Destroy(Read(GoldenDocument("codec-every-text")));
  SE_Destroy(Read(GoldenDocument("codec-attributes")));
  EXPECT_EQ(FailingMemory::LiveBlocks(), liveBefore_);
}

TEST_F(WbxmlReader, AllocatesATableOnlyWhereThereIsOne) {
  FailingMemory::Record(true);
  Read(HexBytes("03 01 6A 00 05"));
  Read(HexBytes("03 01 6A 02 61 00 05"));
  const std::string node = "malloc " + std::to_string(sizeof(LL_Node)) + ", malloc ";
  const std::string element = node + std::to_string(sizeof(sml_element)) + ", " + node + "5";  // "Sync"
  EXPECT_EQ(FailingMemory::CallsAsText(), element + ", " + node + "2, " + element + ", free, free");
}

TEST_F(WbxmlReader, AttachingChildrenWritesTheirLogLines) {
  LogSpy spy;
  Log::getInstance();
  Log::SetLevel(AS_LOG_SOURCE_ELEMENT, AS_LOG_LEVEL_INFO, &spy);
  Read(HexBytes("03 01 6A 00 45 5C 10 01 4E 03 31 00 01 01"));
  EXPECT_THAT(spy.Lines(),
              ElementsAre("Element Tag: |Class", "Element Value: NULL", "Element Tag: |Collections",
                          "Element Value: NULL", "Element Tag: |Status", "Element Value: |1"));
  Log::destroyInstance();
}

TEST_F(WbxmlReader, AsksTheTransportForSingleBytesAndForBlocksAtOnce) {
  Wire wire(HexBytes("03 01 6A 03 61 62 00 45 C3 02 78 79 01"));
  WBXMLParseSmlDocument(kRead, wire.comms);
  EXPECT_THAT(wire.transport.Lines(),
              ElementsAre("Read 1 document", "Read 1 document", "Read 1 document", "Read 1 document",
                          "Read 3 document",  // the string table
                          "Read 1 document", "Read 1 document", "Read 1 document",
                          "Read 2 document",  // the opaque value
                          "Read 1 document"));
}

struct BadDocument {
  const char* why;
  const char* hex;
};

const BadDocument kBadDocuments[] = {
    {"version 1.2", "02 01 6A 00 05"},
    {"version 0", "00 01 6A 00 05"},
    {"charset 4", "03 01 04 00 05"},
    {"charset 5, and so on to two bytes", "03 01 81 6A 00 05"},
    {"a token that page 0 lacks", "03 01 6A 00 21"},
    {"a token that page 8 lacks", "03 01 6A 00 00 08 0E"},
    {"a known token in another page", "03 01 6A 00 45 00 05 0D 01"},
    {"token 0: an end instead of a root", "03 01 6A 00 01"},
    {"a second switch before the root", "03 01 6A 00 00 01 00 01 05"},
    {"a literal tag", "03 01 6A 00 04 00"},
    {"a literal tag with content", "03 01 6A 00 44 00 01"},
    {"a literal tag as a child", "03 01 6A 00 45 04 00 01"},
    {"a literal tag with attributes as a child", "03 01 6A 00 45 84 00 01"},
    {"page 9 before the root", "03 01 6A 00 00 09 05"},
    {"page 255 in content", "03 01 6A 00 45 00 FF 05 01"},
    {"a processing instruction", "03 01 6A 00 45 43 01"},
    {"entity 256", "03 01 6A 00 45 02 82 00 01"},
    {"an entity of 32 bits", "03 01 6A 00 45 02 8F FF FF FF 7F 01"},
    {"extension token 0 in content", "03 01 6A 00 45 C0 01"},
    {"extension token 1 in content", "03 01 6A 00 45 C1 01"},
    {"extension token 2 in content", "03 01 6A 00 45 C2 01"},
    {"a number of six bytes", "03 01 6A 00 45 02 80 80 80 80 80 26 01"},
    {"a number of 33 bits", "03 01 6A 00 45 02 90 80 80 80 00 01"},
    {"a public id of six bytes", "03 80 80 80 80 80 01 6A 00 05"},
    {"a string table length of 33 bits", "03 01 6A 90 80 80 80 00 05"},
    {"an opaque length of 33 bits", "03 01 6A 00 45 C3 90 80 80 80 00 01"},
    {"an opaque length that fits no int", "03 01 6A 00 45 C3 8F FF FF FF 7F 01"},
    {"an opaque length of one more than an int", "03 01 6A 00 45 C3 88 80 80 80 00 01"},
    {"a string table length that fits no int", "03 01 6A 8F FF FF FF 7F 05"},
    {"a table string without a table", "03 01 6A 00 45 83 00 01"},
    {"an offset at the end of the table", "03 01 6A 02 61 00 45 83 02 01"},
    {"an offset behind the table", "03 01 6A 02 61 00 45 83 7F 01"},
    {"an offset of 32 bits", "03 01 6A 02 61 00 45 83 8F FF FF FF 7F 01"},
    {"a table string without its end", "03 01 6A 04 61 00 62 63 45 83 02 01"},
    {"a table without any end", "03 01 6A 02 61 62 45 83 00 01"},
    {"an extension with a bad offset", "03 01 6A 02 61 00 45 80 02 01"},
    {"an attribute name that is no literal", "03 01 6A 02 61 00 85 05 03 62 00 01"},
    {"a page switch among attributes", "03 01 6A 02 61 00 85 00 01 01"},
    {"an attribute name behind the table", "03 01 6A 02 61 00 85 04 02 03 62 00 01"},
    {"an attribute value behind the table", "03 01 6A 02 61 00 85 04 00 83 02 01"},
    {"an attribute without a value", "03 01 6A 02 61 00 85 04 00 01"},
    {"an entity as an attribute's value", "03 01 6A 02 61 00 85 04 00 02 26 01"},
    {"opaque bytes as an attribute's value", "03 01 6A 02 61 00 85 04 00 C3 01 62 01"},
};

// Keeps S1.
TEST_F(WbxmlReader, RefusesMalformedDocuments) {
  for (const BadDocument& row : kBadDocuments) {
    EXPECT_EQ(Refusal(HexBytes(row.hex)), 0x8001000bU) << row.why;
  }
}

TEST_F(WbxmlReader, TakesNoGlobalTokenForATag) {
  // END, ENTITY, STR_I, LITERAL; EXT_I_0 to 2, PI, LITERAL_C; EXT_T_0 to 2, STR_T, LITERAL_A; EXT_0 to 2,
  // OPAQUE, LITERAL_AC. What follows would do as content, or as an attribute.
  const int tokens[] = {0x01, 0x02, 0x03, 0x04, 0x40, 0x41, 0x42, 0x43, 0x44, 0x80,
                        0x81, 0x82, 0x83, 0x84, 0xC0, 0xC1, 0xC2, 0xC3, 0xC4};
  for (const int token : tokens) {
    const std::string root = HexBytes("03 01 6A 02 61 00") + static_cast<char>(token) + HexBytes("00 01 01");
    EXPECT_EQ(Refusal(root), 0x8001000bU) << token;
    const std::string behindASwitch =
        HexBytes("03 01 6A 02 61 00 00 01") + static_cast<char>(token) + HexBytes("00 01 01");
    EXPECT_EQ(Refusal(behindASwitch), 0x8001000bU) << token;
  }
}

TEST_F(WbxmlReaderDeathTest, AnExtensionTokenAsAnAttributesValueStopsTheProcess) {
  for (const char* const token : {"C0", "C1", "C2"}) {
    const std::string document = HexBytes("03 01 6A 02 61 00 85 04 00") + HexBytes(token);
    EXPECT_DEATH(Read(document), "`__null == &In'") << token;
  }
}

TEST_F(WbxmlReaderDeathTest, ASecondAttributeStopsTheProcess) {
  const std::string document = HexBytes("03 01 6A 02 61 00 85 04 00 03 62 00 04 00 03 63 00 01");
  EXPECT_DEATH(Read(document), "`pSmlElement->NumberOfAttributes < 1'");
}

// An element in which another one is nested, `levels` in all.
std::string Nested(int levels) {
  return HexBytes("03 01 6A 00") + std::string(static_cast<std::size_t>(levels - 1), '\x45') + '\x05' +
         std::string(static_cast<std::size_t>(levels - 1), '\x01');
}

TEST_F(WbxmlReader, ReadsSixtyFourLevels) {
  const sml_element* element = Read(Nested(64));
  int levels = 1;
  for (; SE_GetNumberOfChildren(element) != 0; element = SE_GetNthChild(element, 0)) ++levels;
  EXPECT_EQ(levels, 64);
}

// Keeps S2.
TEST_F(WbxmlReader, RefusesTheSixtyFifthLevel) { EXPECT_EQ(Refusal(Nested(65)), 0x8001000bU); }

TEST_F(WbxmlReader, CountsLevelsNotElements) {
  std::string document = HexBytes("03 01 6A 00 45");
  for (int i = 0; i < 200; ++i) document += HexBytes("45 05 01");
  EXPECT_EQ(SE_GetNumberOfChildren(Read(document + '\x01')), 200);
}

// Keeps S2.
TEST_F(WbxmlReader, Reads65535ChildrenAndRefusesOneMore) {
  const std::string children(65535, '\x07');
  EXPECT_EQ(SE_GetNumberOfChildren(Read(HexBytes("03 01 6A 00 56") + children + '\x01')), 65535);
  AdapterFreeAll();
  EXPECT_EQ(Refusal(HexBytes("03 01 6A 00 56") + children + "\x07\x01"), 0x8001000bU);
}

TEST_F(WbxmlReader, EndsWithTheTransportWhereverADocumentIsCut) {
  for (const char* const name : {"codec-every-text", "codec-attributes"}) {
    const std::string document = GoldenDocument(name);
    for (std::size_t length = 0; length < document.size(); ++length) {
      EXPECT_EQ(Refusal(document.substr(0, length)), 0x8001000cU) << name << " cut at " << length;
    }
  }
}

TEST_F(WbxmlReader, EndsWithExhaustionWhicheverAllocationFails) {
  const std::string document = GoldenDocument("codec-every-text");
  std::size_t k = 1;
  for (;; ++k) {
    FailingMemory::Reset();
    FailingMemory::FailAt(k);
    Wire wire(document);
    const SYNC_RESULT code = CatchAbort([&wire] { WBXMLParseSmlDocument(kRead, wire.comms); });
    if (code == 0) break;
    ASSERT_EQ(code, 0x8001000dU) << k;
    ASSERT_EQ(FailingMemory::LiveBlocks(), liveBefore_) << k;
  }
  EXPECT_GT(k, 20U);
}

// Lengths that lie.

std::string OpaqueOf(const std::string& lengthInHex, const std::string& bytes) {
  return HexBytes("03 01 6A 00 45 C3" + lengthInHex) + bytes;
}

TEST_F(WbxmlReader, ReadsOpaqueContentOf65535BytesInOneBlockAtOnce) {
  const std::string text(65535, 'x');
  Wire wire(OpaqueOf("83 FF 7F", text) + '\x01');
  FailingMemory::Record(true);
  const sml_element* const root = WBXMLParseSmlDocument(kRead, wire.comms);
  EXPECT_EQ(SE_GetValue(root), text);
  EXPECT_EQ(wire.transport.Count("Read 65535 document"), 1U);
  EXPECT_THAT(FailingMemory::CallsAsText(), testing::HasSubstr("malloc 65536"));
  EXPECT_THAT(FailingMemory::CallsAsText(), testing::Not(testing::HasSubstr("realloc")));
}

TEST_F(WbxmlReader, ReadsLongerOpaqueContentAsItArrives) {
  std::string text;
  for (int i = 0; i < 300000; ++i) text += static_cast<char>('a' + i % 23);
  // 300,000 is 0x12 0x27 0x60 in groups of seven bits.
  Wire wire(OpaqueOf("92 A7 60", text) + '\x01');
  const sml_element* const root = WBXMLParseSmlDocument(kRead, wire.comms);
  EXPECT_EQ(SE_GetValue(root), text);
  EXPECT_EQ(SE_GetValueLength(root), 300000 % 65536);
  const std::vector<std::string> lines = wire.transport.Lines();
  EXPECT_THAT(std::vector<std::string>(lines.begin() + 9, lines.end()),
              ElementsAre("Read 65535 document", "Read 65535 document", "Read 131070 document",
                          "Read 37860 document", "Read 1 document"));
}

// Keeps S2.
TEST_F(WbxmlReader, ALyingLengthCostsNoMoreThanTwiceWhatArrived) {
  EXPECT_EQ(Refusal(OpaqueOf("87 FF FF FF 7F", "only this")), 0x8001000cU);
  EXPECT_LT(FailingMemory::MostLiveBytes(), 70000U);
  FailingMemory::Reset();
  EXPECT_EQ(Refusal(HexBytes("03 01 6A 87 FF FF FF 7F") + "only this"), 0x8001000cU);
  EXPECT_LT(FailingMemory::MostLiveBytes(), 70000U);
}

TEST_F(WbxmlReader, LongBlocksThatFindNoMemoryEndTheExchange) {
  FailingMemory::RefuseAbove(100000);
  EXPECT_EQ(Refusal(OpaqueOf("92 A7 60", std::string(300000, 'x')) + '\x01'), 0x8001000dU);
}

TEST_F(WbxmlReader, ReadsALongStringTable) {
  const std::string text(70000, 'x');
  // 70,001 is 0x04 0x22 0x71 in groups of seven bits.
  const std::string document =
      HexBytes("03 01 6A 84 A2 71") + text + std::string(1, '\0') + HexBytes("45 83 84 A2 6F 01");
  EXPECT_STREQ(SE_GetValue(Read(document)), "x") << "the string at offset 69,999";
}

// A table of one string of 65,535 characters (65,536 is 84 80 00), and Statuses that take it. 8 MiB and 16
// times the table are 9,437,184 characters: enough for 144 of them.
// What is left is 144 characters: one more Status may take the string's last ones, from `lastOffset`.
std::string StatusesFromTheTable(int count, const char* lastOffset = nullptr) {
  std::string document = HexBytes("03 01 6A 84 80 00") + std::string(65535, 'x') + std::string(1, '\0');
  document += HexBytes("45");
  for (int i = 0; i < count; ++i) document += HexBytes("4E 83 00 01");
  if (lastOffset != nullptr) document += HexBytes("4E 83") + HexBytes(lastOffset) + HexBytes("01");
  return document + HexBytes("01");
}

// 65,535 - 144 is 0x83 0xFE 0x6F in groups of seven bits, and one less 0x83 0xFE 0x6E.
TEST_F(WbxmlReader, TakesAllOfWhatMayComeFromTheTableAndNotOneCharacterMore) {
  const sml_element* const root = Read(StatusesFromTheTable(144, "83 FE 6F"));
  EXPECT_EQ(SE_GetValueLength(SE_GetNthChild(root, 144)), 144);
  EXPECT_EQ(Refusal(StatusesFromTheTable(144, "83 FE 6E")), 0x8001000bU);
}

TEST_F(WbxmlReader, TakesStringsFromTheTableUpToAMultipleOfItsSize) {
  const sml_element* const root = Read(StatusesFromTheTable(144));
  EXPECT_EQ(SE_GetNumberOfChildren(root), 144);
  EXPECT_EQ(SE_GetValueLength(SE_GetNthChild(root, 143)), 65535);
}

// Keeps S2.
TEST_F(WbxmlReader, ASmallDocumentDoesNotFillTheMemoryFromItsTable) {
  EXPECT_EQ(Refusal(StatusesFromTheTable(145)), 0x8001000bU);
  FailingMemory::Reset();
  EXPECT_EQ(Refusal(StatusesFromTheTable(30000)), 0x8001000bU);
  EXPECT_LT(FailingMemory::MostLiveBytes(), 11'000'000U);
}

TEST_F(WbxmlReader, CutsInlineStringsAfter65536Characters) {
  const std::string text(70000, 'x');
  const sml_element* const root = Read(HexBytes("03 01 6A 00 45 03") + text + std::string("\0\x01", 2));
  EXPECT_EQ(std::string(SE_GetValue(root)).size(), 65536U);
  EXPECT_EQ(SE_GetValueLength(root), 0) << "65,536 in 16 bits";
}

}  // namespace
