// What became of the client's own changes: how storage learns of it.
#include "ParserRig.h"

namespace airsync_test {
namespace {

class ParserResponses : public ParserRig {
 protected:
  // What storage is told of these responses, without the key at the end.
  Lines Told(const Nodes& responses) {
    store.ClearCalls();
    EXPECT_EQ(Sync(Answer({Responses(responses)})), 0U);
    Lines lines = store.Lines();
    EXPECT_EQ(lines.back(), "StoreSyncKey 42 key={7}13");
    lines.pop_back();
    return lines;
  }

  SYNC_RESULT Refused(const Node& response) {
    store.ClearCalls();
    const SYNC_RESULT result = Sync(Answer({Responses({response})}));
    EXPECT_TRUE(store.Calls().empty());
    return result;
  }
};

TEST_F(ParserResponses, ReachStorageOneByOne) {
  EXPECT_EQ(SyncGolden("sync-answer-responses"), 0U);
  EXPECT_EQ(
      store.Lines(),
      (Lines{"AddResult 42 client=7 id=2:17 result=0x00000000", "AddResult 42 client=8 result=0x80010005",
             "AddResult 42 client=9 id=2:19 result=0x00000000", "ChangeResult 42 id=2:5 result=0x80010007",
             "DeleteResult 42 id=2:9 result=0x00000000", "FetchedItem 42 id=2:4 result=0x00000000",
             "StoreSyncKey 42 key={7}13"}));
  EXPECT_EQ(store.CallsOf("FetchedItem")[0].contact, (ContactFields{{"Body", "whole"}}));
}

TEST_F(ParserResponses, ToAFailedAddComeWithTheIdOfThePreviousItem) {
  EXPECT_EQ(SyncGolden("sync-answer-responses"), 0U);
  EXPECT_EQ(store.Calls()[1].staleId, "2:17");
}

TEST_F(ParserResponses, ToAFailedAddDoNotReadTheirServerId) {
  Told({{"Add", Nodes{{"ClientId", "1"}, {"ServerId", "2:1"}, {"Status", "1"}}},
        {"Add", Nodes{{"ClientId", "2"}, {"ServerId", "2:2"}, {"Status", "5"}}}});
  EXPECT_EQ(store.Calls()[1].staleId, "2:1");
}

TEST_F(ParserResponses, CarryAnyStatusAsAResult) {
  struct {
    Node status;
    const char* result;
  } const rows[] = {
      {{"Status", "1"}, "0x00000000"},  {{"Status", "2"}, "0x80010002"},  {{"Status", "0"}, "0x80010000"},
      {{"Status", ""}, "0x80010000"},   {{"Status"}, "0x80010000"},       {{"Status", "bad"}, "0x80010000"},
      {{"Status", "-1"}, "0xffffffff"}, {{"Status", "99"}, "0x80010063"}, {{"Status", " 1"}, "0x00000000"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(Told({{"Change", Nodes{{"ServerId", "1"}, row.status}}}),
              Lines{std::string("ChangeResult 42 id=1 result=") + row.result});
    EXPECT_EQ(Told({{"Delete", Nodes{{"ServerId", "1"}, row.status}}}),
              Lines{std::string("DeleteResult 42 id=1 result=") + row.result});
    EXPECT_EQ(Told({{"Fetch", Nodes{{"ServerId", "1"}, row.status, {"ApplicationData"}}}}),
              Lines{std::string("FetchedItem 42 id=1 result=") + row.result});
  }
}

TEST_F(ParserResponses, WithoutAStatusKeepThePreviousOne) {
  EXPECT_EQ(Told({{"Add", Nodes{{"ClientId", "1"}, {"ServerId", "a"}}},
                  {"Add", Nodes{{"ClientId", "2"}, {"Status", "6"}}},
                  {"Add", Nodes{{"ClientId", "3"}, {"ServerId", "c"}}},
                  {"Change", Nodes{{"ServerId", "d"}}}}),
            (Lines{"AddResult 42 client=1 id=a result=0x00000000", "AddResult 42 client=2 result=0x80010006",
                   "AddResult 42 client=3 result=0x80010006", "ChangeResult 42 id=d result=0x80010006"}));
}

TEST_F(ParserResponses, ReadClientIdsBackAsTheyWereSent) {
  EXPECT_EQ(Told({{"Add", Nodes{{"ClientId", "2147483647"}, {"ServerId", "a"}, {"Status", "1"}}},
                  {"Add", Nodes{{"ClientId", "-1"}, {"ServerId", "b"}, {"Status", "1"}}},
                  {"Add", Nodes{{"ServerId", "c"}, {"Status", "1"}}},
                  {"Add", Nodes{{"ClientId"}, {"ServerId", "d"}, {"Status", "1"}}}}),
            (Lines{"AddResult 42 client=2147483647 id=a result=0x00000000",
                   "AddResult 42 client=4294967295 id=b result=0x00000000",
                   "AddResult 42 client=4294967295 id=c result=0x00000000",
                   "AddResult 42 client=0 id=d result=0x00000000"}));
}

TEST_F(ParserResponses, ToAFetchWithoutAnItemStoreNothing) {
  EXPECT_EQ(Told({{"Fetch", Nodes{{"ServerId", "1"}, {"Status", "6"}}}}), Lines());
}

TEST_F(ParserResponses, ToAChangeOrDeleteHoldNothingElse) {
  EXPECT_EQ(Refused({"Change", Nodes{{"ServerId", "1"}, {"ClientId", "2"}}}), 0x8001000bU);
  EXPECT_EQ(Refused({"Change", Nodes{{"ServerId", "1"}, {"Class", "Contacts"}}}), 0x8001000bU);
  EXPECT_EQ(Refused({"Delete", Nodes{{"ServerId", "1"}, {"ApplicationData"}}}), 0x8001000bU);
  EXPECT_EQ(Refused({"Delete", Nodes{{"ServerId", Nodes{{"x"}}}}}), 0x8001000bU);
  EXPECT_EQ(Refused({"Change", Nodes{{"ServerId", "1"}, {"Status", Nodes{{"Status", "1"}}}}}), 0x8001000bU);
  EXPECT_EQ(Refused({"Change", Nodes{{"ServerId", "1"}, {"ApplicationData", Nodes{{"Body", "x"}}}}}),
            0x8001000bU);
}

TEST_F(ParserResponses, ToAnAddOrFetchMayHoldAnything) {
  EXPECT_EQ(Told({{"Add", Nodes{{"ClientId", "1"}, {"ServerId", "a"}, {"Class", "Contacts"}, {"x"}}},
                  {"Fetch", Nodes{{"ServerId", "b"}, {"x"}, {"ApplicationData", Nodes{{"Body", "y"}}}}}}),
            (Lines{"AddResult 42 client=1 id=a result=0x00000000", "FetchedItem 42 id=b result=0x00000000"}));
}

// Two of each kind: the cancel ends the walk before the next one, whatever it is.
TEST_F(ParserResponses, EndBetweenTwoWhenTheSyncIsCancelled) {
  Nodes responses;
  for (const char* const kind : {"Add", "Change", "Delete", "Fetch"}) {
    for (int i = 0; i < 2; ++i) {
      responses.push_back({kind, Nodes{{"Status", "1"}, {"ServerId", "1"}}});
      if (std::string(kind) == "Fetch") responses.back().children.push_back({"ApplicationData"});
    }
  }
  for (std::size_t n = 1; n <= 7; ++n) {
    store.ClearCalls();
    CancelAtCall(n);
    EXPECT_EQ(Sync(Answer({Responses(responses)})), 0x80010010U) << n;
    EXPECT_EQ(store.Calls().size(), n);
  }
}

}  // namespace
}  // namespace airsync_test
