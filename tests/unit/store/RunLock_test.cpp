#include "store/RunLock.h"

#include <chrono>
#include <optional>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include "StoreFixture.h"

namespace airsync::test {
namespace {

TEST(RunLock, ExcludesASecondOne) {
  const Directory directory;
  const RunLock lock(directory.path() / "a.db");
  EXPECT_THROW(RunLock(directory.path() / "a.db"), LockedError);
}

TEST(RunLock, LetsOtherAccountsRun) {
  const Directory directory;
  const RunLock lock(directory.path() / "a.db");
  EXPECT_NO_THROW(RunLock(directory.path() / "b.db"));
}

TEST(RunLock, IsFreeAfterItsEnd) {
  const Directory directory;
  { const RunLock lock(directory.path() / "a.db"); }
  EXPECT_NO_THROW(RunLock(directory.path() / "a.db"));
}

TEST(RunLock, EndsWithItsProcess) {
  const Directory directory;
  const pid_t child = ::fork();
  if (child == 0) {
    new RunLock(directory.path() / "a.db");
    ::_exit(0);
  }
  int status = -1;
  ASSERT_EQ(::waitpid(child, &status, 0), child);
  ASSERT_EQ(status, 0);
  EXPECT_NO_THROW(RunLock(directory.path() / "a.db"));
}

TEST(RunLock, FollowsNoLink) {
  const Directory directory;
  std::filesystem::create_symlink(directory.path() / "victim", directory.path() / "a.db.lock");
  try {
    const RunLock lock(directory.path() / "a.db");
    FAIL() << "the link was followed";
  } catch (const Error& error) {
    EXPECT_EQ(error.story().cause, "it is a symbolic link, and these are not followed");
  }
  EXPECT_FALSE(std::filesystem::exists(directory.path() / "victim"));
}

TEST(RunLock, WaitsForOneThatEndsInTime) {
  const Directory directory;
  std::optional<RunLock> lock(std::in_place, directory.path() / "a.db");
  std::thread other([&] {
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    lock.reset();
  });
  EXPECT_NO_THROW(RunLock(directory.path() / "a.db", std::chrono::minutes(1)));
  other.join();
}

TEST(RunLock, WaitsNoLongerThanItIsTold) {
  const Directory directory;
  const RunLock lock(directory.path() / "a.db");
  const auto begin = std::chrono::steady_clock::now();
  EXPECT_THROW(RunLock(directory.path() / "a.db", std::chrono::milliseconds(50)), LockedError);
  EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(50));
}

TEST(RunLock, MakesADirectoryAndAFileForTheOwnerAlone) {
  const Directory directory;
  const RunLock lock(directory.path() / "state" / "a.db");
  struct stat status = {};
  ASSERT_EQ(::stat((directory.path() / "state").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777, 0700U);
  ASSERT_EQ(::stat((directory.path() / "state" / "a.db.lock").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777, 0600U);
}

}  // namespace
}  // namespace airsync::test
