#include <gtest/gtest.h>

#include "support/Device.h"

namespace demoserver {
namespace {

// One item that the device holds as "A", and that somebody else changed or removed since.
class DemoConflict : public WithContacts {
 protected:
  DemoConflict() : id(put("A")) { device.catchUp(); }
  void serverChanges() { state.items.replace(id, {{"FirstName", "Server"}}); }
  void serverRemoves() { state.items.remove(id); }
  SyncAnswer clientChanges(int conflict) {
    return device.sync({.commands = {changeCommand(id, "Client")}, .conflict = conflict});
  }
  SyncAnswer clientRemoves(int conflict) {
    return device.sync({.commands = {deleteCommand(id)}, .conflict = conflict});
  }

  std::string id;
};

TEST_F(DemoConflict, ChangeAgainstChangeWhenTheServerWins) {
  serverChanges();
  const SyncAnswer answer = clientChanges(1);
  EXPECT_EQ(answer.responses, Lines{"Change ServerId=" + id + " Status=7"});
  EXPECT_EQ(answer.commands, Lines{"Change ServerId=" + id + " FirstName=Server"});
  EXPECT_EQ(nameOf(id), "Server");
}

TEST_F(DemoConflict, ChangeAgainstChangeWhenTheClientWins) {
  serverChanges();
  const SyncAnswer answer = clientChanges(0);
  EXPECT_EQ(answer.responses, Lines{});
  EXPECT_EQ(answer.commands, Lines{});
  EXPECT_EQ(nameOf(id), "Client");
}

TEST_F(DemoConflict, ChangeAgainstDeleteWhenTheServerWins) {
  serverRemoves();
  const SyncAnswer answer = clientChanges(1);
  EXPECT_EQ(answer.responses, Lines{"Change ServerId=" + id + " Status=8"});
  EXPECT_EQ(answer.commands, Lines{"Delete ServerId=" + id});
  EXPECT_EQ(nameOf(id), "gone");
}

TEST_F(DemoConflict, ChangeAgainstDeleteWhenTheClientWins) {
  serverRemoves();
  const SyncAnswer answer = clientChanges(0);
  EXPECT_EQ(answer.responses, Lines{});
  EXPECT_EQ(answer.commands, Lines{});
  EXPECT_EQ(nameOf(id), "Client");
}

TEST_F(DemoConflict, ChangeAgainstMoveNeverMakesTwoOfOne) {
  const Item moved = state.moves.move(*state.items.find("f9", id), "k1");
  const SyncAnswer answer = clientChanges(0);
  EXPECT_EQ(answer.responses, Lines{"Change ServerId=" + id + " Status=8"});
  EXPECT_EQ(answer.commands, Lines{"Delete ServerId=" + id});
  EXPECT_EQ(nameOf(id), "gone");
  EXPECT_EQ(state.items.find("k1", moved.id)->record["FirstName"], "A");
}

TEST_F(DemoConflict, DeleteAgainstChangeWhenTheServerWins) {
  serverChanges();
  const SyncAnswer answer = clientRemoves(1);
  EXPECT_EQ(answer.responses, Lines{"Delete ServerId=" + id + " Status=7"});
  EXPECT_EQ(answer.commands, Lines{"Add ServerId=" + id + " FirstName=Server"});
}

TEST_F(DemoConflict, DeleteAgainstChangeWhenTheClientWins) {
  serverChanges();
  const SyncAnswer answer = clientRemoves(0);
  EXPECT_EQ(answer.responses, Lines{});
  EXPECT_EQ(answer.commands, Lines{});
  EXPECT_EQ(nameOf(id), "gone");
}

TEST_F(DemoConflict, AVersionThatTheDeviceWasSentIsNoConflict) {
  serverChanges();
  device.sync();
  EXPECT_EQ(clientChanges(1).responses, Lines{});
  EXPECT_EQ(nameOf(id), "Client");
}

TEST_F(DemoConflict, TheServerWinsWhenTheOptionIsMissing) {
  serverChanges();
  Element request = documentOf({.key = device.key, .commands = {changeCommand(id, "Client")}});
  for (Element& child : request.children[0].children[0].children)
    if (child.is(Page::Sync, "Options")) child.children.clear();
  EXPECT_EQ(partsOf(*runSync(state, {}, "device-1", request)).responses,
            Lines{"Change ServerId=" + id + " Status=7"});
}

}  // namespace
}  // namespace demoserver
