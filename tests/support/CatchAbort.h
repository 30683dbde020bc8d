// Running something that may abort, outside any operation.
#ifndef TESTS_SUPPORT_CATCH_ABORT_H
#define TESTS_SUPPORT_CATCH_ABORT_H

#include "api/ErrorFrame.h"

namespace airsync_test {

/// Arms the error frame, runs `body`, and disarms the frame. 0 when the body came to its end, else the code
/// that it was aborted with. An abort jumps: `body` holds no object with a destructor while it may happen.
template <typename Body>
AIRSYNC_STACK::SYNC_RESULT CatchAbort(const Body& body) {
  return AIRSYNC_STACK::RunFramed([&body]() -> AIRSYNC_STACK::SYNC_RESULT {
    body();
    return AIRSYNC_STACK::AS_RESULT_OK;
  });
}

}  // namespace airsync_test

#endif
