#include "cli/attachment/Landing.h"

#include <csignal>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sstream>
#include <sys/resource.h>

#include "unit/cli/Support.h"

namespace airsync {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

class LandingTest : public testing::Test {
 protected:
  std::filesystem::path target() const { return directory_.path() / "plan.pdf"; }

  std::vector<std::string> files() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(directory_.path())) {
      names.push_back(entry.path().filename().string());
    }
    return names;
  }

  std::string content() const {
    std::ostringstream text;
    text << std::ifstream(target(), std::ios::binary).rdbuf();
    return text.str();
  }

  static void fill(const Landing& landing, const std::string& text) {
    std::copy(text.begin(), text.end(), landing.room().begin());
  }

  test::TemporaryDirectory directory_;
};

TEST_F(LandingTest, GivesTheFileItsNameWhenItIsComplete) {
  Landing landing(target(), 100'000);
  EXPECT_EQ(landing.room().size(), 100'000U);
  ASSERT_THAT(files(), ElementsAre(StartsWith(".airsync-")));
  fill(landing, "content");
  landing.cut(7);
  EXPECT_FALSE(std::filesystem::exists(target()));
  landing.publish(false);
  EXPECT_THAT(files(), ElementsAre("plan.pdf"));
  EXPECT_EQ(content(), "content");
}

TEST_F(LandingTest, KeepsTheFileForItsOwner) {
  Landing landing(target(), 1);
  landing.cut(1);
  landing.publish(false);
  EXPECT_EQ(std::filesystem::status(target()).permissions(), std::filesystem::perms(0600));
}

TEST_F(LandingTest, LeavesNothingWhenItWasNotPublished) {
  {
    const Landing landing(target(), 10);
    fill(landing, "abc");
  }
  EXPECT_THAT(files(), IsEmpty());
  {
    Landing landing(target(), 10);
    landing.cut(3);
  }
  EXPECT_THAT(files(), IsEmpty());
}

TEST_F(LandingTest, MakesAnEmptyFile) {
  Landing landing(target(), 10);
  landing.cut(0);
  landing.publish(false);
  EXPECT_EQ(content(), "");
}

TEST_F(LandingTest, LeavesAFileThatCameMeanwhileAlone) {
  Landing landing(target(), 10);
  landing.cut(3);
  directory_.write("plan.pdf", "older");
  EXPECT_THAT(test::errorOf([&] { landing.publish(false); }),
              HasSubstr("there is a file of this name already"));
  EXPECT_EQ(content(), "older");
  landing.publish(true);
  EXPECT_EQ(content().size(), 3U);
}

// Keeps S15.
TEST_F(LandingTest, WritesThroughNoLink) {
  const std::string victim = directory_.write("victim", "untouched");
  std::filesystem::create_symlink(victim, target());
  Landing landing(target(), 10);
  landing.cut(3);
  EXPECT_THAT(test::errorOf([&] { landing.publish(false); }), StartsWith("1 "));
  landing.publish(true);
  EXPECT_FALSE(std::filesystem::is_symlink(target()));
  EXPECT_EQ(std::filesystem::file_size(victim), 9U);
}

// Files of this process do not become larger, while it exists.
class FileLimit {
 public:
  explicit FileLimit(rlim_t bytes) {
    ::getrlimit(RLIMIT_FSIZE, &before_);
    const rlimit limit = {bytes, before_.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &limit);
    signal_ = ::signal(SIGXFSZ, SIG_IGN);
  }
  ~FileLimit() {
    ::setrlimit(RLIMIT_FSIZE, &before_);
    ::signal(SIGXFSZ, signal_);
  }
  FileLimit(const FileLimit&) = delete;
  FileLimit& operator=(const FileLimit&) = delete;

 private:
  rlimit before_{};
  void (*signal_)(int) = nullptr;
};

TEST_F(LandingTest, LeavesNothingWhenThereIsNoRoom) {
  const FileLimit limit(1000);
  EXPECT_THAT(test::errorOf([&] { Landing(target(), 100'000); }),
              testing::AllOf(StartsWith("8 writing "), HasSubstr("plan.pdf: File too large")));
  EXPECT_THAT(files(), IsEmpty());
}

TEST_F(LandingTest, TellsOfADirectoryThatIsNotThere) {
  const std::filesystem::path nowhere = directory_.path() / "no" / "plan.pdf";
  EXPECT_THAT(test::errorOf([&] { Landing(nowhere, 10); }),
              testing::AllOf(StartsWith("8 writing "), HasSubstr("plan.pdf: No such file or directory")));
}

TEST_F(LandingTest, CheckRefusesWhatIsThereUnlessItMayBeReplaced) {
  EXPECT_EQ(test::errorOf([&] { checkTarget(target(), false); }), "no error");
  directory_.write("plan.pdf", "older");
  EXPECT_THAT(test::errorOf([&] { checkTarget(target(), false); }), StartsWith("1 writing "));
  EXPECT_EQ(test::errorOf([&] { checkTarget(target(), true); }), "no error");
  EXPECT_THAT(test::errorOf([&] { checkTarget(directory_.path(), true); }), HasSubstr("it is a directory"));
}

TEST_F(LandingTest, CheckRefusesDevicesAndTheirNamesAlsoWhenFilesMayBeReplaced) {
  std::filesystem::create_symlink("/dev/null", target());
  for (const std::filesystem::path& place : {std::filesystem::path("/dev/null"), target()}) {
    EXPECT_THAT(test::errorOf([&] { checkTarget(place, true); }),
                testing::AllOf(StartsWith("1 writing "), HasSubstr("it is no ordinary file")));
  }
}

}  // namespace
}  // namespace airsync
