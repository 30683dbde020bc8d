// The SmartReply and SmartForward commands: messages that the server completes from a mail it holds.
//
// A reply gets the mail's text, each line after "> ", below a line that names its author and date. A forward
// gets the mail's heading and text, and its attachments. The text goes behind the plain text of the client's
// message. What is then kept and delivered is the completed message (see Delivery).
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "data/State.h"
#include "protocol/Delivery.h"

namespace demoserver {

enum class SmartKind { Reply, Forward };

// The mail that a query refers to, in the spellings that it may mean, the likeliest first.
struct MailReference {
  std::vector<std::string> items;
  std::vector<std::string> collections;
};

inline constexpr std::size_t kMaxCompleted = std::size_t{128} * 1024 * 1024;

// Throws NotFound when there is no such mail, TooLarge when the client's message and the attachments in their
// announced sizes are more than `limit` bytes or the message can't be read whole (isReadWhole). A mail that
// was moved from there is still found. Runs inside the caller's transaction.
void sendSmart(State& state, const Posting& posting, SmartKind kind, const MailReference& reference,
               std::string_view message, std::size_t limit = kMaxCompleted);

}  // namespace demoserver
