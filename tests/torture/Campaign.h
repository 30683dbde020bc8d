// All faults of one scenario, in child processes, so that an assertion ends a child only.
#ifndef TESTS_TORTURE_CAMPAIGN_H
#define TESTS_TORTURE_CAMPAIGN_H

#include <optional>
#include <string>
#include <vector>

#include "torture/Bench.h"

namespace torture {

/// Which faults are tried.
struct Selection {
  std::string kind;        // empty: all
  std::size_t at = 0;      // 0: everywhere
  std::string value;       // in hexadecimal; empty: all
  std::size_t stride = 1;  // every n-th of those

  bool Takes(const Fault& fault) const;
};

class Campaign {
 public:
  Campaign(const Scenario& scenario, const Selection& selection);

  void Run();

  std::size_t Events() const { return events_; }
  std::size_t Faults() const { return faults_.size(); }
  /// Faults after which everything was as it must be.
  std::size_t Survived() const { return survived_; }
  /// Changed bytes that met one of the library's assertions, which stop the process.
  std::size_t Stopped() const { return stopped_; }
  /// What is wrong, each with the command line that repeats it.
  const std::vector<std::string>& Failures() const { return failures_; }

 private:
  struct Shared;

  [[noreturn]] void RunChild(Shared& shared, std::size_t from) const;
  void Judge(const Shared& shared, int status, const std::string& errors);
  void Fail(std::size_t index, const std::string& problem);

  const Scenario& scenario_;
  std::vector<Fault> faults_;
  std::size_t events_ = 0;
  std::size_t survived_ = 0;
  std::size_t stopped_ = 0;
  std::string problem_;
  std::vector<std::string> failures_;
};

}  // namespace torture

#endif
