// airsync fetch FOLDER ID: one item in full, from the server now.
#include <fmt/core.h>
#include <optional>
#include <variant>

#include "cli/Commands.h"
#include "cli/Item.h"
#include "cli/output/Displayable.h"
#include "cli/output/Json.h"
#include "cli/output/Words.h"
#include "cli/session/FetchItem.h"

namespace airsync {

namespace {

// What came of the item's Body.
struct FetchedBody {
  std::optional<std::size_t> bytes;  // empty: it has none
  bool cut = false;                  // it is longer than the library can carry
};

template <typename Fields>
FetchedBody bodyIn(const Fields& fields) {
  const auto* body = fields.template get<std::string>("Body");
  const auto* cut = fields.template get<bool>("BodyTruncated");
  if (body == nullptr) return {};
  return {body->size(), cut != nullptr && *cut};
}

FetchedBody bodyOf(const ItemValue& item) {
  if (const auto* contact = std::get_if<Contact>(&item)) return bodyIn(*contact);
  if (const auto* event = std::get_if<Event>(&item)) return bodyIn(event->fields);
  return bodyIn(std::get<Mail>(item).fields);
}

std::string sentenceOf(const FetchedBody& body) {
  if (!body.bytes) return "is here in full; it has no Body";
  if (!body.cut) return fmt::format("is here in full; its Body has {} bytes", *body.bytes);
  return fmt::format(
      "is here but for the end of its Body, of which {} bytes came: the protocol carries no more",
      *body.bytes);
}

void tell(Context& context, const Folder& folder, ItemNumber item, const FetchReport& report,
          const FetchedBody& body) {
  Output& output = context.output;
  output.endProgress();
  const std::string name = displayable(folder.path);
  if (report.synchronisedFirst) {
    output.note(fmt::format("{}: a request had not been answered, so it was synchronised first", name));
  }
  output.done(fmt::format("{}: item {} {}", name, item, sentenceOf(body)));
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
  const FetchedBody body = bodyOf(stored.value);
  tell(context, folder, item, report, body);
  context.output.document({{"account", account.name},
                           {"folder", folder.serverId},
                           {"number", item},
                           {"action", "fetch"},
                           {"body_bytes", body.bytes ? Json(*body.bytes) : Json(nullptr)},
                           {"changes", outcomeJson(report.changes)}});
  return ExitCode::kDone;
}

}  // namespace airsync
