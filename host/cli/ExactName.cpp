#include "cli/ExactName.h"

#include <algorithm>
#include <fmt/core.h>
#include <string>
#include <vector>

#include "cli/ExitError.h"

namespace airsync {

namespace {

constexpr std::string_view kIdMark = "id:";

bool isMarked(std::string_view text) { return text.starts_with(kIdMark); }
std::string_view withoutMark(std::string_view text) {
  return isMarked(text) ? text.substr(kIdMark.size()) : text;
}

// "Contacts/Friends (id:f1), ..."
std::string listed(const std::vector<Folder>& folders) {
  std::string text;
  for (const Folder& folder : folders) {
    text += fmt::format("{}{} ({}{})", text.empty() ? "" : ", ", folder.path, kIdMark, folder.serverId);
  }
  return text;
}

template <typename Fits>
std::vector<Folder> those(const std::vector<Folder>& folders, const Fits& fits) {
  std::vector<Folder> found;
  std::copy_if(folders.begin(), folders.end(), std::back_inserter(found), fits);
  return found;
}

[[noreturn]] void refuseFolder(std::string_view text, const std::string& cause) {
  throw ExitError(ExitCode::kUsage,
                  {.kind = ErrorKind::folder,
                   .operation = "looking for the folder",
                   .subject = fmt::format("\"{}\"", text),
                   .cause = cause,
                   .advice = "Name one folder: by its path from the root, or by id: and its id; see airsync "
                             "folders."});
}

[[noreturn]] void refuseItem(const Folder& folder, std::string_view text, const std::string& cause,
                             const std::string& advice) {
  throw ExitError(ExitCode::kUsage, {.kind = ErrorKind::item,
                                     .operation = "looking for the item",
                                     .subject = fmt::format("\"{}\" in folder \"{}\"", text, folder.path),
                                     .cause = cause,
                                     .advice = advice});
}

}  // namespace

Folder findExactFolder(const Store& store, std::string_view text) {
  const std::vector<Folder> all = store.folders();
  const std::string_view id = withoutMark(text);
  const auto hasId = [&](const Folder& folder) { return !folder.gone && folder.serverId == id; };
  const auto hasPath = [&](const Folder& folder) { return !folder.gone && folder.path == text; };
  const std::vector<Folder> fitting =
      those(all, [&](const Folder& folder) { return hasId(folder) || hasPath(folder); });
  const std::size_t exact =
      static_cast<std::size_t>(std::count_if(fitting.begin(), fitting.end(), [&](const Folder& folder) {
        return hasPath(folder) || (isMarked(text) && hasId(folder));
      }));
  if (fitting.size() == 1 && exact == 1) return fitting.front();
  if (fitting.size() > 1) refuseFolder(text, "it could be any of " + listed(fitting));
  if (!fitting.empty()) refuseFolder(text, "it is no path from the root, but the id of " + listed(fitting));
  const std::vector<Folder> gone =
      those(all, [&](const Folder& folder) { return folder.gone && folder.path == text; });
  if (gone.size() == 1) return gone.front();
  const std::vector<Folder> named =
      those(all, [&](const Folder& folder) { return !folder.gone && folder.name == text; });
  if (!named.empty()) refuseFolder(text, "it is no path from the root, but the name of " + listed(named));
  refuseFolder(text, all.empty() ? "no folders are known yet" : "there is no such folder");
}

ItemNumber findExactItem(const Store& store, const Folder& folder, std::string_view text) {
  const std::string_view wanted = withoutMark(text);
  const ItemNumber item = store.findItem(folder.number, wanted);
  const std::string advice = "See airsync list for the items.";
  if (isMarked(text)) {
    // The store takes a number for a number first.
    if (store.item(item).serverId == wanted) return item;
    refuseItem(folder, text, "there is no item of this id, or its number is another item's id", advice);
  }
  const bool isNumber = std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
  if (!isNumber || std::to_string(item) == text) return item;
  refuseItem(folder, text, "no item has this number; it is the id of another one",
             fmt::format("Write {}{} if that one is meant.", kIdMark, text));
}

}  // namespace airsync
