#include <gtest/gtest.h>

#include "protocol/Status.h"
#include "support/Bytes.h"
#include "support/Device.h"
#include "wbxml/Codec.h"

namespace demoserver {
namespace {

class DemoSyncKeys : public WithContacts {};

TEST_F(DemoSyncKeys, AnInitialRequestGetsAKeyAndNoItems) {
  put("A");
  const SyncAnswer answer = device.sync();
  EXPECT_EQ(answer.status, "1");
  EXPECT_NE(answer.key, "0");
  EXPECT_FALSE(answer.key.empty());
  EXPECT_LT(answer.key.size(), 68u);
  EXPECT_FALSE(answer.more);
  EXPECT_EQ(answer.commands, Lines{});
}

TEST_F(DemoSyncKeys, TheAnswerNamesClassKeyCollectionAndStatusInThisOrder) {
  const auto response = runSync(state, {}, "d", documentOf({.key = "0"}));
  const Element& collection = response->children.at(0).children.at(0);
  Lines names;
  for (const Element& child : collection.children) names.emplace_back(child.name);
  EXPECT_EQ(names, (Lines{"Class", "SyncKey", "CollectionId", "Status"}));
  EXPECT_EQ(collection.textOf("Class"), "Contacts");
  EXPECT_EQ(collection.textOf("CollectionId"), "f9");
}

TEST_F(DemoSyncKeys, EachCycleGetsANewKey) {
  device.sync();
  const std::string first = device.key;
  device.sync();
  EXPECT_NE(device.key, first);
}

TEST_F(DemoSyncKeys, AnUnknownKeyGetsStatus3) {
  EXPECT_EQ(device.send({.key = "17"}).status, "3");
  device.sync();
  EXPECT_EQ(device.send({.key = "17"}).status, "3");
  EXPECT_EQ(device.send({.key = "17"}).key, "0");
}

TEST_F(DemoSyncKeys, AKeyTwoCyclesOldIsUnknown) {
  device.sync();
  const std::string old = device.key;
  device.sync();
  device.sync();
  EXPECT_EQ(device.send({.key = old}).status, "3");
}

TEST_F(DemoSyncKeys, StartingAnewInvalidatesTheKeysBefore) {
  device.sync();
  device.sync();
  const std::string old = device.key;
  device.key = "0";
  device.sync();
  EXPECT_EQ(device.send({.key = old}).status, "3");
}

TEST_F(DemoSyncKeys, AnotherDevicesKeyIsUnknown) {
  device.sync();
  EXPECT_EQ(Device(state, "device-2").send({.key = device.key}).status, "3");
}

TEST_F(DemoSyncKeys, AnInitialRequestMayNotCarryCommands) {
  EXPECT_EQ(device.send({.key = "0", .commands = {addCommand("1", "A")}}).status, "4");
  EXPECT_EQ(count(), 0);
}

TEST_F(DemoSyncKeys, AMissingFolderGetsStatus8AndAWrongClassStatus4) {
  EXPECT_EQ(device.send({.key = "0", .folder = "nowhere"}).status, "8");
  EXPECT_EQ(device.send({.key = "0", .itemClass = "Calendar"}).status, "4");
  state.folders.create("0", "Tasks", kTasks, "f7");
  EXPECT_EQ(device.send({.key = "0", .folder = "f7", .itemClass = "Tasks"}).status, "4");
}

TEST_F(DemoSyncKeys, CalendarAndMailFoldersAreEmptyCollections) {
  state.folders.create("0", "Calendar", kCalendar, "f8");
  state.folders.create("0", "Inbox", kInbox, "f2");
  for (const auto& [folder, itemClass] : {std::pair{"f8", "Calendar"}, std::pair{"f2", "Email"}}) {
    const SyncAnswer start = device.send({.key = "0", .folder = folder, .itemClass = itemClass});
    EXPECT_EQ(start.status, "1");
    const SyncAnswer next = device.send({.key = start.key, .folder = folder, .itemClass = itemClass});
    EXPECT_EQ(next.status, "1");
    EXPECT_FALSE(next.more);
    EXPECT_EQ(next.commands, Lines{});
  }
}

TEST_F(DemoSyncKeys, AnUploadToAnEmptyClassIsRefusedItemByItem) {
  state.folders.create("0", "Calendar", kCalendar, "f8");
  SyncRequest request{.key = "0", .folder = "f8", .itemClass = "Calendar"};
  request.key = device.send(request).key;
  request.commands = {addCommand("3", "A")};
  EXPECT_EQ(device.send(request).responses, Lines{"Add ClientId=3 Status=6"});
}

TEST_F(DemoSyncKeys, SeveralCollectionsAreAnsweredOneByOne) {
  state.folders.create("0", "More", kUserContacts, "k1");
  Element request = documentOf({.key = "0"});
  request.children[0].add(documentOf({.key = "9", .folder = "k1"}).children[0].children[0]);
  const auto response = runSync(state, {}, "d", request);
  const auto& answers = response->children.at(0).children;
  ASSERT_EQ(answers.size(), 2u);
  EXPECT_EQ(answers[0].textOf("Status"), "1");
  EXPECT_EQ(answers[1].textOf("Status"), "3");
}

TEST_F(DemoSyncKeys, DocumentsThatAreNoSyncRequestAreRefused) {
  Element noCollections(Page::Sync, "Sync");
  Element noCollection(Page::Sync, "Sync");
  noCollection.add("Collections");
  Element noId = documentOf({.key = "0", .folder = ""});
  Element noKey = documentOf({.key = ""});
  Element foreign(Page::Sync, "Sync");
  foreign.add("Collections").add("Status", "1");
  for (const Element& bad :
       {Element(Page::Folders, "FolderSync"), noCollections, noCollection, noId, noKey, foreign})
    EXPECT_THROW(runSync(state, {}, "d", bad), BadRequest) << hexOf(encode(bad));
}

TEST_F(DemoSyncKeys, AnIdleRequestMayGetAnEmptyBodyAndKeepsItsKey) {
  device.sync();
  device.habits.emptyWhenIdle = true;
  EXPECT_FALSE(runSync(state, device.habits, "device-1", documentOf({.key = device.key})).has_value());
  put("A");
  EXPECT_EQ(device.sync().commands.size(), 1u);
}

TEST_F(DemoSyncKeys, MoreForeverRepeatsTheKeyWhenThereIsNothingToSay) {
  put("A");
  device.habits.moreForever = true;
  EXPECT_TRUE(device.sync().more);
  EXPECT_EQ(device.sync().commands.size(), 1u);
  const std::string key = device.key;
  for (int i = 0; i < 3; ++i) {
    const SyncAnswer answer = device.sync();
    EXPECT_TRUE(answer.more);
    EXPECT_EQ(answer.key, key);
    EXPECT_EQ(answer.commands, Lines{});
  }
}

}  // namespace
}  // namespace demoserver
