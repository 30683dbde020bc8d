// Which handler an element of a response goes to, and what that one needs.
#include "api/AirSync.h"
#include "document/Validate.h"
#include "parser/Parser.h"
#include "support/Porting.h"

namespace AIRSYNC_STACK {

namespace {

const UINT8 kAirSyncPage = 0;
const UINT8 kAirNotifyPage = 3;
const UINT8 kMovePage = 5;
const UINT8 kEstimatePage = 6;
const UINT8 kFolderHierarchyPage = 7;
const UINT8 kMeetingResponsePage = 8;

}  // namespace

struct Parser::DispatchRow {
  const char* tag;
  UINT8 codePage;
  Handler handler;
  UINT32 needs;  // of Need; where one is missing, the exchange ends with the code
  SYNC_RESULT code = AS_RESULT_MALFORMED_DOCUMENT;
};

// The first row that matches decides. Elements of the item pages never come here: the decoders search for
// them by name.
constexpr Parser::DispatchRow Parser::kDispatchRows[] = {
    {"Add", kAirSyncPage, &Parser::ProcessAdd, kStorage | kFolder},
    {"Change", kAirSyncPage, &Parser::ProcessChange, kStorage | kFolder},
    {"Delete", kAirSyncPage, &Parser::ProcessDelete, kStorage | kFolder},
    {"Class", kAirSyncPage, &Parser::ProcessClass, kFolder, AS_RESULT_WRONG_COLLECTION},
    {"Version", kAirSyncPage, &Parser::ProcessVersion, kNothing},
    {"ApplicationData", kAirSyncPage, &Parser::ProcessApplicationData, kStorage | kFolder},
    {"Collections", kAirSyncPage, &Parser::ProcessCollections, kNothing},
    {"Collection", kAirSyncPage, &Parser::ProcessCollection, kStorage | kFolder},
    {"SyncKey", kAirSyncPage, &Parser::ProcessSyncKey, kNothing},
    {"Status", kAirSyncPage, &Parser::ProcessStatus, kNothing},
    // Never reached: the row above with this tag is first. The table keeps it.
    {"ApplicationData", kAirSyncPage, &Parser::ProcessApplicationData, kStorage | kFolder},
    {"MoreAvailable", kAirSyncPage, &Parser::ProcessMoreAvailable, kNothing},
    {"Commands", kAirSyncPage, &Parser::ProcessCommands, kNothing},
    {"Responses", kAirSyncPage, &Parser::ProcessResponses, kStorage | kFolder},
    {"ClientId", kAirSyncPage, &Parser::ProcessClientID, kNothing},
    {"ServerId", kAirSyncPage, &Parser::ProcessServerID, kNothing},
    {"CollectionId", kAirSyncPage, &Parser::ProcessCollectionID, kFolder, AS_RESULT_WRONG_COLLECTION},
    {"SyncKey", kFolderHierarchyPage, &Parser::ProcessFolderSyncKey, kNothing},
    {"Status", kFolderHierarchyPage, &Parser::ProcessFolderStatus, kNothing},
    {"Changes", kFolderHierarchyPage, &Parser::ProcessChanges, kStorage | kFolderTree},
    {"Count", kFolderHierarchyPage, &Parser::ProcessFolderCount, kNothing},
    {"Add", kFolderHierarchyPage, &Parser::ProcessFolderAdd, kStorage | kFolderTree},
    {"Update", kFolderHierarchyPage, &Parser::ProcessFolderUpdate, kStorage | kFolderTree},
    {"Delete", kFolderHierarchyPage, &Parser::ProcessFolderDelete, kStorage | kFolderTree},
    {"ServerId", kFolderHierarchyPage, &Parser::ProcessFolderServerId, kNothing},
    {"Folder", kFolderHierarchyPage, &Parser::ProcessHierarchyFolder, kHierarchy},
    {"Response", kEstimatePage, &Parser::ProcessEstimateResponse, kNothing},
    {"Status", kEstimatePage, &Parser::ProcessEstimateStatus, kNothing},
    {"Collection", kEstimatePage, &Parser::ProcessEstimateCollection, kNothing},
    {"CollectionId", kEstimatePage, &Parser::ProcessEstimateCollectionId, kStorage | kFolderList,
     AS_RESULT_WRONG_COLLECTION},
    {"Class", kEstimatePage, &Parser::ProcessEstimateClass, kNothing},
    {"Estimate", kEstimatePage, &Parser::ProcessEstimateEstimate, kStorage | kFolderList},
    {"Status", kAirNotifyPage, &Parser::ProcessNotifyStatus, kNothing},
    {"Responses", kAirNotifyPage, &Parser::ProcessNotifyResponses, kNothing},
    {"Folder", kAirNotifyPage, &Parser::ProcessNotifyFolder, kNothing},
    {"ServerId", kAirNotifyPage, &Parser::ProcessNotifyFolderServerId, kStorage | kFolderList,
     AS_RESULT_WRONG_COLLECTION},
    {"ValidCarrierProfiles", kAirNotifyPage, &Parser::ProcessNotifyValidCarrierProfiles, kCarriers},
    {"CarrierProfile", kAirNotifyPage, &Parser::ProcessNotifyCarrierProfile, kCarriers},
    {"NotifyGUID", kAirNotifyPage, &Parser::NotifyGUID, kNothing},
    {"Response", kMovePage, &Parser::ProcessMoveResponse, kMoveRequest},
    {"SrcMsgId", kMovePage, &Parser::ProcessMoveSrcMsgId, kNothing},
    {"Status", kMovePage, &Parser::ProcessMoveStatus, kNothing},
    {"DstMsgId", kMovePage, &Parser::ProcessMoveDstMsgId, kNothing},
    {"Result", kMeetingResponsePage, &Parser::ProcessMeetingResponseResult, kMeetingRequest},
    {"ReqId", kMeetingResponsePage, &Parser::ProcessMeetingResponseReqId, kMeetingRequest,
     AS_RESULT_WRONG_COLLECTION},
    {"Status", kMeetingResponsePage, &Parser::ProcessMeetingResponseStatus, kNothing},
    {"CalId", kMeetingResponsePage, &Parser::ProcessMeetingResponseCalId, kNothing},
};

const Parser::DispatchRow& Parser::RowOf(const char* tag, UINT8 codePage) {
  for (const DispatchRow& row : kDispatchRows) {
    if (row.codePage == codePage && SmlStrcmp(row.tag, tag) == 0) return row;
  }
  AirSync::getInstance()->AbortSync(AS_RESULT_MALFORMED_DOCUMENT);
}

Parser::Handler Parser::GetProcessorFromTag(const char* tag, unsigned char codePage) {
  return RowOf(tag, codePage).handler;
}

void Parser::ChildHandler(const sml_element* child) {
  ValidateSmlElement(child);
  const DispatchRow& row = RowOf(SE_GetTag(child), SE_GetCodePage(child));
  if ((row.needs & ~arguments_) != 0) AirSync::getInstance()->AbortSync(row.code);
  (this->*row.handler)(child);
}

}  // namespace AIRSYNC_STACK
