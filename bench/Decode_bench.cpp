// Responses: from bytes to a tree, and on to the calls of storage.
#include "Benches.h"
#include "Documents.h"
#include "Endpoints.h"
#include "document/Element.h"
#include "http/Communications.h"
#include "parser/Parser.h"

namespace airsync_bench {

using namespace AIRSYNC_STACK;

namespace {

// What a decoding benchmark stands on.
struct Bench {
  Bench(Kind benchKind, unsigned items)
      : kind(benchKind),
        document(SyncResponse(benchKind, items)),
        transport(document),
        comms(SERVER_INFO(), &transport, nullptr),
        folder(FolderFor(benchKind)) {}

  sml_element* Decode() {
    transport.Rewind();
    return SE_Deserialize(ENCODING_WBXML, &Communications::Read, comms);
  }

  Kind kind;
  std::string document;
  MemoryTransport transport;
  Communications comms;
  FOLDER_INFO folder;
  CountingStore store;
  Parser parser{nullptr};
};

void DecodeTree(benchmark::State& state, Kind kind, unsigned items) {
  Bench bench(kind, items);
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
  Bench bench(kind, items);
  for (auto _ : state) SE_Destroy(bench.Decode());
  Report(state, bench.document.size(), items);
}

// A whole response: bytes, tree, storage, and the tree freed.
void DecodeToStorage(benchmark::State& state, Kind kind, unsigned items) {
  Bench bench(kind, items);
  for (auto _ : state) {
    sml_element* const tree = bench.Decode();
    Parser::PARSER_STATUS status = Parser::PARSER_NOT_RUN;
    bench.parser.Sync(tree, &bench.store, &bench.folder, status);
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
