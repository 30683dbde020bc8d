// Responses of the notification commands.
#include "api/AirSync.h"
#include "parser/Parser.h"
#include "support/Assert.h"
#include "support/InlineText.h"
#include "support/Memory.h"
#include "support/Porting.h"

namespace AIRSYNC_STACK {

void Parser::GetCarrierList(const sml_element* p, UINT8 (*&list)[64], UINT16& count) {
  Begin(kCarriers);
  assert(!SmlStrcmp(SE_GetTag(p), "AirNotify"));
  HandleChildren(p, "Status");
  RaiseUnlessSuccess(AS_RESULT_FAMILY_NOTIFY);
  ReadCarriers(p);
  ForgetArguments();
  list = carrierList_;
  count = carrierCount_;
}

void Parser::SetDeviceAddress(const sml_element* p) {
  Begin(kNothing);
  assert(!SmlStrcmp(SE_GetTag(p), "AirNotify"));
  HandleChildren(p, "Status");
  RaiseUnlessSuccess(AS_RESULT_FAMILY_NOTIFY);
}

SYNC_RESULT Parser::NotifyEnable(const sml_element* pAirNotify, AirSyncDBInterface* db, FOLDER_INFO** folders,
                                 int folderCount, UINT8 (*&list)[64], UINT16& count) {
  assert(!SmlStrcmp(SE_GetTag(pAirNotify), "AirNotify"));
  Begin(kStorage | kFolderList | kCarriers);
  storage_ = db;
  folderList_ = folders;
  folderListCount_ = folderCount;
  ReadCarriers(pAirNotify);
  HandleChildren(pAirNotify, "Status");
  if (status_ == 1) HandleChildren(pAirNotify, "Responses");
  ForgetArguments();
  // Handed out last: an abort before would leave the caller with released memory.
  list = carrierList_;
  count = carrierCount_;
  return status_ == 1 ? static_cast<SYNC_RESULT>(AS_RESULT_OK)
                      : AS_RESULT_FAMILY_NOTIFY | static_cast<UINT32>(status_);
}

void Parser::ReadCarriers(const sml_element* root) {
  carrierList_ = nullptr;
  carrierCount_ = 0;
  HandleChildren(root, "ValidCarrierProfiles");
}

void Parser::ProcessNotifyValidCarrierProfiles(const sml_element* element) {
  if (carrierList_ != nullptr) AdapterFree(carrierList_);
  carrierList_ = nullptr;
  carrierNext_ = 0;
  carrierCount_ = SE_CountChildren(element, "CarrierProfile");
  if (carrierCount_ == 0) return;
  const UINT32 size = carrierCount_ * static_cast<UINT32>(sizeof(*carrierList_));
  carrierList_ = static_cast<UINT8(*)[64]>(AdapterMalloc(size));
  SmlMemset(carrierList_, 0, size);
  HandleChildren(element, "CarrierProfile");
}

void Parser::ProcessNotifyCarrierProfile(const sml_element* element) {
  LogFlag("NotifyCarrierProfile:", SE_GetValue(element) != nullptr);
  if (carrierNext_ >= carrierCount_) return;
  char* entry = reinterpret_cast<char*>(carrierList_[carrierNext_++]);
  CopyCutText(entry, sizeof(*carrierList_), TextOf(element));
}

void Parser::ProcessNotifyResponses(const sml_element* element) { HandleChildren(element, "Folder"); }

void Parser::ProcessNotifyFolder(const sml_element* element) {
  HandleChildren(element, "ServerId");
  SE_ForEach(element, "Status", &Parser::ProcessNotifyFolderStatus, *this);
}

void Parser::ProcessNotifyStatus(const sml_element* element) { status_ = SmlAtoi(TextOf(element)); }

void Parser::ProcessNotifyFolderServerId(const sml_element* element) {
  LogFlag("ServerId: ", SE_GetValue(element) != nullptr);
  SelectFolder(TextOf(element));
}

// The overall status decides, not the folder's own: since the folders are read only when that one is 1, each
// of them is reported as a success.
void Parser::ProcessNotifyFolderStatus(const sml_element* element) {
  LogFlag("status: ", SE_GetValue(element) != nullptr);
  if (folder_ == nullptr) return IgnoreWithoutFolder(element);
  const UINT32 folderStatus = static_cast<UINT32>(SmlAtoi(TextOf(element)));
  const SYNC_RESULT failure = AS_RESULT_FAMILY_NOTIFY | folderStatus;
  storage_->SetNotifyFolderStatus(folder_->handle, status_ == 1 ? 0U : failure);
}

// No response asks for it.
void Parser::NotifyGUID(const sml_element* element) { SetInlineText(notifyGuid_, TextOf(element)); }

void Parser::SelectFolder(const char* collectionId) {
  folder_ = nullptr;
  for (int i = 0; i < folderListCount_ && folder_ == nullptr; ++i) {
    if (folderList_[i] != nullptr && InlineTextEquals(folderList_[i]->folder.serverId.text, collectionId)) {
      folder_ = folderList_[i];
    }
  }
  if (folder_ == nullptr) AirSync::getInstance()->AbortSync(AS_RESULT_WRONG_COLLECTION);
}

void Parser::IgnoreWithoutFolder(const sml_element* element) const {
  if (log_ != nullptr) {
    log_->write(AS_LOG_SOURCE_PARSER, AS_LOG_LEVEL_INFO,
                "Ignored, no folder was named before: ", SE_GetTag(element));
  }
}

}  // namespace AIRSYNC_STACK
