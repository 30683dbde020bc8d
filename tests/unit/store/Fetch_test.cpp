#include "StoreFixture.h"

namespace airsync::test {
namespace {

using Commands = std::vector<Command>;

class Fetch : public StoreTest {
 protected:
  // A cut mail "s1" in a synchronised inbox.
  void SetUp() override {
    folder_ = inbox();
    Mail cut = mail("Tea");
    cut.fields.set("BodyTruncated", true);
    exchange(folder_, [&](Library& library) { library.add("s1", cut); });
    number_ = item(folder_, "s1");
  }

  // One AirSync::Fetch, whose answer does `bring` and then stores the key, if there is one.
  FetchOutcome fetch(const std::function<void(INT32)>& bring, const char* key = "f1",
                     SYNC_RESULT result = AS_RESULT_OK) {
    FolderRecord record = store().folderInfo(folder_, {});
    store().beginFetch(record.info(), asked_);
    bring(folder_);
    if (key != nullptr) store().StoreSyncKey(folder_, nullptr, key);
    return store().endFetch(result);
  }
  void fetched(const char* serverId, const ItemValue& value, SYNC_RESULT result = AS_RESULT_OK) {
    const AnyRecord record(value);
    SERVER_ID id = {};
    std::copy_n(serverId, std::char_traits<char>::length(serverId), id.text);
    store().FetchedItem(folder_, &id, record.get(), result);
  }
  std::string refusal() {
    FolderRecord record = store().folderInfo(folder_, {});
    try {
      store().beginFetch(record.info(), asked_);
    } catch (const Error& error) {
      EXPECT_EQ(error.kind(), ErrorKind::folder);
      EXPECT_EQ(error.advice(), "Synchronise the folder first.");
      return error.story().cause;
    }
    store().endFetch(AS_RESULT_TRANSPORT_FAILED);
    return "";
  }

