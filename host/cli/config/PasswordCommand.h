// Running the program that prints a password.
#ifndef AIRSYNC_CLI_CONFIG_PASSWORD_COMMAND_H
#define AIRSYNC_CLI_CONFIG_PASSWORD_COMMAND_H

#include <string>
#include <vector>

namespace airsync {

struct CommandResult {
  std::string output;   // at most 4 KiB of what it printed
  std::string failure;  // why the output does not count; empty: it does
  bool interrupted = false;
};

/// Runs program and arguments (the program is searched along PATH), without input and without its error
/// output, and waits for its end.
CommandResult runPasswordCommand(const std::vector<std::string>& command);

}  // namespace airsync

#endif
