// Splitting packed lists.
#ifndef KROAIRSYNC_GENERATOR_SEGMENT_H
#define KROAIRSYNC_GENERATOR_SEGMENT_H

#include "support/Porting.h"

namespace AIRSYNC_STACK {

/// Ends `text` at its first `separator` (two characters) and returns what follows; null when there is none,
/// and `text` is the last segment.
inline char* getSegment(char* text, const char* separator) {
  char* end = SmlStrstr(text, separator);
  if (end == nullptr) return nullptr;
  *end = '\0';
  return end + 2;
}

}  // namespace AIRSYNC_STACK

#endif
