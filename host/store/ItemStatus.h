// The server's statuses for single items, as sentences.
#ifndef AIRSYNC_HOST_STORE_ITEM_STATUS_H
#define AIRSYNC_HOST_STORE_ITEM_STATUS_H

#include <string>

#include "api/ResultCodes.h"

namespace airsync {

// The status that a deletion gets when somebody else was faster.
constexpr INT32 kStatusNotFound = 8;

/// The protocol's number in an item's result; 0 for AS_RESULT_OK.
INT32 itemStatus(AIRSYNC_STACK::SYNC_RESULT result);

/// Why the server refused an item: a sentence with the number in it.
std::string itemStatusText(INT32 status);

}  // namespace airsync

#endif
