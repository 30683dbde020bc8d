#include "StoreFixture.h"

namespace airsync::test {
namespace {

using Names = std::vector<std::string>;

class IncomingItems : public StoreTest {};

TEST_F(IncomingItems, AreAddedChangedAndDeleted) {
  const FolderNumber folder = contactsWith({"s1", "s2"});
  const SyncOutcome outcome = exchange(folder, [](Library& library) {
    library.add("s3", person("Ada"));
    library.change("s1", person("Grace"));
    library.remove("s2");
  });
  EXPECT_EQ(names(folder), (Names{"Grace", "Ada"}));
  EXPECT_EQ(outcome.added, 1U);
  EXPECT_EQ(outcome.changed, 1U);
  EXPECT_EQ(outcome.deleted, 1U);
  EXPECT_EQ(outcome.keys, 1U);
}

TEST_F(IncomingItems, AddedTwiceAreUpdated) {
  const FolderNumber folder = contactsWith({"s1"});
  const ItemNumber number = item(folder, "s1");
  exchange(folder, [](Library& library) { library.add("s1", person("Ada")); });
  EXPECT_EQ(names(folder), Names{"Ada"});
  EXPECT_EQ(item(folder, "s1"), number);
}

TEST_F(IncomingItems, ChangedButUnknownAreAdded) {
  const FolderNumber folder = synchronisedContacts();
  const SyncOutcome outcome = exchange(folder, [](Library& library) { library.change("s1", person("Ada")); });
  EXPECT_EQ(names(folder), Names{"Ada"});
  EXPECT_EQ(outcome.added, 1U);
}

TEST_F(IncomingItems, DeletedButUnknownAreNothing) {
  const FolderNumber folder = contactsWith({"s1"});
  const SyncOutcome outcome = exchange(folder, [](Library& library) { library.remove("s2"); });
  EXPECT_EQ(names(folder), Names{"s1"});
  EXPECT_EQ(outcome.deleted, 0U);
}

TEST_F(IncomingItems, WithoutAnIdentifierAreCountedAndLeftOut) {
  const FolderNumber folder = synchronisedContacts();
  const SyncOutcome outcome = exchange(folder, [](Library& library) {
    library.add("", person("Ada"));
    library.add("0", person("Grace"));
    library.remove("0");
    library.add("s1", person("Joan"));
  });
  EXPECT_EQ(names(folder), Names{"Joan"});
  EXPECT_EQ(outcome.ignored, 3U);
}

TEST_F(IncomingItems, AreKnownBy48CharactersOfTheirIdentifiers) {
  const FolderNumber folder = synchronisedContacts();
  SERVER_ID full;
  std::fill_n(full.text, sizeof(full.text), 'x');
  ContactRecord record(person("Ada"));
  Library library(store(), folder);
  store().AddServerItem(folder, &full, &record.record());
  library.key("k2");
  library.end();
  EXPECT_EQ(*store().item(item(folder, std::string(48, 'x'))).serverId, std::string(48, 'x'));
}

TEST_F(IncomingItems, BelongToTheirFolder) {
  hierarchy(
      HierarchyFetch::changes,
      [&] {
        updateFolder("c1", "Contacts", 9, AS_FOLDER_ADDED);
        updateFolder("c2", "Friends", 14, AS_FOLDER_ADDED);
      },
      "h1");
  const FolderNumber one = store().findFolder("c1").number;
  const FolderNumber two = store().findFolder("c2").number;
  exchange(one, [](Library& library) { library.add("s1", person("Ada")); });
  exchange(two, [](Library& library) { library.add("s1", person("Grace")); });
  exchange(one, [](Library& library) { library.remove("s1"); });
  EXPECT_EQ(names(one), Names{});
  EXPECT_EQ(names(two), Names{"Grace"});
}

// A server's change meets a local one; who wins is the folder's setting.
struct Meeting {
  const char* situation;
  ChangeKind local;
  ChangeKind remote;
  INT32 conflict;
  Names shown;
  std::optional<ChangeKind> pending;  // what still waits; empty: nothing
  std::size_t overwritten;
};

class Conflict : public IncomingItems, public testing::WithParamInterface<Meeting> {};

TEST_P(Conflict, IsDecidedByTheSetting) {
  const Meeting& meeting = GetParam();
  SCOPED_TRACE(meeting.situation);
  const FolderNumber folder = contactsWith({"s1"});
  const ItemNumber number = item(folder, "s1");
  if (meeting.local == ChangeKind::change) {
    store().changeItem(number, person("local"));
  } else {
    store().deleteItem(number);
  }
  const SyncOutcome outcome = exchange(
      folder,
      [&](Library& library) {
        if (meeting.remote == ChangeKind::change) {
          library.change("s1", person("remote"));
        } else {
          library.remove("s1");
        }
      },
      meeting.conflict);
  EXPECT_EQ(names(folder), meeting.shown);
  EXPECT_EQ(outcome.overwritten, meeting.overwritten);
  EXPECT_EQ(store().folder(folder).pending, meeting.pending ? 1U : 0U);
  Library next(store(), folder);
  std::vector<Command> expected;
  if (meeting.pending == ChangeKind::change) expected = {changeOf("s1", "local")};
  if (meeting.pending == ChangeKind::remove) expected = {deleteOf("s1")};
  if (meeting.pending == ChangeKind::add) expected = {addOf(number, "local")};
  EXPECT_EQ(next.request(), expected);
}

constexpr INT32 kClientWins = 0;
constexpr INT32 kServerWins = 1;

INSTANTIATE_TEST_SUITE_P(IncomingItems, Conflict,
                         testing::Values(Meeting{"both changed, client wins",
                                                 ChangeKind::change,
                                                 ChangeKind::change,
                                                 kClientWins,
                                                 {"local"},
                                                 ChangeKind::change,
                                                 0},
                                         Meeting{"both changed, server wins",
                                                 ChangeKind::change,
                                                 ChangeKind::change,
                                                 kServerWins,
                                                 {"remote"},
                                                 std::nullopt,
                                                 1},
                                         Meeting{"changed here, deleted there, client wins",
                                                 ChangeKind::change,
                                                 ChangeKind::remove,
                                                 kClientWins,
                                                 {"local"},
                                                 ChangeKind::add,
                                                 0},
                                         Meeting{"changed here, deleted there, server wins",
                                                 ChangeKind::change,
                                                 ChangeKind::remove,
                                                 kServerWins,
                                                 {},
                                                 std::nullopt,
                                                 1},
                                         Meeting{"deleted here, changed there, client wins",
                                                 ChangeKind::remove,
                                                 ChangeKind::change,
                                                 kClientWins,
                                                 {},
                                                 ChangeKind::remove,
                                                 0},
                                         Meeting{"deleted here, changed there, server wins",
                                                 ChangeKind::remove,
                                                 ChangeKind::change,
                                                 kServerWins,
                                                 {"remote"},
                                                 std::nullopt,
                                                 1},
                                         Meeting{"both deleted, client wins",
                                                 ChangeKind::remove,
                                                 ChangeKind::remove,
                                                 kClientWins,
                                                 {},
                                                 std::nullopt,
                                                 0},
                                         Meeting{"both deleted, server wins",
                                                 ChangeKind::remove,
                                                 ChangeKind::remove,
                                                 kServerWins,
                                                 {},
                                                 std::nullopt,
                                                 0}));

TEST_F(IncomingItems, ThatLostAConflictAreThereWhenTheLocalChangeIsGivenUp) {
  const FolderNumber folder = contactsWith({"s1"});
  const ItemNumber number = item(folder, "s1");
  store().changeItem(number, person("local"));
  exchange(
      folder, [](Library& library) { library.change("s1", person("remote")); }, kClientWins);
  store().discard(number);
  EXPECT_EQ(names(folder), Names{"remote"});
}

TEST_F(IncomingItems, ThatWereFetchedReplaceWhatIsThere) {
  const FolderNumber folder = contactsWith({"s1"});
  ContactRecord record(person("whole"));
  exchange(folder, [&](Library& library) {
    const SERVER_ID known = {"s1"};
    const SERVER_ID unknown = {"s2"};
    store().FetchedItem(library.info().handle, &known, &record.record(), AS_RESULT_OK);
    store().FetchedItem(library.info().handle, &unknown, &record.record(), AS_RESULT_OK);
  });
  EXPECT_EQ(names(folder), Names{"whole"});
  ContactRecord other(person("refused"));
  exchange(folder, [&](Library& library) {
    const SERVER_ID known = {"s1"};
    store().FetchedItem(library.info().handle, &known, &other.record(), itemResult(8));
  });
  EXPECT_EQ(names(folder), Names{"whole"});
}

}  // namespace
}  // namespace airsync::test
