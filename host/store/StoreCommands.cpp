// What surrounds a command: hierarchy, synchronising, fetching, offering folders.
#include <algorithm>
#include <cstring>
#include <utility>

#include "store/Store.h"
#include "store/StoreParts.h"

namespace airsync {

using namespace AIRSYNC_STACK;

void Store::setCancel(std::function<void()> cancel) { parts_->cancel = std::move(cancel); }

SyncSession& Store::Parts::sessionOf(INT32 folder) {
  if (!sessionRuns || session->folder() != folder) outOfOrder("storing what the server sent");
  return *session;
}

void Store::Parts::rethrowFailure() {
  if (failure) std::rethrow_exception(std::exchange(failure, nullptr));
}

void Store::Parts::outOfOrder(const char* operation) {
  throw Error({.operation = operation,
               .subject = {},
               .cause = "it does not belong to the command that is running",
               .advice = "This is an error of the program: report it with this line."});
}

void Store::Parts::beginSession(const char* operation, FOLDER_INFO& info, SessionKind kind,
                                const SyncRules& rules) {
  failure = nullptr;
  sessionRuns = false;
  session.reset();
  const SyncTables tables = {database, folders, items, pending, trash, classes.of(info.dataType)};
  database.guarded(operation, [&] { session.emplace(tables, info, kind, rules); });
  sessionRuns = true;
}

void Store::Parts::endSession(const char* operation) {
  if (!sessionRuns) outOfOrder(operation);
  sessionRuns = false;
  if (!failure) return;
  session->undo();
  rethrowFailure();
}

// --- The folder hierarchy ---

_SYNC_KEY Store::beginHierarchy(HierarchyFetch fetch) {
  const std::string stored = hierarchyKey();
  const bool first = stored == "0";
  if (first && fetch == HierarchyFetch::nothing) {
    throw Error({.operation = "changing the folder hierarchy",
                 .subject = {},
                 .cause = "the account's folders are not known here yet",
                 .advice = "Run \"airsync folders --refresh\" first."});
  }
  const bool all = fetch == HierarchyFetch::all || first;
  parts_->failure = nullptr;
  parts_->hierarchy.reset();
  parts_->hierarchy.emplace(parts_->database, all);
  _SYNC_KEY key = {};
  const std::string text = all ? "0" : stored;
  std::memcpy(key.text, text.data(), std::min(text.size(), sizeof(key.text) - 1));
  return key;
}

void Store::commitHierarchy(const _SYNC_KEY& key) {
  if (!parts_->hierarchy && !parts_->failure) Parts::outOfOrder("storing the folder hierarchy");
  if (!parts_->failure) {
    try {
      parts_->database.guarded("storing the folder hierarchy in", [&] {
        parts_->hierarchy->commit({key.text, strnlen(key.text, sizeof(key.text))});
      });
    } catch (...) {
      parts_->failure = std::current_exception();
    }
  }
  parts_->hierarchy.reset();
  parts_->rethrowFailure();
}

void Store::rollbackHierarchy() {
  parts_->hierarchy.reset();
  parts_->failure = nullptr;
}

// --- Synchronising a folder ---

SyncStep Store::nextStep(FolderNumber number, INT32 syncMode, bool received) const {
  return parts_->database.guarded("looking for what to do next in",
                                  [&] { return parts_->folders.nextStep(number, syncMode, received); });
}

WaitingDeletions Store::waitingDeletions(FolderNumber number) const {
  return parts_->database.guarded("counting deletions in",
                                  [&] { return parts_->folders.waitingDeletions(number); });
}

void Store::beginSync(FOLDER_INFO& info, const SyncRules& rules) {
  parts_->beginSession("beginning to synchronise in", info, SessionKind::sync, rules);
}

SyncOutcome Store::endSync(SYNC_RESULT result, Reached reached) {
  parts_->endSession("ending a synchronisation");
  return parts_->database.guarded("ending a synchronisation in",
                                  [&] { return parts_->session->end(result == AS_RESULT_OK, reached); });
}

Blame Store::blameRequest(const std::string& reason) {
  if (!parts_->session) return Blame::nothing;
  return parts_->database.guarded("noting an error of the server in", [&] {
    Transaction transaction(parts_->database);
    const Blame blame = parts_->session->blame(reason);
    transaction.commit();
    return blame;
  });
}

std::optional<ItemNumber> Store::setAsideLast(const std::string& reason) {
  if (!parts_->session) return std::nullopt;
  return parts_->database.guarded("setting a change aside in", [&] {
    parts_->session->undo();
    return parts_->session->setAsideLast(reason);
  });
}

// --- Fetching an item ---

bool Store::repetitionDue(FolderNumber number) const {
  return parts_->database.guarded("looking for unanswered requests in",
                                  [&] { return parts_->folders.repetitionDue(number); });
}

void Store::beginFetch(FOLDER_INFO& info, const std::string& serverId) {
  parts_->beginSession("beginning to fetch in", info, SessionKind::fetch, {});
  parts_->session->await(serverId);
}

FetchOutcome Store::endFetch(SYNC_RESULT result, Reached reached) {
  parts_->endSession("ending a fetch");
  return parts_->database.guarded("ending a fetch in",
                                  [&] { return parts_->session->endFetch(result, reached); });
}

// --- Folders for estimates and notifications ---

void Store::offerFolders(std::vector<FolderRecord> folders) {
  parts_->failure = nullptr;
  parts_->offer = FolderOffer(std::move(folders));
}

std::vector<FolderEstimate> Store::estimates() const { return parts_->offer.estimates(); }

std::vector<FolderNotifyStatus> Store::notifyStatuses() const { return parts_->offer.notifyStatuses(); }

}  // namespace airsync
