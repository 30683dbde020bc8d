// What goes wrong is told with its exit code, and the next run makes it good.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>

#include "integration/Fixture.h"
#include "unit/server/support/Certificate.h"

namespace airsync::integration {
namespace {

using testing::HasSubstr;
using testing::Not;

class Failing : public AirsyncTest {
 protected:
  // The server without its faults, on the same data: the next run makes both sides equal.
  void expectToConverge() {
    serve({});
    sync();
    expectSameOnBothSides();
  }
};

TEST_F(Failing, LoginEndsWithExitCode3) {
  serve();
  environment()["AIRSYNC_PASSWORD"] = "wrong-secret";
  const Finished result = run({"sync"});
  EXPECT_EQ(result.code, 3);
  EXPECT_THAT(result.errors, HasSubstr("the server refused the user name or the password (HTTP 401)"));
  EXPECT_THAT(result.output + result.errors, Not(HasSubstr("wrong-secret")));
}

TEST_F(Failing, ConnectionEndsWithExitCode4) {
  serve();
  server().stop();
  const Finished result = run({"sync"});
  EXPECT_EQ(result.code, 4) << result.errors;
  EXPECT_THAT(result.errors, HasSubstr("127.0.0.1"));
}

TEST_F(Failing, TrustEndsWithExitCode5) {
  const std::string certificate = (directory() / "cert.pem").string();
  const std::string key = (directory() / "key.pem").string();
  demoserver::writeCertificate(certificate, key);
  serve({"--contacts", "3", "--tls-cert", certificate, "--tls-key", key});
  const std::string url = "https://localhost:" + std::to_string(server().port()) + "/service";
  configure(url);
  const Finished refused = run({"sync"});
  EXPECT_EQ(refused.code, 5) << refused.errors;
  configure(url, "ca_file = \"" + certificate + "\"\n");
  const Finished trusted = run({"sync", "f9"});
  EXPECT_EQ(trusted.code, 0) << trusted.errors;
  EXPECT_EQ(contactsHere().size(), 3U);
}

struct FaultRow {
  const char* what;
  std::vector<std::string> switches;
  int code;
};

class FailingExchange : public Failing, public testing::WithParamInterface<FaultRow> {};

TEST_P(FailingExchange, IsToldAndMadeGoodByTheNextRun) {
  std::vector<std::string> switches = {"--contacts", "50"};
  switches.insert(switches.end(), GetParam().switches.begin(), GetParam().switches.end());
  serve(switches);
  const Finished result = run({"sync", "f9"});
  EXPECT_EQ(result.code, GetParam().code) << result.output << result.errors;
  EXPECT_EQ(result.errors.empty(), result.code == 0) << result.errors;
  expectToConverge();
}

const FaultRow kFaults[] = {
    {"Status500", {"--fail-cmd", "Sync", "--fail-after", "2", "--fail-status", "500"}, 6},
    {"Status503", {"--fail-cmd", "Sync", "--fail-after", "2", "--fail-status", "503"}, 6},
    {"Status404", {"--fail-status", "404"}, 6},
    {"Status403", {"--fail-status", "403"}, 8},
    {"Status449", {"--fail-cmd", "Sync", "--fail-status", "449"}, 8},
    {"Status401InTheMiddle", {"--fail-cmd", "Sync", "--fail-after", "2", "--fail-status", "401"}, 3},
    {"BodyCutAtItsBeginning", {"--fail-cmd", "Sync", "--fail-after", "2", "--cut-body", "0"}, 4},
    {"BodyCutInTheMiddle", {"--fail-cmd", "Sync", "--fail-after", "2", "--cut-body", "200"}, 4},
    {"BodyOfTheFolderListCut", {"--fail-cmd", "FolderSync", "--cut-body", "100"}, 4},
    {"ClosedBeforeTheAnswer", {"--fail-cmd", "Sync", "--fail-after", "2", "--close-before-answer"}, 4},
    {"ClosedBeforeHandling", {"--fail-cmd", "Sync", "--fail-after", "2", "--close-before-handling"}, 4},
    {"ClosedOnceBeforeHandling",
     {"--fail-cmd", "Sync", "--fail-after", "2", "--fail-count", "1", "--close-before-handling"},
     0},
    {"ClosedAfterEachAnswer", {"--close-after-answer"}, 0},
    {"Chunked", {"--chunked", "7"}, 0},
    {"ChunkedAndCut", {"--chunked", "64", "--fail-cmd", "Sync", "--fail-after", "2", "--cut-body", "200"}, 4},
    {"EmptyWhenIdle", {"--habit", "empty-when-idle"}, 0},
    {"AnswersSuccesses", {"--habit", "answer-successes"}, 0},
    {"MoreForEver", {"--habit", "more-forever"}, 6},
};

INSTANTIATE_TEST_SUITE_P(, FailingExchange, testing::ValuesIn(kFaults),
                         [](const auto& row) { return std::string(row.param.what); });

// Keeps S11.
TEST_F(Failing, ServerThatPromisesMoreForEverIsToldAsThat) {
  serve({"--contacts", "5", "--habit", "more-forever"});
  const Finished result = run({"sync", "f9"});
  EXPECT_EQ(result.code, 6);
  EXPECT_THAT(result.errors, HasSubstr("the server keeps promising more and sends nothing"));
  EXPECT_EQ(contactsHere().size(), 5U);
}

TEST_F(Failing, ServerChangesItsHabitsAndFaultsWhileItRuns) {
  serve({"--contacts", "5"});
  server().setHabit("more-forever");
  EXPECT_EQ(run({"sync", "f9"}).code, 6);
  server().setHabit("more-forever", false);
  server().planFaults({{"command", "Sync"}, {"status", 503}});
  EXPECT_EQ(server().pickedRequests(), 0);
  EXPECT_NE(run({"sync", "f9"}).code, 0);
  EXPECT_GE(server().pickedRequests(), 1);
  server().planFaults(nlohmann::json::object());
  server().forgetKey("f9");
  sync();
  EXPECT_EQ(contactsHere().size(), 5U);
}

TEST_F(Failing, EmptyAnswerCountsAsUpToDate) {
  serve({"--contacts", "5", "--habit", "empty-when-idle"});
  sync();
  const Finished result = run({"sync", "f9"});
  EXPECT_EQ(result.code, 0) << result.errors;
  EXPECT_EQ(result.output, "Contacts: up to date\n");
}

// Hand-shake and four windows of ten items pass; then the server is silent, and airsync waits for it.
class InTheMiddle : public Failing {
 protected:
  std::unique_ptr<Process> startAndWait() {
    serve({"--contacts", "100", "--fail-cmd", "Sync", "--fail-after", "5", "--delay-ms", "1000000"});
    auto process = start({"sync", "f9"});
    awaitItems(40);
    return process;
  }
};

TEST_F(InTheMiddle, KillLeavesAStateFromWhichTheNextRunConverges) {
  auto process = startAndWait();
  process->signal(SIGKILL);
  EXPECT_EQ(process->wait(), -SIGKILL);
  EXPECT_EQ(contactsHere().size(), 40U);
  expectToConverge();
  EXPECT_EQ(contactsHere().size(), 100U);
}

TEST_F(InTheMiddle, CtrlCEndsTheRunWithExitCode130AndLosesNothing) {
  auto process = startAndWait();
  process->signal(SIGINT);
  EXPECT_EQ(process->wait(), 130);
  EXPECT_THAT(process->errors(), HasSubstr("the run was interrupted"));
  EXPECT_EQ(contactsHere().size(), 40U);
  expectToConverge();
  EXPECT_EQ(contactsHere().size(), 100U);
}

TEST_F(InTheMiddle, SecondRunEndsWithExitCode9) {
  auto process = startAndWait();
  const Finished second = run({"sync"});
  EXPECT_EQ(second.code, 9) << second.errors;
  // Looking and changing need no lock.
  EXPECT_EQ(run({"status"}).code, 0);
  EXPECT_EQ(run({"add", "f9", "-"}, R"({"FirstName":"Ann"})").code, 0);
  process->signal(SIGTERM);
  EXPECT_EQ(process->wait(), 130);
}

TEST_F(Failing, AccountDoesNotStopTheOthers) {
  serve({"--contacts", "5"});
  writeFile(
      directory() / "config" / "airsync" / "config.toml",
      "[account.down]\nurl = \"http://127.0.0.1:1/\"\nuser = \"demo\"\npassword_command = [\"echo\", \"x\"]\n"
      "[account.demo]\nurl = \"" +
          url() +
          "\"\nuser = \"demo\"\ndomain = \"DEMO\"\n"
          "password_command = \"echo demo\"\n");
  const Finished result = run({"--json", "sync"});
  EXPECT_EQ(result.code, 7) << result.errors;
  EXPECT_EQ(result.json().at("accounts").at(0).at("exit").at("code"), 4);
  EXPECT_EQ(result.json().at("accounts").at(1).at("exit").at("code"), 0);
  EXPECT_EQ(contactsHere().size(), 5U);
}

// The system's answer to a file that may not become larger is a signal.
TEST_F(Failing, LimitOnTheSizeOfFilesIsToldAndNothingIsLost) {
  serve({"--contacts", "2000"});
  setLargestFile(400'000);
  const Finished limited = run({"sync", "f9"});
  EXPECT_GT(limited.code, 0) << "it ended by signal " << -limited.code;
  EXPECT_THAT(limited.errors, HasSubstr("the limit that is set for this process (ulimit -f)"));
  setLargestFile(0);
  sync();
  expectSameOnBothSides();
}

}  // namespace
}  // namespace airsync::integration
