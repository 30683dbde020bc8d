#include "cli/session/Report.h"

#include "cli/ExitError.h"
#include "cli/output/Displayable.h"
#include "cli/output/Output.h"

namespace airsync {

Trouble troubleOf(const Error& error) {
  return {exitCodeOf(error), sentenceOf(error), asSentence(displayable(error.advice()))};
}

ExitCode FolderReport::exitCode() const {
  if (trouble) return trouble->code;
  return notTaken == 0 ? ExitCode::kDone : ExitCode::kPartlyDone;
}

ExitCode AccountReport::exitCode() const {
  if (trouble) return trouble->code;
  std::vector<ExitCode> pieces;
  if (listTrouble) pieces.push_back(listTrouble->code);
  for (const FolderReport& folder : folders) {
    if (!folder.skipped) pieces.push_back(folder.exitCode());
  }
  if (!failures.empty()) pieces.push_back(ExitCode::kPartlyDone);
  return combine(pieces);
}

void accumulate(SyncOutcome& sum, const SyncOutcome& outcome) {
  sum.added += outcome.added;
  sum.changed += outcome.changed;
  sum.deleted += outcome.deleted;
  sum.sent += outcome.sent;
  sum.sentDeletions += outcome.sentDeletions;
  sum.refused += outcome.refused;
  sum.overwritten += outcome.overwritten;
  sum.ignored += outcome.ignored;
  sum.keys += outcome.keys;
  sum.conflicts.insert(sum.conflicts.end(), outcome.conflicts.begin(), outcome.conflicts.end());
  sum.withheld = outcome.withheld;
  sum.withheldOf = outcome.withheldOf;
  sum.receiveAgain = outcome.receiveAgain;
  sum.initial = outcome.initial;
  sum.moreToSend = outcome.moreToSend;
}

}  // namespace airsync
