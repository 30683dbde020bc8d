#include "cli/message/Deliver.h"

#include <fmt/core.h>
#include <optional>

#include "cli/ExitError.h"
#include "cli/RemoteItem.h"
#include "cli/message/MessageFile.h"
#include "cli/output/Displayable.h"
#include "cli/output/Json.h"
#include "cli/session/Turn.h"

namespace airsync {

namespace {

using namespace AIRSYNC_STACK;

constexpr SYNC_RESULT kHttpNotFound = AS_RESULT_FAMILY_HTTP | 404;

// A status by which a server tells that it did not take what it has read. Of others, 500 and 503 among them,
// nobody knows what was done before: they may come from a proxy, while the server behind it goes on.
bool isRefusal(int status) { return status >= 300 && status < 500; }

// One message on its way.
class Delivery {
 public:
  Delivery(Context& context, const Errand& errand, const MessageFile& file)
      : errand_(errand),
        output_(context.output),
        file_(file),
        account_(context.onlyAccount()),
        turn_(account_, runOptions(context)) {}

  Turn& turn() { return turn_; }
  const Account& account() const { return account_; }

  void run(bool saveInSent, const std::optional<RemoteItem>& mail) {
    AccountSession& session = turn_.session();
    session.connect();
    session.beginCommand();
    const SYNC_RESULT result =
        errand_.send(session.airSync(), file_.bytes(), saveInSent, mail ? mail->serverId() : SERVER_ID{},
                     mail ? mail->folderId() : FOLDER_ID{});
    output_.endProgress();
    const std::string subject = mail ? mail->subject() : file_.name();
    if (result != AS_RESULT_OK) tellWhatItMeans(result, subject, mail.has_value());
    if (!file_.changed()) return;
    output_.note(fmt::format("{} was changed while it was sent; what arrived may be a mixture",
                             displayable(file_.name())));
  }

 private:
  RunOptions runOptions(Context& context) {
    RunOptions run = context.runOptions();
    run.events.transfer = [this](const RawProgress& progress) { moved(progress); };
    return run;
  }

  void moved(const RawProgress& progress) {
    last_ = progress;
    output_.progressBytes(file_.name(), progress.done, progress.total);
    // Once all of it has gone out, giving up would only hide the server's answer.
    if (progress.next == 0 || !file_.changed()) return;
    givenUp_ = true;
    turn_.session().airSync().CancelSync();
  }

  [[noreturn]] void tellWhatItMeans(SYNC_RESULT result, const std::string& subject, bool aboutMail) {
    try {
      turn_.session().require(result, errand_.operation, subject, ErrorKind::item);
    } catch (const Error& error) {
      ErrorStory story = error.story();
      const ExitCode code = exitCodeOf(error);
      const TransportError& transport = turn_.session().transportError();
      const RequestFate fate = turn_.session().requestFate();
      const bool toldStatus = transport.kind == TransportErrorKind::kHttpStatus;
      const bool answered = toldStatus || transport.kind == TransportErrorKind::kAnsweredEarly;
      const bool refused = toldStatus && fate == RequestFate::kAnswered && isRefusal(transport.httpStatus);
      if (refused && aboutMail && result == kHttpNotFound) {
        story.cause = "the server does not find the mail any more (HTTP 404)";
        story.advice = "run airsync sync to see what became of it; the message did not go out";
        throw ExitError(code, std::move(story));
      }
      if (refused) {
        story.cause += "; the server refused the message";
        throw ExitError(code, std::move(story));
      }
      if (!answered && (givenUp_ || (!mayHaveGoneOut(last_) && file_.changed()))) {
        changedMeanwhile(std::move(story));
      }
      if (answered || (fate != RequestFate::kNotSent && mayHaveGoneOut(last_))) {
        story.cause += "; whether the message went out is not known";
        story.advice = "look into Sent Items, or ask the recipient, before you send it again";
      } else {
        story.cause += "; the message did not go out";
        story.advice = "send it again later";
      }
      throw ExitError(code, std::move(story));
    }
    throw ExitError(ExitCode::kInternal, "a failure without a result");
  }

  [[noreturn]] void changedMeanwhile(ErrorStory story) const {
    story.cause = fmt::format("{} was changed while it was sent; the message did not go out", file_.name());
    story.advice = "Let whatever writes it come to its end, then send it again.";
    story.kind = ErrorKind::item;
    throw ExitError(ExitCode::kNeedsPerson, std::move(story));
  }

  const Errand& errand_;
  Output& output_;
  const MessageFile& file_;
  const Account& account_;
  RawProgress last_;
  bool givenUp_ = false;
  Turn turn_;  // calls moved()
};

}  // namespace

bool mayHaveGoneOut(const RawProgress& last) {
  return last.total != 0 && last.done + last.next >= last.total;
}

ExitCode deliver(Context& context, const Errand& errand) {
  const Options& options = context.options;
  const MessageFile file(options.message);
  Delivery delivery(context, errand, file);
  std::optional<RemoteItem> mail;
  if (errand.aboutMail) {
    mail = findRemoteMail(delivery.turn().store(), options.folder, options.item, errand.operation);
    requireInRequestLine(*mail, errand.operation);
  }
  delivery.run(!options.noCopy, mail);

  Json json = {{"account", delivery.account().name}, {"action", errand.action}};
  if (mail) json.update({{"folder", mail->folder.serverId}, {"number", mail->number}, {"id", mail->id}});
  json["bytes"] = file.bytes().size();
  json["copy"] = !options.noCopy;
  context.output.document(json);
  context.output.done(fmt::format("{}: {}", displayable(mail ? mail->subject() : file.name()), errand.done));
  return ExitCode::kDone;
}

}  // namespace airsync
