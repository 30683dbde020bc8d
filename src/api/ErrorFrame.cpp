#include "api/ErrorFrame.h"

#include <cstring>

namespace AIRSYNC_STACK {

jmp_buf env;

bool FrameArmed() {
  static const jmp_buf kDisarmed = {};
  return std::memcmp(env, kDisarmed, sizeof(jmp_buf)) != 0;
}

void DisarmFrame() { std::memset(env, 0, sizeof(jmp_buf)); }

}  // namespace AIRSYNC_STACK
