#include "api/ErrorFrame.h"

#include "support/Memory.h"
#include "support/Porting.h"

namespace AIRSYNC_STACK {

jmp_buf env;

namespace {

const LL_Node* innerStart = nullptr;

}  // namespace

bool FrameArmed() {
  const unsigned char* bytes = reinterpret_cast<const unsigned char*>(&env);
  for (UINT32 i = 0; i < sizeof(jmp_buf); ++i) {
    if (bytes[i] != 0) return true;
  }
  return false;
}

void DisarmFrame() {
  SmlMemset(env, 0, sizeof(jmp_buf));
  innerStart = nullptr;
}

const LL_Node* InnerFrameStart() { return innerStart; }

FrameBefore::FrameBefore() : innerStart_(innerStart) {
  SmlMemcpy(env_, env, sizeof(jmp_buf));
  innerStart = FrameArmed() ? NewestNode() : nullptr;
}

void FrameBefore::Restore() const {
  SmlMemcpy(env, env_, sizeof(jmp_buf));
  innerStart = innerStart_;
}

}  // namespace AIRSYNC_STACK
