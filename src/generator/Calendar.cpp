// The children of an event's ApplicationData, on the calendar's code page.
#include "api/CalendarFields.h"
#include "document/Base64.h"
#include "generator/Generator.h"
#include "generator/Segment.h"
#include "support/Memory.h"
#include "support/Porting.h"

namespace AIRSYNC_STACK {

namespace {

const UINT8 kCalendarPage = 4;

constexpr bool SameName(const char* left, const char* right) {
  while (*left != '\0' && *left == *right) {
    ++left;
    ++right;
  }
  return *left == *right;
}

// The place of a field in its table, found while compiling; the table's length when there is no such field.
template <typename Record, unsigned kRows>
constexpr UINT8 Row(const AS_FIELD_T<Record> (&table)[kRows], const char* name) {
  UINT8 row = 0;
  while (row < kRows && !SameName(table[row].name, name)) ++row;
  return row;
}

template <unsigned kRows, typename Record, unsigned kTableRows>
constexpr bool AllFound(const UINT8 (&order)[kRows], const AS_FIELD_T<Record> (&)[kTableRows]) {
  for (UINT8 row : order) {
    if (row >= kTableRows) return false;
  }
  return true;
}

constexpr UINT8 EventRow(const char* name) { return Row(AS_CALENDAR_FIELDS, name); }
constexpr UINT8 RuleRow(const char* name) { return Row(AS_RECURRENCE_FIELDS, name); }
constexpr UINT8 ExceptionRow(const char* name) { return Row(AS_EXCEPTION_FIELDS, name); }

// The orders in which elements are written; none is its record's.
constexpr UINT8 kEventOrder[] = {
    EventRow("Timezone"),   EventRow("DtStamp"),       EventRow("StartTime"),      EventRow("Subject"),
    EventRow("UID"),        EventRow("OrganizerName"), EventRow("OrganizerEmail"), EventRow("Location"),
    EventRow("EndTime"),    EventRow("Sensitivity"),   EventRow("BusyStatus"),     EventRow("AllDayEvent"),
    EventRow("Body"),       EventRow("Reminder"),      EventRow("MeetingStatus"),  EventRow("Attendees"),
    EventRow("Categories"),
};
constexpr UINT8 kRuleOrder[] = {
    RuleRow("Type"),        RuleRow("Interval"),    RuleRow("DayOfWeek"),   RuleRow("DayOfMonth"),
    RuleRow("WeekOfMonth"), RuleRow("MonthOfYear"), RuleRow("Occurrences"), RuleRow("Until"),
};
constexpr UINT8 kExceptionOrder[] = {
    ExceptionRow("Deleted"),     ExceptionRow("DtStamp"),    ExceptionRow("ExceptionStartTime"),
    ExceptionRow("StartTime"),   ExceptionRow("EndTime"),    ExceptionRow("Location"),
    ExceptionRow("Body"),        ExceptionRow("BusyStatus"), ExceptionRow("Sensitivity"),
    ExceptionRow("Reminder"),    ExceptionRow("Subject"),    ExceptionRow("UID"),
    ExceptionRow("AllDayEvent"), ExceptionRow("Categories"),
};
static_assert(AllFound(kEventOrder, AS_CALENDAR_FIELDS), "every name is a field's");
static_assert(AllFound(kRuleOrder, AS_RECURRENCE_FIELDS), "every name is a field's");
static_assert(AllFound(kExceptionOrder, AS_EXCEPTION_FIELDS), "every name is a field's");

// The organizer of an event that exists on the server is the server's to know.
bool IsAddOnly(const AS_CALENDAR_FIELD_T& field) {
  return field.text == &AS_CALENDAR_T::OrganizerName || field.text == &AS_CALENDAR_T::OrganizerEmail;
}

}  // namespace

void Generator::CalendarChildren(sml_element* data, bool add) {
  const AS_CALENDAR_T& event = *static_cast<const AS_CALENDAR_T*>(item_);
  for (UINT8 row : kEventOrder) {
    const AS_CALENDAR_FIELD_T& field = AS_CALENDAR_FIELDS[row];
    if (add || !IsAddOnly(field)) SE_AddChild(data, FieldElement(field, event));
  }
  SE_AddChild(data, Recurrence(event));
  SE_AddChild(data, Exceptions(event));
}

template <typename Record>
sml_element* Generator::FieldElement(const AS_FIELD_T<Record>& field, const Record& record) {
  switch (field.form) {
    case AS_FORM_TEXT:
      return buildDataElement(field.tag, reinterpret_cast<unsigned char*>(record.*field.text));
    case AS_FORM_LIST:
      return PackedList(field.tag, field.entryTag, record.*field.text, kCalendarPage);
    case AS_FORM_ATTENDEES:
      return Attendees(field.tag, record.*field.text);
    case AS_FORM_NUMBER: {
      const INT32* number = record.*field.number;
      return number == nullptr ? nullptr : NumberData(field.tag, *number);
    }
    case AS_FORM_FLAG: {
      const UINT8* flag = record.*field.flag;
      return flag == nullptr ? nullptr : NumberData(field.tag, *flag);
    }
    case AS_FORM_INLINE_NUMBER:
      return NumberData(field.tag, record.*field.inlineNumber);
    case AS_FORM_COMPACT_TIME:
      return CompactTime(field.tag, record.*field.time);
    case AS_FORM_ZONE:
      return TimeZone(field.tag, record.*field.flag);
    default:
      return nullptr;
  }
}

sml_element* Generator::NumberData(const char* tag, INT32 value) {
  char text[12];
  SmlSprintf(text, "%d", value);
  return buildDataElement(tag, reinterpret_cast<unsigned char*>(text));
}

sml_element* Generator::CompactTime(const char* tag, const struct tm* time) {
  if (time == nullptr) return nullptr;
  // Six numbers of up to eleven characters, "T", "Z" and the terminator.
  char text[6 * 11 + 3];
  SmlSprintf(text, "%04d%02d%02dT%02d%02d%02dZ", FullYear(*time), FullMonth(*time), time->tm_mday,
             time->tm_hour, time->tm_min, time->tm_sec);
  return buildDataElement(tag, reinterpret_cast<unsigned char*>(text));
}

sml_element* Generator::TimeZone(const char* tag, const UINT8* zone) {
  if (zone == nullptr) return nullptr;
  char text[(AS_ZONE_SIZE + 2) / 3 * 4 + 1];
  SmlBase64Encode(text, zone, AS_ZONE_SIZE);
  return buildDataElement(tag, reinterpret_cast<unsigned char*>(text));
}

sml_element* Generator::Attendees(const char* tag, const char* list) {
  if (list == nullptr) return nullptr;
  char* copy = AdapterStrdup(list);
  sml_element* element = SE_New(tag, nullptr);
  element->CodePage = kCalendarPage;
  for (char* entry = copy; entry != nullptr;) {
    char* next = getSegment(entry, "@@");
    if (entry[0] != '\0') SE_AddChild(element, Attendee(entry));
    entry = next;
  }
  AdapterFree(copy);
  return element;
}

// An entry without "##" is a name; whatever follows a second one is dropped.
sml_element* Generator::Attendee(char* entry) {
  sml_element* element = SE_New("Attendee", nullptr);
  element->CodePage = kCalendarPage;
  char* email = getSegment(entry, "##");
  if (email != nullptr) getSegment(email, "##");
  SE_AddChild(element, buildDataElement("AttendeeName", reinterpret_cast<unsigned char*>(entry)));
  SE_AddChild(element, buildDataElement("AttendeeEmail", reinterpret_cast<unsigned char*>(email)));
  return element;
}

sml_element* Generator::Recurrence(const AS_CALENDAR_T& event) {
  if (event.Recurrence == nullptr) return nullptr;
  sml_element* element = SE_New("Recurrence", nullptr);
  element->CodePage = kCalendarPage;
  for (UINT8 row : kRuleOrder)
    SE_AddChild(element, FieldElement(AS_RECURRENCE_FIELDS[row], *event.Recurrence));
  return element;
}

// Present with the array, even when it is empty.
sml_element* Generator::Exceptions(const AS_CALENDAR_T& event) {
  if (event.Exceptions == nullptr) return nullptr;
  sml_element* element = SE_New("Exceptions", nullptr);
  element->CodePage = kCalendarPage;
  for (INT32 i = 0; i < event.ExceptionCount; ++i) SE_AddChild(element, Exception(event.Exceptions[i]));
  return element;
}

sml_element* Generator::Exception(const AS_EXCEPTION_T& exception) {
  sml_element* element = SE_New("Exception", nullptr);
  element->CodePage = kCalendarPage;
  for (UINT8 row : kExceptionOrder) {
    const AS_EXCEPTION_FIELD_T& field = AS_EXCEPTION_FIELDS[row];
    sml_element* child = FieldElement(field, exception);
    // This one alone is never left out.
    if (child == nullptr && field.flag == &AS_EXCEPTION_T::Deleted) child = NumberData(field.tag, 0);
    SE_AddChild(element, child);
  }
  return element;
}

}  // namespace AIRSYNC_STACK
