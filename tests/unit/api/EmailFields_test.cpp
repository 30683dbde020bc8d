// The tables of a mail's fields against the protocol's documentation: order, names, tags, forms, places.
#include "api/EmailFields.h"

#include <algorithm>
#include <iterator>

#include "FieldTables.h"

namespace airsync_test {
namespace {

using namespace AIRSYNC_STACK;

// 14 to 16 are the attachments, their count and the meeting request. The inline fields are smaller than a
// word: how much room they take is the platform's.
const DocumentedField kMail[] = {
    {1, "Body", "Body", AS_FORM_TEXT},
    {2, "BodySize", "BodySize", AS_FORM_NUMBER},
    {3, "BodyTruncated", "BodyTruncated", AS_FORM_FLAG},
    {4, "To", "To", AS_FORM_TEXT},
    {5, "Cc", "Cc", AS_FORM_TEXT},
    {6, "From", "From", AS_FORM_TEXT},
    {7, "ReplyTo", "Replyto", AS_FORM_TEXT},
    {8, "DateReceived", "DateReceived", AS_FORM_TIME},
    {9, "Subject", "Subject", AS_FORM_TEXT},
    {10, "DisplayTo", "DisplayTo", AS_FORM_TEXT},
    {11, "Importance", "Importance", AS_FORM_INLINE_NUMBER},
    {0, "Read", "Read", AS_FORM_INLINE_FLAG},
    {0, "MessageClass", "MessageClass", AS_FORM_TEXT},
    {0, "ThreadTopic", "ThreadTopic", AS_FORM_TEXT},
};

const DocumentedField kAttachment[] = {
    {1, "Name", "AttName", AS_FORM_TEXT},
    {2, "Size", "AttSize", AS_FORM_INLINE_NUMBER},
    {3, "OID", "AttOID", AS_FORM_TEXT},
    {4, "Method", "AttMethod", AS_FORM_INLINE_NUMBER},
    {5, "DisplayName", "DisplayName", AS_FORM_TEXT},
};

// 1 to 3, 15 and 16 are never filled; 14 is the rule.
const DocumentedField kMeetingRequest[] = {
    {4, "Timezone", "Timezone", AS_FORM_ZONE},
    {5, "StartTime", "StartTime", AS_FORM_TIME},
    {6, "EndTime", "EndTime", AS_FORM_TIME},
    {7, "DtStamp", "DtStamp", AS_FORM_TIME},
    {8, "Location", "Location", AS_FORM_TEXT},
    {9, "Reminder", "Reminder", AS_FORM_NUMBER},
    {10, "AllDayEvent", "AllDayEvent", AS_FORM_FLAG},
    {11, "BusyStatus", "IntdBusyStatus", AS_FORM_NUMBER},
    {12, "Sensitivity", "Sensitivity", AS_FORM_NUMBER},
    {13, "Categories", "Categories", AS_FORM_LIST},
    {17, "InstanceType", "InstanceType", AS_FORM_INLINE_NUMBER},
    {18, "Organizer", "Organizer", AS_FORM_TEXT},
    {19, "RecurrenceId", "RecurrenceID", AS_FORM_TIME},
    {20, "ResponseRequested", "ResponseRequested", AS_FORM_INLINE_NUMBER},
    {21, "GlobalObjId", "GlobalObjID", AS_FORM_TEXT},
};

const DocumentedField kRecurrence[] = {
    {1, "Type", "RecurrenceType", AS_FORM_INLINE_NUMBER},
    {2, "Interval", "RecurrenceInterval", AS_FORM_NUMBER},
    {3, "Occurrences", "RecurrenceOccurrences", AS_FORM_NUMBER},
    {4, "DayOfWeek", "DayOfWeek", AS_FORM_NUMBER},
    {5, "DayOfMonth", "DayOfMonth", AS_FORM_NUMBER},
    {6, "WeekOfMonth", "WeekOfMonth", AS_FORM_NUMBER},
    {7, "MonthOfYear", "MonthOfYear", AS_FORM_NUMBER},
    {8, "Until", "RecurrenceUntil", AS_FORM_COMPACT_TIME},
};

TEST(EmailFields, AreThoseOfTheMailInItsOrder) { ExpectDocumented(AS_EMAIL_FIELDS, kMail); }

TEST(EmailFields, StandInTheMailInItsOrder) {
  const std::size_t offsets[] = {offsetof(AS_EMAIL_T, Importance),      offsetof(AS_EMAIL_T, Read),
                                 offsetof(AS_EMAIL_T, MessageClass),    offsetof(AS_EMAIL_T, Attachments),
                                 offsetof(AS_EMAIL_T, AttachmentCount), offsetof(AS_EMAIL_T, MeetingRequest),
                                 offsetof(AS_EMAIL_T, ThreadTopic)};
  EXPECT_TRUE(std::is_sorted(std::begin(offsets), std::end(offsets)));
}

TEST(EmailFields, AreThoseOfTheAttachmentInItsOrder) { ExpectDocumented(AS_ATTACHMENT_FIELDS, kAttachment); }

TEST(EmailFields, AreThoseOfTheMeetingRequestInItsOrder) {
  ExpectDocumented(AS_MEETING_REQUEST_FIELDS, kMeetingRequest);
}

TEST(EmailFields, AreThoseOfTheMeetingRequestsRuleInItsOrder) {
  ExpectDocumented(AS_MEETING_RECURRENCE_FIELDS, kRecurrence);
}

// Fields 4 to 14 of a meeting request stand where an event has them.
TEST(EmailFields, ShareThePlacesOfAnEvent) {
  EXPECT_EQ(offsetof(AS_MEETING_REQUEST_T, Timezone), offsetof(AS_CALENDAR_T, Timezone));
  EXPECT_EQ(offsetof(AS_MEETING_REQUEST_T, StartTime), offsetof(AS_CALENDAR_T, StartTime));
  EXPECT_EQ(offsetof(AS_MEETING_REQUEST_T, EndTime), offsetof(AS_CALENDAR_T, EndTime));
  EXPECT_EQ(offsetof(AS_MEETING_REQUEST_T, DtStamp), offsetof(AS_CALENDAR_T, DtStamp));
  EXPECT_EQ(offsetof(AS_MEETING_REQUEST_T, Location), offsetof(AS_CALENDAR_T, Location));
  EXPECT_EQ(offsetof(AS_MEETING_REQUEST_T, Reminder), offsetof(AS_CALENDAR_T, Reminder));
  EXPECT_EQ(offsetof(AS_MEETING_REQUEST_T, AllDayEvent), offsetof(AS_CALENDAR_T, AllDayEvent));
  EXPECT_EQ(offsetof(AS_MEETING_REQUEST_T, BusyStatus), offsetof(AS_CALENDAR_T, BusyStatus));
  EXPECT_EQ(offsetof(AS_MEETING_REQUEST_T, Sensitivity), offsetof(AS_CALENDAR_T, Sensitivity));
  EXPECT_EQ(offsetof(AS_MEETING_REQUEST_T, Categories), offsetof(AS_CALENDAR_T, Categories));
  EXPECT_EQ(offsetof(AS_MEETING_REQUEST_T, Recurrence), offsetof(AS_CALENDAR_T, Recurrence));
}

}  // namespace
}  // namespace airsync_test
