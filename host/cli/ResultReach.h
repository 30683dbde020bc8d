// How much of a run a failure ends.
#ifndef AIRSYNC_CLI_RESULT_REACH_H
#define AIRSYNC_CLI_RESULT_REACH_H

#include "api/ResultCodes.h"
#include "support/Error.h"

namespace airsync {

/// What the result of an operation ends: the item, the folder, the account or the run. Where the transport
/// has its own account of a failure, that is asked for: resultOf(TransportErrorKind). An account is ended
/// only by what every other folder of it would meet as well; whatever else a server answers, and a status
/// that nobody knows, is about the folder that was asked for.
ErrorKind reachOf(AIRSYNC_STACK::SYNC_RESULT result);

}  // namespace airsync

#endif
