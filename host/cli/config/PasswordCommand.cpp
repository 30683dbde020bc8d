#include "cli/config/PasswordCommand.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <fmt/core.h>
#include <spawn.h>
#include <string.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>

#include "cli/config/Descriptor.h"
#include "cli/session/Interrupt.h"

namespace airsync {

namespace {

constexpr std::size_t kMostOutput = 4096;

// The child's descriptors: output into the pipe, the rest nowhere.
class Redirection {
 public:
  explicit Redirection(int output) {
    ::posix_spawn_file_actions_init(&actions_);
    ::posix_spawn_file_actions_addopen(&actions_, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    ::posix_spawn_file_actions_adddup2(&actions_, output, STDOUT_FILENO);
    ::posix_spawn_file_actions_addopen(&actions_, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
  }
  ~Redirection() { ::posix_spawn_file_actions_destroy(&actions_); }
  Redirection(const Redirection&) = delete;
  Redirection& operator=(const Redirection&) = delete;

  const posix_spawn_file_actions_t* actions() const { return &actions_; }

 private:
  posix_spawn_file_actions_t actions_;
};

// airsync ignores these; the child should not.
class Attributes {
 public:
  Attributes() {
    sigset_t restored;
    ::sigemptyset(&restored);
    ::sigaddset(&restored, SIGPIPE);
    ::sigaddset(&restored, SIGXFSZ);
    ::posix_spawnattr_init(&attributes_);
    ::posix_spawnattr_setsigdefault(&attributes_, &restored);
    ::posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETSIGDEF);
  }
  ~Attributes() { ::posix_spawnattr_destroy(&attributes_); }
  Attributes(const Attributes&) = delete;
  Attributes& operator=(const Attributes&) = delete;

  const posix_spawnattr_t* get() const { return &attributes_; }

 private:
  posix_spawnattr_t attributes_;
};

// Returns 0 or an errno.
int start(const std::vector<std::string>& command, int output, pid_t& child) {
  std::vector<char*> arguments;
  arguments.reserve(command.size() + 1);
  for (const std::string& argument : command) arguments.push_back(const_cast<char*>(argument.c_str()));
  arguments.push_back(nullptr);
  const Redirection redirection(output);
  const Attributes attributes;
  return ::posix_spawnp(&child, arguments.front(), redirection.actions(), attributes.get(), arguments.data(),
                        environ);
}

// Reads to the end, so that the child is not stopped by a full pipe, and keeps the beginning.
void collect(int descriptor, pid_t child, CommandResult& result) {
  std::array<char, kMostOutput> buffer{};
  while (true) {
    const ssize_t count = ::read(descriptor, buffer.data(), buffer.size());
    if (count < 0 && errno == EINTR) {
      if (!Interrupt::requested()) continue;
      result.interrupted = true;
      ::kill(child, SIGTERM);
      break;
    }
    if (count <= 0) break;
    const std::size_t wanted = std::min(static_cast<std::size_t>(count), kMostOutput - result.output.size());
    result.output.append(buffer.data(), wanted);
  }
  ::explicit_bzero(buffer.data(), buffer.size());
}

std::string failureOf(int status) {
  if (WIFSIGNALED(status)) return fmt::format("the command was ended by signal {}", WTERMSIG(status));
  constexpr int kNotFound = 127;
  if (WEXITSTATUS(status) == kNotFound) return "the command was not found (status 127)";
  if (WEXITSTATUS(status) != 0) return fmt::format("the command ended with status {}", WEXITSTATUS(status));
  return {};
}

}  // namespace

CommandResult runPasswordCommand(const std::vector<std::string>& command) {
  CommandResult result;
  std::array<int, 2> ends{};
  if (::pipe2(ends.data(), O_CLOEXEC) != 0) {
    result.failure = std::generic_category().message(errno);
    return result;
  }
  Descriptor reading(ends[0]);
  Descriptor writing(ends[1]);
  pid_t child = 0;
  if (const int error = start(command, writing.number(), child)) {
    result.failure = fmt::format("the command can't be run: {}", std::generic_category().message(error));
    return result;
  }
  writing.close();
  collect(reading.number(), child, result);
  int status = 0;
  while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
  }
  if (Interrupt::requested()) result.interrupted = true;
  result.failure = failureOf(status);
  return result;
}

}  // namespace airsync
