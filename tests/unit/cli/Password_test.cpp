#include "cli/config/Password.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "unit/cli/Support.h"

namespace airsync {
namespace {

using test::errorOf;
using testing::HasSubstr;
using testing::Not;

Account withFile(const std::string& file) {
  Account account;
  account.name = "work";
  account.password.file = file;
  return account;
}

Account withCommand(const std::vector<std::string>& command) {
  Account account;
  account.name = "work";
  account.password.command = command;
  return account;
}

Account withShell(const std::string& line) { return withCommand({"/bin/sh", "-c", line}); }

std::string error(const Account& account) {
  return errorOf([&] { passwordOf(account, nullptr); });
}

TEST(PasswordFile, GivesItsFirstLine) {
  const test::TemporaryDirectory directory;
  EXPECT_EQ(passwordOf(withFile(directory.write("p", "hunter2")), nullptr).reveal(), "hunter2");
  EXPECT_EQ(passwordOf(withFile(directory.write("p", "hunter2\r\nuser: ann\n")), nullptr).reveal(),
            "hunter2");
  EXPECT_EQ(passwordOf(withFile(directory.write("p", " spaces stay \n")), nullptr).reveal(), " spaces stay ");
}

// Keeps S13.
TEST(PasswordFile, IsRefusedWhenOthersMayTouchIt) {
  const test::TemporaryDirectory directory;
  for (const mode_t mode : {0640U, 0604U, 0620U, 0602U}) {
    const std::string file = directory.write("p", "hunter2\n", mode);
    EXPECT_EQ(error(withFile(file)), "2 getting the password of account work from " + file +
                                         ": others than you may read or write it");
    EXPECT_EQ(test::adviceOf([&] { passwordOf(withFile(file), nullptr); }), "Run chmod 600 " + file + ".");
  }
  EXPECT_EQ(error(withFile(directory.write("p", "hunter2\n", 0400))), "no error");
}

TEST(PasswordFile, IsRefusedWhenItIsNoFileEmptyTooLongOrUnfit) {
  const test::TemporaryDirectory directory;
  EXPECT_THAT(error(withFile("/nonexistent/p")), HasSubstr("No such file or directory"));
  EXPECT_THAT(error(withFile(directory.path().string())), HasSubstr("it is no ordinary file"));
  EXPECT_THAT(error(withFile(directory.write("p", ""))), HasSubstr("its first line is empty"));
  EXPECT_THAT(error(withFile(directory.write("p", "\nhunter2\n"))), HasSubstr("its first line is empty"));
  EXPECT_THAT(error(withFile(directory.write("p", std::string(256, 'x')))),
              HasSubstr("it is longer than 255 bytes"));
  EXPECT_EQ(passwordOf(withFile(directory.write("p", std::string(255, 'x') + "\n")), nullptr).reveal().size(),
            255U);
  EXPECT_THAT(error(withFile(directory.write("p", "hun\tter2\n"))), HasSubstr("it holds control characters"));
}

TEST(PasswordCommand, GivesTheFirstLineOfItsOutput) {
  EXPECT_EQ(passwordOf(withCommand({"printf", "%s\\nnotes\\n", "hun ter2"}), nullptr).reveal(), "hun ter2");
  EXPECT_EQ(passwordOf(withShell("printf hunter; echo 2"), nullptr).reveal(), "hunter2");
}

TEST(PasswordCommand, GetsNoInputAndIsNotStoppedByItsOwnOutput) {
  EXPECT_EQ(passwordOf(withShell("cat; echo hunter2; head -c 300000 /dev/zero"), nullptr).reveal(),
            "hunter2");
}

TEST(PasswordCommand, TellsOfItsFailureWithoutItsOutput) {
  const std::string failed = error(withShell("echo hunter2; echo hunter3 >&2; exit 4"));
  EXPECT_EQ(
      failed,
      "2 getting the password of account work from `password_command`: the command ended with status 4");
  EXPECT_THAT(error(withShell("kill -TERM $$")), HasSubstr("the command was ended by signal 15"));
  EXPECT_THAT(error(withCommand({"/nonexistent/program"})), HasSubstr("No such file or directory"));
  EXPECT_THAT(error(withShell("/nonexistent/program")), HasSubstr("the command was not found (status 127)"));
  EXPECT_THAT(error(withShell("true")), HasSubstr("its first line is empty"));
}

TEST(PasswordCommand, NeverShowsAPasswordThatIsUnfit) {
  EXPECT_THAT(error(withShell("printf 'hunter2\\t\\n'")), Not(HasSubstr("hunter2")));
}

TEST(PasswordFromTheEnvironment, IsTakenOutOfIt) {
  const test::EnvironmentVariable variable("AIRSYNC_PASSWORD", "hunter2");
  const std::optional<Password> password = takePasswordFromEnvironment();
  ASSERT_TRUE(password.has_value());
  EXPECT_EQ(password->reveal(), "hunter2");
  EXPECT_EQ(std::getenv("AIRSYNC_PASSWORD"), nullptr);
  EXPECT_FALSE(takePasswordFromEnvironment().has_value());
}

TEST(PasswordFromTheEnvironment, CountsWhereTheAccountHasNoSourceOfItsOwn) {
  const Password environment("from outside");
  EXPECT_EQ(passwordOf(withFile(""), &environment).reveal(), "from outside");
  EXPECT_EQ(passwordOf(withShell("echo from within"), &environment).reveal(), "from within");
  EXPECT_EQ(error(withFile("")),
            "2 getting the password of account work from anywhere: there is neither "
            "`password_command` nor `password_file`");
}

// Keeps S13.
TEST(PasswordFromTheEnvironment, IsWipedWhereTheSystemShowsIt) {
  std::string entry = "AIRSYNC_PASSWORD=hunter2";
  ASSERT_EQ(::putenv(entry.data()), 0);
  EXPECT_EQ(takePasswordFromEnvironment()->reveal(), "hunter2");
  EXPECT_EQ(entry, "AIRSYNC_PASSWORD=" + std::string(7, '\0'));
  EXPECT_EQ(std::getenv("AIRSYNC_PASSWORD"), nullptr);
}

}  // namespace
}  // namespace airsync
