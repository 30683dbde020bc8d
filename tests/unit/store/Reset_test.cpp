// After the server has forgotten the folder's key, everything is fetched again.
#include "StoreFixture.h"

namespace airsync::test {
namespace {

using Commands = std::vector<Command>;
using Names = std::vector<std::string>;

class Reset : public StoreTest {
 protected:
  // The handshake of a full download: no items come yet.
  void handshake(FolderNumber folder) {
    Library library(store(), folder);
    library.key("n1");
    EXPECT_TRUE(library.end().initial);
  }
  // A full download of these items, who are called as their ids.
  SyncOutcome download(FolderNumber folder, const Names& serverIds, const FolderSettings& settings = {}) {
    handshake(folder);
    Library library(store(), folder, settings);
    for (const std::string& id : serverIds) library.add(id, person(id));
    library.key("n2");
    return library.end();
  }
  Commands nextRequest(FolderNumber folder) {
    Library library(store(), folder);
    Commands commands = library.request();
    library.end(AS_RESULT_TRANSPORT_FAILED);
    return commands;
  }
};

TEST_F(Reset, BeginsWithTheKeyZeroAndKeepsItems) {
  const FolderNumber folder = contactsWith({"s1"});
  store().resetFolder(folder);
  EXPECT_EQ(store().folder(folder).syncKey, "0");
  EXPECT_EQ(names(folder), Names{"s1"});
}

TEST_F(Reset, RemovesWhatDoesNotComeAgain) {
  const FolderNumber folder = contactsWith({"s1", "s2", "s3"});
  const ItemNumber kept = item(folder, "s2");
  store().resetFolder(folder);
  EXPECT_EQ(download(folder, {"s2", "s4"}).deleted, 2U);
  EXPECT_EQ(names(folder), (Names{"s2", "s4"}));
  EXPECT_EQ(item(folder, "s2"), kept);
}

TEST_F(Reset, RemovesNothingBeforeTheFolderIsComplete) {
  const FolderNumber folder = contactsWith({"s1", "s2"});
  store().resetFolder(folder);
  handshake(folder);
  EXPECT_EQ(names(folder), (Names{"s1", "s2"}));
  {
    Library library(store(), folder);
    library.add("s1", person("s1"));
    library.key("n2");
    library.end(AS_RESULT_TRANSPORT_FAILED);
  }
  EXPECT_EQ(names(folder), (Names{"s1", "s2"}));
  reopen();
  Library library(store(), folder);
  library.key("n3");
  library.end();
  EXPECT_EQ(names(folder), Names{"s1"});
}

TEST_F(Reset, RemovesNothingWhenTheServersItemsWereNotAskedFor) {
  const FolderNumber folder = contactsWith({"s1"});
  store().resetFolder(folder);
  download(folder, {}, {.syncMode = 1, .supported = std::nullopt});
  EXPECT_EQ(names(folder), Names{"s1"});
}

TEST_F(Reset, RemovesNothingWhenTheServerSaidNothing) {
  const FolderNumber folder = contactsWith({"s1"});
  store().resetFolder(folder);
  handshake(folder);
  Library silent(store(), folder);
  silent.end();
  EXPECT_EQ(names(folder), Names{"s1"});
}

TEST_F(Reset, RemovesNothingLater) {
  const FolderNumber folder = contactsWith({"s1"});
  store().resetFolder(folder);
  download(folder, {"s1"});
  Library library(store(), folder);
  library.key("n3");
  library.end();
  EXPECT_EQ(names(folder), Names{"s1"});
}

TEST_F(Reset, KeepsLocalChangesWhateverTheSetting) {
  const FolderNumber folder = contactsWith({"s1", "s2"});
  store().changeItem(item(folder, "s1"), person("Ada"));
  store().deleteItem(item(folder, "s2"));
  const ItemNumber added = store().addItem(folder, person("Grace"));
  store().resetFolder(folder);
  EXPECT_EQ(download(folder, {"s1", "s2"}, {.conflict = ConflictRule::server, .supported = std::nullopt})
                .overwritten,
            0U);
  EXPECT_EQ(names(folder), (Names{"Ada", "Grace"}));
  EXPECT_EQ(nextRequest(folder), (Commands{changeOf("s1", "Ada"), deleteOf("s2"), addOf(added, "Grace")}));
}

TEST_F(Reset, AddsAnewWhatWasChangedHereAndIsGoneThere) {
  const FolderNumber folder = contactsWith({"s1", "s2"});
  const ItemNumber changed = item(folder, "s1");
  store().changeItem(changed, person("Ada"));
  store().deleteItem(item(folder, "s2"));
  store().resetFolder(folder);
  download(folder, {});
  EXPECT_EQ(nextRequest(folder), Commands{addOf(changed, "Ada")});
}

TEST_F(Reset, DoesNotDuplicateAnAdditionThatReachedTheServer) {
  const FolderNumber folder = synchronisedContacts();
  const ItemNumber added = store().addItem(folder, person("s1"));
  nextRequest(folder);  // and no response
  store().resetFolder(folder);
  EXPECT_EQ(store().failures().at(0).change.state, PendingChange::State::unanswered);
  download(folder, {"s1"});
  EXPECT_EQ(names(folder), Names{"s1"});
  EXPECT_EQ(item(folder, "s1"), added);
  EXPECT_EQ(nextRequest(folder), Commands{});
}

TEST_F(Reset, SendsAnAdditionAgainThatDidNotReachTheServer) {
  const FolderNumber folder = synchronisedContacts();
  const ItemNumber added = store().addItem(folder, person("Ada"));
  nextRequest(folder);
  store().resetFolder(folder);
  download(folder, {"s1"});
  EXPECT_TRUE(store().failures().empty());
  EXPECT_EQ(nextRequest(folder), Commands{addOf(added, "Ada")});
}

TEST_F(Reset, TakesNoOtherItemForAnAdditionThatWasNeverSent) {
  const FolderNumber folder = synchronisedContacts();
  const ItemNumber added = store().addItem(folder, person("s1"));
  store().resetFolder(folder);
  download(folder, {"s1"});
  EXPECT_EQ(names(folder), (Names{"s1", "s1"}));
  EXPECT_EQ(nextRequest(folder), Commands{addOf(added, "s1")});
}

TEST_F(Reset, TakesNoItemForAnAdditionThatHasMoreThanIt) {
  const FolderNumber folder = synchronisedContacts();
  Contact contact = person("s1");
  contact.set("MobilePhoneNumber", std::string("+44 1"));
  const ItemNumber added = store().addItem(folder, contact);
  nextRequest(folder);
  store().resetFolder(folder);
  download(folder, {"s1"});
  EXPECT_EQ(nextRequest(folder), Commands{addOf(added, "s1")});
}

TEST_F(Reset, DeletesAnAdditionThatWasTakenBackWhereItIsFound) {
  const FolderNumber folder = synchronisedContacts();
  for (const char* name : {"s1", "s2"}) store().addItem(folder, person(name));
  nextRequest(folder);
  store().deleteItem(1);
  store().deleteItem(2);
  store().resetFolder(folder);
  download(folder, {"s1"});
  EXPECT_TRUE(names(folder).empty());
  EXPECT_EQ(nextRequest(folder), Commands{deleteOf("s1")});
}

TEST_F(Reset, LeavesNoChangeUnderWay) {
  const FolderNumber folder = contactsWith({"s1"});
  const ItemNumber changed = item(folder, "s1");
  store().changeItem(changed, person("Ada"));
  Library library(store(), folder);
  library.request();
  library.end(AS_RESULT_TRANSPORT_FAILED);
  EXPECT_THROW(store().discard(changed), Error);
  store().resetFolder(folder);
  store().discard(changed);
  EXPECT_EQ(names(folder), std::vector<std::string>{"s1"});
}

}  // namespace
}  // namespace airsync::test
