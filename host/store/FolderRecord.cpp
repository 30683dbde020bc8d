#include <cstring>

#include "store/StoreTypes.h"
#include "support/Error.h"

namespace airsync {
namespace {

using namespace AIRSYNC_STACK;

constexpr INT32 kClientWins = 0;
constexpr INT32 kServerWins = 1;
constexpr std::size_t kMostTags = 255;  // the count is one byte

template <std::size_t size>
void copyText(char (&field)[size], const std::string& text) {
  std::memset(field, 0, size);
  std::memcpy(field, text.data(), std::min(text.size(), size - 1));
}

[[noreturn]] void refuse(const Folder& folder, const std::string& cause, const std::string& advice) {
  throw Error({.kind = ErrorKind::folder,
               .operation = "preparing to synchronise",
               .subject = folder.path,
               .cause = cause,
               .advice = advice});
}

std::unique_ptr<SUPPORTED_TAG[]> tagsOf(const Folder& folder, const std::vector<std::string>& names) {
  const std::string advice = "Correct the list \"supported\" in the configuration.";
  if (names.size() > kMostTags) refuse(folder, "the list of supported fields has over 255 entries", advice);
  auto tags = std::make_unique<SUPPORTED_TAG[]>(names.size());
  for (std::size_t index = 0; index < names.size(); ++index) {
    const std::string& name = names[index];
    if (name.empty() || name.size() >= sizeof(SUPPORTED_TAG)) {
      refuse(folder, "the supported field \"" + name + "\" is empty or has over 63 characters", advice);
    }
    copyText(tags[index], name);
  }
  return tags;
}

}  // namespace

FolderRecord::FolderRecord(const Folder& folder, const FolderSettings& settings)
    : info_(std::make_unique<FOLDER_INFO>()) {
  if (folder.gone) {
    refuse(folder, "the folder was deleted on the server",
           "Look at its failed changes, and move what you need elsewhere.");
  }
  if (!folder.dataType) {
    refuse(folder, "folders of this type are never synchronised", "Leave it out of the list of folders.");
  }
  FOLDER_INFO& info = *info_;
  copyText(info.folder.displayName, folder.name);
  info.folder.type = folder.type;
  copyText(info.folder.serverId.text, folder.serverId);
  copyText(info.folder.parentId.text, folder.parentId);
  info.dataType = *folder.dataType;
  info.handle = folder.number;
  info.syncMode = settings.syncMode;
  copyText(info.syncKey.text, folder.syncKey);
  info.truncation = settings.truncation;
  // The server decides only about what changes there while a request is under way.
  info.conflict = settings.conflict == ConflictRule::local ? kClientWins : kServerWins;
  info.selected = 1;

  if (settings.supported) supported_ = tagsOf(folder, *settings.supported);
  const auto count = static_cast<UINT8>(settings.supported ? settings.supported->size() : 0);
  switch (info.dataType) {
    case DATATYPE_CONTACTS:
      info.options.contacts = {supported_.get(), count};
      break;
    case DATATYPE_CALENDAR:
      info.options.calendar = {settings.filter, supported_.get(), count};
      break;
    case DATATYPE_EMAIL:
      info.options.email = {settings.filter};
      break;
  }
}

}  // namespace airsync
