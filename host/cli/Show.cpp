// airsync show FOLDER ID: one item with all its fields, local changes included.
#include <fmt/core.h>
#include <sstream>

#include "cli/Commands.h"
#include "cli/Item.h"
#include "cli/output/Displayable.h"
#include "cli/output/Json.h"
#include "cli/output/Words.h"
#include "formats/ContactJson.h"

namespace airsync {

namespace {

// Texts may have several lines: all but the first are indented.
void printText(Output& output, const std::string& name, const std::string& text) {
  std::istringstream lines(text);
  std::string line;
  std::string lead = name + ": ";
  while (std::getline(lines, line)) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    output.line(lead + displayable(line));
    lead = "    ";
  }
}

void printField(Output& output, const std::string& name, const Json& value) {
  if (value.is_string()) return printText(output, name, value.get<std::string>());
  if (!value.is_array()) return output.line(fmt::format("{}: {}", name, value.dump()));
  std::string entries;
  for (const auto& entry : value) {
    entries += (entries.empty() ? "" : ", ") + displayable(entry.get<std::string>());
  }
  output.line(fmt::format("{}: {}", name, entries));
}

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
  const Json record = contactToJson(std::get<Contact>(item.value));
  for (const auto& [name, value] : record.items()) printField(context.output, name, value);
  if (item.pending) printPending(context.output, *item.pending);
  return ExitCode::kDone;
}

}  // namespace airsync
