#include "StoreFixture.h"

#include <cstdlib>
#include <cstring>
#include <ostream>
#include <utility>

#include "store/ContactRecord.h"

namespace airsync::test {
namespace {

SERVER_ID idOf(const std::string& text) {
  SERVER_ID id = {};
  std::memcpy(id.text, text.data(), std::min(text.size(), sizeof(id.text) - 1));
  return id;
}

}  // namespace

Directory::Directory() {
  std::string pattern = (std::filesystem::temp_directory_path() / "airsync-store-XXXXXX").string();
  path_ = ::mkdtemp(pattern.data());
}

Directory::~Directory() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

Contact person(const std::string& first, const std::string& last) {
  Contact contact;
  contact.set("FirstName", first);
  contact.set("LastName", last);
  return contact;
}

void PrintTo(const Command& command, std::ostream* stream) {
  *stream << "{kind " << command.kind << ", server id \"" << command.serverId << "\", client id "
          << command.clientId << ", " << command.firstName << "}";
}

Command addOf(ItemNumber item, const std::string& firstName) {
  return {.kind = 0, .serverId = "", .clientId = static_cast<UINT32>(item), .firstName = firstName};
}
Command changeOf(const std::string& serverId, const std::string& firstName) {
  return {.kind = 2, .serverId = serverId, .clientId = 0, .firstName = firstName};
}
Command deleteOf(const std::string& serverId) {
  return {.kind = 1, .serverId = serverId, .clientId = 0, .firstName = ""};
}

SYNC_RESULT itemResult(SYNC_RESULT status) { return AS_RESULT_FAMILY_ITEM | status; }

Library::Library(Store& store, FolderNumber folder, const FolderSettings& settings)
    : store_(store), record_(store.folderInfo(folder, settings)) {
  store_.beginSync(record_.info());
}

std::optional<Command> Library::next() {
  void* record = nullptr;
  SERVER_ID id = {};
  UINT32 clientId = 0;
  int kind = -1;
  if (store_.GetNextChange(info().handle, &record, &id, &clientId, &kind) != 0) return std::nullopt;
  Command command{.kind = kind, .serverId = id.text, .clientId = kind == 0 ? clientId : 0, .firstName = ""};
  if (record != nullptr) command.firstName = static_cast<AS_CONTACT_T*>(record)->FirstName;
  return command;
}

std::vector<Command> Library::request(std::size_t room) {
  std::vector<Command> commands;
  if (kept_) commands.push_back(*std::exchange(kept_, std::nullopt));
  while (auto command = next()) {
    if (commands.size() == room) {
      kept_ = std::move(command);
      break;
    }
    commands.push_back(*std::move(command));
  }
  return commands;
}

void Library::add(const std::string& serverId, const Contact& contact) {
  ContactRecord record(contact);
  const SERVER_ID id = idOf(serverId);
  store_.AddServerItem(info().handle, &id, &record.record());
}
void Library::change(const std::string& serverId, const Contact& contact) {
  ContactRecord record(contact);
  const SERVER_ID id = idOf(serverId);
  store_.ChangeServerItem(info().handle, &id, &record.record());
}
void Library::remove(const std::string& serverId) {
  const SERVER_ID id = idOf(serverId);
  store_.DeleteServerItem(info().handle, &id);
}
void Library::addResult(ItemNumber clientId, const std::string& serverId, SYNC_RESULT result) {
  const auto client = static_cast<UINT32>(clientId);
  const SERVER_ID id = idOf(serverId);
  store_.AddResult(info().handle, &client, &id, result);
}
void Library::changeResult(const std::string& serverId, SYNC_RESULT result) {
  const SERVER_ID id = idOf(serverId);
  store_.ChangeResult(info().handle, &id, result);
}
void Library::deleteResult(const std::string& serverId, SYNC_RESULT result) {
  const SERVER_ID id = idOf(serverId);
  store_.DeleteResult(info().handle, &id, result);
}
void Library::key(const char* text) { store_.StoreSyncKey(info().handle, nullptr, text); }

StoreTest::StoreTest() : store_(std::make_unique<Store>(file())) {}

void StoreTest::reopen() {
  store_.reset();
  store_ = std::make_unique<Store>(file());
}

void StoreTest::updateFolder(const std::string& serverId, const std::string& name, INT32 type, int operation,
                             const std::string& parent) {
  BASE_FOLDER folder = {};
  std::memcpy(folder.serverId.text, serverId.data(), serverId.size());
  std::memcpy(folder.displayName, name.data(), name.size());
  std::memcpy(folder.parentId.text, parent.data(), parent.size());
  folder.type = type;
  store().UpdateFolder(&folder, operation);
}

void StoreTest::hierarchy(HierarchyFetch fetch, const std::function<void()>& updates, const char* key) {
  store().beginHierarchy(fetch);
  updates();
  _SYNC_KEY newKey = {};
  std::memcpy(newKey.text, key, std::strlen(key));
  store().commitHierarchy(newKey);
}

FolderNumber StoreTest::contacts() {
  hierarchy(
      HierarchyFetch::changes, [&] { updateFolder("c1", "Contacts", 9, AS_FOLDER_ADDED); }, "h1");
  return store().findFolder("c1").number;
}

FolderNumber StoreTest::synchronisedContacts(const char* key) {
  const FolderNumber folder = contacts();
  Library library(store(), folder);
  library.key(key);
  library.end();
  return folder;
}

FolderNumber StoreTest::contactsWith(const std::vector<std::string>& serverIds) {
  const FolderNumber folder = contacts();
  Library library(store(), folder);
  for (const std::string& id : serverIds) library.add(id, person(id));
  library.key("k1");
  library.end();
  return folder;
}

ItemNumber StoreTest::item(FolderNumber folder, const std::string& serverId) {
  return store().findItem(folder, serverId);
}

std::vector<std::string> StoreTest::names(FolderNumber folder) {
  std::vector<std::string> list;
  store().listItems(folder, [&](const ItemSummary& line) {
    const Contact contact = contactOf(line.number);
    const auto* name = contact.get<std::string>("FirstName");
    list.push_back(name == nullptr ? "" : *name);
    return true;
  });
  return list;
}

Contact StoreTest::contactOf(ItemNumber number) { return std::get<Contact>(store().item(number).value); }

std::optional<PendingChange> StoreTest::pending(ItemNumber number) { return store().item(number).pending; }

}  // namespace airsync::test
