// Everything that airsync says: results on standard output, everything else on standard error.
#ifndef AIRSYNC_CLI_OUTPUT_OUTPUT_H
#define AIRSYNC_CLI_OUTPUT_OUTPUT_H

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "support/Error.h"

namespace spdlog {
class logger;
}

namespace airsync {

struct OutputOptions {
  bool json = false;
  bool quiet = false;
  int verbosity = 0;
};

/// Lines for people and documents for machines. Texts that come from elsewhere pass `displayable` before
/// they are handed in; JSON is made safe here.
class Output {
 public:
  explicit Output(const OutputOptions& options) : Output(options, stdout, stderr) {}
  Output(const OutputOptions& options, std::FILE* results, std::FILE* messages);

  bool json() const { return options_.json; }
  int verbosity() const { return options_.verbosity; }

  /// A line of the result. Nothing under --json.
  void line(std::string_view text);
  /// What was done, as long as nobody asked for silence: a line of the result, nothing under --json or -q.
  void done(std::string_view text);
  /// The whole result, under --json; nothing otherwise.
  void document(const nlohmann::ordered_json& json);

  /// A result that is no text, as it stands; nothing else is written to standard output then.
  void bytes(std::string_view content);

  /// Something that people should know but that is no failure; nothing under -q.
  void note(std::string_view text);
  /// What failed, and what to do now.
  void error(const Error& error);
  void error(std::string_view what, std::string_view advice);
  /// A line of the log, after the time.
  void log(std::string_view text);

  /// The state of something that takes long: drawn over the last one on a terminal, nothing elsewhere, and
  /// nothing under --json, -q and -v.
  void progress(std::string_view what, std::size_t count);
  /// The same for bytes, of which `total` are known to come or go.
  void progressBytes(std::string_view what, std::uint64_t done, std::uint64_t total);
  void endProgress();
  /// Another process, which has died, may have left its progress on the terminal.
  void takeOverTerminal() { drawn_ = terminal_; }

  /// Writes out what is buffered. Returns whether all results that somebody wanted to read could be written:
  /// a reader that leaves early, as head(1) does, has had enough.
  bool flush();

 private:
  void putResult(std::string_view text);
  void drawBar(std::string_view what, const std::string& bar, const std::string& state);
  void message(std::string_view kind, std::string_view colour, std::string_view text);

  OutputOptions options_;
  std::FILE* results_;
  std::FILE* messages_;
  bool colour_ = false;
  bool terminal_ = false;
  bool drawn_ = false;
  bool readerLeft_ = false;
  std::shared_ptr<spdlog::logger> log_;  // made with its first line
};

/// "what: ..." of an error without the advice, made displayable.
std::string sentenceOf(const Error& error);

/// The text as a sentence: with a capital letter in front and a full stop at its end.
std::string asSentence(std::string_view text);

/// A list as people read it: padded columns, two spaces between them.
class Table {
 public:
  using Row = std::vector<std::string>;
  explicit Table(Row head) : rows_{std::move(head)} {}
  void add(Row row) { rows_.push_back(std::move(row)); }
  void print(Output& output) const;

 private:
  std::vector<Row> rows_;
};

}  // namespace airsync

#endif
