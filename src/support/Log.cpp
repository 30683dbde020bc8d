#include "support/Log.h"

#include <new>

namespace AIRSYNC_STACK {

namespace {
const unsigned int kDumpLimit = 512;
}

Log* Log::instance = nullptr;

// As ResetTargets leaves it, so that lines may be written before the first getInstance.
Log::Target Log::targets[kSources] = {{AS_LOG_LEVEL_INFO, nullptr}, {AS_LOG_LEVEL_INFO, nullptr},
                                      {AS_LOG_LEVEL_INFO, nullptr}, {AS_LOG_LEVEL_INFO, nullptr},
                                      {AS_LOG_LEVEL_INFO, nullptr}, {AS_LOG_LEVEL_INFO, nullptr}};

Log::Log() { ResetTargets(); }

Log::~Log() {
  for (const Target& target : targets) {
    if (target.appender) {
      target.appender->write("------------------------[ end of log ]----------------------------\n");
    }
  }
  ResetTargets();
}

Log* Log::getInstance() {
  if (!instance) instance = new (std::nothrow) Log;
  return instance;
}

void Log::destroyInstance() {
  delete instance;
  instance = nullptr;
}

void Log::SetLevel(AS_LOG_MESSAGE_SOURCE_T source, AS_LOG_LEVEL_T level, Appender* appender) {
  targets[source].threshold = level;
  targets[source].appender = appender;
}

void Log::write(AS_LOG_MESSAGE_SOURCE_T source, AS_LOG_LEVEL_T level, const char* text) {
  Appender* const appender = AppenderFor(source, level);
  if (!appender) return;
  appender->write(text);
  appender->endEntry();
}

void Log::write(AS_LOG_MESSAGE_SOURCE_T source, AS_LOG_LEVEL_T level, const char* label, const char* value) {
  Appender* const appender = AppenderFor(source, level);
  if (!appender) return;
  appender->write(label);
  appender->write(value);
  appender->endEntry();
}

void Log::write(AS_LOG_MESSAGE_SOURCE_T source, AS_LOG_LEVEL_T level, const char* label,
                unsigned int number) {
  Appender* const appender = AppenderFor(source, level);
  if (!appender) return;
  appender->write(label);
  appender->write(number);
  appender->endEntry();
}

void Log::write(AS_LOG_MESSAGE_SOURCE_T source, AS_LOG_LEVEL_T level, const char* label, bool flag) {
  write(source, level, label, flag ? "TRUE" : "FALSE");
}

void Log::write(AS_LOG_MESSAGE_SOURCE_T source, AS_LOG_LEVEL_T level, const char* label,
                const unsigned char* data, unsigned int length) {
  Appender* const appender = AppenderFor(source, level);
  if (!appender || !data || length == 0) return;
  appender->write(label);
  const unsigned int shown = length < kDumpLimit ? length : kDumpLimit;
  for (unsigned int i = 0; i < shown; ++i) appender->write(data[i]);
  if (length > kDumpLimit) appender->write(" <more data>");
  appender->endEntry();
}

void Log::ResetTargets() {
  for (Target& target : targets) {
    target.threshold = AS_LOG_LEVEL_INFO;
    target.appender = nullptr;
  }
}

}  // namespace AIRSYNC_STACK
