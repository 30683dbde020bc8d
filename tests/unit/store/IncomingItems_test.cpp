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
  ConflictRule rule;
  Names shown;
  std::optional<ChangeKind> pending;  // what still waits; empty: nothing
  std::size_t overwritten;
  std::size_t trash;  // what the trash holds afterwards
  std::optional<Conflict::Outcome> outcome;
};

class ConflictTable : public IncomingItems, public testing::WithParamInterface<Meeting> {};

TEST_P(ConflictTable, IsDecidedByTheRule) {
  const Meeting& meeting = GetParam();
  SCOPED_TRACE(meeting.situation);
  const FolderNumber folder = contactsWith({"s1"});
  const ItemNumber number = item(folder, "s1");
  if (meeting.local == ChangeKind::change) {
    store().changeItem(number, person("local"));
  } else {
    store().deleteItem(number);
  }
  const SyncOutcome outcome = exchange(folder,
                                       [&](Library& library) {
                                         if (meeting.remote == ChangeKind::change) {
                                           library.change("s1", person("remote"));
                                         } else {
                                           library.remove("s1");
                                         }
                                       },
                                       {.conflict = meeting.rule, .allowDeletes = true});
  EXPECT_EQ(names(folder), meeting.shown);
  EXPECT_EQ(outcome.overwritten, meeting.overwritten);
  EXPECT_EQ(store().folder(folder).pending, meeting.pending ? 1U : 0U);
  EXPECT_EQ(store().trash().size(), meeting.trash);
  ASSERT_EQ(outcome.conflicts.size(), meeting.outcome ? 1U : 0U);
  if (meeting.outcome) {
    EXPECT_EQ(outcome.conflicts[0].outcome, *meeting.outcome);
    EXPECT_EQ(outcome.conflicts[0].item, number);
  }
  Library next(store(), folder);
  std::vector<Command> expected;
  if (meeting.pending == ChangeKind::change) expected = {changeOf("s1", "local")};
  if (meeting.pending == ChangeKind::remove) expected = {deleteOf("s1")};
  if (meeting.pending == ChangeKind::add) expected = {addOf(number, "local")};
  EXPECT_EQ(next.request(), expected);
}

constexpr auto kChanged = ChangeKind::change;
constexpr auto kDeleted = ChangeKind::remove;
constexpr auto kKeepBoth = ConflictRule::keepBoth;
constexpr auto kServer = ConflictRule::server;
constexpr auto kLocal = ConflictRule::local;
constexpr std::optional<ChangeKind> kNothing;

INSTANTIATE_TEST_SUITE_P(
    IncomingItems, ConflictTable,
    testing::Values(Meeting{"both changed, local wins",
                            kChanged,
                            kChanged,
                            kLocal,
                            {"local"},
                            kChanged,
                            0,
                            1,
                            Conflict::Outcome::localWon},
                    Meeting{"both changed, server wins",
                            kChanged,
                            kChanged,
                            kServer,
                            {"remote"},
                            kNothing,
                            1,
                            1,
                            Conflict::Outcome::serverWon},
                    Meeting{"both changed, both kept",
                            kChanged,
                            kChanged,
                            kKeepBoth,
                            {"remote", "local"},
                            kNothing,
                            1,
                            0,
                            Conflict::Outcome::keptBoth},
                    Meeting{"changed here, deleted there, local wins",
                            kChanged,
                            kDeleted,
                            kLocal,
                            {"local"},
                            ChangeKind::add,
                            0,
                            0,
                            Conflict::Outcome::addedAnew},
                    Meeting{"changed here, deleted there, server wins",
                            kChanged,
                            kDeleted,
                            kServer,
                            {},
                            kNothing,
                            1,
                            1,
                            Conflict::Outcome::serverWon},
                    Meeting{"changed here, deleted there, both kept",
                            kChanged,
                            kDeleted,
                            kKeepBoth,
                            {"local"},
                            ChangeKind::add,
                            0,
                            0,
                            Conflict::Outcome::addedAnew},
                    Meeting{"deleted here, changed there, local wins",
                            kDeleted,
                            kChanged,
                            kLocal,
                            {},
                            kDeleted,
                            0,
                            1,
                            Conflict::Outcome::localWon},
                    Meeting{"deleted here, changed there, server wins",
                            kDeleted,
                            kChanged,
                            kServer,
                            {"remote"},
                            kNothing,
                            0,
                            0,
                            Conflict::Outcome::broughtBack},
                    Meeting{"deleted here, changed there, both kept",
                            kDeleted,
                            kChanged,
                            kKeepBoth,
                            {"remote"},
                            kNothing,
                            0,
                            0,
                            Conflict::Outcome::broughtBack},
                    Meeting{"both deleted, local wins", kDeleted, kDeleted, kLocal, {}, kNothing, 0, 0, {}},
                    Meeting{"both deleted, server wins", kDeleted, kDeleted, kServer, {}, kNothing, 0, 0, {}},
                    Meeting{
                        "both deleted, both kept", kDeleted, kDeleted, kKeepBoth, {}, kNothing, 0, 0, {}}));

TEST_F(IncomingItems, ThatLostAConflictAreThereWhenTheLocalChangeIsGivenUp) {
  const FolderNumber folder = contactsWith({"s1"});
  const ItemNumber number = item(folder, "s1");
  store().changeItem(number, person("local"));
  exchange(folder, [](Library& library) { library.change("s1", person("remote")); },
           {.conflict = ConflictRule::local, .allowDeletes = true});
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
