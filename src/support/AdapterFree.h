// Giving back memory that the library handed out.
#ifndef KROAIRSYNC_SUPPORT_ADAPTER_FREE_H
#define KROAIRSYNC_SUPPORT_ADAPTER_FREE_H

#include "support/types.h"

namespace AIRSYNC_STACK {

/// Releases an array that an operation handed out (AirSync::GetHierarchy), before the library does it by
/// itself: with the next abort (any operation that returns a failure) or with AirSync::Uninitialize,
/// whichever comes first. A block that is not live, null included, stops the process.
AIRSYNC_API void AdapterFree(void* block);

}  // namespace AIRSYNC_STACK

#endif
