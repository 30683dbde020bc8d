#include "protocol/Habits.h"

#include <gtest/gtest.h>

#include "protocol/Status.h"
#include "support/Device.h"
#include "support/Mailroom.h"

namespace demoserver {
namespace {

TEST(DemoHabit, HasANameOfItsOwnAndASentence) {
  for (const Habit& each : kHabits) {
    EXPECT_EQ(each.name.find_first_not_of("abcdefghijklmnopqrstuvwxyz0123456789-"), std::string::npos);
    EXPECT_TRUE(each.sentence.ends_with('.')) << each.name;
    int namesakes = 0;
    for (const Habit& other : kHabits) namesakes += each.name == other.name || each.field == other.field;
    EXPECT_EQ(namesakes, 1) << each.name;
  }
}

TEST(DemoHabit, IsSwitchedOnAndOffByItsName) {
  Habits habits;
  EXPECT_TRUE(setHabit(habits, "more-forever", true));
  EXPECT_TRUE(habits.moreForever);
  EXPECT_TRUE(setHabit(habits, "more-forever", false));
  EXPECT_FALSE(habits.moreForever);
  EXPECT_FALSE(setHabit(habits, "more", true));
}

TEST(DemoHabit, TakesThePlaceOfOneThatContradictsIt) {
  Habits habits;
  setHabit(habits, "conflict-client-wins", true);
  setHabit(habits, "conflict-server-wins", true);
  EXPECT_FALSE(habits.conflictClientWins);
  EXPECT_TRUE(habits.conflictServerWins);
  setHabit(habits, "conflict-client-wins", false);
  EXPECT_TRUE(habits.conflictServerWins);
}

class DemoRepeatedKey : public WithContacts {
 protected:
  // Sends with the current key, as if the answer got lost.
  SyncAnswer lose(SyncRequest request = {}) {
    request.key = device.key;
    return device.send(request);
  }
};

TEST_F(DemoRepeatedKey, MayGetTheStoredAnswerWhateverTheRequestHolds) {
  device.habits.repeatedKeyAnswersStored = true;
  const std::string id = put("A");
  device.catchUp();
  const SyncAnswer lost = lose();
  const SyncAnswer again = device.sync({.commands = {changeCommand(id, "B"), addCommand("1", "N")}});
  EXPECT_EQ(again.key, lost.key);
  EXPECT_EQ(again.responses, Lines{});
  EXPECT_EQ(nameOf(id), "A");
  EXPECT_EQ(count(), 1);
  device.sync({.commands = {changeCommand(id, "B")}});
  EXPECT_EQ(nameOf(id), "B");
}

TEST_F(DemoRepeatedKey, MayRunTheSameRequestAgain) {
  device.habits.repeatedKeyRunsAgain = true;
  device.sync();
  lose({.commands = {addCommand("1", "A")}});
  const std::string first = state.items.list("f9").at(0).id;
  const SyncAnswer again = device.sync({.commands = {addCommand("1", "A")}});
  ASSERT_EQ(count(), 2);
  const std::string second = state.items.list("f9").at(1).id;
  EXPECT_EQ(again.responses, Lines{"Add ClientId=1 ServerId=" + second + " Status=1"});
  EXPECT_EQ(again.commands, Lines{"Add ServerId=" + first + " FirstName=A"});
}

TEST_F(DemoRepeatedKey, MayRunAgainAndTellNothingOfTheFirstAdditions) {
  device.habits.repeatedKeyRunsAgain = true;
  device.habits.ownAdditionsUntold = true;
  const std::string known = put("K");
  device.catchUp();
  lose({.commands = {addCommand("1", "A"), changeCommand(known, "L")}});
  const SyncAnswer again = device.sync({.commands = {addCommand("1", "A"), changeCommand(known, "L")}});
  EXPECT_EQ(count(), 3);
  EXPECT_EQ(again.commands, Lines{});
  EXPECT_EQ(again.responses.size(), 1u);
}

TEST_F(DemoRepeatedKey, MayBeRefused) {
  device.habits.repeatedKeyRefused = true;
  device.sync();
  const SyncRequest request = {.key = device.key, .commands = {addCommand("1", "A")}};
  EXPECT_EQ(device.send(request).status, "1");
  EXPECT_EQ(device.send(request).status, "3");
  EXPECT_EQ(count(), 1);
}

TEST_F(DemoRepeatedKey, OfABeginningIsAlwaysAnsweredAsItWas) {
  device.habits.repeatedKeyRefused = true;
  const SyncAnswer first = device.send({.key = "0"});
  EXPECT_EQ(device.send({.key = "0"}).key, first.key);
}

class DemoBatch : public WithContacts {
 protected:
  DemoBatch() { device.sync(); }
  const SyncRequest three = {
      .commands = {addCommand("1", "A"), addCommand("2", "a culprit"), addCommand("3", "C")}};
};

TEST_F(DemoBatch, MayBeStoredByHalfEveryTime) {
  device.habits.batchHalfStored = true;
  EXPECT_THROW(device.sync(three), StoredInPart);
  EXPECT_EQ(count(), 1);
  EXPECT_THROW(device.sync(three), StoredInPart);
  EXPECT_EQ(count(), 2);
  EXPECT_EQ(device.sync({.commands = {addCommand("2", "B")}}).responses.size(), 1u);
  EXPECT_EQ(count(), 3);
}

TEST_F(DemoBatch, MayEndAtACulprit) {
  device.habits.culpritFails = true;
  EXPECT_THROW(device.sync(three), StoredInPart);
  EXPECT_EQ(count(), 1);
  EXPECT_EQ(nameOf(state.items.list("f9").at(0).id), "A");
  EXPECT_THROW(device.sync({.commands = {deleteCommand(put("culprit"))}}), StoredInPart);
  EXPECT_EQ(device.sync({.commands = {addCommand("3", "C")}}).status, "1");
}

TEST_F(WithContacts, OwnAdditionsMayBeUntoldInANewBeginning) {
  for (const bool untold : {false, true}) {
    device.key = "0";
    device.habits.ownAdditionsUntold = untold;
    device.sync();
    device.sync({.commands = {addCommand("1", "Own")}});
    const std::string own = state.items.list("f9").at(0).id;
    const std::string other = put("Other");
    device.key = "0";
    device.sync();
    const std::string addOfOther = "Add ServerId=" + other + " FirstName=Other";
    EXPECT_EQ(device.sync().commands,
              untold ? Lines{addOfOther} : (Lines{"Add ServerId=" + own + " FirstName=Own", addOfOther}));
    state.items.replace(own, {{"FirstName", "Changed"}});
    EXPECT_EQ(device.sync().commands, Lines{"Change ServerId=" + own + " FirstName=Changed"});
    Device second(state, "device-2");
    second.habits.ownAdditionsUntold = untold;
    second.sync();
    EXPECT_EQ(second.sync().commands.size(), 2u);
    state.items.remove(own);
    state.items.remove(other);
  }
}

TEST_F(WithContacts, AChangeMayMeanThatTheDeviceHoldsTheItem) {
  const std::string id = put("A");
  device.sync();
  device.habits.changeMeansHeld = true;
  const SyncAnswer answer = device.sync({.commands = {changeCommand(id, "B")}});
  EXPECT_EQ(answer.responses, Lines{});
  EXPECT_EQ(answer.commands, Lines{});
  EXPECT_EQ(nameOf(id), "B");
  EXPECT_EQ(device.sync().commands, Lines{});
  // What it was sent and what changed since is a conflict all the same.
  state.items.replace(id, {{"FirstName", "Server"}});
  EXPECT_EQ(device.sync({.commands = {changeCommand(id, "C")}}).responses,
            Lines{"Change ServerId=" + id + " Status=7"});
}

class DemoConflictHabit : public WithContacts {
 protected:
  // The answer to a client's change of an item that the server changed or removed.
  SyncAnswer conflict(bool removed, int option) {
    id = put("A");
    device.catchUp();
    if (removed)
      state.items.remove(id);
    else
      state.items.replace(id, {{"FirstName", "Server"}});
    return device.sync({.commands = {changeCommand(id, "Client")}, .conflict = option});
  }
  std::string id;
};

TEST_F(DemoConflictHabit, TheClientMayAlwaysWin) {
  device.habits.conflictClientWins = true;
  EXPECT_EQ(conflict(false, 1).responses, Lines{});
  EXPECT_EQ(nameOf(id), "Client");
  EXPECT_EQ(conflict(true, 1).responses, Lines{});
  EXPECT_EQ(nameOf(id), "Client");
}

TEST_F(DemoConflictHabit, TheLastToWriteMayWin) {
  device.habits.conflictLastWriteWins = true;
  EXPECT_EQ(conflict(false, 1).responses, Lines{});
  EXPECT_EQ(nameOf(id), "Client");
  const SyncAnswer answer = conflict(true, 0);
  EXPECT_EQ(answer.responses, Lines{"Change ServerId=" + id + " Status=8"});
  EXPECT_EQ(nameOf(id), "gone");
}

TEST_F(DemoConflictHabit, TheServerMayAlwaysWin) {
  device.habits.conflictServerWins = true;
  const SyncAnswer answer = conflict(false, 0);
  EXPECT_EQ(answer.responses, Lines{"Change ServerId=" + id + " Status=7"});
  EXPECT_EQ(nameOf(id), "Server");
}

class DemoMovesUntold : public Mailroom {
 protected:
  DemoMovesUntold() : moved(put("A")) {
    for (Device* each : {&inbox, &bin}) each->habits.movesUntold = true;
    inbox.catchUp(inInbox);
    bin.catchUp(inBin);
  }
  void move() {
    Habits habits;
    habits.movesUntold = true;
    runMoveItems(state, habits, "device-1", moveRequest({{moved, "f2", "f4"}}));
  }

