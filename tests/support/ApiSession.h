// A connected library, and the commands that it has, each with a server's answer.
#ifndef TESTS_SUPPORT_API_SESSION_H
#define TESTS_SUPPORT_API_SESSION_H

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "api/AirSync.h"
#include "support/Account.h"
#include "support/FailingMemory.h"
#include "support/HexAndText.h"
#include "support/RecordingStore.h"
#include "support/ScriptedTransport.h"

namespace airsync_test {

/// A contacts folder: handle 7, collection "5", key "k1", selected, to be notified of.
inline AIRSYNC_STACK::FOLDER_INFO TestFolder() {
  AIRSYNC_STACK::FOLDER_INFO folder = {};
  Put(folder.folder.serverId.text, "5");
  folder.dataType = AIRSYNC_STACK::DATATYPE_CONTACTS;
  folder.handle = 7;
  Put(folder.syncKey.text, "k1");
  folder.conflict = 1;
  folder.selected = 1;
  folder.notifyEnabled = 1;
  return folder;
}

/// AirSync on the fakes, from before Initialize to after destroyInstance.
class ApiSession {
 public:
  explicit ApiSession(AIRSYNC_STACK::ENCODINGTYPE encoding = AIRSYNC_STACK::ENCODING_WBXML,
                      AIRSYNC_STACK::Log* log = nullptr) {
    FailingMemory::Reset();
    store.runningFolder = &folder;
    store.folders = {&folder};
    airSync->Initialize(TestAccount(), "D-0042", &transport, &store, encoding, log);
    airSync->Connect();
    transport.ClearCalls();
  }

  ~ApiSession() {
    FailingMemory::Reset();
    transport.OnCall(nullptr);
    airSync->Disconnect();
    airSync->Uninitialize();
    AIRSYNC_STACK::AirSync::destroyInstance();
  }

  ApiSession(const ApiSession&) = delete;
  ApiSession& operator=(const ApiSession&) = delete;

  AIRSYNC_STACK::AirSync* const airSync = AIRSYNC_STACK::AirSync::getInstance();
  ScriptedTransport transport;
  RecordingStore store;
  AIRSYNC_STACK::FOLDER_INFO folder = TestFolder();

  // What the folder commands are given and give back.
  AIRSYNC_STACK::_SYNC_KEY key = {"h1"};
  AIRSYNC_STACK::BASE_FOLDER entry = {"New", 12, {"9"}, {"3"}};
  AIRSYNC_STACK::BASE_FOLDER* hierarchy = nullptr;
  int hierarchyCount = -1;

  // The same for the commands about items: one item "5:1" of folder 5, to be moved to folder 6.
  AIRSYNC_STACK::SERVER_ID item = {"5:1"};
  AIRSYNC_STACK::FOLDER_ID source = {"5"};
  AIRSYNC_STACK::FOLDER_ID destination = {"6"};
  AIRSYNC_STACK::SERVER_ID newItem = {"none"};
  int moved = -1;
  AIRSYNC_STACK::SERVER_ID calendarItem = {"none"};

  // For messages, attachments and notifications.
  std::string message = "Subject: Hi\r\n\r\nHello\r\n";
  unsigned char attachment[5] = {};
  unsigned char versions[4] = {};
  unsigned char commands[4] = {};
  unsigned char (*carriers)[64] = nullptr;
  unsigned short carrierCount = 77;

  const unsigned char* Message() const { return reinterpret_cast<const unsigned char*>(message.data()); }
  unsigned int MessageLength() const { return static_cast<unsigned int>(message.size()); }

