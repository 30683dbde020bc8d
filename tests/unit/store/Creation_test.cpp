// Several processes make the same store at the same moment.
#include <sys/wait.h>
#include <unistd.h>

#include "StoreFixture.h"

namespace airsync::test {
namespace {

// A process that waits for the others behind `gate`, opens the store, and tells by its exit whether it could.
pid_t openBehind(int gate, const std::filesystem::path& file) {
  const pid_t child = ::fork();
  if (child != 0) return child;
  char go = 0;
  if (::read(gate, &go, 1) < 0) ::_exit(2);
  try {
    const Store store(file);
  } catch (const Error&) {
    ::_exit(1);
  }
  ::_exit(0);
}

TEST(StoreCreation, SucceedsForAllProcessesThatTryAtOnce) {
  const Directory directory;
  constexpr int kRounds = 60;
  constexpr std::size_t kProcesses = 6;
  for (int round = 0; round < kRounds; ++round) {
    int gate[2] = {};
    ASSERT_EQ(::pipe(gate), 0);
    std::vector<pid_t> children;
    for (std::size_t i = 0; i < kProcesses; ++i) {
      children.push_back(openBehind(gate[0], directory.path() / std::to_string(round)));
    }
    const std::string go(kProcesses, '!');
    ASSERT_EQ(::write(gate[1], go.data(), go.size()), static_cast<ssize_t>(go.size()));
    for (const pid_t child : children) {
      int status = 0;
      ASSERT_EQ(::waitpid(child, &status, 0), child);
      EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << "round " << round;
    }
    ::close(gate[0]);
    ::close(gate[1]);
  }
}

}  // namespace
}  // namespace airsync::test
