// Responses of the folder commands.
#include "api/AirSync.h"
#include "parser/Parser.h"
#include "support/Assert.h"
#include "support/InlineText.h"
#include "support/Memory.h"
#include "support/Porting.h"

namespace AIRSYNC_STACK {

namespace {

const UINT32 kHierarchyTextCapacity = 64;

// The folders that every account has. They are reported at once; the others wait for their parents.
bool IsDefaultFolder(INT32 type) { return (type >= 2 && type <= 6) || type == 8 || type == 9; }

}  // namespace

void Parser::FolderSync(const sml_element* pFolderSyncCmd, AirSyncDBInterface* db, _SYNC_KEY& key) {
  assert(!SmlStrcmp(SE_GetTag(pFolderSyncCmd), "FolderSync"));
  storage_ = db;
  ReadFolderAnswer(pFolderSyncCmd, key);
  HandleChildren(pFolderSyncCmd, "Changes");
  key = folderSyncKey_;
}

void Parser::FolderCreate(const sml_element* pFolderCreate, BASE_FOLDER* folder, _SYNC_KEY& key) {
  assert(!SmlStrcmp(SE_GetTag(pFolderCreate), "CreateCmd"));
  folderEntry_ = BASE_FOLDER();
  ReadFolderAnswer(pFolderCreate, key);
  HandleChildren(pFolderCreate, "ServerId");
  key = folderSyncKey_;
  folder->serverId = folderEntry_.serverId;
}

void Parser::FolderDelete(const sml_element* pFolderDelete, _SYNC_KEY& key) {
  assert(!SmlStrcmp(SE_GetTag(pFolderDelete), "DeleteCmd"));
  ReadFolderAnswer(pFolderDelete, key);
  key = folderSyncKey_;
}

void Parser::FolderUpdate(const sml_element* pFolderUpdate, _SYNC_KEY& key) {
  assert(!SmlStrcmp(SE_GetTag(pFolderUpdate), "UpdateCmd"));
  ReadFolderAnswer(pFolderUpdate, key);
  key = folderSyncKey_;
}

void Parser::ReadFolderAnswer(const sml_element* root, const _SYNC_KEY& key) {
  folderSyncKey_ = key;
  HandleChildren(root, "Status");
  RaiseUnlessSuccess(AS_RESULT_FAMILY_FOLDER);
  HandleChildren(root, "SyncKey");
}

void Parser::ProcessFolderStatus(const sml_element* element) { status_ = SmlAtoi(TextOf(element)); }

void Parser::ProcessFolderSyncKey(const sml_element* element) {
  SetInlineText(folderSyncKey_.text, TextOf(element));
}

void Parser::ProcessChanges(const sml_element* element) {
  HandleChildren(element, "Count");
  HandleChildren(element, "Delete");
  HandleChildrenAdd(element);
  HandleChildren(element, "Update");
}

void Parser::ProcessFolderCount(const sml_element* element) { folderCount_ = SmlAtoi(TextOf(element)); }

// Reports the added folders so that a folder of the user's comes after its parent, whatever the server's
// order.
void Parser::HandleChildrenAdd(const sml_element* changes) {
  folderMap_.clear();
  const UINT16 count = SE_GetNumberOfChildren(changes);
  for (UINT16 position = 0; position < count; ++position) {
    const sml_element* child = SE_GetNthChild(changes, position);
    if (SmlStrcmp(SE_GetTag(child), "Add") != 0) continue;
    if (IsDefaultFolder(SmlAtoi(ChildText(child, "Type")))) {
      ProcessFolderAdd(child);
    } else {
      folderMap_[ChildText(child, "ServerId")] = position;
    }
  }
  if (folderMap_.empty()) return;
  UINT16* chain =
      static_cast<UINT16*>(AdapterMalloc(static_cast<UINT32>(folderMap_.size() * sizeof(UINT16))));
  while (!folderMap_.empty()) HandleFolderAdd(changes, chain);
  AdapterFree(chain);
}

// Reports the first waiting folder, after all its ancestors that wait too. Each is taken out of the map
// before its parent is looked up, so that a circle of parents comes to an end.
void Parser::HandleFolderAdd(const sml_element* changes, UINT16* chain) {
  UINT32 length = 0;
  for (auto entry = folderMap_.begin(); entry != folderMap_.end();) {
    const UINT16 position = static_cast<UINT16>(entry->second);
    chain[length++] = position;
    folderMap_.erase(entry);
    const char* parentId = ChildText(SE_GetNthChild(changes, position), "ParentId");
    entry = SmlStrcmp(parentId, "0") == 0 ? folderMap_.end() : folderMap_.find(parentId);
  }
  while (length > 0) ProcessFolderAdd(SE_GetNthChild(changes, chain[--length]));
}

void Parser::ProcessFolderAdd(const sml_element* element) { ReportFolder(element, AS_FOLDER_ADDED); }

void Parser::ProcessFolderUpdate(const sml_element* element) { ReportFolder(element, AS_FOLDER_UPDATED); }

void Parser::ReportFolder(const sml_element* element, AS_FOLDER_OPERATION_T operation) {
  folderEntry_ = BASE_FOLDER();
  SetInlineText(folderEntry_.serverId.text, ChildText(element, "ServerId"));
  SetInlineText(folderEntry_.parentId.text, ChildText(element, "ParentId"));
  SetInlineText(folderEntry_.displayName, ChildText(element, "DisplayName"));
  folderEntry_.type = SmlAtoi(ChildText(element, "Type"));
  storage_->UpdateFolder(&folderEntry_, operation);
}

void Parser::ProcessFolderDelete(const sml_element* element) {
  folderEntry_ = BASE_FOLDER();
  SetInlineText(folderEntry_.serverId.text, ChildText(element, "ServerId"));
  storage_->UpdateFolder(&folderEntry_, AS_FOLDER_DELETED);
}

void Parser::ProcessFolderServerId(const sml_element* element) {
  folderEntry_ = BASE_FOLDER();
  SetInlineText(folderEntry_.serverId.text, TextOf(element));
}

void Parser::GetHierarchy(const sml_element* root, BASE_FOLDER*& folders, int& count) {
  hierarchyCapacity_ = SE_CountChildren(root, "Folder");
  hierarchyCount_ = 0;
  // An empty hierarchy is handed out as a block as well, so that the host may release it as any other.
  const UINT32 entries = hierarchyCapacity_ == 0 ? 1 : hierarchyCapacity_;
  const UINT32 size = entries * static_cast<UINT32>(sizeof(BASE_FOLDER));
  hierarchy_ = static_cast<BASE_FOLDER*>(AdapterMalloc(size));
  SmlMemset(hierarchy_, 0, size);
  HandleChildren(root, "Folder");
  folders = hierarchy_;
  count = hierarchyCapacity_;
  hierarchy_ = nullptr;
}

// The texts are cut to 64 bytes here, terminator included, although two of the fields have more room.
void Parser::ProcessHierarchyFolder(const sml_element* element) {
  if (hierarchyCount_ >= hierarchyCapacity_) return;
  BASE_FOLDER& entry = hierarchy_[hierarchyCount_];
  SetInlineText(entry.displayName, ChildText(element, "DisplayName"));
  CopyCutText(entry.serverId.text, kHierarchyTextCapacity, ChildText(element, "ServerId"));
  entry.type = SmlAtoi(ChildText(element, "Type"));
  CopyCutText(entry.parentId.text, kHierarchyTextCapacity, ChildText(element, "ParentId"));
  ++hierarchyCount_;
}

}  // namespace AIRSYNC_STACK
