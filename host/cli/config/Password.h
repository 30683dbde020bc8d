// Getting an account's password, and keeping it out of everything else.
#ifndef AIRSYNC_CLI_CONFIG_PASSWORD_H
#define AIRSYNC_CLI_CONFIG_PASSWORD_H

#include <optional>
#include <string>

#include "cli/config/Config.h"

namespace airsync {

/// A password that is wiped from memory when it is no longer needed. It has no text form on purpose.
class Password {
 public:
  explicit Password(std::string text) : text_(std::move(text)) {}
  Password(Password&& other) noexcept;
  Password& operator=(Password&&) = delete;
  ~Password();

  const std::string& reveal() const { return text_; }

 private:
  std::string text_;
};

/// Takes AIRSYNC_PASSWORD out of the environment, so that no program started later inherits it, and wipes it
/// there.
std::optional<Password> takePasswordFromEnvironment();

/// The account's password: the first line of its file or of its command's output, else `environment`.
///
/// A file is refused when it belongs to somebody else or group or others may read it. A command gets no
/// standard input; what it writes to standard error is not shown. Where neither is configured and
/// `environment` is null, there is no password. `room` is the most bytes that a request has room for.
/// Throws ExitError: kConfiguration, kInterrupted.
Password passwordOf(const Account& account, const Password* environment);

}  // namespace airsync

#endif
