// The fields of a mail: their names in records, their tags on the wire (some are spelled in ways that look
// wrong: the protocol spells them so), and their forms. They are written in this order.
#pragma once

#include <array>

#include "items/ItemFields.h"

namespace demoserver {

inline constexpr std::array<ItemField, 5> kAttachmentFields = {{
    {"Name", "AttName"},
    {"Size", "AttSize", FieldForm::Number},
    {"OID", "AttOID"},
    {"Method", "AttMethod", FieldForm::Number},
    {"DisplayName", "DisplayName"},
}};

// The rule of an event under the tags that mails use; its Until is the one time of a mail in compact form.
inline constexpr std::array<ItemField, 8> kMeetingRecurrenceFields = {{
    {"Type", "RecurrenceType", FieldForm::Number, {}, {}, true},
    {"Interval", "RecurrenceInterval", FieldForm::Number},
    {"Occurrences", "RecurrenceOccurrences", FieldForm::Number},
    {"DayOfWeek", "DayOfWeek", FieldForm::Number},
    {"DayOfMonth", "DayOfMonth", FieldForm::Number},
    {"WeekOfMonth", "WeekOfMonth", FieldForm::Number},
    {"MonthOfYear", "MonthOfYear", FieldForm::Number},
    {"Until", "RecurrenceUntil", FieldForm::CompactTime},
}};

inline constexpr std::array<ItemField, 16> kMeetingRequestFields = {{
    {"Timezone", "Timezone", FieldForm::Zone},
    {"StartTime", "StartTime", FieldForm::Time},
    {"EndTime", "EndTime", FieldForm::Time},
    {"DtStamp", "DtStamp", FieldForm::Time},
    {"Location", "Location"},
    {"Reminder", "Reminder", FieldForm::Number},
    {"AllDayEvent", "AllDayEvent", FieldForm::Flag},
    {"BusyStatus", "IntdBusyStatus", FieldForm::Number},
    {"Sensitivity", "Sensitivity", FieldForm::Number},
    {"Categories", "Categories", FieldForm::List, "Category"},
    {"Recurrence", "Recurrence", FieldForm::Record, {}, kMeetingRecurrenceFields},
    {"InstanceType", "InstanceType", FieldForm::Number},
    {"Organizer", "Organizer"},
    {"RecurrenceId", "RecurrenceID", FieldForm::Time},
    {"ResponseRequested", "ResponseRequested", FieldForm::Number},
    {"GlobalObjId", "GlobalObjID"},
}};

inline constexpr std::array<ItemField, 16> kMailFields = {{
    {"Body", "Body", FieldForm::Body},
    {"BodySize", "BodySize", FieldForm::BodySize},
    {"BodyTruncated", "BodyTruncated", FieldForm::Truncated},
    {"To", "To"},
    {"Cc", "Cc"},
    {"From", "From"},
    {"ReplyTo", "Replyto"},
    {"DateReceived", "DateReceived", FieldForm::Time},
    {"Subject", "Subject"},
    {"DisplayTo", "DisplayTo"},
    {"Importance", "Importance", FieldForm::Number},
    {"Read", "Read", FieldForm::Flag},
    {"MessageClass", "MessageClass"},
    {"Attachments", "Attachments", FieldForm::Records, "Attachment", kAttachmentFields},
    {"MeetingRequest", "MeetingRequest", FieldForm::Record, {}, kMeetingRequestFields},
    {"ThreadTopic", "ThreadTopic"},
}};

}  // namespace demoserver
