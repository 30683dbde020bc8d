// airsync list FOLDER: one line per item.
#include <fmt/core.h>

#include "cli/Commands.h"
#include "cli/Item.h"
#include "cli/output/Displayable.h"
#include "cli/output/Json.h"
#include "cli/output/Words.h"

namespace airsync {

namespace {

constexpr std::size_t kColumns = 36;  // of a name or an address; the whole text is in `airsync show`

std::string wordsOf(const std::optional<PendingChange>& pending) {
  if (!pending) return {};
  return fmt::format("{} {}", nameOf(pending->kind), nameOf(pending->state));
}

}  // namespace

ExitCode runList(Context& context) {
  const OpenFolder open(context);
  Json items = Json::array();
  Table table({"NUMBER", "NAME", "E-MAIL", "PHONE", "LOCAL CHANGE"});
  open.store.listItems(open.folder.number, [&](const ItemSummary& item) {
    const auto& contact = std::get<ContactSummary>(item.details);
    if (context.output.json()) {
      items.push_back(summaryJson(item));
    } else {
      table.add({std::to_string(item.number), displayable(contact.name, kColumns),
                 displayable(contact.email, kColumns), displayable(contact.phone, kColumns),
                 wordsOf(item.pending)});
    }
    return true;
  });
  table.print(context.output);
  context.output.document(
      {{"account", open.account.name}, {"folder", folderJson(open.account, open.folder)}, {"items", items}});
  return ExitCode::kDone;
}

}  // namespace airsync
