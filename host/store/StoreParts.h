// What a Store is made of.
#ifndef AIRSYNC_HOST_STORE_STORE_PARTS_H
#define AIRSYNC_HOST_STORE_STORE_PARTS_H

#include <exception>
#include <functional>
#include <optional>

#include "store/ChangeMeter.h"
#include "store/Database.h"
#include "store/FolderOffer.h"
#include "store/FolderTable.h"
#include "store/HierarchyUpdate.h"
#include "store/ItemClasses.h"
#include "store/ItemMoves.h"
#include "store/ItemTable.h"
#include "store/LocalEdits.h"
#include "store/Store.h"
#include "store/SyncSession.h"
#include "store/TrashTable.h"

namespace airsync {

struct Store::Parts {
  explicit Parts(const std::filesystem::path& file) : database(file) {}

  Database database;
  FolderTable folders{database};
  ItemTable items{database};
  PendingTable pending{database};
  TrashTable trash{database};
  ItemClasses classes{database};
  LocalEdits edits{database, folders, items, pending, trash, classes};
  ItemMoves moves{database, folders, items, pending, classes};
  FolderOffer offer;
  std::optional<ChangeMeter> meter;

  std::function<void()> cancel;
  std::exception_ptr failure;  // the first error of a storage call
  std::optional<HierarchyUpdate> hierarchy;
  std::optional<SyncSession> session;
  bool sessionRuns = false;  // from begin to end; the session itself stays for setAsideLast

  // Runs the work of a storage call. An error must not reach the library: it is kept, and ends the command.
  template <typename Body>
  void callback(const char* operation, Body&& body) noexcept;

  [[noreturn]] static void outOfOrder(const char* operation);

  // A command about one folder begins or ends. endSession throws the first error of a storage call.
  void beginSession(const char* operation, AIRSYNC_STACK::FOLDER_INFO& info, SessionKind kind,
                    const SyncRules& rules);
  void endSession(const char* operation);

  // The running session, if it is about this folder. Throws Error.
  SyncSession& sessionOf(INT32 folder);

  void rethrowFailure();
};

}  // namespace airsync

#endif
