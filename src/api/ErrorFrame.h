// The error frame: where an operation that can't go on comes back to.
//
// Each operation that talks to the server runs its body inside one frame; frames do not nest. Any layer below
// ends the operation with AirSync::AbortSync(code), which jumps back here over every stack frame in between:
// no object with a destructor that matters may live on one of those, and nothing may be left that points into
// tracked memory. Whoever calls setjmp on `env` has armed the frame, and disarms it when it returns: an abort
// never jumps into a function that has ended.
#ifndef KROAIRSYNC_API_ERROR_FRAME_H
#define KROAIRSYNC_API_ERROR_FRAME_H

#include <csetjmp>

#include "api/ResultCodes.h"

namespace AIRSYNC_STACK {

extern jmp_buf env;

// A disarmed frame is all zero.
bool FrameArmed();
void DisarmFrame();

// Runs `body`, a callable that returns the operation's result, inside a frame. Returns that result, or the
// code of the abort. The locals of the body are dead after an abort, so none of them can be read stale.
template <typename Body>
SYNC_RESULT RunFramed(const Body& body) {
  const int code = setjmp(env);
  const SYNC_RESULT result = code == 0 ? body() : static_cast<SYNC_RESULT>(code);
  DisarmFrame();
  return result;
}

}  // namespace AIRSYNC_STACK

#endif
