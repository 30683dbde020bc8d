#include "cli/ResultText.h"

#include <gtest/gtest.h>

namespace airsync {
namespace {

using namespace AIRSYNC_STACK;

struct Row {
  SYNC_RESULT result;
  const char* name;
  ExitCode exitCode;
};

const Row kResults[] = {
    {0x00000000, "AS_RESULT_OK", ExitCode::kDone},
    {0x80000000, "AS_RESULT_FOLDER_NOT_SELECTED", ExitCode::kConfiguration},
    {0x80000001, "AS_RESULT_INVALID_ARGUMENT", ExitCode::kInternal},
    {0x800000ff, "AS_RESULT_NO_REQUEST", ExitCode::kInternal},
    {0x8001000b, "AS_RESULT_MALFORMED_DOCUMENT", ExitCode::kServer},
    {0x8001000c, "AS_RESULT_TRANSPORT_FAILED", ExitCode::kNetwork},
    {0x8001000d, "AS_RESULT_OUT_OF_MEMORY", ExitCode::kInternal},
    {0x8001000e, "AS_RESULT_REQUEST_TOO_LARGE", ExitCode::kPartlyDone},
    {0x8001000f, "AS_RESULT_BAD_SERVER_ADDRESS", ExitCode::kConfiguration},
    {0x80010010, "AS_RESULT_CANCELLED", ExitCode::kInterrupted},
    {0x80010011, "AS_RESULT_WRONG_COLLECTION", ExitCode::kServer},
    {0x80010012, "AS_RESULT_HTTP_UNAUTHORIZED", ExitCode::kLoginRefused},
    {0x80010013, "AS_RESULT_HTTP_BAD_REQUEST", ExitCode::kServer},
    {0x80010014, "AS_RESULT_HTTP_SERVER_ERROR", ExitCode::kServer},
    // Families.
    {0x80010102, "AS_RESULT_FAMILY_FOLDER | 2", ExitCode::kNeedsPerson},
    {0x80010103, "AS_RESULT_FAMILY_FOLDER | 3", ExitCode::kNeedsPerson},
    {0x80010104, "AS_RESULT_FAMILY_FOLDER | 4", ExitCode::kNeedsPerson},
    {0x80010105, "AS_RESULT_FAMILY_FOLDER | 5", ExitCode::kNeedsPerson},
    {0x80010106, "AS_RESULT_FAMILY_FOLDER | 6", ExitCode::kServer},
    {0x80010107, "AS_RESULT_FAMILY_FOLDER | 7", ExitCode::kNeedsPerson},
    {0x80010108, "AS_RESULT_FAMILY_FOLDER | 8", ExitCode::kServer},
    {0x80010109, "AS_RESULT_FAMILY_FOLDER | 9", ExitCode::kServer},
    {0x8001010a, "AS_RESULT_FAMILY_FOLDER | 10", ExitCode::kNeedsPerson},
    {0x8001010b, "AS_RESULT_FAMILY_FOLDER | 11", ExitCode::kServer},
    {0x8001010c, "AS_RESULT_FAMILY_FOLDER | 12", ExitCode::kServer},
    {0x80010702, "AS_RESULT_FAMILY_ESTIMATE | 2", ExitCode::kServer},
    {0x80010703, "AS_RESULT_FAMILY_ESTIMATE | 3", ExitCode::kNeedsPerson},
    {0x80010704, "AS_RESULT_FAMILY_ESTIMATE | 4", ExitCode::kServer},
    {0x80010705, "AS_RESULT_FAMILY_ESTIMATE | 5", ExitCode::kServer},
    {0x80010802, "AS_RESULT_FAMILY_MEETING | 2", ExitCode::kNeedsPerson},
    {0x80010803, "AS_RESULT_FAMILY_MEETING | 3", ExitCode::kServer},
    {0x80010804, "AS_RESULT_FAMILY_MEETING | 4", ExitCode::kServer},
    {0x80010805, "AS_RESULT_FAMILY_MEETING | 5", ExitCode::kServer},
    {0x80010a02, "AS_RESULT_FAMILY_NOTIFY | 2", ExitCode::kNeedsPerson},
    {0x80010a03, "AS_RESULT_FAMILY_NOTIFY | 3", ExitCode::kNeedsPerson},
    {0x80010a04, "AS_RESULT_FAMILY_NOTIFY | 4", ExitCode::kNeedsPerson},
    {0x80010a05, "AS_RESULT_FAMILY_NOTIFY | 5", ExitCode::kNeedsPerson},
    {0x80010a06, "AS_RESULT_FAMILY_NOTIFY | 6", ExitCode::kServer},
    {0x80010e03, "AS_RESULT_FAMILY_SYNC | 3", ExitCode::kServer},
    {0x80010e04, "AS_RESULT_FAMILY_SYNC | 4", ExitCode::kServer},
    // HTTP: 0, 200, 301, 302, 303, 307, 308, 451, 403, 404, 405, 407, 413, 429, 449, 501, 502, 503, 504, 507,
    // 418.
    {0x80020000, "AS_RESULT_FAMILY_HTTP | 0", ExitCode::kNetwork},
    {0x800200c8, "AS_RESULT_FAMILY_HTTP | 200", ExitCode::kServer},
    {0x8002012d, "AS_RESULT_FAMILY_HTTP | 301", ExitCode::kServer},
    {0x8002012e, "AS_RESULT_FAMILY_HTTP | 302", ExitCode::kServer},
    {0x8002012f, "AS_RESULT_FAMILY_HTTP | 303", ExitCode::kServer},
    {0x80020133, "AS_RESULT_FAMILY_HTTP | 307", ExitCode::kServer},
    {0x80020134, "AS_RESULT_FAMILY_HTTP | 308", ExitCode::kServer},
    {0x800201c3, "AS_RESULT_FAMILY_HTTP | 451", ExitCode::kServer},
    {0x80020193, "AS_RESULT_FAMILY_HTTP | 403", ExitCode::kNeedsPerson},
    {0x80020194, "AS_RESULT_FAMILY_HTTP | 404", ExitCode::kServer},
    {0x80020195, "AS_RESULT_FAMILY_HTTP | 405", ExitCode::kServer},
    {0x80020197, "AS_RESULT_FAMILY_HTTP | 407", ExitCode::kNeedsPerson},
    {0x8002019d, "AS_RESULT_FAMILY_HTTP | 413", ExitCode::kServer},
    {0x800201ad, "AS_RESULT_FAMILY_HTTP | 429", ExitCode::kServer},
    {0x800201c1, "AS_RESULT_FAMILY_HTTP | 449", ExitCode::kNeedsPerson},
    {0x800201f5, "AS_RESULT_FAMILY_HTTP | 501", ExitCode::kServer},
    {0x800201f6, "AS_RESULT_FAMILY_HTTP | 502", ExitCode::kServer},
    {0x800201f7, "AS_RESULT_FAMILY_HTTP | 503", ExitCode::kServer},
    {0x800201f8, "AS_RESULT_FAMILY_HTTP | 504", ExitCode::kServer},
    {0x800201fb, "AS_RESULT_FAMILY_HTTP | 507", ExitCode::kNeedsPerson},
    {0x800201a2, "AS_RESULT_FAMILY_HTTP | 418", ExitCode::kServer},
};

TEST(ResultText, HasANameAndASentenceForEachResult) {
  for (const Row& row : kResults) {
    SCOPED_TRACE(row.name);
    const ResultText text = describe(row.result);
    EXPECT_EQ(text.name, row.name);
    EXPECT_EQ(text.exitCode, row.exitCode);
    EXPECT_FALSE(text.sentence.empty());
    EXPECT_EQ(text.sentence.find('{'), std::string::npos);
    EXPECT_EQ(text.advice.empty(), row.result == AS_RESULT_OK);
  }
}

TEST(ResultText, SaysWhatBecameOfAMove) {
  EXPECT_EQ(describeMove(3).exitCode, ExitCode::kDone);
  EXPECT_EQ(describeMove(0).name, "move | 0");
  for (const int status : {0, 1, 2, 4, 5, 6, 7, 8, 99, -1}) {
    SCOPED_TRACE(status);
    const ResultText text = describeMove(status);
    EXPECT_NE(text.exitCode, ExitCode::kDone);
    EXPECT_FALSE(text.sentence.empty());
    EXPECT_EQ(text.sentence.find('{'), std::string::npos);
    EXPECT_FALSE(text.advice.empty());
  }
  EXPECT_EQ(describeMove(8).sentence, "the server refused to move it (status 8)");
}

// A sentence of its own names its status, so that people can look it up.
TEST(ResultText, NamesItsStatusInEachSentenceOfAFamily) {
  for (const SYNC_RESULT family :
       {AS_RESULT_FAMILY_FOLDER, AS_RESULT_FAMILY_ESTIMATE, AS_RESULT_FAMILY_MEETING, AS_RESULT_FAMILY_NOTIFY,
        AS_RESULT_FAMILY_SYNC}) {
    for (SYNC_RESULT status = 2; status < 16; ++status) {
      const ResultText text = describe(family | status);
      EXPECT_NE(text.sentence.find("(status " + std::to_string(status) + ")"), std::string::npos)
          << text.name << ": " << text.sentence;
    }
  }
}

TEST(ResultText, NamesTheStatusThatHasNoSentenceOfItsOwn) {
  EXPECT_EQ(describe(0x80010e04).sentence, "the server refused to synchronise the folder (status 4)");
  EXPECT_EQ(describe(0x800201a2).sentence, "the server answered with HTTP status 418");
}

TEST(ResultText, TellsOfANumberThatNobodyKnows) {
  EXPECT_EQ(describe(0x90000000).name, "0x90000000");
  EXPECT_EQ(describe(0x90000000).exitCode, ExitCode::kInternal);
}

// A status is or-ed with its family: of one that does not fit, no more is left than that there was one.
TEST(ResultText, TellsOfAStatusThatDoesNotExist) {
  for (const SYNC_RESULT result : {0x80010f00U, 0x80030e00U, 0xffffffffU}) {
    EXPECT_EQ(describe(result).sentence, "the server answered with a status that does not exist") << result;
    EXPECT_EQ(describe(result).exitCode, ExitCode::kServer) << result;
  }
}

TEST(ResultText, WordsAStatusForTheCommandThatGotIt) {
  EXPECT_EQ(describe(0x80010105, Asked::folderList).sentence,
            "the server refused to list its folders (status 5)");
  EXPECT_EQ(describe(0x80010109, Asked::folderList).sentence,
            "the server refused to list its folders (status 9)");
  EXPECT_EQ(describe(0x80010106, Asked::folderList).sentence, "the server failed at it (status 6)");
  EXPECT_EQ(describe(0x80010105, Asked::deletedFolder).sentence,
            "the server refused to delete the folder (status 5)");
  EXPECT_EQ(describe(0x8001010a, Asked::deletedFolder).sentence,
            "the server refused to delete the folder (status 10)");
  EXPECT_EQ(describe(0x80010104, Asked::deletedFolder).sentence, "the server has no such folder (status 4)");
  EXPECT_EQ(describe(0x80010103, Asked::newFolder).sentence,
            "the server refused to make the folder (status 3)");
  EXPECT_EQ(describe(0x80010102, Asked::newFolder).sentence,
            "a folder of that name is there already (status 2)");
  EXPECT_EQ(describe(0x8001010a, Asked::changedFolder).sentence,
            "the server can't make sense of the folder: its name, or its type (status 10)");
  EXPECT_EQ(describe(0x80010a03, Asked::carriers).sentence,
            "the server refused to list its carriers (status 3)");
}

TEST(ResultText, KnowsWhatAFolderIsRefusedForByItsAnswer) {
  EXPECT_EQ(describe(0x80000001, Asked::folder).exitCode, ExitCode::kServer);
  EXPECT_EQ(describe(0x80000001).exitCode, ExitCode::kInternal);
}

TEST(ResultText, SaysWhatBecameOfAFetch) {
  EXPECT_EQ(describeFetch(5).sentence, "the server failed while it read the item (status 5)");
  EXPECT_EQ(describeFetch(9).sentence, "the server refused to give the item (status 9)");
  for (const int status : {4, 5, 6, 8, 9, -1}) EXPECT_EQ(describeFetch(status).exitCode, ExitCode::kServer);
}

TEST(ResultText, TellsTheTransportsResultsByTheirKind) {
  const SYNC_RESULT result = resultOf(TransportErrorKind::kTlsExpired);
  EXPECT_EQ(describe(result).exitCode, ExitCode::kTls);
  EXPECT_EQ(describe(result).name, "kTransportResultFamily | tls-expired");
  EXPECT_EQ(describe(resultOf(TransportErrorKind::kConnect)).exitCode, ExitCode::kNetwork);
}

TEST(ResultText, GivesEachClassOfTransportErrorsItsExitCode) {
  EXPECT_EQ(exitCodeOf(TransportErrorClass::kNone), ExitCode::kDone);
  EXPECT_EQ(exitCodeOf(TransportErrorClass::kConfiguration), ExitCode::kConfiguration);
  EXPECT_EQ(exitCodeOf(TransportErrorClass::kNetwork), ExitCode::kNetwork);
  EXPECT_EQ(exitCodeOf(TransportErrorClass::kTls), ExitCode::kTls);
  EXPECT_EQ(exitCodeOf(TransportErrorClass::kServer), ExitCode::kServer);
  EXPECT_EQ(exitCodeOf(TransportErrorClass::kLogin), ExitCode::kLoginRefused);
  EXPECT_EQ(exitCodeOf(TransportErrorClass::kCancelled), ExitCode::kInterrupted);
  EXPECT_EQ(exitCodeOf(TransportErrorClass::kInternal), ExitCode::kInternal);
}

// 11 is the low half of AS_RESULT_MALFORMED_DOCUMENT: an item's status is not mistaken for it.
TEST(ResultText, KeepsItemStatusesApartFromResults) {
  EXPECT_EQ(describeItem(0x8001000b).name, "AS_RESULT_FAMILY_ITEM | 11");
  EXPECT_EQ(describeItem(0x80010007).sentence, "the server refused the change (status 7)");
  EXPECT_EQ(describeItem(AS_RESULT_REQUEST_TOO_LARGE).name, "AS_RESULT_REQUEST_TOO_LARGE");
  EXPECT_EQ(describeItem(AS_RESULT_OK).exitCode, ExitCode::kDone);
}

}  // namespace
}  // namespace airsync
