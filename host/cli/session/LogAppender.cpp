#include "cli/session/LogAppender.h"

#include <algorithm>
#include <array>
#include <fmt/core.h>
#include <utility>

#include "cli/output/Displayable.h"

namespace airsync {

namespace {

using namespace AIRSYNC_STACK;

enum class ValueKind { harmless, head, credentials };

struct LabelRow {
  std::string_view label;
  ValueKind kind;
};

// Labels whose values are not contents of items. Every other value counts as contents.
constexpr LabelRow kLabels[] = {
    {"Device Id is: ", ValueKind::harmless},
    {"Version: ", ValueKind::harmless},
    {"begin sync db: ", ValueKind::harmless},
    {"current SyncKey:", ValueKind::harmless},
    {"current Element Name:", ValueKind::harmless},
    {"In <MoreAva.>", ValueKind::harmless},
    {"Element Tag: ", ValueKind::harmless},
    {"Serialize Element Tag: ", ValueKind::harmless},
    {"Communications::Prologue, http header now is ", ValueKind::head},
    {"base64 encoded text: ", ValueKind::credentials},
    {"base64 decoded text: ", ValueKind::credentials},
};

// Values follow their element's name, each in an entry of its own.
constexpr std::string_view kElementLabels[] = {
    "Element Tag: ", "Serialize Element Tag: ", "current Element Name:"};
constexpr std::string_view kBodyElements[] = {"Body", "CompressedRTF", "CompressedRtf"};

constexpr std::size_t kLongestValue = 400;
// What each source tells at LogDetail::facts; a line per element would bury the facts.
struct SourceRow {
  AS_LOG_MESSAGE_SOURCE_T source;
  bool tellsFacts;
};

constexpr SourceRow kSources[] = {
    {AS_LOG_SOURCE_AIRSYNC, true}, {AS_LOG_SOURCE_COMMUNICATIONS, true}, {AS_LOG_SOURCE_GENERATOR, true},
    {AS_LOG_SOURCE_PARSER, true},  {AS_LOG_SOURCE_RESERVED, false},      {AS_LOG_SOURCE_ELEMENT, false},
};

const LabelRow* find(std::string_view label) {
  const auto* row = std::find_if(std::begin(kLabels), std::end(kLabels),
                                 [label](const LabelRow& r) { return r.label == label; });
  return row == std::end(kLabels) ? nullptr : row;
}

template <std::size_t size>
bool isAmong(const std::string_view (&texts)[size], std::string_view text) {
  return std::find(std::begin(texts), std::end(texts), text) != std::end(texts);
}

// A head that reaches us as one text, with its label or without.
bool looksLikeHead(std::string_view text) {
  return text.find("HTTP/1.1\r\n") != std::string_view::npos ||
         text.find("Authorization:") != std::string_view::npos;
}

}  // namespace

LogAppender::LogAppender(LogDetail detail, std::vector<std::string> secrets, Sink sink)
    : detail_(detail), secrets_(std::move(secrets)), sink_(std::move(sink)) {}

void LogAppender::write(const char* text) {
  if (hasLabel_) {
    value_ += text;
    return;
  }
  label_ = text;
  hasLabel_ = true;
}

void LogAppender::write(unsigned char byte) {
  ++dumped_;
  if (showsContents()) dump_ += fmt::format("{:02x}", byte);
}

void LogAppender::write(unsigned int number) { number_ += std::to_string(number); }

std::string LogAppender::shownValue(const std::string& label, const std::string& value) const {
  const LabelRow* row = find(label);
  const bool head = (row != nullptr && row->kind == ValueKind::head) || looksLikeHead(value);
  if (head) return value.substr(0, value.find('\r'));
  if (row != nullptr && row->kind == ValueKind::credentials) return "***";
  if (row != nullptr || showsContents()) return value;
  return value.empty() ? "" : fmt::format("({} bytes)", value.size());
}

bool LogAppender::showsContents() const {
  return detail_ == LogDetail::contents && !isAmong(kBodyElements, element_);
}

void LogAppender::endEntry() {
  std::string line = looksLikeHead(label_) ? label_.substr(0, label_.find('\r')) : label_;
  line += withoutSecrets(shownValue(label_, value_), secrets_);
  line += number_;
  if (dumped_ > 0) line += showsContents() ? dump_ : fmt::format("({} bytes)", dumped_);
  while (!line.empty() && line.back() == '\n') line.pop_back();
  if (hasLabel_) sink_(displayable(withoutSecrets(line, secrets_), kLongestValue));
  if (isAmong(kElementLabels, label_)) element_ = value_;
  hasLabel_ = false;
  label_.clear();
  value_.clear();
  number_.clear();
  dump_.clear();
  dumped_ = 0;
}

LogRegistration::LogRegistration(LogAppender& appender, LogDetail detail) {
  const AS_LOG_LEVEL_T level = detail == LogDetail::facts ? AS_LOG_LEVEL_INFO : AS_LOG_LEVEL_TRACE;
  Log::getInstance();
  for (const SourceRow& row : kSources) {
    const bool shown = row.tellsFacts || detail != LogDetail::facts;
    Log::SetLevel(row.source, level, shown ? &appender : nullptr);
  }
}

LogRegistration::~LogRegistration() {
  for (const SourceRow& row : kSources) Log::SetLevel(row.source, AS_LOG_LEVEL_INFO, nullptr);
  Log::destroyInstance();
}

}  // namespace airsync
