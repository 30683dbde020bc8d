#include "cli/process/Child.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <fmt/core.h>
#include <new>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>

#include "cli/ExitError.h"
#include "cli/TellErrors.h"
#include "cli/config/Descriptor.h"
#include "cli/process/Assertion.h"
#include "cli/session/Interrupt.h"

namespace airsync {

namespace {

[[noreturn]] void failToStart(int error) {
  throw ExitError(ExitCode::kInternal, {.operation = "starting a process",
                                        .subject = "for the account",
                                        .cause = std::generic_category().message(error),
                                        .advice = "End other programs, then try again; nothing was done."});
}

// Memory that both processes see.
class SharedRecord {
 public:
  SharedRecord()
      : memory_(::mmap(nullptr, sizeof(FlightRecord), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1,
                       0)) {
    if (memory_ == MAP_FAILED) failToStart(errno);
    record_ = new (memory_) FlightRecord();
  }
  ~SharedRecord() { ::munmap(memory_, sizeof(FlightRecord)); }
  SharedRecord(const SharedRecord&) = delete;
  SharedRecord& operator=(const SharedRecord&) = delete;

  FlightRecord& record() { return *record_; }

 private:
  void* memory_;
  FlightRecord* record_;
};

struct Pipe {
  Pipe() {
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0) failToStart(errno);
    reading = Descriptor(ends[0]);
    writing = Descriptor(ends[1]);
  }

  Descriptor reading;
  Descriptor writing;
};

[[noreturn]] void beChild(Output& output, FlightRecord& flight, int pipe, pid_t parent,
                          const ChildWork& work) {
  // The parent may have died before it could have been noticed.
  if (::prctl(PR_SET_PDEATHSIG, SIGKILL) != 0 || ::getppid() != parent) {
    ::_exit(static_cast<int>(ExitCode::kInterrupted));
  }
  recordAssertions(flight);
  Child child(flight, pipe);
  const ExitCode code = tellErrors(output, [&] { return work(child); });
  std::exit(static_cast<int>(code));  // NOLINT(concurrency-mt-unsafe): there is no other thread
}

// All that arrives until the child, the only one to hold the other end, is gone.
std::string readAll(int descriptor) {
  std::string text;
  std::array<char, 4096> buffer{};
  while (true) {
    const ssize_t count = ::read(descriptor, buffer.data(), buffer.size());
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return text;
    text.append(buffer.data(), static_cast<std::size_t>(count));
  }
}

// One message per line; a last one that was not completed counts as not sent.
std::vector<nlohmann::ordered_json> messagesIn(std::string_view text) {
  std::vector<nlohmann::ordered_json> messages;
  for (std::size_t end = text.find('\n'); end != std::string_view::npos; end = text.find('\n')) {
    auto message = nlohmann::ordered_json::parse(text.substr(0, end), nullptr, false);
    if (!message.is_discarded()) messages.push_back(std::move(message));
    text.remove_prefix(end + 1);
  }
  return messages;
}

int awaitEnd(pid_t child) {
  siginfo_t info{};
  while (::waitid(P_PID, static_cast<id_t>(child), &info, WEXITED | WNOWAIT) != 0 && errno == EINTR) {
  }
  // From the next call on its number may be another process's.
  Interrupt::forgetChild();
  int status = 0;
  while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
  }
  return status;
}

}  // namespace

void Child::report(const nlohmann::ordered_json& message) const {
  const std::string line =
      message.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + "\n";
  for (std::size_t sent = 0; sent < line.size();) {
    const ssize_t count = ::write(pipe_, line.data() + sent, line.size() - sent);
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return;  // the parent is gone, and this process with it
    sent += static_cast<std::size_t>(count);
  }
}

ChildEnd runInChild(Output& output, const ChildWork& work) {
  SharedRecord shared;
  Pipe pipe;
  output.flush();
  const pid_t parent = ::getpid();
  pid_t child = -1;
  int error = 0;
  {
    // A signal in between would ask one of the two only.
    const Interrupt::Hold hold;
    child = ::fork();
    error = errno;
    if (child > 0) Interrupt::passOnTo(child);
    if (child == 0) Interrupt::becomeChildOf(parent);
  }
  if (child == 0) beChild(output, shared.record(), pipe.writing.number(), parent, work);
  if (child < 0) failToStart(error);
  pipe.writing.close();
  const std::string text = readAll(pipe.reading.number());
  const int status = awaitEnd(child);

  ChildEnd end;
  end.messages = messagesIn(text);
  if (WIFSIGNALED(status)) {
    output.takeOverTerminal();
    end.death = Death{WTERMSIG(status), shared.record()};
  } else {
    end.code = describe(static_cast<ExitCode>(WEXITSTATUS(status))).code;
  }
  return end;
}

void protectMemory() {
  constexpr rlimit kNone = {0, 0};
  ::setrlimit(RLIMIT_CORE, &kNone);
  // The limit alone does not hold where dumps are piped into a program.
  ::prctl(PR_SET_DUMPABLE, 0);
}

}  // namespace airsync
