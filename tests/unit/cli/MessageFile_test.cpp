#include "cli/message/MessageFile.h"

#include <chrono>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <sys/mman.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>
#include <utility>

#include "unit/cli/Support.h"

namespace airsync {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;

constexpr char kMessage[] = "To: ann@example.com\r\nSubject: Tea\r\n\r\nAt four.\r\n";

std::string textOf(const MessageFile& file) {
  return {reinterpret_cast<const char*>(file.bytes().data()), file.bytes().size()};
}

// Standard input that reads from a pipe with this text in it.
class StandardInput {
 public:
  explicit StandardInput(const std::string& text) : before_(::dup(STDIN_FILENO)) {
    int ends[2] = {};
    if (::pipe(ends) != 0) throw std::runtime_error("pipe failed");
    ::dup2(ends[0], STDIN_FILENO);
    ::close(ends[0]);
    writer_ = std::thread([end = ends[1], text] {
      for (std::size_t at = 0; at < text.size();) {
        const ssize_t count = ::write(end, text.data() + at, text.size() - at);
        if (count <= 0) break;
        at += static_cast<std::size_t>(count);
      }
      ::close(end);
    });
  }
  ~StandardInput() {
    ::dup2(before_, STDIN_FILENO);  // closes the reading end: a writer that is left over stops
    ::close(before_);
    writer_.join();
  }
  StandardInput(const StandardInput&) = delete;
  StandardInput& operator=(const StandardInput&) = delete;

 private:
  int before_;
  std::thread writer_;
};

TEST(MessageFile, HoldsTheBytesOfARegularFile) {
  const test::TemporaryDirectory directory;
  const std::string name = directory.write("letter.eml", kMessage);
  const MessageFile file(name);
  EXPECT_EQ(textOf(file), kMessage);
  EXPECT_EQ(file.name(), name);
  EXPECT_FALSE(file.changed());
}

TEST(MessageFile, SpoolsStandardInput) {
  const std::string message = kMessage + std::string(200'000, 'x');
  const StandardInput input(message);
  const MessageFile file("-");
  EXPECT_EQ(textOf(file), message);
  EXPECT_EQ(file.name(), "the message from standard input");
  EXPECT_FALSE(file.changed());
}

// What is left when the process is killed in between.
TEST(MessageFile, SpoolsIntoAFileWithoutAName) {
  const test::TemporaryDirectory directory;
  const test::EnvironmentVariable variable("TMPDIR", directory.path().c_str());
  const StandardInput input(kMessage);
  const MessageFile file("-");
  EXPECT_EQ(textOf(file), kMessage);
  EXPECT_TRUE(std::filesystem::is_empty(directory.path()));
}

TEST(MessageFile, SpoolsAPipeWithAName) {
  const test::TemporaryDirectory directory;
  const std::string name = (directory.path() / "pipe").string();
  ASSERT_EQ(::mkfifo(name.c_str(), 0600), 0);
  std::thread writer([&] { std::ofstream(name) << kMessage; });
  const MessageFile file(name);
  writer.join();
  EXPECT_EQ(textOf(file), kMessage);
}

TEST(MessageFile, TakesExactlyTheLargestAndNoByteMore) {
  const test::TemporaryDirectory directory;
  const std::string largest = "A: b" + std::string(1'048'572, ' ');
  const std::string fits = directory.write("fits", largest);
  const std::string tooLarge = directory.write("large", largest + " ");
  constexpr std::size_t kLimit = 1'048'576;
  EXPECT_EQ(MessageFile(fits, kLimit).bytes().size(), kLimit);
  EXPECT_EQ(test::errorOf([&] { MessageFile(tooLarge, kLimit); }),
            "1 reading " + tooLarge + ": it is larger than 1 MiB");
  const StandardInput input(largest + " ");
  EXPECT_EQ(test::errorOf([&] { MessageFile("-", kLimit); }),
            "1 reading the message from standard input: it is larger than 1 MiB");
}

TEST(MessageFile, RefusesWhatIsMissingEmptyADirectoryOrNoMessage) {
  const test::TemporaryDirectory directory;
  const std::string missing = (directory.path() / "missing").string();
  EXPECT_EQ(test::errorOf([&] { MessageFile{missing}; }),
            "1 reading " + missing + ": No such file or directory");
  const std::string empty = directory.write("empty", "");
  EXPECT_EQ(test::errorOf([&] { MessageFile{empty}; }), "1 reading " + empty + ": it is empty");
  EXPECT_THAT(test::errorOf([&] { MessageFile{directory.path().string()}; }), HasSubstr("it is a directory"));
  const std::string prose = directory.write("prose", "Dear Ann, tea is at four.\n");
  EXPECT_EQ(test::errorOf([&] { MessageFile{prose}; }),
            "1 reading " + prose + ": it does not begin with a header line");
}

TEST(MessageFile, NoticesThatTheFileWasChanged) {
  const test::TemporaryDirectory directory;
  const std::string name = directory.write("letter.eml", kMessage);
  const MessageFile file(name);
  directory.write("letter.eml", std::string(kMessage) + "P.S.");
  EXPECT_TRUE(file.changed());
}

TEST(MessageFile, KnowsAHeaderLine) {
  for (const char* good : {"To: ann", "X-Odd_Name!:", "a:b"}) EXPECT_EQ(whyNoMessage(good), "") << good;
  for (const char* bad : {"", ":", " To: ann", "To ann: x", "To", "\r\nTo: x", "T\xc3\xb6: x"}) {
    EXPECT_EQ(whyNoMessage(bad), "it does not begin with a header line") << bad;
  }
  EXPECT_THAT(whyNoMessage("From ann@example.com Sat Nov 21\nTo: x"), HasSubstr("mailbox file"));
}

TEST(MessageFileDeathTest, EndsTheProcessWithASentenceWhenTheFileBecomesShorter) {
  const test::TemporaryDirectory directory;
  const std::string name = directory.write("letter.eml", kMessage + std::string(100'000, 'x'));
  EXPECT_EXIT(
      {
        const MessageFile file(name);
        if (::truncate(name.c_str(), 100) != 0) ::_exit(99);
        volatile unsigned char last = file.bytes().back();
        ::_exit(last);
      },
      testing::ExitedWithCode(8), "the file became shorter meanwhile; the message did not go out");
}

TEST(MessageFileDeathTest, LeavesBusErrorsOfOtherMappingsAlone) {
  const test::TemporaryDirectory directory;
  const std::string name = directory.write("letter.eml", kMessage);
  const std::string other = directory.write("other", std::string(100'000, 'x'));
  EXPECT_EXIT(
      {
        const MessageFile file(name);
        const int descriptor = ::open(other.c_str(), O_RDONLY);
        void* mapping = ::mmap(nullptr, 100'000, PROT_READ, MAP_PRIVATE, descriptor, 0);
        if (::truncate(other.c_str(), 0) != 0) ::_exit(99);
        volatile char first = *static_cast<char*>(mapping);
        ::_exit(first);
      },
      testing::KilledBySignal(SIGBUS), "");
}

}  // namespace
}  // namespace airsync
