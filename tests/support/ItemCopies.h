// Item records as texts that stay when the record is gone.
#ifndef TESTS_SUPPORT_ITEM_COPIES_H
#define TESTS_SUPPORT_ITEM_COPIES_H

#include <map>
#include <string>

#include "api/ItemRecords.h"

namespace airsync_test {

/// The fields of an item that are present, by their names: texts as they are, numbers and flags in decimal,
/// times as "2004-12-31 23:59:58", zones in hexadecimal.
///
/// Fields of parts have the part's name before theirs: "Recurrence.Until", "Exceptions[0].Subject",
/// "Attachments[2].Size", "MeetingRequest.Recurrence.Type"; a part that is there without any field appears by
/// its own name, with an empty text. Inline numbers, flags and counts are always there.
typedef std::map<std::string, std::string> ItemFields;
typedef ItemFields ContactFields;

ContactFields CopyContact(const AIRSYNC_STACK::AS_CONTACT_T& contact);

/// All fields of an event, each read from its place in the record, without the table that the library uses.
/// Of the exceptions, `ExceptionCount` entries.
ItemFields CopyEvent(const AIRSYNC_STACK::AS_CALENDAR_T& event);

/// The same for a mail. Its attachments are looked at when the pointer to them is set.
ItemFields CopyMail(const AIRSYNC_STACK::AS_EMAIL_T& mail);

/// A time as the copies have it; the parts that the library never fills must be 0.
std::string PrintedTime(const struct tm& time);

}  // namespace airsync_test

#endif
