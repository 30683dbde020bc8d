#include "cli/message/Deliver.h"

#include <gtest/gtest.h>

namespace airsync {
namespace {

TEST(Deliver, KnowsThatAMessageDidNotGoOutWhileItsLastPieceWasNotBegun) {
  EXPECT_FALSE(mayHaveGoneOut({}));
  EXPECT_FALSE(mayHaveGoneOut({0, 65536, 65537}));
  EXPECT_FALSE(mayHaveGoneOut({65536, 65536, 150000}));
}

TEST(Deliver, KnowsThatAMessageMayHaveGoneOutOnceItsLastPieceWasBegun) {
  EXPECT_TRUE(mayHaveGoneOut({0, 10, 10}));
  EXPECT_TRUE(mayHaveGoneOut({131072, 18928, 150000}));
  EXPECT_TRUE(mayHaveGoneOut({150000, 0, 150000}));
}

}  // namespace
}  // namespace airsync
