// The work of these tests tries the folders a, b and c; what happens with each is told per test.
#include "cli/process/AccountRun.h"

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <gtest/gtest.h>
#include <map>

namespace airsync {
namespace {

enum class Fate { done, refused, crashes, isKilled };

class AccountRunTest : public testing::Test {
 protected:
  AccountRunTest() { account.name = "work"; }
  ~AccountRunTest() override { std::fclose(nowhere_); }

  AccountEnd run(const std::map<std::string, Fate>& fates) {
    return runAccount(output_, account, [&](Child& child, const LeaveOut& leaveOut) {
      return work(child, fates, leaveOut.folders);
    });
  }

  Output& output() { return output_; }

  // "a done, b failed"
  static std::string outcomes(const AccountEnd& end) {
    std::string text;
    for (const Json& folder : end.report.at("folders")) {
      text += (text.empty() ? "" : ", ") + folder.at("id").get<std::string>() + " " +
              folder.at("result").get<std::string>();
    }
    return text;
  }

  Account account;

 private:
  ExitCode work(Child& child, const std::map<std::string, Fate>& fates,
                const std::vector<std::string>& leaveOut) const {
    AccountReport report;
    report.account = account.name;
    for (const auto& [id, fate] : fates) {
      if (std::find(leaveOut.begin(), leaveOut.end(), id) != leaveOut.end()) continue;
      FolderReport folder;
      folder.folder.serverId = id;
      folder.folder.path = "Path " + id;
      report.folders.push_back(folder);
    }
    reportPlan(child, report.folders);
    for (FolderReport& folder : report.folders) {
      const Fate fate = fates.at(folder.folder.serverId);
      child.flight().folderId.set(folder.folder.serverId);
      child.flight().folder.set(folder.folder.path);
      if (fate == Fate::crashes) std::raise(SIGTRAP);
      if (fate == Fate::isKilled) std::raise(SIGKILL);
      folder.tried = true;
      if (fate == Fate::refused) folder.trouble = Trouble{ExitCode::kServer, "refused", ""};
      reportFolder(child, folder);
    }
    reportAccount(child, account, report);
    return report.exitCode();
  }

  std::FILE* nowhere_ = std::tmpfile();
  Output output_{{}, nowhere_, nowhere_};
};

TEST_F(AccountRunTest, ReportsWhatOneProcessDid) {
  const AccountEnd end = run({{"a", Fate::done}, {"b", Fate::refused}});
  EXPECT_EQ(end.code, ExitCode::kPartlyDone);
  EXPECT_EQ(outcomes(end), "a done, b failed");
  EXPECT_EQ(end.report.at("exit").at("code"), 7);
}

TEST_F(AccountRunTest, GoesOnAfterEachFolderThatEndsAProcess) {
  const AccountEnd end = run({{"a", Fate::crashes}, {"b", Fate::done}, {"c", Fate::crashes}});
  EXPECT_EQ(end.code, ExitCode::kPartlyDone);
  EXPECT_EQ(outcomes(end), "a failed, b done, c failed");
  EXPECT_EQ(end.report.at("error"), nullptr);
  EXPECT_EQ(end.report.at("exit").at("code"), 7);
}

TEST_F(AccountRunTest, KeepsTheOrderOfWhatWasDoneBefore) {
  const AccountEnd end = run({{"a", Fate::done}, {"b", Fate::crashes}, {"c", Fate::done}});
  EXPECT_EQ(outcomes(end), "a done, b failed, c done");
}

TEST_F(AccountRunTest, StartsNoProcessForNothing) {
  const AccountEnd end = run({{"a", Fate::crashes}});
  EXPECT_EQ(end.code, ExitCode::kInternal);
  EXPECT_EQ(outcomes(end), "a failed");
}

TEST_F(AccountRunTest, DoesNotGoOnAfterSomebodyKilledIt) {
  const AccountEnd end = run({{"a", Fate::done}, {"b", Fate::isKilled}, {"c", Fate::done}});
  EXPECT_EQ(end.code, ExitCode::kInternal);
  EXPECT_EQ(outcomes(end), "a done, b failed, c not reached");
  EXPECT_EQ(end.report.at("error").at("exit").at("code"), 10);
}

TEST_F(AccountRunTest, ProcessThatEndsWithoutAReportLeavesWhatItToldBefore) {
  const AccountEnd end = runAccount(output(), account, [](Child& child, const auto&) {
    FolderReport folder;
    folder.folder.serverId = "a";
    folder.tried = true;
    reportFolder(child, folder);
    return ExitCode::kInterrupted;
  });
  EXPECT_EQ(end.code, ExitCode::kInterrupted);
  EXPECT_EQ(outcomes(end), "a done");
  EXPECT_EQ(end.report.at("exit").at("code"), 130);
}

}  // namespace
}  // namespace airsync
