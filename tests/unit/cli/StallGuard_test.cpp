#include "cli/session/StallGuard.h"

#include <gtest/gtest.h>

namespace airsync {
namespace {

StallGuard begun(const std::string& key = "1") {
  StallGuard guard;
  guard.begin(key);
  return guard;
}

// Keeps S11.
TEST(StallGuard, StopsTheRequestAfterThreeExchangesThatBroughtNothing) {
  StallGuard guard = begun();
  EXPECT_TRUE(guard.exchange());
  EXPECT_TRUE(guard.exchange());
  EXPECT_TRUE(guard.exchange());
  EXPECT_FALSE(guard.stalled());
  EXPECT_FALSE(guard.exchange());
  EXPECT_TRUE(guard.stalled());
}

TEST(StallGuard, CountsTheSameKeyAsNothing) {
  StallGuard guard = begun("1");
  for (int i = 0; i < 3; ++i) {
    EXPECT_TRUE(guard.exchange());
    guard.key("1");
  }
  EXPECT_FALSE(guard.exchange());
}

TEST(StallGuard, BeginsToCountAgainWhenAnItemOrANewKeyComes) {
  StallGuard guard = begun();
  for (int i = 0; i < 2; ++i) EXPECT_TRUE(guard.exchange());
  EXPECT_TRUE(guard.exchange());
  guard.brought();
  for (int i = 0; i < 3; ++i) EXPECT_TRUE(guard.exchange()) << i;
  guard.key("2");
  for (int i = 0; i < 3; ++i) EXPECT_TRUE(guard.exchange()) << i;
  EXPECT_FALSE(guard.exchange());
}

TEST(StallGuard, StopsAfterAHundredExchangesThatBroughtOnlyKeys) {
  StallGuard guard = begun("0");
  for (int i = 1; i <= 100; ++i) {
    EXPECT_TRUE(guard.exchange()) << i;
    guard.key(std::to_string(i));
  }
  EXPECT_FALSE(guard.exchange());
}

TEST(StallGuard, NeverStopsAServerThatSendsItemsAndKeys) {
  StallGuard guard = begun("0");
  for (int i = 1; i <= 1000; ++i) {
    ASSERT_TRUE(guard.exchange()) << i;
    guard.brought();
    guard.key(std::to_string(i));
  }
}

// Keeps S11.
TEST(StallGuard, StopsAfterAHundredExchangesThatBroughtItemsAndNoNewKey) {
  StallGuard guard = begun("1");
  for (int i = 1; i <= 100; ++i) {
    EXPECT_TRUE(guard.exchange()) << i;
    guard.brought();
    guard.key("1");
  }
  EXPECT_FALSE(guard.exchange());
}

TEST(StallGuard, ForgetsEverythingWhenAnotherFolderBegins) {
  StallGuard guard = begun();
  for (int i = 0; i < 4; ++i) guard.exchange();
  ASSERT_TRUE(guard.stalled());
  guard.begin("1");
  EXPECT_FALSE(guard.stalled());
  EXPECT_TRUE(guard.exchange());
}

}  // namespace
}  // namespace airsync
