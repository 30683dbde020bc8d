#include "protocol/SmartMail.h"

#include <optional>

#include "items/ItemClass.h"
#include "mime/Compose.h"
#include "protocol/Status.h"
#include "support/Json.h"

namespace demoserver {
namespace {

using nlohmann::json;

bool holdsMail(State& state, const std::string& id) {
  const auto folder = state.folders.find(id);
  return folder && itemClassOf(folder->type) == itemClassOf(kInbox);
}

std::optional<Item> findMail(State& state, const std::string& folder, const std::string& id) {
  if (!holdsMail(state, folder)) return std::nullopt;
  auto item = state.items.find(folder, id);
  if (item && !item->gone) return item;
  return state.moves.movedFrom(folder, id);
}

Item findOriginal(State& state, const MailReference& reference) {
  for (const std::string& folder : reference.collections)
    for (const std::string& id : reference.items)
      if (const auto item = findMail(state, folder, id)) return *item;
  throw NotFound("there is no mail to answer or forward: ItemId and CollectionId name none");
}

// "2026-11-21 09:00:00 UTC" from "2026-11-21T09:00:00Z"; any other text as it is.
std::string readableDate(std::string date) {
  constexpr std::size_t kLength = 20;
  constexpr std::size_t kSeparator = 10;
  if (date.size() != kLength || date[kSeparator] != 'T' || date.back() != 'Z') return date;
  date[kSeparator] = ' ';
  date.pop_back();
  return date + " UTC";
}

std::string quoted(const json& mail) {
  const std::string author = textOf(mail, "From");
  const std::string date = readableDate(textOf(mail, "DateReceived"));
  std::string text = "\n\n" + (author.empty() ? "Somebody" : author) + " wrote" +
                     (date.empty() ? "" : " on " + date) + ":\n";
  const std::string body = textOf(mail, "Body");
  for (std::string_view rest = body; !rest.empty();) {
    std::string_view line = rest.substr(0, rest.find('\n'));
    rest.remove_prefix(std::min(line.size() + 1, rest.size()));
    if (line.ends_with('\r')) line.remove_suffix(1);
    text.append("> ").append(line).append("\n");
  }
  return text;
}

std::string forwarded(const json& mail) {
  std::string text = "\n\n----- Original message -----\n";
  const auto line = [&](const char* heading, const std::string& value) {
    if (!value.empty()) text.append(heading).append(": ").append(value).append("\n");
  };
  line("From", textOf(mail, "From"));
  line("Sent", readableDate(textOf(mail, "DateReceived")));
  line("To", textOf(mail, "To"));
  line("Cc", textOf(mail, "Cc"));
  line("Subject", textOf(mail, "Subject"));
  return text + "\n" + textOf(mail, "Body");
}

}  // namespace

void sendSmart(State& state, const Posting& posting, SmartKind kind, const MailReference& reference,
               std::string_view message, std::size_t limit) {
  if (message.empty()) throw BadRequest("the message is empty");
  if (!isReadWhole(message))
    throw TooLarge("the message has too long a head, or too many lines that begin with \"--\"");
  const Item original = findOriginal(state, reference);
  std::vector<MimeAttachment> attachments;
  std::size_t total = message.size();
  if (kind == SmartKind::Forward)
    for (Attachment& each : state.attachments.list(original.id)) {
      total += announcedSize(each.content.size());
      if (total > limit) throw TooLarge("the message and the attachments to forward are too large");
      attachments.push_back({std::move(each.name), std::move(each.type), std::move(each.content)});
    }
  const std::string text = kind == SmartKind::Reply ? quoted(original.record) : forwarded(original.record);
  deliver(state, posting, completeMessage(message, text, attachments));
}

}  // namespace demoserver
