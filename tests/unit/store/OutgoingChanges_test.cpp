#include "StoreFixture.h"

namespace airsync::test {
namespace {

using Commands = std::vector<Command>;

class OutgoingChanges : public StoreTest {};

TEST_F(OutgoingChanges, AreHandedOutInTheOrderInWhichTheyWereMadeFirst) {
  const FolderNumber folder = contactsWith({"s1", "s2", "s3"});
  store().changeItem(item(folder, "s3"), person("Ada"));
  store().deleteItem(item(folder, "s1"));
  const ItemNumber added = store().addItem(folder, person("Grace"));
  store().changeItem(item(folder, "s3"), person("Joan"));
  Library library(store(), folder);
  EXPECT_EQ(library.request(), (Commands{changeOf("s3", "Joan"), deleteOf("s1"), addOf(added, "Grace")}));
}

TEST_F(OutgoingChanges, AreHandedOutOncePerSync) {
  const FolderNumber folder = contactsWith({"s1"});
  store().changeItem(item(folder, "s1"), person("Ada"));
  Library library(store(), folder);
  EXPECT_EQ(library.request().size(), 1U);
  EXPECT_EQ(library.request().size(), 0U);
}

TEST_F(OutgoingChanges, AreHandedOutAnewByTheNextSyncUntilTheyAreSettled) {
  const FolderNumber folder = contactsWith({"s1"});
  store().changeItem(item(folder, "s1"), person("Ada"));
  for (int attempt = 0; attempt < 2; ++attempt) {
    Library library(store(), folder);
    EXPECT_EQ(library.request(), Commands{changeOf("s1", "Ada")});
    library.end(AS_RESULT_TRANSPORT_FAILED);
  }
}

TEST_F(OutgoingChanges, GoWithoutARecordWhenTheyAreDeletions) {
  const FolderNumber folder = contactsWith({"s1"});
  store().deleteItem(item(folder, "s1"));
  Library library(store(), folder);
  void* record = &library;
  SERVER_ID id = {};
  UINT32 client = 0;
  int kind = -1;
  ASSERT_EQ(store().GetNextChange(folder, &record, &id, &client, &kind), 0);
  EXPECT_EQ(record, nullptr);
  EXPECT_STREQ(id.text, "s1");
  EXPECT_EQ(kind, AS_CHANGE_DELETE);
  EXPECT_NE(store().GetNextChange(folder, &record, &id, &client, &kind), 0);
}

TEST_F(OutgoingChanges, KeepTheirRecordsUntilTheResponseIsStored) {
  const FolderNumber folder = synchronisedContacts();
  for (const char* name : {"Ada", "Grace", "Joan"}) store().addItem(folder, person(name));
  Library library(store(), folder);
  std::vector<AS_CONTACT_T*> records;
  void* record = nullptr;
  SERVER_ID id = {};
  UINT32 client = 0;
  int kind = -1;
  while (store().GetNextChange(folder, &record, &id, &client, &kind) == 0) {
    records.push_back(static_cast<AS_CONTACT_T*>(record));
  }
  ASSERT_EQ(records.size(), 3U);
  EXPECT_STREQ(records[0]->FirstName, "Ada");
  EXPECT_STREQ(records[1]->FirstName, "Grace");
  EXPECT_STREQ(records[2]->FirstName, "Joan");
}

TEST_F(OutgoingChanges, AreNotSettledByTheKeyWhenTheyDidNotFit) {
  const FolderNumber folder = contactsWith({"s1", "s2", "s3"});
  for (const char* id : {"s1", "s2", "s3"}) store().changeItem(item(folder, id), person("Ada"));
  Library library(store(), folder);
  EXPECT_EQ(library.request(1), Commands{changeOf("s1", "Ada")});
  library.key("k2");
  EXPECT_EQ(store().folder(folder).pending, 2U);
  EXPECT_EQ(library.request(1), Commands{changeOf("s2", "Ada")});
  library.key("k3");
  EXPECT_EQ(store().folder(folder).pending, 1U);
  EXPECT_EQ(library.request(1), Commands{changeOf("s3", "Ada")});
  library.key("k4");
  const SyncOutcome outcome = library.end();
  EXPECT_EQ(outcome.sent, 3U);
  EXPECT_EQ(outcome.keys, 3U);
  EXPECT_FALSE(outcome.moreToSend);
  EXPECT_EQ(store().folder(folder).pending, 0U);
}

TEST_F(OutgoingChanges, AreNotSettledByAnEmptyKey) {
  const FolderNumber folder = contactsWith({"s1"});
  store().changeItem(item(folder, "s1"), person("Ada"));
  Library library(store(), folder);
  library.request();
  library.add("s2", person("Grace"));
  library.key("");
  EXPECT_STREQ(library.info().syncKey.text, "k1");
  EXPECT_EQ(library.end().keys, 0U);
  EXPECT_EQ(store().folder(folder).pending, 1U);
  EXPECT_EQ(store().folder(folder).syncKey, "k1");
  EXPECT_EQ(names(folder), std::vector<std::string>{"Ada"});
}

TEST_F(OutgoingChanges, RenewTheKeyInTheRunningRecord) {
  const FolderNumber folder = contacts();
  Library library(store(), folder);
  EXPECT_STREQ(library.info().syncKey.text, "0");
  library.key("k1");
  EXPECT_STREQ(library.info().syncKey.text, "k1");
  EXPECT_EQ(store().folder(folder).syncKey, "k1");
  const std::string longest(67, 'x');
  library.key(longest.c_str());
  EXPECT_EQ(library.info().syncKey.text, longest);
  library.key("k");
  EXPECT_STREQ(library.info().syncKey.text, "k");
}

TEST_F(OutgoingChanges, TellWhetherMoreIsToSend) {
  const FolderNumber folder = contacts();
  store().addItem(folder, person("Ada"));
  Library handshake(store(), folder);
  handshake.key("k1");
  const SyncOutcome first = handshake.end();
  EXPECT_TRUE(first.initial);
  EXPECT_TRUE(first.moreToSend);
  Library silent(store(), folder);  // no key came: asking again at once would bring nothing
  EXPECT_FALSE(silent.end().moreToSend);
  Library receiving(store(), folder, {.syncMode = 2, .supported = std::nullopt});
  receiving.key("k2");
  const SyncOutcome third = receiving.end();
  EXPECT_FALSE(third.initial);
  EXPECT_FALSE(third.moreToSend);
}

TEST_F(OutgoingChanges, ThatAreTooLargeAreSetAside) {
  const FolderNumber folder = contactsWith({"s1", "s2"});
  const ItemNumber large = item(folder, "s2");
  store().changeItem(item(folder, "s1"), person("Ada"));
  store().changeItem(large, person("Grace"));
  Library library(store(), folder);
  library.request(1);
  EXPECT_EQ(store().setAsideLast("It is too large."), large);
  library.end(AS_RESULT_REQUEST_TOO_LARGE);
  EXPECT_EQ(pending(large)->state, PendingChange::State::failed);
  EXPECT_EQ(pending(large)->reason, "It is too large.");
  EXPECT_EQ(store().folder(folder).failed, 1U);
  Library next(store(), folder);
  EXPECT_EQ(next.request(), Commands{changeOf("s1", "Ada")});
}

TEST_F(OutgoingChanges, CanBeSetAsideAfterTheEnd) {
  const FolderNumber folder = contactsWith({"s1"});
  store().changeItem(item(folder, "s1"), person("Ada"));
  Library library(store(), folder);
  library.request(0);
  library.end(AS_RESULT_REQUEST_TOO_LARGE);
  EXPECT_EQ(store().setAsideLast("It is too large."), item(folder, "s1"));
}

TEST_F(OutgoingChanges, AreNotSetAsideWhenTheyWereChangedMeanwhile) {
  const FolderNumber folder = contactsWith({"s1"});
  store().changeItem(item(folder, "s1"), person("Ada"));
  Library library(store(), folder);
  library.request(0);
  store().changeItem(item(folder, "s1"), person("Grace"));
  EXPECT_EQ(store().setAsideLast("It is too large."), std::nullopt);
  EXPECT_EQ(pending(item(folder, "s1"))->state, PendingChange::State::waiting);
}

TEST_F(OutgoingChanges, CanNotBeSetAsideWhenNothingWasHandedOut) {
  EXPECT_EQ(store().setAsideLast("It is too large."), std::nullopt);
  const FolderNumber folder = synchronisedContacts();
  Library library(store(), folder);
  library.request();
  EXPECT_EQ(store().setAsideLast("It is too large."), std::nullopt);
}

TEST_F(OutgoingChanges, CanNotBeGivenUpWhileTheyMayBeUnderWay) {
  const FolderNumber folder = contactsWith({"s1"});
  const ItemNumber number = item(folder, "s1");
  store().changeItem(number, person("Ada"));
  Library library(store(), folder);
  library.request();
  EXPECT_THROW(store().discard(number), Error);
  library.key("k2");
  library.end();
  EXPECT_THROW(store().discard(number), Error);  // it is done
  EXPECT_EQ(names(folder), std::vector<std::string>{"Ada"});
}

}  // namespace
}  // namespace airsync::test
