// A process per account: what ends one leaves its parent, the store and everything else whole.
#include <chrono>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <thread>

#include "integration/Fixture.h"
#include "support/HexAndText.h"

namespace airsync::integration {
namespace {

using airsync_test::HexAndText;
using testing::HasSubstr;
using testing::Not;

// A Sync answer whose root has two attributes, for which the string table holds the name.
const std::string kTwoAttributes = HexAndText("03 01 6A 02 'a' 00 C5 04 00 03 'x' 00 04 00 03 'y' 00 01 01");

constexpr char kWhatWasSent[] =
    "the server's answer to Sync broke a rule of the protocol: it holds an element with a second attribute; "
    "the process that read it stopped itself (assertion \"pSmlElement->NumberOfAttributes < 1\", "
    "Element.cpp:";

class Isolation : public AirsyncTest {
 protected:
  std::string answerFile(const std::string& bytes) const {
    writeFile(directory() / "answer", bytes);
    return (directory() / "answer").string();
  }

  // The second Sync of the run, the first with content, is answered so; once.
  void serveTheAssertion() {
    serve({"--contacts", "20", "--fail-cmd", "Sync", "--fail-after", "1", "--fail-count", "1",
           "--answer-file", answerFile(kTwoAttributes)});
  }

  void expectToConverge() {
    serve({});
    sync();
    expectSameOnBothSides();
  }

  // Hand-shake and one window of ten items; then the server is silent, and airsync waits for it.
  std::unique_ptr<Process> startAndWait() {
    serve({"--contacts", "20", "--fail-cmd", "Sync", "--fail-after", "2", "--delay-ms", "1000000"});
    auto process = start({"sync", "f9"});
    awaitItems(10);
    return process;
  }

