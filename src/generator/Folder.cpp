// The folder requests, on the folder-hierarchy page.
#include "generator/Generator.h"
#include "support/InlineText.h"

namespace AIRSYNC_STACK {

namespace {

const UINT8 kFolderHierarchyPage = 7;

sml_element* FolderRequest(const char* tag) {
  sml_element* request = SE_NewWithAttribute(tag, "xmlns", "FolderHierarchy:", nullptr);
  request->CodePage = kFolderHierarchyPage;
  return request;
}

}  // namespace

// The namespace alone sets this root's page.
sml_element* Generator::FolderSync(const _SYNC_KEY& key) {
  sml_element* request = SE_NewWithAttribute("FolderSync", "xmlns", "FolderHierarchy:", nullptr);
  SE_AddChild(request, Synckey(key));
  return request;
}

// Without a server id: the server assigns it.
sml_element* Generator::FolderCreate(const BASE_FOLDER* folder, const _SYNC_KEY& key) {
  if (folder == nullptr) return nullptr;
  sml_element* request = FolderRequest("CreateCmd");
  SE_AddChild(request, Synckey(key));
  SE_AddChild(request, FolderParentId(*folder));
  SE_AddChild(request, FolderDisplayName(*folder));
  SE_AddChild(request, FolderType(*folder));
  return request;
}

sml_element* Generator::FolderDelete(const FOLDER_ID& id, const _SYNC_KEY& key) {
  sml_element* request = FolderRequest("DeleteCmd");
  SE_AddChild(request, Synckey(key));
  SE_AddChild(request, FolderCollId(id));
  return request;
}

// Without a type: a folder keeps the one that it has.
sml_element* Generator::FolderUpdate(const BASE_FOLDER* folder, const _SYNC_KEY& key) {
  if (folder == nullptr) return nullptr;
  sml_element* request = FolderRequest("UpdateCmd");
  SE_AddChild(request, Synckey(key));
  SE_AddChild(request, FolderCollId(folder->serverId));
  SE_AddChild(request, FolderParentId(*folder));
  SE_AddChild(request, FolderDisplayName(*folder));
  return request;
}

sml_element* Generator::FolderParentId(const BASE_FOLDER& folder) {
  return SE_New("ParentId", TerminatedText<sizeof(FOLDER_ID)>(folder.parentId.text).text);
}

sml_element* Generator::FolderDisplayName(const BASE_FOLDER& folder) {
  return SE_New("DisplayName", TerminatedText<sizeof(folder.displayName)>(folder.displayName).text);
}

sml_element* Generator::FolderType(const BASE_FOLDER& folder) { return NumberElement("Type", folder.type); }

sml_element* Generator::FolderCollId(const FOLDER_ID& id) {
  return SE_New("ServerId", TerminatedText<sizeof(FOLDER_ID)>(id.text).text);
}

}  // namespace AIRSYNC_STACK
