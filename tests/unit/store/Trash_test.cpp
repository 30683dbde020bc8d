#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Statement.h>

#include "StoreFixture.h"

namespace airsync::test {
namespace {

using Commands = std::vector<Command>;
using Names = std::vector<std::string>;

class Trash : public StoreTest {
 protected:
  Commands nextRequest(FolderNumber folder) {
    Library library(store(), folder);
    Commands commands = library.request();
    library.end(AS_RESULT_TRANSPORT_FAILED, Reached::no);
    return commands;
  }
  static Names idsUpTo(int count) {
    Names ids;
    for (int number = 1; number <= count; ++number) ids.push_back("s" + std::to_string(number));
    return ids;
  }
  SyncOutcome serverDeletes(FolderNumber folder, int count, bool allowed) {
    return exchange(folder,
                    [&](Library& library) {
                      for (const std::string& id : idsUpTo(count)) library.remove(id);
                    },
                    {.conflict = ConflictRule::keepBoth, .allowDeletes = allowed});
  }
};

TEST_F(Trash, HoldsWhatTheServerDeleted) {
  const FolderNumber folder = contactsWith({"s1", "s2"});
  const ItemNumber deleted = item(folder, "s1");
  exchange(folder, [](Library& library) { library.remove("s1"); });
  reopen();
  EXPECT_EQ(names(folder), Names{"s2"});
  const auto trash = store().trash();
  ASSERT_EQ(trash.size(), 1U);
  EXPECT_EQ(trash[0].number, deleted);
  EXPECT_EQ(trash[0].folder, folder);
  EXPECT_EQ(trash[0].folderName, "Contacts");
  EXPECT_EQ(trash[0].dataType, DATATYPE_CONTACTS);
  EXPECT_EQ(trash[0].name, "s1 Lovelace");
  EXPECT_EQ(trash[0].reason, "It was deleted on the server.");
  EXPECT_TRUE(trash[0].since);
  EXPECT_EQ(std::get<Contact>(store().trashedItem(deleted)), person("s1"));
}

TEST_F(Trash, IsNoFolderThatAnybodySees) {
  const FolderNumber folder = contactsWith({"s1", "s2"});
  const ItemNumber deleted = item(folder, "s1");
  exchange(folder, [](Library& library) { library.remove("s1"); });
  ASSERT_EQ(store().folders().size(), 1U);
  EXPECT_EQ(store().folders()[0].items, 1U);
  EXPECT_THROW(store().findItem(folder, std::to_string(deleted)), Error);
  EXPECT_THROW(store().changeItem(deleted, person("Ada")), Error);
  EXPECT_THROW(store().deleteItem(deleted), Error);
  EXPECT_THROW(store().item(deleted), Error);
  hierarchy(
      HierarchyFetch::all, [&] { updateFolder("c1", "Contacts", 9, AS_FOLDER_ADDED); }, "h2");
  EXPECT_EQ(store().trash().size(), 1U);
}

TEST_F(Trash, GivesBackAsANewItem) {
  const FolderNumber folder = contactsWith({"s1"});
  const ItemNumber deleted = item(folder, "s1");
  exchange(folder, [](Library& library) { library.remove("s1"); });
  EXPECT_EQ(store().restoreItem(deleted), deleted);
  EXPECT_TRUE(store().trash().empty());
  EXPECT_EQ(names(folder), Names{"s1"});
  EXPECT_EQ(nextRequest(folder), Commands{addOf(deleted, "s1")});
  EXPECT_THROW(store().restoreItem(deleted), Error);
}

TEST_F(Trash, GivesBackIntoAFolderOfTheSameClassOnly) {
  hierarchy(
      HierarchyFetch::changes,
      [&] {
        updateFolder("c1", "Contacts", 9, AS_FOLDER_ADDED);
        updateFolder("c2", "Friends", 14, AS_FOLDER_ADDED);
        updateFolder("e1", "Calendar", 8, AS_FOLDER_ADDED);
      },
      "h1");
  const FolderNumber from = store().findFolder("c1").number;
  exchange(from, [](Library& library) { library.add("s1", person("Ada")); });
  const ItemNumber deleted = item(from, "s1");
  exchange(from, [](Library& library) { library.remove("s1"); });
  EXPECT_THROW(store().restoreItem(deleted, store().findFolder("e1").number), Error);
  const FolderNumber to = store().findFolder("c2").number;
  store().restoreItem(deleted, to);
  EXPECT_EQ(nextRequest(to), Commands{addOf(deleted, "Ada")});
}

TEST_F(Trash, CanNotGiveBackAMail) {
  const FolderNumber folder = inbox();
  exchange(folder, [](Library& library) { library.add("s1", mail("Tea")); });
  const ItemNumber deleted = item(folder, "s1");
  exchange(folder, [](Library& library) { library.remove("s1"); });
  EXPECT_THROW(store().restoreItem(deleted), Error);
  EXPECT_EQ(std::get<Mail>(store().trashedItem(deleted)), mail("Tea"));
}

TEST_F(Trash, HoldsTheItemsOfAFolderThatTheServerDeleted) {
  const FolderNumber folder = contactsWith({"s1", "s2", "s3"});
  store().changeItem(item(folder, "s2"), person("Grace"));
  store().deleteItem(item(folder, "s3"));
  hierarchy(
      HierarchyFetch::changes, [&] { updateFolder("c1", "Contacts", 9, AS_FOLDER_DELETED); }, "h2");
  const auto trash = store().trash();
  ASSERT_EQ(trash.size(), 1U);
  EXPECT_EQ(trash[0].name, "s1 Lovelace");
  EXPECT_EQ(trash[0].reason, "Its folder was deleted on the server.");
  ASSERT_EQ(store().failures().size(), 1U);
  EXPECT_EQ(store().failures()[0].name, "Grace Lovelace");
  EXPECT_THROW(store().restoreItem(trash[0].number), Error);  // to where?
}

TEST_F(Trash, ForgetsAfter30Days) {
  const FolderNumber folder = contactsWith({"s1", "s2"});
  exchange(folder, [](Library& library) {
    library.remove("s1");
    library.remove("s2");
  });
  close();
  {
    SQLite::Database database(file().string(), SQLite::OPEN_READWRITE);
    database.exec(
        "UPDATE trash SET since = strftime('%Y-%m-%dT%H:%M:%SZ', 'now', '-31 days') WHERE item_id = 1");
    database.exec(
        "UPDATE trash SET since = strftime('%Y-%m-%dT%H:%M:%SZ', 'now', '-29 days') WHERE item_id = 2");
  }
  reopen();
  EXPECT_EQ(store().purgeTrash(), 1);
  ASSERT_EQ(store().trash().size(), 1U);
  EXPECT_EQ(store().trash()[0].number, 2);
}

// More than five, and more than a third of the folder.
struct Mass {
  int items;
  int deletions;
  bool withheld;
};

class MassDeletion : public Trash, public testing::WithParamInterface<Mass> {};

TEST_P(MassDeletion, IsWithheldUntilItIsAllowed) {
  const auto [items, deletions, withheld] = GetParam();
  const FolderNumber folder = contactsWith(idsUpTo(items));
  const SyncOutcome outcome = serverDeletes(folder, deletions, false);
  EXPECT_EQ(outcome.withheld, withheld ? static_cast<std::size_t>(deletions) : 0U);
  EXPECT_EQ(outcome.deleted, withheld ? 0U : static_cast<std::size_t>(deletions));
  EXPECT_EQ(store().folder(folder).items, static_cast<std::size_t>(withheld ? items : items - deletions));
  if (!withheld) return;
  EXPECT_EQ(outcome.withheldOf, static_cast<std::size_t>(items));
  reopen();
  EXPECT_EQ(exchange(folder, [](Library&) {}, {}).withheld, static_cast<std::size_t>(deletions));
  const SyncOutcome allowed = exchange(folder, [](Library&) {}, {.conflict = {}, .allowDeletes = true});
  EXPECT_EQ(allowed.deleted, static_cast<std::size_t>(deletions));
  EXPECT_EQ(store().trash().size(), static_cast<std::size_t>(deletions));
}

INSTANTIATE_TEST_SUITE_P(Trash, MassDeletion,
                         testing::Values(Mass{5, 5, false}, Mass{6, 6, true}, Mass{18, 6, false},
                                         Mass{17, 6, true}, Mass{30, 10, false}, Mass{30, 11, true}));

TEST_F(Trash, IsNotFilledWithWhatComesAgain) {
  const FolderNumber folder = contactsWith(idsUpTo(8));
  serverDeletes(folder, 7, false);
  exchange(folder, [](Library& library) { library.add("s1", person("s1")); }, {});
  EXPECT_EQ(store().folder(folder).items, 8U);
  exchange(folder, [](Library&) {}, {.conflict = {}, .allowDeletes = true});
  EXPECT_EQ(names(folder), (Names{"s1", "s8"}));
}

TEST_F(Trash, IsNotWhereWithheldItemsGoThatWereEditedSince) {
  const FolderNumber folder = contactsWith(idsUpTo(6));
  serverDeletes(folder, 6, false);
  const ItemNumber edited = item(folder, "s1");
  store().changeItem(edited, person("Ada"));
  store().deleteItem(item(folder, "s2"));
  exchange(folder, [](Library&) {}, {.conflict = {}, .allowDeletes = true});
  EXPECT_EQ(nextRequest(folder), Commands{addOf(edited, "Ada")});
  EXPECT_EQ(store().trash().size(), 4U);
}

TEST_F(Trash, CountsDeletionsThatWaitToBeSent) {
  const FolderNumber folder = contactsWith(idsUpTo(7));
  store().addItem(folder, person("Ada"));
  for (const std::string& id : idsUpTo(6)) store().deleteItem(item(folder, id));
  const WaitingDeletions waiting = store().waitingDeletions(folder);
  EXPECT_EQ(waiting.deletions, 6U);
  EXPECT_EQ(waiting.items, 7U);
  EXPECT_TRUE(isMassDeletion(waiting.deletions, waiting.items));
  const SyncOutcome outcome = [&] {
    Library library(store(), folder);
    library.request();
    library.key("k9");
    return library.end();
  }();
  EXPECT_EQ(outcome.sentDeletions, 6U);
}

}  // namespace
}  // namespace airsync::test
