#include "support/ItemCopies.h"

#include <cstdio>
#include <gtest/gtest.h>

#include "api/ContactFields.h"

namespace airsync_test {

using namespace AIRSYNC_STACK;

namespace {

// Writes fields under a part's name.
class Copier {
 public:
  Copier(ItemFields& fields, const std::string& part)
      : fields_(fields), prefix_(part.empty() ? "" : part + ".") {}

  void Text(const char* name, const char* text) { Add(name, text, text); }
  void Number(const char* name, const INT32* number) {
    Add(name, number, number == nullptr ? "" : std::to_string(*number));
  }
  void Number(const char* name, INT32 number) { fields_[prefix_ + name] = std::to_string(number); }
  void Flag(const char* name, const UINT8* flag) {
    Add(name, flag, flag == nullptr ? "" : std::to_string(*flag));
  }
  void Time(const char* name, const struct tm* time) {
    Add(name, time, time == nullptr ? "" : PrintedTime(*time));
  }
  void Null(const char* name, const void* pointer) { EXPECT_EQ(pointer, nullptr) << prefix_ << name; }

  void Zone(const char* name, const UINT8* zone) {
    if (zone == nullptr) return;
    std::string hex;
    for (int i = 0; i < 172; ++i) {
      char digits[3];
      std::snprintf(digits, sizeof digits, "%02X", zone[i]);
      hex += digits;
    }
    fields_[prefix_ + name] = hex;
  }

 private:
  void Add(const char* name, const void* pointer, const char* text) {
    Add(name, pointer, std::string(text == nullptr ? "" : text));
  }
  void Add(const char* name, const void* pointer, const std::string& text) {
    if (pointer != nullptr) fields_[prefix_ + name] = text;
  }

