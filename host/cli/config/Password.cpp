#include "cli/config/Password.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <fmt/core.h>
#include <string.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

#include "api/Records.h"
#include "cli/ExitError.h"
#include "cli/config/Descriptor.h"
#include "cli/config/PasswordCommand.h"

namespace airsync {

namespace {

constexpr std::size_t kLongest = sizeof(AIRSYNC_STACK::SERVER_INFO::password) - 1;

[[noreturn]] void fail(const Account& account, const std::string& source, const std::string& cause,
                       const std::string& advice = {}) {
  ErrorStory story;
  story.operation = fmt::format("getting the password of account {}", account.name);
  story.subject = "from " + source;
  story.cause = cause;
  story.advice = advice;
  throw ExitError(ExitCode::kConfiguration, std::move(story));
}

// What follows the first line is not ours (some password managers keep notes there).
Password checked(const Account& account, const std::string& source, std::string text) {
  const std::size_t end = text.find('\n');
  if (end != std::string::npos) {
    ::explicit_bzero(&text[end], text.size() - end);
    text.resize(end);
  }
  if (!text.empty() && text.back() == '\r') text.pop_back();
  Password password(std::move(text));
  const std::string& line = password.reveal();
  if (line.empty()) fail(account, source, "its first line is empty");
  if (line.size() > kLongest) fail(account, source, fmt::format("it is longer than {} bytes", kLongest));
  const bool control = std::any_of(line.begin(), line.end(),
                                   [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7f; });
  if (control) fail(account, source, "it holds control characters");
  return password;
}

std::string readFile(const Account& account, const std::string& file) {
  const Descriptor descriptor(::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  struct stat status {};
  if (!descriptor.valid() || ::fstat(descriptor.number(), &status) != 0) {
    fail(account, file, std::generic_category().message(errno), "Correct `password_file`, or make the file.");
  }
  if (!S_ISREG(status.st_mode)) fail(account, file, "it is no ordinary file");
  if (status.st_uid != ::geteuid() && status.st_uid != 0) fail(account, file, "it belongs to somebody else");
  if ((status.st_mode & (S_IRWXG | S_IRWXO)) != 0) {
    fail(account, file, "others than you may read or write it", fmt::format("Run chmod 600 {}.", file));
  }
  // One byte more than fits, and room for a line end: a longer line shows as too long.
  std::array<char, kLongest + 3> buffer{};
  const ssize_t count = ::read(descriptor.number(), buffer.data(), buffer.size());
  if (count < 0) fail(account, file, std::generic_category().message(errno));
  std::string text(buffer.data(), static_cast<std::size_t>(count));
  ::explicit_bzero(buffer.data(), buffer.size());
  return text;
}

}  // namespace

// Moved-from texts may keep their bytes in the object itself: it is copied, and wiped there.
// NOLINTNEXTLINE(cert-oop11-cpp,performance-move-constructor-init)
Password::Password(Password&& other) noexcept : text_(other.text_) {
  ::explicit_bzero(other.text_.data(), other.text_.size());
  other.text_.clear();
}

Password::~Password() { ::explicit_bzero(text_.data(), text_.size()); }

std::optional<Password> takePasswordFromEnvironment() {
  char* value = std::getenv("AIRSYNC_PASSWORD");
  if (value == nullptr) return std::nullopt;
  Password password{std::string(value)};
  ::explicit_bzero(value, std::strlen(value));  // /proc shows the environment with which we were started
  ::unsetenv("AIRSYNC_PASSWORD");               // NOLINT(concurrency-mt-unsafe): there is no other thread yet
  return password;
}

Password passwordOf(const Account& account, const Password* environment) {
  if (!account.password.file.empty()) {
    return checked(account, account.password.file, readFile(account, account.password.file));
  }
  if (!account.password.command.empty()) {
    const CommandResult result = runPasswordCommand(account.password.command);
    if (result.interrupted)
      throw ExitError(ExitCode::kInterrupted, "interrupted while the password was fetched");
    if (!result.failure.empty()) {
      fail(account, "`password_command`", result.failure, "Run the command by hand to see what it says.");
    }
    return checked(account, "`password_command`", result.output);
  }
  if (environment != nullptr) return checked(account, "AIRSYNC_PASSWORD", environment->reveal());
  fail(account, "anywhere", "there is neither `password_command` nor `password_file`",
       "Add one of them, or set the environment variable AIRSYNC_PASSWORD and choose one account.");
}

}  // namespace airsync
