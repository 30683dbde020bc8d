#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "support/ApiSession.h"
#include "support/LogRecorder.h"

namespace {

using namespace AIRSYNC_STACK;
using namespace airsync_test;
using testing::ElementsAre;
using testing::IsEmpty;

// A response that brings a key, and the server's word that there is more.
std::string Answer(const std::string& key, bool more) {
  return HexAndText("03 01 6A 00 45 5C 4F 50 03 'Contacts' 00 01 4B 03 '" + key +
                    "' 00 01 52 03 '5' 00 01 4E 03 '1' 00 01" + (more ? "14" : "") + "01 01 01");
}

// The request of ApiSession's folder with a key and, between Options and its end, `commands`.
std::string Request(const std::string& key, const std::string& commands = "") {
  return HexAndText("03 01 6A 00 45 5C 4F 50 03 'Contacts' 00 01 4B 03 '" + key +
                    "' 00 01 52 03 '5' 00 01 1E 13 55 03 '10' 00 01 57 5B 03 '1' 00 01 59 03 '0' 00 01 01" +
                    commands + "01 01 01");
}

std::string Delete(const std::string& id) { return "49 4D 03 '" + id + "' 00 01 01"; }

SYNC_RESULT Sync(ApiSession& session) { return session.airSync->Sync(session.key, &session.folder); }

// A contact whose encoded Add measures a little more than its body.
struct LargeContact {
  explicit LargeContact(std::size_t size) : body(size, 'b') { record.Body = body.data(); }
  LocalChange Added(UINT32 clientId) { return {AS_CHANGE_ADD, "", clientId, &record}; }

