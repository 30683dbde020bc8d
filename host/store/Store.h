// The store: folders, items and local changes of one account, in one SQLite file.
//
// # Looking and changing
//
//   Store store(path);                                    // opens the file, or makes it
//   Folder folder = store.findFolder("Contacts");
//   ItemNumber item = store.addContact(folder.number, contact);   // durable when the call returns
//   store.listContacts(folder.number, [](const ContactSummary& line) { ...; return true; });
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
//   FolderRecord record = store.folderInfo(folder.number, settings);
//   store.beginSync(record.info());
//   result = airSync->Sync(record.info().syncKey, &record.info());
//   if (result == AS_RESULT_REQUEST_TOO_LARGE) store.setAsideLast("...");
//   SyncOutcome outcome = store.endSync(result);          // throws what a storage call failed with
//   // again, with a new record, while outcome.initial or outcome.moreToSend
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
//   status,
//     and is not sent again before somebody changes the item or calls retry;
//   - when the key of the exchange that carried it is stored, since servers may answer only additions and
//     failures. An addition without an answer does not end so: the store does not know its server id. It
//     becomes "unanswered" (see PendingChange), and stays so when it is edited; an item like it that the
//     server sends later is taken for it.
// Only the revision that was handed out is settled: a change made meanwhile, by this or another process,
// stays. A deletion that the server refuses because the item is gone (status 8) is done.
//
// What was sent under a key is remembered durably before the request goes out. When the response never
// arrived, the next run sends under the same key exactly those changes again and no others, because a server
// answers a repeated key with its first answer: anything new in the request would be lost on it.
//
// # Conflicts
//
// A server's change of an item with a pending local change: with `conflict` 0 the local change stays, with 1
// the server's version replaces it (SyncOutcome::overwritten). A server's deletion of an item that was
// changed here: with 0 the item stays and is added anew, with 1 it is gone. During the download after
// resetFolder nothing that comes is a conflict: local changes stay.
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
#include "store/Contact.h"
#include "store/ContactRecord.h"
#include "store/RunLock.h"
#include "store/StoreTypes.h"
#include "support/Error.h"

namespace airsync {

// Whether FolderSync asks for what changed since the last time, or for all folders anew.
enum class HierarchyFetch { changes, all };

class Store final : public AIRSYNC_STACK::AirSyncDBInterface {
 public:
  /// Opens the file, makes it (mode 0600; a missing directory with mode 0700), or brings an older one up to
  /// date. Throws Error (account) for a file that is damaged, of another program or of a newer version; such
  /// a file is not touched.
  explicit Store(const std::filesystem::path& file);
  ~Store();
  Store(const Store&) = delete;
  Store& operator=(const Store&) = delete;

  // --- Folders ---

  /// All folders with their counts, parents before children, in the order of their paths.
  std::vector<Folder> folders() const;

  /// One folder, by its number. Throws Error (folder).
  Folder folder(FolderNumber number) const;

  /// One folder, by its server id, its path, or its name, in this order; letters' case counts unless nothing
  /// fits otherwise. Throws Error (folder) when none fits, or several do (the message names them).
  Folder findFolder(std::string_view text) const;

  /// The record for AirSync::Sync, with the folder's current key. Throws Error (folder): see FolderRecord;
  /// also for a folder that is gone.
  FolderRecord folderInfo(FolderNumber number, const FolderSettings& settings) const;

  /// Forgets the folder's key, after a server said that it does not know it. Items and local changes stay;
  /// items that the following full download does not bring disappear when it is complete.
  void resetFolder(FolderNumber number);

  // --- Hierarchy ---

  /// Before AirSync::FolderSync: returns the key to call it with. With `all` it is "0", and folders that do
  /// not come again are gone after commitHierarchy; those that do keep their items and keys.
  AIRSYNC_STACK::_SYNC_KEY beginHierarchy(HierarchyFetch fetch);

  /// After a FolderSync that succeeded: folders and key become durable. A deleted folder takes its items with
  /// it, except for unsent local additions and changes, which stay as failures in a folder marked `gone`.
  /// Throws what a storage call failed with; then nothing was changed.
  void commitHierarchy(const AIRSYNC_STACK::_SYNC_KEY& key);

  /// After a FolderSync that failed: nothing was changed.
  void rollbackHierarchy();

  /// The hierarchy's key; "0" before the first FolderSync.
  std::string hierarchyKey() const;

  // --- Synchronising a folder ---

  /// What ends the running command when a storage call fails; typically AirSync::CancelSync.
  void setCancel(std::function<void()> cancel);

  /// Before each AirSync::Sync. `info` stays alive and in its place until endSync; StoreSyncKey renews its
  /// key.
  void beginSync(AIRSYNC_STACK::FOLDER_INFO& info);

  /// After AirSync::Sync, with its result, or with AS_RESULT_OK where the host counts a result as success.
  /// What came after the last stored key is rolled back. Throws the first error of a storage call, if any.
  SyncOutcome endSync(AIRSYNC_STACK::SYNC_RESULT result);

  /// After AS_RESULT_REQUEST_TOO_LARGE, before or after endSync: the change that was handed out last becomes
  /// a failure with this reason, and the next AirSync::Sync goes without it. Returns its item; empty when
  /// there is none, or it was changed meanwhile.
  std::optional<ItemNumber> setAsideLast(const std::string& reason);

  // --- Items ---

  /// Calls `each` for every contact of the folder in the order of their numbers until it returns false.
  /// Contacts whose deletion waits are left out. `each` may call the store.
  void listContacts(FolderNumber folder, const std::function<bool(const ContactSummary&)>& each) const;

  /// The item that a person means: its number, or its server id (the number wins when both fit). Throws Error
  /// (item) when there is none in this folder.
  ItemNumber findItem(FolderNumber folder, std::string_view text) const;

  /// One contact. Throws Error (item) when it is not there, or its deletion waits.
  StoredContact contact(ItemNumber item) const;

  /// Local changes. Durable on return. Throw Error (item) for a contact that can't be sent as it stands (see
  /// Contact::validate) or is not there, Error (folder) for a folder that holds no contacts or is gone.
  ItemNumber addContact(FolderNumber folder, const Contact& contact);
  void changeContact(ItemNumber item, const Contact& contact);
  /// An item that was added here and never sent is simply forgotten.
  void deleteItem(ItemNumber item);

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
