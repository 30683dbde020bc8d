#include "items/CalendarClass.h"

#include <gtest/gtest.h>
#include <set>

#include "items/CalendarFields.h"
#include "support/Base64.h"
#include "support/Bytes.h"
#include "support/Trees.h"
#include "wbxml/Codec.h"

namespace demoserver {
namespace {

using nlohmann::json;

const CalendarClass kEvents;
const std::string kZone = base64(std::string(172, '\x01'));

json decoded(std::string_view tree, const json& previous = json::object(),
             const TransferOptions& options = {}) {
  return kEvents.decode(dataOfTree(Page::Calendar, tree), previous, options);
}

// A record with every field, and the same event as it travels.
json everything() {
  return {{"Body", "Bring cake"},
          {"Timezone", kZone},
          {"StartTime", "2026-11-21T09:00:00Z"},
          {"EndTime", "2026-11-21T10:30:00Z"},
          {"DtStamp", "2026-11-01T00:00:01Z"},
          {"Location", "Zürich"},
          {"Reminder", 15},
          {"AllDayEvent", false},
          {"BusyStatus", 2},
          {"Sensitivity", 0},
          {"Categories", {"Work", "Cake"}},
          {"OrganizerName", "Ann"},
          {"OrganizerEmail", "ann@example.org"},
          {"Subject", "Lunch & more"},
          {"UID", "u-1"},
          {"MeetingStatus", 1},
          {"Attendees", {{{"Name", "Bob"}, {"Email", "b@example.org"}}, {{"Email", "c@example.org"}}}},
          {"Recurrence",
           {{"Type", 6},
            {"Interval", 1},
            {"Occurrences", 5},
            {"DayOfWeek", 62},
            {"DayOfMonth", 7},
            {"WeekOfMonth", 5},
            {"MonthOfYear", 11},
            {"Until", "2030-12-31T23:59:59Z"}}},
          {"Exceptions",
           {{{"Deleted", true}, {"ExceptionStartTime", "2027-11-21T09:00:00Z"}},
            {{"DtStamp", "2026-11-02T00:00:00Z"},
             {"ExceptionStartTime", "2028-11-21T09:00:00Z"},
             {"StartTime", "2028-11-22T09:00:00Z"},
             {"EndTime", "2028-11-22T10:00:00Z"},
             {"Location", "Bern"},
             {"Body", "No cake"},
             {"BusyStatus", 1},
             {"Sensitivity", 3},
             {"Reminder", -5},
             {"Subject", "Late lunch"},
             {"UID", "u-2"},
             {"AllDayEvent", true},
             {"Deleted", false},
             {"Categories", {"Moved"}}}}}};
}

std::string everythingAsSent() {
  return "Body\"Bring cake\" BodyTruncated\"0\" Timezone\"" + kZone +
         "\" Starttime\"20261121T090000Z\" Endtime\"20261121T103000Z\" Dtstamp\"20261101T000001Z\" "
         "Location\"Zürich\" ReminderMinsbefore\"15\" Alldayevent\"0\" Busystatus\"2\" Sensitivity\"0\" "
         "Categories(Category\"Work\" Category\"Cake\") OrganizerName\"Ann\" "
         "OrganizerEmail\"ann@example.org\" Subject\"Lunch & more\" Uid\"u-1\" Meetingstatus\"1\" "
         "Attendees(Attendee(AttendeeName\"Bob\" AttendeeEmail\"b@example.org\") "
         "Attendee(AttendeeEmail\"c@example.org\")) "
         "Recurrence(RecurrenceType\"6\" RecurrenceInterval\"1\" RecurrenceOccurrences\"5\" "
         "RecurrenceDayofweek\"62\" RecurrenceDayofmonth\"7\" RecurrenceWeekofmonth\"5\" "
         "RecurrenceMonthofyear\"11\" RecurrenceUntil\"20301231T235959Z\") "
         "Exceptions(Exception(ExceptionStarttime\"20271121T090000Z\" ExceptionIsdeleted\"1\") "
         "Exception(Dtstamp\"20261102T000000Z\" ExceptionStarttime\"20281121T090000Z\" "
         "Starttime\"20281122T090000Z\" Endtime\"20281122T100000Z\" Location\"Bern\" Body\"No cake\" "
         "Busystatus\"1\" Sensitivity\"3\" ReminderMinsbefore\"-5\" Subject\"Late lunch\" Uid\"u-2\" "
         "Alldayevent\"1\" ExceptionIsdeleted\"0\" Categories(Category\"Moved\")))";
}

TEST(DemoEvent, IsWrittenWithEveryFieldUnderItsTag) {
  EXPECT_EQ(textOfTree(kEvents.encode(everything(), {})), everythingAsSent());
}

TEST(DemoEvent, IsReadWithEveryFieldUnderItsTag) { EXPECT_EQ(decoded(everythingAsSent()), everything()); }

TEST(DemoEvent, IsStoredAndShownAsItWasChecked) {
  EXPECT_EQ(kEvents.check(everything()), everything());
  json shown = everything();
  shown["BodyTruncated"] = false;
  EXPECT_EQ(kEvents.view(everything()), shown);
  EXPECT_EQ(kEvents.check(shown), everything());
}

TEST(DemoEvent, IsWrittenOnTheCalendarPage) {
  const json record = {{"StartTime", "2005-03-07T09:30:00Z"},
                       {"Recurrence", {{"Type", 1}}},
                       {"Exceptions", {{{"Deleted", true}}}}};
  EXPECT_EQ(hexOf(encode(kEvents.encode(record, {}))),
            "03 01 6A 00 5D 00 04 "
            "67 03 32 30 30 35 30 33 30 37 54 30 39 33 30 30 30 5A 00 01 "  // Starttime
            "5B 5C 03 31 00 01 01 "                                         // Recurrence, RecurrenceType
            "54 53 55 03 31 00 01 01 01 "  // Exceptions, Exception, ExceptionIsdeleted
            "01");
}

TEST(DemoEvent, HasATagOfThePageForEveryFieldOfItsTables) {
  const auto check = [](std::span<const ItemField> fields) {
    std::set<std::string_view> names;
    for (const ItemField& field : fields) {
      EXPECT_NE(tokenOf(Page::Calendar, field.tag), 0) << field.tag;
      EXPECT_TRUE(names.insert(field.name).second) << field.name;
      EXPECT_EQ(field.entryTag.empty(), tokenOf(Page::Calendar, field.entryTag) == 0) << field.entryTag;
    }
  };
  check(kCalendarFields);
  check(kRecurrenceFields);
  check(kExceptionFields);
  check(kAttendeeFields);
}

TEST(DemoEvent, LeavesOutWhatItDoesNotHave) {
  EXPECT_EQ(textOfTree(kEvents.encode(json::object(), {})), "");
  EXPECT_EQ(decoded(""), json::object());
  EXPECT_EQ(decoded("Subject Body ReminderMinsbefore Alldayevent Starttime Timezone Categories Attendees "
                    "Recurrence Exceptions"),
            json::object());
}

TEST(DemoEvent, EntriesWithoutContentAreNone) {
  EXPECT_EQ(decoded("Categories(Category Category\"A\" Category) Attendees(Attendee Attendee(AttendeeName))"),
            json({{"Categories", {"A"}}}));
}

TEST(DemoEvent, AnyNumberButZeroIsATrueFlag) {
  EXPECT_EQ(decoded("Alldayevent\"2\""), json({{"AllDayEvent", true}}));
  EXPECT_EQ(decoded("Alldayevent\"-1\""), json({{"AllDayEvent", true}}));
  EXPECT_EQ(decoded("Alldayevent\"0\""), json({{"AllDayEvent", false}}));
}

TEST(DemoEvent, SendsTheHeadOfALongBodyAndSaysSo) {
  TransferOptions options;
  options.bodyLimit = 3;
  EXPECT_EQ(textOfTree(kEvents.encode({{"Body", "abäc"}}, options)), "Body\"ab\" BodyTruncated\"1\"");
  options.bodyLimit = 5;
  EXPECT_EQ(textOfTree(kEvents.encode({{"Body", "abäc"}}, options)), "Body\"abäc\" BodyTruncated\"0\"");
}

TEST(DemoEvent, SendsBodiesOfExceptionsWhole) {
  TransferOptions options;
  options.bodyLimit = 1;
  EXPECT_EQ(textOfTree(kEvents.encode({{"Exceptions", {{{"Body", "abc"}}}}}, options)),
            "Exceptions(Exception(Body\"abc\"))");
}

TEST(DemoEvent, KeepsABodyOfWhichTheClientHoldsTheHeadOnly) {
  TransferOptions options;
  options.bodyLimit = 2;
  const json previous = {{"Body", "abcdef"}};
  EXPECT_EQ(decoded("Body\"ab\" Subject\"S\"", previous, options),
            json({{"Body", "abcdef"}, {"Subject", "S"}}));
  EXPECT_EQ(decoded("Body\"abX\"", previous, options), json({{"Body", "abX"}}));
  options.bodyLimit = 0;
  EXPECT_EQ(decoded("", previous, options), previous);
}

TEST(DemoEvent, AChangeReplacesWhatItSendsAndClearsWhatItLacks) {
  const json previous = {{"Subject", "A"},
                         {"Location", "L"},
                         {"Recurrence", {{"Type", 0}, {"Interval", 2}}},
                         {"Exceptions", {{{"Deleted", true}}}},
                         {"Attendees", {{{"Name", "Bob"}}}}};
  EXPECT_EQ(decoded("Subject\"B\" Recurrence(RecurrenceType\"1\")", previous),
            json({{"Subject", "B"}, {"Recurrence", {{"Type", 1}}}}));
}

TEST(DemoEvent, AChangeKeepsFieldsThatTheDeviceDoesNotSupport) {
  TransferOptions options;
  options.supported = "Subject Location ";
  EXPECT_EQ(
      decoded("Subject\"B\"", {{"Subject", "A"}, {"Location", "L"}, {"Reminder", 5}, {"UID", "u"}}, options),
      json({{"Subject", "B"}, {"Reminder", 5}, {"UID", "u"}}));
}

TEST(DemoEvent, AChangeKeepsTheOrganizerThatItNeverNames) {
  const json previous = {{"OrganizerName", "Ann"}, {"OrganizerEmail", "ann@example.org"}};
  EXPECT_EQ(decoded("Subject\"B\"", previous)["OrganizerEmail"], "ann@example.org");
  EXPECT_EQ(decoded("OrganizerName", previous), json({{"OrganizerEmail", "ann@example.org"}}));
}

TEST(DemoEvent, RefusesRecurrencesThatNobodyKnows) {
  for (const int type : {0, 1, 2, 3, 5, 6})
    EXPECT_EQ(decoded("Recurrence(RecurrenceType\"" + std::to_string(type) + "\")"),
              json({{"Recurrence", {{"Type", type}}}}));
  for (const int type : {-1, 4, 7}) {
    EXPECT_THROW(decoded("Recurrence(RecurrenceType\"" + std::to_string(type) + "\")"), ItemError) << type;
    EXPECT_THROW(kEvents.check({{"Recurrence", {{"Type", type}}}}), ItemError) << type;
  }
  EXPECT_THROW(decoded("Recurrence(RecurrenceInterval\"1\")"), ItemError);
  EXPECT_THROW(kEvents.check({{"Recurrence", json::object()}}), ItemError);
}

TEST(DemoEvent, RefusalsNameTheField) {
  const auto problem = [](const json& record) -> std::string {
    try {
      kEvents.check(record);
    } catch (const ItemError& error) {
      return error.what();
    }
    return "taken";
  };
  EXPECT_EQ(problem(json::array()), "an event must be a JSON object");
  EXPECT_EQ(problem({{"FirstName", "x"}}), "an event has no field FirstName");
  EXPECT_EQ(problem({{"Subject", 1}}), "Subject must be a text");
  EXPECT_EQ(problem({{"Subject", "\x01"}}), "Subject holds control characters or is not UTF-8");
  EXPECT_EQ(problem({{"StartTime", "tomorrow"}}), "StartTime is not a time such as 2026-11-21T09:00:00Z");
  EXPECT_EQ(problem({{"EndTime", "2026-02-30T00:00:00Z"}}),
            "EndTime is not a time such as 2026-11-21T09:00:00Z");
  EXPECT_EQ(problem({{"Reminder", "15"}}), "Reminder must be a whole number of 32 bits");
  EXPECT_EQ(problem({{"Reminder", 1.5}}), "Reminder must be a whole number of 32 bits");
  EXPECT_EQ(problem({{"Reminder", 2147483648}}), "Reminder must be a whole number of 32 bits");
  EXPECT_EQ(problem({{"Reminder", UINT64_MAX}}), "Reminder must be a whole number of 32 bits");
  EXPECT_EQ(problem({{"AllDayEvent", 1}}), "AllDayEvent must be true or false");
  EXPECT_EQ(problem({{"Timezone", "AAAA"}}), "Timezone is not the base64 of a block of 172 bytes");
  EXPECT_EQ(problem({{"Categories", "x"}}), "Categories must be an array");
  EXPECT_EQ(problem({{"Categories", {1}}}), "Categories must be an array of texts");
  EXPECT_EQ(problem({{"Attendees", {"Ann"}}}), "an entry of Attendees must be a JSON object");
  EXPECT_EQ(problem({{"Attendees", {{{"Phone", "1"}}}}}), "an entry of Attendees has no field Phone");
  EXPECT_EQ(problem({{"Recurrence", {{"Interval", 1}}}}), "Recurrence without Type is none");
  EXPECT_EQ(problem({{"Recurrence", {{"Type", 4}}}}), "Recurrence has the unknown Type 4");
  EXPECT_EQ(problem({{"Recurrence", 4}}), "Recurrence must be a JSON object");
  EXPECT_EQ(problem({{"Exceptions", json::object()}}), "Exceptions must be an array");
  EXPECT_EQ(problem({{"Subject", nullptr}, {"Location", ""}, {"Categories", json::array()}}), "taken");
}

TEST(DemoEvent, TimesMayHaveFractionsWhenTheyAreChecked) {
  EXPECT_EQ(kEvents.check({{"StartTime", "2026-11-21T09:00:00.500Z"}}),
            json({{"StartTime", "2026-11-21T09:00:00Z"}}));
}

}  // namespace
}  // namespace demoserver
