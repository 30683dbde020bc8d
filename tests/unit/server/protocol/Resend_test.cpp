#include <gtest/gtest.h>

#include "support/Device.h"
#include "wbxml/Codec.h"

namespace demoserver {
namespace {

class DemoResend : public WithContacts {
 protected:
  // Sends with the current key, as if the answer got lost.
  SyncAnswer lose(SyncRequest request = {}) {
    request.key = device.key;
    return device.send(request);
  }
};

TEST_F(DemoResend, TheSameRequestGetsTheSameBytes) {
  for (int i = 0; i < 12; ++i) put("A");
  device.sync();
  const Element request = documentOf({.key = device.key, .commands = {addCommand("1", "N")}});
  const std::string first = encode(*runSync(state, {}, "device-1", request));
  put("later");
  EXPECT_EQ(encode(*runSync(state, {}, "device-1", request)), first);
  EXPECT_EQ(encode(*runSync(state, {}, "device-1", request)), first);
  EXPECT_EQ(count(), 14);
}

TEST_F(DemoResend, TheSameInitialRequestGetsTheSameKey) {
  EXPECT_EQ(device.send({.key = "0"}).key, device.send({.key = "0"}).key);
}

TEST_F(DemoResend, AnotherRequestWithTheOldKeyGetsTheLostItemsAgain) {
  for (int i = 0; i < 3; ++i) put("A");
  device.sync();
  const SyncAnswer lost = lose({.window = 2});
  EXPECT_EQ(lost.commands.size(), 2u);
  const SyncAnswer again = device.sync({.window = 1});
  EXPECT_EQ(again.commands, Lines{lost.commands[0]});
  EXPECT_TRUE(again.more);
  EXPECT_NE(again.key, lost.key);
  EXPECT_EQ(device.sync().commands.size(), 2u);
}

TEST_F(DemoResend, ARepeatedAddAmongNewOnesKeepsItsId) {
  device.sync();
  const SyncAnswer lost = lose({.commands = {addCommand("1", "A")}});
  const SyncAnswer again = device.sync({.commands = {addCommand("1", "A"), addCommand("2", "B")}});
  ASSERT_EQ(again.responses.size(), 2u);
  EXPECT_EQ(again.responses[0], lost.responses[0]);
  EXPECT_NE(again.responses[1], lost.responses[0]);
  EXPECT_EQ(again.commands, Lines{});
  EXPECT_EQ(count(), 2);
}

TEST_F(DemoResend, ARepeatedAddWithNewContentChangesTheItem) {
  device.sync();
  lose({.commands = {addCommand("1", "A")}});
  device.sync({.commands = {addCommand("1", "A2")}});
  ASSERT_EQ(count(), 1);
  EXPECT_EQ(state.items.list("f9").at(0).record["FirstName"], "A2");
}

TEST_F(DemoResend, AnAddThatIsNotRepeatedComesBackAsAServerItem) {
  device.sync();
  lose({.commands = {addCommand("1", "A")}});
  const std::string id = state.items.list("f9").at(0).id;
  EXPECT_EQ(device.sync().commands, Lines{"Add ServerId=" + id + " FirstName=A"});
}

TEST_F(DemoResend, ARepeatedChangeIsNoConflictWithItself) {
  const std::string id = put("A");
  device.catchUp();
  lose({.commands = {changeCommand(id, "B")}});
  const SyncAnswer again = device.sync({.commands = {changeCommand(id, "C")}, .conflict = 1});
  EXPECT_EQ(again.responses, Lines{});
  EXPECT_EQ(again.commands, Lines{});
  EXPECT_EQ(nameOf(id), "C");
}

TEST_F(DemoResend, ARepeatedDeleteIsNotAMissingItem) {
  const std::string id = put("A");
  device.catchUp();
  lose({.commands = {deleteCommand(id)}});
  const SyncAnswer again = device.sync({.commands = {deleteCommand(id), addCommand("1", "N")}});
  EXPECT_EQ(again.responses.size(), 1u);
  EXPECT_EQ(again.commands, Lines{});
}

TEST_F(DemoResend, AnswersMayGetLostTwice) {
  put("A");
  device.sync();
  lose({.commands = {addCommand("1", "X")}});
  lose({.commands = {addCommand("1", "X"), addCommand("2", "Y")}});
  const SyncAnswer third =
      device.sync({.commands = {addCommand("1", "X"), addCommand("2", "Y"), addCommand("3", "Z")}});
  EXPECT_EQ(third.responses.size(), 3u);
  EXPECT_EQ(third.commands.size(), 1u);
  EXPECT_EQ(count(), 4);
  EXPECT_EQ(device.sync().commands, Lines{});
}

TEST_F(DemoResend, AServerChangeToALostAddReachesTheDevice) {
  device.sync();
  lose({.commands = {addCommand("1", "A")}});
  const std::string id = state.items.list("f9").at(0).id;
  state.items.replace(id, {{"FirstName", "Server"}});
  const SyncAnswer again = device.sync({.commands = {addCommand("1", "A"), addCommand("2", "B")}});
  EXPECT_EQ(again.responses.at(0), "Add ClientId=1 ServerId=" + id + " Status=1");
  EXPECT_EQ(again.commands, Lines{"Change ServerId=" + id + " FirstName=Server"});
}

TEST_F(DemoResend, AServerDeleteOfALostAddReachesTheDevice) {
  device.sync();
  lose({.commands = {addCommand("1", "A")}});
  const std::string id = state.items.list("f9").at(0).id;
  state.items.remove(id);
  const SyncAnswer again = device.sync({.commands = {addCommand("1", "A"), addCommand("2", "B")}});
  EXPECT_EQ(again.responses.at(0), "Add ClientId=1 ServerId=" + id + " Status=1");
  EXPECT_EQ(again.commands, Lines{"Delete ServerId=" + id});
}

TEST_F(DemoResend, AConflictedDeleteOfTheLostCycleIsSettledAgain) {
  const std::string id = put("A");
  device.catchUp();
  state.items.replace(id, {{"FirstName", "Server"}});
  lose({.commands = {deleteCommand(id)}});
  const SyncAnswer again = device.sync({.commands = {deleteCommand(id), addCommand("1", "N")}});
  EXPECT_EQ(again.responses.at(0), "Delete ServerId=" + id + " Status=7");
  EXPECT_EQ(again.commands, Lines{"Add ServerId=" + id + " FirstName=Server"});
}

}  // namespace
}  // namespace demoserver
