// airsync show FOLDER ID: one item with all its fields, local changes included.
#include <fmt/core.h>

#include "cli/Commands.h"
#include "cli/Item.h"
#include "cli/output/Json.h"
#include "cli/output/RecordText.h"
#include "cli/output/Words.h"
#include "formats/ItemJson.h"

namespace airsync {

namespace {

void printPending(Output& output, const PendingChange& change) {
  const std::string reason = reasonOf(change);
  output.line(fmt::format("(local {}, {}{}{})", nameOf(change.kind), nameOf(change.state),
                          reason.empty() ? "" : ": ", reason));
}

}  // namespace

ExitCode runShow(Context& context) {
  const OpenItem open(context);
  const StoredItem item = open.store.item(open.item);
  if (context.output.json()) {
    Json json = {{"account", open.account.name}, {"folder", open.folder.serverId}};
    json.update(itemJson(item));
    context.output.document(json);
    return ExitCode::kDone;
  }
  for (const std::string& line : recordLines(itemToJson(item.value))) context.output.line(line);
  if (item.pending) printPending(context.output, *item.pending);
  return ExitCode::kDone;
}

}  // namespace airsync
