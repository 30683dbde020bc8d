// The host's storage: where local changes come from, and where everything that the server sends goes to.
#ifndef KROAIRSYNC_API_AIRSYNC_DB_INTERFACE_H
#define KROAIRSYNC_API_AIRSYNC_DB_INTERFACE_H

#include "api/ItemRecords.h"
#include "api/Records.h"

namespace AIRSYNC_STACK {

// What a change handed out by GetNextChange is.
enum AS_CHANGE_KIND_T : int {
  AS_CHANGE_ADD = 0,
  AS_CHANGE_DELETE = 1,
  AS_CHANGE_CHANGE = 2,
};

// What happened to a folder that is handed to UpdateFolder.
enum AS_FOLDER_OPERATION_T : int {
  AS_FOLDER_ADDED = 0,
  AS_FOLDER_DELETED = 1,
  AS_FOLDER_UPDATED = 2,
};

/// Reads local changes and stores what the server sends.
///
/// The host implements it, owns it, and keeps it alive from AirSync::Initialize to AirSync::Uninitialize; the
/// library never deletes it and keeps no items of its own. Every call comes from inside an AirSync operation,
/// on that operation's thread, and may block; an implementation calls no AirSync operation but CancelSync.
/// The library ignores every result but GetNextChange's: a storage that fails says so by its own means.
///
/// `folder` is the handle of the FOLDER_INFO record that the running command was given. Pointers are lent for
/// the duration of a call. `record` points to an AS_CONTACT_T, AS_CALENDAR_T or AS_EMAIL_T, by the folder's
/// data class. A `result` is 0 where the server's status was 1, else the status or-ed with the family named.
/// The order of the operations is fixed.
class AirSyncDBInterface {
 public:
  /// The collection's new sync key, after everything else that its response brought. `reserved` is null.
  virtual SYNC_RESULT StoreSyncKey(INT32 folder, void* reserved, const char* syncKey) = 0;

  /// Never called.
  virtual SYNC_RESULT Reserved1() = 0;

  /// All folders: an array of `*count` records that stays valid until the running command has ended.
  virtual SYNC_RESULT GetFolderList(FOLDER_INFO*** folders, int* count) = 0;

  /// A folder's status in the answer to a notification-enable request (AS_RESULT_FAMILY_NOTIFY).
  virtual SYNC_RESULT SetNotifyFolderStatus(INT32 folder, SYNC_RESULT result) = 0;

  /// The number of items that wait on the server (AS_RESULT_FAMILY_ESTIMATE). A failure comes with 0 items,
  /// and a second time if the server sent a number with it.
  virtual SYNC_RESULT SetItemEstimate(INT32 folder, SYNC_RESULT result, int estimate) = 0;

  /// The next local change. Returns 0 with all four filled, or another value when there is none left.
  ///
  /// `*kind` is one of AS_CHANGE_KIND_T. An Add is known by `*clientId`, a Delete or a Change by `*id`;
  /// a Delete needs no record. Each change is handed out once, and `*record`, the id and the client id stay
  /// valid until the response to the request that carries it has been processed.
  virtual int GetNextChange(INT32 folder, void** record, SERVER_ID* id, UINT32* clientId, int* kind) = 0;

  /// Never called.
  virtual SYNC_RESULT Reserved6() = 0;

  /// The server's answer to an Add (AS_RESULT_FAMILY_ITEM). `id` is the item's new id where `result` is 0,
  /// and otherwise means nothing.
  virtual SYNC_RESULT AddResult(INT32 folder, const UINT32* clientId, const SERVER_ID* id,
                                SYNC_RESULT result) = 0;

  /// The server's answer to a Delete or a Change (AS_RESULT_FAMILY_ITEM).
  virtual SYNC_RESULT DeleteResult(INT32 folder, const SERVER_ID* id, SYNC_RESULT result) = 0;
  virtual SYNC_RESULT ChangeResult(INT32 folder, const SERVER_ID* id, SYNC_RESULT result) = 0;

  /// An item that came back for a Fetch (AS_RESULT_FAMILY_ITEM).
  virtual SYNC_RESULT FetchedItem(INT32 folder, const SERVER_ID* id, const void* record,
                                  SYNC_RESULT result) = 0;

  /// The server's own changes.
  virtual SYNC_RESULT AddServerItem(INT32 folder, const SERVER_ID* id, const void* record) = 0;
  virtual SYNC_RESULT DeleteServerItem(INT32 folder, const SERVER_ID* id) = 0;
  virtual SYNC_RESULT ChangeServerItem(INT32 folder, const SERVER_ID* id, const void* record) = 0;

  /// Never called.
  virtual SYNC_RESULT Reserved14() = 0;
  virtual SYNC_RESULT Reserved15() = 0;
  virtual SYNC_RESULT Reserved16() = 0;

  /// A change of the folder hierarchy; `operation` is one of AS_FOLDER_OPERATION_T. Of a deleted folder only
  /// the server id is filled. Folders of the user's own types come after their parents.
  virtual SYNC_RESULT UpdateFolder(const BASE_FOLDER* folder, int operation) = 0;

 protected:
  ~AirSyncDBInterface() = default;
};

}  // namespace AIRSYNC_STACK

#endif
