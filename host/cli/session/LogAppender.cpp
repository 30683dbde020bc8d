#include "cli/session/LogAppender.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <fmt/core.h>
#include <utility>

#include "cli/output/Displayable.h"
#include "formats/Base64.h"

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

// A head that reaches us as one text, with its label or without.
bool looksLikeHead(std::string_view text) {
  return text.find("HTTP/1.1\r\n") != std::string_view::npos ||
         text.find("Authorization:") != std::string_view::npos;
}

}  // namespace

LogAppender::LogAppender(LogDetail detail, std::vector<std::string> secrets, Sink sink)
    : detail_(detail), secrets_(std::move(secrets)), sink_(std::move(sink)) {
  // The longest first: the password may be part of the credentials.
  std::sort(secrets_.begin(), secrets_.end(),
            [](const std::string& left, const std::string& right) { return left.size() > right.size(); });
}

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
  if (detail_ == LogDetail::contents) dump_ += fmt::format("{:02x}", byte);
}

void LogAppender::write(unsigned int number) { number_ += std::to_string(number); }

std::string LogAppender::shownValue(const std::string& label, const std::string& value) const {
  const LabelRow* row = find(label);
  const bool head = (row != nullptr && row->kind == ValueKind::head) || looksLikeHead(value);
  if (head) return value.substr(0, value.find('\r'));
  if (row != nullptr && row->kind == ValueKind::credentials) return "***";
  if (row != nullptr || detail_ == LogDetail::contents) return value;
  return value.empty() ? "" : fmt::format("({} bytes)", value.size());
}

std::string LogAppender::withoutSecrets(std::string line) const {
  for (const std::string& secret : secrets_) {
    if (secret.empty()) continue;
    for (std::size_t at = line.find(secret); at != std::string::npos; at = line.find(secret, at + 3)) {
      line.replace(at, secret.size(), "***");
    }
  }
  return line;
}

void LogAppender::endEntry() {
  std::string line = looksLikeHead(label_) ? label_.substr(0, label_.find('\r')) : label_;
  line += withoutSecrets(shownValue(label_, value_));
  line += number_;
  if (dumped_ > 0) line += detail_ == LogDetail::contents ? dump_ : fmt::format("({} bytes)", dumped_);
  while (!line.empty() && line.back() == '\n') line.pop_back();
  if (hasLabel_) sink_(displayable(withoutSecrets(std::move(line)), kLongestValue));
  hasLabel_ = false;
  label_.clear();
  value_.clear();
  number_.clear();
  dump_.clear();
  dumped_ = 0;
}

std::vector<std::string> secretsOf(const std::string& domain, const std::string& user,
                                   const std::string& password) {
  const std::string credentials = domain + "/" + user + ":" + password;
  const auto* bytes = reinterpret_cast<const std::uint8_t*>(credentials.data());
  return {password, credentials, base64Of({bytes, credentials.size()})};
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
