#include "data/Chain.h"

#include <gtest/gtest.h>

namespace demoserver {
namespace {

struct DemoChain : ::testing::Test {
  Database database{":memory:"};

  Chain open() { return Chain(database, "d", "f9"); }
  // Runs one cycle and returns its key.
  static std::string finish(Chain& chain, const std::string& key) {
    const std::string next = chain.nextKey();
    chain.finish(key, "request of " + key, "answer to " + key);
    return next;
  }
};

TEST_F(DemoChain, KnowsNoKeyBeforeItsStart) {
  EXPECT_EQ(open().match("0"), KeyMatch::Initial);
  EXPECT_EQ(open().match("1.1"), KeyMatch::Unknown);
  EXPECT_EQ(open().match("."), KeyMatch::Unknown);
  EXPECT_EQ(open().match(".0"), KeyMatch::Unknown);
  EXPECT_FALSE(open().answerTo("", "").has_value());
}

TEST_F(DemoChain, AcceptsTheCurrentKeyAndTheOneBefore) {
  Chain chain = open();
  chain.start("*");
  const std::string first = finish(chain, "0");
  EXPECT_EQ(open().match(first), KeyMatch::Current);
  chain.advance();
  const std::string second = finish(chain, first);
  EXPECT_EQ(open().match(second), KeyMatch::Current);
  EXPECT_EQ(open().match(first), KeyMatch::Repeated);
  chain.advance();
  finish(chain, second);
  EXPECT_EQ(open().match(first), KeyMatch::Unknown);
}

TEST_F(DemoChain, KeepsTheAnswerToTheLastRequestOnly) {
  Chain chain = open();
  chain.start("*");
  finish(chain, "0");
  EXPECT_EQ(open().answerTo("0", "request of 0"), "answer to 0");
  EXPECT_FALSE(open().answerTo("0", "another request").has_value());
  EXPECT_FALSE(open().answerTo("1", "request of 0").has_value());
}

TEST_F(DemoChain, RewindTakesBackWhatTheLostCycleTold) {
  Chain chain = open();
  chain.start("*");
  std::string key = finish(chain, "0");
  chain.advance();
  chain.learn("kept", 1);
  chain.learn("changed", 2);
  chain.learn("deleted", 3);
  chain.moveTo(3);
  key = finish(chain, key);
  chain.advance();
  chain.learn("changed", 8);
  chain.learn("changed", 9);
  chain.forget("deleted");
  chain.learn("new", 7);
  chain.moveTo(9);
  finish(chain, key);

  Chain again = open();
  ASSERT_EQ(again.match(key), KeyMatch::Repeated);
  again.rewind();
  EXPECT_EQ(again.position(), 3);
  EXPECT_EQ(again.known("kept"), 1);
  EXPECT_EQ(again.known("changed"), 2);
  EXPECT_EQ(again.known("deleted"), 3);
  EXPECT_FALSE(again.known("new").has_value());
}

TEST_F(DemoChain, OwnWorkOfTheLostCycleIsRecognisedOnlyAfterRewind) {
  Chain chain = open();
  chain.start("*");
  const std::string key = finish(chain, "0");
  chain.advance();
  chain.applied("i/5", 5, "client-1");
  finish(chain, key);
  EXPECT_FALSE(open().itemOfLostAdd("client-1").has_value());
  EXPECT_FALSE(open().isOwnChange("i/5", 5));
  Chain again = open();
  again.rewind();
  EXPECT_EQ(again.itemOfLostAdd("client-1"), "i/5");
  EXPECT_FALSE(again.itemOfLostAdd("client-2").has_value());
  EXPECT_TRUE(again.isOwnChange("i/5", 5));
  EXPECT_FALSE(again.isOwnChange("i/5", 6));
}

TEST_F(DemoChain, OwnWorkIsForgottenOneCycleLater) {
  Chain chain = open();
  chain.start("*");
  const std::string first = finish(chain, "0");
  chain.advance();
  chain.applied("i/5", 5, "client-1");
  const std::string second = finish(chain, first);
  chain.advance();
  finish(chain, second);
  Chain again = open();
  again.rewind();
  EXPECT_FALSE(again.itemOfLostAdd("client-1").has_value());
}

TEST_F(DemoChain, IsOneDevicesAndOneCollections) {
  Chain chain = open();
  chain.start("*");
  chain.learn("i/1", 1);
  const std::string key = finish(chain, "0");
  EXPECT_EQ(Chain(database, "e", "f9").match(key), KeyMatch::Unknown);
  EXPECT_EQ(Chain(database, "d", "f8").match(key), KeyMatch::Unknown);
  EXPECT_FALSE(Chain(database, "e", "f9").known("i/1").has_value());
  forgetCollection(database, "f9");
  EXPECT_EQ(open().match(key), KeyMatch::Unknown);
  EXPECT_FALSE(open().known("i/1").has_value());
}

}  // namespace
}  // namespace demoserver
