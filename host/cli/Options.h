// The command line.
#ifndef AIRSYNC_CLI_OPTIONS_H
#define AIRSYNC_CLI_OPTIONS_H

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace airsync {

enum class Command {
  folders,
  sync,
  list,
  show,
  add,
  change,
  remove,
  mark,
  fetch,
  attachment,
  retry,
  discard,
  trash,
  restore,
  status,
  options,
  hierarchy,
  folderCreate,
  folderRename,
  folderDelete,
  estimate,
  send,
  reply,
  forward,
  move,
  respond,
  notifyEnable,
  notifyDisable,
  notifyCarriers,
  notifyAddress,
  notifyCheck,
};

// How the server reaches the device with notifications.
struct NotifyOptions {
  static constexpr std::uint32_t kDay = 86'400;

  std::string address;
  std::string carrier;  // empty: none
  std::string name = "airsync";
  std::uint32_t lifetime = kDay;  // seconds, at least 1
  std::string guid;
  std::string payload;  // or "-" for standard input
};

struct Options {
  Command command = Command::status;

  // For every command.
  std::string configFile;  // empty: the usual one
  std::string account;     // empty: none chosen
  bool json = false;
  bool quiet = false;
  int verbosity = 0;  // how often -v was given

  // What the command is about.
  bool refresh = false;              // folders
  bool allowDeletes = false;         // sync
  std::vector<std::string> folders;  // sync, estimate, notify enable
  std::string folder;
  std::string item;
  std::string record;             // file name, or "-" for standard input
  bool read = false;              // mark; false: unread
  std::optional<int> attachment;  // its number
  std::string output;             // attachment: file name, or "-" for standard output; empty: its own
  bool force = false;             // replace what is there, delete what was not sent

  // Folders on the server.
  std::string name;                   // of a folder that is made or renamed
  std::string type = "mail";          // contacts, calendar or mail
  std::optional<std::string> parent;  // a folder, or "/" for the top

  // Messages and mails.
  std::string message;  // file name, or "-" for standard input
  bool noCopy = false;
  std::vector<std::string> items;  // move
  std::string to;                  // move
  std::string answer;              // respond: accept, tentative or decline

  NotifyOptions notify;
};

struct ParsedOptions {
  Options options;
  bool stop = false;  // the text is all there is to do (--help, --version)
  std::string text;   // for standard output when `stop` is set
};

/// `arguments` without the program's name. Throws ExitError(kUsage).
ParsedOptions parseOptions(const std::vector<std::string>& arguments);

/// The names of all commands, in the order of the help: "sync", "folder create".
std::vector<std::string> commandNames();

/// As one types it: "folder create".
std::string nameOf(Command command);

}  // namespace airsync

#endif
