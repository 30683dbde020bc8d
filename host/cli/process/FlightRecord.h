// What a process that works on an account is doing, told where another process can still read it when the
// first one has died.
#ifndef AIRSYNC_CLI_PROCESS_FLIGHT_RECORD_H
#define AIRSYNC_CLI_PROCESS_FLIGHT_RECORD_H

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace airsync {

/// A text of limited length in memory that two processes share. Reading it never leaves its room, whatever
/// became of the process that wrote it.
template <std::size_t size>
class SharedText {
 public:
  void set(std::string_view text) {
    const std::size_t length = text.copy(room_.data(), size - 1);
    room_[length] = '\0';
  }
  std::string get() const {
    const std::string_view all(room_.data(), size);
    return std::string(all.substr(0, all.find('\0')));
  }

 private:
  std::array<char, size> room_{};
};

enum class Step { beginning, connecting, sending, waiting, reading, storing };

/// No member may point anywhere: the two processes share its bytes and nothing else.
struct FlightRecord {
  Step step = Step::beginning;
  SharedText<32> command;  // of the exchange under way, as the request line names it
  SharedText<128> folderId;
  SharedText<512> folder;  // its path; empty when it is about the whole account
  SharedText<256> assertion;
  SharedText<128> assertionFile;
  unsigned assertionLine = 0;
};

/// The command that a request's head names.
std::string_view commandIn(std::string_view head);

}  // namespace airsync

#endif
