#include "cli/session/FetchItem.h"

#include <algorithm>
#include <cstring>
#include <fmt/core.h>
#include <utility>

#include "cli/ExitError.h"
#include "cli/ResultText.h"
#include "cli/output/Output.h"

namespace airsync {

namespace {

using namespace AIRSYNC_STACK;

constexpr INT32 kWholeBody = 8;

// Ids come from records of this type: nothing is cut here.
SERVER_ID serverIdOf(const std::string& text) {
  SERVER_ID id = {};
  std::memcpy(id.text, text.data(), std::min(text.size(), sizeof(id.text) - 1));
  return id;
}

[[noreturn]] void fail(ExitCode code, const std::string& subject, const std::string& cause,
                       const std::string& advice) {
  throw ExitError(code, {.kind = ErrorKind::item,
                         .operation = "fetching",
                         .subject = subject,
                         .cause = cause,
                         .advice = advice});
}

void synchroniseFirst(Turn& turn, const Account& account, const Folder& folder, FetchReport& report) {
  FolderReport synchronised;
  synchronised.folder = folder;
  const FolderSettings settings = account.settingsFor(folder);
  turn.session().syncFolder(settings, {.conflict = settings.conflict, .allowDeletes = false}, synchronised);
  accumulate(report.changes, synchronised.outcome);
  report.synchronisedFirst = true;
}

}  // namespace

FetchReport fetchItem(Turn& turn, const Account& account, const Folder& folder, ItemNumber item) {
  const std::string subject = fmt::format("item {} of folder \"{}\"", item, folder.path);
  FetchReport report;
  Store& store = turn.store();
  if (store.repetitionDue(folder.number)) synchroniseFirst(turn, account, folder, report);
  const StoredItem stored = store.item(item);
  if (!stored.serverId) {
    fail(ExitCode::kUsage, subject, "the server does not know it yet",
         "Run airsync sync: it sends the item.");
  }
  FolderSettings settings = account.settingsFor(folder);
  settings.truncation = kWholeBody;
  FolderRecord record = store.folderInfo(folder.number, settings);
  turn.session().beginCommand();
  store.beginFetch(record.info(), *stored.serverId);
  const SYNC_RESULT result = turn.session().airSync().Fetch(&record.info(), serverIdOf(*stored.serverId));
  const FetchOutcome outcome = store.endFetch(result, turn.session().lastReached());
  turn.session().require(result, "fetching", subject, ErrorKind::item);
  accumulate(report.changes, outcome.changes);
  if (outcome.arrived) return report;
  // Of an item that comes without contents the library tells no status.
  const std::optional<int> status = turn.session().answer().fetchStatus();
  constexpr int kSuccess = 1;
  if (!status || *status == kSuccess) {
    fail(ExitCode::kServer, subject, "the server does not have it any more",
         "Run airsync sync: what was deleted there goes here, too.");
  }
  const ResultText text = describeFetch(*status);
  fail(text.exitCode, subject, text.sentence, asSentence(text.advice));
}

}  // namespace airsync
