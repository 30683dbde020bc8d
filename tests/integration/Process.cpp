#include "integration/Process.h"

#include <atomic>
#include <fcntl.h>
#include <fstream>
#include <iterator>
#include <signal.h>
#include <sstream>
#include <stdexcept>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace airsync::integration {

namespace {

std::vector<char*> pointers(std::vector<std::string>& texts) {
  std::vector<char*> result;
  for (std::string& text : texts) result.push_back(text.data());
  result.push_back(nullptr);
  return result;
}

void redirect(const std::string& file, int flags, int descriptor) {
  const int opened = ::open(file.c_str(), flags, 0600);
  if (opened < 0 || ::dup2(opened, descriptor) < 0) ::_exit(126);
  ::close(opened);
}

// As after a login, whatever the tests were started from: a shell ignores SIGINT in what it runs in the
// background.
void resetSignals() {
  for (int number = 1; number < NSIG; ++number) ::signal(number, SIG_DFL);
  sigset_t none;
  ::sigemptyset(&none);
  if (::sigprocmask(SIG_SETMASK, &none, nullptr) != 0) ::_exit(126);
}

// Whether a write beyond it fails or ends the process is for the program to choose.
void limitFiles(long bytes) {
  const auto limit = static_cast<rlim_t>(bytes);
  const rlimit both = {limit, limit};
  if (::setrlimit(RLIMIT_FSIZE, &both) != 0) ::_exit(126);
}

int statusOf(int status) { return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status); }

}  // namespace

Process::Process(const Start& start) {
  static std::atomic<int> counter{0};
  prefix_ = (start.directory / ("process-" + std::to_string(++counter))).string();
  writeFile(prefix_ + ".in", start.input);
  std::vector<std::string> command = start.command;
  std::vector<std::string> environment;
  for (const auto& [name, value] : start.environment) environment.push_back(name + "=" + value);
  const std::vector<char*> argv = pointers(command);
  const std::vector<char*> envp = pointers(environment);
  const std::string in = prefix_ + ".in";
  const std::string out = prefix_ + ".out";
  const std::string err = prefix_ + ".err";
  pid_ = ::fork();
  if (pid_ < 0) throw std::runtime_error("fork failed");
  if (pid_ == 0) {
    redirect(in, O_RDONLY, STDIN_FILENO);
    redirect(out, O_WRONLY | O_CREAT | O_TRUNC, STDOUT_FILENO);
    redirect(err, O_WRONLY | O_CREAT | O_TRUNC, STDERR_FILENO);
    resetSignals();
    ::umask(start.umask);
    if (!start.work.empty() && ::chdir(start.work.c_str()) != 0) ::_exit(126);
    if (start.ownGroup && ::setpgid(0, 0) != 0) ::_exit(126);
    if (start.largestFile > 0) limitFiles(start.largestFile);
    if (start.user != 0 && (::setgid(start.user) != 0 || ::setuid(start.user) != 0)) ::_exit(126);
    ::execve(argv.front(), argv.data(), envp.data());
    ::_exit(127);
  }
}

Process::~Process() {
  if (ended_) return;
  ::kill(pid_, SIGKILL);
  wait();
}

void Process::signal(int number) const {
  if (!ended_) ::kill(pid_, number);
}

std::vector<pid_t> Process::children() const {
  const std::string own = std::to_string(pid_);
  std::istringstream list(readFile("/proc/" + own + "/task/" + own + "/children"));
  return {std::istream_iterator<pid_t>(list), {}};
}

int Process::wait() {
  struct rusage usage {};
  if (!ended_ && ::wait4(pid_, &status_, 0, &usage) == pid_) {
    ended_ = true;
    peak_ = usage.ru_maxrss;
  }
  return statusOf(status_);
}

bool Process::running() {
  if (!ended_ && ::waitpid(pid_, &status_, WNOHANG) == pid_) ended_ = true;
  return !ended_;
}

std::string Process::output() const { return readFile(prefix_ + ".out"); }
std::string Process::errors() const { return readFile(prefix_ + ".err"); }

std::string readFile(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

void writeFile(const std::filesystem::path& file, const std::string& text) {
  std::ofstream(file, std::ios::binary) << text;
}

}  // namespace airsync::integration
