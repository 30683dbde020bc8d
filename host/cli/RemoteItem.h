// What a command line names, for commands that are about it on the server, at once.
#ifndef AIRSYNC_CLI_REMOTE_ITEM_H
#define AIRSYNC_CLI_REMOTE_ITEM_H

#include <string>
#include <string_view>
#include <vector>

#include "api/Records.h"
#include "cli/config/Config.h"
#include "store/Store.h"

namespace airsync {

/// The folder that a person means. Throws Error (folder) for one that is not on the server any more.
Folder findRemoteFolder(const Store& store, std::string_view text);

/// The same for commands that move or destroy: see findExactFolder.
Folder findExactRemoteFolder(const Store& store, std::string_view text);

/// The folders of these names, each once; without names, those that `airsync sync` takes. Throws as above.
std::vector<Folder> chooseRemoteFolders(const Account& account, const Store& store,
                                        const std::vector<std::string>& names);

/// An item that the server knows.
struct RemoteItem {
  Folder folder;
  ItemNumber number = 0;
  std::string id;

  AIRSYNC_STACK::SERVER_ID serverId() const;
  AIRSYNC_STACK::FOLDER_ID folderId() const;
  /// As errors name it.
  std::string subject() const;
};

/// Throws Error: there is none, or it was added here and never sent.
RemoteItem findRemoteItem(const Store& store, std::string_view folder, std::string_view item);

/// The same for commands that move or destroy: see findExactFolder and findExactItem.
RemoteItem findExactRemoteItem(const Store& store, std::string_view folder, std::string_view item);

/// The same for a mail; `operation` is what it is for ("answering").
RemoteItem findRemoteMail(const Store& store, std::string_view folder, std::string_view item,
                          std::string_view operation);

/// Whether a text of the server can stand in the address of a request and arrive there as it is: it is not
/// empty, and holds visible ASCII characters only, "&" and "#" not among them. Ids of items and folders and
/// handles of attachments stand there as they are.
bool fitsRequestLine(std::string_view text);

/// Throws Error (item) for an item whose id, or whose folder's, does not fit.
void requireInRequestLine(const RemoteItem& item, std::string_view operation);

AIRSYNC_STACK::FOLDER_ID folderIdOf(const Folder& folder);

}  // namespace airsync

#endif
