// A notification that somebody received, as the command line has it.
#ifndef AIRSYNC_CLI_NOTIFY_PAYLOAD_H
#define AIRSYNC_CLI_NOTIFY_PAYLOAD_H

#include <string>

#include "api/Records.h"

namespace airsync {

/// The identifier of a set-up as the library compares it, "{01234567-89ab-cdef-0123-456789abcdef}": braces
/// may be missing, letters may be capitals. Throws ExitError(kUsage) for anything else.
AIRSYNC_STACK::_SYNC_KEY notificationGuid(const std::string& text);

/// The base64 text of a notification, without the white space around it and in it; "-" is read from standard
/// input. Throws ExitError(kUsage) when it is longer than 64 KiB or can't be read.
std::string notificationPayload(const std::string& text);

}  // namespace airsync

#endif
