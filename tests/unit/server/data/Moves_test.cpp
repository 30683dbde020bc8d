#include "data/Moves.h"

#include <gtest/gtest.h>

#include "data/State.h"

namespace demoserver {
namespace {

struct DemoMoves : ::testing::Test {
  State state{":memory:"};
  Item mail = state.items.add("f2", {{"Subject", "A"}});
};

TEST_F(DemoMoves, LeaveATombstoneAndMakeANewItem) {
  const Item moved = state.moves.move(mail, "f4");
  EXPECT_NE(moved.id, mail.id);
  EXPECT_EQ(moved.folder, "f4");
  EXPECT_TRUE(state.items.find("f2", mail.id)->gone);
  EXPECT_EQ(state.items.find("f4", moved.id)->record, mail.record);
}

TEST_F(DemoMoves, TakeAttachmentsAndMessageAlong) {
  const std::string handle = state.attachments.add(mail.id, "a", "", "1");
  state.messages.keep(mail.id, std::string("m\0n", 3));
  const Item moved = state.moves.move(mail, "f4");
  EXPECT_EQ(state.attachments.find(handle)->item, moved.id);
  EXPECT_EQ(state.messages.find(moved.id), std::string("m\0n", 3));
  EXPECT_FALSE(state.messages.find(mail.id));
}

TEST_F(DemoMoves, AreRememberedWhileTheItemStaysWhereItWent) {
  EXPECT_FALSE(state.moves.movedFrom("f2", mail.id));
  const Item moved = state.moves.move(mail, "f4");
  EXPECT_EQ(state.moves.movedFrom("f2", mail.id)->id, moved.id);
  EXPECT_FALSE(state.moves.movedFrom("f3", mail.id));
  const Item again = state.moves.move(moved, "f2");
  EXPECT_FALSE(state.moves.movedFrom("f2", mail.id));
  EXPECT_EQ(state.moves.movedFrom("f4", moved.id)->id, again.id);
  state.items.forgetFolder("f2");
  EXPECT_FALSE(state.moves.movedFrom("f4", moved.id));
}

}  // namespace
}  // namespace demoserver
