// What the benchmark program measures, one function for each subject. A benchmark's name is its operation,
// what it works on, and how many: "DecodeTree/contacts/1000".
#ifndef BENCH_BENCHES_H
#define BENCH_BENCHES_H

#include <benchmark/benchmark.h>
#include <string>

namespace airsync_bench {

void RegisterChannelBenches();
void RegisterDecodeBenches();
void RegisterEncodeBenches();
void RegisterMemoryBenches();

/// Adds bytes per second, and the time for one of so many items.
inline void Report(benchmark::State& state, std::size_t bytes, std::size_t items) {
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bytes));
  state.counters["perItem"] =
      benchmark::Counter(static_cast<double>(items) * static_cast<double>(state.iterations()),
                         benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

inline std::string Name(const char* operation, const std::string& subject, unsigned count) {
  return std::string(operation) + "/" + subject + "/" + std::to_string(count);
}

}  // namespace airsync_bench

#endif
