// The WBXML reader, and every entry point of the response processor on whatever it read. What was read can be
// measured, and what is written from it can be read again.
//
// Keeps S1, S2.
#include <array>
#include <cstring>
#include <string>

#include "api/ErrorFrame.h"
#include "document/wbxml.h"
#include "fuzz/Harness.h"
#include "fuzz/Records.h"
#include "http/Communications.h"
#include "parser/Parser.h"
#include "support/Memory.h"

namespace {

using namespace AIRSYNC_STACK;
using namespace airsync_fuzz;

struct Rig {
  Parser& parser;
  ReadingStore& store;
  FOLDER_INFO& folder;
};

using EntryPoint = void (*)(Rig&, sml_element*);

constexpr std::array<EntryPoint, 12> kEntryPoints = {
    [](Rig& r, sml_element* root) {
      Parser::PARSER_STATUS status = Parser::PARSER_NOT_RUN;
      r.parser.Sync(root, &r.store, &r.folder, status);
    },
    [](Rig& r, sml_element* root) {
      r.parser.SetStorage(&r.store);
      r.parser.Fetch(root, &r.folder);
    },
    [](Rig& r, sml_element* root) {
      _SYNC_KEY key = {"1"};
      r.parser.FolderSync(root, &r.store, key);
    },
    [](Rig& r, sml_element* root) {
      _SYNC_KEY key = {"1"};
      BASE_FOLDER entry = {};
      r.parser.FolderCreate(root, &entry, key);
    },
    [](Rig& r, sml_element* root) {
      _SYNC_KEY key = {"1"};
      r.parser.FolderDelete(root, key);
    },
    [](Rig& r, sml_element* root) {
      _SYNC_KEY key = {"1"};
      r.parser.FolderUpdate(root, key);
    },
    [](Rig& r, sml_element* root) {
      BASE_FOLDER* folders = nullptr;
      int count = 0;
      r.parser.GetHierarchy(root, folders, count);
    },
    [](Rig& r, sml_element* root) {
      UINT8(*list)[64] = nullptr;
      UINT16 count = 0;
      r.parser.GetCarrierList(root, list, count);
    },
    [](Rig& r, sml_element* root) { r.parser.SetDeviceAddress(root); },
    [](Rig& r, sml_element* root) {
      UINT8(*list)[64] = nullptr;
      UINT16 count = 0;
      FOLDER_INFO* folders[] = {&r.folder};
      r.parser.NotifyEnable(root, &r.store, folders, 1, list, count);
    },
    [](Rig& r, sml_element* root) {
      FOLDER_INFO* folders[] = {&r.folder};
      r.parser.GetItemEstimate(root, &r.store, folders, 1);
    },
    [](Rig& r, sml_element* root) {
      SERVER_ID id = {"2:1"};
      SERVER_ID out = {};
      r.parser.MeetingResponse(root, id, out);
    },
};

void RunEntryPoint(std::string_view document, EntryPoint entryPoint, DATATYPE dataType) {
  BodyTransport transport(document, 1);
  Communications comms(SERVER_INFO(), &transport, nullptr);
  FOLDER_INFO folder = {};
  std::strcpy(folder.folder.serverId.text, "2:1");
  folder.dataType = dataType;
  ReadingStore store(folder);
  Parser parser(nullptr);
  Rig rig = {parser, store, folder};
  UntilExpectedStop([&] {
    RunFramed([&]() -> SYNC_RESULT {
      sml_element* const root = SE_Deserialize(ENCODING_WBXML, &Communications::Read, comms);
      const UINT16 length = SE_HowLongIsIt(root, ENCODING_WBXML, &Communications::CountOutStream, comms);
      Require(length != 0, "a document has a length");
      entryPoint(rig, root);
      return AS_RESULT_OK;
    });
  });
  DisarmFrame();
  parser.ForgetTrackedMemory();
  AdapterFreeAll();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Input input(data, size);
  const std::uint8_t first = input.Byte();
  RunEntryPoint(input.Rest(), kEntryPoints[first % kEntryPoints.size()],
                static_cast<DATATYPE>(first / kEntryPoints.size() % 3));
  return 0;
}
