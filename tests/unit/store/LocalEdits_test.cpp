#include "StoreFixture.h"

namespace airsync::test {
namespace {

using Commands = std::vector<Command>;

class LocalEdits : public StoreTest {
 protected:
  // What the next synchronisation would send.
  Commands sent(FolderNumber folder) {
    Library library(store(), folder);
    Commands commands = library.request();
    library.end(AS_RESULT_TRANSPORT_FAILED);
    return commands;
  }
};

TEST_F(LocalEdits, AreCounted) {
  const FolderNumber folder = contactsWith({"s1", "s2", "s3"});
  store().addItem(folder, person("Ada"));
  store().changeItem(item(folder, "s1"), person("Grace"));
  store().deleteItem(item(folder, "s2"));
  const Folder counted = store().folder(folder);
  EXPECT_EQ(counted.items, 3U);
  EXPECT_EQ(counted.pending, 3U);
  EXPECT_EQ(counted.failed, 0U);
}

TEST_F(LocalEdits, AreSeenAtOnceAndAfterOpeningAgain) {
  const FolderNumber folder = contactsWith({"s1", "s2"});
  const ItemNumber changed = item(folder, "s1");
  store().changeItem(changed, person("Grace"));
  store().deleteItem(item(folder, "s2"));
  reopen();
  EXPECT_EQ(names(folder), std::vector<std::string>{"Grace"});
  EXPECT_EQ(pending(changed)->kind, ChangeKind::change);
}

TEST_F(LocalEdits, OfAnItemThatWasNeverSentAreOneAddition) {
  const FolderNumber folder = synchronisedContacts();
  const ItemNumber added = store().addItem(folder, person("Ada"));
  store().changeItem(added, person("Grace"));
  EXPECT_EQ(sent(folder), Commands{addOf(added, "Grace")});
}

TEST_F(LocalEdits, AddingAndDeletingSendsNothing) {
  const FolderNumber folder = synchronisedContacts();
  const ItemNumber added = store().addItem(folder, person("Ada"));
  store().deleteItem(added);
  EXPECT_EQ(sent(folder), Commands{});
  EXPECT_EQ(store().folder(folder).pending, 0U);
  EXPECT_EQ(store().folder(folder).items, 0U);
}

TEST_F(LocalEdits, ChangingTwiceSendsTheLastOnce) {
  const FolderNumber folder = contactsWith({"s1"});
  store().changeItem(item(folder, "s1"), person("Ada"));
  store().changeItem(item(folder, "s1"), person("Grace"));
  EXPECT_EQ(sent(folder), Commands{changeOf("s1", "Grace")});
}

TEST_F(LocalEdits, ChangingAndDeletingSendsTheDeletion) {
  const FolderNumber folder = contactsWith({"s1"});
  store().changeItem(item(folder, "s1"), person("Ada"));
  store().deleteItem(item(folder, "s1"));
  EXPECT_EQ(sent(folder), Commands{deleteOf("s1")});
}

TEST_F(LocalEdits, OfADeletedItemAreRefused) {
  const FolderNumber folder = contactsWith({"s1"});
  const ItemNumber deleted = item(folder, "s1");
  store().deleteItem(deleted);
  EXPECT_THROW(store().deleteItem(deleted), Error);
  EXPECT_THROW(store().changeItem(deleted, person("Ada")), Error);
  EXPECT_THROW(store().item(deleted), Error);
  EXPECT_THROW(store().changeItem(99, person("Ada")), Error);
  EXPECT_THROW(store().deleteItem(99), Error);
}

TEST_F(LocalEdits, OfAContactThatCanNotBeSentAreRefusedAndChangeNothing) {
  const FolderNumber folder = contactsWith({"s1"});
  Contact bad;
  bad.set("FirstName", std::string("A\0da", 5));
  EXPECT_THROW(store().addItem(folder, bad), Error);
  EXPECT_THROW(store().changeItem(item(folder, "s1"), bad), Error);
  EXPECT_EQ(names(folder), std::vector<std::string>{"s1"});
  EXPECT_EQ(store().folder(folder).pending, 0U);
}

TEST_F(LocalEdits, AreRefusedInAFolderOfAnotherClass) {
  hierarchy(
      HierarchyFetch::changes, [&] { updateFolder("cal", "Calendar", 8, AS_FOLDER_ADDED); }, "h1");
  EXPECT_THROW(store().addItem(store().findFolder("cal").number, person("Ada")), Error);
  EXPECT_THROW(store().addItem(77, person("Ada")), Error);
}

TEST_F(LocalEdits, GivenUpLeaveWhatTheServerHas) {
  const FolderNumber folder = contactsWith({"s1", "s2"});
  const ItemNumber added = store().addItem(folder, person("Ada"));
  store().changeItem(item(folder, "s1"), person("Grace"));
  const ItemNumber deleted = item(folder, "s2");
  store().deleteItem(deleted);
  store().discard(added);
  store().discard(item(folder, "s1"));
  store().discard(deleted);
  EXPECT_EQ(names(folder), (std::vector<std::string>{"s1", "s2"}));
  EXPECT_EQ(store().folder(folder).pending, 0U);
  EXPECT_EQ(sent(folder), Commands{});
}

TEST_F(LocalEdits, GivenUpAfterChangingAndDeletingLeaveWhatTheServerHas) {
  const FolderNumber folder = contactsWith({"s1"});
  const ItemNumber number = item(folder, "s1");
  store().changeItem(number, person("Ada"));
  store().deleteItem(number);
  store().discard(number);
  EXPECT_EQ(names(folder), std::vector<std::string>{"s1"});
}

TEST_F(LocalEdits, ThatAreNotThereCanNeitherBeGivenUpNorRetried) {
  const FolderNumber folder = contactsWith({"s1"});
  const ItemNumber number = item(folder, "s1");
  EXPECT_THROW(store().discard(number), Error);
  EXPECT_THROW(store().retry(number), Error);
  store().changeItem(number, person("Ada"));
  EXPECT_THROW(store().retry(number), Error);  // it waits already
}

TEST_F(LocalEdits, NeverUseANumberTwice) {
  const FolderNumber folder = synchronisedContacts();
  const ItemNumber first = store().addItem(folder, person("Ada"));
  store().deleteItem(first);
  EXPECT_GT(store().addItem(folder, person("Grace")), first);
}

}  // namespace
}  // namespace airsync::test
