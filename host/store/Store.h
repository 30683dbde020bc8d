// The store: folders, items and local changes of one account, in one SQLite file.
//
// # Looking and changing
//
//   Store store(path);                                    // opens the file, or makes it
//   Folder folder = store.findFolder("Contacts");
//   ItemNumber item = store.addItem(folder.number, contact);   // durable when the call returns
//   store.listItems(folder.number, [](const ItemSummary& line) { ...; return true; });
//
// # Synchronising
//
//   RunLock lock(path);                                   // one run at a time
//   store.setCancel([&] { airSync->CancelSync(); });
//   airSync->Initialize(server, deviceId, &transport, &store, ENCODING_WBXML, log);
//
//   _SYNC_KEY key = store.beginHierarchy(HierarchyFetch::changes);
//   SYNC_RESULT result = airSync->FolderSync(key);
//   if (result == AS_RESULT_OK) store.commitHierarchy(key); else store.rollbackHierarchy();
//
//   // for each step that store.nextStep(folder.number, ...) asks for, with a new record:
//   FolderRecord record = store.folderInfo(folder.number, settings);   // settings.syncMode by the step
//   store.beginSync(record.info(), rules);
//   result = airSync->Sync(record.info().syncKey, &record.info());
//   if (result == AS_RESULT_REQUEST_TOO_LARGE) store.setAsideLast("...");
//   SyncOutcome outcome = store.endSync(result, reached); // throws what a storage call failed with
//
// # Other commands
//
// Folders that we create, rename or delete ourselves: the server answers with the hierarchy's key alone, and
// the host tells the store what it has done. Nothing of it is kept unless commitHierarchy is called.
//
//   _SYNC_KEY key = store.beginHierarchy(HierarchyFetch::nothing);
//   BASE_FOLDER folder = {...};                           // name, type, parent; the id of an existing one
//   result = airSync->FolderCreate(key, &folder);         // fills the id; or FolderUpdate, FolderDelete
//   if (result == AS_RESULT_OK) {
//     store.UpdateFolder(&folder, AS_FOLDER_ADDED);       // all four members; or AS_FOLDER_UPDATED, _DELETED
//     store.commitHierarchy(key);
//   } else store.rollbackHierarchy();
//
// One item in full:
//
//   FolderRecord record = store.folderInfo(folder.number, settings);
//   store.beginFetch(record.info(), serverId);
//   result = airSync->Fetch(&record.info(), id);
//   FetchOutcome outcome = store.endFetch(result);
//
// Estimates and notifications, about several folders at once:
//
//   store.offerFolders(std::move(records));               // with `selected`, `notifyEnabled` as needed
//   result = airSync->GetItemEstimate();                  // or NotifyEnable
//   for (const FolderEstimate& estimate : store.estimates()) ...
//   store.offerFolders({});
//
// Moves: ask checkMovable of each item before, and call moveItem for each that the server moved.
//
// # What is durable when
//
// Everything that a response brings and its new sync key become durable in one transaction, when the library
// calls StoreSyncKey. That transaction begins with the first storage call of the response, when the response
// has been read whole: no network waits lie within it. A run that ends earlier, by an abort or a kill, leaves
// the state of the last stored key. Folders and the hierarchy's key become durable together in
// commitHierarchy. What a person changes is durable when the call returns. All three survive a power failure
// too (where the disk keeps its promises).
//
// # How a local change comes to its end
//
// Each item has at most one pending change; an item that is added and then changed is still one addition. A
// change is handed out once per beginSync, in the order in which the changes were made first. It ends
//   - with its result: an addition learns its server id; a refused change stays as a failure, with its
//     status, and is not sent again before somebody changes the item or calls retry;
//   - when the key of the exchange that carried it is stored, since servers may answer only additions and
//     failures. An addition without an answer does not end so: the store does not know its server id. It
//     becomes "unanswered" (see PendingChange), and stays so when it is edited; an item like it that the
//     server sends later is taken for it.
// Only the revision that was handed out is settled: a change made meanwhile, by this or another process,
// stays. A deletion that the server refuses because the item is gone (status 8) is done.
//
// # When nobody knows what became of a request
//
// Before a request goes out it is remembered durably under which key it goes and which changes it carries,
// none included. What a server does with a key that it has seen differs: some answer what they answered
// before, whatever the request holds now; others run it again, and make a second item of an addition. So an
// unknown outcome is never repeated blindly:
//   - a request without additions is repeated with the same content, and newer edits wait for the key after
//     it;
//   - after one with additions the folder begins anew: everything is downloaded before anything goes out, the
//     additions are looked for in it (by UID, then by content), and only those that are missing are sent.
// After an HTTP error to a request with changes each change goes in a request of its own, until the one is
// found that the server can't take: see blameRequest.
//
// # Conflicts
//
// A folder is received before anything is sent to it. An item conflicts when the server changed it and it was
// changed here: not, when the server sends what it had sent before, or what we sent, or the same as we have.
// What happens then is told by ConflictRule; nothing is lost that is not in the trash or in a copy, and
// SyncOutcome::conflicts names each.
//
// Mails are never added from here, and only whether they are read is changed here: that is no conflict with
// anything. While a mark waits, everything else that the server changes is shown at once; a mail that the
// server deleted goes, however it is marked, and one that was deleted here stays so. A server's change of a
// mail may carry only what changed: what it does not carry stays as it is.
//
// # The trash
//
// What a server deletes, and what loses a conflict, stays in the trash for 30 days. Deletions are carried out
// when the server has said all that it had to say; when they are many, only if they are allowed: see
// SyncRules.
//
// # Threads and processes
//
// A Store is used by one thread at a time, and a process has one Store of a file (opening a second one drops
// the first one's locks against other processes, as closing any descriptor of a file does). Several processes
// may use one file: reading never waits, writing waits up to ten seconds for another's transaction, and then
// throws.
//
// # Errors
//
// Error of support/Error.h. Storage calls, which the library makes, throw nothing: the first failure is kept,
// the running command is cancelled, later calls do nothing, and endSync or commitHierarchy throws it.
#ifndef AIRSYNC_HOST_STORE_STORE_H
#define AIRSYNC_HOST_STORE_STORE_H

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "api/AirSyncDBInterface.h"
#include "store/Login.h"
#include "store/RunLock.h"
#include "store/StoreTypes.h"
#include "support/Error.h"

