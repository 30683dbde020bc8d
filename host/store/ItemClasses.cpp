#include "store/ItemClasses.h"

#include "store/FolderTypes.h"
#include "support/Error.h"

namespace airsync {

using namespace AIRSYNC_STACK;

ItemContents& ItemClasses::of(DATATYPE dataType) {
  if (dataType == DATATYPE_CONTACTS) return contacts_;
  throw Error({.kind = ErrorKind::folder,
               .operation = "opening the folder's items",
               .subject = {},
               .cause = "items of its class can't be kept yet",
               .advice = "Leave it out of the list of folders."});
}

ItemContents& ItemClasses::ofFolderType(INT32 type) {
  const auto dataType = folderType(type).dataType;
  if (dataType) return of(*dataType);
  throw Error({.kind = ErrorKind::folder,
               .operation = "opening the folder's items",
               .subject = {},
               .cause = "folders of this type are never synchronised",
               .advice = "Choose a folder for contacts, events or mail."});
}

}  // namespace airsync
