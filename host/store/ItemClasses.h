// The contents of items, by their class.
#ifndef AIRSYNC_HOST_STORE_ITEM_CLASSES_H
#define AIRSYNC_HOST_STORE_ITEM_CLASSES_H

#include "store/ContactTable.h"
#include "store/Database.h"
#include "store/ItemContents.h"

namespace airsync {

class ItemClasses {
 public:
  explicit ItemClasses(Database& database) : contacts_(database) {}

  ItemContents& of(AIRSYNC_STACK::DATATYPE dataType);

  /// That of a folder of this type, which must have one.
  ItemContents& ofFolderType(INT32 type);

 private:
  ContactTable contacts_;
};

}  // namespace airsync

#endif
