// The shapes of what --json writes. They are documented in airsync(1) and stable: members may be added,
// none is renamed or removed.
#ifndef AIRSYNC_CLI_OUTPUT_JSON_H
#define AIRSYNC_CLI_OUTPUT_JSON_H

#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

#include "cli/config/Config.h"
#include "cli/session/Report.h"
#include "store/StoreTypes.h"

namespace airsync {

using Json = nlohmann::ordered_json;

Json folderJson(const Account& account, const Folder& folder);
Json pendingJson(const std::optional<PendingChange>& pending);
Json summaryJson(const ItemSummary& summary);
Json itemJson(const StoredItem& item);
Json conflictJson(const Conflict& conflict);
Json outcomeJson(const SyncOutcome& outcome);
Json failureJson(const Failure& failure);
Json reportJson(const FolderReport& report);
Json reportJson(const Account& account, const AccountReport& report);

/// {"exit": ..., "message", "advice"}, or null.
Json troubleJson(const std::optional<Trouble>& trouble);

/// {"code": 7, "name": "partly-done", ...} members for a document's end.
Json exitJson(ExitCode code);

}  // namespace airsync

#endif
