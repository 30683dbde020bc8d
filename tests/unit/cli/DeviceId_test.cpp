#include "cli/config/DeviceId.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "cli/config/Paths.h"
#include "unit/cli/Support.h"

namespace airsync {
namespace {

using test::errorOf;
using testing::HasSubstr;

TEST(DeviceId, IsMadeOnceAndKept) {
  const test::TemporaryDirectory directory;
  const auto file = directory.path() / "work.device-id";
  const std::string id = keptDeviceId(file);
  EXPECT_THAT(id, testing::MatchesRegex("[0-9a-f]{32}"));
  EXPECT_EQ(keptDeviceId(file), id);
}

TEST(DeviceId, DiffersFromDeviceToDevice) {
  const test::TemporaryDirectory directory;
  EXPECT_NE(keptDeviceId(directory.path() / "a"), keptDeviceId(directory.path() / "b"));
}

TEST(DeviceId, IsReadableByItsOwnerOnlyAndLeavesNoOtherFile) {
  const test::TemporaryDirectory directory;
  keptDeviceId(directory.path() / "id");
  struct stat status {};
  ASSERT_EQ(::stat((directory.path() / "id").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0600U);
  const auto files = std::filesystem::directory_iterator(directory.path());
  EXPECT_EQ(std::distance(begin(files), end(files)), 1);
}

TEST(DeviceId, IsRefusedWhenTheFileHoldsSomethingElse) {
  const test::TemporaryDirectory directory;
  for (const std::string text : {"", "\n", "a b\n", "a\nb\n", "x&y\n"}) {
    const std::string file = directory.write("id", text);
    EXPECT_EQ(errorOf([&] { keptDeviceId(file); }),
              "8 keeping the device id in " + file + ": it does not hold a device id");
  }
  EXPECT_EQ(keptDeviceId(directory.write("id", std::string(64, 'a') + "\n")), std::string(64, 'a'));
  EXPECT_THAT(errorOf([&] { keptDeviceId(directory.write("id", std::string(65, 'a'))); }), HasSubstr("8 "));
}

TEST(DeviceId, TellsWhenItCanNotBeKept) {
  EXPECT_EQ(errorOf([] { keptDeviceId("/nonexistent/id"); }),
            "8 keeping the device id in /nonexistent/id: No such file or directory");
}

TEST(DeviceId, FollowsNoLink) {
  const test::TemporaryDirectory directory;
  const std::string victim = directory.write("victim", std::string(32, 'a'));
  const std::filesystem::path file = directory.path() / "id";
  for (const std::string& goal : {victim, (directory.path() / "nowhere").string()}) {
    std::filesystem::create_symlink(goal, file);
    EXPECT_EQ(errorOf([&] { keptDeviceId(file); }),
              "8 keeping the device id in " + file.string() +
                  ": it is a symbolic link, and these are not followed");
    std::filesystem::remove(file);
  }
  EXPECT_FALSE(std::filesystem::exists(directory.path() / "nowhere"));
}

TEST(DeviceId, WritesThroughNoLinkInPlaceOfItsTemporaryFile) {
  const test::TemporaryDirectory directory;
  const std::string victim = directory.write("victim", "untouched");
  std::filesystem::create_symlink(victim, directory.path() / ("id." + std::to_string(::getpid())));
  EXPECT_EQ(keptDeviceId(directory.path() / "id").size(), 32U);
  EXPECT_EQ(std::filesystem::file_size(victim), 9U);
}

TEST(Paths, FollowTheVariablesWhereTheyAreAbsolute) {
  const test::TemporaryDirectory directory;
  const std::string home = directory.path().string();
  const test::EnvironmentVariable homeVariable("HOME", home.c_str());
  {
    const test::EnvironmentVariable config("XDG_CONFIG_HOME", "/c");
    EXPECT_EQ(configFile(), "/c/airsync/config.toml");
  }
  for (const char* value : {static_cast<const char*>(nullptr), "", "relative"}) {
    const test::EnvironmentVariable config("XDG_CONFIG_HOME", value);
    const test::EnvironmentVariable state("XDG_STATE_HOME", value);
    EXPECT_EQ(configFile(), home + "/.config/airsync/config.toml");
    EXPECT_EQ(stateDirectory(), home + "/.local/state/airsync");
  }
}

TEST(Paths, MakeTheStateDirectoryForItsOwnerOnly) {
  const test::TemporaryDirectory directory;
  const test::EnvironmentVariable state("XDG_STATE_HOME", directory.path().c_str());
  struct stat status {};
  ASSERT_EQ(::stat(stateDirectory().c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0700U);
}

TEST(Paths, MakeEveryDirectoryAboveItForItsOwnerOnlyWhateverTheUmask) {
  for (const mode_t mask : {0000U, 0277U}) {
    const test::TemporaryDirectory directory;
    const test::EnvironmentVariable home("HOME", directory.path().c_str());
    const test::EnvironmentVariable state("XDG_STATE_HOME", nullptr);
    const mode_t before = ::umask(mask);
    stateDirectory();
    ::umask(before);
    for (const char* made : {".local", ".local/state", ".local/state/airsync"}) {
      EXPECT_EQ(std::filesystem::status(directory.path() / made).permissions(), std::filesystem::perms(0700))
          << made;
    }
  }
}

TEST(Paths, RefuseAStateDirectoryIntoWhichOthersMayWrite) {
  const test::TemporaryDirectory directory;
  const test::EnvironmentVariable state("XDG_STATE_HOME", directory.path().c_str());
  const std::string path = stateDirectory().string();
  ASSERT_EQ(::chmod(path.c_str(), 0770), 0);
  EXPECT_EQ(errorOf([] { stateDirectory(); }),
            "2 preparing the state directory " + path + ": others may write into it");
}

TEST(Paths, RefuseAStateDirectoryThatIsAFile) {
  const test::TemporaryDirectory directory;
  const test::EnvironmentVariable state("XDG_STATE_HOME", directory.path().c_str());
  directory.write("airsync", "");
  EXPECT_THAT(errorOf([] { stateDirectory(); }), HasSubstr("it is no directory"));
}

TEST(Paths, AreAWrongConfigurationWithoutAHome) {
  const test::EnvironmentVariable home("HOME", nullptr);
  const test::EnvironmentVariable config("XDG_CONFIG_HOME", nullptr);
  EXPECT_EQ(errorOf([] { configFile(); }), "2 neither XDG_CONFIG_HOME nor HOME names a directory");
}

}  // namespace
}  // namespace airsync
