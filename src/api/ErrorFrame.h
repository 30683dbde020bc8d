// The error frame: where an operation that can't go on comes back to.
//
// Each operation that talks to the server runs its body inside one frame; commands do not nest. Any layer
// below ends the operation with AirSync::AbortSync(code), which jumps back here over every stack frame in
// between: no object with a destructor that matters may live on one of those, and nothing may be left that
// points into tracked memory. Whoever calls setjmp on `env` has armed the frame; when it returns, the frame
// is what it was before: disarmed, or, where a callback of a running command called, that command's again. So
// an abort never jumps into a function that has ended.
#ifndef KROAIRSYNC_API_ERROR_FRAME_H
#define KROAIRSYNC_API_ERROR_FRAME_H

#include <csetjmp>

#include "api/ResultCodes.h"

namespace AIRSYNC_STACK {

struct LL_Node;

extern jmp_buf env;

// A disarmed frame is all zero.
bool FrameArmed();
void DisarmFrame();

// Where the tracked memory of a frame inside another one begins: an abort releases what is newer, the rest
// belongs to the command around it. Null in a frame that is alone: all memory is its own.
const LL_Node* InnerFrameStart();

// What was there before a frame, to be put back after it. It is not changed after setjmp, so that it is whole
// after a jump.
class FrameBefore {
 public:
  FrameBefore();
  void Restore() const;

 private:
  jmp_buf env_ = {};
  const LL_Node* innerStart_;
};

// Runs `body`, a callable that returns the operation's result, inside a frame. Returns that result, or the
// code of the abort. The locals of the body are dead after an abort, so none of them can be read stale.
template <typename Body>
SYNC_RESULT RunFramed(const Body& body) {
  const FrameBefore before;
  const int code = setjmp(env);
  const SYNC_RESULT result = code == 0 ? body() : static_cast<SYNC_RESULT>(code);
  before.Restore();
  return result;
}

// The same for a command, which a callback of a running one must not call: it would use up the connection and
// the parser's state under it. Refused with AS_RESULT_INVALID_ARGUMENT.
template <typename Body>
SYNC_RESULT RunCommand(const Body& body) {
  return FrameArmed() ? static_cast<SYNC_RESULT>(AS_RESULT_INVALID_ARGUMENT) : RunFramed(body);
}

}  // namespace AIRSYNC_STACK

#endif
