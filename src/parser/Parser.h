// Parser: walks the element tree of a response and turns it into storage calls and out-values.
//
// Each element is handled by a member chosen from its tag and its code page. A handler runs the handlers of
// the children it cares about, in an order that it fixes: the order of processing is the parser's, not the
// document's. Whatever a server may send wrong ends the exchange through AirSync::AbortSync; a wrong root tag
// is an assertion. An element without text counts as one with the empty text.
#ifndef KROAIRSYNC_PARSER_PARSER_H
#define KROAIRSYNC_PARSER_PARSER_H

#include "api/AirSyncDBInterface.h"
#include "document/Element.h"
#include "support/Log.h"

namespace AIRSYNC_STACK {

class Parser {
 public:
  // Whether the server has more changes for the collection.
  enum PARSER_STATUS : INT32 {
    PARSER_MORE = 0,
    PARSER_COMPLETE = 1,
    PARSER_NOT_RUN = 2,  // what a caller starts with
  };

  typedef void (Parser::*Handler)(const sml_element*);

  // What an entry point brings for the handlers. A server decides which of them run: an "xmlns" leads to any
  // page's. So each row of the dispatch table says which of these its handler uses, and runs only where the
  // command's entry point has brought them.
  enum Need : UINT32 {
    kNothing = 0,
    kStorage = 1,
    kFolder = 2,      // the one that is synchronised, or whose item is fetched
    kFolderTree = 4,  // the hierarchy is brought up to date
    kFolderList = 8,  // the folders that an estimate or a notification is about
    kHierarchy = 16,  // the array of GetHierarchy
    kCarriers = 32,   // the list of carrier profiles
    kMoveRequest = 64,
    kMeetingRequest = 128,
  };

  explicit Parser(Log* log);
  virtual ~Parser() = default;
  Parser(const Parser&) = delete;
  Parser& operator=(const Parser&) = delete;

  /// Applies a Sync response to storage. Without a collection in it, `status` is what the last response left.
  void Sync(const sml_element* pSyncCmd, AirSyncDBInterface* db, FOLDER_INFO* folder, PARSER_STATUS& status);

  /// Apply the responses of the folder commands. `key` receives the hierarchy's new key, or stays as it is
  /// where the response has none.
  void FolderSync(const sml_element* pFolderSyncCmd, AirSyncDBInterface* db, _SYNC_KEY& key);
  void FolderCreate(const sml_element* pFolderCreate, BASE_FOLDER* folder, _SYNC_KEY& key);
  void FolderDelete(const sml_element* pFolderDelete, _SYNC_KEY& key);
  void FolderUpdate(const sml_element* pFolderUpdate, _SYNC_KEY& key);

  /// Hands out the whole hierarchy as an array in tracked memory.
  void GetHierarchy(const sml_element* root, BASE_FOLDER*& folders, int& count);

  /// Apply the responses of the notification commands. `list` receives `count` carrier profiles in tracked
  /// memory, null where there are none. NotifyEnable returns the server's refusal instead of raising it.
  void GetCarrierList(const sml_element* p, UINT8 (*&list)[64], UINT16& count);
  void SetDeviceAddress(const sml_element* p);
  SYNC_RESULT NotifyEnable(const sml_element* pAirNotify, AirSyncDBInterface* db, FOLDER_INFO** folders,
                           int folderCount, UINT8 (*&list)[64], UINT16& count);

  /// Applies the answer to an estimate request to storage.
  void GetItemEstimate(const sml_element* pSyncEstimate, AirSyncDBInterface* db, FOLDER_INFO** folders,
                       int folderCount);

  /// Fills `newIds` and `statuses`, `count` each, from the answer to a move request: status 3 is success, 0
  /// stands for an item that the answer does not name.
  void MoveItems(const sml_element* pMoveItems, const SERVER_ID* items, const FOLDER_ID* source,
                 const FOLDER_ID* destination, SERVER_ID* newIds, int* statuses, int count);

