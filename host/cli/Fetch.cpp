// airsync fetch FOLDER ID: one item in full, from the server now.
#include <fmt/core.h>
#include <variant>

#include "cli/Commands.h"
#include "cli/Item.h"
#include "cli/output/Displayable.h"
#include "cli/output/Json.h"
#include "cli/output/Words.h"
#include "cli/session/FetchItem.h"

namespace airsync {

namespace {

// The item's Body, as it is now; null where it has none.
const std::string* bodyOf(const ItemValue& item) {
  if (const auto* contact = std::get_if<Contact>(&item)) return contact->get<std::string>("Body");
  if (const auto* event = std::get_if<Event>(&item)) return event->fields.get<std::string>("Body");
  return std::get<Mail>(item).fields.get<std::string>("Body");
}

void tell(Context& context, const Folder& folder, ItemNumber item, const FetchReport& report,
          const std::string* body) {
  Output& output = context.output;
  output.endProgress();
  const std::string name = displayable(folder.path);
  if (report.synchronisedFirst) {
    output.note(fmt::format("{}: a request had not been answered, so it was synchronised first", name));
  }
  const std::string came =
      body == nullptr ? "it has no Body" : fmt::format("its Body has {} bytes", body->size());
  output.done(fmt::format("{}: item {} is here in full; {}", name, item, came));
  const std::string changes = sentenceOf(report.changes);
  if (changes != sentenceOf(SyncOutcome())) output.done(fmt::format("{}: {}", name, changes));
}

}  // namespace

ExitCode runFetch(Context& context) {
  const Account& account = context.onlyAccount();
  Turn turn(account, context.runOptions());
  const Folder folder = turn.store().findFolder(context.options.folder);
  const ItemNumber item = turn.store().findItem(folder.number, context.options.item);
  if (!turn.store().item(item).serverId) {
    refuse("fetching", fmt::format("item {} of folder \"{}\"", item, folder.path),
           "the server does not know it yet", "Run airsync sync: it sends the item.");
  }
  turn.session().connect();
  const FetchReport report = fetchItem(turn, account, folder, item);
  const StoredItem stored = turn.store().item(item);
  const std::string* body = bodyOf(stored.value);
  tell(context, folder, item, report, body);
  context.output.document({{"account", account.name},
                           {"folder", folder.serverId},
                           {"number", item},
                           {"action", "fetch"},
                           {"body_bytes", body == nullptr ? Json(nullptr) : Json(body->size())},
                           {"changes", outcomeJson(report.changes)}});
  return ExitCode::kDone;
}

}  // namespace airsync
