#include "mime/Message.h"

#include <algorithm>
#include <cctype>

#include "mime/Gmime.h"
#include "mime/Parts.h"
#include "support/Utf8.h"

namespace demoserver {
namespace {

std::string cut(std::string_view text, std::size_t limit) { return std::string(utf8Head(text, limit)); }

// A header's text on one line.
std::string headerText(const char* text) {
  std::string line = cut(itemText(stringOf(text)), kMaxHeaderText);
  for (char& c : line)
    if (c == '\r' || c == '\n' || c == '\t') c = ' ';
  return line;
}

std::string listText(InternetAddressList* list) {
  if (list == nullptr || internet_address_list_length(list) == 0) return {};
  const OwnedText text(internet_address_list_to_string(list, nullptr, FALSE));
  return headerText(text.get());
}

void collect(InternetAddressList* list, std::vector<Mailbox>& mailboxes, int depth = 0) {
  if (list == nullptr || depth > kMaxNesting) return;
  for (int i = 0; i < internet_address_list_length(list); ++i) {
    InternetAddress* address = internet_address_list_get_address(list, i);
    if (INTERNET_ADDRESS_IS_GROUP(address))
      collect(internet_address_group_get_members(INTERNET_ADDRESS_GROUP(address)), mailboxes, depth + 1);
    else if (INTERNET_ADDRESS_IS_MAILBOX(address))
      mailboxes.push_back({headerText(internet_address_get_name(address)),
                           headerText(internet_address_mailbox_get_addr(INTERNET_ADDRESS_MAILBOX(address)))});
  }
}

std::optional<std::chrono::sys_seconds> dateOf(GMimeMessage* message) {
  constexpr gint64 kYear10000 = 253'402'300'800;
  GDateTime* date = g_mime_message_get_date(message);
  const gint64 seconds = date != nullptr ? g_date_time_to_unix(date) : -1;
  if (seconds < 0 || seconds >= kYear10000) return std::nullopt;
  return std::chrono::sys_seconds(std::chrono::seconds(seconds));
}

std::string lowerCase(std::string text) {
  for (char& c : text) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return text;
}

}  // namespace

MimeMessage parseMessage(std::string_view bytes) {
  const ByteSource source(bounded(bytes));
  const Owned<GMimeMessage> message = parseObject(source);
  MimeMessage parsed;
  parsed.from = listText(g_mime_message_get_from(message.get()));
  parsed.to = listText(g_mime_message_get_to(message.get()));
  parsed.cc = listText(g_mime_message_get_cc(message.get()));
  parsed.replyTo = listText(g_mime_message_get_reply_to(message.get()));
  parsed.subject = headerText(g_mime_message_get_subject(message.get()));
  parsed.importance =
      lowerCase(headerText(g_mime_object_get_header(GMIME_OBJECT(message.get()), "Importance")));
  parsed.date = dateOf(message.get());
  collect(g_mime_message_get_to(message.get()), parsed.recipients);
  collect(g_mime_message_get_cc(message.get()), parsed.recipients);
  const MessageParts parts(message.get());
  for (GMimePart* part : parts.texts()) {
    if (parsed.body.size() >= kMaxBody) break;
    if (!parsed.body.empty()) parsed.body += "\n\n";
    parsed.body += plainText(part);
  }
  parsed.body = cut(parsed.body, kMaxBody);
  for (GMimeObject* part : parts.attachments()) parsed.attachments.push_back(attachmentOf(part));
  return parsed;
}

bool isReadWhole(std::string_view bytes) { return bounded(bytes).size() == bytes.size(); }

std::vector<Mailbox> parseMailboxes(const std::string& text) {
  prepareGmime();
  std::vector<Mailbox> mailboxes;
  const Owned<InternetAddressList> list(internet_address_list_parse(nullptr, text.c_str()));
  collect(list.get(), mailboxes);
  return mailboxes;
}

}  // namespace demoserver