  FolderNumber folder_ = 0;
  ItemNumber number_ = 0;
  std::string asked_ = "s1";
};

TEST_F(Fetch, ReplacesTheItemWhole) {
  const FetchOutcome outcome = fetch([&](INT32) { fetched("s1", fullMail()); });
  EXPECT_TRUE(outcome.arrived);
  EXPECT_EQ(outcome.item, AS_RESULT_OK);
  EXPECT_EQ(outcome.changes.keys, 1U);
  EXPECT_FALSE(outcome.changes.initial);
  reopen();
  EXPECT_EQ(mailOf(number_), fullMail());
  EXPECT_EQ(store().folder(folder_).syncKey, "f1");
}

TEST_F(Fetch, TakesTheServersChangesAlong) {
  const FetchOutcome outcome = fetch([&](INT32) {
    const AnyRecord record(mail("Coffee"));
    const SERVER_ID id = {"s2"};
    store().AddServerItem(folder_, &id, record.get());
    fetched("s1", fullMail());
  });
  EXPECT_EQ(outcome.changes.added, 1U);
  EXPECT_EQ(mailOf(item(folder_, "s2")), mail("Coffee"));
}

TEST_F(Fetch, KeepsAMarkAndShowsTheRest) {
  store().markMail(number_, true);
  Mail whole = fullMail();
  whole.fields.set("Read", false);
  EXPECT_TRUE(fetch([&](INT32) { fetched("s1", whole); }).arrived);
  EXPECT_EQ(mailOf(number_), fullMail());
  Library library(store(), folder_);
  EXPECT_EQ(library.request(), Commands{changeOf("s1", "read")});
  library.key("k3");
  EXPECT_EQ(library.end().sent, 1U);
  EXPECT_EQ(mailOf(number_), fullMail());
}

TEST_F(Fetch, KeepsALocalChangeOfAContactAndWhatItWasMadeOf) {
  folder_ = contactsWith({"c"});
  asked_ = "c";
  const ItemNumber number = item(folder_, "c");
  store().changeItem(number, person("local"));
  EXPECT_TRUE(fetch([&](INT32) { fetched("c", person("whole")); }).arrived);
  EXPECT_EQ(contactOf(number), person("local"));
  store().discard(number);
  EXPECT_EQ(contactOf(number), person("c"));
}

TEST_F(Fetch, TellsWhatTheServerSaidOfTheItem) {
  const FetchOutcome outcome = fetch([&](INT32) { fetched("s1", mail("no"), itemResult(8)); });
  EXPECT_FALSE(outcome.arrived);
  EXPECT_EQ(outcome.item, itemResult(8));
  EXPECT_EQ(*mailOf(number_).fields.get<std::string>("Subject"), "Tea");
  EXPECT_FALSE(fetch([](INT32) {}, "f2").arrived);
  EXPECT_FALSE(fetch([&](INT32) { fetched("s9", mail("unknown")); }, "f3").arrived);
}

TEST_F(Fetch, TakesAnotherItemThatComesBackForNoneOfItsOwn) {
  exchange(folder_, [](Library& library) { library.add("s2", mail("Milk")); });
  Mail other = mail("Milk");
  other.fields.set("Body", std::string("warm"));
  const FetchOutcome outcome = fetch([&](INT32) { fetched("s2", other); });
  EXPECT_FALSE(outcome.arrived);
  EXPECT_EQ(mailOf(item(folder_, "s2")), other);
  // What was not asked for is no reason to keep an answer without a key.
  other.fields.set("Body", std::string("hot"));
  EXPECT_FALSE(fetch([&](INT32) { fetched("s2", other); }, "").arrived);
  EXPECT_EQ(*mailOf(item(folder_, "s2")).fields.get<std::string>("Body"), "warm");
}

TEST_F(Fetch, KeepsTheItemOfAnAnswerWithoutAKey) {
  EXPECT_TRUE(fetch([&](INT32) { fetched("s1", fullMail()); }, "").arrived);
  EXPECT_EQ(mailOf(number_), fullMail());
  EXPECT_EQ(store().folder(folder_).syncKey, "k9");
}

TEST_F(Fetch, KeepsNothingElseOfAnAnswerWithoutAKey) {
  const auto bring = [&](INT32) {
    const AnyRecord record(mail("Coffee"));
    const SERVER_ID id = {"s2"};
    store().AddServerItem(folder_, &id, record.get());
    fetched("s1", fullMail());
  };
  const FetchOutcome outcome = fetch(bring, "");
  EXPECT_FALSE(outcome.arrived);
  EXPECT_EQ(outcome.changes.added, 0U);
  EXPECT_EQ(store().folder(folder_).items, 1U);
}

TEST_F(Fetch, SettlesNoChangeByAnAnswerWithoutAKey) {
  fetch([](INT32) {}, nullptr, AS_RESULT_TRANSPORT_FAILED);
  store().resetFolder(folder_);
  exchange(folder_, [](Library&) {});
  store().markMail(number_, true);
  {
    Library library(store(), folder_);
    library.request();
    fetched("s1", mail("whole"));
    library.changeResult("s1", itemResult(8));
    library.key("");
    library.end(AS_RESULT_TRANSPORT_FAILED);
  }
  EXPECT_TRUE(store().failures().empty());
  EXPECT_EQ(*mailOf(number_).fields.get<std::string>("Subject"), "Tea");
}

TEST_F(Fetch, IsRefusedBeforeTheFirstSynchronisation) {
  store().resetFolder(folder_);
  EXPECT_EQ(refusal(), "the folder was not synchronised yet");
}

TEST_F(Fetch, IsRefusedWhileAnAnswerIsOutstanding) {
  EXPECT_FALSE(store().repetitionDue(folder_));
  store().markMail(number_, true);
  {
    Library library(store(), folder_);
    library.request();
    library.end(AS_RESULT_TRANSPORT_FAILED);
  }
  EXPECT_TRUE(store().repetitionDue(folder_));
  EXPECT_EQ(refusal(), "the server's answer to an earlier request has not arrived yet");
  {
    Library library(store(), folder_);
    EXPECT_EQ(library.request(), Commands{changeOf("s1", "read")});
    library.key("k2");
    library.end();
  }
  EXPECT_FALSE(store().repetitionDue(folder_));
  EXPECT_EQ(refusal(), "");
}

// A server answers a repeated key with its first answer: changes in the request would be lost on it.
TEST_F(Fetch, WithoutAnAnswerIsFollowedByARequestWithoutChanges) {
  fetch([](INT32) {}, nullptr, AS_RESULT_TRANSPORT_FAILED);
  reopen();
  EXPECT_TRUE(store().repetitionDue(folder_));
  EXPECT_EQ(refusal(), "the server's answer to an earlier request has not arrived yet");
  store().markMail(number_, true);
  {
    Library library(store(), folder_);
    EXPECT_EQ(library.request(), Commands{});
    fetched("s1", mail("whole"));
    library.key("f1");
    EXPECT_TRUE(library.end().moreToSend);
  }
  EXPECT_EQ(mailOf(number_), mail("whole", true));
  Library next(store(), folder_);
  EXPECT_EQ(next.request(), Commands{changeOf("s1", "read")});
}

// A server may answer with nothing at all when there is nothing new: then it has no first answer to repeat.
TEST_F(Fetch, WithoutAnAnswerIsDoneWithWhenTheServerHasNothingToSay) {
  fetch([](INT32) {}, nullptr, AS_RESULT_TRANSPORT_FAILED);
  store().markMail(number_, true);
  {
    Library library(store(), folder_);
    EXPECT_EQ(library.request(), Commands{});
    library.end();
  }
  EXPECT_FALSE(store().repetitionDue(folder_));
  Library next(store(), folder_);
  EXPECT_EQ(next.request(), Commands{changeOf("s1", "read")});
}

TEST_F(Fetch, ThatTheServerRefusedLeavesNothingOutstanding) {
  for (const SYNC_RESULT result :
       {SYNC_RESULT{AS_RESULT_FAMILY_SYNC | 3U}, SYNC_RESULT{AS_RESULT_HTTP_UNAUTHORIZED}}) {
    fetch([](INT32) {}, nullptr, result);
    EXPECT_FALSE(store().repetitionDue(folder_));
  }
}

TEST_F(Fetch, IsForgottenWithTheKey) {
  fetch([](INT32) {}, nullptr, AS_RESULT_CANCELLED);
  store().resetFolder(folder_);
  EXPECT_FALSE(store().repetitionDue(folder_));
}

}  // namespace
}  // namespace airsync::test
