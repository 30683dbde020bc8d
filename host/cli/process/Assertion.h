// The assertions of the protocol stack, as a process that is about to end by one can still tell them.
#ifndef AIRSYNC_CLI_PROCESS_ASSERTION_H
#define AIRSYNC_CLI_PROCESS_ASSERTION_H

#include "cli/process/FlightRecord.h"

namespace airsync {

/// From now on an assertion that fails in this process, in any library, is written into the record and not on
/// standard error; it stops the process as before.
void recordAssertions(FlightRecord& record);

}  // namespace airsync

#endif
