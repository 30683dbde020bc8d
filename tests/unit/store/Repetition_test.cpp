// A run that broke off after its request may have reached the server. Nobody knows what became of it: the
// server may have acted on it or not, and answer the same key as it did before, or run the request again.
#include "StoreFixture.h"

namespace airsync::test {
namespace {

using Commands = std::vector<Command>;

class Repetition : public StoreTest {
 protected:
  // A request that carries what waits, up to `room`, and whose response never arrives.
  Commands breakOff(FolderNumber folder, std::size_t room = 1000, Reached reached = Reached::perhaps) {
    Library library(store(), folder);
    Commands commands = library.request(room);
    library.end(AS_RESULT_TRANSPORT_FAILED, reached);
    return commands;
  }
  SyncStep step(FolderNumber folder, bool received = true) { return store().nextStep(folder, 0, received); }
  // The full download after a new beginning.
  void download(FolderNumber folder, const std::vector<std::pair<std::string, ItemValue>>& items) {
    store().resetFolder(folder);
    Library handshake(store(), folder);
    handshake.key("n1");
    handshake.end();
    Library library(store(), folder);
    for (const auto& [id, value] : items) library.add(id, value);
    library.key("n2");
    library.end();
  }
};

TEST_F(Repetition, CarriesWhatWasSentAndNothingNew) {
  const FolderNumber folder = contactsWith({"s1", "s2", "s3"});
  store().changeItem(item(folder, "s1"), person("Grace"));
  store().deleteItem(item(folder, "s2"));
  const Commands first = breakOff(folder);
  store().addItem(folder, person("Joan"));
  store().changeItem(item(folder, "s3"), person("Ada"));
  reopen();
  EXPECT_EQ(first, (Commands{changeOf("s1", "Grace"), deleteOf("s2")}));
  EXPECT_EQ(step(folder, false), SyncStep::repeat);
  EXPECT_EQ(breakOff(folder), first);
  EXPECT_EQ(breakOff(folder), first);
}

TEST_F(Repetition, CarriesAnItemAsItWasSentAndNotAsItIsNow) {
  const FolderNumber folder = contactsWith({"s1", "s2"});
  store().changeItem(item(folder, "s1"), person("Ada"));
  store().changeItem(item(folder, "s2"), person("Grace"));
  const Commands first = breakOff(folder);
  store().changeItem(item(folder, "s1"), person("Joan"));
  store().changeItem(item(folder, "s1"), person("Jean"));
  store().deleteItem(item(folder, "s2"));
  EXPECT_EQ(breakOff(folder), first);
  Library library(store(), folder);
  EXPECT_EQ(library.request(), first);
  library.key("k2");
  EXPECT_TRUE(library.end().moreToSend);
  EXPECT_EQ(step(folder), SyncStep::send);
  EXPECT_EQ(breakOff(folder), (Commands{changeOf("s1", "Jean"), deleteOf("s2")}));
}

TEST_F(Repetition, LeavesWhatItSentAsTheServersVersion) {
  const FolderNumber folder = contactsWith({"s1", "s2"});
  const ItemNumber changed = item(folder, "s1");
  const ItemNumber deleted = item(folder, "s2");
  store().changeItem(changed, person("Ada"));
  store().changeItem(deleted, person("Grace"));
  breakOff(folder);
  store().changeItem(changed, person("Joan"));
  store().deleteItem(deleted);
  Library library(store(), folder);
  library.request();
  library.key("k2");
  library.end();
  store().discard(changed);
  store().discard(deleted);
  EXPECT_EQ(names(folder), (std::vector<std::string>{"Ada", "Grace"}));
}

TEST_F(Repetition, IsFollowedByWhatIsNew) {
  const FolderNumber folder = contactsWith({"s1", "s2"});
  store().deleteItem(item(folder, "s2"));
  breakOff(folder);
  store().changeItem(item(folder, "s1"), person("Grace"));
  Library library(store(), folder);
  EXPECT_EQ(library.request(), Commands{deleteOf("s2")});
  library.key("k2");
  EXPECT_EQ(library.request(), Commands{});  // the new change goes with the next Sync
  EXPECT_TRUE(library.end().moreToSend);
  Library next(store(), folder);
  EXPECT_EQ(next.request(), Commands{changeOf("s1", "Grace")});
}

TEST_F(Repetition, LeavesOutWhatDidNotFitIntoTheFirstRequest) {
  const FolderNumber folder = contactsWith({"s1", "s2"});
  store().changeItem(item(folder, "s1"), person("Ada"));
  store().changeItem(item(folder, "s2"), person("Grace"));
  EXPECT_EQ(breakOff(folder, 1), Commands{changeOf("s1", "Ada")});
  EXPECT_EQ(breakOff(folder), Commands{changeOf("s1", "Ada")});
}

TEST_F(Repetition, IsNoneWhenTheRequestWasNeverComplete) {
  const FolderNumber folder = contactsWith({"s1"});
  store().changeItem(item(folder, "s1"), person("Ada"));
  EXPECT_EQ(breakOff(folder, 0), Commands{});  // handed out, but in no request
  receive(folder);
  store().addItem(folder, person("Joan"));
  EXPECT_EQ(breakOff(folder).size(), 2U);
}

TEST_F(Repetition, IsNoneWhenTheRequestDidNotReachTheServer) {
  const FolderNumber folder = contactsWith({"s1"});
  store().changeItem(item(folder, "s1"), person("Ada"));
  store().addItem(folder, person("Joan"));
  EXPECT_EQ(breakOff(folder, 1000, Reached::no).size(), 2U);
  EXPECT_EQ(step(folder), SyncStep::send);
  EXPECT_FALSE(store().repetitionDue(folder));
  store().changeItem(item(folder, "s1"), person("Grace"));
  EXPECT_EQ(breakOff(folder).front(), changeOf("s1", "Grace"));
}

TEST_F(Repetition, StaysDueWhenOnlyTheRepetitionDidNotReachTheServer) {
  const FolderNumber folder = contactsWith({"s1", "s2"});
  store().changeItem(item(folder, "s1"), person("Ada"));
  const Commands first = breakOff(folder);
  store().changeItem(item(folder, "s2"), person("Grace"));
  EXPECT_EQ(breakOff(folder, 1000, Reached::no), first);
  EXPECT_EQ(step(folder), SyncStep::repeat);
  EXPECT_EQ(breakOff(folder), first);
}

TEST_F(Repetition, IsDueAfterARequestThatCarriedNothing) {
  const FolderNumber folder = contactsWith({"s1"});
  EXPECT_FALSE(store().repetitionDue(folder));
  EXPECT_EQ(breakOff(folder), Commands{});
  reopen();
  EXPECT_TRUE(store().repetitionDue(folder));
  EXPECT_EQ(step(folder, false), SyncStep::receive);  // which carries nothing either
  // A host that sends all the same finds nothing to send.
  store().changeItem(item(folder, "s1"), person("Ada"));
  EXPECT_EQ(breakOff(folder), Commands{});
  receive(folder);
  EXPECT_EQ(breakOff(folder), Commands{changeOf("s1", "Ada")});
}

TEST_F(Repetition, NeverCarriesAdditions) {
  const FolderNumber folder = contactsWith({"s1"});
  store().addItem(folder, person("Ada"));
  store().changeItem(item(folder, "s1"), person("Grace"));
  breakOff(folder);
  reopen();
  EXPECT_EQ(step(folder, false), SyncStep::beginAnew);
  EXPECT_EQ(store().nextStep(folder, 1, false), SyncStep::beginAnew);  // of a folder that only sends, too
  EXPECT_THROW(Library(store(), folder), Error);
  store().resetFolder(folder);
  EXPECT_EQ(step(folder, false), SyncStep::receive);
  EXPECT_EQ(store().nextStep(folder, 1, false), SyncStep::receive);
}

TEST_F(Repetition, OfAdditionsIsALookForThem) {
  const FolderNumber folder = synchronisedContacts();
  const ItemNumber one = store().addItem(folder, person("Ada"));
  const ItemNumber two = store().addItem(folder, person("Grace"));
  breakOff(folder);
  download(folder, {{"s1", person("Ada")}});
  EXPECT_EQ(item(folder, "s1"), one);
  EXPECT_EQ(names(folder), (std::vector<std::string>{"Ada", "Grace"}));
  EXPECT_EQ(step(folder), SyncStep::send);
  EXPECT_EQ(breakOff(folder), Commands{addOf(two, "Grace")});
}

TEST_F(Repetition, FindsTwoAdditionsThatLookAlikeAsTwo) {
  const FolderNumber folder = synchronisedContacts();
  store().addItem(folder, person("Ada"));
  store().addItem(folder, person("Ada"));
  breakOff(folder);
  download(folder, {{"s1", person("Ada")}, {"s2", person("Ada")}});
  EXPECT_EQ(names(folder), (std::vector<std::string>{"Ada", "Ada"}));
  EXPECT_NE(item(folder, "s1"), item(folder, "s2"));
  EXPECT_EQ(step(folder), SyncStep::done);
}

TEST_F(Repetition, FindsAnAdditionThatWasEditedSinceAndSendsTheEdit) {
  const FolderNumber folder = synchronisedContacts();
  const ItemNumber added = store().addItem(folder, person("Ada"));
  breakOff(folder);
  store().changeItem(added, person("Grace"));
  download(folder, {{"s1", person("Ada")}});
  EXPECT_EQ(item(folder, "s1"), added);
  EXPECT_EQ(breakOff(folder), Commands{changeOf("s1", "Grace")});
}

TEST_F(Repetition, SendsAnAdditionAsItIsNowThatTheServerDoesNotHave) {
  const FolderNumber folder = synchronisedContacts();
  const ItemNumber added = store().addItem(folder, person("Ada"));
  breakOff(folder);
  store().changeItem(added, person("Grace"));
  download(folder, {});
  EXPECT_EQ(breakOff(folder), Commands{addOf(added, "Grace")});
}

TEST_F(Repetition, FindsAnEventByItsUidWhateverTheServerMadeOfIt) {
  const FolderNumber folder = calendar();
  exchange(folder, [](Library&) {});
  const ItemNumber added = store().addItem(folder, event("Rowing"));
  const Event sent = eventOf(added);
  const auto* uid = sent.fields.get<std::string>("UID");
  ASSERT_NE(uid, nullptr);
  EXPECT_EQ(uid->size(), 32U);
  breakOff(folder);
  Event theirs = event("ROWING");
  theirs.fields.set("UID", *uid);
  download(folder, {{"s1", event("Tea")}, {"s2", theirs}});
  EXPECT_EQ(item(folder, "s2"), added);
  EXPECT_NE(item(folder, "s1"), added);
}

TEST_F(Repetition, DeletesAnAdditionThatWasTakenBackWhereItIsFound) {
  const FolderNumber folder = synchronisedContacts();
  const ItemNumber added = store().addItem(folder, person("Ada"));
  breakOff(folder);
  store().deleteItem(added);
  EXPECT_TRUE(names(folder).empty());
  download(folder, {{"s1", person("Ada")}});
  EXPECT_TRUE(names(folder).empty());
  EXPECT_EQ(breakOff(folder), Commands{deleteOf("s1")});
}

TEST_F(Repetition, ForgetsAnAdditionThatWasTakenBackAndNeverSent) {
  const FolderNumber folder = synchronisedContacts();
  const ItemNumber added = store().addItem(folder, person("Ada"));
  {
    Library library(store(), folder);
    library.request(0);
    store().deleteItem(added);
    library.end(AS_RESULT_REQUEST_TOO_LARGE);
  }
  EXPECT_EQ(breakOff(folder), Commands{});
  EXPECT_EQ(store().folder(folder).pending, 0U);
}

TEST_F(Repetition, CanNotBeAvoidedByGivingTheChangeUp) {
  const FolderNumber folder = contactsWith({"s1"});
  store().changeItem(item(folder, "s1"), person("Ada"));
  breakOff(folder);
  EXPECT_THROW(store().discard(item(folder, "s1")), Error);
}

// After an HTTP error each change goes alone, until the one is found that the server can't take.

TEST_F(Repetition, GoesOneByOneAfterAnErrorAndSetsTheCulpritAside) {
  const FolderNumber folder = contactsWith({"s1", "s2", "s3"});
  for (const char* id : {"s1", "s2", "s3"})
    store().changeItem(item(folder, id), person(std::string("new ") + id));
  EXPECT_EQ(breakOff(folder).size(), 3U);
  EXPECT_EQ(store().blameRequest("HTTP 501"), Blame::several);
  EXPECT_EQ(step(folder), SyncStep::repeat);
  {
    Library library(store(), folder);
    EXPECT_EQ(library.request(), Commands{changeOf("s1", "new s1")});
    library.key("k2");
    EXPECT_TRUE(library.end().moreToSend);
  }
  EXPECT_EQ(step(folder), SyncStep::send);
  EXPECT_EQ(breakOff(folder), Commands{changeOf("s2", "new s2")});
  EXPECT_EQ(store().blameRequest("HTTP 501"), Blame::one);
  EXPECT_EQ(store().failures().at(0).item, item(folder, "s2"));
  EXPECT_EQ(store().failures().at(0).change.reason, "HTTP 501");
  EXPECT_EQ(store().failures().at(0).change.state, PendingChange::State::failed);
  receive(folder);
  {
    Library library(store(), folder);
    EXPECT_EQ(library.request(), Commands{changeOf("s3", "new s3")});
    library.key("k3");
    EXPECT_FALSE(library.end().moreToSend);
  }
  // All is sent: the next changes go together again.
  store().changeItem(item(folder, "s1"), person("newer s1"));
  store().changeItem(item(folder, "s3"), person("newer s3"));
  EXPECT_EQ(breakOff(folder).size(), 2U);
}

TEST_F(Repetition, SetsAnAdditionAsideOnlyWhenTheServerDoesNotHaveIt) {
  for (const bool stored : {true, false}) {
    SCOPED_TRACE(stored);
    const FolderNumber folder = synchronisedContacts(stored ? "k1" : "k2");
    store().addItem(folder, person(stored ? "Ada" : "Grace"));
    EXPECT_EQ(breakOff(folder).size(), 1U);
    EXPECT_EQ(store().blameRequest("HTTP 501"), Blame::one);
    EXPECT_EQ(step(folder, false), SyncStep::beginAnew);
    reopen();
    EXPECT_EQ(step(folder, false), SyncStep::beginAnew);
    if (stored) {
      download(folder, {{"s1", person("Ada")}});
      EXPECT_TRUE(store().failures().empty());
    } else {
      download(folder, {{"s1", person("Ada")}});
      ASSERT_EQ(store().failures().size(), 1U);
      EXPECT_EQ(store().failures()[0].change.state, PendingChange::State::failed);
      EXPECT_EQ(store().failures()[0].change.reason, "HTTP 501");
    }
    EXPECT_EQ(step(folder), SyncStep::done);
  }
}

}  // namespace
}  // namespace airsync::test
