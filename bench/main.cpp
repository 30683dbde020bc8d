#include "Benches.h"

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
  airsync_bench::RegisterChannelBenches();
  airsync_bench::RegisterDecodeBenches();
  airsync_bench::RegisterEncodeBenches();
  airsync_bench::RegisterMemoryBenches();
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
