// Items that both sides had their hands on: what IncomingItems' table of situations does not show.
#include "StoreFixture.h"

namespace airsync::test {
namespace {

using Commands = std::vector<Command>;
using Names = std::vector<std::string>;

class Conflicts : public StoreTest {
 protected:
  Commands nextRequest(FolderNumber folder) {
    Library library(store(), folder);
    Commands commands = library.request();
    library.end(AS_RESULT_TRANSPORT_FAILED, Reached::no);
    return commands;
  }
  // A request with the changes that wait, and its response.
  SyncOutcome send(FolderNumber folder, const std::function<void(Library&)>& answer,
                   const SyncRules& rules = {}) {
    Library library(store(), folder, {.conflict = rules.conflict, .supported = std::nullopt});
    library.request();
    answer(library);
    library.key("k9");
    return library.end();
  }
};

Event eventCalled(const std::string& subject, const std::string& uid) {
  Event called = event(subject);
  called.fields.set("UID", uid);
  return called;
}

TEST_F(Conflicts, KeepTheLocalVersionAsACopyThatWaitsForAPerson) {
  const FolderNumber folder = contactsWith({"s1"});
  const ItemNumber original = item(folder, "s1");
  store().changeItem(original, person("local"));
  const SyncOutcome outcome =
      exchange(folder, [](Library& library) { library.change("s1", person("remote")); });
  ASSERT_EQ(outcome.conflicts.size(), 1U);
  const ItemNumber copy = outcome.conflicts[0].copy;
  EXPECT_EQ(outcome.conflicts[0].name, "local Lovelace");
  EXPECT_EQ(contactOf(original), person("remote"));
  EXPECT_EQ(contactOf(copy), person("local"));
  const auto failures = store().failures();
  ASSERT_EQ(failures.size(), 1U);
  EXPECT_EQ(failures[0].item, copy);
  EXPECT_EQ(failures[0].copyOf, original);
  EXPECT_EQ(failures[0].change.state, PendingChange::State::failed);
  EXPECT_EQ(nextRequest(folder), Commands{});
  store().retry(copy);
  EXPECT_EQ(nextRequest(folder), Commands{addOf(copy, "local")});
  store().discard(copy);
  EXPECT_EQ(names(folder), Names{"remote"});
}

TEST_F(Conflicts, GiveTheCopyOfAnEventAUidOfItsOwn) {
  const FolderNumber folder = calendar();
  exchange(folder, [](Library& library) { library.add("s1", eventCalled("Tea", "U1")); });
  const ItemNumber original = item(folder, "s1");
  store().changeItem(original, eventCalled("local", "U1"));
  const SyncOutcome outcome =
      exchange(folder, [](Library& library) { library.change("s1", eventCalled("remote", "U1")); });
  const Event copy = eventOf(outcome.conflicts.at(0).copy);
  EXPECT_EQ(*copy.fields.get<std::string>("Subject"), "local");
  EXPECT_NE(*copy.fields.get<std::string>("UID"), "U1");
}

TEST_F(Conflicts, AreNoneWhenTheServerSendsWhatItHadSent) {
  for (const ConflictRule rule : {ConflictRule::keepBoth, ConflictRule::server, ConflictRule::local}) {
    const FolderNumber folder = contactsWith({"s1", "s2"});
    store().changeItem(item(folder, "s1"), person("local"));
    store().deleteItem(item(folder, "s2"));
    const SyncOutcome outcome = exchange(folder,
                                         [](Library& library) {
                                           library.change("s1", person("s1"));
                                           library.add("s2", person("s2"));
                                         },
                                         {.conflict = rule, .allowDeletes = true});
    EXPECT_TRUE(outcome.conflicts.empty());
    EXPECT_EQ(nextRequest(folder), (Commands{changeOf("s1", "local"), deleteOf("s2")}));
    store().discard(item(folder, "s1"));
    store().discard(item(folder, "s2"));
  }
}

TEST_F(Conflicts, AreNoneWhenTheServerSendsWhatIsHere) {
  const FolderNumber folder = contactsWith({"s1"});
  store().changeItem(item(folder, "s1"), person("the same"));
  const SyncOutcome outcome =
      exchange(folder, [](Library& library) { library.change("s1", person("the same")); });
  EXPECT_TRUE(outcome.conflicts.empty());
  EXPECT_EQ(nextRequest(folder), Commands{});
}

TEST_F(Conflicts, AreNoneWhenTheServerSendsBackWhatWasSentBeforeALaterEdit) {
  const FolderNumber folder = contactsWith({"s1"});
  const ItemNumber number = item(folder, "s1");
  store().changeItem(number, person("first"));
  {
    Library library(store(), folder);
    library.request();
    library.end(AS_RESULT_TRANSPORT_FAILED);
  }
  store().changeItem(number, person("second"));
  store().resetFolder(folder);
  const SyncOutcome outcome = exchange(folder, [](Library& library) { library.add("s1", person("first")); });
  EXPECT_TRUE(outcome.conflicts.empty());
  EXPECT_EQ(nextRequest(folder), Commands{changeOf("s1", "second")});
}

TEST_F(Conflicts, AreNoneOverStampsAndFieldsThatAServerFillsIn) {
  const FolderNumber folder = calendar();
  exchange(folder, [](Library& library) { library.add("s1", event("Tea")); });
  store().changeItem(item(folder, "s1"), event("Coffee"));
  Event stamped = event("Tea");
  stamped.fields.set("DtStamp", UtcTime{.year = 2026, .month = 11, .day = 22});
  stamped.fields.set("UID", std::string("U1"));
  stamped.fields.set("OrganizerName", std::string("Ann"));
  EXPECT_TRUE(exchange(folder, [&](Library& library) { library.change("s1", stamped); }).conflicts.empty());
  Event edited = stamped;
  edited.fields.set("Location", std::string("Boathouse"));
  EXPECT_EQ(exchange(folder, [&](Library& library) { library.change("s1", edited); }).conflicts.size(), 1U);
}

TEST_F(Conflicts, SeeEditsOfRulesAndExceptions) {
  const FolderNumber folder = calendar();
  const auto conflictsWith = [&](const std::function<void(Event&)>& edit) {
    exchange(folder, [](Library& library) { library.add("s1", fullEvent()); });
    Event local = fullEvent();
    local.fields.set("Subject", std::string("local"));
    store().changeItem(item(folder, "s1"), local);
    Event remote = fullEvent();
    edit(remote);
    const std::size_t conflicts = exchange(folder, [&](Library& library) { library.change("s1", remote); },
                                           {.conflict = ConflictRule::server, .allowDeletes = true})
                                      .conflicts.size();
    if (conflicts == 0) store().discard(item(folder, "s1"));
    return conflicts;
  };
  EXPECT_EQ(conflictsWith([](Event&) {}), 0U);
  EXPECT_EQ(conflictsWith([](Event& event) { event.recurrence->set("Interval", std::int32_t{7}); }), 1U);
  EXPECT_EQ(conflictsWith([](Event& event) { event.recurrence.reset(); }), 1U);
  EXPECT_EQ(conflictsWith([](Event& event) { event.exceptions[2].set("Subject", std::string("x")); }), 1U);
  EXPECT_EQ(conflictsWith([](Event& event) { event.exceptions.pop_back(); }), 1U);
}

// The server's version comes with the answer to the request that carried ours: whose it has now, nobody says.
TEST_F(Conflicts, ThatComeToLightTooLateSendTheVersionThatIsShown) {
  const FolderNumber folder = contactsWith({"s1", "s2"});
  store().changeItem(item(folder, "s1"), person("local"));
  store().deleteItem(item(folder, "s2"));
  const SyncOutcome outcome = send(folder, [](Library& library) {
    library.change("s1", person("remote"));
    library.change("s2", person("edited there"));
  });
  EXPECT_TRUE(outcome.moreToSend);
  EXPECT_EQ(nextRequest(folder), (Commands{changeOf("s1", "remote"), changeOf("s2", "edited there")}));
}

TEST_F(Conflicts, ThatTheServerDecidedSendNothing) {
  const FolderNumber folder = contactsWith({"s1", "s2"});
  store().changeItem(item(folder, "s1"), person("local"));
  store().deleteItem(item(folder, "s2"));
  send(folder, [](Library& library) {
    library.change("s1", person("remote"));
    library.change("s2", person("edited there"));
    library.changeResult("s1", itemResult(7));
    library.deleteResult("s2", itemResult(7));
  });
  EXPECT_EQ(nextRequest(folder), Commands{});
}

TEST_F(Conflicts, ThatTheLocalSideWinsGoOutAgainEvenIfTheServerTookTheChange) {
  const FolderNumber folder = contactsWith({"s1"});
  store().changeItem(item(folder, "s1"), person("local"));
  send(folder, [](Library& library) { library.change("s1", person("remote")); },
       {.conflict = ConflictRule::local, .allowDeletes = true});
  EXPECT_EQ(nextRequest(folder), Commands{changeOf("s1", "local")});
  ASSERT_EQ(store().trash().size(), 1U);
  EXPECT_EQ(std::get<Contact>(store().trashedItem(store().trash()[0].number)), person("remote"));
}

// A server that says "conflict" has a version that has not come yet.
TEST_F(Conflicts, ThatAreOnlyAnnouncedWaitForTheServersVersion) {
  const FolderNumber folder = contactsWith({"s1"});
  store().changeItem(item(folder, "s1"), person("local"));
  const auto refused = [](Library& library) { library.changeResult("s1", itemResult(7)); };
  const SyncOutcome first = send(folder, refused);
  EXPECT_TRUE(first.receiveAgain);
  EXPECT_EQ(first.refused, 0U);
  EXPECT_EQ(nextRequest(folder), Commands{changeOf("s1", "local")});
  // It says so again, and does not send it: then it is a refusal.
  const SyncOutcome second = send(folder, refused);
  EXPECT_FALSE(second.receiveAgain);
  EXPECT_EQ(second.refused, 1U);
  EXPECT_EQ(store().failures().at(0).change.status, 7);
}

TEST_F(Conflicts, OfAChangeAndAnItemThatIsGoneAddItAnew) {
  const FolderNumber folder = contactsWith({"s1"});
  const ItemNumber number = item(folder, "s1");
  store().changeItem(number, person("local"));
  const SyncOutcome outcome =
      send(folder, [](Library& library) { library.changeResult("s1", itemResult(8)); });
  EXPECT_EQ(outcome.conflicts.at(0).outcome, Conflict::Outcome::addedAnew);
  EXPECT_EQ(nextRequest(folder), Commands{addOf(number, "local")});
}

TEST_F(Conflicts, AreNoneOverMailsButADeletedOneGoes) {
  const FolderNumber folder = inbox();
  exchange(folder, [](Library& library) {
    library.add("s1", mail("Tea"));
    library.add("s2", mail("Cake"));
    library.add("s3", mail("Jam"));
  });
  store().markMail(item(folder, "s1"), true);
  store().markMail(item(folder, "s2"), true);
  store().deleteItem(item(folder, "s3"));
  const SyncOutcome outcome = exchange(folder, [](Library& library) {
    library.change("s1", mail("Green tea"));
    library.remove("s2");
    library.change("s3", mail("Plum jam"));
  });
  EXPECT_TRUE(outcome.conflicts.empty());
  EXPECT_EQ(mailOf(item(folder, "s1")), mail("Green tea", true));
  ASSERT_EQ(store().trash().size(), 1U);
  EXPECT_EQ(store().trash()[0].name, "Cake");
  EXPECT_EQ(nextRequest(folder), (Commands{changeOf("s1", "read"), deleteOf("s3")}));
}

// What is fetched under a local change is not taken for what that change was made of.
TEST_F(Conflicts, AreSeenThoughTheItemWasFetchedBefore) {
  const FolderNumber folder = contactsWith({"s1"});
  store().changeItem(item(folder, "s1"), person("local"));
  const auto fetched = [&](Library& library) {
    const AnyRecord record(person("remote"));
    const SERVER_ID id = {"s1"};
    store().FetchedItem(library.info().handle, &id, record.get(), AS_RESULT_OK);
  };
  exchange(folder, fetched);
  EXPECT_EQ(names(folder), Names{"local"});
  EXPECT_EQ(
      exchange(folder, [](Library& library) { library.change("s1", person("remote")); }).conflicts.size(),
      1U);
}

}  // namespace
}  // namespace airsync::test
