#include "cli/Options.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <fmt/core.h>
#include <limits>

#include "cli/ExitError.h"
#include "cli/output/Displayable.h"

namespace airsync {

namespace {

CLI::Option* addText(CLI::App& command, const char* name, std::string& value, const char* help) {
  return command.add_option(name, value, help)->required()->type_name("");
}

void addFolder(CLI::App& command, Options& options) {
  addText(command, "FOLDER", options.folder, "Name, path or id of the folder");
}

void addItem(CLI::App& command, Options& options) {
  addFolder(command, options);
  addText(command, "ID", options.item, "Number or server id of the item, as list shows it");
}

void addTrash(CLI::App& command, Options& options) {
  command.add_option("ID", options.item, "Number of an item in the trash, to show it")->type_name("");
}

void addRestore(CLI::App& command, Options& options) {
  addText(command, "ID", options.item, "Number of an item in the trash");
  command.add_option("--to", options.to, "Another folder than its own")->type_name("FOLDER");
}

void addRecordFile(CLI::App& command, Options& options) {
  addText(command, "RECORD", options.record, "JSON file with the fields, or - for standard input");
}

void addFolderRecord(CLI::App& command, Options& options) {
  addFolder(command, options);
  addRecordFile(command, options);
}

void addItemRecord(CLI::App& command, Options& options) {
  addItem(command, options);
  addRecordFile(command, options);
}

void addMark(CLI::App& command, Options& options) {
  addItem(command, options);
  CLI::Option_group* how = command.add_option_group("state", "What the mail becomes");
  how->add_flag("--read", options.read, "It has been read");
  how->add_flag_callback(
      "--unread", [&options] { options.read = false; }, "It has not been read");
  how->require_option(1);
}

void addAttachment(CLI::App& command, Options& options) {
  addItem(command, options);
  command.add_option("N", options.attachment, "Number of the attachment, when the mail has several")
      ->type_name("");
  command.add_option("-o,--output", options.output, "Write to this file, or to standard output (-)")
      ->type_name("FILE");
  command.add_flag("--force", options.force, "Replace a file that is there");
}

void addNothing(CLI::App&, Options&) {}

void addRefresh(CLI::App& command, Options& options) {
  command.add_flag("--refresh", options.refresh, "Ask the server for the folders first");
}

void addFolders(CLI::App& command, Options& options) {
  command.add_option("FOLDER", options.folders, "Names, paths or ids of folders")->type_name("");
}

void addSync(CLI::App& command, Options& options) {
  addFolders(command, options);
  command.add_flag("--allow-deletes", options.allowDeletes, "Even when much of a folder is deleted by it");
}

void addParent(CLI::App& command, Options& options) {
  command.add_option("--parent", options.parent, "The folder to put it into; / is the top")
      ->type_name("FOLDER");
}

void addNewFolder(CLI::App& command, Options& options) {
  addText(command, "NAME", options.name, "What it is to be called");
  command.add_option("--type", options.type, "What it is for: contacts, calendar or mail (default)")
      ->check(CLI::IsMember({"contacts", "calendar", "mail"}))
      ->type_name("TYPE");
  addParent(command, options);
}

void addRenamedFolder(CLI::App& command, Options& options) {
  addFolder(command, options);
  addText(command, "NAME", options.name, "What it is to be called");
  addParent(command, options);
}

void addDeletedFolder(CLI::App& command, Options& options) {
  addFolder(command, options);
  command.add_flag("--force", options.force, "Even when local changes in it were not sent yet");
}

void addMessage(CLI::App& command, Options& options) {
  addText(command, "FILE", options.message, "Internet message, or - for standard input");
  command.add_flag("--no-copy", options.noCopy, "Keep no copy in Sent Items");
}

void addItemMessage(CLI::App& command, Options& options) {
  addItem(command, options);
  addMessage(command, options);
}

void addMove(CLI::App& command, Options& options) {
  addFolder(command, options);
  command.add_option("ID", options.items, "Numbers or server ids of the items")->required()->type_name("");
  command.add_option("--to", options.to, "The folder to move them to")->required()->type_name("FOLDER");
}

void addAnswer(CLI::App& command, Options& options) {
  addItem(command, options);
  command.add_option("ANSWER", options.answer, "accept, tentative or decline")
      ->required()
      ->check(CLI::IsMember({"accept", "tentative", "decline"}))
      ->type_name("");
}

void addDevice(CLI::App& command, Options& options) {
  NotifyOptions& notify = options.notify;
  addText(command, "ADDRESS", notify.address, "Where notifications go: an e-mail address or a number");
  command.add_option("--carrier", notify.carrier, "Carrier of a number, as notify carriers lists it")
      ->type_name("CARRIER");
  command.add_option("--name", notify.name, "What the device is called (default: airsync)")
      ->type_name("NAME");
}

void addNotifications(CLI::App& command, Options& options) {
  addDevice(command, options);
  constexpr std::uint32_t kLongest = std::numeric_limits<std::int32_t>::max();
  command.add_option("--lifetime", options.notify.lifetime, "For how long (default: 86400)")
      ->check(CLI::Range(std::uint32_t{1}, kLongest))
      ->type_name("SECONDS");
  addFolders(command, options);
}

void addPayload(CLI::App& command, Options& options) {
  addText(command, "GUID", options.notify.guid, "Which set-up the notification should be for");
  addText(command, "PAYLOAD", options.notify.payload,
          "The notification's base64 text, or - for standard input");
}

// Names of two words stand below a group.
struct CommandRow {
  Command command;
  const char* name;
  const char* help;
  void (*addArguments)(CLI::App&, Options&);
};

constexpr CommandRow kCommands[] = {
    {Command::folders, "folders", "List the folders of the account", addRefresh},
    {Command::sync, "sync", "Synchronise all folders, or those named", addSync},
    {Command::list, "list", "List the items of a folder", addFolder},
    {Command::show, "show", "Show one item", addItem},
    {Command::add, "add", "Add an item; the next sync sends it", addFolderRecord},
    {Command::change, "change", "Change fields of an item; the next sync sends them", addItemRecord},
    {Command::remove, "delete", "Delete an item; the next sync deletes it on the server", addItem},
    {Command::mark, "mark", "Mark a mail read or unread; the next sync tells the server", addMark},
    {Command::fetch, "fetch", "Get one item in full from the server now", addItem},
    {Command::attachment, "attachment", "Download an attachment of a mail", addAttachment},
    {Command::retry, "retry", "Send a change again that the server refused", addItem},
    {Command::discard, "discard", "Give up a local change and keep the server's version", addItem},
    {Command::trash, "trash", "List what the server deleted and what lost a conflict", addTrash},
    {Command::restore, "restore", "Put an item from the trash back; the next sync sends it", addRestore},
    {Command::status, "status", "Show what is synchronised, what waits and what failed", addNothing},
    {Command::options, "options", "Ask which protocol versions and commands the server knows", addNothing},
    {Command::hierarchy, "hierarchy", "Show the server's folders as they are now", addNothing},
    {Command::folderCreate, "folder create", "Make a folder", addNewFolder},
    {Command::folderRename, "folder rename", "Rename a folder, or move it into another", addRenamedFolder},
    {Command::folderDelete, "folder delete", "Delete a folder with all that is in it", addDeletedFolder},
    {Command::estimate, "estimate", "Ask how many changes wait on the server", addFolders},
    {Command::send, "send", "Send a message", addMessage},
    {Command::reply, "reply", "Send an answer; the server adds the mail that it answers", addItemMessage},
    {Command::forward, "forward", "Send a message with a mail that the server adds", addItemMessage},
    {Command::move, "move", "Move items to another folder, at once", addMove},
    {Command::respond, "respond", "Answer a meeting request", addAnswer},
    {Command::notifyEnable, "notify enable", "Ask to be notified of changes", addNotifications},
    {Command::notifyDisable, "notify disable", "Ask not to be notified any more", addNothing},
    {Command::notifyCarriers, "notify carriers", "List the carriers that the server knows", addNothing},
    {Command::notifyAddress, "notify address", "Register an address on its own", addDevice},
    {Command::notifyCheck, "notify check", "Check whether a notification is for this device", addPayload},
};

struct GroupRow {
  const char* name;
  const char* help;
};

constexpr GroupRow kGroups[] = {
    {"folder", "Make, rename or delete a folder on the server, at once"},
    {"notify", "Set up notifications of changes"},
};

void addCommonOptions(CLI::App& app, Options& options) {
  app.add_option("--config", options.configFile, "Read this configuration file")->type_name("FILE");
  app.add_option("--account", options.account, "Use only this account of the configuration")
      ->type_name("NAME");
  app.add_flag("--json", options.json, "Write results as JSON, for machines");
  app.add_flag("-q,--quiet", options.quiet, "Tell of errors only");
  app.add_flag("-v,--verbose", options.verbosity,
               "Tell what the library does; -vv in detail, -vvv with the contents of items");
  app.set_version_flag("--version", fmt::format("airsync {}", AIRSYNC_VERSION));
}

// The group of a command with two words, made with its first one.
CLI::App* groupOf(CLI::App& app, const std::string& name) {
  const auto made = app.get_subcommands([&name](CLI::App* group) { return group->get_name() == name; });
  if (!made.empty()) return made.front();
  const auto* row = std::find_if(std::begin(kGroups), std::end(kGroups),
                                 [&name](const GroupRow& entry) { return entry.name == name; });
  CLI::App* group = app.add_subcommand(name, row->help);
  group->require_subcommand(1);
  return group;
}

void addCommand(CLI::App& app, const CommandRow& row, Options& options) {
  const std::string name = row.name;
  const std::size_t space = name.find(' ');
  CLI::App* parent = space == std::string::npos ? &app : groupOf(app, name.substr(0, space));
  const std::string own = space == std::string::npos ? name : name.substr(space + 1);
  CLI::App* command = parent->add_subcommand(own, row.help);
  row.addArguments(*command, options);
  command->callback([&options, &row] { options.command = row.command; });
}

// The help of the command that was being parsed, not of the whole program.
std::string helpOf(const CLI::App& app) {
  const CLI::App* parsed = &app;
  std::string before;
  while (!parsed->get_subcommands().empty()) {
    before += (before.empty() ? "" : " ") + parsed->get_name();
    parsed = parsed->get_subcommands().front();
  }
  return parsed->help(before);
}

constexpr const char* kSeeManual =
    "See airsync(1) for the configuration, the exit codes and the shape of records.";

// CLI11 lists groups only; what they hold belongs into the program's help, too.
std::string footer() {
  std::string text = "Commands of the groups:\n";
  for (const CommandRow& row : kCommands) {
    constexpr int kColumns = 28;
    if (std::string_view(row.name).find(' ') == std::string_view::npos) continue;
    text += fmt::format("  {:<{}}{}\n", row.name, kColumns, row.help);
  }
  return text + "\n" + kSeeManual;
}

// What nobody expected, without the value of an option: it may be a password.
std::string describeUnknown(const std::string& argument, bool hasCommand) {
  if (argument.compare(0, 1, "-") != 0) {
    return hasCommand ? fmt::format("\"{}\" is one argument too many", displayable(argument))
                      : fmt::format("there is no command \"{}\"", displayable(argument));
  }
  const bool isLong = argument.compare(0, 2, "--") == 0;
  return fmt::format("there is no option {}",
                     displayable(argument.substr(0, isLong ? argument.find('=') : 2)));
}

std::string causeOf(const CLI::ParseError& error, const CLI::App& app) {
  const bool hasCommand = !app.get_subcommands().empty();
  const bool isUnknown =
      error.get_exit_code() == static_cast<int>(CLI::ExitCodes::ExtrasError) || !hasCommand;
  const std::vector<std::string> unknown = app.remaining(true);
  return isUnknown && !unknown.empty() ? describeUnknown(unknown.front(), hasCommand) : error.what();
}

}  // namespace

ParsedOptions parseOptions(const std::vector<std::string>& arguments) {
  ParsedOptions parsed;
  Options& options = parsed.options;
  CLI::App app("Synchronises contacts, calendars and mail with an AirSync server.", "airsync");
  app.require_subcommand(1);
  app.fallthrough();
  app.footer(kSeeManual);  // the commands take it over
  addCommonOptions(app, options);
  for (const CommandRow& row : kCommands) addCommand(app, row, options);
  app.footer(footer());
  std::vector<std::string> reversed(arguments.rbegin(), arguments.rend());  // the order that parse() wants
  try {
    app.parse(reversed);
  } catch (const CLI::CallForHelp&) {
    parsed.stop = true;
    parsed.text = helpOf(app);
  } catch (const CLI::CallForVersion& version) {
    parsed.stop = true;
    parsed.text = std::string(version.what()) + "\n";
  } catch (const CLI::ParseError& error) {
    throw ExitError(ExitCode::kUsage, causeOf(error, app), "See airsync --help.");
  }
  if (!parsed.stop && options.quiet && options.verbosity > 0) {
    throw ExitError(ExitCode::kUsage, "-q and -v exclude each other", "Leave one of them out.");
  }
  return parsed;
}

std::string nameOf(Command command) {
  const auto* row = std::find_if(std::begin(kCommands), std::end(kCommands),
                                 [command](const CommandRow& each) { return each.command == command; });
  return row == std::end(kCommands) ? "" : row->name;
}

std::vector<std::string> commandNames() {
  std::vector<std::string> names;
  for (const CommandRow& row : kCommands) names.emplace_back(row.name);
  return names;
}

}  // namespace airsync
