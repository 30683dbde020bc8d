#include "integration/Process.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <signal.h>

namespace airsync::integration {
namespace {

// What the process that started the tests ignores or blocks, the programs under test must not inherit.
TEST(Process, StartsAProgramWithTheSignalsOfALogin) {
  std::string name = (std::filesystem::temp_directory_path() / "airsync-process-XXXXXX").string();
  ASSERT_NE(::mkdtemp(name.data()), nullptr);
  sigset_t blocked;
  sigset_t before;
  ::sigemptyset(&blocked);
  ::sigaddset(&blocked, SIGTERM);
  ::sigprocmask(SIG_BLOCK, &blocked, &before);
  const auto handler = ::signal(SIGINT, SIG_IGN);

  Process::Start start;
  start.command = {"/usr/bin/grep", "-E", "^Sig(Blk|Ign)", "/proc/self/status"};
  start.directory = name;
  Process process(start);
  EXPECT_EQ(process.wait(), 0);
  EXPECT_EQ(process.output(), "SigBlk:\t0000000000000000\nSigIgn:\t0000000000000000\n");

  ::signal(SIGINT, handler);
  ::sigprocmask(SIG_SETMASK, &before, nullptr);
  std::filesystem::remove_all(name);
}

}  // namespace
}  // namespace airsync::integration