  /// Releases the arrays that were handed out.
  void ReleaseLists() {
    if (hierarchy != nullptr) AIRSYNC_STACK::AdapterFree(hierarchy);
    if (carriers != nullptr) AIRSYNC_STACK::AdapterFree(carriers);
    hierarchy = nullptr;
    carriers = nullptr;
  }
};

struct ApiCommand {
  const char* name;       // of the operation
  const char* command;    // in the request
  const char* entryLine;  // logged first; null for none
  AIRSYNC_STACK::SYNC_RESULT (*run)(ApiSession& session);
  const char* request;  // the document sent, as HexAndText takes it; empty for a request without one
  const char* answer;
  bool document = true;  // whether the answer is one
};

/// Every command, as ApiSession's values ask for it; but for SetDeviceAddress, which never gets an answer.
inline const std::vector<ApiCommand>& ApiCommands() {
  static const std::vector<ApiCommand>& commands = *new std::vector<ApiCommand>{
      {"FolderSync", "FolderSync", "Into FolderSync",
       [](ApiSession& s) { return s.airSync->FolderSync(s.key); }, "03 01 6A 00 00 07 56 52 03 'h1' 00 01 01",
       "03 01 6A 00 00 07 56 4C 03 '1' 00 01 52 03 'h2' 00 01"
       "  4E 57 03 '1' 00 01 4F 48 03 '21' 00 01 49 03 '0' 00 01 47 03 'Club' 00 01 4A 03 '14' 00 01 01 01"
       "  01"},
      {"GetHierarchy", "GetHierarchy", "Into GetHierarchy",
       [](ApiSession& s) { return s.airSync->GetHierarchy(s.hierarchy, s.hierarchyCount); }, "",
       "03 01 6A 00 00 07 45"
       "  46 47 03 'Contacts' 00 01 48 03 '5' 00 01 49 03 '0' 00 01 4A 03 '9' 00 01 01"
       "  46 47 03 'Club' 00 01 48 03 '21' 00 01 49 03 '5' 00 01 4A 03 '14' 00 01 01"
       "  01"},
      {"FolderCreate", "FolderCreate", "Into FolderCreate",
       [](ApiSession& s) { return s.airSync->FolderCreate(s.key, &s.entry); },
       "03 01 6A 00 00 07 53 52 03 'h1' 00 01 49 03 '3' 00 01 47 03 'New' 00 01 4A 03 '12' 00 01 01",
       "03 01 6A 00 00 07 53 4C 03 '1' 00 01 52 03 'h2' 00 01 48 03 '22' 00 01 01"},
      {"FolderDelete", "FolderDelete", "Into DeleteCollection",
       [](ApiSession& s) { return s.airSync->FolderDelete(s.entry.serverId, s.key); },
       "03 01 6A 00 00 07 54 52 03 'h1' 00 01 48 03 '9' 00 01 01",
       "03 01 6A 00 00 07 54 4C 03 '1' 00 01 52 03 'h2' 00 01 01"},
      {"FolderUpdate", "FolderUpdate", "Into FolderUpdate",
       [](ApiSession& s) { return s.airSync->FolderUpdate(s.key, &s.entry); },
       "03 01 6A 00 00 07 55 52 03 'h1' 00 01 48 03 '9' 00 01 49 03 '3' 00 01 47 03 'New' 00 01 01",
       "03 01 6A 00 00 07 55 4C 03 '1' 00 01 52 03 'h2' 00 01 01"},
      {"Sync", "Sync", "Into sync cmd", [](ApiSession& s) { return s.airSync->Sync(s.key, &s.folder); },
       "03 01 6A 00 45 5C 4F 50 03 'Contacts' 00 01 4B 03 'k1' 00 01 52 03 '5' 00 01 1E 13"
       "  55 03 '10' 00 01 57 5B 03 '1' 00 01 59 03 '0' 00 01 01 01 01 01",
       "03 01 6A 00 45 5C 4F 50 03 'Contacts' 00 01 4B 03 'k2' 00 01 52 03 '5' 00 01 4E 03 '1' 00 01"
       "  56 49 4D 03 '5:1' 00 01 01 01 01 01 01"},
      {"Fetch", "Sync", "Into Fetch", [](ApiSession& s) { return s.airSync->Fetch(&s.folder, s.item); },
       "03 01 6A 00 45 5C 4F 50 03 'Contacts' 00 01 4B 03 'k1' 00 01 52 03 '5' 00 01 1E 13"
       "  57 59 03 '0' 00 01 01 56 4A 4D 03 '5:1' 00 01 01 01 01 01 01",
       "03 01 6A 00 45 5C 4F 50 03 'Contacts' 00 01 4B 03 'k2' 00 01 52 03 '5' 00 01 4E 03 '1' 00 01"
       "  46 4A 4D 03 '5:1' 00 01 4E 03 '1' 00 01 5D 00 01 5E 03 'Ada' 00 01 01 01 01 01 01 01"},
      {"GetItemEstimate", "GetItemEstimate", "GetItemEstimate",
       [](ApiSession& s) { return s.airSync->GetItemEstimate(); },
       "03 01 6A 00 00 06 45 47 48 49 03 'Contacts' 00 01 4A 03 '5' 00 01 58 03 '0' 00 01 4B 03 'k1' 00 01"
       "  01 01 01",
       "03 01 6A 00 00 06 45 4D 4E 03 '1' 00 01 48 49 03 'Contacts' 00 01 4A 03 '5' 00 01 4C 03 '12' 00 01"
       "  01 01 01"},
      {"MoveItems", "MoveItems", "Into MoveItems",
       [](ApiSession& s) {
         return s.airSync->MoveItems(&s.item, &s.source, &s.destination, &s.newItem, &s.moved, 1);
       },
       "03 01 6A 00 00 05 45 46 47 03 '5:1' 00 01 48 03 '5' 00 01 49 03 '6' 00 01 01 01",
       "03 01 6A 00 00 05 45 4A 47 03 '5:1' 00 01 4B 03 '3' 00 01 4C 03 '6:9' 00 01 01 01"},
      {"MeetingResponse", "MeetingResponse", "Into SendMeetingResponse",
       [](ApiSession& s) {
         return s.airSync->MeetingResponse(s.item, s.source, AIRSYNC_STACK::AS_MEETING_RESPONSE_TENTATIVE,
                                           s.calendarItem);
       },
       "03 01 6A 00 00 08 47 49 4C 03 '2' 00 01 46 03 '5' 00 01 48 03 '5:1' 00 01 01 01",
       "03 01 6A 00 00 08 47 4A 48 03 '5:1' 00 01 4B 03 '1' 00 01 45 03 '7:3' 00 01 01 01"},
      {"NotifyEnable", "Notify", nullptr,
       [](ApiSession& s) {
         return s.airSync->NotifyEnable(reinterpret_cast<const unsigned char*>("c1"), "Ada", "ada@x", 60,
                                        s.carriers, s.carrierCount);
       },
       "03 01 6A 00 00 03 45 48 03 '60' 00 01 49 57 03 'Ada' 00 01 4D 03 'ada@x' 00 01 01"
       "  4A 4B 4C 03 '5' 00 01 01 01 01",
       "03 01 6A 00 00 03 45 4E 4F 03 'c1' 00 01 4F 03 'c2' 00 01 01 50 03 '1' 00 01"
       "  51 4B 4C 03 '5' 00 01 50 03 '1' 00 01 01 01 01"},
      {"GetCarrierList", "Notify", nullptr,
       [](ApiSession& s) { return s.airSync->GetCarrierList(s.carriers, s.carrierCount); },
       "03 01 6A 00 00 03 45 09 01", "03 01 6A 00 00 03 45 50 03 '1' 00 01 4E 4F 03 'c1' 00 01 01 01"},
      {"SendMail", "SendMail", "Into SendMail",
       [](ApiSession& s) { return s.airSync->SendMail(s.Message(), s.MessageLength(), false, true); }, "", "",
       false},
      {"SmartReply", "SmartReply&ItemId=5:1&CollectionId=5", "Into SmartReply",
       [](ApiSession& s) {
         return s.airSync->SmartReply(s.Message(), s.MessageLength(), false, s.item, s.source, true);
       },
       "", "", false},
      {"SmartForward", "SmartForward&ItemId=5:1&CollectionId=5", "Into SmartForward",
       [](ApiSession& s) {
         return s.airSync->SmartForward(s.Message(), s.MessageLength(), false, s.item, s.source, false);
       },
       "", "", false},
      {"GetAttachment", "GetAttachment&AttachmentName=a:1", "Into GetAttachment",
       [](ApiSession& s) { return s.airSync->GetAttachment("a:1", s.attachment, 5, false); }, "", "'bytes'",
       false},
      {"GetOptions", nullptr, "Into GetOptions",
       [](ApiSession& s) { return s.airSync->GetOptions(s.versions, 4, s.commands, 4); }, "", "", false},
  };
  return commands;
}

inline const ApiCommand& CommandNamed(const std::string& name) {
  for (const ApiCommand& command : ApiCommands()) {
    if (command.name == name) return command;
  }
  ADD_FAILURE() << "no such command: " << name;
  return ApiCommands()[0];
}

/// Runs the command against its answer.
inline AIRSYNC_STACK::SYNC_RESULT Perform(ApiSession& session, const std::string& name) {
  session.transport.Answer(HexAndText(CommandNamed(name).answer));
  return CommandNamed(name).run(session);
}

}  // namespace airsync_test

#endif
