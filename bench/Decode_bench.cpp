// Responses: from bytes to a tree, and on to the calls of storage.
#include "Benches.h"
#include "Decoding.h"

namespace airsync_bench {

using namespace AIRSYNC_STACK;

namespace {

void DecodeTree(benchmark::State& state, Kind kind, unsigned items) {
  Decoding bench(kind, items);
  for (auto _ : state) {
    sml_element* const tree = bench.Decode();
    state.PauseTiming();
    SE_Destroy(tree);
    state.ResumeTiming();
  }
  Report(state, bench.document.size(), items);
}

// As the commands do it: the tree is freed, too.
void DecodeAndFree(benchmark::State& state, Kind kind, unsigned items) {
  Decoding bench(kind, items);
  for (auto _ : state) SE_Destroy(bench.Decode());
  Report(state, bench.document.size(), items);
}

// A whole response: bytes, tree, storage, and the tree freed.
void DecodeToStorage(benchmark::State& state, Kind kind, unsigned items) {
  Decoding bench(kind, items);
  for (auto _ : state) {
    sml_element* const tree = bench.Decode();
    bench.Process(tree);
    SE_Destroy(tree);
  }
  if (bench.store.Items() != items * static_cast<std::size_t>(state.iterations())) {
    state.SkipWithError("items are missing");
  }
  Report(state, bench.document.size(), items);
}

}  // namespace

void RegisterDecodeBenches() {
  for (const Kind kind : kKinds) {
    for (const unsigned items : {10U, 100U, 1000U, 10000U, 60000U}) {
      const char* const subject = NameOf(kind);
      benchmark::RegisterBenchmark(Name("DecodeTree", subject, items).c_str(), DecodeTree, kind, items);
      benchmark::RegisterBenchmark(Name("DecodeAndFree", subject, items).c_str(), DecodeAndFree, kind, items);
      benchmark::RegisterBenchmark(Name("DecodeToStorage", subject, items).c_str(), DecodeToStorage, kind,
                                   items);
    }
  }
}

}  // namespace airsync_bench
