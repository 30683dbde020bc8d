// Broken-down UTC time without the platform's time-zone machinery.
#ifndef KROAIRSYNC_SUPPORT_TIME_H
#define KROAIRSYNC_SUPPORT_TIME_H

#include <ctime>

#include "support/types.h"

namespace AIRSYNC_STACK {

/// Seconds since 1970-01-01 00:00:00 UTC of a broken-down UTC time, of which only seconds, minutes, hours,
/// day of month, month and years since 1900 are read. Exact from 1968-03-01 on; values outside their ranges
/// simply add up. The result is narrowed to 32 bits: it wraps from 2038-01-19 03:14:08 on.
AIRSYNC_API INT32 mkgmtime(const struct tm* time);

/// Rounds a time stamp up to a whole second: where `milliseconds` is not 0, it becomes 0 and `second` grows
/// by one, with the carry through minutes, hours, days, months and years. `year` is the full year, `month`
/// runs from 1 to 12. A time that can't be carried keeps second 60.
AIRSYNC_API void AdjustTime(INT32& year, INT32& month, INT32& day, INT32& hour, INT32& minute, INT32& second,
                            INT32& milliseconds);

}  // namespace AIRSYNC_STACK

#endif
