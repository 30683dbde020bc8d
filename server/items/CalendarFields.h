// The fields of an event: their names in records, their tags on the wire (some are spelled in ways that look
// wrong: the protocol spells them so), and their forms.
//
// The order is that in which they are written. Recurrence and Exceptions come last: a reader that takes the
// first element of a name that it finds anywhere in an event then finds the event's own.
#pragma once

#include <array>

#include "items/ItemFields.h"

namespace demoserver {

inline constexpr std::array<ItemField, 2> kAttendeeFields = {{
    {"Name", "AttendeeName"},
    {"Email", "AttendeeEmail"},
}};

inline constexpr std::array<ItemField, 8> kRecurrenceFields = {{
    {"Type", "RecurrenceType", FieldForm::Number, {}, {}, true},
    {"Interval", "RecurrenceInterval", FieldForm::Number},
    {"Occurrences", "RecurrenceOccurrences", FieldForm::Number},
    {"DayOfWeek", "RecurrenceDayofweek", FieldForm::Number},
    {"DayOfMonth", "RecurrenceDayofmonth", FieldForm::Number},
    {"WeekOfMonth", "RecurrenceWeekofmonth", FieldForm::Number},
    {"MonthOfYear", "RecurrenceMonthofyear", FieldForm::Number},
    {"Until", "RecurrenceUntil", FieldForm::CompactTime},
}};

inline constexpr std::array<ItemField, 14> kExceptionFields = {{
    {"DtStamp", "Dtstamp", FieldForm::CompactTime},
    {"ExceptionStartTime", "ExceptionStarttime", FieldForm::CompactTime},
    {"StartTime", "Starttime", FieldForm::CompactTime},
    {"EndTime", "Endtime", FieldForm::CompactTime},
    {"Location", "Location"},
    {"Body", "Body"},
    {"BusyStatus", "Busystatus", FieldForm::Number},
    {"Sensitivity", "Sensitivity", FieldForm::Number},
    {"Reminder", "ReminderMinsbefore", FieldForm::Number},
    {"Subject", "Subject"},
    {"UID", "Uid"},
    {"AllDayEvent", "Alldayevent", FieldForm::Flag},
    {"Deleted", "ExceptionIsdeleted", FieldForm::Flag},
    {"Categories", "Categories", FieldForm::List, "Category"},
}};

inline constexpr std::array<ItemField, 20> kCalendarFields = {{
    {"Body", "Body", FieldForm::Body},
    {"BodyTruncated", "BodyTruncated", FieldForm::Truncated},
    {"Timezone", "Timezone", FieldForm::Zone},
    {"StartTime", "Starttime", FieldForm::CompactTime},
    {"EndTime", "Endtime", FieldForm::CompactTime},
    {"DtStamp", "Dtstamp", FieldForm::CompactTime},
    {"Location", "Location"},
    {"Reminder", "ReminderMinsbefore", FieldForm::Number},
    {"AllDayEvent", "Alldayevent", FieldForm::Flag},
    {"BusyStatus", "Busystatus", FieldForm::Number},
    {"Sensitivity", "Sensitivity", FieldForm::Number},
    {"Categories", "Categories", FieldForm::List, "Category"},
    {"OrganizerName", "OrganizerName"},
    {"OrganizerEmail", "OrganizerEmail"},
    {"Subject", "Subject"},
    {"UID", "Uid"},
    {"MeetingStatus", "Meetingstatus", FieldForm::Number},
    {"Attendees", "Attendees", FieldForm::Records, "Attendee", kAttendeeFields},
    {"Recurrence", "Recurrence", FieldForm::Record, {}, kRecurrenceFields},
    {"Exceptions", "Exceptions", FieldForm::Records, "Exception", kExceptionFields},
}};

}  // namespace demoserver
