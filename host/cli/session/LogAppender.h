// The library's log, made fit to be seen.
#ifndef AIRSYNC_CLI_SESSION_LOG_APPENDER_H
#define AIRSYNC_CLI_SESSION_LOG_APPENDER_H

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "cli/session/Secrets.h"
#include "support/Log.h"

namespace airsync {

/// What of the library's log is shown.
enum class LogDetail {
  facts,     // -v: facts of the protocol, with the values that are known to be harmless
  steps,     // -vv: every line, again with harmless values only
  contents,  // -vvv: values too, which are the contents of items; never credentials, never a Body
};

/// Turns the library's lines into lines of text, without secrets.
///
/// A value is shown only when its label is on the list of harmless ones, or at LogDetail::contents. The
/// head of a request is shown, at any detail, as its first line only; the value of a label that carries
/// credentials never, nor that of an element that holds a message's text. Beside that, wherever one of
/// `secrets` appears in a line, "***" stands in its place.
class LogAppender final : public AIRSYNC_STACK::Appender {
 public:
  using Sink = std::function<void(const std::string& line)>;

  LogAppender(LogDetail detail, std::vector<std::string> secrets, Sink sink);

  void write(const char* text) override;
  void write(unsigned char byte) override;
  void write(unsigned int number) override;
  void endEntry() override;

 private:
  std::string shownValue(const std::string& label, const std::string& value) const;
  bool showsContents() const;

  LogDetail detail_;
  std::vector<std::string> secrets_;
  Sink sink_;
  std::string element_;  // the last one that was named
  bool hasLabel_ = false;
  std::string label_;
  std::string value_;
  std::string number_;
  std::string dump_;
  std::size_t dumped_ = 0;
};

/// Registers `appender` for the sources of the library's log while it exists: for all of them, or at
/// LogDetail::facts for all but the element tree.
class LogRegistration {
 public:
  LogRegistration(LogAppender& appender, LogDetail detail);
  ~LogRegistration();
  LogRegistration(const LogRegistration&) = delete;
  LogRegistration& operator=(const LogRegistration&) = delete;
};

}  // namespace airsync

#endif
