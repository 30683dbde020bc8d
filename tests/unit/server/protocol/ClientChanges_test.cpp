#include <gtest/gtest.h>

#include "protocol/Status.h"
#include "support/Device.h"

namespace demoserver {
namespace {

class DemoClientChanges : public WithContacts {
 protected:
  DemoClientChanges() { device.sync(); }

  // The server's id of the only item.
  std::string only() { return state.items.list("f9").at(0).id; }
};

TEST_F(DemoClientChanges, AnAddIsAnsweredWithTheIdOfTheNewItem) {
  const SyncAnswer answer = device.sync({.commands = {addCommand("7", "A")}});
  EXPECT_EQ(answer.responses, Lines{"Add ClientId=7 ServerId=" + only() + " Status=1"});
  EXPECT_EQ(nameOf(only()), "A");
  EXPECT_LE(only().size(), 48u);
}

TEST_F(DemoClientChanges, ChangesAndDeletesThatSucceedAreNotAnswered) {
  device.sync({.commands = {addCommand("7", "A"), addCommand("8", "B")}});
  const std::string a = state.items.list("f9").at(0).id;
  const std::string b = state.items.list("f9").at(1).id;
  const SyncAnswer answer = device.sync({.commands = {changeCommand(a, "A2"), deleteCommand(b)}});
  EXPECT_EQ(answer.responses, Lines{});
  EXPECT_EQ(answer.commands, Lines{});
  EXPECT_EQ(nameOf(a), "A2");
  EXPECT_EQ(nameOf(b), "gone");
}

TEST_F(DemoClientChanges, TheyAreAnsweredWhenTheServerIsToldSo) {
  device.habits.answerSuccesses = true;
  device.sync({.commands = {addCommand("7", "A")}});
  const std::string a = only();
  EXPECT_EQ(device.sync({.commands = {changeCommand(a, "A2"), deleteCommand(a)}}).responses,
            (Lines{"Change ServerId=" + a + " Status=1", "Delete ServerId=" + a + " Status=1"}));
}

TEST_F(DemoClientChanges, UnknownItemsGetStatus8) {
  EXPECT_EQ(device.sync({.commands = {changeCommand("i/99", "A"), deleteCommand("i/99")}}).responses,
            (Lines{"Change ServerId=i/99 Status=8", "Delete ServerId=i/99 Status=8"}));
}

TEST_F(DemoClientChanges, AnItemOfAnotherFolderIsUnknown) {
  state.folders.create("0", "More", kUserContacts, "k1");
  const std::string other = state.items.add("k1", {{"FirstName", "K"}}).id;
  EXPECT_EQ(device.sync({.commands = {deleteCommand(other)}}).responses,
            Lines{"Delete ServerId=" + other + " Status=8"});
  EXPECT_EQ(state.items.count("k1"), 1);
}

TEST_F(DemoClientChanges, BadDataGetsStatus6AndTheRestIsApplied) {
  Element bad = addCommand("1", "A");
  bad.children[1].children.emplace_back(Page::Contacts, "Birthday", "yesterday");
  const SyncAnswer answer = device.sync({.commands = {bad, addCommand("2", "B")}});
  EXPECT_EQ(answer.responses,
            (Lines{"Add ClientId=1 Status=6", "Add ClientId=2 ServerId=" + only() + " Status=1"}));
}

TEST_F(DemoClientChanges, DeletingWhatIsGoneSucceeds) {
  const std::string a = put("A");
  device.catchUp();
  state.items.remove(a);
  const SyncAnswer answer = device.sync({.commands = {deleteCommand(a)}});
  EXPECT_EQ(answer.responses, Lines{});
  EXPECT_EQ(answer.commands, Lines{});
}

TEST_F(DemoClientChanges, AChangeThatChangesNothingIsNoNewsForOthers) {
  device.sync({.commands = {addCommand("7", "A")}});
  Device other(state, "device-2");
  other.catchUp();
  device.sync({.commands = {changeCommand(only(), "A")}});
  EXPECT_EQ(other.sync().commands, Lines{});
}

TEST_F(DemoClientChanges, SupportedOfTheInitialRequestLimitsWhatAChangeClears) {
  const std::string a = state.items.add("f9", {{"FirstName", "A"}, {"Spouse", "S"}, {"Title", "T"}}).id;
  Element start = documentOf({.key = "0"});
  Element& supported = start.children[0].children[0].add("Supported");
  supported.children.emplace_back(Page::Contacts, "FirstName");
  supported.children.emplace_back(Page::Contacts, "Title");
  device.key = partsOf(*runSync(state, {}, "device-1", start)).key;
  device.sync();
  device.sync({.commands = {changeCommand(a, "A2")}});
  EXPECT_EQ(state.items.find("f9", a)->record, nlohmann::json({{"FirstName", "A2"}, {"Spouse", "S"}}));
}

TEST_F(DemoClientChanges, IdsMayHaveSixtyFourBytes) {
  const std::string id(64, 'x');
  const SyncAnswer answer = device.sync({.commands = {addCommand(id, "A"), deleteCommand(id)}});
  EXPECT_EQ(answer.responses, (Lines{"Add ClientId=" + id + " ServerId=" + only() + " Status=1",
                                     "Delete ServerId=" + id + " Status=8"}));
}

TEST_F(DemoClientChanges, CommandsWithoutTheirPartsAreNoRequest) {
  Element noClientId(Page::Sync, "Add");
  noClientId.add(contactData({}));
  Element noData(Page::Sync, "Add");
  noData.add("ClientId", "1");
  Element noServerId(Page::Sync, "Delete");
  Element noChangeData(Page::Sync, "Change");
  noChangeData.add("ServerId", "i/1");
  Element longId = addCommand(std::string(65, 'x'), "A");
  Element longServerId = changeCommand(std::string(65, 'x'), "A");
  for (const Element& bad : {noClientId, noData, noServerId, noChangeData, longId, longServerId,
                             Element(Page::Sync, "Status", "1")})
    EXPECT_THROW(device.sync({.commands = {bad}}), BadRequest) << bad.name;
}

}  // namespace
}  // namespace demoserver
