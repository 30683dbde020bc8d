// The library's result codes in words: one table, from which everything that people read about a
// SYNC_RESULT is taken.
#ifndef AIRSYNC_CLI_RESULT_TEXT_H
#define AIRSYNC_CLI_RESULT_TEXT_H

#include <string>

#include "api/ResultCodes.h"
#include "cli/ExitCode.h"
#include "transport/TransportError.h"

namespace airsync {

struct ResultText {
  std::string name;      // as in api/ResultCodes.h, "| status" added for the families
  std::string sentence;  // what happened, without a full stop
  std::string advice;    // what to do now; empty where there is nothing to do
  ExitCode exitCode;
};

/// What was asked of the server, where the same result or status means something else for it.
enum class Asked : unsigned { other, folder, folderList, newFolder, changedFolder, deletedFolder, carriers };

/// What an operation of the library returned.
ResultText describe(AIRSYNC_STACK::SYNC_RESULT result, Asked asked = Asked::other);

ExitCode exitCodeOf(TransportErrorClass errorClass);

/// What the server answered about one item (the item family shares its numbers with the results above, so
/// the caller must know which of the two it holds). AS_RESULT_REQUEST_TOO_LARGE is the one reason that does
/// not come from the server: the change was set aside before it was sent.
ResultText describeItem(AIRSYNC_STACK::SYNC_RESULT result);

/// What the server answered about one item that was fetched; 1 is success.
ResultText describeFetch(int status);

/// What the server answered about one item that was to be moved: 3 is success, 0 that it said nothing of it.
ResultText describeMove(int status);

}  // namespace airsync

#endif