namespace airsync {

// Whether FolderSync asks for what changed since the last time, or for all folders anew; or nothing is asked
// for, because we change a folder ourselves.
enum class HierarchyFetch { changes, all, nothing };

class Store final : public AIRSYNC_STACK::AirSyncDBInterface {
 public:
  /// Opens the file, makes it (mode 0600; a missing directory with mode 0700), or brings an older one up to
  /// date. Throws Error (account) for a file that is damaged, of another program or of a newer version; such
  /// a file is not touched.
  explicit Store(const std::filesystem::path& file);
  ~Store();
  Store(const Store&) = delete;
  Store& operator=(const Store&) = delete;

  // --- Whose it is ---

  /// The login whose mailbox this is a copy of; empty before setLogin. To hold others against it, before
  /// anything goes to a server, is the caller's work.
  std::optional<Login> login() const;

  /// Remembers the login. Durable on return.
  void setLogin(const Login& login);

  /// How many items and local changes differ from what they were when this was called first; what came and
  /// went again does not count, nor what others changed. It may become less.
  std::int64_t changeCount();

  /// Whether an item here has nothing but what this record has, which a server sent of the item with that id:
  /// it is the same item then, unless one side was changed. False when there is no such item. `info` is a
  /// record of the item's folder.
  bool agrees(const AIRSYNC_STACK::FOLDER_INFO& info, const std::string& serverId, const void* record) const;

  // --- Folders ---

  /// All folders with their counts, parents before children, in the order of their paths.
  std::vector<Folder> folders() const;
  /// The same with all counts 0: to count is to walk all items of all folders.
  std::vector<Folder> uncountedFolders() const;

