#include "fuzz/Records.h"

#include <cstddef>

#include "api/CalendarFields.h"
#include "api/ContactFields.h"
#include "api/EmailFields.h"

namespace airsync_fuzz {

namespace {

using namespace AIRSYNC_STACK;

constexpr std::size_t kZoneSize = 172;

void TouchBytes(const UINT8* bytes, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) Keep(bytes[i]);
}

template <typename Record>
void TouchField(const AS_FIELD_T<Record>& field, const Record& record) {
  if (field.text != nullptr) return Touch(record.*field.text);
  const auto touch = [](const auto* value, std::size_t size) {
    if (value != nullptr) TouchBytes(reinterpret_cast<const UINT8*>(value), size);
  };
  if (field.number != nullptr) touch(record.*field.number, sizeof(INT32));
  if (field.flag != nullptr) touch(record.*field.flag, field.form == AS_FORM_ZONE ? kZoneSize : 1);
  if (field.time != nullptr) touch(record.*field.time, 6 * sizeof(int));  // the parts that are filled
}

template <typename Record, std::size_t count>
void TouchAll(const AS_FIELD_T<Record> (&fields)[count], const Record& record) {
  for (const AS_FIELD_T<Record>& field : fields) TouchField(field, record);
}

void TouchEvent(const AS_CALENDAR_T& event) {
  TouchAll(AS_CALENDAR_FIELDS, event);
  if (event.Recurrence != nullptr) TouchAll(AS_RECURRENCE_FIELDS, *event.Recurrence);
  for (INT32 i = 0; event.Exceptions != nullptr && i < event.ExceptionCount; ++i) {
    TouchAll(AS_EXCEPTION_FIELDS, event.Exceptions[i]);
  }
}

void TouchMail(const AS_EMAIL_T& mail) {
  TouchAll(AS_EMAIL_FIELDS, mail);
  for (int i = 0; mail.Attachments != nullptr && i < mail.AttachmentCount; ++i) {
    TouchAll(AS_ATTACHMENT_FIELDS, mail.Attachments[i]);
  }
  if (mail.MeetingRequest == nullptr) return;
  TouchAll(AS_MEETING_REQUEST_FIELDS, *mail.MeetingRequest);
  const AS_RECURRENCE_T* const rule = mail.MeetingRequest->Recurrence;
  if (rule != nullptr) TouchAll(AS_MEETING_RECURRENCE_FIELDS, *rule);
}

}  // namespace

ReadingStore::SYNC_RESULT ReadingStore::Item(const SERVER_ID* id, const void* record) const {
  Id(id);
  switch (folder_.dataType) {
    case DATATYPE_CONTACTS:
      TouchAll(AS_CONTACT_FIELDS, *static_cast<const AS_CONTACT_T*>(record));
      break;
    case DATATYPE_CALENDAR:
      TouchEvent(*static_cast<const AS_CALENDAR_T*>(record));
      break;
    default:
      TouchMail(*static_cast<const AS_EMAIL_T*>(record));
      break;
  }
  return 0;
}

}  // namespace airsync_fuzz
