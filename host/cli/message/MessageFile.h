// The bytes of a message that is to be sent.
#ifndef AIRSYNC_CLI_MESSAGE_MESSAGE_FILE_H
#define AIRSYNC_CLI_MESSAGE_MESSAGE_FILE_H

#include <cstddef>
#include <ctime>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <sys/types.h>

#include "cli/config/Descriptor.h"
#include "cli/message/ShrinkGuard.h"

namespace airsync {

/// A message, mapped: it is sent from where it lies, and never copied in memory. A regular file is mapped
/// itself; what comes from standard input, or from a pipe with a name, is first written to a temporary file
/// that has no name.
///
/// Somebody may change a file while it is sent. `changed` tells; the sender asks it before each piece, and
/// gives up. A file that becomes shorter in the instant between the question and the sending would end the
/// process by a signal; ShrinkGuard makes that an end with a sentence and an exit code. In both cases the
/// server has less than was announced to it, and drops it.
class MessageFile {
 public:
  static constexpr std::size_t kLargest = std::size_t{50} * 1024 * 1024;

  /// `file` is a name, or "-" for standard input. Throws ExitError(kUsage) for what can't be read, is empty,
  /// larger than `largest` or no message (see whyNoMessage), ExitError(kInterrupted) when somebody asks to
  /// stop while standard input is read.
  explicit MessageFile(const std::string& file, std::size_t largest = kLargest);
  ~MessageFile();
  MessageFile(const MessageFile&) = delete;
  MessageFile& operator=(const MessageFile&) = delete;

  std::span<const unsigned char> bytes() const { return {data_, size_}; }

  /// Whether the file is another one than when it was opened: its size, or the time of its last change.
  bool changed() const;

  /// As people know it: "letter.eml", "the message from standard input".
  const std::string& name() const { return name_; }

 private:
  void open(const std::string& file, std::size_t largest);
  void map(std::size_t largest);
  [[noreturn]] void fail(const std::string& cause, const std::string& advice) const;

  std::string name_;
  Descriptor file_;
  const unsigned char* data_ = nullptr;
  std::size_t size_ = 0;
  timespec time_{};
  std::optional<ShrinkGuard> guard_;
};

/// Why these bytes are no Internet message; empty when they may be one: they begin with a header line, a name
/// of visible characters and a colon.
std::string whyNoMessage(std::string_view bytes);

}  // namespace airsync

#endif
