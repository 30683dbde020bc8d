#include "cli/config/Paths.h"

#include <cerrno>
#include <cstdlib>
#include <fmt/core.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

#include "cli/ExitError.h"
#include "store/StoreFile.h"

namespace airsync {

namespace {

namespace fs = std::filesystem;

// Relative paths in these variables count as not set.
fs::path baseDirectory(const char* variable, const char* below) {
  const char* value = std::getenv(variable);
  if (value != nullptr && value[0] == '/') return value;
  const char* home = std::getenv("HOME");
  if (home != nullptr && home[0] == '/') return fs::path(home) / below;
  throw ExitError(ExitCode::kConfiguration, fmt::format("neither {} nor HOME names a directory", variable),
                  "Set HOME.");
}

[[noreturn]] void failAbout(const fs::path& directory, const std::string& cause, const std::string& advice) {
  ErrorStory story;
  story.operation = "preparing the state directory";
  story.subject = directory.string();
  story.cause = cause;
  story.advice = advice;
  throw ExitError(ExitCode::kConfiguration, std::move(story));
}

}  // namespace

fs::path configFile() { return baseDirectory("XDG_CONFIG_HOME", ".config") / "airsync" / "config.toml"; }

fs::path stateDirectory() {
  fs::path directory = baseDirectory("XDG_STATE_HOME", ".local/state") / "airsync";
  try {
    makePrivateDirectory(directory);
  } catch (const Error& error) {
    failAbout(error.story().subject, error.story().cause, "Make the directory, or correct XDG_STATE_HOME.");
  }
  struct stat status {};
  if (::stat(directory.c_str(), &status) != 0) {
    failAbout(directory, std::generic_category().message(errno), "Run airsync again.");
  }
  if (status.st_uid != ::geteuid() || (status.st_mode & (S_IWGRP | S_IWOTH)) != 0) {
    failAbout(directory, "others may write into it", fmt::format("Run chmod 700 {}.", directory.string()));
  }
  return directory;
}

fs::path storeFile(const fs::path& state, const std::string& account) { return state / (account + ".db"); }

fs::path deviceIdFile(const fs::path& state, const std::string& account) {
  return state / (account + ".device-id");
}

}  // namespace airsync
