// The folder types of the protocol.
#ifndef AIRSYNC_HOST_STORE_FOLDER_TYPES_H
#define AIRSYNC_HOST_STORE_FOLDER_TYPES_H

#include <optional>

#include "api/Records.h"

namespace airsync {

struct FolderType {
  INT32 number;
  const char* name;                                 // for people: "contacts", "user's contacts"
  std::optional<AIRSYNC_STACK::DATATYPE> dataType;  // empty: folders of this type are never synchronised
};

/// The type with this number; a number that is not known counts as a type without a data class.
const FolderType& folderType(INT32 number);

}  // namespace airsync

#endif