  static pid_t childOf(const Process& process) {
    const std::vector<pid_t> children = process.children();
    EXPECT_EQ(children.size(), 1U);
    return children.empty() ? -1 : children.front();
  }
};

// Keeps S22.
TEST_F(Isolation, AssertionThatTheServerProvokesIsToldWithFolderAndExitCode6) {
  serveTheAssertion();
  const Finished result = run({"sync", "f9"});
  EXPECT_EQ(result.code, 6);
  EXPECT_THAT(result.errors,
              HasSubstr("airsync: error: synchronising folder \"Contacts\" of account demo: "));
  EXPECT_THAT(result.errors, HasSubstr(kWhatWasSent));
  EXPECT_THAT(result.errors, HasSubstr("What came with earlier answers is kept, and nothing of this one."));
  EXPECT_THAT(result.errors, Not(HasSubstr("Assertion `")));
  expectToConverge();
}

// Keeps S22.
TEST_F(Isolation, OtherFoldersOfTheAccountGoOn) {
  serveTheAssertion();
  const Finished result = run({"--json", "sync"});
  EXPECT_EQ(result.code, 7);
  const nlohmann::json account = result.json().at("accounts").at(0);
  EXPECT_EQ(account.at("error"), nullptr);
  EXPECT_EQ(account.at("exit").at("code"), 7);
  const nlohmann::json& first = account.at("folders").at(0);
  EXPECT_EQ(first.at("path"), "Calendar");
  EXPECT_EQ(first.at("result"), "failed");
  EXPECT_THAT(first.at("error").at("message").get<std::string>(), HasSubstr(kWhatWasSent));
  EXPECT_EQ(account.at("folders").size(), 19U);
  for (std::size_t index = 1; index < 19; ++index) {
    EXPECT_NE(account.at("folders").at(index).at("result"), "failed");
  }
  EXPECT_EQ(contactsHere().size(), 20U);
  expectToConverge();
}

// Keeps S22.
TEST_F(Isolation, OtherAccountsGoOn) {
  serve({"--contacts", "5", "--fail-cmd", "FolderSync", "--fail-count", "1", "--answer-file",
         answerFile(kTwoAttributes)});
  const std::string rest = "url = \"" + url() +
                           "\"\nuser = \"demo\"\ndomain = \"DEMO\"\n"
                           "password_command = \"echo demo\"\n";
  writeFile(directory() / "config" / "airsync" / "config.toml",
            "[account.broken]\n" + rest + "[account.demo]\n" + rest);
  const Finished result = run({"--json", "sync"});
  EXPECT_EQ(result.code, 7);
  const nlohmann::json accounts = result.json().at("accounts");
  EXPECT_EQ(accounts.at(0).at("exit").at("code"), 6);
  EXPECT_EQ(accounts.at(0).at("folders").size(), 0U);
  EXPECT_EQ(accounts.at(1).at("exit").at("code"), 0);
  EXPECT_THAT(result.errors, HasSubstr("synchronising account broken: the server's answer to FolderSync "));
  EXPECT_EQ(contactsHere().size(), 5U);
}

TEST_F(Isolation, CommandThatAsksTheServerDoesNotDieWithItsProcess) {
  serve({"--fail-cmd", "GetHierarchy", "--answer-file", answerFile(kTwoAttributes)});
  const Finished result = run({"hierarchy"});
  EXPECT_EQ(result.code, 6);
  EXPECT_THAT(result.errors, HasSubstr("running airsync hierarchy for account demo: the server's answer to "
                                       "GetHierarchy broke a rule of the protocol"));
}

TEST_F(Isolation, CommandThatActsSaysThatItsEffectIsNotKnown) {
  serve({"--fail-cmd", "FolderCreate", "--answer-file", answerFile(kTwoAttributes)});
  const Finished result = run({"folder", "create", "Rowing"});
  EXPECT_EQ(result.code, 6);
  EXPECT_THAT(result.errors, HasSubstr("running airsync folder create for account demo: "));
  EXPECT_THAT(result.errors, HasSubstr("Whether the server did what it was asked for is not known"));
}

TEST_F(Isolation, ListOfFoldersThatEndsTheProcessIsTold) {
  serve({"--fail-cmd", "FolderSync", "--answer-file", answerFile(kTwoAttributes)});
  const Finished result = run({"folders", "--refresh"});
  EXPECT_EQ(result.code, 6);
  EXPECT_THAT(result.errors, HasSubstr("fetching the folders of account demo: the server's answer to "));
}

TEST_F(Isolation, KilledChildIsToldAndTheNextRunConverges) {
  auto process = startAndWait();
  ::kill(childOf(*process), SIGKILL);
  EXPECT_EQ(process->wait(), 10);
  EXPECT_THAT(
      process->errors(),
      HasSubstr("synchronising folder \"Contacts\" of account demo: the process that worked on it was "
                "killed (signal 9), by somebody or because the system ran out of memory, while it "
                "waited for the answer to Sync"));
  EXPECT_EQ(contactsHere().size(), 10U);
  expectToConverge();
}

TEST_F(Isolation, CrashedChildIsToldAsADefect) {
  auto process = startAndWait();
  ::kill(childOf(*process), SIGSEGV);
  EXPECT_EQ(process->wait(), 10);
  EXPECT_THAT(process->errors(), HasSubstr("the process that worked on it crashed (signal 11, Segmentation "
                                           "fault) while it waited for the answer to Sync"));
  EXPECT_THAT(process->errors(), HasSubstr("This is a defect of airsync"));
  expectToConverge();
}

TEST_F(Isolation, ChildDoesNotOutliveItsParent) {
  auto process = startAndWait();
  const pid_t child = childOf(*process);
  process->signal(SIGKILL);
  EXPECT_EQ(process->wait(), -SIGKILL);
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
  while (::kill(child, 0) == 0 && std::chrono::steady_clock::now() < end) {
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  EXPECT_NE(::kill(child, 0), 0);
  expectToConverge();
}

TEST_F(Isolation, CtrlCThatReachesBothProcessesCountsOnce) {
  auto process = startAndWait();
  ::kill(childOf(*process), SIGINT);
  process->signal(SIGINT);
  EXPECT_EQ(process->wait(), 130);
  EXPECT_THAT(process->errors(), HasSubstr("the run was interrupted"));
  expectToConverge();
}

TEST_F(Isolation, SecondSignalToTheParentEndsBothAtOnce) {
  auto process = startAndWait();
  const pid_t child = childOf(*process);
  ::kill(child, SIGSTOP);  // so that it can't end in an orderly way before
  process->signal(SIGTERM);
  std::this_thread::sleep_for(std::chrono::milliseconds(50));
  process->signal(SIGTERM);
  EXPECT_EQ(process->wait(), 130);
  EXPECT_EQ(process->errors(), "");
  expectToConverge();
}

// Keeps S13.
TEST_F(Isolation, NoProcessMayLeaveADumpOfItsMemory) {
  auto process = startAndWait();
  for (const pid_t pid : {childOf(*process), process->pid()}) {
    EXPECT_THAT(readFile("/proc/" + std::to_string(pid) + "/limits"),
                HasSubstr("Max core file size        0                    0 "));
  }
  process->signal(SIGTERM);
  EXPECT_EQ(process->wait(), 130);
}

}  // namespace
}  // namespace airsync::integration