  /// Applies the answer to a fetch to the storage of the previous entry point; see SetStorage.
  void Fetch(sml_element* pFetchCmd, FOLDER_INFO* folder);
  void SetStorage(AirSyncDBInterface* db) { storage_ = db; }

  /// Hands out the calendar item that the answer to a meeting request made.
  void MeetingResponse(const sml_element* pMeetingResponse, const SERVER_ID& requestId,
                       SERVER_ID& calendarId);

  /// All tracked memory is gone: whatever points into it is forgotten, and so are the arguments of the
  /// command that was broken off.
  void ForgetTrackedMemory();

  /// Runs the handlers of all children of `parent` that have the tag.
  void HandleChildren(const sml_element* parent, const char* tag);

  /// Runs the child's handler. One that needs what the running command does not have ends the exchange.
  void ChildHandler(const sml_element* child);

  /// The handler for a tag of a code page. An unknown pair ends the exchange.
  static Handler GetProcessorFromTag(const char* tag, unsigned char codePage);

  /// The text of the first element with the tag at or below `parent`; null when there is none, or no text.
  static char* ProcessDataElement(const sml_element* parent, const char* tag);

  // Handlers of Sync responses.
  void ProcessAdd(const sml_element* element);
  void ProcessChange(const sml_element* element);
  void ProcessDelete(const sml_element* element);
  void ProcessClass(const sml_element* element);
  void ProcessVersion(const sml_element* element);
  void ProcessApplicationData(const sml_element* element);
  void ProcessCollections(const sml_element* element);
  void ProcessCollection(const sml_element* element);
  void ProcessSyncKey(const sml_element* element);
  void ProcessStatus(const sml_element* element);
  void ProcessMoreAvailable(const sml_element* element);
  void ProcessCommands(const sml_element* element);
  void ProcessResponses(const sml_element* element);
  void ProcessResponsesAdd(const sml_element* element);
  void ProcessResponsesChange(const sml_element* element);
  void ProcessResponsesDelete(const sml_element* element);
  void ProcessResponsesFetch(const sml_element* element);
  void ProcessResponsesStatus(const sml_element* element);
  void ProcessClientID(const sml_element* element);
  void ProcessServerID(const sml_element* element);
  void ProcessCollectionID(const sml_element* element);

  // Decoders of items, by the folder's data class.
  void ProcessContactApplicationData(const sml_element* appData);
  void ProcessCalendarApplicationData(const sml_element* appData);
  void ProcessEmailApplicationData(const sml_element* appData);

  // Handlers of folder responses.
  void ProcessFolderSyncKey(const sml_element* element);
  void ProcessFolderStatus(const sml_element* element);
  void ProcessChanges(const sml_element* element);
  void ProcessFolderCount(const sml_element* element);
  void ProcessFolderAdd(const sml_element* element);
  void ProcessFolderUpdate(const sml_element* element);
  void ProcessFolderDelete(const sml_element* element);
  void ProcessFolderServerId(const sml_element* element);
  void ProcessHierarchyFolder(const sml_element* element);

  // Handlers of notification responses.
  void ProcessNotifyStatus(const sml_element* element);
  void ProcessNotifyResponses(const sml_element* element);
  void ProcessNotifyFolder(const sml_element* element);
  void ProcessNotifyFolderServerId(const sml_element* element);
  void ProcessNotifyFolderStatus(const sml_element* element);
  void ProcessNotifyValidCarrierProfiles(const sml_element* element);
  void ProcessNotifyCarrierProfile(const sml_element* element);
  void NotifyGUID(const sml_element* element);

