// How blocks grow in the memory that ships.
#include <gtest/gtest.h>

#include "support/Porting.h"

using namespace AIRSYNC_STACK;

namespace {

TEST(PortingMemory, GrowingByOneSlotAtATimeMovesABlockSeldom) {
  UINT32 size = 8;
  void* block = SmlMalloc(size);
  int moves = 0;
  while (size < 65535 * 8) {
    size += 8;
    void* const grown = SmlRealloc(block, size);
    if (grown != block) ++moves;
    block = grown;
  }
  EXPECT_LT(moves, 100);
  SmlFree(block);
}

}  // namespace
