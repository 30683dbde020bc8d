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

/// A contacts folder: handle 7, collection "5", key "k1", selected.
inline AIRSYNC_STACK::FOLDER_INFO TestFolder() {
  AIRSYNC_STACK::FOLDER_INFO folder = {};
  Put(folder.folder.serverId.text, "5");
  folder.dataType = AIRSYNC_STACK::DATATYPE_CONTACTS;
  folder.handle = 7;
  Put(folder.syncKey.text, "k1");
  folder.conflict = 1;
  folder.selected = 1;
  return folder;
}

/// AirSync on the fakes, from before Initialize to after destroyInstance.
class ApiSession {
 public:
  explicit ApiSession(AIRSYNC_STACK::ENCODINGTYPE encoding = AIRSYNC_STACK::ENCODING_WBXML,
                      AIRSYNC_STACK::Log* log = nullptr) {
    FailingMemory::Reset();
    store.runningFolder = &folder;
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
};

struct ApiCommand {
  const char* name;       // of the operation, and in the request
  const char* entryLine;  // logged first
  AIRSYNC_STACK::SYNC_RESULT (*run)(ApiSession& session);
  const char* request;  // as HexAndText takes it
  const char* answer;
};

/// Every command, as ApiSession's values ask for it.
inline const std::vector<ApiCommand>& ApiCommands() {
  static const std::vector<ApiCommand>& commands = *new std::vector<ApiCommand>{
      {"FolderSync", "Into FolderSync", [](ApiSession& s) { return s.airSync->FolderSync(s.key); },
       "03 01 6A 00 00 07 56 52 03 'h1' 00 01 01",
       "03 01 6A 00 00 07 56 4C 03 '1' 00 01 52 03 'h2' 00 01"
       "  4E 57 03 '1' 00 01 4F 48 03 '21' 00 01 49 03 '0' 00 01 47 03 'Club' 00 01 4A 03 '14' 00 01 01 01"
       "  01"},
      {"GetHierarchy", "Into GetHierarchy",
       [](ApiSession& s) { return s.airSync->GetHierarchy(s.hierarchy, s.hierarchyCount); }, "",
       "03 01 6A 00 00 07 45"
       "  46 47 03 'Contacts' 00 01 48 03 '5' 00 01 49 03 '0' 00 01 4A 03 '9' 00 01 01"
       "  46 47 03 'Club' 00 01 48 03 '21' 00 01 49 03 '5' 00 01 4A 03 '14' 00 01 01"
       "  01"},
      {"FolderCreate", "Into FolderCreate",
       [](ApiSession& s) { return s.airSync->FolderCreate(s.key, &s.entry); },
       "03 01 6A 00 00 07 53 52 03 'h1' 00 01 49 03 '3' 00 01 47 03 'New' 00 01 4A 03 '12' 00 01 01",
       "03 01 6A 00 00 07 53 4C 03 '1' 00 01 52 03 'h2' 00 01 48 03 '22' 00 01 01"},
      {"FolderDelete", "Into DeleteCollection",
       [](ApiSession& s) { return s.airSync->FolderDelete(s.entry.serverId, s.key); },
       "03 01 6A 00 00 07 54 52 03 'h1' 00 01 48 03 '9' 00 01 01",
       "03 01 6A 00 00 07 54 4C 03 '1' 00 01 52 03 'h2' 00 01 01"},
      {"FolderUpdate", "Into FolderUpdate",
       [](ApiSession& s) { return s.airSync->FolderUpdate(s.key, &s.entry); },
       "03 01 6A 00 00 07 55 52 03 'h1' 00 01 48 03 '9' 00 01 49 03 '3' 00 01 47 03 'New' 00 01 01",
       "03 01 6A 00 00 07 55 4C 03 '1' 00 01 52 03 'h2' 00 01 01"},
      {"Sync", "Into sync cmd", [](ApiSession& s) { return s.airSync->Sync(s.key, &s.folder); },
       "03 01 6A 00 45 5C 4F 50 03 'Contacts' 00 01 4B 03 'k1' 00 01 52 03 '5' 00 01 1E 13"
       "  55 03 '10' 00 01 57 5B 03 '1' 00 01 59 03 '0' 00 01 01 01 01 01",
       "03 01 6A 00 45 5C 4F 50 03 'Contacts' 00 01 4B 03 'k2' 00 01 52 03 '5' 00 01 4E 03 '1' 00 01"
       "  56 49 4D 03 '5:1' 00 01 01 01 01 01 01"},
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
