#include "cli/RemoteItem.h"

#include <algorithm>
#include <cstring>
#include <fmt/core.h>
#include <utility>

#include "cli/ExactName.h"
#include "cli/ExitError.h"
#include "cli/session/SupportedClasses.h"

namespace airsync {

namespace {

using namespace AIRSYNC_STACK;

[[noreturn]] void refuse(const RemoteItem& item, std::string_view operation, const std::string& cause,
                         const std::string& advice) {
  throw ExitError(ExitCode::kUsage, {.kind = ErrorKind::item,
                                     .operation = std::string(operation),
                                     .subject = item.subject(),
                                     .cause = cause,
                                     .advice = advice});
}

}  // namespace

bool fitsRequestLine(std::string_view text) {
  const auto fits = [](char c) { return c > ' ' && c < '\x7f' && c != '&' && c != '#'; };
  return !text.empty() && std::all_of(text.begin(), text.end(), fits);
}

SERVER_ID RemoteItem::serverId() const {
  SERVER_ID record = {};
  std::memcpy(record.text, id.data(), std::min(id.size(), sizeof(record.text) - 1));
  return record;
}

FOLDER_ID RemoteItem::folderId() const { return folderIdOf(folder); }

std::string RemoteItem::subject() const {
  return fmt::format("item {} of folder \"{}\"", number, folder.path);
}

FOLDER_ID folderIdOf(const Folder& folder) {
  FOLDER_ID record = {};
  std::memcpy(record.text, folder.serverId.data(), std::min(folder.serverId.size(), sizeof(record.text) - 1));
  return record;
}

namespace {

Folder onTheServer(Folder folder) {
  if (!folder.gone) return folder;
  throw ExitError(
      ExitCode::kUsage,
      {.kind = ErrorKind::folder,
       .operation = "finding",
       .subject = fmt::format("folder \"{}\"", folder.path),
       .cause = "it was deleted on the server; what is left of it here are changes that could not be sent",
       .advice = "See airsync status for them."});
}

RemoteItem knownToTheServer(const Store& store, Folder folder, ItemNumber number) {
  RemoteItem found;
  found.folder = std::move(folder);
  found.number = number;
  const std::optional<std::string> id = store.item(found.number).serverId;
  if (!id) {
    refuse(found, "finding", "the server does not know it yet",
           "Run airsync sync first; it sends what was added here.");
  }
  found.id = *id;
  return found;
}

}  // namespace

Folder findRemoteFolder(const Store& store, std::string_view text) {
  return onTheServer(store.findFolder(text));
}

Folder findExactRemoteFolder(const Store& store, std::string_view text) {
  return onTheServer(findExactFolder(store, text));
}

std::vector<Folder> chooseRemoteFolders(const Account& account, const Store& store,
                                        const std::vector<std::string>& names) {
  std::vector<Folder> chosen;
  for (const std::string& name : names) {
    const Folder folder = findRemoteFolder(store, name);
    const bool known = std::any_of(chosen.begin(), chosen.end(),
                                   [&folder](const Folder& other) { return other.number == folder.number; });
    if (!known) chosen.push_back(folder);
  }
  if (!names.empty()) return chosen;
  for (const Folder& folder : store.uncountedFolders()) {
    const bool selected = account.policyFor(folder.name, folder.serverId).selected;
    if (selected && participationOf(folder) == Participation::yes) chosen.push_back(folder);
  }
  return chosen;
}

RemoteItem findRemoteItem(const Store& store, std::string_view folder, std::string_view item) {
  Folder found = findRemoteFolder(store, folder);
  const ItemNumber number = store.findItem(found.number, item);
  return knownToTheServer(store, std::move(found), number);
}

RemoteItem findExactRemoteItem(const Store& store, std::string_view folder, std::string_view item) {
  Folder found = findExactRemoteFolder(store, folder);
  const ItemNumber number = findExactItem(store, found, item);
  return knownToTheServer(store, std::move(found), number);
}

RemoteItem findRemoteMail(const Store& store, std::string_view folder, std::string_view item,
                          std::string_view operation) {
  RemoteItem found = findRemoteItem(store, folder, item);
  if (found.folder.dataType != DATATYPE_EMAIL) {
    refuse(found, operation, "the folder holds no mail", "Name a folder of mail; see airsync folders.");
  }
  return found;
}

void requireInRequestLine(const RemoteItem& item, std::string_view operation) {
  if (fitsRequestLine(item.id) && fitsRequestLine(item.folder.serverId)) return;
  refuse(
      item, operation,
      fmt::format("its id \"{}\" or its folder's, \"{}\", holds characters that can't stand in a request's "
                  "address",
                  item.id, item.folder.serverId),
      "Move it elsewhere with another program, or send the message with airsync send.");
}

}  // namespace airsync
