// A contact's record for the library.
#ifndef AIRSYNC_HOST_STORE_CONTACT_RECORD_H
#define AIRSYNC_HOST_STORE_CONTACT_RECORD_H

#include "store/Contact.h"
#include "store/FieldRecord.h"

namespace airsync {

using ContactRecord = FieldRecord<AIRSYNC_STACK::AS_CONTACT_T>;

}  // namespace airsync

#endif
