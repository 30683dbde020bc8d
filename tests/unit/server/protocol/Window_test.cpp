#include <gtest/gtest.h>

#include "support/Device.h"

namespace demoserver {
namespace {

class DemoWindow : public WithContacts {};

TEST_F(DemoWindow, SendsItemsInTheOrderInWhichTheyCame) {
  const std::string a = put("A");
  const std::string b = put("B");
  device.sync();
  EXPECT_EQ(device.sync().commands,
            (Lines{"Add ServerId=" + a + " FirstName=A", "Add ServerId=" + b + " FirstName=B"}));
}

TEST_F(DemoWindow, IsNeverExceededAndMoreIsSaidUntilTheEnd) {
  for (int i = 0; i < 25; ++i) put("A");
  device.sync();
  const std::vector<std::pair<std::size_t, bool>> expected = {{10, true}, {10, true}, {5, false}, {0, false}};
  for (const auto& [size, more] : expected) {
    const SyncAnswer answer = device.sync({.window = 10});
    EXPECT_EQ(answer.commands.size(), size);
    EXPECT_EQ(answer.more, more);
  }
}

TEST_F(DemoWindow, ExactlyFullMeansNoMore) {
  for (int i = 0; i < 10; ++i) put("A");
  device.sync();
  const SyncAnswer answer = device.sync({.window = 10});
  EXPECT_EQ(answer.commands.size(), 10u);
  EXPECT_FALSE(answer.more);
}

TEST_F(DemoWindow, DefaultsTo100AndEndsAt512) {
  for (int i = 0; i < 600; ++i) put("A");
  device.sync();
  EXPECT_EQ(device.sync({.window = 0}).commands.size(), 100u);
  EXPECT_EQ(device.sync({.window = -3}).commands.size(), 100u);
  EXPECT_EQ(Device(state, "two").sync().status, "1");
  Device two(state, "two");
  two.sync();
  EXPECT_EQ(two.sync({.window = 100'000}).commands.size(), 512u);
}

TEST_F(DemoWindow, TellsChangesAndDeletesOfWhatTheDeviceHolds) {
  const std::string a = put("A");
  const std::string b = put("B");
  device.catchUp();
  state.items.replace(a, {{"FirstName", "A2"}});
  state.items.remove(b);
  EXPECT_EQ(device.sync().commands,
            (Lines{"Change ServerId=" + a + " FirstName=A2", "Delete ServerId=" + b}));
  EXPECT_EQ(device.sync().commands, Lines{});
}

TEST_F(DemoWindow, SaysNothingOfItemsThatCameAndWentMeanwhile) {
  device.catchUp();
  state.items.remove(put("A"));
  EXPECT_EQ(device.sync().commands, Lines{});
}

TEST_F(DemoWindow, AnItemThatChangesWhileItWaitsIsSentOnceAndAsAnAdd) {
  const std::string a = put("A");
  const std::string b = put("B");
  device.sync();
  EXPECT_EQ(device.sync({.window = 1}).commands, Lines{"Add ServerId=" + a + " FirstName=A"});
  state.items.replace(b, {{"FirstName", "B2"}});
  EXPECT_EQ(device.sync({.window = 1}).commands, Lines{"Add ServerId=" + b + " FirstName=B2"});
  EXPECT_EQ(device.sync({.window = 1}).commands, Lines{});
}

TEST_F(DemoWindow, WithoutGetChangesNothingIsSentAndNothingIsLost) {
  put("A");
  device.sync();
  const SyncAnswer quiet = device.sync({.getChanges = false});
  EXPECT_EQ(quiet.commands, Lines{});
  EXPECT_FALSE(quiet.more);
  EXPECT_EQ(device.sync().commands.size(), 1u);
}

TEST_F(DemoWindow, ADeviceDoesNotHearOfItsOwnChangesButOthersDo) {
  Device other(state, "device-2");
  other.catchUp();
  device.catchUp();
  EXPECT_EQ(device.sync({.commands = {addCommand("1", "A")}}).commands, Lines{});
  EXPECT_EQ(device.sync().commands, Lines{});
  EXPECT_EQ(other.sync().commands.size(), 1u);
}

TEST_F(DemoWindow, OwnChangesDoNotFillTheWindow) {
  device.catchUp();
  std::vector<Element> adds;
  for (int i = 0; i < 15; ++i) adds.push_back(addCommand(std::to_string(i), "A"));
  device.sync({.commands = adds});
  const std::string b = put("B");
  EXPECT_EQ(device.sync({.window = 1}).commands, Lines{"Add ServerId=" + b + " FirstName=B"});
}

}  // namespace
}  // namespace demoserver
