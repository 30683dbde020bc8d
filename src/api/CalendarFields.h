// The fields of an event, of its recurrence rule and of its exceptions. Sub-records, and the counts of
// arrays, have no rows: they are not single elements.
#ifndef KROAIRSYNC_API_CALENDAR_FIELDS_H
#define KROAIRSYNC_API_CALENDAR_FIELDS_H

#include "api/ItemFields.h"

namespace AIRSYNC_STACK {

typedef AS_FIELD_T<AS_CALENDAR_T> AS_CALENDAR_FIELD_T;
typedef AS_FIELD_T<AS_EXCEPTION_T> AS_EXCEPTION_FIELD_T;
typedef AS_FIELD_T<AS_RECURRENCE_T> AS_RECURRENCE_FIELD_T;

// Each table is in the order of its record. Some tags are spelled in ways that look wrong; the protocol
// spells them so.
inline constexpr AS_CALENDAR_FIELD_T AS_CALENDAR_FIELDS[] = {
    {"Body", "Body", &AS_CALENDAR_T::Body},
    {"BodyTruncated", "BodyTruncated", &AS_CALENDAR_T::BodyTruncated},
    {"Timezone", "Timezone", &AS_CALENDAR_T::Timezone, AS_FORM_ZONE},
    {"StartTime", "Starttime", &AS_CALENDAR_T::StartTime, AS_FORM_COMPACT_TIME},
    {"EndTime", "Endtime", &AS_CALENDAR_T::EndTime, AS_FORM_COMPACT_TIME},
    {"DtStamp", "Dtstamp", &AS_CALENDAR_T::DtStamp, AS_FORM_COMPACT_TIME},
    {"Location", "Location", &AS_CALENDAR_T::Location},
    {"Reminder", "ReminderMinsbefore", &AS_CALENDAR_T::Reminder},
    {"AllDayEvent", "Alldayevent", &AS_CALENDAR_T::AllDayEvent},
    {"BusyStatus", "Busystatus", &AS_CALENDAR_T::BusyStatus},
    {"Sensitivity", "Sensitivity", &AS_CALENDAR_T::Sensitivity},
    {"Categories", "Categories", &AS_CALENDAR_T::Categories, "Category"},
    {"OrganizerName", "OrganizerName", &AS_CALENDAR_T::OrganizerName},
    {"OrganizerEmail", "OrganizerEmail", &AS_CALENDAR_T::OrganizerEmail},
    {"Subject", "Subject", &AS_CALENDAR_T::Subject},
    {"UID", "Uid", &AS_CALENDAR_T::UID},
    {"MeetingStatus", "Meetingstatus", &AS_CALENDAR_T::MeetingStatus},
    {"Attendees", "Attendees", &AS_CALENDAR_T::Attendees, AS_FORM_ATTENDEES},
};

inline constexpr AS_EXCEPTION_FIELD_T AS_EXCEPTION_FIELDS[] = {
    {"DtStamp", "Dtstamp", &AS_EXCEPTION_T::DtStamp, AS_FORM_COMPACT_TIME},
    {"ExceptionStartTime", "ExceptionStarttime", &AS_EXCEPTION_T::ExceptionStartTime, AS_FORM_COMPACT_TIME},
    {"StartTime", "Starttime", &AS_EXCEPTION_T::StartTime, AS_FORM_COMPACT_TIME},
    {"EndTime", "Endtime", &AS_EXCEPTION_T::EndTime, AS_FORM_COMPACT_TIME},
    {"Location", "Location", &AS_EXCEPTION_T::Location},
    {"Body", "Body", &AS_EXCEPTION_T::Body},
    {"BusyStatus", "Busystatus", &AS_EXCEPTION_T::BusyStatus},
    {"Sensitivity", "Sensitivity", &AS_EXCEPTION_T::Sensitivity},
    {"Reminder", "ReminderMinsbefore", &AS_EXCEPTION_T::Reminder},
    {"Subject", "Subject", &AS_EXCEPTION_T::Subject},
    {"UID", "Uid", &AS_EXCEPTION_T::UID},
    {"AllDayEvent", "Alldayevent", &AS_EXCEPTION_T::AllDayEvent},
    {"Deleted", "ExceptionIsdeleted", &AS_EXCEPTION_T::Deleted},
    {"Categories", "Categories", &AS_EXCEPTION_T::Categories, "Category"},
};

inline constexpr AS_RECURRENCE_FIELD_T AS_RECURRENCE_FIELDS[] = {
    {"Type", "RecurrenceType", &AS_RECURRENCE_T::Type},
    {"Interval", "RecurrenceInterval", &AS_RECURRENCE_T::Interval},
    {"Occurrences", "RecurrenceOccurrences", &AS_RECURRENCE_T::Occurrences},
    {"DayOfWeek", "RecurrenceDayofweek", &AS_RECURRENCE_T::DayOfWeek},
    {"DayOfMonth", "RecurrenceDayofmonth", &AS_RECURRENCE_T::DayOfMonth},
    {"WeekOfMonth", "RecurrenceWeekofmonth", &AS_RECURRENCE_T::WeekOfMonth},
    {"MonthOfYear", "RecurrenceMonthofyear", &AS_RECURRENCE_T::MonthOfYear},
    {"Until", "RecurrenceUntil", &AS_RECURRENCE_T::Until, AS_FORM_COMPACT_TIME},
};

}  // namespace AIRSYNC_STACK

#endif
