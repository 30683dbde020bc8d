// What an answer holds that the library does not tell its host of.
#ifndef AIRSYNC_CLI_SESSION_ANSWER_WATCH_H
#define AIRSYNC_CLI_SESSION_ANSWER_WATCH_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace airsync {

/// Follows an answer's bytes as the library reads them. The library judges the document; this takes whatever
/// comes, and says of a broken document what its beginning held.
class AnswerWatch {
 public:
  /// A request goes out: nothing of its answer is known yet.
  void begin() { *this = AnswerWatch(); }
  void take(const std::uint8_t* bytes, std::size_t count);

  /// The answer is a hierarchy, be it an empty one.
  bool isHierarchy() const { return root_ == kFolders; }
  /// It says what became of an answer to a meeting request.
  bool holdsMeetingResult() const { return meetingResult_; }
  /// The status of an item that was fetched; empty when it has none.
  std::optional<int> fetchStatus() const;

 private:
  // Elements by their page and token.
  using Tag = std::uint16_t;
  static constexpr Tag kNothing = 0;
  static constexpr Tag kFetch = 0x000a;
  static constexpr Tag kStatus = 0x000e;
  static constexpr Tag kFolders = 0x0705;
  static constexpr Tag kMeetingResult = 0x080a;

  enum class State { version, number, tokens, page, text, skip };
  enum class Number { publicId, publicIndex, charset, tableLength, opaqueLength, other };

  void takeByte(std::uint8_t byte);
  void takeToken(std::uint8_t token);
  void takeText(char character);
  void openElement(std::uint8_t token);
  void expect(Number number);
  void numberRead();

  State state_ = State::version;
  Number number_ = Number::other;
  std::uint32_t value_ = 0;  // of the number, or how many bytes there are still to skip
  std::uint8_t page_ = 0;
  bool attributes_ = false;
  std::vector<Tag> open_;
  Tag root_ = kNothing;
  bool meetingResult_ = false;
  std::string fetchStatus_;
};

}  // namespace airsync

#endif
