// Which handler an element of a response goes to.
#include "api/AirSync.h"
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

struct Row {
  const char* tag;
  UINT8 codePage;
  Parser::Handler handler;
};

// The first row that matches decides. Elements of the item pages never come here: the decoders search for
// them by name.
constexpr Row kRows[] = {
    {"Add", kAirSyncPage, &Parser::ProcessAdd},
    {"Change", kAirSyncPage, &Parser::ProcessChange},
    {"Delete", kAirSyncPage, &Parser::ProcessDelete},
    {"Class", kAirSyncPage, &Parser::ProcessClass},
    {"Version", kAirSyncPage, &Parser::ProcessVersion},
    {"ApplicationData", kAirSyncPage, &Parser::ProcessApplicationData},
    {"Collections", kAirSyncPage, &Parser::ProcessCollections},
    {"Collection", kAirSyncPage, &Parser::ProcessCollection},
    {"SyncKey", kAirSyncPage, &Parser::ProcessSyncKey},
    {"Status", kAirSyncPage, &Parser::ProcessStatus},
    // Never reached: the row above with this tag is first. The table keeps it.
    {"ApplicationData", kAirSyncPage, &Parser::ProcessApplicationData},
    {"MoreAvailable", kAirSyncPage, &Parser::ProcessMoreAvailable},
    {"Commands", kAirSyncPage, &Parser::ProcessCommands},
    {"Responses", kAirSyncPage, &Parser::ProcessResponses},
    {"ClientId", kAirSyncPage, &Parser::ProcessClientID},
    {"ServerId", kAirSyncPage, &Parser::ProcessServerID},
    {"CollectionId", kAirSyncPage, &Parser::ProcessCollectionID},
    {"SyncKey", kFolderHierarchyPage, &Parser::ProcessFolderSyncKey},
    {"Status", kFolderHierarchyPage, &Parser::ProcessFolderStatus},
    {"Changes", kFolderHierarchyPage, &Parser::ProcessChanges},
    {"Count", kFolderHierarchyPage, &Parser::ProcessFolderCount},
    {"Add", kFolderHierarchyPage, &Parser::ProcessFolderAdd},
    {"Update", kFolderHierarchyPage, &Parser::ProcessFolderUpdate},
    {"Delete", kFolderHierarchyPage, &Parser::ProcessFolderDelete},
    {"ServerId", kFolderHierarchyPage, &Parser::ProcessFolderServerId},
    {"Folder", kFolderHierarchyPage, &Parser::ProcessHierarchyFolder},
    {"Response", kEstimatePage, &Parser::ProcessEstimateResponse},
    {"Status", kEstimatePage, &Parser::ProcessEstimateStatus},
    {"Collection", kEstimatePage, &Parser::ProcessEstimateCollection},
    {"CollectionId", kEstimatePage, &Parser::ProcessEstimateCollectionId},
    {"Class", kEstimatePage, &Parser::ProcessEstimateClass},
    {"Estimate", kEstimatePage, &Parser::ProcessEstimateEstimate},
    {"Status", kAirNotifyPage, &Parser::ProcessNotifyStatus},
    {"Responses", kAirNotifyPage, &Parser::ProcessNotifyResponses},
    {"Folder", kAirNotifyPage, &Parser::ProcessNotifyFolder},
    {"ServerId", kAirNotifyPage, &Parser::ProcessNotifyFolderServerId},
    {"ValidCarrierProfiles", kAirNotifyPage, &Parser::ProcessNotifyValidCarrierProfiles},
    {"CarrierProfile", kAirNotifyPage, &Parser::ProcessNotifyCarrierProfile},
    {"NotifyGUID", kAirNotifyPage, &Parser::NotifyGUID},
    {"Response", kMovePage, &Parser::ProcessMoveResponse},
    {"SrcMsgId", kMovePage, &Parser::ProcessMoveSrcMsgId},
    {"Status", kMovePage, &Parser::ProcessMoveStatus},
    {"DstMsgId", kMovePage, &Parser::ProcessMoveDstMsgId},
    {"Result", kMeetingResponsePage, &Parser::ProcessMeetingResponseResult},
    {"ReqId", kMeetingResponsePage, &Parser::ProcessMeetingResponseReqId},
    {"Status", kMeetingResponsePage, &Parser::ProcessMeetingResponseStatus},
    {"CalId", kMeetingResponsePage, &Parser::ProcessMeetingResponseCalId},
};

}  // namespace

Parser::Handler Parser::GetProcessorFromTag(const char* tag, unsigned char codePage) {
  for (const Row& row : kRows) {
    if (row.codePage == codePage && SmlStrcmp(row.tag, tag) == 0) return row.handler;
  }
  AirSync::getInstance()->AbortSync(AS_RESULT_MALFORMED_DOCUMENT);
}

}  // namespace AIRSYNC_STACK
