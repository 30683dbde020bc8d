#include "support/Memory.h"

#include <cstddef>
#include <cstring>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "api/AirSync.h"
#include "support/CatchAbort.h"
#include "support/FailingMemory.h"
#include "support/Porting.h"

namespace {

using namespace AIRSYNC_STACK;
using airsync_test::CatchAbort;
using airsync_test::FailingMemory;
using airsync_test::MemoryCall;

const std::string kNode = std::to_string(sizeof(LL_Node));

class Memory : public testing::Test {
 protected:
  void SetUp() override {
    AdapterFreeAll();
    FailingMemory::Reset();
    liveBefore_ = FailingMemory::LiveBlocks();
  }
  void TearDown() override {
    FailingMemory::Reset();
    AdapterFreeAll();
    EXPECT_EQ(FailingMemory::LiveBlocks(), liveBefore_);
  }

  std::size_t liveBefore_ = 0;
};

typedef Memory MemoryDeathTest;

TEST_F(Memory, NodesBeginWithTheirFourDocumentedFields) {
  EXPECT_EQ(offsetof(LL_Node, block), 0U);
  EXPECT_EQ(offsetof(LL_Node, size), sizeof(void*));
  EXPECT_EQ(offsetof(LL_Node, next), 2 * sizeof(void*));
  EXPECT_EQ(offsetof(LL_Node, prev), 3 * sizeof(void*));
}

TEST_F(Memory, NodesTellTheirBlockAndItsSizeNewestFirstInACircle) {
  FailingMemory::Record(true);
  void* const older = AdapterMalloc(11);
  void* const newer = AdapterMalloc(7);
  const LL_Node* const olderNode = static_cast<const LL_Node*>(FailingMemory::Calls()[0].block);
  const LL_Node* const newerNode = static_cast<const LL_Node*>(FailingMemory::Calls()[2].block);
  EXPECT_EQ(olderNode->block, older);
  EXPECT_EQ(olderNode->size, 11U);
  EXPECT_EQ(newerNode->block, newer);
  EXPECT_EQ(newerNode->size, 7U);
  EXPECT_EQ(newerNode->next, olderNode);
  EXPECT_EQ(olderNode->prev, newerNode);
  EXPECT_EQ(olderNode->next, newerNode->prev) << "the end of the list is its beginning";
  EXPECT_EQ(newerNode->prev->next, newerNode);
  EXPECT_EQ(olderNode->next->prev, olderNode);
  void* const grown = AdapterRealloc(older, 12, 11);
  EXPECT_EQ(olderNode->block, grown);
  EXPECT_EQ(olderNode->size, 12U);
  FailingMemory::FailAt(1);
  EXPECT_EQ(AdapterRealloc(grown, 100, 12), nullptr);
  EXPECT_EQ(olderNode->block, grown) << "nothing has changed";
  EXPECT_EQ(olderNode->size, 12U);
}

TEST_F(Memory, ABlockCostsTwoHostAllocationsTheNodeFirst) {
  FailingMemory::Record(true);
  void* const block = AdapterMalloc(11);
  EXPECT_EQ(FailingMemory::CallsAsText(), "malloc " + kNode + ", malloc 11");
  EXPECT_EQ(FailingMemory::Calls()[1].block, block);
}

TEST_F(Memory, ABlockIsFreedBeforeItsNode) {
  void* const block = AdapterMalloc(11);
  FailingMemory::Record(true);
  AdapterFree(block);
  ASSERT_EQ(FailingMemory::CallsAsText(), "free, free");
  EXPECT_EQ(FailingMemory::Calls()[0].block, block);
}

TEST_F(Memory, BlocksAreNotCleared) {
  const unsigned char* const block = static_cast<unsigned char*>(AdapterMalloc(3));
  EXPECT_EQ(block[0], 0xCD);
  EXPECT_EQ(block[2], 0xCD);
}

TEST_F(Memory, FreeAllFreesTheNewestBlockFirst) {
  void* const oldest = AdapterMalloc(1);
  void* const middle = AdapterMalloc(2);
  void* const newest = AdapterMalloc(3);
  FailingMemory::Record(true);
  AdapterFreeAll();
  const std::vector<MemoryCall>& calls = FailingMemory::Calls();
  ASSERT_EQ(calls.size(), 6U);
  EXPECT_EQ(calls[0].block, newest);
  EXPECT_EQ(calls[2].block, middle);
  EXPECT_EQ(calls[4].block, oldest);
}

TEST_F(Memory, FreeingFromTheMiddleKeepsTheOrderOfTheRest) {
  void* const oldest = AdapterMalloc(1);
  void* const middle = AdapterMalloc(2);
  void* const newest = AdapterMalloc(3);
  AdapterFree(middle);
  FailingMemory::Record(true);
  AdapterFreeAll();
  ASSERT_EQ(FailingMemory::Calls().size(), 4U);
  EXPECT_EQ(FailingMemory::Calls()[0].block, newest);
  EXPECT_EQ(FailingMemory::Calls()[2].block, oldest);
}

TEST_F(Memory, AGrownBlockKeepsItsPlaceInTheOrder) {
  void* const older = AdapterRealloc(AdapterMalloc(1), 5, 1);
  void* const newer = AdapterMalloc(2);
  void* const grown = AdapterRealloc(older, 9, 5);
  FailingMemory::Record(true);
  AdapterFreeAll();
  EXPECT_EQ(FailingMemory::Calls()[0].block, newer);
  EXPECT_EQ(FailingMemory::Calls()[2].block, grown);
}

TEST_F(Memory, ASecondFreeAllDoesNothing) {
  AdapterMalloc(1);
  AdapterFreeAll();
  FailingMemory::Record(true);
  AdapterFreeAll();
  EXPECT_EQ(FailingMemory::CallsAsText(), "");
}

TEST_F(Memory, TheEndOfAnExchangeFreesEverything) {
  AdapterMalloc(1);
  AdapterMalloc(2);
  DoneWithAdapterMemory();
  EXPECT_EQ(FailingMemory::LiveBlocks(), liveBefore_);
  EXPECT_NE(AdapterMalloc(3), nullptr);
}

TEST_F(Memory, StartForgetsLiveBlocksWithoutFreeingThem) {
  FailingMemory::Record(true);
  void* const block = AdapterMalloc(1);
  void* const node = const_cast<void*>(FailingMemory::Calls()[0].block);
  StartAdapterMemory();
  AdapterFreeAll();
  EXPECT_EQ(FailingMemory::LiveBlocks(), liveBefore_ + 2);
  SmlFree(block);
  SmlFree(node);
}

TEST_F(Memory, GrowingKeepsTheContents) {
  char* block = static_cast<char*>(AdapterMalloc(4));
  std::memcpy(block, "abc", 4);
  FailingMemory::Record(true);
  char* const grown = static_cast<char*>(AdapterRealloc(block, 100, 4));
  EXPECT_STREQ(grown, "abc");
  EXPECT_EQ(FailingMemory::CallsAsText(), "realloc 100");
}

TEST_F(Memory, AMovedBlockIsFoundAtItsNewPlace) {
  void* const block = AdapterMalloc(4);
  void* const grown = AdapterRealloc(block, 100, 4);
  ASSERT_NE(grown, block);
  AdapterFree(grown);
  EXPECT_EQ(FailingMemory::LiveBlocks(), liveBefore_);
}

TEST_F(Memory, GrowingNothingMakesANewBlock) {
  FailingMemory::Record(true);
  EXPECT_NE(AdapterRealloc(nullptr, 7, 0), nullptr);
  EXPECT_EQ(FailingMemory::CallsAsText(), "malloc " + kNode + ", malloc 7");
}

TEST_F(Memory, TheSameSizeIsAllowed) { EXPECT_NE(AdapterRealloc(AdapterMalloc(4), 4, 4), nullptr); }

TEST_F(Memory, AFailedGrowthReturnsNullAndLeavesTheOldBlockLive) {
  char* const block = static_cast<char*>(AdapterMalloc(4));
  std::memcpy(block, "abc", 4);
  FailingMemory::FailAt(1);
  EXPECT_EQ(AdapterRealloc(block, 100, 4), nullptr);
  EXPECT_STREQ(block, "abc");
  AdapterFree(block);
  EXPECT_EQ(FailingMemory::LiveBlocks(), liveBefore_);
}

TEST_F(Memory, AnExhaustedHostEndsTheExchangeAtTheNode) {
  AdapterMalloc(5);
  FailingMemory::FailAt(1);
  FailingMemory::Record(true);
  EXPECT_EQ(CatchAbort([] { AdapterMalloc(11); }), 0x8001000dU);
  EXPECT_EQ(FailingMemory::CallsAsText(), "malloc " + kNode + ", free, free");
  EXPECT_EQ(FailingMemory::LiveBlocks(), liveBefore_);
}

TEST_F(Memory, AnExhaustedHostEndsTheExchangeAtTheBlockAndGetsTheNodeBack) {
  AdapterMalloc(5);
  FailingMemory::FailAt(2);
  FailingMemory::Record(true);
  EXPECT_EQ(CatchAbort([] { AdapterMalloc(11); }), 0x8001000dU);
  EXPECT_EQ(FailingMemory::CallsAsText(), "malloc " + kNode + ", malloc 11, free, free, free");
  EXPECT_EQ(FailingMemory::LiveBlocks(), liveBefore_);
}

TEST_F(Memory, CopiesATextWithItsTerminator) {
  FailingMemory::Record(true);
  EXPECT_STREQ(AdapterStrdup("four"), "four");
  EXPECT_EQ(FailingMemory::CallsAsText(), "malloc " + kNode + ", malloc 5");
}

TEST_F(Memory, TheCopyOfNullIsNullAndCostsNothing) {
  EXPECT_EQ(AdapterStrdup(nullptr), nullptr);
  EXPECT_EQ(FailingMemory::Allocations(), 0U);
}

TEST_F(Memory, FindsEveryBlockInWhateverOrderBlocksComeGrowAndGo) {
  std::mt19937 random(20041231);
  std::vector<std::pair<char*, UINT32>> blocks;
  for (int step = 0; step < 20000; ++step) {
    const bool grow = !blocks.empty() && random() % 4 == 0;
    const bool release = blocks.size() > 500 || (!blocks.empty() && random() % 3 == 0);
    const std::size_t which = blocks.empty() ? 0 : random() % blocks.size();
    if (release) {
      AdapterFree(blocks[which].first);
      blocks[which] = blocks.back();
      blocks.pop_back();
    } else if (grow) {
      auto& [block, size] = blocks[which];
      block = static_cast<char*>(AdapterRealloc(block, size + 8, size));
      size += 8;
    } else {
      const UINT32 size = random() % 64;
      const bool bornByGrowing = random() % 2 == 0;
      void* const block = bornByGrowing ? AdapterRealloc(nullptr, size, 0) : AdapterMalloc(size);
      blocks.emplace_back(static_cast<char*>(block), size);
    }
    ASSERT_EQ(FailingMemory::LiveBlocks(), liveBefore_ + 2 * blocks.size());
  }
  for (const auto& [block, size] : blocks) AdapterFree(block);
}

// A walk along a list of 200,000 blocks for each of them would take 20,000,000,000 steps.
TEST_F(Memory, FreesManyBlocksOldestFirstWithoutWalkingTheList) {
  std::vector<void*> blocks;
  for (int i = 0; i < 200000; ++i) blocks.push_back(AdapterMalloc(8));
  for (void* const block : blocks) AdapterFree(block);
  EXPECT_EQ(FailingMemory::LiveBlocks(), liveBefore_);
}

// As the arrays of children of a document with so many levels grow, and of one that returns to a level again.
TEST_F(Memory, FindsBlocksThatGrowAtEveryLevelOfADocument) {
  std::vector<void*> levels(200);
  for (UINT32 step = 0; step < 3; ++step) {
    for (void*& block : levels) {
      block = AdapterRealloc(block, 8 * (step + 1), 8 * step);
      for (int i = 0; i < 5; ++i) AdapterMalloc(24);
    }
  }
  for (std::size_t i = levels.size(); i > 0; --i) levels[i - 1] = AdapterRealloc(levels[i - 1], 32, 24);
  for (void* const block : levels) AdapterFree(block);
  EXPECT_EQ(FailingMemory::LiveBlocks(), liveBefore_ + 2 * 3 * 5 * levels.size());
}

TEST_F(MemoryDeathTest, RefusesToShrinkABlock) {
  void* const block = AdapterMalloc(8);
  EXPECT_DEATH(AdapterRealloc(block, 7, 8), "`NewSize>=OldSize'");
}

TEST_F(MemoryDeathTest, RefusesAnOldSizeWithoutABlock) {
  EXPECT_DEATH(AdapterRealloc(nullptr, 8, 4), "`!OldSize'");
}

TEST_F(MemoryDeathTest, RefusesToFreeNull) { EXPECT_DEATH(AdapterFree(nullptr), "LL_FindNode.*`0'"); }

TEST_F(MemoryDeathTest, RefusesToFreeNullWhileBlocksAreLive) {
  AdapterMalloc(1);
  EXPECT_DEATH(AdapterFree(nullptr), "LL_FindNode.*`0'");
}

TEST_F(MemoryDeathTest, RefusesToFreeABlockTwice) {
  void* const block = AdapterMalloc(8);
  AdapterFree(block);
  EXPECT_DEATH(AdapterFree(block), "LL_FindNode.*`0'");
}

TEST_F(MemoryDeathTest, RefusesToGrowAnUnknownBlock) {
  int unknown = 0;
  AdapterMalloc(1);
  EXPECT_DEATH(AdapterRealloc(&unknown, 8, 4), "LL_FindNode.*`0'");
}

TEST_F(MemoryDeathTest, RefusesABlockThatStartForgot) {
  FailingMemory::Record(true);
  void* const block = AdapterMalloc(8);
  void* const node = const_cast<void*>(FailingMemory::Calls()[0].block);
  StartAdapterMemory();
  EXPECT_DEATH(AdapterFree(block), "LL_FindNode.*`0'");
  SmlFree(block);
  SmlFree(node);
}

TEST_F(MemoryDeathTest, RefusesABlockThatAnAbortReleased) {
  void* block = nullptr;
  CatchAbort([&block] {
    block = AdapterMalloc(8);
    AirSync::getInstance()->AbortSync(0x80000001);
  });
  EXPECT_DEATH(AdapterFree(block), "LL_FindNode.*`0'");
}

}  // namespace
