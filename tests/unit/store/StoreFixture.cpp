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

std::string nameOf(DATATYPE dataType, const void* record) {
  switch (dataType) {
    case DATATYPE_CONTACTS:
      return static_cast<const AS_CONTACT_T*>(record)->FirstName;
    case DATATYPE_CALENDAR:
      return static_cast<const AS_CALENDAR_T*>(record)->Subject;
    case DATATYPE_EMAIL:
      return static_cast<const AS_EMAIL_T*>(record)->Read != 0 ? "read" : "unread";
  }
  return {};
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

Event event(const std::string& subject) {
  Event event;
  event.fields.set("Subject", subject);
  event.fields.set("StartTime", UtcTime{.year = 2026, .month = 11, .day = 21, .hour = 9});
  return event;
}

Mail mail(const std::string& subject, bool read) {
  Mail mail;
  mail.fields.set("Subject", subject);
  mail.fields.set("Read", read);
  return mail;
}

Event fullEvent() {
  Event event;
  event.fields = filled<AS_CALENDAR_T>();
  event.recurrence = filled<AS_RECURRENCE_T>(1);
  for (int seed = 2; seed < 5; ++seed) event.exceptions.push_back(filled<AS_EXCEPTION_T>(seed));
  return event;
}

Mail fullMail() {
  Mail mail;
  mail.fields = filled<AS_EMAIL_T>();
  for (int seed = 1; seed < 4; ++seed) mail.attachments.push_back(filled<AS_ATTACHMENT_T>(seed));
  mail.meetingRequest = MeetingRequest{filled<AS_MEETING_REQUEST_T>(4), filled<AS_RECURRENCE_T>(5)};
  return mail;
}

AnyRecord::AnyRecord(const ItemValue& value) {
  if (const auto* contact = std::get_if<Contact>(&value)) {
    contact_ = std::make_unique<ContactRecord>(*contact);
    record_ = &contact_->record();
  } else if (const auto* own = std::get_if<Event>(&value)) {
    event_ = std::make_unique<EventRecord>(*own);
    record_ = &event_->record();
  } else {
    mail_ = std::make_unique<MailRecord>(std::get<Mail>(value));
    record_ = &mail_->record();
  }
}

void PrintTo(const Command& command, std::ostream* stream) {
  *stream << "{kind " << command.kind << ", server id \"" << command.serverId << "\", client id "
          << command.clientId << ", " << command.name << "}";
}

Command addOf(ItemNumber item, const std::string& name) {
  return {.kind = 0, .serverId = "", .clientId = static_cast<UINT32>(item), .name = name};
}
Command changeOf(const std::string& serverId, const std::string& name) {
  return {.kind = 2, .serverId = serverId, .clientId = 0, .name = name};
}
Command deleteOf(const std::string& serverId) {
  return {.kind = 1, .serverId = serverId, .clientId = 0, .name = ""};
}

SYNC_RESULT itemResult(SYNC_RESULT status) { return AS_RESULT_FAMILY_ITEM | status; }

Library::Library(Store& store, FolderNumber folder, const FolderSettings& settings, bool allowDeletes)
    : store_(store), record_(store.folderInfo(folder, settings)) {
  store_.beginSync(record_.info(), {.conflict = settings.conflict, .allowDeletes = allowDeletes});
}

std::optional<Command> Library::next() {
  void* record = nullptr;
  SERVER_ID id = {};
  UINT32 clientId = 0;
  int kind = -1;
  if (store_.GetNextChange(info().handle, &record, &id, &clientId, &kind) != 0) return std::nullopt;
  Command command{.kind = kind, .serverId = id.text, .clientId = kind == 0 ? clientId : 0, .name = ""};
  if (record != nullptr) command.name = nameOf(info().dataType, record);
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

void Library::add(const std::string& serverId, const ItemValue& value) {
  const AnyRecord record(value);
  const SERVER_ID id = idOf(serverId);
  store_.AddServerItem(info().handle, &id, record.get());
}
void Library::change(const std::string& serverId, const ItemValue& value) {
  const AnyRecord record(value);
  const SERVER_ID id = idOf(serverId);
  store_.ChangeServerItem(info().handle, &id, record.get());
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

FolderNumber StoreTest::calendar() {
  hierarchy(
      HierarchyFetch::changes, [&] { updateFolder("e1", "Calendar", 8, AS_FOLDER_ADDED); }, "h1");
  return store().findFolder("e1").number;
}

FolderNumber StoreTest::inbox() {
  hierarchy(
      HierarchyFetch::changes, [&] { updateFolder("m1", "Inbox", 2, AS_FOLDER_ADDED); }, "h1");
  return store().findFolder("m1").number;
}

SyncOutcome StoreTest::exchange(FolderNumber folder, const std::function<void(Library&)>& bring,
                                const SyncRules& rules) {
  Library library(store(), folder, {.conflict = rules.conflict, .supported = std::nullopt},
                  rules.allowDeletes);
  bring(library);
  library.key("k9");
  return library.end();
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
