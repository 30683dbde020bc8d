// Result codes: what every operation of the library returns.
//
// 0 is success, every failure has the top bit set. A family is or-ed with the status that the server sent:
// AS_RESULT_FAMILY_SYNC | 3 (0x80010e03) says that the server answered a Sync with status 3.
#ifndef KROAIRSYNC_API_RESULT_CODES_H
#define KROAIRSYNC_API_RESULT_CODES_H

#include "support/types.h"

namespace AIRSYNC_STACK {

typedef UINT32 SYNC_RESULT;

enum AS_RESULT_T : SYNC_RESULT {
  AS_RESULT_OK = 0,
  // Sync was asked for a folder whose `selected` flag is 0; nothing was sent.
  AS_RESULT_FOLDER_NOT_SELECTED = 0x80000000,
  // A required argument is missing or unusable: no transport or storage, no folder, no connection, control
  // characters or too much text in a request head; also a time-zone block that does not decode.
  AS_RESULT_INVALID_ARGUMENT = 0x80000001,
  // No request document could be built.
  AS_RESULT_NO_REQUEST = 0x800000ff,
  // A document breaks the encoding's rules, or holds an element that has no place there.
  AS_RESULT_MALFORMED_DOCUMENT = 0x8001000b,
  // The transport failed: sending the head or the body, finishing the request, or reading the body.
  AS_RESULT_TRANSPORT_FAILED = 0x8001000c,
  // The host has no more memory.
  AS_RESULT_OUT_OF_MEMORY = 0x8001000d,
  // A request, or one change in it, is larger than any request may be.
  AS_RESULT_REQUEST_TOO_LARGE = 0x8001000e,
  // The server address has no scheme, or no "." after it.
  AS_RESULT_BAD_SERVER_ADDRESS = 0x8001000f,
  // CancelSync was called.
  AS_RESULT_CANCELLED = 0x80010010,
  // A response names another collection, or a class that is not the folder's.
  AS_RESULT_WRONG_COLLECTION = 0x80010011,
  // The server answered with HTTP status 401, 400 or 500.
  AS_RESULT_HTTP_UNAUTHORIZED = 0x80010012,
  AS_RESULT_HTTP_BAD_REQUEST = 0x80010013,
  AS_RESULT_HTTP_SERVER_ERROR = 0x80010014,

  // An item's status: handed to storage with the item, never returned by an operation.
  AS_RESULT_FAMILY_ITEM = 0x80010000,
  // The status of a folder command.
  AS_RESULT_FAMILY_FOLDER = 0x80010100,
  // The status of an item estimate.
  AS_RESULT_FAMILY_ESTIMATE = 0x80010700,
  // The status of a meeting response.
  AS_RESULT_FAMILY_MEETING = 0x80010800,
  // The status of a notification command, or of one folder in it.
  AS_RESULT_FAMILY_NOTIFY = 0x80010a00,
  // The status of a Sync, or of its collection.
  AS_RESULT_FAMILY_SYNC = 0x80010e00,
  // Any other HTTP status.
  AS_RESULT_FAMILY_HTTP = 0x80020000,
};

}  // namespace AIRSYNC_STACK

#endif
