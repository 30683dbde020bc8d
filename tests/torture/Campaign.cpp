#include "torture/Campaign.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

namespace torture {

namespace {

// The only assertions that a server can provoke; in anything else an assertion is a defect.
constexpr const char* kExpectedStops[] = {
    "Assertion `pSmlElement->NumberOfAttributes < 1' failed",  // a second attribute
    "Assertion `__null == &In' failed",                        // an attribute's value as an extension
};

bool IsExpectedStop(const std::string& errors) {
  for (const char* expected : kExpectedStops) {
    if (errors.find(expected) != std::string::npos) return true;
  }
  return false;
}

// What a child writes to its standard error, kept in an unnamed file.
class ErrorFile {
 public:
  ErrorFile() : file_(std::tmpfile()) {}
  ~ErrorFile() { std::fclose(file_); }
  ErrorFile(const ErrorFile&) = delete;
  ErrorFile& operator=(const ErrorFile&) = delete;

  int Descriptor() const { return ::fileno(file_); }

  std::string Text() const {
    std::string text;
    std::rewind(file_);
    char piece[4096];
    for (std::size_t n; (n = std::fread(piece, 1, sizeof piece, file_)) > 0;) text.append(piece, n);
    return text;
  }

 private:
  std::FILE* file_;
};

}  // namespace

// What a child tells before it may die.
struct Campaign::Shared {
  std::size_t next;      // the fault that is being tried
  std::size_t survived;  // since the child began
  bool failed;
  char problem[256];
};

bool Selection::Takes(const Fault& fault) const {
  if (!kind.empty() && kind != NameOf(fault.kind)) return false;
  if (at != 0 && at != fault.at) return false;
  return value.empty() || std::strtoul(value.c_str(), nullptr, 16) == fault.value;
}

Campaign::Campaign(const Scenario& scenario, const Selection& selection) : scenario_(scenario) {
  const Bench bench(scenario);
  events_ = bench.Counted().Total();
  problem_ = bench.Problem();
  std::size_t number = 0;
  for (const Fault& fault : bench.Faults()) {
    if (selection.Takes(fault) && number++ % selection.stride == 0) faults_.push_back(fault);
  }
}

void Campaign::Run() {
  if (!problem_.empty()) {
    failures_.push_back(scenario_.name + ": " + problem_);
    return;
  }
  void* const memory =
      ::mmap(nullptr, sizeof(Shared), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  Shared& shared = *static_cast<Shared*>(memory);
  for (std::size_t from = 0; from < faults_.size(); from = shared.next + 1) {
    const ErrorFile errors;
    shared = {};
    shared.next = from;
    std::fflush(stdout);
    const pid_t child = ::fork();
    if (child == 0) {
      ::dup2(errors.Descriptor(), STDERR_FILENO);
      RunChild(shared, from);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    Judge(shared, status, errors.Text());
  }
  ::munmap(memory, sizeof(Shared));
}

// The objects' memory is looked at when they are gone: by count, and by the leak checker at exit.
void Campaign::RunChild(Shared& shared, std::size_t from) const {
  ::alarm(600);
  std::string problem;
  {
    Bench bench(scenario_);
    for (shared.next = from; shared.next < faults_.size(); ++shared.next) {
      problem = bench.Try(faults_[shared.next]);
      if (problem.empty() && testing::UnitTest::GetInstance()->ad_hoc_test_result().Failed()) {
        problem = "a fake was used in a way that it must not be";
      }
      if (!problem.empty()) break;
      ++shared.survived;
    }
  }
  if (problem.empty() && airsync_test::FailingMemory::LiveBlocks() != 0) {
    problem = "blocks are left after Uninitialize";
    shared.next = faults_.size() - 1;
  }
  shared.failed = !problem.empty();
  std::strncpy(shared.problem, problem.c_str(), sizeof shared.problem - 1);
  std::exit(0);
}

void Campaign::Judge(const Shared& shared, int status, const std::string& errors) {
  survived_ += shared.survived;
  if (shared.failed) return Fail(shared.next, shared.problem);
  if (WIFEXITED(status) && WEXITSTATUS(status) == 0) return;
  const bool byAssertion = WIFSIGNALED(status) && WTERMSIG(status) == SIGABRT && IsExpectedStop(errors);
  if (byAssertion && shared.next < faults_.size() && faults_[shared.next].kind == FaultKind::byte) {
    ++stopped_;
    return;
  }
  Fail(shared.next, "the process died (status " + std::to_string(status) + "): " + errors);
}

void Campaign::Fail(std::size_t index, const std::string& problem) {
  const Fault& fault = faults_[index < faults_.size() ? index : faults_.size() - 1];
  char value[32] = "";
  if (fault.value != 0 || fault.kind == FaultKind::byte) {
    std::snprintf(value, sizeof value, " --value %x", fault.value);
  }
  failures_.push_back(problem + "\n    again: scripts/torture --scenario " + scenario_.name + " --fault " +
                      NameOf(fault.kind) + " --at " + std::to_string(fault.at) + value);
}

}  // namespace torture
