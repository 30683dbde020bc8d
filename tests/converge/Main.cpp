// converge [--only RUN] [RUNS [SEED]]: disturbs synchronisations in every way, and tells whether the next
// clean one makes both sides equal. See scripts/converge.
//
// Each run begins with the same account, synchronised; both sides are changed, airsync is started and
// disturbed, once or several times in a row; then it runs undisturbed, and the two sides are compared, with
// each other and with what the changes amount to.
#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <optional>
#include <string>
#include <vector>

#include "converge/Disturbance.h"
#include "converge/Machine.h"
#include "converge/Model.h"
#include "converge/Random.h"

namespace {

using namespace airsync::converge;
using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::milliseconds;

constexpr std::size_t kMostAttempts = 3;

struct Counts {
  std::size_t runs = 0;
  std::size_t diverged = 0;
  std::size_t attempts = 0;
  std::size_t inTheMiddle = 0;
  std::size_t unanswered = 0;  // attempts that left a request without its answer
};

struct Settings {
  std::size_t first = 1;
  std::size_t last = 500;
  std::uint64_t seed = 1;
};

Milliseconds since(Clock::time_point begin) {
  return std::chrono::duration_cast<Milliseconds>(Clock::now() - begin);
}

class Directory {
 public:
  Directory() {
    std::string name = (std::filesystem::temp_directory_path() / "airsync-converge-XXXXXX").string();
    if (::mkdtemp(name.data()) == nullptr) throw std::runtime_error("mkdtemp failed");
    path_ = name;
  }
  ~Directory() { std::filesystem::remove_all(path_); }
  Directory(const Directory&) = delete;
  Directory& operator=(const Directory&) = delete;

  const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
};

bool answerIsDue(const Machine& machine) {
  const airsync::Store store(machine.storeFile());
  const auto folders = store.folders();
  return std::any_of(folders.begin(), folders.end(),
                     [&store](const airsync::Folder& folder) { return store.repetitionDue(folder.number); });
}

// How long a run takes that has as much to do as the disturbed ones.
Milliseconds measure(const std::filesystem::path& account, const std::filesystem::path& directory) {
  std::filesystem::copy(account, directory, std::filesystem::copy_options::recursive);
  Random random(0, 0);
  Machine machine(directory);
  Model model(machine, random);
  model.changeThere();
  model.changeHere();
  const auto begin = Clock::now();
  machine.sync();
  return since(begin);
}

// Returns what is wrong in the end.
std::vector<std::string> runOnce(Machine& machine, Random& random, Disturbance kind, Milliseconds usual,
                                 Counts& counts) {
  Model model(machine, random);
  for (std::size_t attempts = random.between(1, kMostAttempts); attempts > 0; --attempts) {
    model.changeThere();
    model.changeHere();
    const Disturbed disturbed = disturb(machine, kind, usual, random);
    ++counts.attempts;
    if (disturbed.inTheMiddle) ++counts.inTheMiddle;
    if (answerIsDue(machine)) ++counts.unanswered;
  }
  machine.sync();
  return model.complaints();
}

bool tell(std::size_t number, const Settings& settings, const std::vector<std::string>& complaints,
          const char* what) {
  if (complaints.empty()) return true;
  std::cout << "run " << number << " (" << what << ") diverged:\n";
  for (const std::string& complaint : complaints) std::cout << "  " << complaint << '\n';
  std::cout << "  again: scripts/converge --only " << number << ' ' << settings.last << ' ' << settings.seed
            << std::endl;
  return false;
}

std::array<Counts, kDisturbances.size()> runAll(const Settings& settings) {
  const Directory directory;
  const std::filesystem::path account = directory.path() / "account";
  std::filesystem::create_directory(account);
  {
    Random random(settings.seed, 0);
    Machine machine(account);
    fill(machine, random);
    machine.sync();
    machine.server().stop();
  }
  constexpr std::size_t kBetweenMeasurements = 20;
  Milliseconds usual(0);
  std::array<Counts, kDisturbances.size()> counts{};
  for (std::size_t number = settings.first; number <= settings.last; ++number) {
    if ((number - settings.first) % kBetweenMeasurements == 0) {
      usual = measure(account, directory.path() / "measured");
      std::filesystem::remove_all(directory.path() / "measured");
    }
    const DisturbanceRow& row = kDisturbances[number % kDisturbances.size()];
    Counts& count = counts[number % kDisturbances.size()];
    const std::filesystem::path place = directory.path() / "run";
    std::filesystem::copy(account, place, std::filesystem::copy_options::recursive);
    Random random(settings.seed, number);
    std::vector<std::string> complaints;
    try {
      Machine machine(place);
      complaints = runOnce(machine, random, row.kind, usual, count);
    } catch (const std::exception& error) {
      complaints = {error.what()};
    }
    ++count.runs;
    if (!tell(number, settings, complaints, row.name)) ++count.diverged;
    std::filesystem::remove_all(place);
  }
  return counts;
}

std::optional<Settings> parse(std::vector<std::string> arguments) try {
  Settings settings;
  std::optional<std::size_t> only;
  if (arguments.size() >= 2 && arguments[0] == "--only") {
    only = std::stoul(arguments[1]);
    arguments.erase(arguments.begin(), arguments.begin() + 2);
  }
  if (arguments.size() > 2) return std::nullopt;
  if (!arguments.empty()) settings.last = std::stoul(arguments[0]);
  if (arguments.size() == 2) settings.seed = std::stoull(arguments[1]);
  if (only) settings.first = settings.last = *only;
  return settings;
} catch (const std::exception&) {
  return std::nullopt;
}

}  // namespace

int main(int argc, char** argv) {
  const auto settings = parse({argv + 1, argv + argc});
  if (!settings) {
    std::cerr << "usage: converge [--only RUN] [RUNS [SEED]]\n";
    return 2;
  }
  std::cout << "seed " << settings->seed << ", runs " << settings->first << " to " << settings->last
            << "; a full disk is " << (canMount() ? "a small file system" : "a limit on the size of files")
            << std::endl;
  const auto begin = Clock::now();
  const auto counts = runAll(*settings);
  Counts sum;
  for (std::size_t i = 0; i < counts.size(); ++i) {
    const Counts& each = counts[i];
    std::printf(
        "%-26s %4zu runs, %4zu disturbances, %4zu of them in the middle, %4zu left a request unanswered, %zu "
        "diverged\n",
        kDisturbances[i].name, each.runs, each.attempts, each.inTheMiddle, each.unanswered, each.diverged);
    sum.runs += each.runs;
    sum.diverged += each.diverged;
  }
  std::printf("%zu runs in %.0f s: %zu converged, %zu diverged\n", sum.runs,
              static_cast<double>(since(begin).count()) / 1000.0, sum.runs - sum.diverged, sum.diverged);
  return sum.diverged == 0 ? 0 : 1;
}
