#include "cli/Commands.h"

#include "cli/ExitError.h"

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
  run.events.verbosity = options.verbosity;
  run.events.log = [this](const std::string& line) { output.log(line); };
  run.events.progress = [this](const std::string& folder, std::size_t items) {
    output.progress(folder, items);
  };
  run.folderDone = [](const FolderReport&) {};
  return run;
}

ExitCode runCommand(Context& context) {
  switch (context.options.command) {
    case Command::folders:
      return runFolders(context);
    case Command::sync:
      return runSync(context);
    case Command::list:
      return runList(context);
    case Command::show:
      return runShow(context);
    case Command::add:
      return runAdd(context);
    case Command::change:
      return runChange(context);
    case Command::remove:
      return runDelete(context);
    case Command::mark:
      return runMark(context);
    case Command::fetch:
      return runFetch(context);
    case Command::attachment:
      return runAttachment(context);
    case Command::retry:
      return runRetry(context);
    case Command::discard:
      return runDiscard(context);
    case Command::status:
      return runStatus(context);
    case Command::options:
      return runOptions(context);
    case Command::hierarchy:
      return runHierarchy(context);
    case Command::folderCreate:
      return runFolderCreate(context);
    case Command::folderRename:
      return runFolderRename(context);
    case Command::folderDelete:
      return runFolderDelete(context);
    case Command::estimate:
      return runEstimate(context);
    case Command::send:
      return runSend(context);
    case Command::reply:
      return runReply(context);
    case Command::forward:
      return runForward(context);
    case Command::move:
      return runMove(context);
    case Command::respond:
      return runRespond(context);
    case Command::notifyEnable:
      return runNotifyEnable(context);
    case Command::notifyDisable:
      return runNotifyDisable(context);
    case Command::notifyCarriers:
      return runNotifyCarriers(context);
    case Command::notifyAddress:
      return runNotifyAddress(context);
    case Command::notifyCheck:
      return runNotifyCheck(context);
  }
  return ExitCode::kInternal;
}

}  // namespace airsync