  ItemFields& fields_;
  std::string prefix_;
};

std::string Part(const char* array, int index) {
  return std::string(array) + "[" + std::to_string(index) + "]";
}

void CopyRecurrence(const AS_RECURRENCE_T* rule, ItemFields& fields, const std::string& part) {
  if (rule == nullptr) return;
  Copier copy(fields, part);
  copy.Number("Type", rule->Type);
  copy.Number("Interval", rule->Interval);
  copy.Number("Occurrences", rule->Occurrences);
  copy.Number("DayOfWeek", rule->DayOfWeek);
  copy.Number("DayOfMonth", rule->DayOfMonth);
  copy.Number("WeekOfMonth", rule->WeekOfMonth);
  copy.Number("MonthOfYear", rule->MonthOfYear);
  copy.Time("Until", rule->Until);
}

void CopyException(const AS_EXCEPTION_T& exception, ItemFields& fields, const std::string& part) {
  const std::size_t before = fields.size();
  Copier copy(fields, part);
  copy.Time("DtStamp", exception.DtStamp);
  copy.Time("ExceptionStartTime", exception.ExceptionStartTime);
  copy.Time("StartTime", exception.StartTime);
  copy.Time("EndTime", exception.EndTime);
  copy.Text("Location", exception.Location);
  copy.Text("Body", exception.Body);
  copy.Number("BusyStatus", exception.BusyStatus);
  copy.Number("Sensitivity", exception.Sensitivity);
  copy.Number("Reminder", exception.Reminder);
  copy.Text("Subject", exception.Subject);
  copy.Text("UID", exception.UID);
  copy.Flag("AllDayEvent", exception.AllDayEvent);
  copy.Flag("Deleted", exception.Deleted);
  copy.Text("Categories", exception.Categories);
  if (fields.size() == before) fields[part] = "";
}

void CopyAttachment(const AS_ATTACHMENT_T& attachment, ItemFields& fields, const std::string& part) {
  Copier copy(fields, part);
  copy.Text("Name", attachment.Name);
  copy.Number("Size", attachment.Size);
  copy.Text("OID", attachment.OID);
  copy.Number("Method", attachment.Method);
  copy.Text("DisplayName", attachment.DisplayName);
}

void CopyMeetingRequest(const AS_MEETING_REQUEST_T* request, ItemFields& fields, const std::string& part) {
  if (request == nullptr) return;
  Copier copy(fields, part);
  copy.Null("Reserved1", request->Reserved1);
  copy.Null("Reserved2", request->Reserved2);
  copy.Null("Reserved3", request->Reserved3);
  copy.Zone("Timezone", request->Timezone);
  copy.Time("StartTime", request->StartTime);
  copy.Time("EndTime", request->EndTime);
  copy.Time("DtStamp", request->DtStamp);
  copy.Text("Location", request->Location);
  copy.Number("Reminder", request->Reminder);
  copy.Flag("AllDayEvent", request->AllDayEvent);
  copy.Number("BusyStatus", request->BusyStatus);
  copy.Number("Sensitivity", request->Sensitivity);
  copy.Text("Categories", request->Categories);
  CopyRecurrence(request->Recurrence, fields, part + ".Recurrence");
  copy.Null("Reserved15", request->Reserved15);
  copy.Null("Reserved16", request->Reserved16);
  copy.Number("InstanceType", request->InstanceType);
  copy.Text("Organizer", request->Organizer);
  copy.Time("RecurrenceId", request->RecurrenceId);
  copy.Number("ResponseRequested", request->ResponseRequested);
  copy.Text("GlobalObjId", request->GlobalObjId);
}

}  // namespace

std::string PrintedTime(const struct tm& time) {
  EXPECT_EQ(time.tm_wday, 0);
  EXPECT_EQ(time.tm_yday, 0);
  EXPECT_EQ(time.tm_isdst, 0);
  char text[96];
  std::snprintf(text, sizeof text, "%04d-%02d-%02d %02d:%02d:%02d", time.tm_year + 1900, time.tm_mon + 1,
                time.tm_mday, time.tm_hour, time.tm_min, time.tm_sec);
  return text;
}

ContactFields CopyContact(const AS_CONTACT_T& contact) {
  ContactFields fields;
  Copier copy(fields, "");
  for (const AS_CONTACT_FIELD_T& field : AS_CONTACT_FIELDS) {
    if (field.text != nullptr) copy.Text(field.name, contact.*field.text);
    if (field.number != nullptr) copy.Number(field.name, contact.*field.number);
    if (field.flag != nullptr) copy.Flag(field.name, contact.*field.flag);
    if (field.time != nullptr) copy.Time(field.name, contact.*field.time);
  }
  return fields;
}

ItemFields CopyEvent(const AS_CALENDAR_T& event) {
  ItemFields fields;
  Copier copy(fields, "");
  copy.Text("Body", event.Body);
  copy.Null("BodySize", event.BodySize);
  copy.Flag("BodyTruncated", event.BodyTruncated);
  copy.Zone("Timezone", event.Timezone);
  copy.Time("StartTime", event.StartTime);
  copy.Time("EndTime", event.EndTime);
  copy.Time("DtStamp", event.DtStamp);
  copy.Text("Location", event.Location);
  copy.Number("Reminder", event.Reminder);
  copy.Flag("AllDayEvent", event.AllDayEvent);
  copy.Number("BusyStatus", event.BusyStatus);
  copy.Number("Sensitivity", event.Sensitivity);
  copy.Text("Categories", event.Categories);
  CopyRecurrence(event.Recurrence, fields, "Recurrence");
  copy.Number("ExceptionCount", event.ExceptionCount);
  if (event.Exceptions != nullptr) {
    fields["Exceptions"] = "";
    for (INT32 i = 0; i < event.ExceptionCount; ++i)
      CopyException(event.Exceptions[i], fields, Part("Exceptions", i));
  }
  copy.Text("OrganizerName", event.OrganizerName);
  copy.Text("OrganizerEmail", event.OrganizerEmail);
  copy.Text("Subject", event.Subject);
  copy.Text("UID", event.UID);
  copy.Number("MeetingStatus", event.MeetingStatus);
  copy.Text("Attendees", event.Attendees);
  return fields;
}

ItemFields CopyMail(const AS_EMAIL_T& mail) {
  ItemFields fields;
  Copier copy(fields, "");
  copy.Text("Body", mail.Body);
  copy.Number("BodySize", mail.BodySize);
  copy.Flag("BodyTruncated", mail.BodyTruncated);
  copy.Text("To", mail.To);
  copy.Text("Cc", mail.Cc);
  copy.Text("From", mail.From);
  copy.Text("ReplyTo", mail.ReplyTo);
  copy.Time("DateReceived", mail.DateReceived);
  copy.Text("Subject", mail.Subject);
  copy.Text("DisplayTo", mail.DisplayTo);
  copy.Number("Importance", mail.Importance);
  copy.Number("Read", INT32{mail.Read});
  copy.Text("MessageClass", mail.MessageClass);
  copy.Number("AttachmentCount", INT32{mail.AttachmentCount});
  for (int i = 0; mail.Attachments != nullptr && i < mail.AttachmentCount; ++i) {
    CopyAttachment(mail.Attachments[i], fields, Part("Attachments", i));
  }
  CopyMeetingRequest(mail.MeetingRequest, fields, "MeetingRequest");
  copy.Text("ThreadTopic", mail.ThreadTopic);
  return fields;
}

}  // namespace airsync_test
