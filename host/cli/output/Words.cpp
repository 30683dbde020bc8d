#include "cli/output/Words.h"

#include <algorithm>
#include <fmt/core.h>
#include <iterator>
#include <vector>

#include "cli/ResultText.h"
#include "cli/output/Displayable.h"
#include "cli/session/SupportedClasses.h"

namespace airsync {

std::string_view nameOf(ChangeKind kind) {
  switch (kind) {
    case ChangeKind::add:
      return "add";
    case ChangeKind::change:
      return "change";
    case ChangeKind::remove:
      return "delete";
  }
  return "";
}

std::string_view nameOf(PendingChange::State state) {
  switch (state) {
    case PendingChange::State::waiting:
      return "waiting";
    case PendingChange::State::failed:
      return "failed";
    case PendingChange::State::unanswered:
      return "unanswered";
  }
  return "";
}

std::string_view nameOf(AIRSYNC_STACK::DATATYPE dataType) {
  switch (dataType) {
    case AIRSYNC_STACK::DATATYPE_CONTACTS:
      return "contacts";
    case AIRSYNC_STACK::DATATYPE_CALENDAR:
      return "calendar";
    case AIRSYNC_STACK::DATATYPE_EMAIL:
      return "email";
  }
  return "";
}

std::string_view stateOf(const Account& account, const Folder& folder) {
  switch (participationOf(folder)) {
    case Participation::yes:
      return account.policyFor(folder.name, folder.serverId).selected ? "synchronised" : "not-selected";
    case Participation::never:
      return "never";
    case Participation::gone:
      return "gone";
  }
  return "";
}

std::string reasonOf(const PendingChange& change) {
  if (!change.reason.empty()) return displayable(change.reason);
  if (change.status == 0) return {};
  const auto status = static_cast<AIRSYNC_STACK::SYNC_RESULT>(change.status);
  return describeItem(AIRSYNC_STACK::AS_RESULT_FAMILY_ITEM | status).sentence;
}

bool isTooLarge(const PendingChange& change) {
  return change.status == 0 &&
         change.reason == describeItem(AIRSYNC_STACK::AS_RESULT_REQUEST_TOO_LARGE).sentence;
}

namespace {

struct ConflictText {
  Conflict::Outcome outcome;
  const char* name;
  const char* sentence;  // {0}: the item's name, {1}: its number, {2}: the copy's number
};

constexpr ConflictText kConflictTexts[] = {
    {Conflict::Outcome::keptBoth, "kept-both",
     "\"{0}\" was changed on both sides: item {1} has the server's version, item {2} yours"},
    {Conflict::Outcome::serverWon, "server-won",
     "\"{0}\" (item {1}) was changed here, and changed or deleted on the server: the server won, your "
     "version is "
     "in the trash"},
    {Conflict::Outcome::localWon, "local-won",
     "\"{0}\" (item {1}) was changed on the server, and changed or deleted here: your side won, the server's "
     "version is in the trash"},
    {Conflict::Outcome::addedAnew, "added-anew",
     "\"{0}\" (item {1}) was deleted on the server and changed here: it goes there again"},
    {Conflict::Outcome::broughtBack, "brought-back",
     "\"{0}\" (item {1}) was deleted here and changed on the server: it is back"},
};

const ConflictText& textOf(Conflict::Outcome outcome) {
  return *std::find_if(std::begin(kConflictTexts), std::end(kConflictTexts),
                       [outcome](const ConflictText& text) { return text.outcome == outcome; });
}

}  // namespace

std::string_view nameOf(Conflict::Outcome outcome) { return textOf(outcome).name; }

std::string sentenceOf(const Conflict& conflict) {
  constexpr std::size_t kNameColumns = 40;
  return fmt::format(fmt::runtime(textOf(conflict.outcome).sentence),
                     displayable(conflict.name, kNameColumns), conflict.item, conflict.copy);
}

std::string sentenceOf(const SyncOutcome& outcome) {
  const struct {
    std::size_t count;
    const char* words;
  } parts[] = {
      {outcome.added, "added"},
      {outcome.changed, "changed"},
      {outcome.deleted, "deleted"},
      {outcome.sent - outcome.sentDeletions, "sent to the server"},
      {outcome.sentDeletions, "deleted on the server"},
      {outcome.refused, "not taken by the server"},
      {outcome.overwritten, "local changes replaced by the server's"},
      {outcome.ignored, "incomplete, passed over"},
  };
  std::string text;
  for (const auto& part : parts) {
    if (part.count != 0) text += fmt::format("{}{} {}", text.empty() ? "" : ", ", part.count, part.words);
  }
  return text.empty() ? "up to date" : text;
}

}  // namespace airsync
