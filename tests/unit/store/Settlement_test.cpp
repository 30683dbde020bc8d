// How a local change comes to its end, as a table.
#include <functional>

#include "StoreFixture.h"

namespace airsync::test {
namespace {

enum class End { settled, waiting, failed, unanswered };

struct Row {
  const char* situation;
  ChangeKind kind;
  // What the response says; null: nothing. "s" is the item's id, also the one that an addition gets.
  std::function<void(Library&, ItemNumber)> answer;
  bool editMeanwhile;
  End end;
  INT32 status;
};

void PrintTo(const Row& row, std::ostream* stream) { *stream << row.situation; }

class Settlement : public StoreTest, public testing::WithParamInterface<Row> {};

TEST_P(Settlement, FollowsTheRules) {
  const Row& row = GetParam();
  const FolderNumber folder =
      contactsWith(row.kind == ChangeKind::add ? std::vector<std::string>{} : std::vector<std::string>{"s"});
  ItemNumber number = 0;
  switch (row.kind) {
    case ChangeKind::add:
      number = store().addItem(folder, person("Ada"));
      break;
    case ChangeKind::change:
      number = item(folder, "s");
      store().changeItem(number, person("Ada"));
      break;
    case ChangeKind::remove:
      number = item(folder, "s");
      store().deleteItem(number);
      break;
  }
  Library library(store(), folder);
  ASSERT_EQ(library.request().size(), 1U);
  if (row.editMeanwhile) store().changeItem(number, person("Grace"));
  if (row.answer) row.answer(library, number);
  library.key("k2");
  library.end();

  const Folder after = store().folder(folder);
  EXPECT_EQ(after.pending, row.end == End::waiting ? 1U : 0U);
  EXPECT_EQ(after.failed, row.end == End::failed || row.end == End::unanswered ? 1U : 0U);
  const auto failures = store().failures();
  if (row.end == End::failed || row.end == End::unanswered) {
    ASSERT_EQ(failures.size(), 1U);
    EXPECT_EQ(failures[0].item, number);
    EXPECT_EQ(failures[0].change.status, row.status);
    EXPECT_FALSE(failures[0].change.reason.empty());
    EXPECT_TRUE(failures[0].since);
    EXPECT_EQ(failures[0].change.state == PendingChange::State::unanswered, row.end == End::unanswered);
  }
  Library next(store(), folder);
  EXPECT_EQ(next.request().size(), row.end == End::waiting ? 1U : 0U);
}

constexpr auto kAdd = ChangeKind::add;
constexpr auto kChange = ChangeKind::change;
constexpr auto kRemove = ChangeKind::remove;

void addDone(Library& library, ItemNumber item) { library.addResult(item, "s"); }
void addRefused(Library& library, ItemNumber item) { library.addResult(item, "stale", itemResult(5)); }
void addNameless(Library& library, ItemNumber item) { library.addResult(item, "0"); }
void addForNobody(Library& library, ItemNumber item) { library.addResult(item + 1, "s"); }
void changeDone(Library& library, ItemNumber) { library.changeResult("s"); }
void changeRefused(Library& library, ItemNumber) { library.changeResult("s", itemResult(6)); }
void removeDone(Library& library, ItemNumber) { library.deleteResult("s"); }
void removeRefused(Library& library, ItemNumber) { library.deleteResult("s", itemResult(5)); }
void removeNotFound(Library& library, ItemNumber) { library.deleteResult("s", itemResult(8)); }
void changeNotFound(Library& library, ItemNumber) { library.changeResult("s", itemResult(8)); }

INSTANTIATE_TEST_SUITE_P(
    Store, Settlement,
    testing::Values(Row{"addition answered", kAdd, addDone, false, End::settled, 0},
                    Row{"addition refused", kAdd, addRefused, false, End::failed, 5},
                    Row{"addition not answered", kAdd, nullptr, false, End::unanswered, 0},
                    Row{"addition taken without an identifier", kAdd, addNameless, false, End::failed, 0},
                    Row{"answer to another addition", kAdd, addForNobody, false, End::unanswered, 0},
                    Row{"change answered", kChange, changeDone, false, End::settled, 0},
                    Row{"change refused", kChange, changeRefused, false, End::failed, 6},
                    Row{"change of an item that is gone", kChange, changeNotFound, false, End::waiting, 0},
                    Row{"change not answered", kChange, nullptr, false, End::settled, 0},
                    Row{"deletion answered", kRemove, removeDone, false, End::settled, 0},
                    Row{"deletion refused", kRemove, removeRefused, false, End::failed, 5},
                    Row{"deletion of an item that is gone", kRemove, removeNotFound, false, End::settled, 0},
                    Row{"deletion not answered", kRemove, nullptr, false, End::settled, 0},
                    Row{"addition answered, edited meanwhile", kAdd, addDone, true, End::waiting, 0},
                    Row{"addition refused, edited meanwhile", kAdd, addRefused, true, End::waiting, 0},
                    Row{"addition not answered, edited meanwhile", kAdd, nullptr, true, End::unanswered, 0},
                    Row{"change answered, edited meanwhile", kChange, changeDone, true, End::waiting, 0},
                    Row{"change refused, edited meanwhile", kChange, changeRefused, true, End::waiting, 0},
                    Row{"change not answered, edited meanwhile", kChange, nullptr, true, End::waiting, 0}));

using Commands = std::vector<Command>;

class Settled : public StoreTest {
 protected:
  SyncOutcome exchange(FolderNumber folder, const std::function<void(Library&)>& bring) {
    Library library(store(), folder);
    library.request();
    bring(library);
    library.key("k2");
    return library.end();
  }
  Commands nextRequest(FolderNumber folder) {
    Library library(store(), folder);
    Commands commands = library.request();
    library.end(AS_RESULT_TRANSPORT_FAILED, Reached::no);
    return commands;
  }
};

TEST_F(Settled, AdditionKeepsItsNumberAndHasItsServerId) {
  const FolderNumber folder = synchronisedContacts();
  const ItemNumber added = store().addItem(folder, person("Ada"));
  exchange(folder, [&](Library& library) { library.addResult(added, "s/1"); });
  EXPECT_EQ(item(folder, "s/1"), added);
  store().changeItem(added, person("Grace"));
  EXPECT_EQ(nextRequest(folder), Commands{changeOf("s/1", "Grace")});
}

TEST_F(Settled, AdditionThatWasEditedMeanwhileIsAChangeNow) {
  const FolderNumber folder = synchronisedContacts();
  const ItemNumber added = store().addItem(folder, person("Ada"));
  exchange(folder, [&](Library& library) {
    store().changeItem(added, person("Grace"));
    library.addResult(added, "s1");
  });
  EXPECT_EQ(nextRequest(folder), Commands{changeOf("s1", "Grace")});
}

TEST_F(Settled, AdditionThatWasDeletedMeanwhileIsADeletionNow) {
  const FolderNumber folder = synchronisedContacts();
  const ItemNumber added = store().addItem(folder, person("Ada"));
  exchange(folder, [&](Library& library) {
    store().deleteItem(added);
    library.addResult(added, "s1");
  });
  EXPECT_TRUE(names(folder).empty());
  EXPECT_EQ(nextRequest(folder), Commands{deleteOf("s1")});
}

TEST_F(Settled, AdditionThatWasDeletedMeanwhileAndRefusedIsGone) {
  const FolderNumber folder = synchronisedContacts();
  const ItemNumber added = store().addItem(folder, person("Ada"));
  exchange(folder, [&](Library& library) {
    store().deleteItem(added);
    library.addResult(added, "", itemResult(5));
  });
  EXPECT_EQ(store().folder(folder).items, 0U);
  EXPECT_TRUE(store().failures().empty());
}

TEST_F(Settled, ChangeThatWasDeletedMeanwhileIsADeletionNow) {
  const FolderNumber folder = contactsWith({"s1"});
  const ItemNumber number = item(folder, "s1");
  store().changeItem(number, person("Ada"));
  exchange(folder, [&](Library&) { store().deleteItem(number); });
  EXPECT_EQ(nextRequest(folder), Commands{deleteOf("s1")});
}

TEST_F(Settled, ChangeThatWasEditedMeanwhileIsGivenUpForWhatWasSent) {
  const FolderNumber folder = contactsWith({"s1"});
  const ItemNumber number = item(folder, "s1");
  store().changeItem(number, person("Ada"));
  exchange(folder, [&](Library&) { store().changeItem(number, person("Grace")); });
  store().discard(number);
  EXPECT_EQ(names(folder), std::vector<std::string>{"Ada"});
}

TEST_F(Settled, RefusalStaysUntilThePersonChangesTheItem) {
  const FolderNumber folder = contactsWith({"s1"});
  const ItemNumber number = item(folder, "s1");
  store().changeItem(number, person("Ada"));
  exchange(folder, [&](Library& library) { library.changeResult("s1", itemResult(6)); });
  reopen();
  EXPECT_EQ(pending(number)->reason, "The server could not convert the item (status 6).");
  EXPECT_EQ(nextRequest(folder), Commands{});
  store().changeItem(number, person("Grace"));
  EXPECT_EQ(nextRequest(folder), Commands{changeOf("s1", "Grace")});
}

TEST_F(Settled, RefusalIsSentAgainOnRequest) {
  const FolderNumber folder = synchronisedContacts();
  const ItemNumber added = store().addItem(folder, person("Ada"));
  exchange(folder, [&](Library& library) { library.addResult(added, "", itemResult(9)); });
  store().retry(added);
  EXPECT_EQ(nextRequest(folder), Commands{addOf(added, "Ada")});
}

TEST_F(Settled, RefusedDeletionComesBackWhenItIsGivenUp) {
  const FolderNumber folder = contactsWith({"s1"});
  const ItemNumber number = item(folder, "s1");
  store().deleteItem(number);
  exchange(folder, [&](Library& library) { library.deleteResult("s1", itemResult(5)); });
  EXPECT_TRUE(names(folder).empty());
  store().discard(number);
  EXPECT_EQ(names(folder), std::vector<std::string>{"s1"});
}

TEST_F(Settled, UnansweredAdditionIsSentAgainOnlyOnRequest) {
  const FolderNumber folder = synchronisedContacts();
  const ItemNumber added = store().addItem(folder, person("Ada"));
  exchange(folder, [](Library&) {});
  store().changeItem(added, person("Grace"));
  EXPECT_EQ(nextRequest(folder), Commands{});
  store().retry(added);
  EXPECT_EQ(nextRequest(folder), Commands{addOf(added, "Grace")});
}

TEST_F(Settled, UnansweredAdditionIsTheItemThatTheServerSendsLater) {
  const FolderNumber folder = synchronisedContacts();
  const ItemNumber added = store().addItem(folder, person("Ada"));
  exchange(folder, [](Library&) {});
  Library library(store(), folder);
  library.add("s1", person("Ada"));
  library.key("k3");
  library.end();
  EXPECT_EQ(item(folder, "s1"), added);
  EXPECT_TRUE(store().failures().empty());
}

TEST_F(Settled, AdditionThatComesBackInTheSameResponseIsOneItem) {
  const FolderNumber folder = synchronisedContacts();
  const ItemNumber added = store().addItem(folder, person("Ada"));
  exchange(folder, [&](Library& library) {
    library.add("s1", person("Ada"));
    library.addResult(added, "s1");
  });
  EXPECT_EQ(names(folder), std::vector<std::string>{"Ada"});
  EXPECT_EQ(item(folder, "s1"), added);
}

TEST_F(Settled, AdditionNeverTakesTheIdentifierOfAnotherItem) {
  const FolderNumber folder = contactsWith({"s1"});
  const ItemNumber added = store().addItem(folder, person("Ada"));
  exchange(folder, [&](Library& library) {
    library.add("s2", person("Grace"));
    library.addResult(added, "s1");
  });
  EXPECT_EQ(names(folder), (std::vector<std::string>{"s1", "Ada", "Grace"}));
  EXPECT_EQ(pending(added)->state, PendingChange::State::failed);
  store().retry(added);
  exchange(folder, [&](Library& library) {
    library.add("s3", person("Joan"));
    library.addResult(added, "s3");  // new in this response, but somebody else
  });
  EXPECT_EQ(pending(added)->state, PendingChange::State::failed);
}

TEST_F(Settled, AnswersToWhatWasNeverSentChangeNothing) {
  const FolderNumber folder = contactsWith({"s1", "s2"});
  Library library(store(), folder);
  library.request();
  const ItemNumber added = store().addItem(folder, person("Ada"));
  store().changeItem(item(folder, "s1"), person("Grace"));
  store().deleteItem(item(folder, "s2"));
  library.addResult(added, "s9");
  library.addResult(9999, "s9");
  library.changeResult("s1");
  library.changeResult("s1", itemResult(6));
  library.changeResult("unknown", itemResult(6));
  library.deleteResult("s2");
  library.key("k2");
  EXPECT_EQ(library.end().ignored, 2U);
  EXPECT_EQ(nextRequest(folder), (Commands{addOf(added, "Ada"), changeOf("s1", "Grace"), deleteOf("s2")}));
}

TEST_F(Settled, CountsTellWhatBecameOfTheChanges) {
  const FolderNumber folder = contactsWith({"s1", "s2"});
  const ItemNumber added = store().addItem(folder, person("Ada"));
  store().changeItem(item(folder, "s1"), person("Grace"));
  store().deleteItem(item(folder, "s2"));
  const SyncOutcome outcome = exchange(folder, [&](Library& library) {
    library.addResult(added, "", itemResult(5));
    library.changeResult("s1");
  });
  EXPECT_EQ(outcome.sent, 2U);
  EXPECT_EQ(outcome.refused, 1U);
}

}  // namespace
}  // namespace airsync::test