  /// One folder, by its number. Throws Error (folder).
  Folder folder(FolderNumber number) const;

  /// One folder, by its server id, its path, or its name, in this order; letters' case counts unless nothing
  /// fits otherwise, and where one that can be synchronised and one that can't fit alike, the first is meant.
  /// Throws Error (folder) when none fits, or several do (the message names them).
  Folder findFolder(std::string_view text) const;

  /// The record for AirSync::Sync, with the folder's current key. Throws Error (folder): see FolderRecord;
  /// also for a folder that is gone.
  FolderRecord folderInfo(FolderNumber number, const FolderSettings& settings) const;

  /// Forgets the folder's key, after a server said that it does not know it, or when nextStep says so. Items
  /// and local changes stay; items that the following full download does not bring count as deleted by the
  /// server when it is complete, but for those that were changed here.
  void resetFolder(FolderNumber number);

  // --- Hierarchy ---

  /// Before AirSync::FolderSync: returns the key to call it with. With `all` it is "0", and folders that do
  /// not come again are gone after commitHierarchy; those that do keep their items and keys. `changes` is
  /// the same as `all` before the first one.
  /// With `nothing`, before AirSync::FolderCreate, FolderUpdate or FolderDelete: throws Error (account)
  /// before the first FolderSync, since there is no key then.
  AIRSYNC_STACK::_SYNC_KEY beginHierarchy(HierarchyFetch fetch);

  /// After a FolderSync that succeeded: folders and key become durable. A deleted folder takes its items with
  /// it to the trash, except for unsent local additions and changes, which stay as failures in a folder
  /// marked `gone`. Throws what a storage call failed with; then nothing was changed.
  void commitHierarchy(const AIRSYNC_STACK::_SYNC_KEY& key);

  /// After a FolderSync that failed: nothing was changed.
  void rollbackHierarchy();

  /// The hierarchy's key; "0" before the first FolderSync.
  std::string hierarchyKey() const;

  // --- Synchronising a folder ---

  /// What the folder's next AirSync::Sync has to be. `syncMode` is that of the configuration (0: both ways,
  /// 1: only send, 2: only receive); `received`: in this run the server has already said all that it had to
  /// say, and nothing has happened since that it would have to say more about. While an outcome is unknown, a
  /// folder that only sends receives, too.
  SyncStep nextStep(FolderNumber number, INT32 syncMode, bool received) const;

  /// What the next step would delete on the server, to be compared by isMassDeletion.
  WaitingDeletions waitingDeletions(FolderNumber number) const;

  /// What ends the running command when a storage call fails; typically AirSync::CancelSync.
  void setCancel(std::function<void()> cancel);

  /// Before each AirSync::Sync. `info` stays alive and in its place until endSync; StoreSyncKey renews its
  /// key. Throws Error (folder) when nextStep says beginAnew.
  void beginSync(AIRSYNC_STACK::FOLDER_INFO& info, const SyncRules& rules = {});

  /// After AirSync::Sync, with its result, or with AS_RESULT_OK where the host counts a result as success.
  /// What came after the last stored key is rolled back. `reached`: whether any of the last request may have
  /// reached the server; after one that did not, its changes count as never sent. Throws the first error of a
  /// storage call, if any.
  SyncOutcome endSync(AIRSYNC_STACK::SYNC_RESULT result, Reached reached = Reached::perhaps);

  /// After endSync, when the server answered the last request with an error. If it carried one change alone,
  /// that is set aside with this reason: a change or a deletion at once, an addition when the download that
  /// follows has shown that the server does not have it. If it carried several, each goes in a request of its
  /// own from now on, until none waits any more.
  Blame blameRequest(const std::string& reason);

  /// After AS_RESULT_REQUEST_TOO_LARGE, before or after endSync: the change that was handed out last becomes
  /// a failure with this reason, and the next AirSync::Sync goes without it. Returns its item; empty when
  /// there is none, or it was changed meanwhile.
  std::optional<ItemNumber> setAsideLast(const std::string& reason);

