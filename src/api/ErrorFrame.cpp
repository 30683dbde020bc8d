#include "api/ErrorFrame.h"

#include <cstring>

namespace AIRSYNC_STACK {

jmp_buf env;

bool FrameArmed() {
  const unsigned char* bytes = reinterpret_cast<const unsigned char*>(&env);
  for (size_t i = 0; i < sizeof(jmp_buf); ++i) {
    if (bytes[i] != 0) return true;
  }
  return false;
}

void DisarmFrame() { std::memset(env, 0, sizeof(jmp_buf)); }

}  // namespace AIRSYNC_STACK