  std::string body;
  AS_CONTACT_T record = {};
};

TEST(Sync, WithoutAFolderIsRefusedBeforeAnythingElse) {
  LogRecorder log({AS_LOG_SOURCE_AIRSYNC, AS_LOG_SOURCE_COMMUNICATIONS}, AS_LOG_LEVEL_TRACE);
  ApiSession session(ENCODING_WBXML, Log::getInstance());
  log.Clear();
  EXPECT_EQ(session.airSync->Sync(session.key, nullptr), 0x80000001U);
  EXPECT_THAT(log.Lines(), ElementsAre("0 Into sync cmd"));
  EXPECT_THAT(session.transport.Lines(), IsEmpty());
  EXPECT_THAT(session.store.Calls(), IsEmpty());
  session.airSync->Disconnect();
}

TEST(Sync, OfAFolderThatIsNotSelectedCausesNoTraffic) {
  LogRecorder log({AS_LOG_SOURCE_AIRSYNC, AS_LOG_SOURCE_COMMUNICATIONS}, AS_LOG_LEVEL_TRACE);
  ApiSession session(ENCODING_WBXML, Log::getInstance());
  session.folder.selected = 0;
  log.Clear();
  EXPECT_EQ(Sync(session), 0x80000000U);
  EXPECT_THAT(log.Lines(), ElementsAre("0 Into sync cmd"));
  EXPECT_THAT(session.transport.Lines(), IsEmpty());
  EXPECT_THAT(session.store.Calls(), IsEmpty());
  session.airSync->Disconnect();
}

TEST(Sync, OfAFolderThatIsNotSelectedLeavesACancelForTheNextCommand) {
  ApiSession session;
  session.airSync->CancelSync();
  session.folder.selected = 0;
  EXPECT_EQ(Sync(session), 0x80000000U);
  EXPECT_TRUE(session.airSync->CancelRequested());
}

TEST(Sync, TakesAnyNonZeroFlagForSelected) {
  ApiSession session;
  session.folder.selected = 0xFF;
  session.transport.Answer(Answer("k2", false));
  EXPECT_EQ(Sync(session), 0U);
}

TEST(Sync, LogsItsEntryAsATraceAndItsBeginningAsAFact) {
  for (const AS_LOG_LEVEL_T level : {AS_LOG_LEVEL_TRACE, AS_LOG_LEVEL_DETAIL, AS_LOG_LEVEL_INFO}) {
    LogRecorder log({AS_LOG_SOURCE_AIRSYNC}, level);
    ApiSession session(ENCODING_WBXML, Log::getInstance());
    log.Clear();
    session.transport.Answer(Answer("k2", false));
    EXPECT_EQ(Sync(session), 0U);
    if (level == AS_LOG_LEVEL_TRACE) {
      EXPECT_THAT(log.Lines(), ElementsAre("0 Into sync cmd", "0 begin sync db: |TRUE"));
    } else {
      EXPECT_THAT(log.Lines(), ElementsAre("0 begin sync db: |TRUE"));
    }
    session.airSync->Disconnect();
  }
}

TEST(Sync, InterleavesItsLayersLinesInTheOrderOfItsSteps) {
  LogRecorder log(
      {AS_LOG_SOURCE_AIRSYNC, AS_LOG_SOURCE_COMMUNICATIONS, AS_LOG_SOURCE_GENERATOR, AS_LOG_SOURCE_PARSER},
      AS_LOG_LEVEL_TRACE);
  ApiSession session(ENCODING_WBXML, Log::getInstance());
  log.Clear();
  session.transport.Answer(Answer("k2", false));
  EXPECT_EQ(Sync(session), 0U);
  EXPECT_THAT(
      log.Lines(),
      ElementsAre(
          "0 Into sync cmd", "0 begin sync db: |TRUE", "2 into Generator::SyncCmd", "2 current SyncKey:|k1",
          "2 Normal or Full Sync", "1 Communications::Prologue{",
          "1 Communications::Prologue, http header now is |" +
              WbxmlHead("Sync", std::to_string(Request("k1").size())),
          "1 Communications::Prologue, http header now is |<" + std::to_string(Request("k1").size()) + ">",
          "1 Communications::Prologue}", "1 Communications::BeforeRead{}", "3 into Parser::SyncCmd"));
  session.airSync->Disconnect();
}

TEST(Sync, OfAKey0BeginsWithTheHandshake) {
  ApiSession session;
  Put(session.folder.syncKey.text, "0");
  session.transport.Answer(Answer("k1", false));
  EXPECT_EQ(Sync(session), 0U);
  ASSERT_EQ(session.transport.Requests().size(), 1U);
  const std::string request =
      HexAndText("03 01 6A 00 45 5C 4F 50 03 'Contacts' 00 01 4B 03 '0' 00 01 52 03 '5' 00 01 01 01 01");
  EXPECT_EQ(session.transport.Requests()[0].body, request);
  EXPECT_EQ(session.transport.Requests()[0].head, WbxmlHead("Sync", "32"));
  EXPECT_THAT(session.store.Lines(), ElementsAre("StoreSyncKey 7 key=k1"));
}

TEST(Sync, SendsOneRequestWhenBothSidesHaveNothingMore) {
  ApiSession session;
  session.transport.Answer(Answer("k2", false));
  EXPECT_EQ(Sync(session), 0U);
  EXPECT_EQ(session.transport.Requests().size(), 1U);
  EXPECT_THAT(session.store.Lines(), ElementsAre("GetNextChange 7", "StoreSyncKey 7 key=k2"));
}

TEST(Sync, GoesOnWithoutChangesWhileTheServerHasMore) {
  ApiSession session;
  session.store.HandOut({AS_CHANGE_DELETE, "5:1", 0, nullptr});
  session.transport.Answer(Answer("k2", true));
  session.transport.Answer(Answer("k3", true));
  session.transport.Answer(Answer("k4", false));
  EXPECT_EQ(Sync(session), 0U);
  ASSERT_EQ(session.transport.Requests().size(), 3U);
  EXPECT_EQ(session.transport.Requests()[0].body, Request("k1", "56" + Delete("5:1") + "01"));
  // Each with the key that storage put into the folder's record meanwhile.
  EXPECT_EQ(session.transport.Requests()[1].body, Request("k2"));
  EXPECT_EQ(session.transport.Requests()[2].body, Request("k3"));
  EXPECT_THAT(session.store.Lines(),
              ElementsAre("GetNextChange 7", "GetNextChange 7", "StoreSyncKey 7 key=k2", "GetNextChange 7",
                          "StoreSyncKey 7 key=k3", "GetNextChange 7", "StoreSyncKey 7 key=k4"));
}

TEST(Sync, GoesOnWhileTheClientHasMoreAlthoughTheServerHasNot) {
  ApiSession session;
  LargeContact first(5000);
  LargeContact second(5000);
  session.store.HandOut(first.Added(1));
  session.store.HandOut(second.Added(2));
  session.transport.Answer(Answer("k2", false));
  session.transport.Answer(Answer("k3", false));
  EXPECT_EQ(Sync(session), 0U);
  ASSERT_EQ(session.transport.Requests().size(), 2U);
  // Add(ClientId, ApplicationData(Body)), with Body on page 1.
  const std::string add =
      "56 47 4C 03 '%' 00 01 5D 00 01 49 03 '" + std::string(5000, 'b') + "' 00 01 01 01 01";
  std::string one = add;
  std::string two = add;
  one[one.find('%')] = '1';
  two[two.find('%')] = '2';
  EXPECT_EQ(session.transport.Requests()[0].body, Request("k1", one));
  EXPECT_EQ(session.transport.Requests()[1].body, Request("k2", two));
}

TEST(Sync, EndsOnlyWhenBothSidesAreReadyAfterTheSameCycle) {
  ApiSession session;
  LargeContact first(5000);
  LargeContact second(5000);
  session.store.HandOut(first.Added(1));
  session.store.HandOut(second.Added(2));
  session.transport.Answer(Answer("k2", false));  // the client has more
  session.transport.Answer(Answer("k3", true));   // the server has more
  session.transport.Answer(Answer("k4", false));
  EXPECT_EQ(Sync(session), 0U);
  EXPECT_EQ(session.transport.Requests().size(), 3U);
}

TEST(Sync, OfAChangeThatIsTooLargeForAnyRequestSendsNothing) {
  ApiSession session;
  LargeContact large(9500);
  session.store.HandOut(large.Added(1));
  EXPECT_EQ(Sync(session), 0x8001000eU);
  EXPECT_THAT(session.transport.Lines(), IsEmpty());
  EXPECT_EQ(FailingMemory::LiveBlocks(), 0U);
}

TEST(Sync, ForgetsTheChangeThatWasTooLarge) {
  ApiSession session;
  LargeContact large(9500);
  session.store.HandOut(large.Added(1));
  EXPECT_EQ(Sync(session), 0x8001000eU);
  session.transport.Answer(Answer("k2", false));
  EXPECT_EQ(Sync(session), 0U);
  ASSERT_EQ(session.transport.Requests().size(), 1U);
  EXPECT_EQ(session.transport.Requests()[0].body, Request("k1"));
}

TEST(Sync, OfAWaitingChangeThatIsTooLargeEndsInItsOwnCycle) {
  ApiSession session;
  LargeContact large(10000);
  session.store.HandOut({AS_CHANGE_DELETE, "5:1", 0, nullptr});
  session.store.HandOut(large.Added(1));
  session.transport.Answer(Answer("k2", false));
  EXPECT_EQ(Sync(session), 0x8001000eU);
  EXPECT_EQ(session.transport.Requests().size(), 1U);
  EXPECT_THAT(session.store.CallsOf("StoreSyncKey").size(), 1U);
  EXPECT_EQ(FailingMemory::LiveBlocks(), 0U);

  session.transport.Answer(Answer("k3", false));
  EXPECT_EQ(Sync(session), 0U);
  EXPECT_EQ(session.transport.Requests()[1].body, Request("k2"));
}

TEST(Sync, CarriesTheCallersKeyAsTheNotificationsIdentifier) {
  ApiSession session;
  session.folder.notifyGuid = 1;
  Put(session.key.text, "guid-7");
  session.transport.Answer(Answer("k2", false));
  EXPECT_EQ(Sync(session), 0U);
  EXPECT_EQ(session.transport.Requests()[0].body,
            HexAndText("03 01 6A 00 45 5C 4F 50 03 'Contacts' 00 01 4B 03 'k1' 00 01 52 03 '5' 00 01"
                       "5F 03 'guid-7' 00 01 1E 13 55 03 '10' 00 01 57 5B 03 '1' 00 01 59 03 '0' 00 01 01"
                       "01 01 01"));
}

TEST(Sync, RaisesTheServersRefusal) {
  ApiSession session;
  session.transport.Answer(HexAndText("03 01 6A 00 45 4E 03 '3' 00 01 01"));
  EXPECT_EQ(Sync(session), 0x80010e03U);
  session.transport.Answer(HexAndText("03 01 6A 00 45 5C 4F 4B 03 'k2' 00 01 4E 03 '8' 00 01 01 01 01"));
  EXPECT_EQ(Sync(session), 0x80010e08U);
  session.transport.Answer(HexAndText("03 01 6A 00 45 5C 4F 52 03 '6' 00 01 01 01 01"));
  EXPECT_EQ(Sync(session), 0x80010011U);
  EXPECT_THAT(session.store.CallsOf("StoreSyncKey"), IsEmpty());
}

TEST(Sync, OfADataClassThatDoesNotExistIsRefused) {
  for (const INT32 type : {3, -1, INT32_MAX, INT32_MIN}) {
    ApiSession session;
    session.folder.dataType = static_cast<DATATYPE>(type);
    EXPECT_EQ(Sync(session), 0x80000001U) << type;
    EXPECT_THAT(session.transport.Lines(), IsEmpty()) << type;
  }
}

TEST(Sync, KeepsWhatEarlierCyclesBrought) {
  ApiSession session;
  session.transport.Answer(Answer("k2", true));
  session.transport.Answer("");
  EXPECT_EQ(Sync(session), 0x8001000cU);
  EXPECT_THAT(session.store.Lines(),
              ElementsAre("GetNextChange 7", "StoreSyncKey 7 key=k2", "GetNextChange 7"));
}

}  // namespace
