#include "api/Exchange.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>

#include "api/AirSync.h"
#include "http/Communications.h"
#include "support/Account.h"
#include "support/CatchAbort.h"
#include "support/FailingMemory.h"
#include "support/HexAndText.h"
#include "support/ScriptedTransport.h"

namespace {

using namespace AIRSYNC_STACK;
using namespace airsync_test;
using testing::ElementsAre;
using testing::IsEmpty;

class Exchange : public testing::Test {
 protected:
  Exchange() { FailingMemory::Reset(); }
  ~Exchange() override {
    AirSync::destroyInstance();
    EXPECT_EQ(FailingMemory::LiveBlocks(), 0U);
  }

  // A request that measures `length` bytes: the document's head (4), the tag and its end (2), the mark and
  // the end of a text (2), and the text.
  static sml_element* RequestOf(std::size_t length) {
    return SE_New("Sync", std::string(length - 8, 'x').c_str());
  }

  SYNC_RESULT Send(std::size_t length, RequestLimit limit, ENCODINGTYPE encoding = ENCODING_WBXML) {
    sml_element* const request = RequestOf(length);
    return CatchAbort([&] { SendRequest(comms_, encoding, request, "FolderSync", limit); });
  }

  ScriptedTransport transport_;
  Communications comms_{TestAccount(), &transport_, nullptr};
};

TEST_F(Exchange, SendsTheHeadThenTheBodyInTheWritersPieces) {
  EXPECT_EQ(Send(11, RequestLimit::kNone), 0U);
  EXPECT_THAT(transport_.Lines(),
              ElementsAre("SendHeader " + std::to_string(WbxmlHead("FolderSync", "11").size() + 1) + " 11",
                          "Write 1 document", "Write 1 document", "Write 1 document", "Write 1 document",
                          "Write 1 document", "Write 1 document", "Write 3 document", "Write 1 document",
                          "Write 1 document"));
  EXPECT_EQ(transport_.Requests()[0].head, WbxmlHead("FolderSync", "11"));
  EXPECT_EQ(transport_.Requests()[0].body, HexAndText("03 01 6A 00 45 03 'xxx' 00 01"));
}

TEST_F(Exchange, DestroysTheRequest) {
  EXPECT_EQ(Send(11, RequestLimit::kNone), 0U);
  EXPECT_EQ(FailingMemory::LiveBlocks(), 0U);
}

TEST_F(Exchange, SendsALimitedRequestOfExactly10000Bytes) {
  EXPECT_EQ(Send(10000, RequestLimit::k10000Bytes), 0U);
  ASSERT_EQ(transport_.Requests().size(), 1U);
  EXPECT_EQ(transport_.Requests()[0].contentLength, 10000U);
  EXPECT_EQ(transport_.Requests()[0].body.size(), 10000U);
}

TEST_F(Exchange, SendsNothingOfALimitedRequestOf10001Bytes) {
  EXPECT_EQ(Send(10001, RequestLimit::k10000Bytes), 0x8001000eU);
  EXPECT_THAT(transport_.Lines(), IsEmpty());
  EXPECT_EQ(FailingMemory::LiveBlocks(), 0U);
}

TEST_F(Exchange, SendsAnUnlimitedRequestOf10001Bytes) {
  EXPECT_EQ(Send(10001, RequestLimit::kNone), 0U);
  ASSERT_EQ(transport_.Requests().size(), 1U);
  EXPECT_EQ(transport_.Requests()[0].contentLength, 10001U);
}

TEST_F(Exchange, AnnouncesMeasuredLengthsModulo65536) {
  EXPECT_EQ(Send(65535, RequestLimit::kNone), 0U);
  EXPECT_EQ(Send(65536 + 20, RequestLimit::k10000Bytes), 0U);
  ASSERT_EQ(transport_.Requests().size(), 2U);
  EXPECT_EQ(transport_.Requests()[0].contentLength, 65535U);
  EXPECT_EQ(transport_.Requests()[1].contentLength, 20U);
}

TEST_F(Exchange, DeclaresWbxmlAlsoForAnXmlRequest) {
  // <Sync>xxx</Sync>
  EXPECT_EQ(Send(11, RequestLimit::kNone, ENCODING_XML), 0U);
  ASSERT_EQ(transport_.Requests().size(), 1U);
  EXPECT_EQ(transport_.Requests()[0].head, WbxmlHead("FolderSync", "16"));
  EXPECT_EQ(transport_.Requests()[0].body, "<Sync>xxx</Sync>");
}

TEST_F(Exchange, ReceivesTheHeadThenTheDocumentByteByByte) {
  transport_.Answer(HexAndText("03 01 6A 00 05"));
  EXPECT_EQ(CatchAbort([&] {
              sml_element* const response = ReceiveResponse(comms_, ENCODING_WBXML, "Sync");
              EXPECT_STREQ(SE_GetTag(response), "Sync");
              SE_Destroy(response);
            }),
            0U);
  EXPECT_THAT(transport_.Lines(), ElementsAre("ReadResponseHead", "Read 1 document", "Read 1 document",
                                              "Read 1 document", "Read 1 document", "Read 1 document"));
}

TEST_F(Exchange, ReadsNothingBehindTheDocument) {
  transport_.Answer(HexAndText("03 01 6A 00 45 01 'rest'"));
  EXPECT_EQ(CatchAbort([&] { SE_Destroy(ReceiveResponse(comms_, ENCODING_WBXML, "Sync")); }), 0U);
  EXPECT_EQ(transport_.Unread(), 4U);
}

TEST_F(Exchange, RaisesWhereTheEncodingHasNoReader) {
  transport_.Answer("<Sync/>");
  EXPECT_EQ(CatchAbort([&] { ReceiveResponse(comms_, ENCODING_XML, "Sync"); }), 0x8001000bU);
  EXPECT_THAT(transport_.Lines(), ElementsAre("ReadResponseHead"));
}

TEST_F(Exchange, RaisesADocumentWithAnotherRoot) {
  transport_.Answer(HexAndText("03 01 6A 00 06"));
  EXPECT_EQ(CatchAbort([&] { ReceiveResponse(comms_, ENCODING_WBXML, "Sync"); }), 0x8001000bU);
  EXPECT_EQ(FailingMemory::LiveBlocks(), 0U);
}

TEST_F(Exchange, AcceptsAnyRootWhereNoneIsNamed) {
  transport_.Answer(HexAndText("03 01 6A 00 06"));
  EXPECT_EQ(CatchAbort([&] { SE_Destroy(ReceiveResponse(comms_, ENCODING_WBXML, nullptr)); }), 0U);
}

}  // namespace
