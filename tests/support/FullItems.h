// An event and a mail with all their fields, each with a value of its own: the event as a record, and both as
// the library hands them to storage.
#ifndef TESTS_SUPPORT_FULL_ITEMS_H
#define TESTS_SUPPORT_FULL_ITEMS_H

#include "api/ItemRecords.h"
#include "support/ItemCopies.h"

namespace airsync_test {

/// Byte i of the block is 5 * i; in base64 it has 232 characters.
inline constexpr int kZoneSize = 172;

/// The record of tests/wire/sync-calendar-event-add. The library reads its texts only.
struct FullEvent {
  FullEvent();
  FullEvent(const FullEvent&) = delete;
  FullEvent& operator=(const FullEvent&) = delete;

  AIRSYNC_STACK::AS_CALENDAR_T record = {};
  AIRSYNC_STACK::AS_RECURRENCE_T rule = {};
  AIRSYNC_STACK::AS_EXCEPTION_T exceptions[2] = {};

  UINT8 zone[kZoneSize];
  struct tm start, end, stamp, until;
  struct tm exceptionStamp, original, exceptionStart, exceptionEnd, cancelled;
  UINT8 yes = 1, no = 0;
  INT32 reminder = 15, busy = 2, sensitivity = 3, meeting = 7;
  INT32 interval = 11, occurrences = 12, dayOfWeek = 127, dayOfMonth = 31, week = 4, month = 10;
  INT32 exceptionBusy = 1, exceptionSensitivity = 2, exceptionReminder = 30;
};

/// A time with only the six parts that records hold; `month` from 1.
struct tm TimeOf(int year, int month, int day, int hour, int minute, int second);

/// The zone in hexadecimal, as copies have it, and in base64.
std::string ZoneInHex();
std::string ZoneInBase64();

/// What the golden documents sync-answer-event-all-fields-... and sync-answer-mail-all-fields-... bring.
ItemFields FullEventFields();
ItemFields FullMailFields();

}  // namespace airsync_test

#endif
