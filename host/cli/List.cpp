// airsync list FOLDER: one line per item, with the columns of the folder's class.
#include <fmt/core.h>

#include "cli/Commands.h"
#include "cli/Item.h"
#include "cli/output/Displayable.h"
#include "cli/output/Json.h"
#include "cli/output/Words.h"

namespace airsync {

namespace {

constexpr std::size_t kColumns = 36;  // of a name, an address or a subject; all of it is in `airsync show`

std::string wordsOf(const std::optional<PendingChange>& pending) {
  if (!pending) return {};
  return fmt::format("{} {}", nameOf(pending->kind), nameOf(pending->state));
}

std::string textOf(const std::optional<UtcTime>& time) { return time ? time->text() : std::string(); }

std::string flagsOf(const MailSummary& mail) {
  std::string words;
  const auto add = [&words](bool is, const std::string& word) {
    if (is) words += (words.empty() ? "" : ", ") + word;
  };
  add(!mail.read, "unread");
  add(mail.attachments != 0, fmt::format("{} attached", mail.attachments));
  add(mail.isMeetingRequest, "invitation");
  add(mail.truncated, "cut");
  return words;
}

// The columns between an item's number and its local change, class by class.
struct Cells {
  Table::Row operator()(const ContactSummary& contact) const {
    return {displayable(contact.name, kColumns), displayable(contact.email, kColumns),
            displayable(contact.phone, kColumns)};
  }
  Table::Row operator()(const EventSummary& event) const {
    return {textOf(event.start), displayable(event.subject, kColumns), displayable(event.location, kColumns),
            event.recurring ? "yes" : ""};
  }
  Table::Row operator()(const MailSummary& mail) const {
    return {textOf(mail.received), displayable(mail.from, kColumns), displayable(mail.subject, kColumns),
            flagsOf(mail)};
  }
};

Table::Row headOf(const Folder& folder) {
  if (folder.dataType == AIRSYNC_STACK::DATATYPE_EMAIL) return {"DATE", "FROM", "SUBJECT", "FLAGS"};
  if (folder.dataType == AIRSYNC_STACK::DATATYPE_CALENDAR) return {"START", "SUBJECT", "LOCATION", "REPEATS"};
  return {"NAME", "E-MAIL", "PHONE"};
}

Table::Row framed(std::string first, Table::Row cells, std::string last) {
  cells.insert(cells.begin(), std::move(first));
  cells.push_back(std::move(last));
  return cells;
}

}  // namespace

ExitCode runList(Context& context) {
  const OpenFolder open(context);
  Json items = Json::array();
  Table table(framed("NUMBER", headOf(open.folder), "LOCAL CHANGE"));
  open.store.listItems(open.folder.number, [&](const ItemSummary& item) {
    if (context.output.json()) {
      items.push_back(summaryJson(item));
    } else {
      table.add(
          framed(std::to_string(item.number), std::visit(Cells{}, item.details), wordsOf(item.pending)));
    }
    return true;
  });
  table.print(context.output);
  context.output.document(
      {{"account", open.account.name}, {"folder", folderJson(open.account, open.folder)}, {"items", items}});
  return ExitCode::kDone;
}

}  // namespace airsync
