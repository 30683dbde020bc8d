// Habits of servers that clients must cope with, each switched on by its name. None is on unless it is asked
// for: then the server does what the protocol's documentation says.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace demoserver {

struct Habits {
  bool repeatedKeyAnswersStored = false;
  bool repeatedKeyRunsAgain = false;
  bool repeatedKeyRefused = false;
  bool batchHalfStored = false;
  bool culpritFails = false;
  bool ownAdditionsUntold = false;
  bool changeMeansHeld = false;
  bool conflictClientWins = false;
  bool conflictLastWriteWins = false;
  bool conflictServerWins = false;
  bool movesUntold = false;
  bool keyForgottenAtChange = false;
  bool unnamedFieldsCleared = false;
  bool zonesAndRulesRewritten = false;
  bool unknownPageInAnswers = false;
  bool emptyWhenIdle = false;
  bool noCollectionsWhenIdle = false;
  bool moreForever = false;
  bool answerSuccesses = false;
  bool closeAfterAnswer = false;
};

// Of the habits of one choice, one at most is on: the one that was switched on last.
enum class Choice : std::uint8_t { None, RepeatedKey, Conflict, IdleAnswer };

struct Habit {
  std::string_view name;
  bool Habits::*field;
  Choice choice;
  std::string_view sentence;
};

// What culprit-fails-with-501 looks for.
inline constexpr std::string_view kCulprit = "culprit";

inline constexpr std::array<Habit, 20> kHabits = {{
    {"repeated-key-answers-stored", &Habits::repeatedKeyAnswersStored, Choice::RepeatedKey,
     "A request under the key before the current one gets the stored answer to the first, whatever it holds: "
     "what is new in it is lost."},
    {"repeated-key-runs-again", &Habits::repeatedKeyRunsAgain, Choice::RepeatedKey,
     "A request under the key before the current one is run again, its Adds included: client ids are not "
     "recognised."},
    {"repeated-key-refused", &Habits::repeatedKeyRefused, Choice::RepeatedKey,
     "A request under the key before the current one gets status 3."},
    {"half-batch-stored-then-501", &Habits::batchHalfStored, Choice::None,
     "Of a request with several commands the first half is stored; then the answer is HTTP 501, and the key "
     "stays. A single command goes through."},
    {"culprit-fails-with-501", &Habits::culpritFails, Choice::None,
     "At a command for an item with the text \"culprit\" in it, here or there, the answer is HTTP 501, and "
     "the key stays; what stands before it in the request is stored."},
    {"own-additions-untold", &Habits::ownAdditionsUntold, Choice::None,
     "An item that a device added is never sent to it, not even after key 0 or a lost answer; later changes "
     "of it are."},
    {"change-means-held", &Habits::changeMeansHeld, Choice::None,
     "A Change of an item that the device was not sent is taken, and the item counts as sent."},
    {"conflict-client-wins", &Habits::conflictClientWins, Choice::Conflict,
     "The client's change is taken, whatever the Conflict option says; what was deleted here comes back."},
    {"conflict-last-write-wins", &Habits::conflictLastWriteWins, Choice::Conflict,
     "What arrives last is taken, whatever the Conflict option says; what was deleted here stays so."},
    {"conflict-server-wins", &Habits::conflictServerWins, Choice::Conflict,
     "The server's version stands, whatever the Conflict option says."},
    {"moves-untold", &Habits::movesUntold, Choice::None,
     "The device that asked for a MoveItems is sent neither the Delete nor the Add."},
    {"key-forgotten-at-change", &Habits::keyForgottenAtChange, Choice::None,
     "The first request of a device that brings changes to a folder gets status 3, and the folder's key is "
     "forgotten; once for each folder."},
    {"unnamed-fields-cleared", &Habits::unnamedFieldsCleared, Choice::None,
     "A Change clears every field of a contact or event that it does not name, whatever Supported said."},
    {"zones-and-rules-rewritten", &Habits::zonesAndRulesRewritten, Choice::None,
     "An event of a client is stored without the names in its zone, with an Interval in its rule, and "
     "\"daily on weekdays\" as weekly; the client is not told."},
    {"unknown-page-in-answers", &Habits::unknownPageInAnswers, Choice::None,
     "Every ApplicationData of a Sync answer begins with an element of code page 17."},
    {"empty-when-idle", &Habits::emptyWhenIdle, Choice::IdleAnswer,
     "A Sync with nothing to say gets status 200 without a body, and the key stays."},
    {"no-collections-when-idle", &Habits::noCollectionsWhenIdle, Choice::IdleAnswer,
     "A Sync with nothing to say gets a document without Collections, and the key stays."},
    {"more-forever", &Habits::moreForever, Choice::None,
     "Every Sync answer says MoreAvailable; with nothing to say the key stays."},
    {"answer-successes", &Habits::answerSuccesses, Choice::None,
     "Changes and Deletes that succeed are answered, too, not only Adds and failures."},
    {"close-after-answer", &Habits::closeAfterAnswer, Choice::None,
     "Every answer says Connection: close, and the connection ends with it."},
}};

// False when there is no habit of this name.
bool setHabit(Habits& habits, std::string_view name, bool on);

}  // namespace demoserver
