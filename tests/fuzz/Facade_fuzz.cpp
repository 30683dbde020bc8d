// Whole commands against a hostile answer. The input: which command, which class of items, the body.
//
// Keeps S1, S3.
#include <array>
#include <cstring>

#include "api/ErrorFrame.h"
#include "fuzz/Harness.h"
#include "fuzz/Records.h"
#include "support/AdapterFree.h"

namespace {

using namespace AIRSYNC_STACK;
using namespace airsync_fuzz;

// What the commands are given and give back. No member has a destructor: a stop jumps over it.
struct Arguments {
  FOLDER_INFO folder = {};
  _SYNC_KEY key = {"h1"};
  BASE_FOLDER entry = {"New", 12, {"9"}, {"3"}};
  BASE_FOLDER* hierarchy = nullptr;
  int count = 0;
  SERVER_ID items[2] = {{"2:1"}, {"2:2"}};
  FOLDER_ID sources[2] = {{"2"}, {"2"}};
  FOLDER_ID destinations[2] = {{"6"}, {"6"}};
  SERVER_ID newItems[2] = {};
  int results[2] = {};
  unsigned char (*carriers)[64] = nullptr;
  unsigned short carrierCount = 0;
  unsigned char buffer[64] = {};
};

SYNC_RESULT Notify(AirSync& airSync, Arguments& a, unsigned lifetime) {
  return airSync.NotifyEnable(reinterpret_cast<const unsigned char*>("c1"), "Ada", "5550100", lifetime,
                              a.carriers, a.carrierCount);
}

using Command = SYNC_RESULT (*)(AirSync&, Arguments&);
constexpr std::array<Command, 16> kCommands = {
    [](AirSync& s, Arguments& a) { return s.Sync(a.key, &a.folder); },
    [](AirSync& s, Arguments& a) { return s.Fetch(&a.folder, a.items[0]); },
    [](AirSync& s, Arguments& a) { return s.FolderSync(a.key); },
    [](AirSync& s, Arguments& a) { return s.GetHierarchy(a.hierarchy, a.count); },
    [](AirSync& s, Arguments& a) { return s.FolderCreate(a.key, &a.entry); },
    [](AirSync& s, Arguments& a) { return s.FolderDelete(a.entry.serverId, a.key); },
    [](AirSync& s, Arguments& a) { return s.FolderUpdate(a.key, &a.entry); },
    [](AirSync& s, Arguments&) { return s.GetItemEstimate(); },
    [](AirSync& s, Arguments& a) {
      return s.MoveItems(a.items, a.sources, a.destinations, a.newItems, a.results, 2);
    },
    [](AirSync& s, Arguments& a) {
      return s.MeetingResponse(a.items[0], a.sources[0], AS_MEETING_RESPONSE_ACCEPT, a.newItems[0]);
    },
    [](AirSync& s, Arguments& a) { return Notify(s, a, 60); },
    [](AirSync& s, Arguments& a) { return Notify(s, a, 0); },
    [](AirSync& s, Arguments& a) { return s.GetCarrierList(a.carriers, a.carrierCount); },
    [](AirSync& s, Arguments& a) { return s.GetAttachment("a:1", a.buffer, sizeof a.buffer, false); },
    [](AirSync& s, Arguments& a) { return s.GetAttachment("a:1", a.buffer, sizeof a.buffer, true); },
    [](AirSync& s, Arguments& a) { return s.GetOptions(a.buffer, 32, a.buffer + 32, 32); },
};

// Whether whatever was handed out may be read to its end.
void TouchResults(const Arguments& a) {
  for (int i = 0; a.hierarchy != nullptr && i < a.count; ++i) {
    Require(std::memchr(a.hierarchy[i].displayName, 0, sizeof a.hierarchy[i].displayName) != nullptr,
            "a folder's name is terminated");
  }
  for (int i = 0; a.carriers != nullptr && i < a.carrierCount; ++i) {
    Require(std::memchr(a.carriers[i], 0, sizeof a.carriers[i]) != nullptr, "a carrier is terminated");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Input input(data, size);
  const std::uint8_t command = input.Byte();
  Arguments arguments;
  arguments.folder = {};
  std::strcpy(arguments.folder.folder.serverId.text, "2:1");
  std::strcpy(arguments.folder.syncKey.text, "k1");
  arguments.folder.dataType = static_cast<DATATYPE>(input.Byte() % 3);
  arguments.folder.selected = 1;
  arguments.folder.notifyEnabled = 1;

  BodyTransport transport(input.Rest(), 3);
  ReadingStore store(arguments.folder);
  AirSync* const airSync = AirSync::getInstance();
  airSync->Initialize(SERVER_INFO(), "d", &transport, &store, ENCODING_WBXML, nullptr);
  airSync->Connect();
  UntilExpectedStop([&] {
    const SYNC_RESULT result = kCommands[command % kCommands.size()](*airSync, arguments);
    if (result == AS_RESULT_OK) TouchResults(arguments);
  });
  DisarmFrame();  // a stop leaves it armed
  airSync->Disconnect();
  airSync->Uninitialize();
  AirSync::destroyInstance();
  return 0;
}
