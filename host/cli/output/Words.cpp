#include "cli/output/Words.h"

#include <fmt/core.h>
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

std::string sentenceOf(const SyncOutcome& outcome) {
  const struct {
    std::size_t count;
    const char* words;
  } parts[] = {
      {outcome.added, "added"},
      {outcome.changed, "changed"},
      {outcome.deleted, "deleted"},
      {outcome.sent, "sent to the server"},
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
