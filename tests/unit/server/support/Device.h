// A client of the protocol functions, without any network: builds requests, keeps the key, picks answers
// apart.
#pragma once

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <string>
#include <utility>
#include <vector>

#include "data/State.h"
#include "protocol/FolderCommands.h"
#include "protocol/SyncCommand.h"
#include "wbxml/Element.h"

namespace demoserver {

inline Element contactData(const std::vector<std::pair<std::string_view, std::string>>& fields) {
  Element data(Page::Sync, "ApplicationData");
  for (const auto& [tag, text] : fields) data.children.emplace_back(Page::Contacts, tag, text);
  return data;
}

inline Element addCommand(const std::string& clientId, const std::string& firstName) {
  Element add(Page::Sync, "Add");
  add.add("ClientId", clientId);
  add.add(contactData({{"FirstName", firstName}}));
  return add;
}

inline Element changeCommand(const std::string& serverId, const std::string& firstName) {
  Element change(Page::Sync, "Change");
  change.add("ServerId", serverId);
  change.add(contactData({{"FirstName", firstName}}));
  return change;
}

inline Element readCommand(const std::string& serverId, bool read) {
  Element change(Page::Sync, "Change");
  change.add("ServerId", serverId);
  change.add("ApplicationData").children.emplace_back(Page::Mail, "Read", read ? "1" : "0");
  return change;
}

inline Element fetchCommand(const std::string& serverId) {
  Element fetch(Page::Sync, "Fetch");
  fetch.add("ServerId", serverId);
  return fetch;
}

inline Element deleteCommand(const std::string& serverId) {
  Element remove(Page::Sync, "Delete");
  remove.add("ServerId", serverId);
  return remove;
}

// One line per command or response: "Add ServerId=i/1 FirstName=A". Ids stay as they are.
inline std::vector<std::string> linesOf(const Element* parent) {
  std::vector<std::string> lines;
  if (parent == nullptr) return lines;
  for (const Element& command : parent->children) {
    std::string line(command.name);
    for (const Element& part : command.children) {
      if (part.name != "ApplicationData") line.append(" ").append(part.name).append("=").append(*part.text);
      for (const Element& field : part.children)
        line.append(" ").append(field.name).append("=").append(field.text.value_or("..."));
    }
    lines.push_back(line);
  }
  return lines;
}

struct SyncRequest {
  std::string key = {};
  std::vector<Element> commands = {};
  std::string folder = "f9";
  std::string itemClass = "Contacts";
  int window = 10;
  int conflict = 1;
  bool getChanges = true;
  bool deletesAsMoves = false;
  int filter = 0;
  int truncation = 8;
};

inline Element documentOf(const SyncRequest& request) {
  Element collection(Page::Sync, "Collection");
  collection.add("Class", request.itemClass);
  collection.add("SyncKey", request.key);
  collection.add("CollectionId", request.folder);
  if (request.key != "0") {
    if (request.deletesAsMoves) collection.add("DeletesAsMoves");
    if (request.getChanges) collection.add("GetChanges");
    collection.add("WindowSize", std::to_string(request.window));
    Element& options = collection.add("Options");
    options.add("Conflict", std::to_string(request.conflict));
    options.add("Truncation", std::to_string(request.truncation));
    options.add("FilterType", std::to_string(request.filter));
  }
  if (!request.commands.empty()) collection.add("Commands").children = request.commands;
  Element sync(Page::Sync, "Sync");
  sync.add("Collections").add(std::move(collection));
  return sync;
}

// The parts of an answer with one collection.
struct SyncAnswer {
  std::string status;
  std::string key;
  bool more = false;
  std::vector<std::string> commands;
  std::vector<std::string> responses;
};

inline SyncAnswer partsOf(const Element& response) {
  const Element* collections = response.child("Collections");
  if (collections == nullptr || collections->children.size() != 1) {
    ADD_FAILURE() << "not exactly one collection";
    return {};
  }
  const Element& collection = collections->children.front();
  return {std::string(collection.textOf("Status")), std::string(collection.textOf("SyncKey")),
          collection.child("MoreAvailable") != nullptr, linesOf(collection.child("Commands")),
          linesOf(collection.child("Responses"))};
}

class Device {
 public:
  explicit Device(State& state, std::string id = "device-1") : state_(state), id_(std::move(id)) {}

  Habits habits;
  std::string key = "0";

  // Sends the request with its own key.
  SyncAnswer send(const SyncRequest& request) {
    const auto response = runSync(state_, habits, id_, documentOf(request));
    if (!response) {
      ADD_FAILURE() << "an empty answer";
      return {};
    }
    return partsOf(*response);
  }

  // Sends the request with the current key and takes the new one over.
  SyncAnswer sync(SyncRequest request = {}) {
    request.key = key;
    const SyncAnswer answer = send(request);
    if (answer.status == "1") key = answer.key;
    return answer;
  }

  // Starts anew and fetches everything.
  void catchUp(SyncRequest request = {}) {
    key = "0";
    sync(request);
    request.window = 500;
    while (sync(request).more) {
    }
  }

 private:
  State& state_;
  std::string id_;
};

// A state in memory with the one folder that most tests need.
struct WithContacts : ::testing::Test {
  State state{":memory:"};
  Device device{state};

  WithContacts() { state.folders.create("0", "Contacts", kContacts, "f9"); }

  std::string put(const std::string& firstName) {
    return state.items.add("f9", {{"FirstName", firstName}}).id;
  }
  std::string nameOf(const std::string& id) {
    const auto item = state.items.find("f9", id);
    return item && !item->gone ? item->record.value("FirstName", "") : "gone";
  }
  std::int64_t count() { return state.items.count("f9"); }
};

// An Inbox, a Calendar, Deleted Items, and noon of 21 November 2026.
struct WithMail : ::testing::Test {
  State state{":memory:"};
  Device device{state};
  const SyncRequest mail = {.folder = "f2", .itemClass = "Email"};
  const SyncRequest events = {.folder = "f8", .itemClass = "Calendar"};

  WithMail() {
    state.clock.fixed = momentOf("2026-11-21T12:00:00Z");
    state.folders.create("0", "Inbox", kInbox, "f2");
    state.folders.create("0", "Deleted Items", kDeletedItems, "f4");
    state.folders.create("0", "Calendar", kCalendar, "f8");
  }

  void setNow(const char* time) { state.clock.fixed = momentOf(time); }
  std::string put(const std::string& subject, const char* received = "2026-11-21T11:00:00Z") {
    return state.items
        .add("f2", {{"Subject", subject}, {"DateReceived", received}, {"Importance", 1}, {"Read", false}})
        .id;
  }
  std::string putEvent(const std::string& subject, const char* end) {
    return state.items.add("f8", {{"Subject", subject}, {"EndTime", end}}).id;
  }
  nlohmann::json recordOf(const std::string& folder, const std::string& id) {
    const auto item = state.items.find(folder, id);
    return item ? item->record : nullptr;
  }
};

using Lines = std::vector<std::string>;

}  // namespace demoserver
