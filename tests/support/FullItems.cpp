#include "support/FullItems.h"

#include <cstdio>

namespace airsync_test {

namespace {

char* Text(const char* text) { return const_cast<char*>(text); }

}  // namespace

struct tm TimeOf(int year, int month, int day, int hour, int minute, int second) {
  struct tm time = {};
  time.tm_year = year - 1900;
  time.tm_mon = month - 1;
  time.tm_mday = day;
  time.tm_hour = hour;
  time.tm_min = minute;
  time.tm_sec = second;
  return time;
}

FullEvent::FullEvent()
    : start(TimeOf(2005, 3, 7, 9, 30, 0)),
      end(TimeOf(2005, 3, 7, 10, 45, 0)),
      stamp(TimeOf(2005, 2, 28, 23, 59, 59)),
      until(TimeOf(2010, 12, 31, 0, 0, 0)),
      exceptionStamp(TimeOf(2005, 3, 1, 8, 0, 1)),
      original(TimeOf(2005, 3, 14, 9, 30, 0)),
      exceptionStart(TimeOf(2005, 3, 14, 13, 0, 0)),
      exceptionEnd(TimeOf(2005, 3, 14, 14, 15, 0)),
      cancelled(TimeOf(2005, 3, 21, 9, 30, 0)) {
  for (int i = 0; i < kZoneSize; ++i) zone[i] = static_cast<UINT8>(5 * i);
  rule = {6, &interval, &occurrences, &dayOfWeek, &dayOfMonth, &week, &month, &until};
  exceptions[0] = {&exceptionStamp,
                   &original,
                   &exceptionStart,
                   &exceptionEnd,
                   Text("exlocation"),
                   Text("exbody"),
                   &exceptionBusy,
                   &exceptionSensitivity,
                   &exceptionReminder,
                   Text("exsubject"),
                   Text("exuid"),
                   &no,
                   &no,
                   Text("Moved@@Late")};
  exceptions[1].ExceptionStartTime = &cancelled;
  exceptions[1].Deleted = &yes;
  record = {Text("body"),
            nullptr,
            &yes,
            zone,
            &start,
            &end,
            &stamp,
            Text("location"),
            &reminder,
            &yes,
            &busy,
            &sensitivity,
            Text("Work@@Chess"),
            &rule,
            exceptions,
            2,
            Text("organizername"),
            Text("organizeremail"),
            Text("subject"),
            Text("uid"),
            &meeting,
            Text("Ann##ann@x@@Bob##bob@y")};
}

std::string ZoneInHex() {
  std::string hex;
  for (int i = 0; i < kZoneSize; ++i) {
    char digits[3];
    std::snprintf(digits, sizeof digits, "%02X", 5 * i % 256);
    hex += digits;
  }
  return hex;
}

std::string ZoneInBase64() {
  return "AAUKDxQZHiMoLTI3PEFGS1BVWl9kaW5zeH2Ch4yRlpugpaqvtLm+w8jN0tfc4ebr8PX6/wQJDhMY"
         "HSInLDE2O0BFSk9UWV5jaG1yd3yBhouQlZqfpKmus7i9wsfM0dbb4OXq7/T5/gMIDRIXHCEmKzA1"
         "Oj9ESU5TWF1iZ2xxdnuAhYqPlJmeo6itsre8wcbL0NXa3+Tp7vP4/QIHDBEWGyAlKi80OT5DSE1S"
         "Vw==";
}

ItemFields FullEventFields() {
  return {{"Body", "body"},
          {"BodyTruncated", "1"},
          {"Timezone", ZoneInHex()},
          {"StartTime", "2005-03-07 09:30:00"},
          {"EndTime", "2005-03-07 10:45:00"},
          {"DtStamp", "2005-02-28 23:59:59"},
          {"Location", "location"},
          {"Reminder", "15"},
          {"AllDayEvent", "1"},
          {"BusyStatus", "2"},
          {"Sensitivity", "3"},
          {"Categories", "Work@@Chess"},
          {"Recurrence.Type", "6"},
          {"Recurrence.Interval", "11"},
          {"Recurrence.Occurrences", "12"},
          {"Recurrence.DayOfWeek", "127"},
          {"Recurrence.DayOfMonth", "31"},
          {"Recurrence.WeekOfMonth", "4"},
          {"Recurrence.MonthOfYear", "10"},
          {"Recurrence.Until", "2010-12-31 00:00:00"},
          {"Exceptions", ""},
          {"ExceptionCount", "2"},
          {"Exceptions[0].DtStamp", "2005-03-01 08:00:01"},
          {"Exceptions[0].ExceptionStartTime", "2005-03-14 09:30:00"},
          {"Exceptions[0].StartTime", "2005-03-14 13:00:00"},
          {"Exceptions[0].EndTime", "2005-03-14 14:15:00"},
          {"Exceptions[0].Location", "exlocation"},
          {"Exceptions[0].Body", "exbody"},
          {"Exceptions[0].BusyStatus", "1"},
          {"Exceptions[0].Sensitivity", "2"},
          {"Exceptions[0].Reminder", "30"},
          {"Exceptions[0].Subject", "exsubject"},
          {"Exceptions[0].UID", "exuid"},
          {"Exceptions[0].AllDayEvent", "0"},
          {"Exceptions[0].Deleted", "0"},
          {"Exceptions[0].Categories", "Moved@@Late"},
          {"Exceptions[1].ExceptionStartTime", "2005-03-21 09:30:00"},
          {"Exceptions[1].Deleted", "1"},
          {"OrganizerName", "organizername"},
          {"OrganizerEmail", "organizeremail"},
          {"Subject", "subject"},
          {"UID", "uid"},
          {"MeetingStatus", "7"},
          {"Attendees", "Ann##ann@x@@Bob##bob@y"}};
}

ItemFields FullMailFields() {
  return {{"Body", "body"},
          {"BodySize", "5000"},
          {"BodyTruncated", "1"},
          {"To", "to"},
          {"Cc", "cc"},
          {"From", "from"},
          {"ReplyTo", "replyto"},
          {"DateReceived", "2005-01-01 00:00:00"},
          {"Subject", "subject"},
          {"DisplayTo", "displayto"},
          {"Importance", "2"},
          {"Read", "1"},
          {"MessageClass", "messageclass"},
          {"AttachmentCount", "3"},
          {"Attachments[0].Name", "name1"},
          {"Attachments[0].Size", "1000"},
          {"Attachments[0].OID", "oid1"},
          {"Attachments[0].Method", "1"},
          {"Attachments[0].DisplayName", "displayname1"},
          {"Attachments[1].Name", "name2"},
          {"Attachments[1].Size", "2000"},
          {"Attachments[1].OID", "oid2"},
          {"Attachments[1].Method", "2"},
          {"Attachments[1].DisplayName", "displayname2"},
          {"Attachments[2].Name", "name3"},
          {"Attachments[2].Size", "3000"},
          {"Attachments[2].OID", "oid3"},
          {"Attachments[2].Method", "3"},
          {"Attachments[2].DisplayName", "displayname3"},
          {"MeetingRequest.Timezone", ZoneInHex()},
          {"MeetingRequest.StartTime", "2005-03-07 09:30:00"},
          {"MeetingRequest.EndTime", "2005-03-07 10:45:01"},
          {"MeetingRequest.DtStamp", "2005-03-01 00:00:00"},
          {"MeetingRequest.Location", "mrlocation"},
          {"MeetingRequest.Reminder", "20"},
          {"MeetingRequest.AllDayEvent", "1"},
          {"MeetingRequest.BusyStatus", "3"},
          {"MeetingRequest.Sensitivity", "1"},
          {"MeetingRequest.Categories", "Meeting@@Red"},
          {"MeetingRequest.Recurrence.Type", "5"},
          {"MeetingRequest.Recurrence.Interval", "21"},
          {"MeetingRequest.Recurrence.Occurrences", "22"},
          {"MeetingRequest.Recurrence.DayOfWeek", "64"},
          {"MeetingRequest.Recurrence.DayOfMonth", "28"},
          {"MeetingRequest.Recurrence.WeekOfMonth", "5"},
          {"MeetingRequest.Recurrence.MonthOfYear", "11"},
          {"MeetingRequest.Recurrence.Until", "2011-11-30 01:02:03"},
          {"MeetingRequest.InstanceType", "3"},
          {"MeetingRequest.Organizer", "mrorganizer"},
          {"MeetingRequest.RecurrenceId", "2005-03-14 09:30:00"},
          {"MeetingRequest.ResponseRequested", "1"},
          {"MeetingRequest.GlobalObjId", "mrglobalobjid"},
          {"ThreadTopic", "threadtopic"}};
}

}  // namespace airsync_test
