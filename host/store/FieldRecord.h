// Records for the library, with the memory that their pointers lead to.
#ifndef AIRSYNC_HOST_STORE_FIELD_RECORD_H
#define AIRSYNC_HOST_STORE_FIELD_RECORD_H

#include <array>
#include <ctime>
#include <string>

#include "store/FieldValues.h"

namespace airsync {

/// Owns a record made from its fields. Absent fields are null. The record lives, at one address, as long as
/// this object; therefore it is neither copied nor moved. Sub-records and counts are left null: see
/// EventRecord.
template <typename Record>
class FieldRecord {
 public:
  explicit FieldRecord(const FieldValues<Record>& values);
  FieldRecord(const FieldRecord&) = delete;
  FieldRecord& operator=(const FieldRecord&) = delete;

  Record& record() { return record_; }

 private:
  // The memory of one field; which member is used depends on the field's form.
  struct Storage {
    std::string text;  // also a zone's bytes
    INT32 number = 0;
    UINT8 flag = 0;
    std::tm time = {};
  };

  void point(const AIRSYNC_STACK::AS_FIELD_T<Record>& field, const FieldValue& value, Storage& storage);

  std::array<Storage, FieldValues<Record>::kFields> storage_;
  Record record_ = {};
};

extern template class FieldRecord<AIRSYNC_STACK::AS_CONTACT_T>;
extern template class FieldRecord<AIRSYNC_STACK::AS_CALENDAR_T>;
extern template class FieldRecord<AIRSYNC_STACK::AS_RECURRENCE_T>;
extern template class FieldRecord<AIRSYNC_STACK::AS_EXCEPTION_T>;
extern template class FieldRecord<AIRSYNC_STACK::AS_EMAIL_T>;
extern template class FieldRecord<AIRSYNC_STACK::AS_ATTACHMENT_T>;
extern template class FieldRecord<AIRSYNC_STACK::AS_MEETING_REQUEST_T>;

}  // namespace airsync

#endif
