#include "converge/Disturbance.h"

#include <SQLiteCpp/SQLiteCpp.h>
#include <signal.h>
#include <stdexcept>
#include <stdlib.h>
#include <sys/mount.h>
#include <thread>

#include "store/RunLock.h"

namespace airsync::converge {

namespace {

using integration::Process;
using Milliseconds = std::chrono::milliseconds;

constexpr std::size_t kKibibyte = 1024;

Milliseconds momentIn(Milliseconds usual, Random& random) {
  return Milliseconds(random.below(static_cast<std::size_t>(usual.count()) + 1));
}

// Whether it still runs after this time.
bool runsFor(Process& process, Milliseconds time) {
  const auto end = std::chrono::steady_clock::now() + time;
  while (process.running() && std::chrono::steady_clock::now() < end) {
    std::this_thread::sleep_for(std::chrono::microseconds(500));
  }
  return process.running();
}

void kill(const Process& process, Disturbance kind) {
  if (kind == Disturbance::groupKilled) {
    ::kill(-process.pid(), SIGKILL);
  } else if (kind == Disturbance::parentKilled) {
    process.signal(SIGKILL);
  } else {
    for (const pid_t child : process.children()) ::kill(child, SIGKILL);
  }
}

Disturbed killSomething(Machine& machine, Disturbance kind, Milliseconds usual, Random& random) {
  const Milliseconds moment = momentIn(usual, random);
  const auto process = machine.start();
  Disturbed result;
  result.inTheMiddle = runsFor(*process, moment);
  if (result.inTheMiddle) kill(*process, kind);
  result.code = process->wait();
  return result;
}

Disturbed killServer(Machine& machine, Milliseconds usual, Random& random) {
  const Milliseconds moment = momentIn(usual, random);
  const Milliseconds pause(random.below(100));
  const auto process = machine.start();
  Disturbed result;
  result.inTheMiddle = runsFor(*process, moment);
  machine.server().kill();
  std::this_thread::sleep_for(pause);
  machine.restartServer();
  result.code = process->wait();
  return result;
}

std::size_t sizeOf(const std::filesystem::path& directory) {
  std::size_t size = 0;
  for (const auto& entry : std::filesystem::directory_iterator(directory)) size += entry.file_size();
  return size;
}

// A file system with just so much room, in place of the state's directory.
class SmallDisk {
 public:
  SmallDisk(const std::filesystem::path& directory, std::size_t room) : directory_(directory) {
    const std::filesystem::path aside = directory.string() + ".aside";
    std::filesystem::rename(directory, aside);
    std::filesystem::create_directory(directory);
    const std::size_t size = (sizeOf(aside) + room) / kKibibyte + 64;
    mount(MS_NOSUID, std::to_string(size) + "k");
    std::filesystem::copy(aside, directory);
    std::filesystem::remove_all(aside);
  }
  ~SmallDisk() {
    const std::filesystem::path aside = directory_.string() + ".aside";
    std::filesystem::copy(directory_, aside);
    ::umount(directory_.c_str());
    std::filesystem::remove(directory_);
    std::filesystem::rename(aside, directory_);
  }
  SmallDisk(const SmallDisk&) = delete;
  SmallDisk& operator=(const SmallDisk&) = delete;

 private:
  void mount(unsigned long flags, const std::string& size) const {
    const std::string options = "mode=0700,size=" + size;
    if (::mount("tmpfs", directory_.c_str(), "tmpfs", flags, options.c_str()) != 0) {
      throw std::runtime_error("mount failed");
    }
  }

  std::filesystem::path directory_;
};

Disturbed fillDisk(Machine& machine, Random& random) {
  Disturbed result;
  if (canMount()) {
    const SmallDisk disk(machine.state(), random.below(300 * kKibibyte));
    result.code = machine.start()->wait();
  } else {
    const auto store = static_cast<std::size_t>(std::filesystem::file_size(machine.storeFile()));
    const std::size_t largest = random.between(16 * kKibibyte, store + 100 * kKibibyte);
    result.code = machine.start(static_cast<long>(largest))->wait();
  }
  result.inTheMiddle = result.code != 0;
  return result;
}

// Another process works on the account for all of the run, or writes into its store for a part of it.
Disturbed lock(Machine& machine, Milliseconds usual, Random& random) {
  if (random.chance(25)) {
    const RunLock lock(machine.storeFile());
    return {machine.start()->wait(), true};
  }
  const Milliseconds before = momentIn(usual, random);
  const Milliseconds held = momentIn(usual, random);
  const auto process = machine.start();
  Disturbed result;
  result.inTheMiddle = runsFor(*process, before);
  {
    SQLite::Database store(machine.storeFile().string(), SQLite::OPEN_READWRITE, 10'000);
    SQLite::Transaction transaction(store, SQLite::TransactionBehavior::IMMEDIATE);
    std::this_thread::sleep_for(held);
  }
  result.code = process->wait();
  return result;
}

}  // namespace

bool canMount() {
  static const bool can = [] {
    std::string directory = (std::filesystem::temp_directory_path() / "airsync-mount-XXXXXX").string();
    if (::mkdtemp(directory.data()) == nullptr) return false;
    const bool mounted = ::mount("tmpfs", directory.c_str(), "tmpfs", MS_NOSUID, "size=64k") == 0;
    if (mounted) ::umount(directory.c_str());
    std::filesystem::remove(directory);
    return mounted;
  }();
  return can;
}

Disturbed disturb(Machine& machine, Disturbance kind, Milliseconds usual, Random& random) {
  switch (kind) {
    case Disturbance::serverKilled:
      return killServer(machine, usual, random);
    case Disturbance::diskFull:
      return fillDisk(machine, random);
    case Disturbance::locked:
      return lock(machine, usual, random);
    default:
      return killSomething(machine, kind, usual, random);
  }
}

}  // namespace airsync::converge
