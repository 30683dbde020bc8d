// Requests: building the tree, measuring it, and writing it.
#include "Benches.h"
#include "Documents.h"
#include "Endpoints.h"
#include "document/Element.h"
#include "generator/Generator.h"
#include "http/Communications.h"

namespace airsync_bench {

using namespace AIRSYNC_STACK;

namespace {

const std::string kNoResponse;

// Room for the contacts of one request: the generator stops adding at some 9 kB.
constexpr unsigned kFullRequest = 100;

struct Bench {
  Bench() : transport(kNoResponse), comms(SERVER_INFO(), &transport, nullptr) {}

  // As large as the generator makes them.
  sml_element* FullRequest() {
    store.HandOut(&contacts.Records());
    GENERATOR_STATUS status = GENERATOR_NOT_RUN;
    return generator.Sync(&comms, &folder, _SYNC_KEY(), status);
  }

  std::size_t LengthOf(const sml_element* tree) {
    SE_HowLongIsIt(tree, ENCODING_WBXML, &Communications::CountOutStream, comms);
    return static_cast<std::size_t>(comms.OutCount());
  }

  MemoryTransport transport;
  Communications comms;
  CountingStore store;
  ContactRecords contacts{kFullRequest};
  FOLDER_INFO folder = FolderFor(Kind::kContacts);
  Generator generator{&store, ENCODING_WBXML, nullptr};
};

// A tree with so many contacts; no request is as large. 0: the request that the generator makes.
sml_element* TreeOf(Bench& bench, unsigned items) {
  if (items == 0) return bench.FullRequest();
  const std::string document = SyncResponse(Kind::kContacts, items);
  MemoryTransport transport(document);
  Communications comms(SERVER_INFO(), &transport, nullptr);
  sml_element* const tree = SE_Deserialize(ENCODING_WBXML, &Communications::Read, comms);
  RestorePages(tree, Kind::kContacts);
  return tree;
}

void Measure(benchmark::State& state, unsigned items) {
  Bench bench;
  sml_element* const tree = TreeOf(bench, items);
  const std::size_t length = bench.LengthOf(tree);
  for (auto _ : state) {
    benchmark::DoNotOptimize(
        SE_HowLongIsIt(tree, ENCODING_WBXML, &Communications::CountOutStream, bench.comms));
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(length));
  SE_Destroy(tree);
  bench.generator.DropPending();
}

void WriteDocument(benchmark::State& state, unsigned items) {
  Bench bench;
  sml_element* const tree = TreeOf(bench, items);
  const std::size_t length = bench.LengthOf(tree);
  for (auto _ : state) SE_Serialize(tree, ENCODING_WBXML, &Communications::Send, bench.comms);
  if (bench.transport.Sent() != length * static_cast<std::size_t>(state.iterations())) {
    state.SkipWithError("bytes are missing");
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(length));
  SE_Destroy(tree);
  bench.generator.DropPending();
}

// The sink alone, in the steps of a typical element: a tag, its text's token, the text, two ends.
void CountingSink(benchmark::State& state) {
  Bench bench;
  ByteChannel sink = &Communications::CountOutStream;
  benchmark::DoNotOptimize(sink);
  UINT8 bytes[16] = {};
  for (auto _ : state) {
    (bench.comms.*sink)(bytes, 1);
    (bench.comms.*sink)(bytes, 1);
    (bench.comms.*sink)(bytes, 16);
    (bench.comms.*sink)(bytes, 1);
    (bench.comms.*sink)(bytes, 1);
    if (bench.comms.OutCount() > 1000000) bench.comms.ResetOutCount();
  }
  state.SetBytesProcessed(state.iterations() * 20);
}

// All contacts into requests, each freed as if it had been sent.
void BuildRequests(benchmark::State& state, unsigned items) {
  Bench bench;
  ContactRecords contacts(items);
  for (auto _ : state) {
    bench.store.HandOut(&contacts.Records());
    GENERATOR_STATUS status = GENERATOR_NOT_RUN;
    while (status != GENERATOR_DONE) {
      SE_Destroy(bench.generator.Sync(&bench.comms, &bench.folder, _SYNC_KEY(), status));
    }
  }
  Report(state, 0, items);
}

}  // namespace

void RegisterEncodeBenches() {
  benchmark::RegisterBenchmark("CountingSink", CountingSink);
  benchmark::RegisterBenchmark("Measure/request", Measure, 0U);
  benchmark::RegisterBenchmark("Write/request", WriteDocument, 0U);
  for (const unsigned items : {100U, 1000U, 10000U}) {
    benchmark::RegisterBenchmark(Name("Measure", "contacts", items).c_str(), Measure, items);
    benchmark::RegisterBenchmark(Name("Write", "contacts", items).c_str(), WriteDocument, items);
    benchmark::RegisterBenchmark(Name("BuildRequests", "contacts", items).c_str(), BuildRequests, items);
  }
}

}  // namespace airsync_bench
