#include "cli/Commands.h"

#include <fmt/core.h>

#include "cli/ExitError.h"
#include "cli/process/Child.h"
#include "cli/process/Obituary.h"

namespace airsync {

const Account& Context::onlyAccount() const {
  const std::vector<const Account*> selected = accounts();
  if (selected.size() == 1) return *selected.front();
  std::string names;
  for (const Account* account : selected) names += (names.empty() ? "" : ", ") + account->name;
  throw ExitError(ExitCode::kUsage, "the configuration has several accounts, and this command is about one",
                  "Choose it with --account NAME: " + names + ".");
}

RunOptions Context::runOptions() const {
  RunOptions run;
  run.state = state;
  run.environment = accounts().size() == 1 ? environment : nullptr;
  run.folders = options.folders;
  run.allowDeletes = options.allowDeletes;
  run.events.verbosity = options.verbosity;
  run.events.flight = flight;
  run.events.log = [this](const std::string& line) { output.log(line); };
  run.events.progress = [this](const std::string& folder, std::size_t items) {
    output.progress(folder, items);
  };
  run.listFailed = [](const Trouble&) {};
  run.planned = [](const std::vector<FolderReport>&) {};
  run.folderDone = [](const FolderReport&) {};
  return run;
}

namespace {

enum class Place {
  here,  // no server is asked, or the command makes processes of its own
  asks,  // in a child that asks the server, or takes what it has
  acts,  // in a child that has the server do something
};

struct CommandRow {
  Command command;
  ExitCode (*run)(Context& context);
  Place place;
};

// In the order of their numbers.
constexpr CommandRow kCommands[] = {
    {Command::folders, runFolders, Place::here},
    {Command::sync, runSync, Place::here},
    {Command::list, runList, Place::here},
    {Command::show, runShow, Place::here},
    {Command::add, runAdd, Place::here},
    {Command::change, runChange, Place::here},
    {Command::remove, runDelete, Place::here},
    {Command::mark, runMark, Place::here},
    {Command::fetch, runFetch, Place::asks},
    {Command::attachment, runAttachment, Place::asks},
    {Command::retry, runRetry, Place::here},
    {Command::discard, runDiscard, Place::here},
    {Command::trash, runTrash, Place::here},
    {Command::restore, runRestore, Place::here},
    {Command::status, runStatus, Place::here},
    {Command::options, runOptions, Place::asks},
    {Command::hierarchy, runHierarchy, Place::asks},
    {Command::folderCreate, runFolderCreate, Place::acts},
    {Command::folderRename, runFolderRename, Place::acts},
    {Command::folderDelete, runFolderDelete, Place::acts},
    {Command::estimate, runEstimate, Place::asks},
    {Command::send, runSend, Place::acts},
    {Command::reply, runReply, Place::acts},
    {Command::forward, runForward, Place::acts},
    {Command::move, runMove, Place::acts},
    {Command::respond, runRespond, Place::acts},
    {Command::notifyEnable, runNotifyEnable, Place::acts},
    {Command::notifyDisable, runNotifyDisable, Place::acts},
    {Command::notifyCarriers, runNotifyCarriers, Place::asks},
    {Command::notifyAddress, runNotifyAddress, Place::acts},
    {Command::notifyCheck, runNotifyCheck, Place::here},
};

constexpr bool standInOrder() {
  int number = 0;
  for (const CommandRow& row : kCommands) {
    if (static_cast<int>(row.command) != number++) return false;
  }
  return number == static_cast<int>(Command::notifyCheck) + 1;
}
static_assert(standInOrder());

ExitCode runApart(Context& context, const CommandRow& row) {
  const Options& options = context.options;
  const Account& account = context.onlyAccount();
  const ChildEnd end = runInChild(context.output, [&](Child& child) {
    context.flight = &child.flight();
    return row.run(context);
  });
  if (!end.death) return end.code;
  throw obituaryOf(*end.death, {.account = account.name,
                                .operation = fmt::format("running airsync {} for", nameOf(row.command)),
                                .folder = options.folder,
                                .acts = row.place == Place::acts});
}

}  // namespace

ExitCode runCommand(Context& context) {
  const CommandRow& row = kCommands[static_cast<std::size_t>(context.options.command)];
  return row.place == Place::here ? row.run(context) : runApart(context, row);
}

}  // namespace airsync
