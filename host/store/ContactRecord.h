// A record for the library, with the memory that its pointers lead to.
#ifndef AIRSYNC_HOST_STORE_CONTACT_RECORD_H
#define AIRSYNC_HOST_STORE_CONTACT_RECORD_H

#include <array>
#include <string>

#include "api/ItemRecords.h"
#include "store/Contact.h"

namespace airsync {

/// Owns an AS_CONTACT_T made from a Contact. Absent fields are null. The record lives, at one address, as
/// long as this object; therefore it is neither copied nor moved.
class ContactRecord {
 public:
  explicit ContactRecord(const Contact& contact);
  ContactRecord(const ContactRecord&) = delete;
  ContactRecord& operator=(const ContactRecord&) = delete;

  AIRSYNC_STACK::AS_CONTACT_T& record() { return record_; }

 private:
  // The memory of one field; which member is used depends on the field's form.
  struct Storage {
    std::string text;
    INT32 number = 0;
    UINT8 flag = 0;
    std::tm time = {};
  };

  std::array<Storage, Contact::kFields> storage_;
  AIRSYNC_STACK::AS_CONTACT_T record_ = {};
};

}  // namespace airsync

#endif
