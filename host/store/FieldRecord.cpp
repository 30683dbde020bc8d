#include "store/FieldRecord.h"

namespace airsync {

using namespace AIRSYNC_STACK;

template <typename Record>
FieldRecord<Record>::FieldRecord(const FieldValues<Record>& values) {
  const auto table = FieldValues<Record>::table();
  for (std::size_t index = 0; index < table.size(); ++index) {
    point(table[index], values[index], storage_.at(index));
  }
}

template <typename Record>
void FieldRecord<Record>::point(const AS_FIELD_T<Record>& field, const FieldValue& value, Storage& storage) {
  if (const auto* text = std::get_if<std::string>(&value)) {
    storage.text = *text;
    record_.*field.text = storage.text.data();
  } else if (const auto* entries = std::get_if<List>(&value)) {
    storage.text = packList(*entries);
    record_.*field.text = storage.text.data();
  } else if (const auto* attendees = std::get_if<std::vector<Attendee>>(&value)) {
    storage.text = packAttendees(*attendees);
    record_.*field.text = storage.text.data();
  } else if (const auto* number = std::get_if<std::int32_t>(&value)) {
    storage.number = *number;
    if (field.form == AS_FORM_INLINE_NUMBER) {
      record_.*field.inlineNumber = *number;
    } else {
      record_.*field.number = &storage.number;
    }
  } else if (const auto* flag = std::get_if<bool>(&value)) {
    storage.flag = *flag ? 1 : 0;
    if (field.form == AS_FORM_INLINE_FLAG) {
      record_.*field.inlineFlag = storage.flag;
    } else {
      record_.*field.flag = &storage.flag;
    }
  } else if (const auto* time = std::get_if<UtcTime>(&value)) {
    storage.time = time->tm();
    record_.*field.time = &storage.time;
  } else if (const auto* zone = std::get_if<ZoneBlock>(&value)) {
    storage.text.assign(zone->begin(), zone->end());
    record_.*field.flag = reinterpret_cast<UINT8*>(storage.text.data());
  }
}

template class FieldRecord<AS_CONTACT_T>;
template class FieldRecord<AS_CALENDAR_T>;
template class FieldRecord<AS_RECURRENCE_T>;
template class FieldRecord<AS_EXCEPTION_T>;
template class FieldRecord<AS_EMAIL_T>;
template class FieldRecord<AS_ATTACHMENT_T>;
template class FieldRecord<AS_MEETING_REQUEST_T>;

}  // namespace airsync
