// An Internet message as the server understands it. Any bytes are a message: what is missing or broken gives
// empty fields, never an error.
//
// Limits, beyond which the rest is left out: 1 MiB of head, 50,000 lines that begin with "--", kMaxHeaderText
// bytes of each header, kMaxBody bytes of body text, kMaxAttachments attachments, parts nested kMaxNesting
// deep. The texts are UTF-8 with LF line ends, and hold no control characters but tab and LF; what could not
// be read as that is U+FFFD.
#pragma once

#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace demoserver {

inline constexpr std::size_t kMaxHeaderText = std::size_t{32} * 1024;
inline constexpr std::size_t kMaxBody = std::size_t{4} * 1024 * 1024;
inline constexpr std::size_t kMaxAttachments = 200;
inline constexpr int kMaxNesting = 50;

struct Mailbox {
  std::string name;  // empty when the address has none
  std::string address;
};

struct MimeAttachment {
  std::string name;  // never empty
  std::string type;  // "application/pdf"
  std::string content;
};

struct MimeMessage {
  // Address lists as texts, with their names decoded: "Ada Lovelace" <ada@example.org>, bob@example.org
  std::string from;
  std::string to;
  std::string cc;
  std::string replyTo;
  std::string subject;
  std::string importance;  // the header's value in lower case: "high", "normal", "low"
  std::optional<std::chrono::sys_seconds> date;
  std::vector<Mailbox> recipients;  // of To, then of Cc
  std::string body;                 // all plain text that is no attachment, parts separated by an empty line
  // All other parts but those that say in HTML what the body says.
  std::vector<MimeAttachment> attachments;
};

MimeMessage parseMessage(std::string_view bytes);

// False if the head or the number of lines that begin with "--" is beyond the limits, so that the message
// can't be written again without loss.
bool isReadWhole(std::string_view bytes);

// The mailboxes of an address list such as MimeMessage's texts; groups are resolved.
std::vector<Mailbox> parseMailboxes(const std::string& text);

}  // namespace demoserver
