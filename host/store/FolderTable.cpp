#include "store/FolderTable.h"

#include <algorithm>
#include <strings.h>
#include <unordered_map>

#include "store/FolderTypes.h"
#include "support/Error.h"

namespace airsync {
namespace {

// No real hierarchy is that deep.
constexpr std::size_t kDeepest = 64;

using Indices = std::unordered_map<std::string, std::size_t>;

void fillPaths(std::vector<Folder>& folders) {
  Indices byServerId;
  for (std::size_t index = 0; index < folders.size(); ++index) {
    if (!folders[index].gone) byServerId.emplace(folders[index].serverId, index);
  }
  for (Folder& folder : folders) {
    folder.path = folder.name;
    std::string parent = folder.parentId;
    // A server could make a circle of parents: no folder stands in its own path.
    std::vector<const Folder*> line = {&folder};
    while (line.size() <= kDeepest) {
      const auto found = byServerId.find(parent);
      if (found == byServerId.end()) break;
      const Folder& above = folders[found->second];
      if (std::find(line.begin(), line.end(), &above) != line.end()) break;
      line.push_back(&above);
      folder.path.insert(0, above.name + "/");
      parent = above.parentId;
    }
  }
}

[[noreturn]] void refuse(std::string_view text, const std::string& cause) {
  throw Error({.kind = ErrorKind::folder,
               .operation = "looking for the folder",
               .subject = "\"" + std::string(text) + "\"",
               .cause = cause,
               .advice = "See \"airsync folders\" for their names and identifiers."});
}

Folder numbered(FolderNumber number, std::vector<Folder> folders) {
  for (Folder& folder : folders) {
    // cppcheck-suppress returnStdMoveLocal ; it is a reference into the list
    if (folder.number == number) return std::move(folder);
  }
  refuse(std::to_string(number), "there is no such folder any more");
}

// The one folder that `fits`; null when there is none. Throws when there are several.
template <typename Fits>
const Folder* only(const std::vector<Folder>& folders, std::string_view text, Fits fits) {
  const Folder* found = nullptr;
  std::string names;
  for (const Folder& folder : folders) {
    if (!fits(folder)) continue;
    if (found != nullptr) names += names.empty() ? found->path + " (" + found->serverId + ")" : std::string();
    if (found != nullptr) names += ", " + folder.path + " (" + folder.serverId + ")";
    found = &folder;
  }
  if (!names.empty()) refuse(text, "it could be any of " + names);
  return found;
}

bool sameLetters(const std::string& left, std::string_view right) {
  return left.size() == right.size() && strncasecmp(left.data(), right.data(), right.size()) == 0;
}

}  // namespace

void FolderTable::readFolders(std::vector<Folder>& folders) {
  Query query(
      database_,
      "SELECT id, server_id, parent_id, name, type, sync_key, gone, last_sync FROM folder WHERE id <> 0 "
      "ORDER BY id");
  while (query.step()) {
    Folder folder;
    folder.number = static_cast<FolderNumber>(query.integer(0));
    folder.serverId = query.text(1);
    folder.parentId = query.text(2);
    folder.name = query.text(3);
    folder.type = static_cast<INT32>(query.integer(4));
    folder.dataType = folderType(folder.type).dataType;
    folder.syncKey = query.text(5);
    folder.gone = query.integer(6) != 0;
    if (const auto time = query.maybeText(7)) folder.lastSync = UtcTime::parse(*time);
    folders.push_back(std::move(folder));
  }
}

void FolderTable::readCounts(std::vector<Folder>& folders) {
  std::unordered_map<std::int64_t, Folder*> byNumber;
  for (Folder& folder : folders) byNumber.emplace(folder.number, &folder);

  Query items(database_, "SELECT folder_id, count(*) FROM item WHERE folder_id <> 0 GROUP BY folder_id");
  while (items.step()) byNumber.at(items.integer(0))->items = static_cast<std::size_t>(items.integer(1));

  Query pending(database_,
                "SELECT folder_id, state = 'waiting', kind = 'delete' OR dropped, count(*) FROM pending "
                "GROUP BY 1, 2, 3");
  while (pending.step()) {
    Folder& folder = *byNumber.at(pending.integer(0));
    const auto count = static_cast<std::size_t>(pending.integer(3));
    (pending.integer(1) != 0 ? folder.pending : folder.failed) += count;
    if (pending.integer(2) != 0) folder.items -= count;
  }
}

std::vector<Folder> FolderTable::list() {
  const Snapshot snapshot(database_);  // the counts are those of these folders
  std::vector<Folder> folders = listUncounted();
  readCounts(folders);
  return folders;
}

std::vector<Folder> FolderTable::listUncounted() {
  std::vector<Folder> folders;
  readFolders(folders);
  fillPaths(folders);
  std::stable_sort(folders.begin(), folders.end(),
                   [](const Folder& left, const Folder& right) { return left.path < right.path; });
  return folders;
}

Folder FolderTable::get(FolderNumber number) { return numbered(number, list()); }

Folder FolderTable::getUncounted(FolderNumber number) { return numbered(number, listUncounted()); }

Folder FolderTable::find(std::string_view text) {
  const std::vector<Folder> folders = list();
  using Fits = bool (*)(const Folder&, std::string_view);
  constexpr Fits ladder[] = {
      [](const Folder& folder, std::string_view wanted) { return folder.serverId == wanted; },
      [](const Folder& folder, std::string_view wanted) { return folder.path == wanted; },
      [](const Folder& folder, std::string_view wanted) { return folder.name == wanted; },
      [](const Folder& folder, std::string_view wanted) { return sameLetters(folder.path, wanted); },
      [](const Folder& folder, std::string_view wanted) { return sameLetters(folder.name, wanted); },
  };
  for (const bool gone : {false, true}) {
    for (const Fits fits : ladder) {
      // What can't be synchronised is meant only where nothing else of the name is.
      for (const bool holdsItems : {true, false}) {
        const auto all = [&](const Folder& folder) {
          return folder.gone == gone && folder.dataType.has_value() == holdsItems && fits(folder, text);
        };
        if (const Folder* found = only(folders, text, all)) return *found;
      }
    }
  }
  refuse(text, folders.empty() ? "no folders are known yet" : "there is no such folder");
}

std::optional<FolderState> FolderTable::state(FolderNumber number) {
  Query query(
      database_,
      "SELECT sync_key, generation, reconciling, gone, type, one_by_one, asked_key FROM folder WHERE id = ?");
  if (!query.bind(number).step()) return std::nullopt;
  return FolderState{.syncKey = query.text(0),
                     .generation = query.integer(1),
                     .reconciling = query.integer(2) != 0,
                     .gone = query.integer(3) != 0,
                     .type = static_cast<INT32>(query.integer(4)),
                     .asked = query.maybeText(6) == query.text(0),
                     .oneByOne = query.integer(5) != 0};
}

bool FolderTable::repetitionDue(FolderNumber number) {
  Query query(database_,
              "SELECT 1 FROM folder WHERE id = ? AND (asked_key = sync_key OR EXISTS (SELECT 1 FROM pending "
              "WHERE folder_id = folder.id AND handed = 1 AND sent_key = sync_key))");
  return query.bind(number).step();
}

bool FolderTable::additionsUnanswered(FolderNumber number) {
  Query query(database_,
              "SELECT 1 FROM folder WHERE id = ? AND reconciling = 0 AND EXISTS (SELECT 1 FROM pending WHERE "
              "folder_id = folder.id AND (blamed = 1 OR handed = 1 AND sent_key = sync_key AND "
              "sent_kind = 'add'))");
  return query.bind(number).step();
}

SyncStep FolderTable::nextStep(FolderNumber number, INT32 syncMode, bool received) {
  constexpr INT32 kOnlySend = 1;
  constexpr INT32 kOnlyReceive = 2;
  if (additionsUnanswered(number)) return SyncStep::beginAnew;
  const auto exists = [&](const char* condition) {
    Query query(database_, std::string("SELECT 1 FROM folder WHERE id = ? AND EXISTS (SELECT 1 FROM pending "
                                       "WHERE folder_id = folder.id AND state = 'waiting' AND ") +
                               condition + ")");
    return query.bind(number).step();
  };
  const bool sends = syncMode != kOnlyReceive;
  if (sends && exists("handed = 1 AND sent_key = sync_key")) return SyncStep::repeat;
  // A folder that only sends receives all the same when it has to find out what the server has.
  const auto folder = state(number);
  const bool receives = syncMode != kOnlySend || (folder && folder->reconciling);
  if (receives && !received) return SyncStep::receive;
  return sends && exists("dropped = 0") ? SyncStep::send : SyncStep::done;
}

WaitingDeletions FolderTable::waitingDeletions(FolderNumber number) {
  Query query(
      database_,
      "SELECT count(*) FILTER (WHERE kind = 'delete' AND state = 'waiting'), count(*) FROM item LEFT JOIN "
      "pending ON pending.item_id = item.id WHERE item.folder_id = ? AND server_id IS NOT NULL");
  query.bind(number).step();
  return {.deletions = static_cast<std::size_t>(query.integer(0)),
          .items = static_cast<std::size_t>(query.integer(1))};
}

void FolderTable::storeKey(FolderNumber number, const std::string& key) {
  Query(database_, "UPDATE folder SET sync_key = ?1, asked_key = ?1 WHERE id = ?2")
      .bind(key)
      .bind(number)
      .run();
}

void FolderTable::noteAsked(FolderNumber number) {
  Query(database_, "UPDATE folder SET asked_key = sync_key WHERE id = ?").bind(number).run();
}

void FolderTable::forgetAsked(FolderNumber number) {
  Query(database_, "UPDATE folder SET asked_key = NULL WHERE id = ?").bind(number).run();
}

void FolderTable::setOneByOne(FolderNumber number, bool oneByOne) {
  Query(database_, "UPDATE folder SET one_by_one = ? WHERE id = ?").bind(oneByOne ? 1 : 0).bind(number).run();
}

void FolderTable::storeLastSync(FolderNumber number) {
  const std::string now = UtcTime::now().text();
  Query(database_, "UPDATE folder SET last_sync = ? WHERE id = ?").bind(now).bind(number).run();
}

void FolderTable::beginReconciling(FolderNumber number) {
  Query(database_,
        "UPDATE folder SET sync_key = '0', asked_key = NULL, generation = generation + 1, "
        "reconciling = 1 WHERE id = ?")
      .bind(number)
      .run();
}

void FolderTable::endReconciling(FolderNumber number) {
  Query(database_, "UPDATE folder SET reconciling = 0 WHERE id = ?").bind(number).run();
}

}  // namespace airsync
