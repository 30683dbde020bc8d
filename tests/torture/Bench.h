// One scenario on one set of objects: undisturbed, and with a fault.
#ifndef TESTS_TORTURE_BENCH_H
#define TESTS_TORTURE_BENCH_H

#include <string>
#include <vector>

#include "torture/Fault.h"
#include "torture/Scenario.h"

namespace torture {

class Bench {
 public:
  /// Runs the scenario once, undisturbed; Problem() tells when that alone went wrong.
  explicit Bench(const Scenario& scenario);

  const Events& Counted() const { return events_; }
  const std::string& Problem() const { return problem_; }

  /// Every fault that this scenario can meet.
  std::vector<Fault> Faults() const;

  /// Runs the scenario with the fault, and then undisturbed on the same objects. Returns what is wrong with
  /// the result of either, with what is left in memory, or with what the second run told transport and
  /// storage; empty when nothing is.
  std::string Try(const Fault& fault);

 private:
  void Prepare();
  void Inject(const Fault& fault, std::vector<std::string>& answers);
  void Release(AIRSYNC_STACK::SYNC_RESULT result);
  std::string Trace() const;
  std::string CheckResult(const Fault& fault, AIRSYNC_STACK::SYNC_RESULT result);
  std::string CheckMemory(const char* when) const;
  std::string TakeLateCancel();
  std::string RunUndisturbed();
  AIRSYNC_STACK::SYNC_RESULT RunFromTheStart(std::size_t failingNew, std::size_t& count);
  std::string TryObject(std::size_t k);

  const Scenario& scenario_;
  airsync_test::ApiSession session_;
  std::string undisturbed_;
  Events events_;
  std::string problem_;
};

}  // namespace torture

#endif
