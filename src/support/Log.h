// The library's diagnostic channel.
//
// Every line has a source (the module that writes it) and a level. For each source the host registers an
// Appender and a threshold:
//
//   Log* log = Log::getInstance();
//   log->SetLevel(AS_LOG_SOURCE_PARSER, AS_LOG_LEVEL_TRACE, &myAppender);
//   AirSync::getInstance()->Initialize(server, deviceId, transport, storage, ENCODING_WBXML, log);
//
// A line below its source's threshold, or of a source without an appender, costs a comparison. Nothing is
// formatted or allocated here: labels and values reach the appender separately. Lines are written on the
// thread that drives the library, without locking.
//
// At AS_LOG_LEVEL_INFO and below, lines carry what items hold and, at AS_LOG_LEVEL_DETAIL, the head of each
// request with its credentials: an appender that stores or shows them must leave the secrets out.
#ifndef KROAIRSYNC_SUPPORT_LOG_H
#define KROAIRSYNC_SUPPORT_LOG_H

#include "support/types.h"

namespace AIRSYNC_STACK {

enum AS_LOG_MESSAGE_SOURCE_T : int {
  AS_LOG_SOURCE_AIRSYNC = 0,
  AS_LOG_SOURCE_COMMUNICATIONS = 1,
  AS_LOG_SOURCE_GENERATOR = 2,
  AS_LOG_SOURCE_PARSER = 3,
  AS_LOG_SOURCE_RESERVED = 4,  // nothing is written under it
  AS_LOG_SOURCE_ELEMENT = 5,
};

// Higher is more important.
enum AS_LOG_LEVEL_T : int {
  AS_LOG_LEVEL_TRACE = 0,   // entry and exit
  AS_LOG_LEVEL_DETAIL = 1,  // intermediate values
  AS_LOG_LEVEL_INFO = 2,    // facts of the protocol
};

/// Where lines go. The host implements it, owns it, and keeps it alive for as long as it is registered.
/// A line is a sequence of writes, ended by endEntry. The order of the operations is fixed.
class Appender {
 public:
  virtual ~Appender() = default;
  virtual void write(const char* text) = 0;
  virtual void write(unsigned char byte) = 0;  // one byte of a dump
  virtual void write(unsigned int number) = 0;
  virtual void endEntry() = 0;
};

class AIRSYNC_API Log {
 public:
  /// The one instance. Creating it sets every source to threshold AS_LOG_LEVEL_INFO and no appender.
  static Log* getInstance();

  /// Sends the end-of-log line to the appender of each source that has one, and forgets all appenders and
  /// the instance. Without an instance it does nothing.
  static void destroyInstance();

  /// A null appender silences the source.
  static void SetLevel(AS_LOG_MESSAGE_SOURCE_T source, AS_LOG_LEVEL_T level, Appender* appender);

#ifdef AIRSYNC_INTERNALS
  /// For the library's own layers: whether lines of that source and level go anywhere.
  AIRSYNC_LOCAL static bool Writes(AS_LOG_MESSAGE_SOURCE_T source, AS_LOG_LEVEL_T level) {
    return AppenderFor(source, level) != nullptr;
  }
#endif

  // One line each. They are static, so that a line written after destroyInstance goes nowhere.
  static void write(AS_LOG_MESSAGE_SOURCE_T source, AS_LOG_LEVEL_T level, const char* text);
  static void write(AS_LOG_MESSAGE_SOURCE_T source, AS_LOG_LEVEL_T level, const char* label,
                    const char* value);
  static void write(AS_LOG_MESSAGE_SOURCE_T source, AS_LOG_LEVEL_T level, const char* label,
                    unsigned int number);
  static void write(AS_LOG_MESSAGE_SOURCE_T source, AS_LOG_LEVEL_T level, const char* label, bool flag);
  /// A dump of at most 512 bytes; without data, nothing is written.
  static void write(AS_LOG_MESSAGE_SOURCE_T source, AS_LOG_LEVEL_T level, const char* label,
                    const unsigned char* data, unsigned int length);

 private:
  struct Target {
    AS_LOG_LEVEL_T threshold;
    Appender* appender;
  };
  static const int kSources = 6;

  AIRSYNC_LOCAL Log();
  AIRSYNC_LOCAL ~Log();
  AIRSYNC_LOCAL static Appender* AppenderFor(AS_LOG_MESSAGE_SOURCE_T source, AS_LOG_LEVEL_T level);
  AIRSYNC_LOCAL static void ResetTargets();

  AIRSYNC_LOCAL static Log* instance;
  AIRSYNC_LOCAL static Target targets[kSources];
};

#ifdef AIRSYNC_INTERNALS
inline Appender* Log::AppenderFor(AS_LOG_MESSAGE_SOURCE_T source, AS_LOG_LEVEL_T level) {
  return level >= targets[source].threshold ? targets[source].appender : nullptr;
}
#endif

}  // namespace AIRSYNC_STACK

#endif
