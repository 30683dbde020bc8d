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
  }
  return ExitCode::kInternal;
}

}  // namespace airsync
