// The one error type of the host: an exception that carries the whole story.
#ifndef AIRSYNC_HOST_SUPPORT_ERROR_H
#define AIRSYNC_HOST_SUPPORT_ERROR_H

#include <stdexcept>
#include <string>
#include <utility>

#include "api/ResultCodes.h"

namespace airsync {

// How much is lost, from the least to the most: one item (the others go on), one folder (the other folders go
// on), the account (nothing more can be done in this run), or nothing at all, because somebody asked to stop.
enum class ErrorKind { item, folder, account, cancelled };

// What a person needs to know. Each part may be empty but `operation` and `cause`.
struct ErrorStory {
  ErrorKind kind = ErrorKind::account;
  std::string operation;  // "opening the store", "storing a contact"
  std::string subject;    // the folder, item or file that it was about, ready to be shown
  std::string cause;      // what went wrong, without a final period
  std::string advice;     // what to do now: one sentence, with its period
  AIRSYNC_STACK::SYNC_RESULT result =
      AIRSYNC_STACK::AS_RESULT_OK;  // the library's result, where there is one
};

/// Thrown by everything in host/. what() is one line without the advice: "operation subject: cause".
class Error : public std::runtime_error {
 public:
  explicit Error(ErrorStory story) : std::runtime_error(sentence(story)), story_(std::move(story)) {}

  ErrorKind kind() const { return story_.kind; }
  const std::string& advice() const { return story_.advice; }
  const ErrorStory& story() const { return story_; }

 private:
  static std::string sentence(const ErrorStory& story) {
    std::string text = story.operation;
    if (!story.subject.empty()) text += " " + story.subject;
    return text + ": " + story.cause;
  }

  ErrorStory story_;
};

}  // namespace airsync

#endif
