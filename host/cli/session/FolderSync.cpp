// The synchronisation of one folder: AccountSession::syncFolder.
#include <algorithm>
#include <fmt/core.h>
#include <string_view>

#include "cli/ExitError.h"
#include "cli/ResultText.h"
#include "cli/session/AccountSession.h"

namespace airsync {

namespace {

using namespace AIRSYNC_STACK;

constexpr INT32 kBothWays = 0;
constexpr INT32 kOnlyReceive = 2;

constexpr SYNC_RESULT kUnknownSyncKey = AS_RESULT_FAMILY_SYNC | 3;

// A server that answers one change after the other with an error has another reason than the changes.
constexpr int kMostCulprits = 3;

// Errors that are about what a request carried: the same request without it may do better. Not among them are
// those by which a server or a proxy says that it is not there, busy or full, and those that are about the
// login, the device or the address.
constexpr SYNC_RESULT kErrorsOverChanges[] = {
    AS_RESULT_HTTP_BAD_REQUEST,  AS_RESULT_HTTP_SERVER_ERROR, AS_RESULT_FAMILY_HTTP | 406,
    AS_RESULT_FAMILY_HTTP | 409, AS_RESULT_FAMILY_HTTP | 411, AS_RESULT_FAMILY_HTTP | 413,
    AS_RESULT_FAMILY_HTTP | 415, AS_RESULT_FAMILY_HTTP | 422, AS_RESULT_FAMILY_HTTP | 501,
    AS_RESULT_FAMILY_SYNC | 4,   AS_RESULT_FAMILY_SYNC | 6,
};

bool isErrorOverChanges(SYNC_RESULT result) {
  for (const SYNC_RESULT error : kErrorsOverChanges) {
    if (error == result) return true;
  }
  return false;
}

// Raised while the request was being built.
bool wasNotBuilt(SYNC_RESULT result) {
  return result == AS_RESULT_REQUEST_TOO_LARGE || result == AS_RESULT_NO_REQUEST;
}

bool carriesChanges(SyncStep step) { return step == SyncStep::send || step == SyncStep::repeat; }

// A folder that only sends receives when it looks for what became of its additions.
INT32 modeOf(SyncStep step, INT32 configured) {
  if (step == SyncStep::receive) return kOnlyReceive;
  return configured == kOnlyReceive ? kBothWays : configured;
}

}  // namespace

void AccountSession::syncFolder(const FolderSettings& settings, const SyncRules& rules,
                                FolderReport& report) {
  currentFolder_ = report.folder.name;
  items_ = 0;
  flight_.folder.set(report.folder.path);
  flight_.folderId.set(report.folder.serverId);
  guard_.begin(report.folder.syncKey);
  FolderWork work = {.settings = settings, .rules = rules, .report = report};
  for (;;) {
    const SyncStep step = store_.nextStep(report.folder.number, settings.syncMode, work.received);
    if (step == SyncStep::done) return;
    if (step == SyncStep::beginAnew) {
      lookAnew(work);
      continue;
    }
    if (step == SyncStep::send && !rules.allowDeletes) checkDeletions(report);
    if (!takeStep(work, step)) return;
  }
}

// Changes that wait, or whose outcome is to be found out.
std::size_t AccountSession::waitingIn(FolderNumber folder) const {
  const std::vector<Failure> failures = store_.failures(folder);
  const auto unanswered = std::count_if(failures.begin(), failures.end(), [](const Failure& failure) {
    return failure.change.state == PendingChange::State::unanswered;
  });
  return store_.folder(folder).pending + static_cast<std::size_t>(unanswered);
}

bool AccountSession::takeStep(FolderWork& work, SyncStep step) {
  checkInterrupt();
  FolderReport& report = work.report;
  FolderSettings settings = work.settings;
  settings.syncMode = modeOf(step, settings.syncMode);
  FolderRecord record = store_.folderInfo(report.folder.number, settings);
  FOLDER_INFO& info = record.info();
  store_.beginSync(info, work.rules);
  SYNC_RESULT result = library_->airSync().Sync(info.syncKey, &info);
  if (isEmptyAnswer(result)) result = AS_RESULT_OK;
  const SyncOutcome outcome = store_.endSync(result, wasNotBuilt(result) ? Reached::no : lastReached());
  accumulate(report.outcome, outcome);
  if (outcome.sent > 0) work.culprits = 0;
  if (result != AS_RESULT_OK) {
    afterFailure(work, step, result);
    return true;
  }
  if (outcome.withheld > 0) refuseDeletions(report);
  // Without an answer there is nothing to go on with; what waits goes out with the next run.
  const bool begins = std::string_view(info.syncKey.text) == "0";
  if ((carriesChanges(step) || begins) && outcome.keys == 0) {
    report.notTaken = waitingIn(report.folder.number);
    return false;
  }
  work.received = !outcome.initial && !outcome.receiveAgain;
  return true;
}

void AccountSession::afterFailure(FolderWork& work, SyncStep step, SYNC_RESULT result) {
  work.received = false;
  if (result == kUnknownSyncKey) {
    beginAnew(work.report, result);
  } else if (result == AS_RESULT_REQUEST_TOO_LARGE) {
    setAside(work.report, result);
  } else if (!carriesChanges(step) || !isErrorOverChanges(result) || !blameChanges(work, result)) {
    failFolder(work.report, result);
  }
}

// False: no change was in the request, or it is not the changes.
bool AccountSession::blameChanges(FolderWork& work, SYNC_RESULT result) {
  if (work.culprits == kMostCulprits) return false;
  const std::string reason =
      fmt::format("The server answered the request that carried it with an error: {} ({})", wordsOf(result),
                  describe(result, Asked::folder).name);
  switch (store_.blameRequest(reason)) {
    case Blame::nothing:
      return false;
    case Blame::several:
      break;
    case Blame::one:
      ++work.culprits;
      ++work.report.outcome.refused;
      break;
  }
  return true;
}

void AccountSession::beginAnew(FolderReport& report, SYNC_RESULT result) {
  if (report.begunAnew) failFolder(report, result);
  report.begunAnew = true;
  store_.resetFolder(report.folder.number);
  guard_.begin("0");
}

void AccountSession::lookAnew(FolderWork& work) {
  work.report.lookedAnew = true;
  work.received = false;
  store_.resetFolder(work.report.folder.number);
  guard_.begin("0");
}

void AccountSession::setAside(FolderReport& report, SYNC_RESULT result) {
  const ResultText text = describeItem(result);
  if (!store_.setAsideLast(text.sentence)) failFolder(report, result);
  ++report.outcome.refused;
}

void AccountSession::checkDeletions(const FolderReport& report) const {
  const WaitingDeletions waiting = store_.waitingDeletions(report.folder.number);
  if (!isMassDeletion(waiting.deletions, waiting.items)) return;
  throw ExitError(
      ExitCode::kNeedsPerson,
      {.kind = ErrorKind::folder,
       .operation = "synchronising",
       .subject = subjectOf(report),
       .cause = fmt::format("{} of its {} items would be deleted on the server, and nothing was sent",
                            waiting.deletions, waiting.items),
       .advice =
           fmt::format("If that is meant: airsync sync {} --allow-deletes; if not: airsync discard {} ID "
                       "gives a deletion up.",
                       report.folder.serverId, report.folder.serverId)});
}

void AccountSession::refuseDeletions(const FolderReport& report) const {
  throw ExitError(
      ExitCode::kNeedsPerson,
      {.kind = ErrorKind::folder,
       .operation = "synchronising",
       .subject = subjectOf(report),
       .cause = fmt::format("the server deleted {} of its {} items, and they are kept here",
                            report.outcome.withheld, report.outcome.withheldOf),
       .advice = fmt::format("If that is meant: airsync sync {} --allow-deletes puts them into the trash.",
                             report.folder.serverId)});
}

void AccountSession::failFolder(const FolderReport& report, SYNC_RESULT result) const {
  if (!guard_.stalled()) fail(result, "synchronising", subjectOf(report), ErrorKind::folder, Asked::folder);
  ErrorStory story;
  story.kind = ErrorKind::folder;
  story.operation = "synchronising";
  story.subject = subjectOf(report);
  story.cause = "the server keeps promising more and sends nothing new";
  story.advice = "run airsync sync again later; if it stays so, tell the server's administrator";
  throw ExitError(ExitCode::kServer, std::move(story));
}

std::string AccountSession::subjectOf(const FolderReport& report) const {
  return fmt::format("folder \"{}\" of account {}", report.folder.path, account_.name);
}

}  // namespace airsync
