// The contents of items, by their class.
#ifndef AIRSYNC_HOST_STORE_ITEM_CLASSES_H
#define AIRSYNC_HOST_STORE_ITEM_CLASSES_H

#include "store/ContactTable.h"
#include "store/Database.h"
#include "store/EventTable.h"
#include "store/ItemContents.h"
#include "store/MailTable.h"

namespace airsync {

class ItemClasses {
 public:
  explicit ItemClasses(Database& database) : contacts_(database), events_(database), mails_(database) {}

  ItemContents& of(AIRSYNC_STACK::DATATYPE dataType);

  /// That of a folder of this type, which must have one.
  ItemContents& ofFolderType(INT32 type);

 private:
  ContactTable contacts_;
  EventTable events_;
  MailTable mails_;
};

}  // namespace airsync

#endif
