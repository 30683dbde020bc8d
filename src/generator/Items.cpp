// Requests about single items: estimates, moves, fetches and answers to meetings.
#include "generator/Generator.h"
#include "support/InlineText.h"
#include "support/ServerId.h"

namespace AIRSYNC_STACK {

namespace {

const UINT8 kMovePage = 5;
const UINT8 kEstimatePage = 6;
const UINT8 kMeetingResponsePage = 8;

sml_element* NewPart(const char* tag, UINT8 page) {
  sml_element* part = SE_New(tag, nullptr);
  part->CodePage = page;
  return part;
}

sml_element* NewRequest(const char* tag, const char* xmlns, UINT8 page) {
  sml_element* request = SE_NewWithAttribute(tag, "xmlns", xmlns, nullptr);
  request->CodePage = page;
  return request;
}

sml_element* ItemIdElement(const char* tag, const SERVER_ID& id) {
  char text[ServerId::kLength + 1];
  return SE_New(tag, ServerId::toChar(id, text));
}

sml_element* FolderIdElement(const char* tag, const FOLDER_ID& id) {
  return SE_New(tag, TerminatedText<sizeof(FOLDER_ID)>(id.text).text);
}

}  // namespace

sml_element* Generator::GetItemEstimate(FOLDER_INFO** folders, int count) {
  sml_element* request = NewPart("GetItemEstimate", kEstimatePage);
  sml_element* collections = NewPart("Collections", kEstimatePage);
  for (int i = 0; i < count; ++i) {
    if (folders[i] != nullptr && folders[i]->selected != 0) {
      SE_AddChild(collections, EstimateCollection(*folders[i]));
    }
  }
  SE_AddChild(request, collections);
  return request;
}

// The two "A:" elements belong to the page of Sync requests, and are spelled so here because they take the
// estimate's page as they are attached.
sml_element* Generator::EstimateCollection(const FOLDER_INFO& folder) {
  sml_element* collection = NewPart("Collection", kEstimatePage);
  const char* className = ClassName(folder);
  SE_AddChild(collection, className == nullptr ? nullptr : SE_New("Class", className));
  SE_AddChild(collection, FolderIdElement("CollectionId", folder.folder.serverId));
  SE_AddChild(collection, folder.dataType == DATATYPE_CONTACTS ? SE_New("A:FilterType", "0")
                                                               : FilterType("A:FilterType", folder));
  SE_AddChild(collection, SE_New("A:SyncKey", TerminatedText<sizeof(_SYNC_KEY)>(folder.syncKey.text).text));
  return collection;
}

sml_element* Generator::EstimateVersion() { return SE_New("Version", "2.0"); }

sml_element* Generator::MoveItems(const SERVER_ID* items, const FOLDER_ID* sources,
                                  const FOLDER_ID* destinations, int count) {
  sml_element* request = NewRequest("Moves", "Move:", kMovePage);
  for (int i = 0; i < count; ++i) {
    sml_element* move = NewPart("Move", kMovePage);
    SE_AddChild(move, ItemIdElement("SrcMsgId", items[i]));
    SE_AddChild(move, FolderIdElement("SrcFldId", sources[i]));
    SE_AddChild(move, FolderIdElement("DstFldId", destinations[i]));
    SE_AddChild(request, move);
  }
  return request;
}

// A Sync request, but without window and conflict settings, and with the filter before the truncation.
sml_element* Generator::Fetch(FOLDER_INFO* folder, const SERVER_ID& item) {
  LogLine(AS_LOG_LEVEL_TRACE, "into Generator::Fetch");
  if (folder == nullptr) return nullptr;
  folder_ = folder;
  sml_element* options = SE_New("Options", nullptr);
  SE_AddChild(options, FilterType("FilterType", *folder));
  SE_AddChild(options, NumberElement("Truncation", folder->truncation));

  sml_element* fetch = SE_New("Fetch", nullptr);
  SE_AddChild(fetch, ItemIdElement("ServerId", item));
  sml_element* commands = SE_New("Commands", nullptr);
  SE_AddChild(commands, fetch);

  sml_element* collection = SE_New("Collection", nullptr);
  SE_AddChild(collection, Class());
  SE_AddChild(collection, Synckey(folder->syncKey));
  SE_AddChild(collection, CollectionId());
  SE_AddChild(collection, DeletesAsMoves());
  SE_AddChild(collection, GetChanges());
  SE_AddChild(collection, options);
  SE_AddChild(collection, commands);

  sml_element* collections = SE_New("Collections", nullptr);
  SE_AddChild(collections, collection);
  sml_element* sync = SE_New("Sync", nullptr);
  SE_AddChild(sync, collections);
  return sync;
}

sml_element* Generator::MeetingResponse(const SERVER_ID& request, const FOLDER_ID& collection,
                                        AS_MEETING_RESPONSE_ENUM_T response) {
  LogLine(AS_LOG_LEVEL_TRACE, "into Generator::MeetingResponse");
  sml_element* part = NewPart("Request", kMeetingResponsePage);
  SE_AddChild(part, NumberElement("UserResponse", response));
  SE_AddChild(part, FolderIdElement("CollectionId", collection));
  SE_AddChild(part, ItemIdElement("ReqId", request));
  sml_element* root = NewRequest("MeetingResponse", "MeetingResponse:", kMeetingResponsePage);
  SE_AddChild(root, part);
  return root;
}

}  // namespace AIRSYNC_STACK
