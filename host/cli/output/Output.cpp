#include "cli/output/Output.h"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstdlib>
#include <fmt/core.h>
#include <nlohmann/json.hpp>
#include <spdlog/logger.h>
#include <spdlog/sinks/stdout_sinks.h>
#include <unistd.h>

#include "cli/output/Displayable.h"

namespace airsync {

namespace {

constexpr std::string_view kRed = "\x1b[31m";
constexpr std::string_view kYellow = "\x1b[33m";
constexpr std::string_view kPlain = "\x1b[0m";
constexpr std::string_view kClearLine = "\r\x1b[K";

// Whether it could be written is asked once, at the end.
void put(std::FILE* file, std::string_view text) {
  static_cast<void>(std::fwrite(text.data(), 1, text.size(), file));
}

bool isTerminal(std::FILE* file) { return ::isatty(::fileno(file)) == 1; }

bool wantsColour(std::FILE* file) {
  const char* no = std::getenv("NO_COLOR");
  const char* terminal = std::getenv("TERM");
  const bool dumb = terminal == nullptr || std::string_view(terminal) == "dumb";
  return isTerminal(file) && !dumb && (no == nullptr || *no == '\0');
}

std::shared_ptr<spdlog::logger> makeLog() {
  auto logger =
      std::make_shared<spdlog::logger>("airsync", std::make_shared<spdlog::sinks::stderr_sink_st>());
  logger->set_pattern("%H:%M:%S.%e %v");
  logger->flush_on(spdlog::level::info);
  return logger;
}

}  // namespace

Output::Output(const OutputOptions& options, std::FILE* results, std::FILE* messages)
    : options_(options), results_(results), messages_(messages), colour_(wantsColour(messages)) {
  terminal_ = isTerminal(messages) && !options.json && !options.quiet && options.verbosity == 0;
}

void Output::putResult(std::string_view text) {
  if (readerLeft_) return;
  errno = 0;
  put(results_, text);
  readerLeft_ = std::ferror(results_) != 0 && errno == EPIPE;
}

void Output::line(std::string_view text) {
  if (options_.json) return;
  endProgress();
  putResult(fmt::format("{}\n", text));
}

void Output::done(std::string_view text) {
  if (!options_.quiet) line(text);
}

void Output::document(const nlohmann::ordered_json& json) {
  if (!options_.json) return;
  constexpr int kIndent = 2;
  putResult(
      displayableJson(json.dump(kIndent, ' ', false, nlohmann::ordered_json::error_handler_t::replace)) +
      "\n");
}

void Output::bytes(std::string_view content) {
  endProgress();
  putResult(content);
}

void Output::message(std::string_view kind, std::string_view colour, std::string_view text) {
  endProgress();
  const std::string mark = colour_ ? fmt::format("{}{}{}", colour, kind, kPlain) : std::string(kind);
  put(messages_, fmt::format("airsync: {}{}\n", mark, text));
}

void Output::note(std::string_view text) {
  if (!options_.quiet) message("note: ", kYellow, text);
}

void Output::error(const Error& error) { this->error(sentenceOf(error), displayable(error.advice())); }

void Output::error(std::string_view what, std::string_view advice) {
  message("error: ", kRed, what);
  if (!advice.empty()) put(messages_, fmt::format("airsync:   {}\n", asSentence(advice)));
}

void Output::log(std::string_view text) {
  endProgress();
  if (!log_) log_ = makeLog();
  log_->info("{}", text);
}

void Output::progress(std::string_view what, std::size_t count) {
  constexpr std::size_t kItemsPerStep = 10;
  if (!terminal_ || (drawn_ && count % kItemsPerStep != 0)) return;
  // How many items will come is not known: the block wanders along the bar as they do.
  constexpr std::size_t kWidth = 20;
  std::string bar(kWidth, ' ');
  bar[(count / kItemsPerStep) % kWidth] = '#';
  drawBar(what, bar, fmt::format("{} items", count));
}

void Output::progressBytes(std::string_view what, std::uint64_t done, std::uint64_t total) {
  if (!terminal_ || total == 0) return;
  constexpr std::uint64_t kWidth = 20;
  constexpr double kMebibyte = 1024.0 * 1024.0;
  const std::uint64_t filled = std::min(done, total) * kWidth / total;
  drawBar(what, std::string(filled, '#') + std::string(kWidth - filled, ' '),
          fmt::format("{:.1f} of {:.1f} MiB", static_cast<double>(done) / kMebibyte,
                      static_cast<double>(total) / kMebibyte));
}

void Output::drawBar(std::string_view what, const std::string& bar, const std::string& state) {
  constexpr std::size_t kColumns = 40;
  put(messages_, fmt::format("{}{} [{}] {}", kClearLine, displayable(what, kColumns), bar, state));
  static_cast<void>(std::fflush(messages_));
  drawn_ = true;
}

void Output::endProgress() {
  if (!drawn_) return;
  put(messages_, kClearLine);
  drawn_ = false;
}

bool Output::flush() {
  endProgress();
  static_cast<void>(std::fflush(messages_));
  errno = 0;
  if (std::fflush(results_) != 0 && errno == EPIPE) readerLeft_ = true;
  return readerLeft_ || std::ferror(results_) == 0;
}

std::string sentenceOf(const Error& error) {
  const ErrorStory& story = error.story();
  std::string text = story.operation;
  if (!story.subject.empty()) text += (text.empty() ? "" : " ") + story.subject;
  if (!text.empty()) text += ": ";
  return displayable(text + story.cause);
}

std::string asSentence(std::string_view text) {
  std::string sentence(text);
  if (sentence.empty()) return sentence;
  sentence.front() = static_cast<char>(std::toupper(static_cast<unsigned char>(sentence.front())));
  if (sentence.back() != '.') sentence += '.';
  return sentence;
}

void Table::print(Output& output) const {
  std::vector<std::size_t> widths(rows_.front().size(), 0);
  for (const Row& row : rows_) {
    for (std::size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], columnsOf(row[i]));
  }
  for (const Row& row : rows_) {
    std::string text;
    for (std::size_t i = 0; i < row.size(); ++i) {
      text += row[i];
      if (i + 1 < row.size()) text += std::string(widths[i] - columnsOf(row[i]) + 2, ' ');
    }
    while (!text.empty() && text.back() == ' ') text.pop_back();
    output.line(text);
  }
}

}  // namespace airsync
