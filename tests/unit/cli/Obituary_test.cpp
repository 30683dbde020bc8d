#include "cli/process/Obituary.h"

#include <csignal>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace airsync {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

Death deathBy(int signal, Step step, const std::string& assertion = {}) {
  Death death;
  death.signal = signal;
  death.flight.step = step;
  death.flight.command.set("Sync");
  death.flight.assertion.set(assertion);
  death.flight.assertionFile.set("/build/src/document/Element.cpp");
  death.flight.assertionLine = 83;
  return death;
}

Purpose synchronising() {
  return {.account = "work", .operation = "synchronising", .folder = "Inbox", .synchronises = true};
}

TEST(Obituary, AssertionOverAnAnswerIsTheServersFault) {
  const ExitError error =
      obituaryOf(deathBy(SIGABRT, Step::reading, "pSmlElement->NumberOfAttributes < 1"), synchronising());
  EXPECT_EQ(error.code(), ExitCode::kServer);
  EXPECT_EQ(sentenceOf(error),
            "synchronising folder \"Inbox\" of account work: the server's answer to Sync broke a rule of the "
            "protocol: it holds an element with a second attribute; the process that read it stopped itself "
            "(assertion \"pSmlElement->NumberOfAttributes < 1\", Element.cpp:83)");
  EXPECT_EQ(
      error.advice(),
      "What came with earlier answers is kept, and nothing of this one. Tell the server's administrator, "
      "with what airsync -vv writes of it; until then selected = false in the folder's table of the "
      "configuration leaves it out.");
}

TEST(Obituary, EveryAssertionThatAServerCanProvokeHasItsSentence) {
  EXPECT_THAT(sentenceOf(obituaryOf(deathBy(SIGABRT, Step::reading, "__null == &In"), synchronising())),
              HasSubstr("it holds an extension in the place of an attribute's value"));
  EXPECT_THAT(sentenceOf(obituaryOf(deathBy(SIGABRT, Step::storing, "other"), synchronising())),
              HasSubstr("it holds what the protocol stack takes for impossible"));
}

TEST(Obituary, AssertionWithoutAnAnswerIsADefect) {
  const ExitError error = obituaryOf(deathBy(SIGABRT, Step::sending, "pParent"), synchronising());
  EXPECT_EQ(error.code(), ExitCode::kInternal);
  EXPECT_THAT(sentenceOf(error), EndsWith("the process that worked on it stopped itself while it sent the "
                                          "request Sync (assertion \"pParent\", Element.cpp:83)"));
  EXPECT_THAT(error.advice(), HasSubstr("This is a defect of airsync"));
}

struct StepRow {
  Step step;
  const char* doing;
};

TEST(Obituary, TellsWhatTheProcessWasDoing) {
  const StepRow rows[] = {
      {Step::beginning, "before it asked the server anything"},
      {Step::connecting, "while it connected"},
      {Step::sending, "while it sent the request Sync"},
      {Step::waiting, "while it waited for the answer to Sync"},
      {Step::reading, "while it read the answer to Sync"},
      {Step::storing, "while it stored the answer to Sync"},
      {static_cast<Step>(99), "before it asked the server anything"},
  };
  for (const StepRow& row : rows) {
    EXPECT_EQ(sentenceOf(obituaryOf(deathBy(SIGSEGV, row.step), synchronising())),
              std::string("synchronising folder \"Inbox\" of account work: the process that worked on it "
                          "crashed (signal 11, Segmentation fault) ") +
                  row.doing);
  }
}

TEST(Obituary, FolderOfTheRecordGoesBeforeThatOfTheCommandLine) {
  Death death = deathBy(SIGSEGV, Step::reading);
  death.flight.folder.set("Inbox/Deep");
  EXPECT_THAT(sentenceOf(obituaryOf(death, synchronising())),
              StartsWith("synchronising folder \"Inbox/Deep\" "));
}

TEST(Obituary, KilledProcessIsToBeStartedAgainUnlessItActed) {
  const Death death = deathBy(SIGKILL, Step::waiting);
  EXPECT_EQ(obituaryOf(death, synchronising()).advice(),
            "What came with earlier answers is kept, and nothing of this one. Run it again.");
  const ExitError acting =
      obituaryOf(death, {.account = "work", .operation = "running airsync send for", .acts = true});
  EXPECT_EQ(acting.code(), ExitCode::kInternal);
  EXPECT_THAT(sentenceOf(acting),
              StartsWith("running airsync send for account work: the process that worked on "
                         "it was killed (signal 9), by somebody or because the system ran "
                         "out of memory, while it waited"));
  EXPECT_EQ(acting.advice(),
            "Whether the server did what it was asked for is not known: look there (airsync sync; for a "
            "message, Sent Items) before you run this again.");
}

}  // namespace
}  // namespace airsync
