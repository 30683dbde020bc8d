// What the store's numbers are called, by people and by machines.
#ifndef AIRSYNC_CLI_OUTPUT_WORDS_H
#define AIRSYNC_CLI_OUTPUT_WORDS_H

#include <string>
#include <string_view>

#include "cli/config/Config.h"
#include "store/StoreTypes.h"

namespace airsync {

/// "add", "change", "delete".
std::string_view nameOf(ChangeKind kind);

/// "waiting", "failed", "unanswered".
std::string_view nameOf(PendingChange::State state);

/// "contacts", "calendar", "email".
std::string_view nameOf(AIRSYNC_STACK::DATATYPE dataType);

/// Whether, and if not why not, a folder takes part in `airsync sync`: "synchronised", "not-selected",
/// "never", "gone".
std::string_view stateOf(const Account& account, const Folder& folder);

/// The change was set aside before it was sent, since no request has room for it.
bool isTooLarge(const PendingChange& change);

/// Why a change has not reached the server; displayable.
std::string reasonOf(const PendingChange& change);

/// "kept-both", "server-won", "local-won", "added-anew", "brought-back".
std::string_view nameOf(Conflict::Outcome outcome);

/// What became of an item that both sides had their hands on; displayable.
std::string sentenceOf(const Conflict& conflict);

/// What a synchronisation did: "3 added, 1 deleted here; 2 sent", or "up to date".
std::string sentenceOf(const SyncOutcome& outcome);

}  // namespace airsync

#endif
