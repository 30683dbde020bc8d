// A client of the folder commands, without any network.
#pragma once

#include "support/Device.h"

namespace demoserver {

inline Element folderRequest(std::string_view root,
                             const std::vector<std::pair<std::string_view, std::string>>& fields) {
  Element request(Page::Folders, root);
  for (const auto& [tag, text] : fields) request.add(tag, text);
  return request;
}

struct FolderAnswer {
  std::string status;
  std::string key;
  std::string serverId;
  std::string count;
  Lines changes;
};

inline FolderAnswer folderPartsOf(const Element& response) {
  FolderAnswer answer{std::string(response.textOf("Status")),
                      std::string(response.textOf("SyncKey")),
                      std::string(response.textOf("ServerId")),
                      "",
                      {}};
  if (const Element* changes = response.child("Changes")) {
    answer.count = changes->textOf("Count");
    Element rest = *changes;
    rest.children.erase(rest.children.begin());
    answer.changes = linesOf(&rest);
  }
  return answer;
}

class FolderDevice {
 public:
  explicit FolderDevice(State& state) : state_(state) {}

  std::string key = "0";

  FolderAnswer sync() {
    return take(runFolderSync(state_, "d", folderRequest("FolderSync", {{"SyncKey", key}})));
  }
  FolderAnswer create(const std::string& parent, const std::string& name, const std::string& type) {
    return take(runFolderCreate(
        state_, "d",
        folderRequest("CreateCmd",
                      {{"SyncKey", key}, {"ParentId", parent}, {"DisplayName", name}, {"Type", type}})));
  }
  FolderAnswer remove(const std::string& id) {
    return take(
        runFolderDelete(state_, "d", folderRequest("DeleteCmd", {{"SyncKey", key}, {"ServerId", id}})));
  }
  FolderAnswer update(const std::string& id, const std::string& parent, const std::string& name) {
    return take(runFolderUpdate(
        state_, "d",
        folderRequest("UpdateCmd",
                      {{"SyncKey", key}, {"ServerId", id}, {"ParentId", parent}, {"DisplayName", name}})));
  }

 private:
  FolderAnswer take(const Element& response) {
    const FolderAnswer answer = folderPartsOf(response);
    if (answer.status == "1") key = answer.key;
    return answer;
  }

  State& state_;
};

// An Inbox, and two mail folders of which the inner one comes first.
struct WithFolders : ::testing::Test {
  State state{":memory:"};
  FolderDevice device{state};

  WithFolders() {
    state.folders.create("0", "Inbox", kInbox, "f2");
    state.folders.create("u1", "Reisen", kUserMail, "u2");
    state.folders.create("0", "Privat", kUserMail, "u1");
  }
};

}  // namespace demoserver
