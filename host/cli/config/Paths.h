// Where configuration and state lie.
#ifndef AIRSYNC_CLI_CONFIG_PATHS_H
#define AIRSYNC_CLI_CONFIG_PATHS_H

#include <filesystem>
#include <string>

namespace airsync {

/// $XDG_CONFIG_HOME/airsync/config.toml, or ~/.config/airsync/config.toml where the variable is not set to
/// an absolute path. Throws ExitError(kConfiguration) when there is no home directory either.
std::filesystem::path configFile();

/// $XDG_STATE_HOME/airsync, or ~/.local/state/airsync. Made, with mode 0700, when it is missing, and
/// those above it.
/// Throws ExitError(kConfiguration) when it can't be made, or others than its owner may write into it.
std::filesystem::path stateDirectory();

/// The store of an account, and the file that keeps its device id.
std::filesystem::path storeFile(const std::filesystem::path& state, const std::string& account);
std::filesystem::path deviceIdFile(const std::filesystem::path& state, const std::string& account);

}  // namespace airsync

#endif
