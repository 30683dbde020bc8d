// What commands that destroy or move something take as the name of a folder or an item: nothing that could
// mean another one, now or when the command is repeated.
#ifndef AIRSYNC_CLI_EXACT_NAME_H
#define AIRSYNC_CLI_EXACT_NAME_H

#include <string_view>

#include "store/Store.h"

namespace airsync {

/// The folder of that path from the root, or with "id:" in front the one of that server id. Throws
/// ExitError(kUsage) that lists the folders that could be meant: several have the path, it is the id of
/// another one, or it is no more than a name or an id. A folder that is gone is found by its path, when no
/// other one is.
Folder findExactFolder(const Store& store, std::string_view text);

/// The item of that number in the folder, or with "id:" in front the one of that server id; a text that is no
/// number is taken for an id as it is. Throws Error (item).
ItemNumber findExactItem(const Store& store, const Folder& folder, std::string_view text);

}  // namespace airsync

#endif
