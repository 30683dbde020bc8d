#include "cli/session/ServerFolders.h"

#include <algorithm>
#include <cstring>
#include <fmt/core.h>
#include <optional>
#include <unordered_map>
#include <unordered_set>

#include "cli/ExitError.h"
#include "cli/output/Displayable.h"

namespace airsync {

namespace {

using namespace AIRSYNC_STACK;

constexpr SYNC_RESULT kNoSuchFolder = AS_RESULT_FAMILY_FOLDER | 4;
constexpr SYNC_RESULT kKeyRefused = AS_RESULT_FAMILY_FOLDER | 9;

// Names and ids fit their fields: names were checked, ids come from such a field.
template <std::size_t size>
void copyText(char (&field)[size], const std::string& text) {
  std::memcpy(field, text.data(), std::min(text.size(), size - 1));
}

BASE_FOLDER recordOf(const std::string& name, INT32 type, const std::string& id, const std::string& parent) {
  BASE_FOLDER folder = {};
  copyText(folder.displayName, name);
  folder.type = type;
  copyText(folder.serverId.text, id);
  copyText(folder.parentId.text, parent);
  return folder;
}

// The server answered that it does not do it; everything else leaves open what happened.
bool isRefusal(const Error& error) {
  constexpr SYNC_RESULT kStatusBits = 0xff;
  return (error.story().result & ~kStatusBits) == AS_RESULT_FAMILY_FOLDER;
}

std::unordered_set<std::string> idsOf(const std::vector<Folder>& folders) {
  std::unordered_set<std::string> ids;
  for (const Folder& folder : folders) ids.insert(folder.serverId);
  return ids;
}

Trouble notAsked(const Folder& folder, ExitCode code, std::string_view why) {
  return {code, fmt::format("folder \"{}\" was not deleted, because {}", displayable(folder.path), why), ""};
}

}  // namespace

SYNC_RESULT ServerFolders::tryOnce(const Command& command, const std::function<void()>& storeIt) {
  Store& store = turn_.store();
  turn_.session().beginCommand();
  _SYNC_KEY key = store.beginHierarchy(HierarchyFetch::nothing);
  const SYNC_RESULT result = command(key);
  if (result != AS_RESULT_OK) {
    store.rollbackHierarchy();
    return result;
  }
  storeIt();
  store.commitHierarchy(key);
  return result;
}

void ServerFolders::run(Asked asked, const std::string& operation, const std::string& path,
                        const Command& command, const std::function<void()>& storeIt) {
  SYNC_RESULT result = tryOnce(command, storeIt);
  if (result == kKeyRefused) {
    turn_.session().refreshFolders();
    result = tryOnce(command, storeIt);
  }
  turn_.session().require(result, operation, fmt::format("folder \"{}\" of account {}", path, account_.name),
                          ErrorKind::folder, asked);
}

Folder ServerFolders::create(const std::string& name, INT32 type, const std::string& parent) {
  BASE_FOLDER folder = recordOf(name, type, {}, parent);
  run(
      Asked::newFolder, "making", name,
      [&](_SYNC_KEY& key) { return turn_.session().airSync().FolderCreate(key, &folder); },
      [&] {
        if (folder.serverId.text[0] != '\0') turn_.store().UpdateFolder(&folder, AS_FOLDER_ADDED);
      });
  // A server that gives no id has told nothing about it: the list of folders will.
  if (folder.serverId.text[0] == '\0') {
    throw ExitError(ExitCode::kServer,
                    {.kind = ErrorKind::folder,
                     .operation = "making",
                     .subject = fmt::format("folder \"{}\" of account {}", name, account_.name),
                     .cause = "the server took it, but did not tell its id",
                     .advice = "see airsync folders --refresh"});
  }
  return turn_.store().findFolder(folder.serverId.text);
}

void ServerFolders::rename(const Folder& folder, const std::string& name, const std::string& parent) {
  BASE_FOLDER record = recordOf(name, folder.type, folder.serverId, parent);
  run(
      Asked::changedFolder, "renaming", folder.path,
      [&](_SYNC_KEY& key) { return turn_.session().airSync().FolderUpdate(key, &record); },
      [&] { turn_.store().UpdateFolder(&record, AS_FOLDER_UPDATED); });
}

Removal ServerFolders::remove(const Folder& folder) {
  Removal removal;
  std::unordered_set<std::string> holding;  // ids of folders with something in them that stays
  std::optional<Trouble> end;               // why nothing more is asked for
  const auto keep = [&](const Folder& each, Trouble trouble) {
    holding.insert(each.parentId);
    removal.kept.push_back({each, std::move(trouble)});
  };
  std::vector<Folder> all = below(folder);
  const std::unordered_set<std::string> under = idsOf(all);
  all.push_back(folder);
  for (const Folder& each : all) {
    if (end) {
      keep(each, notAsked(each, end->code, "an earlier request failed"));
    } else if (holding.contains(each.serverId)) {
      keep(each, notAsked(each, ExitCode::kNeedsPerson, "a folder below it stays"));
    } else {
      try {
        removeOne(each);
        removal.deleted.push_back(each);
      } catch (const Error& error) {
        const bool goneBefore = error.story().result == kNoSuchFolder && under.contains(each.serverId);
        if (goneBefore) {
          forget(each);
          removal.deleted.push_back(each);
          continue;
        }
        if (!isRefusal(error)) end = troubleOf(error);
        keep(each, troubleOf(error));
      }
    }
  }
  return removal;
}

void ServerFolders::removeOne(const Folder& folder) {
  const BASE_FOLDER record = recordOf(folder.name, folder.type, folder.serverId, folder.parentId);
  run(
      Asked::deletedFolder, "deleting", folder.path,
      [&](_SYNC_KEY& key) { return turn_.session().airSync().FolderDelete(record.serverId, key); },
      [&] { turn_.store().UpdateFolder(&record, AS_FOLDER_DELETED); });
}

// The server has it no more; its key stays.
void ServerFolders::forget(const Folder& folder) {
  const BASE_FOLDER record = recordOf(folder.name, folder.type, folder.serverId, folder.parentId);
  const _SYNC_KEY key = turn_.store().beginHierarchy(HierarchyFetch::nothing);
  turn_.store().UpdateFolder(&record, AS_FOLDER_DELETED);
  turn_.store().commitHierarchy(key);
}

std::vector<Folder> ServerFolders::below(const Folder& folder) const {
  const std::vector<Folder> all = turn_.store().folders();
  std::vector<Folder> found;
  std::unordered_multimap<std::string, const Folder*> children;
  for (const Folder& each : all) {
    if (!each.gone) children.emplace(each.parentId, &each);
  }
  std::vector<std::string> parents = {folder.serverId};
  std::unordered_set<std::string> known = {folder.serverId};
  // A folder is found once at most, also when a server lets parents go round in a ring.
  for (std::size_t next = 0; next < parents.size(); ++next) {
    const auto [begin, end] = children.equal_range(parents[next]);
    for (auto child = begin; child != end; ++child) {
      const Folder& each = *child->second;
      if (!known.insert(each.serverId).second) continue;
      parents.push_back(each.serverId);
      found.push_back(each);
    }
  }
  std::reverse(found.begin(), found.end());
  return found;
}

void checkFolderName(const std::string& name) {
  constexpr std::size_t kLongest = sizeof(BASE_FOLDER::displayName) - 1;
  std::string why;
  if (name.empty()) why = "a folder needs a name";
  if (name.size() > kLongest) why = fmt::format("a folder's name has at most {} bytes", kLongest);
  // What can't be shown as it is can't be typed again either.
  if (displayable(name) != name) why = "a folder's name is UTF-8 text without control characters";
  if (why.empty()) return;
  throw ExitError(ExitCode::kUsage, fmt::format("\"{}\": {}", displayable(name), why),
                  "Choose another name.");
}

}  // namespace airsync
