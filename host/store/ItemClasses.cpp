#include "store/ItemClasses.h"

#include "store/FolderTypes.h"
#include "support/Error.h"

namespace airsync {

using namespace AIRSYNC_STACK;

ItemContents& ItemClasses::of(DATATYPE dataType) {
  switch (dataType) {
    case DATATYPE_CONTACTS:
      return contacts_;
    case DATATYPE_CALENDAR:
      return events_;
    case DATATYPE_EMAIL:
      return mails_;
  }
  throw Error({.kind = ErrorKind::folder,
               .operation = "opening the folder's items",
               .subject = {},
               .cause = "there are no items of the class " + std::to_string(dataType),
               .advice = "This is an error of the program: report it with this line."});
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
