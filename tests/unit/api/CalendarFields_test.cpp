// The tables of an event's fields against the protocol's documentation: order, names, tags, forms, places.
#include "api/CalendarFields.h"

#include "FieldTables.h"

namespace airsync_test {
namespace {

using namespace AIRSYNC_STACK;

// 2 is never filled; 14 to 16 are the rule, the exceptions and their count.
const DocumentedField kEvent[] = {
    {1, "Body", "Body", AS_FORM_TEXT},
    {3, "BodyTruncated", "BodyTruncated", AS_FORM_FLAG},
    {4, "Timezone", "Timezone", AS_FORM_ZONE},
    {5, "StartTime", "Starttime", AS_FORM_COMPACT_TIME},
    {6, "EndTime", "Endtime", AS_FORM_COMPACT_TIME},
    {7, "DtStamp", "Dtstamp", AS_FORM_COMPACT_TIME},
    {8, "Location", "Location", AS_FORM_TEXT},
    {9, "Reminder", "ReminderMinsbefore", AS_FORM_NUMBER},
    {10, "AllDayEvent", "Alldayevent", AS_FORM_FLAG},
    {11, "BusyStatus", "Busystatus", AS_FORM_NUMBER},
    {12, "Sensitivity", "Sensitivity", AS_FORM_NUMBER},
    {13, "Categories", "Categories", AS_FORM_LIST},
    {17, "OrganizerName", "OrganizerName", AS_FORM_TEXT},
    {18, "OrganizerEmail", "OrganizerEmail", AS_FORM_TEXT},
    {19, "Subject", "Subject", AS_FORM_TEXT},
    {20, "UID", "Uid", AS_FORM_TEXT},
    {21, "MeetingStatus", "Meetingstatus", AS_FORM_NUMBER},
    {22, "Attendees", "Attendees", AS_FORM_ATTENDEES},
};

const DocumentedField kException[] = {
    {1, "DtStamp", "Dtstamp", AS_FORM_COMPACT_TIME},
    {2, "ExceptionStartTime", "ExceptionStarttime", AS_FORM_COMPACT_TIME},
    {3, "StartTime", "Starttime", AS_FORM_COMPACT_TIME},
    {4, "EndTime", "Endtime", AS_FORM_COMPACT_TIME},
    {5, "Location", "Location", AS_FORM_TEXT},
    {6, "Body", "Body", AS_FORM_TEXT},
    {7, "BusyStatus", "Busystatus", AS_FORM_NUMBER},
    {8, "Sensitivity", "Sensitivity", AS_FORM_NUMBER},
    {9, "Reminder", "ReminderMinsbefore", AS_FORM_NUMBER},
    {10, "Subject", "Subject", AS_FORM_TEXT},
    {11, "UID", "Uid", AS_FORM_TEXT},
    {12, "AllDayEvent", "Alldayevent", AS_FORM_FLAG},
    {13, "Deleted", "ExceptionIsdeleted", AS_FORM_FLAG},
    {14, "Categories", "Categories", AS_FORM_LIST},
};

const DocumentedField kRecurrence[] = {
    {1, "Type", "RecurrenceType", AS_FORM_INLINE_NUMBER},
    {2, "Interval", "RecurrenceInterval", AS_FORM_NUMBER},
    {3, "Occurrences", "RecurrenceOccurrences", AS_FORM_NUMBER},
    {4, "DayOfWeek", "RecurrenceDayofweek", AS_FORM_NUMBER},
    {5, "DayOfMonth", "RecurrenceDayofmonth", AS_FORM_NUMBER},
    {6, "WeekOfMonth", "RecurrenceWeekofmonth", AS_FORM_NUMBER},
    {7, "MonthOfYear", "RecurrenceMonthofyear", AS_FORM_NUMBER},
    {8, "Until", "RecurrenceUntil", AS_FORM_COMPACT_TIME},
};

TEST(CalendarFields, AreThoseOfTheEventInItsOrder) { ExpectDocumented(AS_CALENDAR_FIELDS, kEvent); }

TEST(CalendarFields, AreThoseOfTheExceptionInItsOrder) { ExpectDocumented(AS_EXCEPTION_FIELDS, kException); }

TEST(CalendarFields, AreThoseOfTheRuleInItsOrder) { ExpectDocumented(AS_RECURRENCE_FIELDS, kRecurrence); }

TEST(CalendarFields, LeaveTheirPlacesToTheRuleAndTheExceptions) {
  const std::size_t word = sizeof(void*);
  EXPECT_EQ(offsetof(AS_CALENDAR_T, BodySize), 1 * word);
  EXPECT_EQ(offsetof(AS_CALENDAR_T, Recurrence), 13 * word);
  EXPECT_EQ(offsetof(AS_CALENDAR_T, Exceptions), 14 * word);
  EXPECT_EQ(offsetof(AS_CALENDAR_T, ExceptionCount), 15 * word);
}

}  // namespace
}  // namespace airsync_test
