// The facade's commands about items besides Sync: fetching, estimating, moving, answering a meeting request.
#include "api/AirSync.h"
#include "api/ErrorFrame.h"
#include "api/Exchange.h"
#include "generator/Generator.h"
#include "http/Communications.h"
#include "parser/Parser.h"

namespace AIRSYNC_STACK {

SYNC_RESULT AirSync::Fetch(FOLDER_INFO* folder, const SERVER_ID& id) {
  LogEntry("Into Fetch");
  return RunCommand([this, folder, &id]() -> SYNC_RESULT {
    sml_element* request = RequestBuilder().Fetch(folder, id);
    sml_element* response = RunExchange(request, "Sync", "Sync", RequestLimit::kNone);
    parser_->SetStorage(storage_);  // no entry point of the parser may have done so yet
    parser_->Fetch(response, folder);
    SE_Destroy(response);
    return AS_RESULT_OK;
  });
}

SYNC_RESULT AirSync::GetItemEstimate() {
  LogEntry("GetItemEstimate");
  return RunCommand([this]() -> SYNC_RESULT {
    Generator& generator = RequestBuilder();
    FOLDER_INFO** folders = nullptr;
    int count = 0;
    storage_->GetFolderList(&folders, &count);
    sml_element* request = generator.GetItemEstimate(folders, count);
    sml_element* response =
        RunExchange(request, "GetItemEstimate", "GetItemEstimate", RequestLimit::k10000Bytes);
    parser_->GetItemEstimate(response, storage_, folders, count);
    SE_Destroy(response);
    return AS_RESULT_OK;
  });
}

SYNC_RESULT AirSync::MoveItems(const SERVER_ID* items, const FOLDER_ID* sources,
                               const FOLDER_ID* destinations, SERVER_ID* newIds, int* results, int count) {
  LogEntry("Into MoveItems");
  return RunCommand([this, items, sources, destinations, newIds, results, count]() -> SYNC_RESULT {
    sml_element* request = RequestBuilder().MoveItems(items, sources, destinations, count);
    sml_element* response = RunExchange(request, "MoveItems", "Moves", RequestLimit::k10000Bytes);
    parser_->MoveItems(response, items, sources, destinations, newIds, results, count);
    SE_Destroy(response);
    return AS_RESULT_OK;
  });
}

SYNC_RESULT AirSync::MeetingResponse(const SERVER_ID& request, const FOLDER_ID& collection,
                                     AS_MEETING_RESPONSE_ENUM_T response, SERVER_ID& calendarId) {
  LogEntry("Into SendMeetingResponse");
  return RunCommand([this, &request, &collection, response, &calendarId]() -> SYNC_RESULT {
    sml_element* tree = RequestBuilder().MeetingResponse(request, collection, response);
    sml_element* answer = RunExchange(tree, "MeetingResponse", "MeetingResponse", RequestLimit::kNone);
    parser_->MeetingResponse(answer, request, calendarId);
    SE_Destroy(answer);
    return AS_RESULT_OK;
  });
}

}  // namespace AIRSYNC_STACK
