#include "cli/ExitCode.h"

#include <gtest/gtest.h>
#include <set>

#include "cli/ExitError.h"
#include "store/RunLock.h"

namespace airsync {
namespace {

using Codes = std::vector<ExitCode>;

TEST(ExitCode, HasTheNumbersThatScriptsRelyOn) {
  const int expected[] = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 130};
  ASSERT_EQ(kExitCodes.size(), std::size(expected));
  for (std::size_t i = 0; i < kExitCodes.size(); ++i) {
    EXPECT_EQ(static_cast<int>(kExitCodes[i].code), expected[i]);
  }
}

TEST(ExitCode, HasANameAndASentenceForEachNumber) {
  std::set<std::string_view> names;
  for (const ExitCodeText& row : kExitCodes) {
    EXPECT_FALSE(row.sentence.empty()) << row.name;
    EXPECT_TRUE(names.insert(row.name).second) << row.name;
    EXPECT_EQ(describe(row.code).name, row.name);
  }
}

TEST(ExitCode, OfNothingIsDone) { EXPECT_EQ(combine({}), ExitCode::kDone); }

TEST(ExitCode, OfEqualPiecesIsTheirs) {
  EXPECT_EQ(combine({ExitCode::kDone, ExitCode::kDone}), ExitCode::kDone);
  EXPECT_EQ(combine({ExitCode::kServer, ExitCode::kServer}), ExitCode::kServer);
  EXPECT_EQ(combine({ExitCode::kLoginRefused}), ExitCode::kLoginRefused);
}

TEST(ExitCode, OfDifferentPiecesIsPartlyDone) {
  EXPECT_EQ(combine({ExitCode::kDone, ExitCode::kServer}), ExitCode::kPartlyDone);
  EXPECT_EQ(combine({ExitCode::kNetwork, ExitCode::kServer}), ExitCode::kPartlyDone);
}

TEST(ExitCode, OfAnInterruptionIsTheInterruption) {
  EXPECT_EQ(combine({ExitCode::kDone, ExitCode::kInterrupted, ExitCode::kServer}), ExitCode::kInterrupted);
}

TEST(ExitCode, OfAnErrorComesFromItsTypeItsResultOrItsKind) {
  const auto error = [](ErrorKind kind, AIRSYNC_STACK::SYNC_RESULT result) {
    ErrorStory story;
    story.kind = kind;
    story.result = result;
    return exitCodeOf(Error(story));
  };
  EXPECT_EQ(exitCodeOf(ExitError(ExitCode::kTls, "x")), ExitCode::kTls);
  EXPECT_EQ(exitCodeOf(LockedError(ErrorStory{})), ExitCode::kLocked);
  EXPECT_EQ(error(ErrorKind::item, AIRSYNC_STACK::AS_RESULT_OK), ExitCode::kUsage);
  EXPECT_EQ(error(ErrorKind::folder, AIRSYNC_STACK::AS_RESULT_OK), ExitCode::kUsage);
  EXPECT_EQ(error(ErrorKind::account, AIRSYNC_STACK::AS_RESULT_OK), ExitCode::kNeedsPerson);
  EXPECT_EQ(error(ErrorKind::cancelled, AIRSYNC_STACK::AS_RESULT_OK), ExitCode::kInterrupted);
  EXPECT_EQ(error(ErrorKind::folder, AIRSYNC_STACK::AS_RESULT_HTTP_UNAUTHORIZED), ExitCode::kLoginRefused);
}

}  // namespace
}  // namespace airsync
