// Events in Sync responses.
#include "api/CalendarFields.h"
#include "parser/Recurrence.h"

namespace AIRSYNC_STACK {

namespace {

// The order in which an event's times are read: one that can't be read keeps what the one before it left.
constexpr struct tm* AS_CALENDAR_T::*kTimeOrder[] = {&AS_CALENDAR_T::DtStamp, &AS_CALENDAR_T::EndTime,
                                                     &AS_CALENDAR_T::StartTime};

void ReadEvent(AS_CALENDAR_T& event, const sml_element* appData, DateParts& dates) {
  for (const AS_CALENDAR_FIELD_T& field : AS_CALENDAR_FIELDS) {
    if (field.time == nullptr) ReadField(event, field, appData, dates);
  }
  for (struct tm* AS_CALENDAR_T::*time : kTimeOrder) {
    for (const AS_CALENDAR_FIELD_T& field : AS_CALENDAR_FIELDS) {
      if (field.time == time) ReadField(event, field, appData, dates);
    }
  }
}

// An entry stands at its child's position; the count is of those that are exceptions.
void ReadExceptions(AS_CALENDAR_T& event, const sml_element* appData, DateParts& dates) {
  const sml_element* list = SE_Search(appData, "Exceptions");
  if (list == nullptr) return;
  const UINT16 entries = SE_GetNumberOfChildren(list);
  const UINT32 size = (entries == 0 ? 1U : entries) * static_cast<UINT32>(sizeof(AS_EXCEPTION_T));
  event.Exceptions = static_cast<AS_EXCEPTION_T*>(AdapterMalloc(size));
  SmlMemset(event.Exceptions, 0, size);
  for (UINT16 i = 0; i < entries; ++i) {
    const sml_element* child = SE_GetNthChild(list, i);
    if (SmlStrcmp(SE_GetTag(child), "Exception") != 0) continue;
    ReadFields(event.Exceptions[i], AS_EXCEPTION_FIELDS, child, dates);
    ++event.ExceptionCount;
  }
}

// All entries, also those beyond the count.
void ReleaseExceptions(AS_CALENDAR_T& event, const sml_element* appData) {
  if (event.Exceptions == nullptr) return;
  const UINT16 entries = SE_GetNumberOfChildren(SE_Search(appData, "Exceptions"));
  for (UINT16 i = 0; i < entries; ++i) ReleaseFields(event.Exceptions[i], AS_EXCEPTION_FIELDS);
  ReleaseField(event.Exceptions);
}

}  // namespace

void Parser::ProcessCalendarApplicationData(const sml_element* appData) {
  AS_CALENDAR_T event;
  SmlMemset(&event, 0, sizeof(event));
  DateParts dates;
  ReadEvent(event, appData, dates);
  event.Recurrence = NewRecurrence(appData, AS_RECURRENCE_FIELDS, dates);
  ReadExceptions(event, appData, dates);
  HandItem(&event);
  ReleaseFields(event, AS_CALENDAR_FIELDS);
  ReleaseRecurrence(event.Recurrence, AS_RECURRENCE_FIELDS);
  ReleaseExceptions(event, appData);
}

}  // namespace AIRSYNC_STACK
