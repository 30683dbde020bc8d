#include "cli/attachment/Choice.h"

#include <algorithm>
#include <cstdint>
#include <fmt/core.h>

#include "cli/ExitError.h"
#include "cli/RemoteItem.h"

namespace airsync {

namespace {

using Attachment = FieldValues<AIRSYNC_STACK::AS_ATTACHMENT_T>;

// What the library has room for behind "GetAttachment&AttachmentName=".
constexpr std::size_t kLongestHandle = 994;

[[noreturn]] void fail(ExitCode code, const std::string& subject, const std::string& cause,
                       const std::string& advice) {
  throw ExitError(code, {.kind = ErrorKind::item,
                         .operation = "downloading an attachment of",
                         .subject = subject,
                         .cause = cause,
                         .advice = advice});
}

std::string textOf(const Attachment& attachment, const char* field) {
  const auto* text = attachment.get<std::string>(field);
  return text == nullptr ? std::string() : *text;
}

std::size_t indexOf(std::size_t count, std::optional<int> number, const std::string& subject) {
  if (count == 0) {
    fail(ExitCode::kUsage, subject, "the mail has no attachments",
         "See airsync list: it tells which mails have some.");
  }
  if (!number && count > 1) {
    fail(ExitCode::kUsage, subject, fmt::format("the mail has {} attachments", count),
         "Say which one by its number: airsync attachment FOLDER ID N.");
  }
  const int chosen = number.value_or(1);
  if (chosen < 1 || static_cast<std::size_t>(chosen) > count) {
    fail(ExitCode::kUsage, subject, fmt::format("there is no attachment {}", chosen),
         fmt::format("Take a number from 1 to {}; airsync show lists them.", count));
  }
  return static_cast<std::size_t>(chosen) - 1;
}

std::size_t sizeOf(const Attachment& attachment, const std::string& subject, const std::string& fetch) {
  const auto* told = attachment.get<std::int32_t>("Size");
  const std::int32_t size = told == nullptr ? 0 : *told;
  if (size <= 0) {
    fail(ExitCode::kServer, subject,
         size == 0 ? std::string("the server tells no size for it, or that it is empty")
                   : fmt::format("the server tells that its size is {} bytes, which can't be", size),
         fmt::format("Run {} to ask the server for the mail anew; without a size it can't be downloaded.",
                     fetch));
  }
  if (static_cast<std::size_t>(size) > kLargestAttachment) {
    fail(ExitCode::kServer, subject,
         fmt::format("the server tells that its size is {} bytes, which is absurd", size),
         "Attachments up to 1 GiB are downloaded; look at the mail by other means.");
  }
  return static_cast<std::size_t>(size);
}

// The library writes the handle into the request line as it stands.
void checkHandle(const std::string& handle, const std::string& subject) {
  const char* cause = handle.empty() ? "the server tells no name by which it could be asked for"
                      : !fitsRequestLine(handle)
                          ? "its name on the server has spaces, control characters, '&', '#' or letters "
                            "that a request's address can't carry"
                      : handle.size() > kLongestHandle ? "its name on the server is too long for a request"
                                                       : nullptr;
  if (cause != nullptr) fail(ExitCode::kServer, subject, cause, "Look at the mail by other means.");
}

}  // namespace

ChosenAttachment chooseAttachment(const Mail& mail, std::optional<int> number, const std::string& subject,
                                  const std::string& fetch) {
  const std::size_t index = indexOf(mail.attachments.size(), number, subject);
  const Attachment& attachment = mail.attachments[index];
  ChosenAttachment chosen;
  chosen.number = index + 1;
  chosen.handle = textOf(attachment, "OID");
  if (chosen.handle.empty()) chosen.handle = textOf(attachment, "Name");
  checkHandle(chosen.handle, subject);
  chosen.size = sizeOf(attachment, subject, fetch);
  chosen.displayName = textOf(attachment, "DisplayName");
  if (chosen.displayName.empty()) chosen.displayName = textOf(attachment, "Name");
  return chosen;
}

}  // namespace airsync
