// The numbers in Status elements, and how a request that deserves none is refused.
#pragma once

#include <stdexcept>
#include <string>

namespace demoserver {

inline constexpr int kSuccess = 1;

// Of a collection, or of an item in its Responses.
enum SyncStatus : int {
  kInvalidSyncKey = 3,  // the collection must be synchronised from key "0" again
  kProtocolError = 4,   // the class does not fit the folder, or the initial request carries commands
  kBadItem = 6,         // the item's data can't be taken
  kConflict = 7,        // the server changed the item too, and its version stands
  kNotFound = 8,        // no such item, or no such collection
};

// Of a folder command.
enum FolderStatus : int {
  kNameExists = 2,
  kSpecialFolder = 3,
  kNoSuchFolder = 4,
  kNoSuchParent = 5,  // also: the new parent is the folder itself, or lies below it
  kInvalidHierarchyKey = 9,
  kMalformedFolder = 10,  // no usable name, or a type that can't be created
};

// Of one collection of a GetItemEstimate.
enum EstimateStatus : int {
  kNoSuchCollection = 2,  // or its class is another than the one named
  kNotSynchronised = 3,   // the device has no key of this collection yet
  kInvalidEstimateKey = 4,
};

// Of one Move.
enum MoveStatus : int {
  kBadMoveSource = 1,       // no such folder, or the item is not in it
  kBadMoveDestination = 2,  // no such folder, or one for items of another class
  kMoved = 3,
  kSameFolder = 4,
  kMoveFailed = 5,  // other servers' word for a failure of their own: here that is HTTP 500
  kMoveLocked = 7,  // other servers' word for an item in use: nothing is ever locked here
};

// Of one answer to a meeting request.
enum MeetingStatus : int {
  kInvalidMeetingRequest = 2,  // no such item, no meeting request, or no answer that there is
  kMailboxFailure = 3,         // there is no calendar to put the meeting into
  kMeetingFailure = 4,         // the request can't be made into a calendar item
};

// Of a Notify request, or of one of its folders.
enum NotifyStatus : int {
  kBadDeviceInfo = 2,   // no address, or texts that are too long
  kUnknownCarrier = 3,  // the answer brings the list of carriers
  kBadLifetime = 4,     // no number, or a negative one
  kNoNotifyFolder = 5,  // of one folder: there is none of this id
};

// A document that is no request of this protocol: answered with HTTP 400, nothing of it is applied.
class BadRequest : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// What the request names is not there: answered with HTTP 404.
class NotFound : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// More than this server takes: answered with HTTP 413.
class TooLarge : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// A failure after a part of the request was applied: answered with HTTP 501, and that part stays.
class StoredInPart : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace demoserver
