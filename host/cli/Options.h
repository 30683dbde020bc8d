// The command line.
#ifndef AIRSYNC_CLI_OPTIONS_H
#define AIRSYNC_CLI_OPTIONS_H

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
  status,
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
  std::vector<std::string> folders;  // sync
  std::string folder;
  std::string item;
  std::string record;             // file name, or "-" for standard input
  bool read = false;              // mark; false: unread
  std::optional<int> attachment;  // its number
  std::string output;             // attachment: file name, or "-" for standard output; empty: its own
  bool force = false;             // replace what is there
};

struct ParsedOptions {
  Options options;
  bool stop = false;  // the text is all there is to do (--help, --version)
  std::string text;   // for standard output when `stop` is set
};

/// `arguments` without the program's name. Throws ExitError(kUsage).
ParsedOptions parseOptions(const std::vector<std::string>& arguments);

}  // namespace airsync

#endif