  // --- Fetching an item ---

  /// Whether a request was sent under the folder's key and never answered. The next AirSync::Sync must come
  /// first then: it repeats that request, and brings the answer.
  bool repetitionDue(FolderNumber number) const;

  /// Before AirSync::Fetch for the item of that id. `info` stays alive and in its place until endFetch;
  /// StoreSyncKey renews its key. Throws Error (folder), with the advice to synchronise first, for a folder
  /// whose key is "0", and when a repetition is due: a server answers a repeated key with its first answer,
  /// and what was sent then would be lost.
  void beginFetch(AIRSYNC_STACK::FOLDER_INFO& info, const std::string& serverId);

  /// After AirSync::Fetch, with its result. The item that came replaces what is here whole; of an item with a
  /// local change the server's version, so that the local change stays (of a mail everything but whether it
  /// is read). What came after the last stored key is rolled back, unless it was the item alone. Throws the
  /// first error of a storage call, if any.
  FetchOutcome endFetch(AIRSYNC_STACK::SYNC_RESULT result, Reached reached = Reached::perhaps);

  // --- Folders for estimates and notifications ---

  /// What GetFolderList hands out until the next call; with no folders, none. Forgets what was reported about
  /// others before.
  void offerFolders(std::vector<FolderRecord> folders);

  /// What the server reported since offerFolders, in the order of the first report of each folder; of several
  /// reports about one folder the last.
  std::vector<FolderEstimate> estimates() const;
  std::vector<FolderNotifyStatus> notifyStatuses() const;

  // --- Items ---

  /// Calls `each` for every item of the folder in the order of their numbers until it returns false. Items
  /// whose deletion waits are left out. `each` may call the store.
  void listItems(FolderNumber folder, const std::function<bool(const ItemSummary&)>& each) const;

  /// The item that a person means: its number, or its server id (the number wins when both fit). Throws Error
  /// (item) when there is none in this folder.
  ItemNumber findItem(FolderNumber folder, std::string_view text) const;

  /// One item. Throws Error (item) when it is not there, or its deletion waits.
  StoredItem item(ItemNumber item) const;

  /// Local changes. Durable on return. Throw Error (item) for an item that can't be sent as it stands (see
  /// FieldValues::validate and Event::validate) or is not there; for a mail, which the protocol does not let
  /// a device make or edit; and for one of another class than the folder's. Error (folder) for a folder that
  /// is gone or never synchronised.
  ItemNumber addItem(FolderNumber folder, const ItemValue& value);
  void changeItem(ItemNumber item, const ItemValue& value);
  /// Marks a mail read or unread. A local change; nothing when it is so already. Throws Error (item) for an
  /// item that is no mail or is not there.
  void markMail(ItemNumber item, bool read);
  /// An item that was added here and never sent is simply forgotten.
  void deleteItem(ItemNumber item);

  // --- Moving items ---

  /// Throws Error (item) when the item can't be moved to that folder: it is not there, has a local change or
  /// was never sent (synchronise first), is in that folder already, or of another class than it. Error
  /// (folder) when the folder is gone or not there.
  void checkMovable(ItemNumber item, FolderNumber to) const;

  /// After the server moved the item, whatever checkMovable says by now: it is in the other folder at once,
  /// under its new identifier. What that folder's next response brings under that identifier is the same
  /// item. A local change that was made meanwhile goes along. Without an identifier the item is gone here
  /// until that folder is synchronised; an edit that was made meanwhile then stays as a failure in it.
  /// Durable on return. Throws Error (folder) when there is no such folder.
  void moveItem(ItemNumber item, FolderNumber to, const std::optional<std::string>& newServerId);

  // --- Failures ---

  /// Local changes that need a person; of one folder or of all.
  std::vector<Failure> failures(std::optional<FolderNumber> folder = std::nullopt) const;

  /// Sends the item's failed change again with the next synchronisation. Throws Error (item) when it has
  /// none, Error (folder) when its folder is gone.
  void retry(ItemNumber item);

