// A run that broke off after its request may have reached the server. The server answers the next request
// with the same key as it answered the first, without looking at it.
#include "StoreFixture.h"

namespace airsync::test {
namespace {

using Commands = std::vector<Command>;

class Repetition : public StoreTest {
 protected:
  // A request that carries what waits, up to `room`, and whose response never arrives.
  Commands breakOff(FolderNumber folder, std::size_t room = 1000) {
    Library library(store(), folder);
    Commands commands = library.request(room);
    library.end(AS_RESULT_TRANSPORT_FAILED);
    return commands;
  }
};

TEST_F(Repetition, CarriesWhatWasSentAndNothingNew) {
  const FolderNumber folder = contactsWith({"s1", "s2"});
  const ItemNumber added = store().addItem(folder, person("Ada"));
  store().changeItem(item(folder, "s1"), person("Grace"));
  const Commands first = breakOff(folder);
  store().addItem(folder, person("Joan"));
  store().deleteItem(item(folder, "s2"));
  reopen();
  EXPECT_EQ(first, (Commands{addOf(added, "Ada"), changeOf("s1", "Grace")}));
  EXPECT_EQ(breakOff(folder), first);
  EXPECT_EQ(breakOff(folder), first);
}

TEST_F(Repetition, IsFollowedByWhatIsNew) {
  const FolderNumber folder = contactsWith({"s1"});
  const ItemNumber added = store().addItem(folder, person("Ada"));
  breakOff(folder);
  store().changeItem(item(folder, "s1"), person("Grace"));
  Library library(store(), folder);
  EXPECT_EQ(library.request(), Commands{addOf(added, "Ada")});
  library.addResult(added, "s2");
  library.key("k2");
  EXPECT_EQ(library.request(), Commands{});  // the new change goes with the next Sync
  EXPECT_TRUE(library.end().moreToSend);
  Library next(store(), folder);
  EXPECT_EQ(next.request(), Commands{changeOf("s1", "Grace")});
}

TEST_F(Repetition, DoesNotSettleWhatWasEditedSinceTheFirstRequest) {
  const FolderNumber folder = contactsWith({"s1"});
  store().changeItem(item(folder, "s1"), person("Ada"));
  breakOff(folder);
  store().changeItem(item(folder, "s1"), person("Grace"));
  Library library(store(), folder);
  EXPECT_EQ(library.request(), Commands{changeOf("s1", "Grace")});
  library.key("k2");
  EXPECT_TRUE(library.end().moreToSend);
  EXPECT_EQ(breakOff(folder), Commands{changeOf("s1", "Grace")});
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
  store().addItem(folder, person("Joan"));
  EXPECT_EQ(breakOff(folder).size(), 2U);
}

TEST_F(Repetition, CarriesAnAdditionThatWasTakenBackAndThenDeletesIt) {
  const FolderNumber folder = synchronisedContacts();
  const ItemNumber added = store().addItem(folder, person("Ada"));
  breakOff(folder);
  store().deleteItem(added);
  EXPECT_TRUE(names(folder).empty());
  Library library(store(), folder);
  EXPECT_EQ(library.request(), Commands{addOf(added, "Ada")});
  library.addResult(added, "s1");
  library.key("k2");
  library.end();
  EXPECT_TRUE(names(folder).empty());
  Library next(store(), folder);
  EXPECT_EQ(next.request(), Commands{deleteOf("s1")});
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

TEST_F(Repetition, LearnsAnswersToAdditionsThatNoLongerFit) {
  const FolderNumber folder = synchronisedContacts();
  const ItemNumber one = store().addItem(folder, person("Ada"));
  const ItemNumber two = store().addItem(folder, person("Grace"));
  breakOff(folder);
  Library library(store(), folder);
  EXPECT_EQ(library.request(1), Commands{addOf(one, "Ada")});
  library.addResult(one, "s1");
  library.addResult(two, "s2");
  library.key("k2");
  // The library kept the second addition, and sends it again; the server makes a second item of it.
  EXPECT_EQ(library.request(), Commands{addOf(two, "Grace")});
  library.addResult(two, "s3");
  library.key("k3");
  library.end();
  EXPECT_EQ(*store().item(two).serverId, "s2");
  EXPECT_EQ(names(folder), (std::vector<std::string>{"Ada", "Grace"}));
  Library next(store(), folder);
  EXPECT_EQ(next.request(), Commands{deleteOf("s3")});
}

TEST_F(Repetition, CanNotBeAvoidedByGivingTheChangeUp) {
  const FolderNumber folder = contactsWith({"s1"});
  store().changeItem(item(folder, "s1"), person("Ada"));
  breakOff(folder);
  EXPECT_THROW(store().discard(item(folder, "s1")), Error);
}

}  // namespace
}  // namespace airsync::test