  // Handlers of estimate, move and meeting responses.
  void ProcessEstimateResponse(const sml_element* element);
  void ProcessEstimateStatus(const sml_element* element);
  void ProcessEstimateCollection(const sml_element* element);
  void ProcessEstimateCollectionId(const sml_element* element);
  void ProcessEstimateClass(const sml_element* element);
  void ProcessEstimateEstimate(const sml_element* element);
  void ProcessMoveResponse(const sml_element* element);
  void ProcessMoveSrcMsgId(const sml_element* element);
  void ProcessMoveStatus(const sml_element* element);
  void ProcessMoveDstMsgId(const sml_element* element);
  void ProcessMeetingResponseResult(const sml_element* element);
  void ProcessMeetingResponseReqId(const sml_element* element);
  void ProcessMeetingResponseStatus(const sml_element* element);
  void ProcessMeetingResponseCalId(const sml_element* element);

 private:
  // What the current ApplicationData belongs to.
  enum CommandKind : INT32 {
    kServerAdd = 0,
    kServerDelete = 1,
    kServerChange = 2,
    kFetchResponse = 3,
  };

  // The arguments of the running MoveItems.
  struct Move {
    const SERVER_ID* items;
    const FOLDER_ID* sources;
    const FOLDER_ID* destinations;
    SERVER_ID* newIds;
    int* statuses;
    int count;
  };

  struct DispatchRow;
  static const DispatchRow kDispatchRows[];
  static const DispatchRow& RowOf(const char* tag, UINT8 codePage);

  struct WaitingFolder;
  struct ItemClass;
  static const ItemClass kItemClasses[];

  static const char* TextOf(const sml_element* element);
  static const char* ChildText(const sml_element* parent, const char* tag);

  void CheckCancelled() const;
  void RaiseUnlessSuccess(SYNC_RESULT family) const;
  void LogLine(AS_LOG_LEVEL_T level, const char* text) const;
  void LogFlag(const char* label, bool flag) const;
  const ItemClass* FolderClass() const;
  void ReadSyncResponse(const sml_element* root);
  void ReadItemStatus(const sml_element* response);
  SYNC_RESULT ItemResult() const;
  void HandItem(const void* record);

  void ReadFolderAnswer(const sml_element* root, const _SYNC_KEY& key);
  void HandleChildrenAdd(const sml_element* changes);
  void HandleFolderAdd(const sml_element* changes, WaitingFolder* folders, UINT32 count, UINT32 index);
  void ReadCarriers(const sml_element* root);
  // An entry point begins, and has brought these of Need. The caller's folders and lists end with it: no
  // later response may reach them.
  void Begin(UINT32 arguments);
  void ForgetArguments() { Begin(kNothing); }
  void SelectFolder(const char* collectionId);
  void IgnoreWithoutFolder(const sml_element* element) const;
  void ReportFolder(const sml_element* element, AS_FOLDER_OPERATION_T operation);

  AirSyncDBInterface* storage_ = nullptr;
  FOLDER_INFO* folder_ = nullptr;
  FOLDER_INFO** folderList_ = nullptr;
  int folderListCount_ = 0;
  INT32 status_ = 0;
  INT32 moreAvailable_ = PARSER_COMPLETE;
  SERVER_ID serverId_ = {};
  INT32 clientId_ = 0;
  INT32 commandKind_ = kServerAdd;
  Log* log_;
  UINT8 (*carrierList_)[64] = nullptr;
  UINT16 carrierCount_ = 0;
  UINT16 carrierNext_ = 0;
  SYNC_RESULT estimateResult_ = 0;
  char syncKey_[sizeof(_SYNC_KEY)] = {};
  _SYNC_KEY folderSyncKey_ = {};
  INT32 folderCount_ = 0;
  BASE_FOLDER folderEntry_ = {};
  char notifyGuid_[sizeof(_SYNC_KEY)] = {};
  Move move_ = {};
  SERVER_ID destinationId_ = {};
  SERVER_ID meetingRequestId_ = {};
  SERVER_ID meetingCalendarId_ = {};
  BASE_FOLDER* hierarchy_ = nullptr;
  UINT16 hierarchyCapacity_ = 0;
  UINT16 hierarchyCount_ = 0;
  UINT32 arguments_ = kNothing;
};

}  // namespace AIRSYNC_STACK

#endif
