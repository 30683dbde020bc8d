// airsync attachment FOLDER ID [N] [-o FILE] [--force]: an attachment of a mail, straight into a file.
#include <cstdio>
#include <filesystem>
#include <fmt/core.h>
#include <optional>
#include <span>
#include <system_error>
#include <unistd.h>
#include <variant>

#include "cli/Commands.h"
#include "cli/ExitError.h"
#include "cli/Item.h"
#include "cli/attachment/Choice.h"
#include "cli/attachment/FileName.h"
#include "cli/attachment/Landing.h"
#include "cli/output/Displayable.h"
#include "cli/output/Json.h"
#include "cli/session/Turn.h"

namespace airsync {

namespace {

constexpr const char* kStandardOutput = "-";

struct Wanted {
  Folder folder;
  ItemNumber item = 0;
  std::string subject;
  ChosenAttachment attachment;
};

void listAttachments(Output& output, const Mail& mail) {
  Table table({"N", "NAME", "BYTES"});
  std::size_t number = 0;
  for (const auto& attachment : mail.attachments) {
    const auto* name = attachment.get<std::string>("DisplayName");
    const auto* size = attachment.get<std::int32_t>("Size");
    table.add({std::to_string(++number), displayable(name == nullptr ? "" : *name),
               size == nullptr ? "" : std::to_string(*size)});
  }
  table.print(output);
}

// The store is closed again before the connection has its own.
Wanted findWanted(const Context& context) {
  const OpenItem open(context);
  const ItemValue value = open.store.item(open.item).value;
  const auto* mail = std::get_if<Mail>(&value);
  if (mail == nullptr) {
    refuse("downloading an attachment of", open.subject(), "it is no mail",
           "See airsync list for what the folder holds.");
  }
  const std::optional<int> number = context.options.attachment;
  if (!number && mail->attachments.size() > 1) listAttachments(context.output, *mail);
  return {open.folder, open.item, open.subject(),
          chooseAttachment(*mail, number, open.subject(), fetchCommand(open.folder, open.item))};
}

[[noreturn]] void fail(const Wanted& wanted, const std::string& cause, const std::string& advice) {
  throw ExitError(ExitCode::kServer, {.kind = ErrorKind::item,
                                      .operation = "downloading an attachment of",
                                      .subject = wanted.subject,
                                      .cause = cause,
                                      .advice = advice});
}

// What the transport knows better than the result's code does.
void explain(const AccountSession& session, const Wanted& wanted) {
  constexpr int kNotFound = 404;
  const TransportError& error = session.transportError();
  if (error.kind == TransportErrorKind::kTooLarge) {
    fail(wanted,
         fmt::format("the server sends more than the {} bytes that it had told", wanted.attachment.size),
         fmt::format("Run {} to ask for the mail anew, then try again; nothing was written.",
                     fetchCommand(wanted.folder, wanted.item)));
  }
  if (error.kind == TransportErrorKind::kHttpStatus && error.httpStatus == kNotFound) {
    fail(wanted, "the server does not have it any more (HTTP status 404)",
         "Run airsync sync, then look at the mail again.");
  }
}

std::size_t download(AccountSession& session, const Wanted& wanted, std::span<unsigned char> room) {
  session.connect();
  session.beginCommand();
  const auto result = session.airSync().GetAttachment(wanted.attachment.handle.c_str(), room.data(),
                                                      static_cast<unsigned int>(room.size()), true);
  if (result != AIRSYNC_STACK::AS_RESULT_OK && !Interrupt::requested()) explain(session, wanted);
  session.require(result, "downloading an attachment of", wanted.subject, ErrorKind::item);
  return static_cast<std::size_t>(session.bodyBytes());
}

// The size that a mail tells may be an estimate: of a shorter attachment, the answer's own length tells
// whether it is complete. Where the answer told none, nobody knows.
void noteWhatMayBeMissing(Output& output, const AccountSession& session, const Wanted& wanted,
                          std::size_t size) {
  if (size >= wanted.attachment.size || session.bodyLength() == size) return;
  output.note(
      fmt::format("{} of the {} bytes came that the mail tells of, and the answer told no length of its "
                  "own: the rest may be missing",
                  size, wanted.attachment.size));
}

std::filesystem::path targetOf(const Context& context, const Wanted& wanted) {
  if (context.options.output == kStandardOutput) {
    std::error_code none;
    const std::filesystem::path directory = std::filesystem::temp_directory_path(none);
    return (none ? std::filesystem::path("/tmp") : directory) / "attachment";  // it is never called so
  }
  if (!context.options.output.empty()) return context.options.output;
  return safeFileName(wanted.attachment.displayName);
}

}  // namespace

ExitCode runAttachment(Context& context) {
  const Options& options = context.options;
  const bool toOutput = options.output == kStandardOutput;
  if (toOutput && options.json) {
    throw ExitError(ExitCode::kUsage, "standard output can't hold the attachment and the JSON document",
                    "Leave --json out, or name a file with -o FILE.");
  }
  const Account& account = context.onlyAccount();
  const Wanted wanted = findWanted(context);
  const std::filesystem::path target = targetOf(context, wanted);
  if (!toOutput) checkTarget(target, options.force);
  Landing landing(target, wanted.attachment.size);
  RunOptions run = context.runOptions();
  run.events.transfer = [&context, &wanted](const RawProgress& progress) {
    context.output.progressBytes(wanted.attachment.displayName, progress.done, progress.total);
  };
  Turn turn(account, run);
  const std::size_t size = download(turn.session(), wanted, landing.room());
  context.output.endProgress();
  noteWhatMayBeMissing(context.output, turn.session(), wanted, size);
  if (toOutput) {
    context.output.bytes({reinterpret_cast<const char*>(landing.room().data()), size});
    return ExitCode::kDone;
  }
  landing.cut(size);
  landing.publish(options.force);
  context.output.document({{"account", account.name},
                           {"folder", wanted.folder.serverId},
                           {"number", wanted.item},
                           {"attachment", wanted.attachment.number},
                           {"file", target.string()},
                           {"bytes", size},
                           {"announced", wanted.attachment.size}});
  context.output.done(fmt::format("{}: {} bytes", displayable(target.string()), size));
  return ExitCode::kDone;
}

}  // namespace airsync
