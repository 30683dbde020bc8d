#include "document/Element.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "support/CatchAbort.h"
#include "support/Documents.h"
#include "support/FailingMemory.h"
#include "support/LogSpy.h"
#include "support/Memory.h"
#include "support/Wire.h"

namespace {

using namespace AIRSYNC_STACK;
using airsync_test::CatchAbort;
using airsync_test::FailingMemory;
using airsync_test::HexBytes;
using airsync_test::LogSpy;
using airsync_test::MemoryCall;
using airsync_test::Outline;
using airsync_test::Wire;
using testing::ElementsAre;
using testing::IsEmpty;

class Element : public testing::Test {
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

  std::size_t LiveBlocks() const { return (FailingMemory::LiveBlocks() - liveBefore_) / 2; }

  std::size_t liveBefore_ = 0;
};

typedef Element ElementDeathTest;

TEST_F(Element, StartsWithNothing) {
  const sml_element* const element = SE_New(nullptr, nullptr);
  EXPECT_EQ(SE_GetTag(element), nullptr);
  EXPECT_EQ(SE_GetValue(element), nullptr);
  EXPECT_EQ(SE_GetValueLength(element), 0);
  EXPECT_EQ(SE_GetNumberOfAttributes(element), 0);
  EXPECT_EQ(element->Attributes[0].name, nullptr);
  EXPECT_EQ(element->Attributes[0].value, nullptr);
  EXPECT_EQ(SE_GetNumberOfChildren(element), 0);
  EXPECT_EQ(element->pChildren, nullptr);
  EXPECT_EQ(SE_GetParent(element), nullptr);
  EXPECT_EQ(SE_GetCodePage(element), 0);
  EXPECT_FALSE(SE_BinaryContents(element));
  EXPECT_EQ(LiveBlocks(), 1U);
}

TEST_F(Element, OwnsCopiesOfItsTagAndValue) {
  char tag[] = "Status";
  char value[] = "1";
  const sml_element* const element = SE_New(tag, value);
  tag[0] = 'x';
  value[0] = 'x';
  EXPECT_STREQ(SE_GetTag(element), "Status");
  EXPECT_STREQ(SE_GetValue(element), "1");
  EXPECT_EQ(SE_GetValueLength(element), 1);
}

TEST_F(Element, AllocatesTheNodeThenTheTagThenTheValue) {
  FailingMemory::Record(true);
  SE_New("Status", "1");
  const std::string node = "malloc " + std::to_string(sizeof(LL_Node)) + ", malloc ";
  EXPECT_EQ(FailingMemory::CallsAsText(),
            node + std::to_string(sizeof(sml_element)) + ", " + node + "7, " + node + "2");
}

TEST_F(Element, AnEmptyValueIsAValue) {
  const sml_element* const element = SE_New("Status", "");
  EXPECT_STREQ(SE_GetValue(element), "");
  EXPECT_EQ(SE_GetValueLength(element), 0);
}

TEST_F(Element, CountsValueLengthsModulo65536) {
  EXPECT_EQ(SE_GetValueLength(SE_New("Body", std::string(65535, 'x').c_str())), 65535);
  EXPECT_EQ(SE_GetValueLength(SE_New("Body", std::string(65536, 'x').c_str())), 0);
  EXPECT_EQ(SE_GetValueLength(SE_New("Body", std::string(65541, 'x').c_str())), 5);
}

TEST_F(Element, ANullValueLeavesItWithoutOneSoThatOneMayStillBeSet) {
  sml_element* const element = SE_New("Status", nullptr);
  SE_SetValue(element, nullptr);
  EXPECT_EQ(SE_GetValue(element), nullptr);
  EXPECT_EQ(SE_GetValueLength(element), 0);
  SE_SetValue(element, "1");
  EXPECT_STREQ(SE_GetValue(element), "1");
}

TEST_F(ElementDeathTest, AValueIsSetOnce) {
  sml_element* const element = SE_New("Status", "1");
  EXPECT_DEATH(SE_SetValue(element, "2"), "`!pSmlElement->pValue'");
  EXPECT_DEATH(SE_SetValue(element, nullptr), "`!pSmlElement->pValue'");
}

TEST_F(ElementDeathTest, AnEmptyValueIsSetOnceToo) {
  sml_element* const element = SE_New("Status", "");
  EXPECT_DEATH(SE_SetValue(element, "2"), "`!pSmlElement->pValue'");
}

TEST_F(ElementDeathTest, ALengthWithoutAValueIsAContradiction) {
  sml_element* const element = SE_New("Status", nullptr);
  element->ValueLength = 1;
  EXPECT_DEATH(SE_SetValue(element, "2"), "`!pSmlElement->ValueLength'");
}

TEST_F(Element, OwnsCopiesOfItsAttribute) {
  char name[] = "version";
  char value[] = "1.3";
  sml_element* const element = SE_New("Sync", nullptr);
  SE_AddAttribute(element, name, value);
  name[0] = value[0] = 'x';
  EXPECT_EQ(SE_GetNumberOfAttributes(element), 1);
  EXPECT_STREQ(SE_GetNthAttributeName(element, 0), "version");
  EXPECT_STREQ(SE_GetNthAttributeValue(element, 0), "1.3");
  EXPECT_EQ(SE_GetCodePage(element), 0);
}

TEST_F(Element, TakesItsValueLastWhenMadeWithAnAttribute) {
  const sml_element* const element = SE_NewWithAttribute("Body", "xmlns", "POOMCONTACTS:", "text");
  EXPECT_STREQ(SE_GetTag(element), "Body");
  EXPECT_STREQ(SE_GetNthAttributeName(element, 0), "xmlns");
  EXPECT_STREQ(SE_GetNthAttributeValue(element, 0), "POOMCONTACTS:");
  EXPECT_STREQ(SE_GetValue(element), "text");
}

TEST_F(Element, ANamespaceSetsItsCodePage) {
  EXPECT_EQ(SE_GetCodePage(SE_NewWithAttribute("Body", "xmlns", "POOMCONTACTS:", nullptr)), 1);
  EXPECT_EQ(SE_GetCodePage(SE_NewWithAttribute("Body", "xmlns", "MeetingResponse:", nullptr)), 8);
}

TEST_F(Element, AnUnknownNamespaceSetsPageZero) {
  sml_element* const element = SE_New("Body", nullptr);
  element->CodePage = 4;
  SE_AddAttribute(element, "xmlns", "AirSync:");
  EXPECT_EQ(SE_GetCodePage(element), 0);
}

TEST_F(Element, OnlyXmlnsSpelledExactlyIsANamespace) {
  EXPECT_EQ(SE_GetCodePage(SE_NewWithAttribute("Body", "XMLNS", "POOMCONTACTS:", nullptr)), 0);
  EXPECT_EQ(SE_GetCodePage(SE_NewWithAttribute("Body", "xmlns:A", "POOMCONTACTS:", nullptr)), 0);
}

TEST_F(ElementDeathTest, HasRoomForOneAttribute) {
  sml_element* const element = SE_NewWithAttribute("Body", "xmlns", "POOMCONTACTS:", nullptr);
  EXPECT_DEATH(SE_AddAttribute(element, "a", "b"), "`pSmlElement->NumberOfAttributes < 1'");
}

TEST_F(Element, KeepsItsChildrenInOrder) {
  sml_element* const parent = SE_New("Sync", nullptr);
  sml_element* const first = SE_New("Version", "2.0");
  sml_element* const second = SE_New("Collections", nullptr);
  SE_AddChild(parent, first);
  SE_AddChild(parent, second);
  EXPECT_EQ(SE_GetNumberOfChildren(parent), 2);
  EXPECT_EQ(SE_GetNthChild(parent, 0), first);
  EXPECT_EQ(SE_GetNthChild(parent, 1), second);
  EXPECT_EQ(SE_GetParent(first), parent);
  EXPECT_EQ(SE_GetParent(second), parent);
}

TEST_F(ElementDeathTest, HasNoChildBehindTheLast) {
  sml_element* const parent = SE_New("Sync", nullptr);
  EXPECT_DEATH(SE_GetNthChild(parent, 0), "`ChildIndex < pSmlElement->NumberOfChildren'");
  SE_AddChild(parent, SE_New("Version", nullptr));
  EXPECT_DEATH(SE_GetNthChild(parent, 1), "`ChildIndex < pSmlElement->NumberOfChildren'");
}

TEST_F(Element, GrowsItsArrayByOnePointerForEachChild) {
  sml_element* const parent = SE_New("Sync", nullptr);
  sml_element* const children[] = {SE_New("Add", nullptr), SE_New("Add", nullptr), SE_New("Add", nullptr)};
  FailingMemory::Record(true);
  for (sml_element* const child : children) SE_AddChild(parent, child);
  EXPECT_EQ(FailingMemory::CallsAsText(), "malloc " + std::to_string(sizeof(LL_Node)) + ", malloc " +
                                              std::to_string(sizeof(void*)) + ", realloc " +
                                              std::to_string(2 * sizeof(void*)) + ", realloc " +
                                              std::to_string(3 * sizeof(void*)));
}

TEST_F(Element, AChildTakesItsParentsPageAndItsOwnChildrenKeepTheirs) {
  sml_element* const root = SE_New("Sync", nullptr);
  sml_element* const data = SE_NewWithAttribute("ApplicationData", "xmlns", "POOMCONTACTS:", nullptr);
  sml_element* const field = SE_New("FileAs", "x");
  SE_AddChild(data, field);
  EXPECT_EQ(SE_GetCodePage(field), 1);
  SE_AddChild(root, data);
  EXPECT_EQ(SE_GetCodePage(data), 0);
  EXPECT_EQ(SE_GetCodePage(field), 1);
}

TEST_F(Element, ANamespaceGivenAfterwardsMovesAChildToItsPage) {
  sml_element* const root = SE_New("Sync", nullptr);
  sml_element* const data = SE_New("ApplicationData", nullptr);
  SE_AddChild(root, data);
  SE_AddAttribute(data, "xmlns", "POOMCAL:");
  EXPECT_EQ(SE_GetCodePage(data), 4);
}

TEST_F(ElementDeathTest, AddsChildrenToSomethingOnly) {
  EXPECT_DEATH(SE_AddChild(nullptr, SE_New("Sync", nullptr)), "`pParent'");
  EXPECT_DEATH(SE_AddChild(nullptr, nullptr), "`pParent'");
}

TEST_F(ElementDeathTest, AChildHasOneParent) {
  sml_element* const parent = SE_New("Sync", nullptr);
  sml_element* const child = SE_New("Add", nullptr);
  SE_AddChild(parent, child);
  EXPECT_DEATH(SE_AddChild(SE_New("Sync", nullptr), child), "`!pChild->pParent'");
}

TEST_F(Element, Holds65535ChildrenAndNoMore) {
  sml_element* const parent = SE_New("Commands", nullptr);
  for (int i = 0; i < 65535; ++i) SE_AddChild(parent, SE_New("Add", nullptr));
  EXPECT_EQ(SE_GetNumberOfChildren(parent), 65535);
  EXPECT_EQ(SE_CountChildren(parent, "Add"), 65535);
  EXPECT_EQ(SE_GetChild(parent, "None"), nullptr);
  EXPECT_EQ(CatchAbort([parent] { SE_AddChild(parent, SE_New("Add", nullptr)); }), 0x8001000bU);
}

TEST_F(Element, AChildThatFindsNoRoomEndsTheExchange) {
  sml_element* const parent = SE_New("Commands", nullptr);
  SE_AddChild(parent, SE_New("Add", nullptr));
  sml_element* const child = SE_New("Add", nullptr);
  FailingMemory::FailAt(1);
  EXPECT_EQ(CatchAbort([=] { SE_AddChild(parent, child); }), 0x8001000dU);
  EXPECT_EQ(LiveBlocks(), 0U);
}

TEST_F(Element, ANewElementThatFindsNoMemoryEndsTheExchange) {
  for (std::size_t k = 1; k <= 10; ++k) {
    FailingMemory::FailAt(k);
    EXPECT_EQ(CatchAbort([] { SE_NewWithAttribute("Body", "xmlns", "POOMCONTACTS:", "x"); }), 0x8001000dU)
        << k;
    EXPECT_EQ(LiveBlocks(), 0U) << k;
  }
  FailingMemory::FailAt(11);
  EXPECT_EQ(CatchAbort([] { SE_NewWithAttribute("Body", "xmlns", "POOMCONTACTS:", "x"); }), 0U);
}

TEST_F(Element, DestroysTheWholeTree) {
  sml_element* const root = SE_NewWithAttribute("Sync", "a", "b", "text");
  sml_element* const child = SE_New("Collections", nullptr);
  SE_AddChild(child, SE_New("Collection", "x"));
  SE_AddChild(root, child);
  SE_AddChild(root, SE_New("Version", "2.0"));
  SE_Destroy(root);
  EXPECT_EQ(LiveBlocks(), 0U);
}

TEST_F(Element, DestroysTheLastChildFirst) {
  sml_element* const root = SE_New(nullptr, nullptr);
  sml_element* const first = SE_New(nullptr, nullptr);
  sml_element* const last = SE_New(nullptr, nullptr);
  SE_AddChild(root, first);
  SE_AddChild(root, last);
  const void* const array = root->pChildren;
  FailingMemory::Record(true);
  SE_Destroy(root);
  // Each block is followed by its node.
  const std::vector<MemoryCall>& calls = FailingMemory::Calls();
  ASSERT_EQ(calls.size(), 8U);
  EXPECT_EQ(calls[0].block, last);
  EXPECT_EQ(calls[2].block, first);
  EXPECT_EQ(calls[4].block, array);
  EXPECT_EQ(calls[6].block, root);
}

TEST_F(Element, DestroysAttributeTagValueAndNodeInThisOrder) {
  sml_element* const element = SE_NewWithAttribute("Body", "a", "b", "text");
  const void* const expected[] = {element->Attributes[0].name, element->Attributes[0].value, element->pTag,
                                  element->pValue, element};
  FailingMemory::Record(true);
  SE_Destroy(element);
  ASSERT_EQ(FailingMemory::Calls().size(), 10U);
  for (std::size_t i = 0; i < 5; ++i) EXPECT_EQ(FailingMemory::Calls()[2 * i].block, expected[i]) << i;
}

TEST_F(Element, DestroyingNothingDoesNothing) {
  FailingMemory::Record(true);
  SE_Destroy(nullptr);
  EXPECT_EQ(FailingMemory::CallsAsText(), "");
}

class ElementLog : public Element {
 protected:
  void SetUp() override {
    Element::SetUp();
    Log::getInstance();
    Log::SetLevel(AS_LOG_SOURCE_ELEMENT, AS_LOG_LEVEL_INFO, &spy_);
    parent_ = SE_New("Folder", nullptr);
  }

