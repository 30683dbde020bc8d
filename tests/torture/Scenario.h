// Conversations of the library with a server, each of which can be run again and again on the same objects.
#ifndef TESTS_TORTURE_SCENARIO_H
#define TESTS_TORTURE_SCENARIO_H

#include <functional>
#include <string>
#include <vector>

#include "support/ApiSession.h"

namespace torture {

struct Scenario {
  std::string name;  // "sync-mail-add", with "-xml" when documents are written so
  AIRSYNC_STACK::ENCODINGTYPE encoding = AIRSYNC_STACK::ENCODING_WBXML;
  AIRSYNC_STACK::SYNC_RESULT expected = 0;  // what the undisturbed run returns
  std::vector<std::string> answers;         // the bodies of the responses, in order
  /// Sets the session's folder and what storage hands out; everything else is as ApiSession begins.
  std::function<void(airsync_test::ApiSession&)> prepare;
  AIRSYNC_STACK::SYNC_RESULT (*run)(airsync_test::ApiSession&) = nullptr;
  bool keepsMemory = false;       // by design, until the next failure or Uninitialize
  bool takesShortBodies = false;  // a response that ends early is taken as it is
};

/// Every operation of the library, with each class of items, one exchange and several, in both encodings
/// where it has a document.
const std::vector<Scenario>& Scenarios();

}  // namespace torture

#endif
