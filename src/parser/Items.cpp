// Responses about single items: estimates, moves, fetches and answers to meetings.
#include "api/AirSync.h"
#include "parser/Parser.h"
#include "support/Assert.h"
#include "support/Porting.h"
#include "support/ServerId.h"

namespace AIRSYNC_STACK {

namespace {

const INT32 kMoveSucceeded = 3;

}  // namespace

void Parser::GetItemEstimate(const sml_element* pSyncEstimate, AirSyncDBInterface* db, FOLDER_INFO** folders,
                             int folderCount) {
  Begin(kStorage | kFolderList);
  storage_ = db;
  folderList_ = folders;
  folderListCount_ = folderCount;
  estimateResult_ = 0;  // an earlier answer's status says nothing about this one
  assert(!SmlStrcmp(SE_GetTag(pSyncEstimate), "GetItemEstimate"));
  HandleChildren(pSyncEstimate, "Response");
  ForgetArguments();
}

void Parser::ProcessEstimateResponse(const sml_element* element) {
  HandleChildren(element, "Status");
  HandleChildren(element, "Collection");
}

void Parser::ProcessEstimateStatus(const sml_element* element) {
  LogFlag("Estimate Status:", SE_GetValue(element) != nullptr);
  const INT32 status = SmlAtoi(TextOf(element));
  LogLine(AS_LOG_LEVEL_INFO, status == 1 ? "Estimate Status success" : "Estimate Status error");
  estimateResult_ = status == 1 ? 0U : AS_RESULT_FAMILY_ESTIMATE | static_cast<UINT32>(status);
}

void Parser::ProcessEstimateCollection(const sml_element* element) {
  HandleChildren(element, "Class");
  HandleChildren(element, "CollectionId");
  HandleChildren(element, "Estimate");
}

void Parser::ProcessEstimateClass(const sml_element* element) {
  if (log_ != nullptr) {
    log_->write(AS_LOG_SOURCE_PARSER, AS_LOG_LEVEL_INFO, "Ignoring tag: ", SE_GetTag(element));
  }
}

void Parser::ProcessEstimateCollectionId(const sml_element* element) {
  SelectFolder(TextOf(element));
  if (estimateResult_ != 0) storage_->SetItemEstimate(folder_->handle, estimateResult_, 0);
}

void Parser::ProcessEstimateEstimate(const sml_element* element) {
  if (folder_ == nullptr) return IgnoreWithoutFolder(element);
  storage_->SetItemEstimate(folder_->handle, estimateResult_, SmlAtoi(TextOf(element)));
}

void Parser::MoveItems(const sml_element* pMoveItems, const SERVER_ID* items, const FOLDER_ID* source,
                       const FOLDER_ID* destination, SERVER_ID* newIds, int* statuses, int count) {
  assert(!SmlStrcmp(SE_GetTag(pMoveItems), "Moves"));
  Begin(kMoveRequest);
  move_ = {items, source, destination, newIds, statuses, count};
  for (int i = 0; i < count; ++i) {
    newIds[i] = ServerId::fromChar("0");
    statuses[i] = 0;
  }
  HandleChildren(pMoveItems, "Response");
  ForgetArguments();
}

void Parser::ProcessMoveResponse(const sml_element* element) {
  HandleChildren(element, "SrcMsgId");
  int item = 0;
  while (item < move_.count && ServerId::compare(move_.items[item], serverId_) != 0) ++item;
  if (item >= move_.count) return;
  status_ = kMoveSucceeded;
  HandleChildren(element, "Status");
  move_.statuses[item] = status_;
  if (status_ != kMoveSucceeded) return;
  // An item without a new id must not get another one's.
  destinationId_ = ServerId::fromChar("0");
  HandleChildren(element, "DstMsgId");
  move_.newIds[item] = destinationId_;
}

void Parser::ProcessMoveSrcMsgId(const sml_element* element) {
  serverId_ = ServerId::fromChar(TextOf(element));
}

void Parser::ProcessMoveStatus(const sml_element* element) { status_ = SmlAtoi(TextOf(element)); }

void Parser::ProcessMoveDstMsgId(const sml_element* element) {
  destinationId_ = ServerId::fromChar(TextOf(element));
}

// The item arrives by ProcessResponsesFetch.
void Parser::Fetch(sml_element* pFetchCmd, FOLDER_INFO* folder) {
  LogLine(AS_LOG_LEVEL_TRACE, "into Parser::Fetch");
  Begin(kFolder | (storage_ == nullptr ? kNothing : kStorage));
  folder_ = folder;
  assert(!SmlStrcmp(SE_GetTag(pFetchCmd), "Sync"));
  ReadSyncResponse(pFetchCmd);
  CheckCancelled();
  ForgetArguments();
}

void Parser::MeetingResponse(const sml_element* pMeetingResponse, const SERVER_ID& requestId,
                             SERVER_ID& calendarId) {
  LogLine(AS_LOG_LEVEL_TRACE, "into Parser::MeetingResponse");
  assert(!SmlStrcmp(SE_GetTag(pMeetingResponse), "MeetingResponse"));
  Begin(kMeetingRequest);
  meetingRequestId_ = requestId;
  // An answer without a calendar item must not get an earlier one's.
  meetingCalendarId_ = ServerId::fromChar("0");
  HandleChildren(pMeetingResponse, "Result");
  calendarId = meetingCalendarId_;
  CheckCancelled();
  ForgetArguments();
}

void Parser::ProcessMeetingResponseResult(const sml_element* element) {
  HandleChildren(element, "ReqId");
  status_ = 1;
  HandleChildren(element, "Status");
  RaiseUnlessSuccess(AS_RESULT_FAMILY_MEETING);
  HandleChildren(element, "CalId");
}

void Parser::ProcessMeetingResponseReqId(const sml_element* element) {
  if (ServerId::compare(ServerId::fromChar(TextOf(element)), meetingRequestId_) != 0) {
    AirSync::getInstance()->AbortSync(AS_RESULT_WRONG_COLLECTION);
  }
}

void Parser::ProcessMeetingResponseStatus(const sml_element* element) { status_ = SmlAtoi(TextOf(element)); }

void Parser::ProcessMeetingResponseCalId(const sml_element* element) {
  meetingCalendarId_ = ServerId::fromChar(TextOf(element));
}

}  // namespace AIRSYNC_STACK
