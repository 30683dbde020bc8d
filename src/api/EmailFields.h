// The fields of a mail, of its attachments and of the meeting that it invites to. Sub-records, and the counts
// of arrays, have no rows: they are not single elements.
#ifndef KROAIRSYNC_API_EMAIL_FIELDS_H
#define KROAIRSYNC_API_EMAIL_FIELDS_H

#include "api/ItemFields.h"

namespace AIRSYNC_STACK {

typedef AS_FIELD_T<AS_EMAIL_T> AS_EMAIL_FIELD_T;
typedef AS_FIELD_T<AS_ATTACHMENT_T> AS_ATTACHMENT_FIELD_T;
typedef AS_FIELD_T<AS_MEETING_REQUEST_T> AS_MEETING_REQUEST_FIELD_T;

// Each table is in the order of its record. Some tags are spelled in ways that look wrong; the protocol
// spells them so.
inline constexpr AS_EMAIL_FIELD_T AS_EMAIL_FIELDS[] = {
    {"Body", "Body", &AS_EMAIL_T::Body},
    {"BodySize", "BodySize", &AS_EMAIL_T::BodySize},
    {"BodyTruncated", "BodyTruncated", &AS_EMAIL_T::BodyTruncated},
    {"To", "To", &AS_EMAIL_T::To},
    {"Cc", "Cc", &AS_EMAIL_T::Cc},
    {"From", "From", &AS_EMAIL_T::From},
    {"ReplyTo", "Replyto", &AS_EMAIL_T::ReplyTo},
    {"DateReceived", "DateReceived", &AS_EMAIL_T::DateReceived},
    {"Subject", "Subject", &AS_EMAIL_T::Subject},
    {"DisplayTo", "DisplayTo", &AS_EMAIL_T::DisplayTo},
    {"Importance", "Importance", &AS_EMAIL_T::Importance},
    {"Read", "Read", &AS_EMAIL_T::Read},
    {"MessageClass", "MessageClass", &AS_EMAIL_T::MessageClass},
    {"ThreadTopic", "ThreadTopic", &AS_EMAIL_T::ThreadTopic},
};

inline constexpr AS_ATTACHMENT_FIELD_T AS_ATTACHMENT_FIELDS[] = {
    {"Name", "AttName", &AS_ATTACHMENT_T::Name},
    {"Size", "AttSize", &AS_ATTACHMENT_T::Size},
    {"OID", "AttOID", &AS_ATTACHMENT_T::OID},
    {"Method", "AttMethod", &AS_ATTACHMENT_T::Method},
    {"DisplayName", "DisplayName", &AS_ATTACHMENT_T::DisplayName},
};

inline constexpr AS_MEETING_REQUEST_FIELD_T AS_MEETING_REQUEST_FIELDS[] = {
    {"Timezone", "Timezone", &AS_MEETING_REQUEST_T::Timezone, AS_FORM_ZONE},
    {"StartTime", "StartTime", &AS_MEETING_REQUEST_T::StartTime},
    {"EndTime", "EndTime", &AS_MEETING_REQUEST_T::EndTime},
    {"DtStamp", "DtStamp", &AS_MEETING_REQUEST_T::DtStamp},
    {"Location", "Location", &AS_MEETING_REQUEST_T::Location},
    {"Reminder", "Reminder", &AS_MEETING_REQUEST_T::Reminder},
    {"AllDayEvent", "AllDayEvent", &AS_MEETING_REQUEST_T::AllDayEvent},
    {"BusyStatus", "IntdBusyStatus", &AS_MEETING_REQUEST_T::BusyStatus},
    {"Sensitivity", "Sensitivity", &AS_MEETING_REQUEST_T::Sensitivity},
    {"Categories", "Categories", &AS_MEETING_REQUEST_T::Categories, "Category"},
    {"InstanceType", "InstanceType", &AS_MEETING_REQUEST_T::InstanceType},
    {"Organizer", "Organizer", &AS_MEETING_REQUEST_T::Organizer},
    {"RecurrenceId", "RecurrenceID", &AS_MEETING_REQUEST_T::RecurrenceId},
    {"ResponseRequested", "ResponseRequested", &AS_MEETING_REQUEST_T::ResponseRequested},
    {"GlobalObjId", "GlobalObjID", &AS_MEETING_REQUEST_T::GlobalObjId},
};

// The recurrence rule of a meeting request: the record is an event's, some of the tags are not.
inline constexpr AS_FIELD_T<AS_RECURRENCE_T> AS_MEETING_RECURRENCE_FIELDS[] = {
    {"Type", "RecurrenceType", &AS_RECURRENCE_T::Type},
    {"Interval", "RecurrenceInterval", &AS_RECURRENCE_T::Interval},
    {"Occurrences", "RecurrenceOccurrences", &AS_RECURRENCE_T::Occurrences},
    {"DayOfWeek", "DayOfWeek", &AS_RECURRENCE_T::DayOfWeek},
    {"DayOfMonth", "DayOfMonth", &AS_RECURRENCE_T::DayOfMonth},
    {"WeekOfMonth", "WeekOfMonth", &AS_RECURRENCE_T::WeekOfMonth},
    {"MonthOfYear", "MonthOfYear", &AS_RECURRENCE_T::MonthOfYear},
    {"Until", "RecurrenceUntil", &AS_RECURRENCE_T::Until, AS_FORM_COMPACT_TIME},
};

}  // namespace AIRSYNC_STACK

#endif
