// The Sync response: the server's commands, its answers to the client's, and the new sync key.
#include "api/AirSync.h"
#include "document/Validate.h"
#include "parser/Parser.h"
#include "support/Assert.h"
#include "support/InlineText.h"
#include "support/Porting.h"
#include "support/ServerId.h"

namespace AIRSYNC_STACK {

// What the three data classes differ in, by data type.
struct Parser::ItemClass {
  const char* name;
  Handler decoder;
};

const Parser::ItemClass Parser::kItemClasses[] = {
    {"Contacts", &Parser::ProcessContactApplicationData},
    {"Calendar", &Parser::ProcessCalendarApplicationData},
    {"Email", &Parser::ProcessEmailApplicationData},
};

const Parser::ItemClass* Parser::FolderClass() const {
  const UINT32 type = static_cast<UINT32>(folder_->dataType);
  return type < sizeof(kItemClasses) / sizeof(kItemClasses[0]) ? &kItemClasses[type] : nullptr;
}

void Parser::Sync(const sml_element* pSyncCmd, AirSyncDBInterface* db, FOLDER_INFO* folder,
                  PARSER_STATUS& status) {
  LogLine(AS_LOG_LEVEL_TRACE, "into Parser::SyncCmd");
  Begin(kStorage | kFolder);
  storage_ = db;
  folder_ = folder;
  assert(!SmlStrcmp(SE_GetTag(pSyncCmd), "Sync"));
  ReadSyncResponse(pSyncCmd);
  status = static_cast<PARSER_STATUS>(moreAvailable_);
  CheckCancelled();
  ForgetArguments();
}

void Parser::ReadSyncResponse(const sml_element* root) {
  syncKey_[0] = '\0';  // so that no earlier response's key is stored
  HandleChildren(root, "Version");
  status_ = 1;
  HandleChildren(root, "Status");
  RaiseUnlessSuccess(AS_RESULT_FAMILY_SYNC);
  HandleChildren(root, "Collections");
}

void Parser::ProcessVersion(const sml_element* element) {
  LogFlag("Version: ", SE_GetValue(element) != nullptr);
}

void Parser::ProcessStatus(const sml_element* element) { status_ = SmlAtoi(TextOf(element)); }

void Parser::ProcessCollections(const sml_element* element) { HandleChildren(element, "Collection"); }

void Parser::ProcessCollection(const sml_element* element) {
  HandleChildren(element, "SyncKey");
  HandleChildren(element, "Status");
  HandleChildren(element, "CollectionId");
  RaiseUnlessSuccess(AS_RESULT_FAMILY_SYNC);
  HandleChildren(element, "Class");
  moreAvailable_ = PARSER_COMPLETE;
  HandleChildren(element, "MoreAvailable");
  HandleChildren(element, "Commands");
  HandleChildren(element, "Responses");
  // Only now that every command and response has gone through: after an abort the server sends them again.
  storage_->StoreSyncKey(folder_->handle, nullptr, syncKey_);
}

void Parser::ProcessSyncKey(const sml_element* element) { SetInlineText(syncKey_, TextOf(element)); }

void Parser::ProcessCollectionID(const sml_element* element) {
  if (!InlineTextEquals(folder_->folder.serverId.text, TextOf(element))) {
    AirSync::getInstance()->AbortSync(AS_RESULT_WRONG_COLLECTION);
  }
}

void Parser::ProcessClass(const sml_element* element) {
  const ItemClass* expected = FolderClass();
  if (expected == nullptr || SmlStrcmp(expected->name, TextOf(element)) != 0) {
    AirSync::getInstance()->AbortSync(AS_RESULT_WRONG_COLLECTION);
  }
}

void Parser::ProcessMoreAvailable(const sml_element* element) {
  if (log_ != nullptr) {
    log_->write(AS_LOG_SOURCE_PARSER, AS_LOG_LEVEL_INFO, "In <MoreAva.>", SE_GetTag(element));
  }
  moreAvailable_ = PARSER_MORE;
}

void Parser::ProcessCommands(const sml_element* element) {
  HandleChildren(element, "Add");
  HandleChildren(element, "Change");
  HandleChildren(element, "Delete");
}

void Parser::ProcessServerID(const sml_element* element) { serverId_ = ServerId::fromChar(TextOf(element)); }

void Parser::ProcessClientID(const sml_element* element) { clientId_ = SmlAtoi(TextOf(element)); }

void Parser::ProcessAdd(const sml_element* element) {
  CheckCancelled();
  commandKind_ = kServerAdd;
  HandleChildren(element, "ServerId");
  HandleChildren(element, "ApplicationData");
}

void Parser::ProcessChange(const sml_element* element) {
  CheckCancelled();
  commandKind_ = kServerChange;
  HandleChildren(element, "ServerId");
  HandleChildren(element, "ApplicationData");
}

void Parser::ProcessDelete(const sml_element* element) {
  CheckCancelled();
  commandKind_ = kServerDelete;
  HandleChildren(element, "ServerId");
  storage_->DeleteServerItem(folder_->handle, &serverId_);
}

void Parser::ProcessApplicationData(const sml_element* element) {
  const ItemClass* itemClass = FolderClass();
  if (itemClass != nullptr) (this->*itemClass->decoder)(element);
}

void Parser::HandItem(const void* record) {
  switch (commandKind_) {
    case kServerAdd:
      storage_->AddServerItem(folder_->handle, &serverId_, record);
      break;
    case kServerChange:
      storage_->ChangeServerItem(folder_->handle, &serverId_, record);
      break;
    case kFetchResponse:
      storage_->FetchedItem(folder_->handle, &serverId_, record, ItemResult());
      break;
    default:
      break;
  }
}

void Parser::ProcessResponses(const sml_element* element) {
  SE_ForEach(element, "Add", &Parser::ProcessResponsesAdd, *this);
  SE_ForEach(element, "Change", &Parser::ProcessResponsesChange, *this);
  SE_ForEach(element, "Delete", &Parser::ProcessResponsesDelete, *this);
  SE_ForEach(element, "Fetch", &Parser::ProcessResponsesFetch, *this);
}

// An answer without a status keeps the previous one.
void Parser::ReadItemStatus(const sml_element* response) {
  CheckCancelled();
  if (ValidateSmlElement(response) != AS_RESULT_OK) {
    AirSync::getInstance()->AbortSync(AS_RESULT_MALFORMED_DOCUMENT);
  }
  SE_ForEach(response, "Status", &Parser::ProcessResponsesStatus, *this);
}

SYNC_RESULT Parser::ItemResult() const {
  return status_ == 1 ? static_cast<SYNC_RESULT>(AS_RESULT_OK)
                      : AS_RESULT_FAMILY_ITEM | static_cast<UINT32>(status_);
}

void Parser::ProcessResponsesStatus(const sml_element* element) { ProcessStatus(element); }

// How an item that was added here learns its server id.
void Parser::ProcessResponsesAdd(const sml_element* element) {
  ReadItemStatus(element);
  HandleChildren(element, "ClientId");
  if (status_ == 1) HandleChildren(element, "ServerId");
  const UINT32 clientId = static_cast<UINT32>(clientId_);
  storage_->AddResult(folder_->handle, &clientId, &serverId_, ItemResult());
}

void Parser::ProcessResponsesChange(const sml_element* element) {
  ReadItemStatus(element);
  HandleChildren(element, "ServerId");
  storage_->ChangeResult(folder_->handle, &serverId_, ItemResult());
}

void Parser::ProcessResponsesDelete(const sml_element* element) {
  ReadItemStatus(element);
  HandleChildren(element, "ServerId");
  storage_->DeleteResult(folder_->handle, &serverId_, ItemResult());
}

void Parser::ProcessResponsesFetch(const sml_element* element) {
  ReadItemStatus(element);
  HandleChildren(element, "ServerId");
  commandKind_ = kFetchResponse;
  HandleChildren(element, "ApplicationData");
}

}  // namespace AIRSYNC_STACK
