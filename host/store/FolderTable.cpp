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
      "SELECT id, server_id, parent_id, name, type, sync_key, gone, last_sync FROM folder ORDER BY id");
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

  Query items(database_, "SELECT folder_id, count(*) FROM item GROUP BY folder_id");
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
  Query query(database_,
              "SELECT sync_key, generation, reconciling, gone, type, fetch_key FROM folder WHERE id = ?");
  if (!query.bind(number).step()) return std::nullopt;
  return FolderState{.syncKey = query.text(0),
                     .generation = query.integer(1),
                     .reconciling = query.integer(2) != 0,
                     .gone = query.integer(3) != 0,
                     .type = static_cast<INT32>(query.integer(4)),
                     .fetching = query.maybeText(5) == query.text(0)};
}

bool FolderTable::repetitionDue(FolderNumber number) {
  Query query(database_,
              "SELECT 1 FROM folder WHERE id = ? AND (fetch_key = sync_key OR EXISTS (SELECT 1 FROM pending "
              "WHERE folder_id = folder.id AND handed = 1 AND sent_key = sync_key))");
  return query.bind(number).step();
}

void FolderTable::storeKey(FolderNumber number, const std::string& key) {
  Query(database_, "UPDATE folder SET sync_key = ?, fetch_key = NULL WHERE id = ?")
      .bind(key)
      .bind(number)
      .run();
}

void FolderTable::noteFetch(FolderNumber number) {
  Query(database_, "UPDATE folder SET fetch_key = sync_key WHERE id = ?").bind(number).run();
}

void FolderTable::forgetFetch(FolderNumber number) {
  Query(database_, "UPDATE folder SET fetch_key = NULL WHERE id = ?").bind(number).run();
}

void FolderTable::storeLastSync(FolderNumber number) {
  const std::string now = UtcTime::now().text();
  Query(database_, "UPDATE folder SET last_sync = ? WHERE id = ?").bind(now).bind(number).run();
}

void FolderTable::beginReconciling(FolderNumber number) {
  Query(database_,
        "UPDATE folder SET sync_key = '0', fetch_key = NULL, generation = generation + 1, "
        "reconciling = 1 WHERE id = ?")
      .bind(number)
      .run();
}

void FolderTable::endReconciling(FolderNumber number) {
  Query(database_, "UPDATE folder SET reconciling = 0 WHERE id = ?").bind(number).run();
}

}  // namespace airsync
