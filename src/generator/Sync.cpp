// The Sync request: one collection, with the initial handshake or with as many local changes as fit.
#include "api/AirSync.h"
#include "generator/Generator.h"
#include "http/Communications.h"
#include "support/InlineText.h"
#include "support/Porting.h"
#include "support/ServerId.h"

namespace AIRSYNC_STACK {

// What the three data classes differ in, by data type.
struct Generator::ItemClass {
  const char* name;
  INT32 windowSize;
  UINT8 codePage;
  bool addable;             // a local Add can be sent
  const char* missingItem;  // logged when an Add comes without a record
  void (Generator::*children)(sml_element* data, bool add);
};

const Generator::ItemClass Generator::kItemClasses[] = {
    {"Contacts", 10, 1, true, "No Contact to add to server\n", &Generator::ContactChildren},
    {"Calendar", 15, 4, true, "No Calendar to add to server", &Generator::CalendarChildren},
    {"Email", 5, 2, false, nullptr, &Generator::EmailChildren},
};

namespace {

// Encoded sizes, in bytes: what the commands of one request may measure together, and what a command that
// waited for its own request may measure.
const unsigned int kCommandsBudget = 9488;
const UINT16 kLongestPendingCommand = 9999;

const INT32 kNoClientCommands = 2;
const INT32 kNoServerChanges = 1;

}  // namespace

sml_element* Generator::Sync(Communications* comms, FOLDER_INFO* folder, const _SYNC_KEY& notifyKey,
                             GENERATOR_STATUS& status) {
  LogLine(AS_LOG_LEVEL_TRACE, "into Generator::SyncCmd");
  if (pendingAttached_) ForgetTrackedMemory();
  folder_ = folder;
  comms_ = comms;
  sml_element* sync = SE_New("Sync", nullptr);
  SE_AddChild(sync, Collections(notifyKey));
  status = status_;
  return sync;
}

sml_element* Generator::Collections(const _SYNC_KEY& notifyKey) {
  sml_element* collections = SE_New("Collections", nullptr);
  SE_AddChild(collections, Collection(notifyKey));
  return collections;
}

sml_element* Generator::Collection(const _SYNC_KEY& notifyKey) {
  sml_element* collection = SE_New("Collection", nullptr);
  SE_AddChild(collection, Class());
  LogLine(AS_LOG_LEVEL_INFO,
          "current SyncKey:", TerminatedText<sizeof(_SYNC_KEY)>(folder_->syncKey.text).text);
  status_ = GENERATOR_DONE;
  if (InlineTextEquals(folder_->syncKey.text, "0")) {
    LogLine(AS_LOG_LEVEL_INFO, "Initial Sync");
    SE_AddChild(collection, SE_New("SyncKey", "0"));
    SE_AddChild(collection, CollectionId());
    SE_AddChild(collection, Supported(folder_->dataType));
    return collection;
  }
  LogLine(AS_LOG_LEVEL_INFO, "Normal or Full Sync");
  const bool clientCommands = folder_->syncMode != kNoClientCommands;
  SE_AddChild(collection, Synckey(folder_->syncKey));
  SE_AddChild(collection, CollectionId());
  if (folder_->notifyGuid != 0) SE_AddChild(collection, NotifyGUID(notifyKey));
  if (clientCommands) SE_AddChild(collection, DeletesAsMoves());
  if (folder_->syncMode != kNoServerChanges) SE_AddChild(collection, GetChanges());
  SE_AddChild(collection, WindowSize());
  SE_AddChild(collection, Options());
  if (clientCommands) SE_AddChild(collection, Commands());
  return collection;
}

const Generator::ItemClass* Generator::ClassOf(const FOLDER_INFO& folder) {
  const UINT32 type = static_cast<UINT32>(folder.dataType);
  return type < sizeof(kItemClasses) / sizeof(kItemClasses[0]) ? &kItemClasses[type] : nullptr;
}

const char* Generator::ClassName(const FOLDER_INFO& folder) {
  const ItemClass* itemClass = ClassOf(folder);
  return itemClass == nullptr ? nullptr : itemClass->name;
}

const Generator::ItemClass& Generator::FolderClass() const {
  const ItemClass* itemClass = ClassOf(*folder_);
  if (itemClass == nullptr) AirSync::getInstance()->AbortSync(AS_RESULT_INVALID_ARGUMENT);
  return *itemClass;
}

sml_element* Generator::Class() { return SE_New("Class", FolderClass().name); }

sml_element* Generator::Synckey(const _SYNC_KEY& key) {
  return SE_New("SyncKey", TerminatedText<sizeof(_SYNC_KEY)>(key.text).text);
}

sml_element* Generator::CollectionId() {
  return SE_New("CollectionId", TerminatedText<sizeof(FOLDER_ID)>(folder_->folder.serverId.text).text);
}

sml_element* Generator::Supported(DATATYPE type) {
  const SUPPORTED_TAG* tags = nullptr;
  UINT8 count = 0;
  if (type == DATATYPE_CONTACTS) {
    tags = folder_->options.contacts.supported;
    count = folder_->options.contacts.supportedCount;
  } else if (type == DATATYPE_CALENDAR) {
    tags = folder_->options.calendar.supported;
    count = folder_->options.calendar.supportedCount;
  }
  if (tags == nullptr || count == 0) return nullptr;
  sml_element* supported = SE_New("Supported", nullptr);
  supported->CodePage = kItemClasses[type].codePage;
  for (UINT8 i = 0; i < count; ++i) {
    SE_AddChild(supported, SE_New(TerminatedText<sizeof(SUPPORTED_TAG)>(tags[i]).text, nullptr));
  }
  return supported;
}

sml_element* Generator::NotifyGUID(const _SYNC_KEY& notifyKey) {
  return SE_New("NotifyGUID", TerminatedText<sizeof(_SYNC_KEY)>(notifyKey.text).text);
}

sml_element* Generator::DeletesAsMoves() { return SE_New("DeletesAsMoves", nullptr); }

sml_element* Generator::GetChanges() { return SE_New("GetChanges", nullptr); }

sml_element* Generator::WindowSize() { return NumberElement("WindowSize", FolderClass().windowSize); }

sml_element* Generator::Options() {
  sml_element* options = SE_New("Options", nullptr);
  SE_AddChild(options, NumberElement("Conflict", folder_->conflict));
  SE_AddChild(options, NumberElement("Truncation", folder_->truncation));
  SE_AddChild(options, FilterType("FilterType", *folder_));
  return options;
}

// Contacts have no filter.
sml_element* Generator::FilterType(const char* tag, const FOLDER_INFO& folder) {
  switch (folder.dataType) {
    case DATATYPE_CALENDAR:
      return NumberElement(tag, folder.options.calendar.filterType);
    case DATATYPE_EMAIL:
      return NumberElement(tag, folder.options.email.filterType);
    default:
      return nullptr;
  }
}

// The change walk. A command that does not fit stays pending and leads the next request; storage is not asked
// for it again.
sml_element* Generator::Commands() {
  sml_element* commands = SE_New("Commands", nullptr);
  unsigned int size = 0;
  if (pending_ != nullptr && !AttachPending(commands, size)) return commands;
  for (;;) {
    int kind = -1;
    item_ = nullptr;
    if (storage_->GetNextChange(folder_->handle, &item_, &serverId_, &clientId_, &kind) != 0) break;
    pending_ = BuildCommand(kind);
    if (pending_ == nullptr) continue;
    pendingFolder_ = folder_->folder.serverId;
    const UINT16 length = Measure(pending_);
    if (size + length > kCommandsBudget) {
      status_ = GENERATOR_MORE;
      break;
    }
    SE_AddChild(commands, pending_);
    size += length;
    pending_ = nullptr;
  }
  return EndCommands(commands);
}

// The command that waited goes first. One that is too large even so goes out as well and stays recorded as
// pending: the caller ends the Sync for it.
bool Generator::AttachPending(sml_element* commands, unsigned int& size) {
  const UINT16 length = Measure(pending_);
  SE_AddChild(commands, pending_);
  if (length > kLongestPendingCommand) {
    status_ = GENERATOR_ERROR;
    pendingAttached_ = true;
    return false;
  }
  pending_ = nullptr;
  size = length;
  return true;
}

// Empty Commands are not sent.
sml_element* Generator::EndCommands(sml_element* commands) {
  if (SE_GetNumberOfChildren(commands) > 0) return commands;
  SE_Destroy(commands);
  if (pending_ != nullptr) status_ = GENERATOR_ERROR;
  return nullptr;
}

UINT16 Generator::Measure(const sml_element* element) {
  return SE_HowLongIsIt(element, encoding_, &Communications::CountOutStream, *comms_);
}

sml_element* Generator::BuildCommand(int kind) {
  switch (kind) {
    case AS_CHANGE_ADD:
      return FolderClass().addable ? Add() : nullptr;
    case AS_CHANGE_DELETE:
      return Delete();
    case AS_CHANGE_CHANGE:
      return Change();
    default:
      return nullptr;
  }
}

sml_element* Generator::Add() {
  unsigned int clientId = 0;
  sml_element* data = ApplicationData(clientId);
  if (data == nullptr) return nullptr;
  sml_element* add = SE_New("Add", nullptr);
  SE_AddChild(add, ClientID(clientId));
  SE_AddChild(add, data);
  return add;
}

sml_element* Generator::Change() {
  SERVER_ID id = {};
  sml_element* data = ApplicationData(id);
  if (data == nullptr) return nullptr;
  sml_element* change = SE_New("Change", nullptr);
  SE_AddChild(change, ServerID(id));
  SE_AddChild(change, data);
  return change;
}

sml_element* Generator::Delete() {
  sml_element* command = SE_New("Delete", nullptr);
  SE_AddChild(command, ServerID(serverId_));
  return command;
}

sml_element* Generator::ClientID(unsigned int clientId) {
  return NumberElement("ClientId", static_cast<INT32>(clientId));
}

sml_element* Generator::ServerID(SERVER_ID& id) {
  char text[ServerId::kLength + 1];
  return SE_New("ServerId", ServerId::toChar(id, text));
}

sml_element* Generator::ApplicationData(SERVER_ID& id) {
  id = serverId_;
  return item_ == nullptr ? nullptr : ItemData(false);
}

sml_element* Generator::ApplicationData(unsigned int& clientId) {
  clientId = clientId_;
  const ItemClass& itemClass = FolderClass();
  if (item_ != nullptr) return itemClass.addable ? ItemData(true) : nullptr;
  if (itemClass.missingItem != nullptr) LogLine(AS_LOG_LEVEL_INFO, itemClass.missingItem);
  return nullptr;
}

sml_element* Generator::ItemData(bool add) {
  const ItemClass& itemClass = FolderClass();
  sml_element* data = SE_New("ApplicationData", nullptr);
  data->CodePage = itemClass.codePage;
  (this->*itemClass.children)(data, add);
  return data;
}

void Generator::EmailChildren(sml_element* data, bool) {
  SE_AddChild(data, Read(static_cast<AS_EMAIL_T*>(item_)));
}

sml_element* Generator::Read(AS_EMAIL_T* email) { return NumberElement("Read", email->Read); }

}  // namespace AIRSYNC_STACK
