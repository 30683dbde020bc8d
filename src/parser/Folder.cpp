// Responses of the folder commands.
#include <algorithm>
#include <cstring>

#include "api/AirSync.h"
#include "parser/Parser.h"
#include "support/Assert.h"
#include "support/InlineText.h"
#include "support/Memory.h"
#include "support/Porting.h"

namespace AIRSYNC_STACK {

namespace {

// With the terminator: the fields have room for a little more.
const UINT32 kHierarchyIdCapacity = 64 + 1;

// The folders that every account has. They are reported at once; the others wait for their parents.
bool IsDefaultFolder(INT32 type) { return (type >= 2 && type <= 6) || type == 8 || type == 9; }

bool IsAdded(const sml_element* change) { return SmlStrcmp(SE_GetTag(change), "Add") == 0; }

const UINT32 kNoFolder = UINT32_MAX;

}  // namespace

void Parser::FolderSync(const sml_element* pFolderSyncCmd, AirSyncDBInterface* db, _SYNC_KEY& key) {
  assert(!SmlStrcmp(SE_GetTag(pFolderSyncCmd), "FolderSync"));
  Begin(kStorage | kFolderTree);
  storage_ = db;
  ReadFolderAnswer(pFolderSyncCmd, key);
  HandleChildren(pFolderSyncCmd, "Changes");
  ForgetArguments();
  key = folderSyncKey_;
}

void Parser::FolderCreate(const sml_element* pFolderCreate, BASE_FOLDER* folder, _SYNC_KEY& key) {
  assert(!SmlStrcmp(SE_GetTag(pFolderCreate), "CreateCmd"));
  Begin(kNothing);
  folderEntry_ = BASE_FOLDER();
  ReadFolderAnswer(pFolderCreate, key);
  HandleChildren(pFolderCreate, "ServerId");
  key = folderSyncKey_;
  folder->serverId = folderEntry_.serverId;
}

void Parser::FolderDelete(const sml_element* pFolderDelete, _SYNC_KEY& key) {
  assert(!SmlStrcmp(SE_GetTag(pFolderDelete), "DeleteCmd"));
  Begin(kNothing);
  ReadFolderAnswer(pFolderDelete, key);
  key = folderSyncKey_;
}

void Parser::FolderUpdate(const sml_element* pFolderUpdate, _SYNC_KEY& key) {
  assert(!SmlStrcmp(SE_GetTag(pFolderUpdate), "UpdateCmd"));
  Begin(kNothing);
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

// An added folder that waits for its parent. The text belongs to the response.
struct Parser::WaitingFolder {
  const char* id;
  UINT16 position;  // among the children of Changes
  bool waits;
  UINT32 below;  // the folder that waits for this one

  // In the byte order of the ids; of those with one id the last comes first.
  bool operator<(const WaitingFolder& other) const {
    const int order = std::strcmp(id, other.id);
    return order < 0 || (order == 0 && position > other.position);
  }
};

// Reports the added folders so that a folder of the user's comes after its parent, whatever the server's
// order.
void Parser::HandleChildrenAdd(const sml_element* changes) {
  const UINT16 children = SE_GetNumberOfChildren(changes);
  UINT32 count = 0;
  for (UINT16 position = 0; position < children; ++position) {
    const sml_element* child = SE_GetNthChild(changes, position);
    if (!IsAdded(child)) continue;
    if (IsDefaultFolder(SmlAtoi(ChildText(child, "Type")))) {
      ProcessFolderAdd(child);
    } else {
      ++count;
    }
  }
  if (count == 0) return;
  WaitingFolder* folders =
      static_cast<WaitingFolder*>(AdapterMalloc(count * static_cast<UINT32>(sizeof(WaitingFolder))));
  UINT32 filled = 0;
  for (UINT16 position = 0; position < children; ++position) {
    const sml_element* child = SE_GetNthChild(changes, position);
    if (!IsAdded(child) || IsDefaultFolder(SmlAtoi(ChildText(child, "Type")))) continue;
    folders[filled++] = {ChildText(child, "ServerId"), position, true, kNoFolder};
  }
  std::make_heap(folders, folders + count);
  std::sort_heap(folders, folders + count);
  for (UINT32 i = 1; i < count; ++i) {
    if (std::strcmp(folders[i].id, folders[i - 1].id) == 0) folders[i].waits = false;
  }
  for (UINT32 i = 0; i < count; ++i) {
    if (folders[i].waits) HandleFolderAdd(changes, folders, count, i);
  }
  AdapterFree(folders);
}

// Reports a waiting folder, after all its ancestors that wait too. Each ends its waiting before its parent is
// looked up, so that a circle of parents comes to an end.
void Parser::HandleFolderAdd(const sml_element* changes, WaitingFolder* folders, UINT32 count, UINT32 index) {
  for (;;) {
    folders[index].waits = false;
    const char* parentId = ChildText(SE_GetNthChild(changes, folders[index].position), "ParentId");
    if (SmlStrcmp(parentId, "0") == 0) break;
    const WaitingFolder sought = {parentId, UINT16_MAX, false, kNoFolder};
    const UINT32 parent = static_cast<UINT32>(std::lower_bound(folders, folders + count, sought) - folders);
    if (parent == count || !folders[parent].waits || std::strcmp(folders[parent].id, parentId) != 0) break;
    folders[parent].below = index;
    index = parent;
  }
  for (; index != kNoFolder; index = folders[index].below) {
    ProcessFolderAdd(SE_GetNthChild(changes, folders[index].position));
  }
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
  Begin(kHierarchy);
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
  hierarchyCapacity_ = 0;
  hierarchyCount_ = 0;
  ForgetArguments();
}

void Parser::ProcessHierarchyFolder(const sml_element* element) {
  if (hierarchyCount_ >= hierarchyCapacity_) return;
  BASE_FOLDER& entry = hierarchy_[hierarchyCount_];
  SetInlineText(entry.displayName, ChildText(element, "DisplayName"));
  CopyCutText(entry.serverId.text, kHierarchyIdCapacity, ChildText(element, "ServerId"));
  entry.type = SmlAtoi(ChildText(element, "Type"));
  CopyCutText(entry.parentId.text, kHierarchyIdCapacity, ChildText(element, "ParentId"));
  ++hierarchyCount_;
}

}  // namespace AIRSYNC_STACK
