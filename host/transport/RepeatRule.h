// Which requests may be sent a second time when nobody knows what became of the first.
#ifndef AIRSYNC_TRANSPORT_REPEAT_RULE_H
#define AIRSYNC_TRANSPORT_REPEAT_RULE_H

#include <span>
#include <string_view>

#include "support/types.h"

namespace airsync {

/// Whether a request only asks: of these alone a second one does no harm when the server has taken the first.
/// True for OPTIONS, for the commands that are known to change nothing, and for a Sync whose document brings
/// no addition, change or deletion. Whatever is unknown, or can't be read, counts as a change.
bool changesNothing(std::string_view head, std::span<const UINT8> body);

}  // namespace airsync

#endif