  /// Gives the item's local change up, whether it failed or waits: the item is again what the server has. An
  /// addition is forgotten, and so is a folder that is gone when its last item is. Throws Error (item) when
  /// there is none, when it may be under way to the server (synchronise first), or when the server took an
  /// older change meanwhile, so that its version is not known here.
  void discard(ItemNumber item);

  // --- The trash ---

  /// By the time they came in, the oldest first.
  std::vector<TrashedItem> trash() const;

  /// What an item in the trash holds. Throws Error (item) when it is not there.
  ItemValue trashedItem(ItemNumber item) const;

  /// Puts it back, into its own folder or another one of its class, as a new item that goes to the server
  /// with the next synchronisation. Its number stays. Throws Error (item) for a mail, which a device can't
  /// put on the server, when it is not in the trash, and when the folder is gone or of another class.
  ItemNumber restoreItem(ItemNumber item, std::optional<FolderNumber> to = std::nullopt);

  /// Forgets what has been there for more than 30 days. Returns how many items.
  int purgeTrash();

  // --- AirSyncDBInterface, for the library ---

  AIRSYNC_STACK::SYNC_RESULT StoreSyncKey(INT32 folder, void* reserved, const char* syncKey) override;
  AIRSYNC_STACK::SYNC_RESULT Reserved1() override;
  AIRSYNC_STACK::SYNC_RESULT GetFolderList(AIRSYNC_STACK::FOLDER_INFO*** folders, int* count) override;
  AIRSYNC_STACK::SYNC_RESULT SetNotifyFolderStatus(INT32 folder, AIRSYNC_STACK::SYNC_RESULT result) override;
  AIRSYNC_STACK::SYNC_RESULT SetItemEstimate(INT32 folder, AIRSYNC_STACK::SYNC_RESULT result,
                                             int estimate) override;
  int GetNextChange(INT32 folder, void** record, AIRSYNC_STACK::SERVER_ID* id, UINT32* clientId,
                    int* kind) override;
  AIRSYNC_STACK::SYNC_RESULT Reserved6() override;
  AIRSYNC_STACK::SYNC_RESULT AddResult(INT32 folder, const UINT32* clientId,
                                       const AIRSYNC_STACK::SERVER_ID* id,
                                       AIRSYNC_STACK::SYNC_RESULT result) override;
  AIRSYNC_STACK::SYNC_RESULT DeleteResult(INT32 folder, const AIRSYNC_STACK::SERVER_ID* id,
                                          AIRSYNC_STACK::SYNC_RESULT result) override;
  AIRSYNC_STACK::SYNC_RESULT ChangeResult(INT32 folder, const AIRSYNC_STACK::SERVER_ID* id,
                                          AIRSYNC_STACK::SYNC_RESULT result) override;
  AIRSYNC_STACK::SYNC_RESULT FetchedItem(INT32 folder, const AIRSYNC_STACK::SERVER_ID* id, const void* record,
                                         AIRSYNC_STACK::SYNC_RESULT result) override;
  AIRSYNC_STACK::SYNC_RESULT AddServerItem(INT32 folder, const AIRSYNC_STACK::SERVER_ID* id,
                                           const void* record) override;
  AIRSYNC_STACK::SYNC_RESULT DeleteServerItem(INT32 folder, const AIRSYNC_STACK::SERVER_ID* id) override;
  AIRSYNC_STACK::SYNC_RESULT ChangeServerItem(INT32 folder, const AIRSYNC_STACK::SERVER_ID* id,
                                              const void* record) override;
  AIRSYNC_STACK::SYNC_RESULT Reserved14() override;
  AIRSYNC_STACK::SYNC_RESULT Reserved15() override;
  AIRSYNC_STACK::SYNC_RESULT Reserved16() override;
  AIRSYNC_STACK::SYNC_RESULT UpdateFolder(const AIRSYNC_STACK::BASE_FOLDER* folder, int operation) override;

 private:
  struct Parts;
  std::unique_ptr<Parts> parts_;
};

}  // namespace airsync

#endif
