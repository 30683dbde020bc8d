#include <algorithm>
#include <gtest/gtest.h>
#include <string>

#include "document/xml.h"
#include "support/CatchAbort.h"
#include "support/Documents.h"
#include "support/FailingMemory.h"
#include "support/Memory.h"
#include "support/Wire.h"

namespace {

using namespace AIRSYNC_STACK;
using airsync_test::CatchAbort;
using airsync_test::FailingMemory;
using airsync_test::Outline;
using airsync_test::ScriptedTransport;
using airsync_test::Wire;

const ByteChannel kRead = &Communications::Read;

// A source that remembers how many of the bytes that it handed out were to be read again at most.
class WatchedSource : public Communications {
 public:
  explicit WatchedSource(AirSyncTransportInterface* transport)
      : Communications(SERVER_INFO(), transport, nullptr) {}

  void ReadWatched(UINT8* destination, int count) {
    givenBack_ -= count;
    longestLookAhead = std::max(longestLookAhead, givenBack_);
    givenBack_ = std::max(givenBack_, 0);
    Read(destination, count);
  }

  int longestLookAhead = 0;

 private:
  int givenBack_ = 0;
};

class XmlReader : public testing::Test {
 protected:
  void SetUp() override {
    AdapterFreeAll();
    FailingMemory::Reset();
    liveBefore_ = FailingMemory::LiveBlocks();
  }
  void TearDown() override {
    FailingMemory::Reset();
    AdapterFreeAll();
  }

  // Reads the whole document, and nothing behind it.
  static sml_element* Read(const std::string& document) {
    Wire wire(document + "behind");
    sml_element* const root = XMLParseSmlDocument(kRead, wire.comms);
    EXPECT_EQ(wire.transport.Unread(), 6U);
    return root;
  }
  static std::string OutlineOf(const std::string& document) { return Outline(Read(document)); }
  // The value of an element with this between its tags.
  static std::string ValueOf(const std::string& text) { return SE_GetValue(Read("<a>" + text + "</a>")); }

  // The code that reading ends with, and that nothing is left behind.
  SYNC_RESULT Refusal(const std::string& document) const {
    Wire wire(document);
    const SYNC_RESULT code = CatchAbort([&wire] { XMLParseSmlDocument(kRead, wire.comms); });
    EXPECT_EQ(FailingMemory::LiveBlocks(), liveBefore_) << document;
    return code;
  }

