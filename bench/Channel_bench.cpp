// The limits that the design sets: every byte of a response passes through one call of the transport.
#include <cstring>
#include <vector>

#include "Benches.h"
#include "Documents.h"
#include "Endpoints.h"
#include "http/Communications.h"

namespace airsync_bench {

using namespace AIRSYNC_STACK;

namespace {

// The byte channel, drained as the decoder calls it: through a pointer to member, a byte at a time.
void DrainChannel(benchmark::State& state, Kind kind, unsigned items) {
  const std::string document = SyncResponse(kind, items);
  MemoryTransport transport(document);
  Communications comms(SERVER_INFO(), &transport, nullptr);
  ByteChannel channel = &Communications::Read;
  benchmark::DoNotOptimize(channel);
  for (auto _ : state) {
    transport.Rewind();
    UINT8 sum = 0;
    for (std::size_t i = 0; i < document.size(); ++i) {
      UINT8 byte = 0;
      (comms.*channel)(&byte, 1);
      sum = static_cast<UINT8>(sum + byte);
    }
    benchmark::DoNotOptimize(sum);
  }
  Report(state, document.size(), items);
}

// The transport alone, called as the channel calls it.
void DrainTransport(benchmark::State& state, Kind kind, unsigned items) {
  const std::string document = SyncResponse(kind, items);
  MemoryTransport memory(document);
  AirSyncTransportInterface* transport = &memory;
  benchmark::DoNotOptimize(transport);
  for (auto _ : state) {
    memory.Rewind();
    UINT8 sum = 0;
    for (std::size_t i = 0; i < document.size(); ++i) {
      UINT8 byte = 0;
      INT32 count = 1;
      transport->Read(&byte, &count, 0);
      sum = static_cast<UINT8>(sum + byte);
    }
    benchmark::DoNotOptimize(sum);
  }
  Report(state, document.size(), items);
}

void Copy(benchmark::State& state, Kind kind, unsigned items) {
  const std::string document = SyncResponse(kind, items);
  std::vector<char> copy(document.size());
  for (auto _ : state) {
    std::memcpy(copy.data(), document.data(), document.size());
    benchmark::ClobberMemory();
  }
  Report(state, document.size(), items);
}

}  // namespace

void RegisterChannelBenches() {
  for (const unsigned items : {100U, 1000U, 10000U}) {
    const Kind kind = Kind::kContacts;
    benchmark::RegisterBenchmark(Name("Memcpy", NameOf(kind), items).c_str(), Copy, kind, items);
    benchmark::RegisterBenchmark(Name("DrainTransport", NameOf(kind), items).c_str(), DrainTransport, kind,
                                 items);
    benchmark::RegisterBenchmark(Name("DrainChannel", NameOf(kind), items).c_str(), DrainChannel, kind,
                                 items);
  }
}

}  // namespace airsync_bench
