// What ends a command, an account or a folder, with the exit code that it stands for.
#ifndef AIRSYNC_CLI_EXIT_ERROR_H
#define AIRSYNC_CLI_EXIT_ERROR_H

#include <string>
#include <utility>

#include "cli/ExitCode.h"
#include "support/Error.h"

namespace airsync {

/// Never holds a secret: whatever stands in its story may be shown.
class ExitError : public Error {
 public:
  ExitError(ExitCode code, ErrorStory story) : Error(std::move(story)), code_(code) {}

  /// For what has no subject but the command itself.
  ExitError(ExitCode code, std::string cause, std::string advice = {})
      : ExitError(code, storyOf(std::move(cause), std::move(advice))) {}

  ExitCode code() const { return code_; }

 private:
  static ErrorStory storyOf(std::string cause, std::string advice) {
    ErrorStory story;
    story.cause = std::move(cause);
    story.advice = std::move(advice);
    return story;
  }

  ExitCode code_;
};

/// The exit code of any error of the host.
ExitCode exitCodeOf(const Error& error);

}  // namespace airsync

#endif