  LogSpy spy_;
  sml_element* parent_ = nullptr;
};

typedef ElementLog ElementLogDeathTest;

TEST_F(ElementLog, AddingAChildWritesItsTagAndValue) {
  SE_AddChild(parent_, SE_New("ServerId", "17"));
  EXPECT_THAT(spy_.Lines(), ElementsAre("Element Tag: |ServerId", "Element Value: |17"));
}

TEST_F(ElementLog, AMissingValueIsWrittenAsNull) {
  SE_AddChild(parent_, SE_New("ServerId", nullptr));
  EXPECT_THAT(spy_.Lines(), ElementsAre("Element Tag: |ServerId", "Element Value: NULL"));
}

TEST_F(ElementLog, AnEmptyValueIsWritten) {
  SE_AddChild(parent_, SE_New("ServerId", ""));
  EXPECT_THAT(spy_.Lines(), ElementsAre("Element Tag: |ServerId", "Element Value: |"));
}

TEST_F(ElementLog, ADisplayNameIsWrittenAsBytes) {
  SE_AddChild(parent_, SE_New("DisplayName", "A\xC3\xA4"));
  EXPECT_THAT(spy_.Lines(), ElementsAre("Element Tag: |DisplayName", "Element Value: |[41]|[C3]|[A4]"));
}

TEST_F(ElementLog, ADisplayNameWithoutValueIsWrittenAsNull) {
  SE_AddChild(parent_, SE_New("DisplayName", nullptr));
  EXPECT_THAT(spy_.Lines(), ElementsAre("Element Tag: |DisplayName", "Element Value: NULL"));
}

TEST_F(ElementLog, AnEmptyDisplayNameWritesNoValue) {
  SE_AddChild(parent_, SE_New("DisplayName", ""));
  EXPECT_THAT(spy_.Lines(), ElementsAre("Element Tag: |DisplayName"));
}

TEST_F(ElementLog, ALongDisplayNameIsCutAfter512Bytes) {
  SE_AddChild(parent_, SE_New("DisplayName", std::string(513, 'A').c_str()));
  std::string expected = "Element Value: ";
  for (int i = 0; i < 512; ++i) expected += "|[41]";
  EXPECT_EQ(spy_.Lines().at(1), expected + "| <more data>");
}

TEST_F(ElementLog, AddingNothingWritesNothing) {
  SE_AddChild(parent_, nullptr);
  EXPECT_THAT(spy_.Lines(), IsEmpty());
  EXPECT_EQ(SE_GetNumberOfChildren(parent_), 0);
}

TEST_F(ElementLog, ATagThatIsMissingIsWrittenAsEmpty) {
  SE_AddChild(parent_, SE_New(nullptr, nullptr));
  EXPECT_THAT(spy_.Lines(), ElementsAre("Element Tag: |", "Element Value: NULL"));
}

// Speaks where the assertion's message goes.
class LoudAppender : public Appender {
 public:
  void write(const char* text) override { std::fputs(text, stderr); }
  void write(unsigned char) override {}
  void write(unsigned int) override {}
  void endEntry() override { std::fputs("\n", stderr); }
};

TEST_F(ElementLogDeathTest, AChildThatIsRefusedIsWrittenAllTheSame) {
  sml_element* const child = SE_New("ServerId", "17");
  SE_AddChild(parent_, child);
  LoudAppender loud;
  Log::SetLevel(AS_LOG_SOURCE_ELEMENT, AS_LOG_LEVEL_INFO, &loud);
  EXPECT_DEATH(SE_AddChild(parent_, child), "Element Tag: ServerId\nElement Value: 17\n.*!pChild->pParent");
  Log::SetLevel(AS_LOG_SOURCE_ELEMENT, AS_LOG_LEVEL_INFO, nullptr);
}

TEST_F(ElementLog, NothingIsWrittenAboveTheLevelOfFacts) {
  Log::SetLevel(AS_LOG_SOURCE_ELEMENT, static_cast<AS_LOG_LEVEL_T>(3), &spy_);
  SE_AddChild(parent_, SE_New("ServerId", "17"));
  EXPECT_THAT(spy_.Lines(), IsEmpty());
}

// Dispatch to the codecs.

const ByteChannel kSend = &Communications::Send;
const ByteChannel kCount = &Communications::CountOutStream;
const ByteChannel kRead = &Communications::Read;

TEST_F(Element, IsWrittenInTheEncodingAskedFor) {
  sml_element* const root = SE_New("Sync", nullptr);
  Wire wbxml;
  SE_Serialize(root, ENCODING_WBXML, kSend, wbxml.comms);
  EXPECT_EQ(wbxml.Sent(), HexBytes("03 01 6A 00 05"));
  Wire xml;
  SE_Serialize(root, ENCODING_XML, kSend, xml.comms);
  EXPECT_EQ(xml.Sent(), "<Sync/>");
}

TEST_F(Element, IsWrittenWhateverValidationSays) {
  Wire wire;
  SE_Serialize(SE_New("Class", nullptr), ENCODING_WBXML, kSend, wire.comms);
  EXPECT_EQ(wire.Sent(), HexBytes("03 01 6A 00 10"));
}

TEST_F(Element, IsMeasuredWithoutBeingSent) {
  Wire wire;
  wire.comms.CountOutStream(nullptr, 1000);
  sml_element* const root = SE_New("Sync", "x");
  EXPECT_EQ(SE_HowLongIsIt(root, ENCODING_WBXML, kCount, wire.comms), 4 + 5);
  EXPECT_EQ(SE_HowLongIsIt(root, ENCODING_XML, kCount, wire.comms), 14);
  EXPECT_EQ(wire.transport.CallCount(), 0U);
}

TEST_F(Element, IsMeasuredModulo65536) {
  Wire wire;
  // Four bytes of head, the tag, STR_I, the text, its NUL, END.
  sml_element* const longest = SE_New("Sync", std::string(65535 - 8, 'x').c_str());
  EXPECT_EQ(SE_HowLongIsIt(longest, ENCODING_WBXML, kCount, wire.comms), 65535);
  sml_element* const longer = SE_New("Sync", std::string(65536 - 8, 'x').c_str());
  EXPECT_EQ(SE_HowLongIsIt(longer, ENCODING_WBXML, kCount, wire.comms), 0);
}

TEST_F(Element, IsReadFromWbxml) {
  Wire wire(HexBytes("03 01 6A 00 05"));
  EXPECT_EQ(Outline(SE_Deserialize(ENCODING_WBXML, kRead, wire.comms)), "Sync");
}

TEST_F(Element, IsNotReadFromXml) {
  Wire wire("<Sync/>");
  EXPECT_EQ(SE_Deserialize(ENCODING_XML, kRead, wire.comms), nullptr);
  EXPECT_EQ(wire.transport.CallCount(), 0U);
}

TEST_F(ElementDeathTest, ThereAreTwoEncodingsOfDocuments) {
  Wire wire;
  sml_element* const root = SE_New("Sync", nullptr);
  for (const INT32 value : {2, 3, 4, -1}) {
    const ENCODINGTYPE encoding = static_cast<ENCODINGTYPE>(value);
    EXPECT_DEATH(SE_Serialize(root, encoding, kSend, wire.comms), "`0'") << value;
    EXPECT_DEATH(SE_HowLongIsIt(root, encoding, kCount, wire.comms), "`0'") << value;
    EXPECT_DEATH(SE_Deserialize(encoding, kRead, wire.comms), "`0'") << value;
  }
}

}  // namespace
