#include "api/ErrorFrame.h"

#include "support/Porting.h"

namespace AIRSYNC_STACK {

jmp_buf env;

bool FrameArmed() {
  const unsigned char* bytes = reinterpret_cast<const unsigned char*>(&env);
  for (UINT32 i = 0; i < sizeof(jmp_buf); ++i) {
    if (bytes[i] != 0) return true;
  }
  return false;
}

void DisarmFrame() { SmlMemset(env, 0, sizeof(jmp_buf)); }

}  // namespace AIRSYNC_STACK
