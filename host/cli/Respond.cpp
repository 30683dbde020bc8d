// airsync respond FOLDER ID accept|tentative|decline: the answer to a meeting request.
#include <algorithm>
#include <array>
#include <fmt/core.h>
#include <string_view>
#include <variant>

#include "cli/Commands.h"
#include "cli/ExitError.h"
#include "cli/RemoteItem.h"
#include "cli/output/Displayable.h"
#include "cli/output/Json.h"
#include "cli/session/Turn.h"

namespace airsync {

namespace {

using namespace AIRSYNC_STACK;

struct AnswerRow {
  std::string_view name;
  AS_MEETING_RESPONSE_ENUM_T answer;
  std::string_view done;
};

constexpr std::array<AnswerRow, 3> kAnswers = {{
    {"accept", AS_MEETING_RESPONSE_ACCEPT, "accepted"},
    {"tentative", AS_MEETING_RESPONSE_TENTATIVE, "accepted tentatively"},
    {"decline", AS_MEETING_RESPONSE_DECLINE, "declined"},
}};

const AnswerRow& answerOf(const std::string& name) {
  const auto* row = std::find_if(kAnswers.begin(), kAnswers.end(),
                                 [&name](const AnswerRow& entry) { return entry.name == name; });
  if (row != kAnswers.end()) return *row;
  throw ExitError(ExitCode::kUsage, "an answer is accept, tentative or decline",
                  "See airsync respond --help.");
}

void refuseOtherMails(const Store& store, const RemoteItem& mail) {
  const StoredItem item = store.item(mail.number);
  const auto* value = std::get_if<Mail>(&item.value);
  if (value != nullptr && value->meetingRequest) return;
  throw ExitError(ExitCode::kUsage, {.kind = ErrorKind::item,
                                     .operation = "answering",
                                     .subject = mail.subject(),
                                     .cause = "it is no meeting request",
                                     .advice = "Use airsync reply for other mails."});
}

}  // namespace

ExitCode runRespond(Context& context) {
  const Account& account = context.onlyAccount();
  const AnswerRow& row = answerOf(context.options.answer);
  Turn turn(account, context.runOptions());
  const RemoteItem mail =
      findRemoteMail(turn.store(), context.options.folder, context.options.item, "answering");
  refuseOtherMails(turn.store(), mail);
  AccountSession& session = turn.session();
  session.connect();
  session.beginCommand();
  SERVER_ID calendarId = {};
  session.require(session.airSync().MeetingResponse(mail.serverId(), mail.folderId(), row.answer, calendarId),
                  "answering", mail.subject(), ErrorKind::item);
  if (!session.answer().holdsMeetingResult()) {
    throw ExitError(ExitCode::kServer,
                    {.kind = ErrorKind::item,
                     .operation = "answering",
                     .subject = mail.subject(),
                     .cause = "the server did not say what became of the answer",
                     .advice = "Run airsync sync, and look into the calendar before you answer again."});
  }
  const std::string id = calendarId.text;
  const bool made = !id.empty() && id != "0";
  context.output.document({{"account", account.name},
                           {"folder", mail.folder.serverId},
                           {"number", mail.number},
                           {"id", mail.id},
                           {"action", row.name},
                           {"calendar_id", made ? Json(id) : Json(nullptr)}});
  context.output.done(fmt::format(
      "{}: {}; {}airsync sync brings the server's changes", displayable(mail.subject()), row.done,
      made ? fmt::format("the meeting is item {} of the calendar; ", displayable(id)) : std::string()));
  return ExitCode::kDone;
}

}  // namespace airsync
