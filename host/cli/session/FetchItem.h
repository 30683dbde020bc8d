// One item in full, from the server now.
#ifndef AIRSYNC_CLI_SESSION_FETCH_ITEM_H
#define AIRSYNC_CLI_SESSION_FETCH_ITEM_H

#include <optional>

#include "cli/session/Report.h"
#include "cli/session/Turn.h"

namespace airsync {

struct FetchReport {
  // Changes that the server sent along, or before: see synchronisedFirst.
  SyncOutcome changes;
  // A request of an earlier run had never been answered, so its answer had to come first.
  bool synchronisedFirst = false;
};

/// Asks for an item that the server knows, whole, whatever the folder's configuration says about truncation;
/// it replaces what the store has. The session is connected. Throws Error (item) when the server does not
/// have it any more or refuses, and whatever the session throws.
FetchReport fetchItem(Turn& turn, const Account& account, const Folder& folder, ItemNumber item);

}  // namespace airsync

#endif
