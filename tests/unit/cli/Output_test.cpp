#include "cli/output/Output.h"

#include <csignal>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <unistd.h>

#include "cli/ExitError.h"

namespace airsync {
namespace {

// A file that gives back what was written to it.
class Capture {
 public:
  Capture() : file_(std::tmpfile()) {}
  ~Capture() { std::fclose(file_); }
  Capture(const Capture&) = delete;
  Capture& operator=(const Capture&) = delete;

  std::FILE* file() { return file_; }
  std::string text() {
    std::fflush(file_);
    std::rewind(file_);
    std::string text(4096, '\0');
    text.resize(std::fread(text.data(), 1, text.size(), file_));
    return text;
  }

 private:
  std::FILE* file_;
};

struct Captured {
  explicit Captured(const OutputOptions& options) : output(options, results.file(), messages.file()) {
    output.line("a line");
    output.done("it is done");
    output.document({{"a", 1}});
    output.note("a note");
    output.error("it failed", "do this");
    output.progress("Contacts", 10);
  }

  Capture results;
  Capture messages;
  Output output;
};

TEST(Output, WritesResultsAndMessagesApart) {
  Captured captured({});
  EXPECT_EQ(captured.results.text(), "a line\nit is done\n");
  EXPECT_EQ(captured.messages.text(),
            "airsync: note: a note\nairsync: error: it failed\nairsync:   Do this.\n");
}

TEST(Output, WritesUnderJsonOneDocumentAndNoLines) {
  Captured captured({.json = true});
  EXPECT_EQ(captured.results.text(), "{\n  \"a\": 1\n}\n");
  EXPECT_THAT(captured.messages.text(), testing::HasSubstr("it failed"));
}

TEST(Output, TellsWhenItIsQuietOfResultsAndErrorsOnly) {
  Captured captured({.quiet = true});
  EXPECT_EQ(captured.results.text(), "a line\n");
  EXPECT_EQ(captured.messages.text(), "airsync: error: it failed\nairsync:   Do this.\n");
}

TEST(Output, WritesNoColoursAndNoProgressIntoAFile) {
  Captured captured({});
  EXPECT_EQ(captured.messages.text().find('\x1b'), std::string::npos);
}

TEST(Output, ReplacesWhatIsNoUtf8InADocument) {
  Capture results;
  Capture messages;
  Output output({.json = true}, results.file(), messages.file());
  output.document({{"a", "\xff"}});
  EXPECT_EQ(results.text(), "{\n  \"a\": \"\xef\xbf\xbd\"\n}\n");
}

TEST(Output, KnowsWhenAResultCouldNotBeWritten) {
  std::FILE* full = std::fopen("/dev/full", "w");
  ASSERT_NE(full, nullptr);
  Capture messages;
  Output output({}, full, messages.file());
  output.line("lost");
  EXPECT_FALSE(output.flush());
  std::fclose(full);
}

TEST(Output, IsContentWithAReaderThatLeavesEarly) {
  int ends[2] = {};
  ASSERT_EQ(::pipe(ends), 0);
  ::close(ends[0]);
  std::signal(SIGPIPE, SIG_IGN);
  std::FILE* pipe = ::fdopen(ends[1], "w");
  Capture messages;
  Output output({}, pipe, messages.file());
  output.line("lost");
  EXPECT_TRUE(output.flush());
  std::fclose(pipe);
}

TEST(Output, MakesTheStoryOfAnErrorDisplayable) {
  ErrorStory story;
  story.operation = "showing";
  story.subject = "folder \x1b[2J";
  story.cause = "it is\ngone";
  EXPECT_EQ(sentenceOf(Error(story)), "showing folder \\x1b[2J: it is\\x0agone");
  EXPECT_EQ(sentenceOf(ExitError(ExitCode::kUsage, "just this")), "just this");
}

TEST(Output, MakesASentenceOfAnAdvice) {
  EXPECT_EQ(asSentence("run it again"), "Run it again.");
  EXPECT_EQ(asSentence("Run it again."), "Run it again.");
  EXPECT_EQ(asSentence(""), "");
}

TEST(Table, AlignsColumnsByCharactersAndLeavesNoSpacesAtTheEnd) {
  Capture results;
  Capture messages;
  Output output({}, results.file(), messages.file());
  Table table({"A", "B", "C"});
  table.add({"\xc3\xbc\xc3\xbc\xc3\xbc", "x", ""});
  table.add({"a", "yy", "z"});
  table.print(output);
  EXPECT_EQ(results.text(), "A    B   C\n\xc3\xbc\xc3\xbc\xc3\xbc  x\na    yy  z\n");
}

// Keeps S18.
TEST(Output, WritesNothingIntoADocumentThatDrivesTheTerminal) {
  Capture results;
  Capture messages;
  Output output({.json = true}, results.file(), messages.file());
  const std::string hostile =
      "\x1b[31m\x7f\xc2\x9b"
      "2J\xe2\x80\xae\xff";
  output.document({{"name", hostile}});
  const std::string text = results.text();
  EXPECT_EQ(text, "{\n  \"name\": \"\\u001b[31m\\u007f\\u009b2J\\u202e\xef\xbf\xbd\"\n}\n");
}

}  // namespace
}  // namespace airsync