  const std::string moved;
  // One device, by its two collections.
  Device inbox{state};
  Device bin{state};
  const SyncRequest inInbox = {.folder = "f2", .itemClass = "Email"};
  const SyncRequest inBin = {.folder = "f4", .itemClass = "Email"};
};

TEST_F(DemoMovesUntold, ToTheDeviceThatAskedAlone) {
  Device other(state, "device-2");
  other.catchUp(inInbox);
  move();
  EXPECT_EQ(inbox.sync(inInbox).commands, Lines{});
  EXPECT_EQ(bin.sync(inBin).commands, Lines{});
  EXPECT_EQ(other.sync(inInbox).commands, Lines{"Delete ServerId=" + moved});
}

TEST_F(DemoMovesUntold, NotEvenWhenTheLastAnswerIsTakenBack) {
  const std::string key = inbox.key;
  state.items.replace(moved, {{"Subject", "B"}, {"Read", false}});
  EXPECT_EQ(inbox.sync(inInbox).commands.size(), 1u);
  move();
  inbox.key = key;
  SyncRequest another = inInbox;
  another.window = 9;
  EXPECT_EQ(inbox.sync(another).commands, Lines{});
}

TEST_F(WithContacts, AKeyMayBeForgottenAtTheFirstChange) {
  const std::string id = put("A");
  device.catchUp();
  device.habits.keyForgottenAtChange = true;
  EXPECT_EQ(device.sync().status, "1");
  EXPECT_EQ(device.sync({.commands = {changeCommand(id, "B")}}).status, "3");
  EXPECT_EQ(device.sync().status, "3");
  EXPECT_EQ(nameOf(id), "A");
  device.catchUp();
  EXPECT_EQ(device.sync({.commands = {changeCommand(id, "B")}}).status, "1");
  EXPECT_EQ(nameOf(id), "B");
  Device other(state, "device-2");
  other.habits = device.habits;
  other.catchUp();
  EXPECT_EQ(other.sync({.commands = {changeCommand(id, "C")}}).status, "3");
}

TEST_F(WithContacts, FieldsThatAChangeDoesNotNameMayBeCleared) {
  const nlohmann::json before = {{"FirstName", "A"}, {"Spouse", "S"}, {"Body", "B"}};
  for (const bool cleared : {false, true}) {
    const std::string id = state.items.add("f9", before).id;
    Element start = documentOf({.key = "0"});
    start.children[0].children[0].add("Supported").children.emplace_back(Page::Contacts, "Body");
    device.habits.unnamedFieldsCleared = cleared;
    device.key = partsOf(*runSync(state, device.habits, "device-1", start)).key;
    device.sync({.truncation = 0});
    device.sync({.commands = {changeCommand(id, "A2")}, .truncation = 0});
    nlohmann::json after = before;
    after["FirstName"] = "A2";
    EXPECT_EQ(state.items.find("f9", id)->record, cleared ? nlohmann::json({{"FirstName", "A2"}}) : after);
  }
}

Element eventChange(const std::string& id, Element event) {
  Element change(Page::Sync, "Change");
  change.add("ServerId", id);
  change.add(std::move(event));
  return change;
}

TEST_F(WithMail, FieldsOfEventsMayBeClearedToo) {
  const std::string id =
      state.items.add("f8", {{"Subject", "S"}, {"OrganizerName", "Ada"}, {"Body", "B"}}).id;
  device.catchUp(events);
  device.habits.unnamedFieldsCleared = true;
  Element data(Page::Sync, "ApplicationData");
  data.children.emplace_back(Page::Calendar, "Subject", "T");
  SyncRequest request = events;
  request.commands = {eventChange(id, std::move(data))};
  request.truncation = 0;
  device.sync(request);
  EXPECT_EQ(recordOf("f8", id), nlohmann::json({{"Subject", "T"}}));
}

TEST_F(WithMail, RulesOfEventsMayBeStoredInOtherWords) {
  const std::string id = state.items.add("f8", {{"Subject", "S"}}).id;
  device.catchUp(events);
  device.habits.zonesAndRulesRewritten = true;
  Element data(Page::Sync, "ApplicationData");
  Element rule(Page::Calendar, "Recurrence");
  rule.add("RecurrenceType", "1");
  data.add(std::move(rule));
  SyncRequest request = events;
  request.commands = {eventChange(id, std::move(data))};
  EXPECT_EQ(device.sync(request).commands, Lines{});
  EXPECT_EQ(recordOf("f8", id), nlohmann::json({{"Recurrence", {{"Type", 1}, {"Interval", 1}}}}));
}

TEST_F(WithContacts, AnIdleRequestMayBeAnsweredWithoutCollections) {
  device.sync();
  device.habits.noCollectionsWhenIdle = true;
  const auto answer = runSync(state, device.habits, "device-1", documentOf({.key = device.key}));
  ASSERT_TRUE(answer.has_value());
  EXPECT_EQ(answer->textOf("Status"), "1");
  EXPECT_EQ(answer->children.size(), 1u);
  put("A");
  EXPECT_EQ(device.sync().commands.size(), 1u);
}

}  // namespace
}  // namespace demoserver
