#include "protocol/FolderRules.h"

#include <algorithm>

#include "data/Chain.h"
#include "protocol/Status.h"
#include "support/Utf8.h"

namespace demoserver {
namespace {

constexpr std::size_t kMaxNameLength = 255;

bool isUsableName(const std::string& name) {
  return !name.empty() && name.size() <= kMaxNameLength && isItemText(name) &&
         name.find_first_of("\t\r\n") == std::string::npos;
}

bool exists(State& state, const std::string& parent) {
  return parent == kRootFolder || state.folders.find(parent).has_value();
}

}  // namespace

int createFolder(State& state, const std::string& parent, const std::string& name, int type,
                 std::string& id) {
  if (!isUsableName(name) || !mayBeCreated(type)) return kMalformedFolder;
  if (!exists(state, parent)) return kNoSuchParent;
  if (state.folders.findByName(parent, name)) return kNameExists;
  id = state.folders.create(parent, name, type).id;
  return kSuccess;
}

int updateFolder(State& state, const std::string& id, const std::string& parent, const std::string& name) {
  const auto folder = state.folders.find(id);
  if (!folder) return kNoSuchFolder;
  if (isSpecial(folder->type)) return kSpecialFolder;
  if (!isUsableName(name)) return kMalformedFolder;
  const auto family = state.folders.withDescendants(id);
  const bool loop = std::find(family.begin(), family.end(), parent) != family.end();
  if (loop || !exists(state, parent)) return kNoSuchParent;
  const auto namesake = state.folders.findByName(parent, name);
  if (namesake && namesake->id != id) return kNameExists;
  state.folders.update(id, parent, name);
  return kSuccess;
}

int deleteFolder(State& state, const std::string& id) {
  const auto folder = state.folders.find(id);
  if (!folder) return kNoSuchFolder;
  if (isSpecial(folder->type)) return kSpecialFolder;
  for (const std::string& each : state.folders.withDescendants(id)) {
    state.items.forgetFolder(each);
    forgetCollection(state.database, each);
    state.folders.remove(each);
  }
  return kSuccess;
}

std::string describeFolderStatus(int status) {
  switch (status) {
    case kNameExists:
      return "a folder of that name is there already";
    case kSpecialFolder:
      return "special folders can be neither changed nor deleted";
    case kNoSuchFolder:
      return "there is no such folder";
    case kNoSuchParent:
      return "the parent is no folder, or it is the folder itself or lies below it";
    case kMalformedFolder:
      return "a folder needs a name of 1 to 255 bytes and a type of 1 or 12 to 17";
    default:
      return "status " + std::to_string(status);
  }
}

}  // namespace demoserver
