#include "protocol/Delivery.h"

#include <algorithm>
#include <array>
#include <cctype>

#include "protocol/Status.h"

namespace demoserver {
namespace {

using nlohmann::json;

constexpr int kByValue = 1;  // Method of an attachment

bool isSameAddress(std::string_view one, std::string_view other) {
  return std::equal(one.begin(), one.end(), other.begin(), other.end(), [](char a, char b) {
    return std::tolower(static_cast<unsigned char>(a)) == std::tolower(static_cast<unsigned char>(b));
  });
}

// The subject without what replies and forwards put before it.
std::string topicOf(std::string_view subject) {
  constexpr std::array<std::string_view, 5> kPrefixes = {"re:", "fwd:", "fw:", "aw:", "wg:"};
  const auto isPrefix = [&](std::string_view prefix) {
    return subject.size() >= prefix.size() && isSameAddress(subject.substr(0, prefix.size()), prefix);
  };
  for (;;) {
    subject.remove_prefix(std::min(subject.find_first_not_of(' '), subject.size()));
    const auto prefix = std::find_if(kPrefixes.begin(), kPrefixes.end(), isPrefix);
    if (prefix == kPrefixes.end()) return std::string(subject);
    subject.remove_prefix(prefix->size());
  }
}

std::string displayNames(const std::string& list) {
  std::string names;
  for (const Mailbox& mailbox : parseMailboxes(list)) {
    if (!names.empty()) names += "; ";
    names += mailbox.name.empty() ? mailbox.address : mailbox.name;
  }
  return names;
}

int importanceOf(std::string_view word) { return word == "high" ? 2 : word == "low" ? 0 : 1; }

void put(State& state, FolderType type, json record, const MimeMessage& parsed, std::string_view message) {
  const auto folder = state.folders.findByType(type);
  if (!folder) return;
  const std::string item = state.items.add(folder->id, record).id;
  state.messages.keep(item, message);
  if (parsed.attachments.empty()) return;
  for (const MimeAttachment& each : parsed.attachments)
    record["Attachments"].push_back({{"Name", each.name},
                                     {"Size", announcedSize(each.content.size())},
                                     {"OID", state.attachments.add(item, each.name, each.type, each.content)},
                                     {"Method", kByValue},
                                     {"DisplayName", each.name}});
  state.items.replace(item, record);
}

}  // namespace

json mailRecord(const MimeMessage& message, Moment received, bool read) {
  json record = {{"DateReceived", itemTime(received)},
                 {"Importance", importanceOf(message.importance)},
                 {"Read", read},
                 {"MessageClass", "IPM.Note"}};
  const std::array<std::pair<const char*, std::string>, 8> texts = {
      {{"From", message.from},
       {"To", message.to},
       {"Cc", message.cc},
       {"ReplyTo", message.replyTo},
       {"Subject", message.subject},
       {"ThreadTopic", topicOf(message.subject)},
       {"DisplayTo", displayNames(message.to)},
       {"Body", message.body}}};
  for (const auto& [name, text] : texts)
    if (!text.empty()) record[name] = text;
  return record;
}

void deliver(State& state, const Posting& posting, std::string_view message) {
  if (message.empty()) throw BadRequest("the message is empty");
  const MimeMessage parsed = parseMessage(message);
  if (posting.saveInSent)
    put(state, kSentItems, mailRecord(parsed, parsed.date.value_or(posting.now), true), parsed, message);
  const bool toOwn =
      std::any_of(parsed.recipients.begin(), parsed.recipients.end(),
                  [&](const Mailbox& mailbox) { return isSameAddress(mailbox.address, posting.ownAddress); });
  if (toOwn) put(state, kInbox, mailRecord(parsed, posting.now, false), parsed, message);
}

}  // namespace demoserver
