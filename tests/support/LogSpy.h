// An appender that keeps what it is told.
#ifndef TESTS_SUPPORT_LOG_SPY_H
#define TESTS_SUPPORT_LOG_SPY_H

#include <string>
#include <vector>

#include "support/Log.h"

namespace airsync_test {

/// Keeps each line as the text of its writes, joined by "|": "text", "<42>" a number, "[0A]" a byte of a
/// dump. What was written without an end of line is in `Pending`.
class LogSpy : public AIRSYNC_STACK::Appender {
 public:
  void write(const char* text) override { Add(text == nullptr ? "(null)" : text); }

  void write(unsigned char byte) override {
    const char* const digits = "0123456789ABCDEF";
    Add(std::string("[") + digits[byte >> 4] + digits[byte & 15] + "]");
  }

  void write(unsigned int number) override {
    Add(std::string("<").append(std::to_string(number)).append(">"));
  }

  void endEntry() override {
    lines_.push_back(pending_);
    pending_.clear();
    anything_ = false;
  }

  const std::vector<std::string>& Lines() const { return lines_; }
  const std::string& Pending() const { return pending_; }
  void Clear() {
    lines_.clear();
    pending_.clear();
    anything_ = false;
  }

 private:
  void Add(const std::string& piece) {
    if (anything_) pending_ += "|";
    pending_ += piece;
    anything_ = true;
  }

  std::vector<std::string> lines_;
  std::string pending_;
  bool anything_ = false;
};

}  // namespace airsync_test

#endif
