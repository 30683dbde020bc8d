#include "cli/process/Child.h"

#undef NDEBUG  // declares what assert() calls
#include <cassert>
#include <csignal>
#include <cstdio>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include "cli/ExitError.h"
#include "cli/process/Assertion.h"
#include "unit/cli/Support.h"

namespace airsync {
namespace {

using Json = nlohmann::ordered_json;

class InChild : public testing::Test {
 protected:
  ~InChild() override {
    std::fclose(results_);
    std::fclose(messages_);
  }

  ChildEnd run(const ChildWork& work) { return runInChild(output_, work); }
  std::string results() { return contentOf(results_); }
  std::string messages() { return contentOf(messages_); }

 private:
  static std::string contentOf(std::FILE* file) {
    std::rewind(file);
    std::string text;
    for (int c = std::fgetc(file); c != EOF; c = std::fgetc(file)) text += static_cast<char>(c);
    return text;
  }

  std::FILE* results_ = std::tmpfile();
  std::FILE* messages_ = std::tmpfile();

 protected:
  Output output_{{}, results_, messages_};
};

TEST_F(InChild, EndsWithTheCodeOfItsWork) {
  EXPECT_EQ(run([](Child&) { return ExitCode::kDone; }).code, ExitCode::kDone);
  const ChildEnd end = run([](Child&) { return ExitCode::kPartlyDone; });
  EXPECT_EQ(end.code, ExitCode::kPartlyDone);
  EXPECT_FALSE(end.death.has_value());
  EXPECT_TRUE(end.messages.empty());
}

TEST_F(InChild, AnUnknownCodeCountsAsInternal) {
  EXPECT_EQ(run([](Child&) { return static_cast<ExitCode>(77); }).code, ExitCode::kInternal);
}

TEST_F(InChild, WritesEachLineOnce) {
  output_.line("before");
  run([this](Child&) {
    output_.line("within");
    return ExitCode::kDone;
  });
  output_.line("after");
  output_.flush();
  EXPECT_EQ(results(), "before\nwithin\nafter\n");
}

TEST_F(InChild, TellsTheErrorThatEndsItsWork) {
  const ChildEnd end =
      run([](Child&) -> ExitCode { throw ExitError(ExitCode::kTls, "no trust", "Think again."); });
  EXPECT_EQ(end.code, ExitCode::kTls);
  EXPECT_EQ(messages(), "airsync: error: no trust\nairsync:   Think again.\n");
}

TEST_F(InChild, HandsMessagesUpInOrderAlsoLargeOnes) {
  const std::string large(300'000, 'x');  // more than a pipe holds
  const ChildEnd end = run([&](Child& child) {
    child.report({{"text", "two\nlines"}});
    child.report({{"text", large}});
    return ExitCode::kDone;
  });
  ASSERT_EQ(end.messages.size(), 2U);
  EXPECT_EQ(end.messages[0].at("text"), "two\nlines");
  EXPECT_EQ(end.messages[1].at("text"), large);
}

TEST_F(InChild, DeathKeepsTheRecordAndTheMessagesBeforeIt) {
  const ChildEnd end = run([](Child& child) -> ExitCode {
    child.report({{"folder", 1}});
    child.flight().step = Step::reading;
    child.flight().folder.set("Inbox");
    std::raise(SIGKILL);
    return ExitCode::kDone;
  });
  ASSERT_TRUE(end.death.has_value());
  EXPECT_EQ(end.death->signal, SIGKILL);
  EXPECT_EQ(end.death->flight.step, Step::reading);
  EXPECT_EQ(end.death->flight.folder.get(), "Inbox");
  EXPECT_EQ(end.death->flight.assertion.get(), "");
  ASSERT_EQ(end.messages.size(), 1U);
}

TEST_F(InChild, AssertionIsRecordedAndNotPrinted) {
  const ChildEnd end = run([](Child&) -> ExitCode {
    __assert_fail("1 < 0", "/where/Element.cpp", 83, "f");
    return ExitCode::kDone;
  });
  ASSERT_TRUE(end.death.has_value());
  EXPECT_EQ(end.death->signal, SIGABRT);
  EXPECT_EQ(end.death->flight.assertion.get(), "1 < 0");
  EXPECT_EQ(end.death->flight.assertionFile.get(), "/where/Element.cpp");
  EXPECT_EQ(end.death->flight.assertionLine, 83U);
  EXPECT_EQ(messages(), "");
}

TEST(AssertionDeathTest, IsPrintedWhereNobodyRecords) {
  EXPECT_DEATH(__assert_fail("1 < 0", "Element.cpp", 83, "f"), "Element.cpp:83: f: Assertion `1 < 0' failed");
}

TEST_F(InChild, ProtectedMemoryIsNeverDumped) {
  const ChildEnd end = run([](Child&) {
    protectMemory();
    rlimit limit{};
    ::getrlimit(RLIMIT_CORE, &limit);
    return limit.rlim_cur == 0 && limit.rlim_max == 0 ? ExitCode::kDone : ExitCode::kInternal;
  });
  EXPECT_EQ(end.code, ExitCode::kDone);
}

}  // namespace
}  // namespace airsync
