// The standard assertion, active in every build: misuse and states that can't be must stop the process where
// they are met, also on the device.
#ifndef KROAIRSYNC_SUPPORT_ASSERT_H
#define KROAIRSYNC_SUPPORT_ASSERT_H

#undef NDEBUG
#include <cassert>

#endif
