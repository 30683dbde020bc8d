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

// A document that is no request of this protocol: answered with HTTP 400, nothing of it is applied.
class BadRequest : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace demoserver
