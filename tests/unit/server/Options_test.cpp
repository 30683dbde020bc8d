#include "Options.h"

#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <vector>

namespace demoserver {
namespace {

std::optional<Options> parsed(std::vector<std::string> arguments, int* exitCode = nullptr) {
  arguments.insert(arguments.begin(), "airsync-demo-server");
  std::vector<char*> pointers;
  for (std::string& argument : arguments) pointers.push_back(argument.data());
  int code = -1;
  auto options = parseOptions(static_cast<int>(pointers.size()), pointers.data(), code);
  if (exitCode != nullptr) *exitCode = code;
  return options;
}

TEST(DemoOptions, DefaultToThePlainServer) {
  const auto options = parsed({"--data", "f.db"});
  ASSERT_TRUE(options.has_value());
  EXPECT_EQ(options->dataFile, "f.db");
  EXPECT_EQ(options->listener.address, "127.0.0.1");
  EXPECT_EQ(options->seed.events, 0);
  EXPECT_EQ(options->seed.mails, 0);
  EXPECT_FALSE(options->now.has_value());
  EXPECT_EQ(options->listener.port, 0);
  EXPECT_EQ(options->listener.chunkSize, 0u);
  EXPECT_EQ(options->service.credentials.domain, "DEMO");
  EXPECT_EQ(options->service.credentials.user, "demo");
  EXPECT_EQ(options->service.credentials.password, "demo");
  EXPECT_EQ(options->service.mailAddress, "demo@example.com");
  EXPECT_EQ(options->service.faults.fault.status, 0);
  EXPECT_EQ(options->service.faults.count, -1);
  EXPECT_FALSE(options->service.faults.fault.cutBody.has_value());
}

TEST(DemoOptions, TellWhatToServe) {
  const auto options = parsed({"--data",     "f.db", "--port",         "8080",
                               "--contacts", "7",    "--events",       "8",
                               "--mails",    "9",    "--now",          "2026-11-21T12:00:00Z",
                               "--folders",  "300",  "--seed",         "18446744073709551615",
                               "--domain",   "",     "--user",         "u",
                               "--password", "p",    "--mail-address", "u@example.org",
                               "-v"});
  ASSERT_TRUE(options.has_value());
  EXPECT_EQ(options->listener.port, 8080);
  EXPECT_EQ(options->seed.contacts, 7);
  EXPECT_EQ(options->seed.events, 8);
  EXPECT_EQ(options->seed.mails, 9);
  EXPECT_EQ(options->now, momentOf("2026-11-21T12:00:00Z"));
  EXPECT_EQ(options->seed.folders, 300);
  EXPECT_EQ(options->seed.seed, UINT64_MAX);
  EXPECT_EQ(options->service.credentials.domain, "");
  EXPECT_EQ(options->service.credentials.user, "u");
  EXPECT_EQ(options->service.credentials.password, "p");
  EXPECT_EQ(options->service.mailAddress, "u@example.org");
  EXPECT_TRUE(options->service.verbose);
}

TEST(DemoOptions, EveryFaultSwitchSetsItsFault) {
  const auto options = parsed({"--data",
                               "f.db",
                               "--fail-cmd",
                               "Sync",
                               "--fail-after",
                               "2",
                               "--fail-count",
                               "3",
                               "--fail-status",
                               "503",
                               "--cut-body",
                               "9",
                               "--delay-ms",
                               "11",
                               "--close-before-handling",
                               "--close-before-answer",
                               "--close-after-answer",
                               "--no-collection",
                               "--answer-file",
                               "/dev/null"});
  ASSERT_TRUE(options.has_value());
  const FaultPlan& plan = options->service.faults;
  EXPECT_EQ(plan.command, "Sync");
  EXPECT_EQ(plan.after, 2);
  EXPECT_EQ(plan.count, 3);
  EXPECT_EQ(plan.fault.status, 503);
  EXPECT_EQ(plan.fault.cutBody, 9u);
  EXPECT_EQ(plan.fault.delayMs, 11);
  EXPECT_TRUE(plan.fault.dropRequest);
  EXPECT_TRUE(plan.fault.dropAnswer);
  EXPECT_TRUE(plan.fault.closeAfter);
  EXPECT_TRUE(plan.fault.noCollection);
  EXPECT_EQ(plan.fault.answerFile, "/dev/null");
}

TEST(DemoOptions, ChunkedTakesTheSizeOfAChunk) {
  const auto options = parsed({"--data", "f.db", "--chunked", "5"});
  ASSERT_TRUE(options.has_value());
  EXPECT_EQ(options->listener.chunkSize, 5u);
}

// The names of the habits that are on.
std::vector<std::string_view> habitsOf(const std::optional<Options>& options) {
  std::vector<std::string_view> names;
  for (const Habit& each : kHabits)
    if (options && options->service.habits.*each.field) names.push_back(each.name);
  return names;
}

TEST(DemoOptions, EveryHabitIsOffUnlessItIsNamed) {
  EXPECT_TRUE(habitsOf(parsed({"--data", "f.db"})).empty());
  for (const Habit& each : kHabits)
    EXPECT_EQ(habitsOf(parsed({"--data", "f.db", "--habit", std::string(each.name)})),
              std::vector<std::string_view>{each.name});
}

TEST(DemoOptions, SeveralHabitsGoTogetherAndTheLastOfAChoiceCounts) {
  EXPECT_EQ(habitsOf(parsed({"--habit", "repeated-key-refused", "--habit", "change-means-held", "--habit",
                             "repeated-key-answers-stored", "--data", "f.db"})),
            (std::vector<std::string_view>{"repeated-key-answers-stored", "change-means-held"}));
}

TEST(DemoOptions, HabitListTellsThemAllAndNeedsNothingElse) {
  for (const std::vector<std::string>& arguments :
       {{"--habit", "list"}, std::vector<std::string>{"--help"}}) {
    testing::internal::CaptureStdout();
    int code = -1;
    EXPECT_FALSE(parsed(arguments, &code).has_value());
    EXPECT_EQ(code, 0);
    const std::string told = testing::internal::GetCapturedStdout();
    for (const Habit& each : kHabits)
      EXPECT_NE(told.find("  " + std::string(each.name) + "\n      " + std::string(each.sentence) + "\n"),
                std::string::npos)
          << arguments[0] << each.name;
  }
}

TEST(DemoOptions, ThePageAboutTheServerTellsEveryHabit) {
  std::ifstream page(AIRSYNC_SERVER_PAGE);
  const std::string text{std::istreambuf_iterator<char>(page), std::istreambuf_iterator<char>()};
  for (const Habit& each : kHabits)
    EXPECT_NE(text.find("| `" + std::string(each.name) + "` | " + std::string(each.sentence) + " |\n"),
              std::string::npos)
        << each.name;
}

TEST(DemoOptions, MistakesEndTheProgramWithOneLineThatNamesThem) {
  const std::vector<std::vector<std::string>> table = {
      {},
      {"--data", "f", "--port", "65536"},
      {"--data", "f", "--contacts", "-1"},
      {"--data", "f", "--events", "-1"},
      {"--data", "f", "--mails", "x"},
      {"--data", "f", "--now", "noon"},
      {"--data", "f", "--fail-status", "99"},
      {"--data", "f", "--chunked", "0"},
      {"--data", "f", "--tls-cert", "/dev/null"},
      {"--data", "f", "--tls-cert", "/nowhere", "--tls-key", "/dev/null"},
      {"--data", "f", "--unknown"},
      {"--data", "f", "--habit", "good-manners"},
      {"--data", "f", "--habit"},
  };
  for (const auto& arguments : table) {
    testing::internal::CaptureStderr();
    int code = 0;
    EXPECT_FALSE(parsed(arguments, &code).has_value());
    EXPECT_EQ(code, 1);
    EXPECT_NE(testing::internal::GetCapturedStderr(), "");
  }
}

TEST(DemoOptions, HelpNamesTheAdministration) {
  testing::internal::CaptureStdout();
  int code = -1;
  EXPECT_FALSE(parsed({"--help"}, &code).has_value());
  EXPECT_EQ(code, 0);
  EXPECT_NE(testing::internal::GetCapturedStdout().find("/admin/items?folder=ID"), std::string::npos);
}

}  // namespace
}  // namespace demoserver
