#include "cli/Options.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <fmt/core.h>

#include "cli/ExitError.h"
#include "cli/output/Displayable.h"

namespace airsync {

namespace {

// What a command takes on the command line, beside the options that all of them take.
enum class Takes { nothing, folders, folder, item, record, itemAndRecord };

struct CommandRow {
  Command command;
  const char* name;
  const char* help;
  Takes takes;
};

constexpr CommandRow kCommands[] = {
    {Command::folders, "folders", "List the folders of the account", Takes::nothing},
    {Command::sync, "sync", "Synchronise all folders, or those named", Takes::folders},
    {Command::list, "list", "List the items of a folder", Takes::folder},
    {Command::show, "show", "Show one item", Takes::item},
    {Command::add, "add", "Add an item; the next sync sends it", Takes::record},
    {Command::change, "change", "Change fields of an item; the next sync sends them", Takes::itemAndRecord},
    {Command::remove, "delete", "Delete an item; the next sync deletes it on the server", Takes::item},
    {Command::mark, "mark", "Mark a mail read or unread; the next sync tells the server", Takes::item},
    {Command::fetch, "fetch", "Get one item in full from the server now", Takes::item},
    {Command::attachment, "attachment", "Download an attachment of a mail", Takes::item},
    {Command::retry, "retry", "Send a change again that the server refused", Takes::item},
    {Command::discard, "discard", "Give up a local change and keep the server's version", Takes::item},
    {Command::status, "status", "Show what is synchronised, what waits and what failed", Takes::nothing},
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

void addArguments(CLI::App& command, Takes takes, Options& options) {
  const bool record = takes == Takes::record || takes == Takes::itemAndRecord;
  if (takes == Takes::folders) {
    command.add_option("FOLDER", options.folders, "Names, paths or ids of folders")->type_name("");
    return;
  }
  if (takes == Takes::nothing) return;
  command.add_option("FOLDER", options.folder, "Name, path or id of the folder")->required()->type_name("");
  if (takes == Takes::item || takes == Takes::itemAndRecord) {
    command.add_option("ID", options.item, "Number or server id of the item, as list shows it")
        ->required()
        ->type_name("");
  }
  if (record) {
    command.add_option("RECORD", options.record, "JSON file with the fields, or - for standard input")
        ->required()
        ->type_name("");
  }
}

// What single commands take beside their arguments.
void addOwnOptions(CLI::App& app, Command command, Options& options) {
  switch (command) {
    case Command::folders:
      app.add_flag("--refresh", options.refresh, "Ask the server for the folders first");
      break;
    case Command::mark: {
      auto* how = app.add_option_group("state", "What the mail becomes");
      how->add_flag("--read", options.read, "It has been read");
      how->add_flag_callback(
          "--unread", [&options] { options.read = false; }, "It has not been read");
      how->require_option(1);
      break;
    }
    case Command::attachment:
      app.add_option("N", options.attachment, "Number of the attachment, when the mail has several")
          ->type_name("");
      app.add_option("-o,--output", options.output, "Write to this file, or to standard output (-)")
          ->type_name("FILE");
      app.add_flag("--force", options.force, "Replace a file that is there");
      break;
    default:
      break;
  }
}

std::string helpOf(const CLI::App& app) {
  // The help of the command that was being parsed, not of the whole program.
  const auto parsed = app.get_subcommands();
  return parsed.empty() ? app.help() : parsed.front()->help(app.get_name());
}

}  // namespace

ParsedOptions parseOptions(const std::vector<std::string>& arguments) {
  ParsedOptions parsed;
  Options& options = parsed.options;
  CLI::App app("Synchronises contacts, calendars and mail with an AirSync server.", "airsync");
  app.require_subcommand(1);
  app.fallthrough();
  app.footer("See airsync(1) for the configuration, the exit codes and the shape of records.");
  addCommonOptions(app, options);
  for (const CommandRow& row : kCommands) {
    CLI::App* command = app.add_subcommand(row.name, row.help);
    addArguments(*command, row.takes, options);
    addOwnOptions(*command, row.command, options);
    command->callback([&options, &row] { options.command = row.command; });
  }
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
    const std::vector<std::string> unknown = app.remaining(true);
    const bool noCommand = app.get_subcommands().empty() && !unknown.empty();
    const std::string cause =
        noCommand ? fmt::format("there is no command \"{}\"", displayable(unknown.front())) : error.what();
    throw ExitError(ExitCode::kUsage, cause, "See airsync --help.");
  }
  if (!parsed.stop && options.quiet && options.verbosity > 0) {
    throw ExitError(ExitCode::kUsage, "-q and -v exclude each other", "Leave one of them out.");
  }
  return parsed;
}

}  // namespace airsync
