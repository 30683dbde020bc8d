// airsync estimate [FOLDER...]: how many changes wait on the server, folder by folder.
#include <algorithm>
#include <fmt/core.h>
#include <utility>

#include "cli/Commands.h"
#include "cli/ExitError.h"
#include "cli/RemoteItem.h"
#include "cli/ResultText.h"
#include "cli/output/Displayable.h"
#include "cli/output/Json.h"
#include "cli/session/Turn.h"

namespace airsync {

namespace {

using namespace AIRSYNC_STACK;

// A folder takes at most 200 bytes of a request, and the library sends no more than 10,000.
constexpr std::size_t kFoldersPerRequest = 40;

struct Row {
  Folder folder;
  std::optional<int> items;        // empty: not known
  std::optional<Trouble> trouble;  // why not
};

bool hasKey(const Folder& folder) { return folder.syncKey != "0"; }

void ask(const Account& account, Turn& turn, const std::vector<Row*>& rows) {
  std::vector<FolderRecord> records;
  for (const Row* row : rows) {
    const FolderPolicy& policy = account.policyFor(row->folder.name, row->folder.serverId);
    records.push_back(turn.store().folderInfo(row->folder.number, policy.protocol));
  }
  turn.store().offerFolders(std::move(records));
  turn.session().beginCommand();
  turn.session().require(turn.session().airSync().GetItemEstimate(), "asking how much waits on the server of",
                         "account " + account.name, ErrorKind::account);
  for (Row* row : rows) {
    row->trouble = {ExitCode::kServer, "the server said nothing sensible of it", "Run airsync sync."};
    for (const FolderEstimate& estimate : turn.store().estimates()) {
      if (estimate.folder != row->folder.number) continue;
      const ResultText text = describe(estimate.result);
      if (estimate.result != AS_RESULT_OK) {
        row->trouble = {text.exitCode, text.sentence, asSentence(text.advice)};
      } else if (estimate.items >= 0) {
        row->items = estimate.items;
        row->trouble.reset();
      }
    }
  }
}

void askAll(const Account& account, Turn& turn, std::vector<Row>& rows) {
  std::vector<Row*> known;
  for (Row& row : rows) {
    if (!row.folder.dataType) {
      row.trouble = {ExitCode::kUsage, "folders of this type can't be synchronised", "Leave it out."};
    } else if (hasKey(row.folder)) {
      known.push_back(&row);
    }
  }
  if (known.empty()) return;
  turn.session().connect();
  for (std::size_t first = 0; first < known.size(); first += kFoldersPerRequest) {
    const std::size_t end = std::min(known.size(), first + kFoldersPerRequest);
    ask(account, turn,
        {known.begin() + static_cast<std::ptrdiff_t>(first),
         known.begin() + static_cast<std::ptrdiff_t>(end)});
  }
}

std::string wordsOf(const Row& row) {
  if (row.items) return std::to_string(*row.items);
  return row.trouble ? "unknown" : "all of it (never synchronised)";
}

}  // namespace

ExitCode runEstimate(Context& context) {
  const Account& account = context.onlyAccount();
  Turn turn(account, context.runOptions());
  std::vector<Row> rows;
  for (Folder& folder : chooseRemoteFolders(account, turn.store(), context.options.folders)) {
    rows.push_back({std::move(folder), {}, {}});
  }
  askAll(account, turn, rows);
  if (rows.empty()) context.output.note("no folders are known yet; run airsync folders --refresh");
  Table table({"FOLDER", "WAITING"});
  Json list = Json::array();
  std::vector<ExitCode> codes;
  for (const Row& row : rows) {
    table.add({displayable(row.folder.path), wordsOf(row)});
    list.push_back({{"id", row.folder.serverId},
                    {"path", row.folder.path},
                    {"synchronised", hasKey(row.folder)},
                    {"items", row.items ? Json(*row.items) : Json(nullptr)},
                    {"error", troubleJson(row.trouble)}});
    codes.push_back(row.trouble ? row.trouble->code : ExitCode::kDone);
  }
  table.print(context.output);
  for (const Row& row : rows) {
    if (!row.trouble) continue;
    context.output.error(fmt::format("folder \"{}\": {}", displayable(row.folder.path), row.trouble->message),
                         row.trouble->advice);
  }
  const ExitCode code = combine(codes);
  context.output.document(
      {{"account", account.name}, {"folders", std::move(list)}, {"exit", exitJson(code)}});
  return code;
}

}  // namespace airsync
