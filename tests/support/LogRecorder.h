// All that the library logs, in one list, with the source of each line.
#ifndef TESTS_SUPPORT_LOG_RECORDER_H
#define TESTS_SUPPORT_LOG_RECORDER_H

#include <array>
#include <initializer_list>
#include <string>
#include <vector>

#include "support/LogSpy.h"

namespace airsync_test {

/// Listens to some sources, from a level on, while it lives. A line is its source's number, a blank and the
/// line as LogSpy writes it: "1 Communications::Start{".
class LogRecorder {
 public:
  LogRecorder(std::initializer_list<AIRSYNC_STACK::AS_LOG_MESSAGE_SOURCE_T> sources,
              AIRSYNC_STACK::AS_LOG_LEVEL_T level) {
    for (const AIRSYNC_STACK::AS_LOG_MESSAGE_SOURCE_T source : sources) {
      SourceSpy& spy = spies_[static_cast<std::size_t>(source)];
      spy.prefix = std::to_string(source) + " ";
      spy.lines = &lines_;
      AIRSYNC_STACK::Log::getInstance()->SetLevel(source, level, &spy);
    }
  }
  ~LogRecorder() { AIRSYNC_STACK::Log::destroyInstance(); }
  LogRecorder(const LogRecorder&) = delete;
  LogRecorder& operator=(const LogRecorder&) = delete;

  const std::vector<std::string>& Lines() const { return lines_; }
  void Clear() { lines_.clear(); }

 private:
  struct SourceSpy : LogSpy {
    void endEntry() override {
      LogSpy::endEntry();
      lines->push_back(prefix + Lines().back());
    }
    std::string prefix;
    std::vector<std::string>* lines = nullptr;
  };

  std::vector<std::string> lines_;
  std::array<SourceSpy, 6> spies_;
};

}  // namespace airsync_test

#endif