  std::size_t liveBefore_ = 0;
};

typedef XmlReader XmlReaderDeathTest;

// One document with every construct: declarations, an attribute, references, a comment, a CDATA section.
const char kEveryConstruct[] =
    "<?xml version=\"1.0\"?><?xml?><Sync xmlns = \"POOMCAL:\" >\n a&amp;&#65;&#x41;<!-- no --><![CDATA[<&>]]>"
    "<Status >1</Status >\t<Class/> \n<Version></Version></Sync\n>";

TEST_F(XmlReader, ReadsAnElementWithoutContent) {
  const sml_element* const root = Read("<Sync/>");
  EXPECT_EQ(Outline(root), "Sync");
  EXPECT_EQ(SE_GetValue(root), nullptr);
  EXPECT_EQ(SE_GetParent(root), nullptr);
  EXPECT_EQ(SE_GetCodePage(root), 0);
}

TEST_F(XmlReader, GivesAStartAndAnEndTheEmptyText) {
  EXPECT_STREQ(SE_GetValue(Read("<Sync></Sync>")), "");
  EXPECT_EQ(OutlineOf("<Sync><Class/></Sync>"), "Sync=\"\"(Class)");
}

TEST_F(XmlReader, ReadsTextAndThenChildrenInOrder) {
  EXPECT_EQ(
      OutlineOf(
          "<Sync>x<Status>1</Status><Collections><Collection/><Class>Email</Class></Collections></Sync>"),
      "Sync=\"x\"(Status=\"1\" Collections=\"\"(Collection Class=\"Email\"))");
}

TEST_F(XmlReader, ReadsEveryConstruct) {
  const sml_element* const root = Read(kEveryConstruct);
  EXPECT_EQ(Outline(root), "Sync=\"\n a&A;A;<&>\"(Status=\"1\" Class Version=\"\")");
  EXPECT_STREQ(SE_GetNthAttributeName(root, 0), "xmlns");
  EXPECT_STREQ(SE_GetNthAttributeValue(root, 0), "\"POOMCAL:\"");
}

TEST_F(XmlReader, CountsTheLengthOfAValue) { EXPECT_EQ(SE_GetValueLength(Read("<a>b&lt;c</a>")), 3); }

// Names.

TEST_F(XmlReader, StartsANameWithALetterAColonOrALine) {
  for (int c = 1; c < 256; ++c) {
    const char first = static_cast<char>(c);
    const bool starts =
        (first >= 'a' && first <= 'z') || (first >= 'A' && first <= 'Z') || first == ':' || first == '_';
    const std::string document = std::string("<") + first + "/>";
    if (starts) {
      EXPECT_EQ(OutlineOf(document), std::string(1, first));
    } else {
      EXPECT_EQ(Refusal(document), 0x8001000bU) << c;
    }
    AdapterFreeAll();
  }
}

TEST_F(XmlReader, ContinuesANameAlsoWithDigitsDashesAndDots) {
  EXPECT_EQ(OutlineOf("<A:z_0-9.B:></A:z_0-9.B:>"), "A:z_0-9.B:=\"\"");
  for (const char* const name : {"a+", "a\xC3\xA4", "a;", "a\"", "a'", "a\r", "a@"}) {
    EXPECT_EQ(Refusal(std::string("<") + name + "/>"), 0x8001000bU) << name;
  }
}

TEST_F(XmlReader, ReadsNamesOfAnyLength) {
  const std::string name(5000, 'n');
  EXPECT_EQ(OutlineOf("<" + name + "></" + name + ">"), name + "=\"\"");
}

TEST_F(XmlReader, TakesNoWhiteSpaceBeforeAName) {
  EXPECT_EQ(Refusal("< a/>"), 0x8001000bU);
  EXPECT_EQ(Refusal("<a></ a>"), 0x8001000bU);
}

// Attributes.

TEST_F(XmlReader, KeepsTheQuotesOfAnAttribute) {
  const sml_element* root = Read("<a b=\"c\"/>");
  EXPECT_STREQ(SE_GetNthAttributeName(root, 0), "b");
  EXPECT_STREQ(SE_GetNthAttributeValue(root, 0), "\"c\"");
  root = Read("<a b='c'>x</a>");
  EXPECT_STREQ(SE_GetNthAttributeValue(root, 0), "'c'");
  EXPECT_STREQ(SE_GetValue(root), "x");
}

TEST_F(XmlReader, MakesAnAttributeOfNameCharactersAndQuotes) {
  EXPECT_STREQ(SE_GetNthAttributeValue(Read("<a b=\"'-0.:_Z'\"/>"), 0), "\"'-0.:_Z'\"");
  EXPECT_STREQ(SE_GetNthAttributeValue(Read("<a b=0/>"), 0), "0");
  EXPECT_STREQ(SE_GetNthAttributeValue(Read("<a b=/>"), 0), "");
  EXPECT_STREQ(SE_GetNthAttributeValue(Read("<a b=></a>"), 0), "");
  EXPECT_EQ(Refusal("<a b=\"c d\"/>"), 0x8001000bU) << "a blank ends it: \"d\" has no value";
  EXPECT_EQ(Refusal("<a b=\"http://c\"/>"), 0x8001000bU);
  EXPECT_EQ(Refusal("<a b=\"&amp;\"/>"), 0x8001000bU);
}

TEST_F(XmlReader, SkipsWhiteSpaceAroundAnAttribute) {
  const sml_element* const root = Read("<a\t\n b \n=\t c \n\t/>");
  EXPECT_STREQ(SE_GetNthAttributeName(root, 0), "b");
  EXPECT_STREQ(SE_GetNthAttributeValue(root, 0), "c");
}

TEST_F(XmlReader, SetsThePageByANamespaceWithoutQuotes) {
  EXPECT_EQ(OutlineOf("<a xmlns=POOMCAL:/>"), "a@4");
  EXPECT_EQ(OutlineOf("<a xmlns=\"POOMCAL:\"/>"), "a") << "the quotes are part of the text that is looked up";
}

TEST_F(XmlReader, RefusesAnAttributeWithoutItsParts) {
  EXPECT_EQ(Refusal("<a b/>"), 0x8001000bU);
  EXPECT_EQ(Refusal("<a b>x</a>"), 0x8001000bU);
  EXPECT_EQ(Refusal("<a b \"c\"/>"), 0x8001000bU);
  EXPECT_EQ(Refusal("<a =\"c\"/>"), 0x8001000bU);
  EXPECT_EQ(Refusal("<a 1=c/>"), 0x8001000bU);
}

TEST_F(XmlReaderDeathTest, ASecondAttributeStopsTheProcess) {
  EXPECT_DEATH(Read("<a b=\"c\" d=\"e\"/>"), "`pSmlElement->NumberOfAttributes < 1'");
}

// Tags and white space.

TEST_F(XmlReader, ReadsTheBracketRightBehindTheSlash) {
  EXPECT_EQ(OutlineOf("<a />"), "a");
  EXPECT_EQ(Refusal("<a/ >"), 0x8001000bU);
  EXPECT_EQ(Refusal("<a//>"), 0x8001000bU);
  EXPECT_EQ(Refusal("<a/b>"), 0x8001000bU);
}

TEST_F(XmlReader, SkipsWhiteSpaceBehindAndBetweenChildren) {
  EXPECT_EQ(OutlineOf("<a><b/> \n\t<c/> \n\t</a>"), "a=\"\"(b c)");
}

TEST_F(XmlReader, KeepsWhiteSpaceBeforeTheFirstChildAsText) {
  EXPECT_EQ(OutlineOf("<a> \n\t<b/></a>"), "a=\" \n\t\"(b)");
  EXPECT_EQ(ValueOf(" x\r\n "), " x\r\n ");
}

TEST_F(XmlReader, DoesNotTakeACarriageReturnForWhiteSpace) {
  EXPECT_EQ(Refusal("<a\r/>"), 0x8001000bU);
  EXPECT_EQ(Refusal("<a><b/>\r\n</a>"), 0x8001000bU);
  EXPECT_EQ(Refusal("<a></a\r>"), 0x8001000bU);
}

TEST_F(XmlReader, SkipsWhiteSpaceAtTheEndOfAnEndTag) {
  EXPECT_EQ(OutlineOf("<a>x</a \n\t>"), "a=\"x\"");
  EXPECT_EQ(Refusal("<a>x</a b>"), 0x8001000bU);
}

TEST_F(XmlReader, RefusesTextBehindTheFirstChild) {
  EXPECT_EQ(Refusal("<a><b/>text</a>"), 0x8001000bU);
  EXPECT_EQ(Refusal("<a><b/>&amp;</a>"), 0x8001000bU);
  EXPECT_EQ(Refusal("<a><b/><!-- no --></a>"), 0x8001000bU);
  EXPECT_EQ(Refusal("<a><b/><![CDATA[x]]></a>"), 0x8001000bU);
}

TEST_F(XmlReader, RefusesAnEndTagOfAnotherName) {
  EXPECT_EQ(Refusal("<a>x</b>"), 0x8001000bU);
  EXPECT_EQ(Refusal("<a>x</A>"), 0x8001000bU);
  EXPECT_EQ(Refusal("<ab>x</a>"), 0x8001000bU);
  EXPECT_EQ(Refusal("<a>x</ab>"), 0x8001000bU);
  EXPECT_EQ(Refusal("<a>x</>"), 0x8001000bU);
  EXPECT_EQ(Refusal("<a><b>x</a></b>"), 0x8001000bU);
}

TEST_F(XmlReader, RefusesADocumentThatDoesNotBeginWithATag) {
  for (const char* const document :
       {" <a/>", "a", "\n<a/>", "</a>", "<>", "<!-- no --><a/>", "\xEF\xBB\xBF<a/>"}) {
    EXPECT_EQ(Refusal(document), 0x8001000bU) << document;
  }
}

// Declarations.

TEST_F(XmlReader, SkipsAnyNumberOfDeclarations) {
  EXPECT_EQ(OutlineOf("<?xml?><a/>"), "a");
  EXPECT_EQ(OutlineOf("<?xml version=\"1.0\" encoding='utf-8'?><?xml-stylesheet ><?"
                      "?><a/>"),
            "a");
}

TEST_F(XmlReader, SkipsNothingBetweenDeclarationsAndRoot) {
  EXPECT_EQ(Refusal("<?xml?>\n<a/>"), 0x8001000bU);
  EXPECT_EQ(Refusal("<?xml?> <?xml?><a/>"), 0x8001000bU);
}

TEST_F(XmlReader, RefusesOtherInstructions) {
  EXPECT_EQ(Refusal("<?xm?><a/>"), 0x8001000bU);
  EXPECT_EQ(Refusal("<?XML?><a/>"), 0x8001000bU);
  EXPECT_EQ(Refusal("<a>x<?xml?></a>"), 0x8001000bU);
}

// Text.

TEST_F(XmlReader, ReadsTheFiveEntities) {
  EXPECT_EQ(ValueOf("&amp;&lt;&gt;&apos;&quot;"), "&<>'\"");
  EXPECT_EQ(ValueOf("a&amp;lt;b"), "a&lt;b") << "once only";
}

TEST_F(XmlReader, RefusesEveryOtherEntity) {
  for (const char* const text : {"&", "&;", "& ", "&am;", "&amp", "&AMP;", "&apo;", "&apos", "&quote;", "&l;",
                                 "&gt", "&nbsp;", "&&amp;", "&a", "&qu", "&ltt;"}) {
    EXPECT_EQ(Refusal("<a>" + std::string(text) + "</a>"), 0x8001000bU) << text;
  }
}

TEST_F(XmlReader, KeepsTheSemicolonBehindANumericReference) {
  EXPECT_EQ(ValueOf("&#65;"), "A;");
  EXPECT_EQ(ValueOf("&#x41;"), "A;");
  EXPECT_EQ(ValueOf("&#x4a;&#x4A;"), "J;J;");
  EXPECT_EQ(ValueOf("&#65"), "A");
  EXPECT_EQ(ValueOf("&#65B"), "AB") << "B is no decimal digit";
  EXPECT_EQ(ValueOf("&#x41g"), "Ag");
  EXPECT_EQ(ValueOf("&#65&#66x"), "ABx");
  EXPECT_EQ(ValueOf("&#X41;").size(), 0U) << "no digit: a NUL, which ends the text";
}

TEST_F(XmlReader, WrapsANumericReferenceAt16BitsAndTakesItsLowByte) {
  EXPECT_EQ(ValueOf("&#321;"), "A;") << "256 and 65";
  EXPECT_EQ(ValueOf("&#xFF41;"), "A;");
  EXPECT_EQ(ValueOf("&#65601;"), "A;") << "65,536 and 65";
  EXPECT_EQ(ValueOf("&#x123456789ABC41;"), "A;");
  EXPECT_EQ(ValueOf("&#228;"), "\xE4;");
  EXPECT_EQ(ValueOf("&#00000000000000000065;"), "A;");
}

TEST_F(XmlReader, EndsATextAtANulForWhoeverLooksAtIt) {
  EXPECT_EQ(ValueOf("a&#0;b"), "a");
  EXPECT_EQ(ValueOf(std::string("a\0b", 3)), "a");
}

TEST_F(XmlReader, SkipsComments) {
  EXPECT_EQ(ValueOf("a<!-- b -->c"), "ac");
  EXPECT_EQ(ValueOf("<!---->"), "");
  EXPECT_EQ(ValueOf("<!-- - -- > <x> & ]]> --->a"), "a");
  EXPECT_EQ(ValueOf("a<!--1--><!--2-->b"), "ab");
  EXPECT_EQ(OutlineOf("<a><!-- x --><b/></a>"), "a=\"\"(b)");
}

TEST_F(XmlReader, DoesNotEndACommentWithTheDashesThatOpenIt) {
  EXPECT_EQ(Refusal("<a><!--></a>"), 0x8001000cU) << "the document ends inside the comment";
  EXPECT_EQ(Refusal("<a><!---></a>"), 0x8001000cU);
}

TEST_F(XmlReader, TakesACdataSectionLiterally) {
  EXPECT_EQ(ValueOf("a<![CDATA[<b>&amp;&#65;</b>]]>c"), "a<b>&amp;&#65;</b>c");
  EXPECT_EQ(ValueOf("<![CDATA[]]>"), "");
  EXPECT_EQ(ValueOf("<![CDATA[<!-- kept -->]]>"), "<!-- kept -->");
  EXPECT_EQ(ValueOf("<![CDATA[>]]>"), ">");
}

TEST_F(XmlReader, EndsACdataSectionAtTheFirstBracketsInARow) {
  EXPECT_EQ(ValueOf("<![CDATA[]]]>"), "]");
  EXPECT_EQ(ValueOf("<![CDATA[]]]]>"), "]]");
  EXPECT_EQ(ValueOf("<![CDATA[a]]b]>c]]>"), "a]]b]>c");
  EXPECT_EQ(ValueOf("<![CDATA[a]] >b]]>"), "a]] >b");
  EXPECT_EQ(ValueOf("<![CDATA[a]]><![CDATA[b]]>"), "ab");
  EXPECT_EQ(ValueOf("]]"), "]]") << "without a section they are text";
}

TEST_F(XmlReader, RefusesOtherDeclarations) {
  for (const char* const text : {"<!", "<!->", "<!-x->", "<![", "<![CDATA]]>", "<![cdata[x]]>",
                                 "<!DOCTYPE a>", "<!ENTITY x>", "<![CDATX[", "<! -- -->"}) {
    EXPECT_EQ(Refusal("<a>" + std::string(text) + "</a>"), 0x8001000bU) << text;
  }
}

TEST_F(XmlReader, TakesEveryOtherByteAsItIs) {
  std::string text;
  for (int c = 1; c < 256; ++c) {
    if (c != '<' && c != '>' && c != '&') text += static_cast<char>(c);
  }
  EXPECT_EQ(ValueOf(text), text);
}

TEST_F(XmlReaderDeathTest, ABareBracketInATextStopsTheProcess) {
  EXPECT_DEATH(Read("<a>b>c</a>"), "`__null == &In'");
  EXPECT_DEATH(Read("<a><![CDATA[x]]>></a>"), "`__null == &In'");
  EXPECT_DEATH(Read("<a>]]></a>"), "`__null == &In'");
}

TEST_F(XmlReader, GrowsATextByDoublingFiveBytes) {
  Wire wire("<a>12345678901</a>");
  FailingMemory::Record(true);
  XMLParseSmlDocument(kRead, wire.comms);
  EXPECT_NE(FailingMemory::CallsAsText().find("malloc 5, realloc 10, realloc 20, "), std::string::npos)
      << FailingMemory::CallsAsText();
}

TEST_F(XmlReader, ReadsTextsOfAnyLength) {
  const std::string text(70000, 'x');
  const sml_element* const root = Read("<a>" + text + "</a>");
  EXPECT_EQ(SE_GetValue(root), text);
  EXPECT_EQ(SE_GetValueLength(root), 70000 - 65536) << "the length has 16 bits";
}

// Limits and failures.

std::string Nested(int levels) {
  std::string document;
  for (int i = 1; i < levels; ++i) document += "<a>";
  document += "<a/>";
  for (int i = 1; i < levels; ++i) document += "</a>";
  return document;
}

TEST_F(XmlReader, ReadsSixtyFourLevels) {
  const sml_element* element = Read(Nested(64));
  int levels = 1;
  for (; SE_GetNumberOfChildren(element) != 0; element = SE_GetNthChild(element, 0)) ++levels;
  EXPECT_EQ(levels, 64);
}

TEST_F(XmlReader, RefusesTheSixtyFifthLevel) { EXPECT_EQ(Refusal(Nested(65)), 0x8001000bU); }

TEST_F(XmlReader, CountsLevelsNotElements) {
  std::string children;
  for (int i = 0; i < 200; ++i) children += "<b><c/></b>";
  EXPECT_EQ(SE_GetNumberOfChildren(Read("<a>" + children + "</a>")), 200);
}

TEST_F(XmlReader, EndsWithTheTransportWhereverADocumentIsCut) {
  const std::string document = kEveryConstruct;
  for (std::size_t length = 0; length < document.size(); ++length) {
    EXPECT_EQ(Refusal(document.substr(0, length)), 0x8001000cU) << document.substr(0, length);
  }
}

TEST_F(XmlReader, ReadsDocumentsShorterThanWhatItLooksFor) {
  EXPECT_EQ(OutlineOf("<a/>"), "a");
  EXPECT_EQ(Refusal("<a"), 0x8001000cU);
  EXPECT_EQ(Refusal("<?x"), 0x8001000cU);
  EXPECT_EQ(Refusal("x"), 0x8001000bU) << "one byte is enough to see that it is wrong";
  EXPECT_EQ(Refusal("<a>&x"), 0x8001000bU);
}

// Everything that needs looking ahead, each in a form that comes as close as it can.
TEST_F(XmlReader, GivesBackFiveBytesAtMost) {
  for (const std::string& document :
       {std::string(kEveryConstruct),
        std::string("<?xml?><a>&apos;&quot;&amp;<![CDATA[]]]]><!-- --- --></a>"), std::string("<a>&apox</a>"),
        std::string("<a><![CDATA</a>"), std::string("<?xm<a/>")}) {
    ScriptedTransport transport(document);
    transport.BeginBody();
    WatchedSource source(&transport);
    CatchAbort(
        [&source] { XMLParseSmlDocument(static_cast<ByteChannel>(&WatchedSource::ReadWatched), source); });
    EXPECT_LE(source.longestLookAhead, 5) << document;
    EXPECT_GT(source.longestLookAhead, 0) << document;
  }
}

TEST_F(XmlReader, AsksTheTransportForNoByteTwice) {
  Wire wire("<a>&apos;</a>");
  XMLParseSmlDocument(kRead, wire.comms);
  EXPECT_EQ(wire.transport.Count("Read 1 document"), 13U);
}

TEST_F(XmlReader, EndsWithExhaustionWhicheverAllocationFails) {
  const std::string document = "<Sync a=\"bbbbbbbbb\">0123456789<Collections><Class/></Collections></Sync>";
  std::size_t k = 1;
  for (;; ++k) {
    FailingMemory::Reset();
    FailingMemory::FailAt(k);
    Wire wire(document);
    const SYNC_RESULT code = CatchAbort([&wire] { XMLParseSmlDocument(kRead, wire.comms); });
    if (code == 0) break;
    ASSERT_EQ(code, 0x8001000dU) << k;
    ASSERT_EQ(FailingMemory::LiveBlocks(), liveBefore_) << k;
  }
  EXPECT_GT(k, 30U);
}

TEST_F(XmlReader, FreesEverythingButTheTree) {
  SE_Destroy(Read(kEveryConstruct));
  EXPECT_EQ(FailingMemory::LiveBlocks(), liveBefore_);
}

TEST_F(XmlReader, IsNotReachedThroughTheDispatch) {
  Wire wire("<a/>");
  EXPECT_EQ(SE_Deserialize(ENCODING_XML, kRead, wire.comms), nullptr);
  EXPECT_EQ(wire.transport.Unread(), 4U);
}

TEST_F(XmlReader, ReadsBackWhatTheWriterWrote) {
  sml_element* const root = SE_NewWithAttribute("Sync", "a", "\"b\"", "&\"'<> &amp; ]]>\r\n\xC3\xA4");
  SE_AddChild(root, SE_New("Class", nullptr));
  SE_AddChild(root, SE_New("Version", ""));
  Wire out;
  XMLSerializeSmlDocument(root, &Communications::Send, out.comms);
  const sml_element* const back = Read(out.Sent());
  EXPECT_EQ(Outline(back), Outline(root));
  EXPECT_STREQ(SE_GetNthAttributeValue(back, 0), "\"b\"");
}

}  // namespace
