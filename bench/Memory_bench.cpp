// Tracked memory by itself: blocks as a decoded document has them, allocated, grown and freed.
#include <algorithm>
#include <random>
#include <vector>

#include "Benches.h"
#include "document/Element.h"
#include "support/Memory.h"

namespace airsync_bench {

using namespace AIRSYNC_STACK;

namespace {

constexpr unsigned kBlocksPerElement = 3;
constexpr unsigned kElementsPerItem = 20;

enum class Order { kAsTrees, kAllAtOnce, kOldestFirst, kRandom };

// What decoding an item does: for each element its record, its tag, a text that grows and is dropped again,
// and its value; and an array of children that grows by one slot at a time.
class Blocks {
 public:
  explicit Blocks(std::size_t count) { live_.reserve(count + count / kBlocksPerElement + 1); }

  void Allocate(std::size_t count) {
    live_.clear();
    while (live_.size() < count) AllocateItem();
  }

  void Free(Order order, std::mt19937& random) {
    switch (order) {
      case Order::kAsTrees:
        std::reverse(live_.begin(), live_.end());
        break;
      case Order::kRandom:
        std::shuffle(live_.begin(), live_.end(), random);
        break;
      case Order::kAllAtOnce:
        AdapterFreeAll();
        return;
      case Order::kOldestFirst:
        break;
    }
    for (void* const block : live_) AdapterFree(block);
  }

 private:
  void AllocateItem() {
    void* children = nullptr;
    std::size_t place = 0;
    for (unsigned i = 0; i < kElementsPerItem; ++i) {
      live_.push_back(AdapterMalloc(sizeof(sml_element)));
      live_.push_back(AdapterMalloc(12));
      void* const text = AdapterRealloc(AdapterMalloc(11), 22, 11);
      live_.push_back(AdapterMalloc(18));
      AdapterFree(text);
      const UINT32 slot = sizeof(void*);
      children = AdapterRealloc(children, (i + 1) * slot, i * slot);
      if (i == 0) {
        place = live_.size();
        live_.push_back(nullptr);
      }
      live_[place] = children;
    }
  }

  std::vector<void*> live_;
};

void Allocate(benchmark::State& state, std::size_t count) {
  Blocks blocks(count);
  std::mt19937 random(1);
  for (auto _ : state) {
    blocks.Allocate(count);
    state.PauseTiming();
    blocks.Free(Order::kAllAtOnce, random);
    state.ResumeTiming();
  }
  Report(state, 0, count);
}

void Free(benchmark::State& state, Order order, std::size_t count) {
  Blocks blocks(count);
  std::mt19937 random(1);
  for (auto _ : state) {
    state.PauseTiming();
    blocks.Allocate(count);
    state.ResumeTiming();
    blocks.Free(order, random);
  }
  Report(state, 0, count);
}

}  // namespace

void RegisterMemoryBenches() {
  for (const unsigned count : {100U, 10000U, 1000000U, 3000000U}) {
    benchmark::RegisterBenchmark(Name("Memory", "allocate", count).c_str(), Allocate, count);
    benchmark::RegisterBenchmark(Name("Memory", "freeTree", count).c_str(), Free, Order::kAsTrees, count);
    benchmark::RegisterBenchmark(Name("Memory", "freeAll", count).c_str(), Free, Order::kAllAtOnce, count);
    benchmark::RegisterBenchmark(Name("Memory", "freeOldestFirst", count).c_str(), Free, Order::kOldestFirst,
                                 count);
    benchmark::RegisterBenchmark(Name("Memory", "freeRandomly", count).c_str(), Free, Order::kRandom, count);
  }
}

}  // namespace airsync_bench
