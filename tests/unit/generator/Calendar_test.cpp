// The data of an event as it goes to the server. Recurrences and exceptions have a file of their own.
#include <climits>

#include "EventRig.h"

namespace airsync_test {
namespace {

class GeneratorCalendar : public EventRig {
 protected:
  std::string TimeText(const struct tm& time) {
    AS_CALENDAR_T event = {};
    struct tm copy = time;
    event.StartTime = &copy;
    return DataOf(event);
  }
  static std::string Start(const std::string& text) {
    return "ApplicationData(Starttime@4=\"" + text + "\")";
  }

  std::string AttendeesOf(std::string list) {
    AS_CALENDAR_T event = {};
    event.Attendees = list.data();
    return DataOf(event);
  }
  static std::string Attendees(const std::string& children) {
    return "ApplicationData(Attendees@4" + (children.empty() ? "" : "(" + children + ")") + ")";
  }
  static std::string Attendee(const std::string& name, const std::string& email) {
    const std::string nameElement = name.empty() ? "" : "AttendeeName@4=\"" + name + "\"";
    const std::string emailElement = email.empty() ? "" : "AttendeeEmail@4=\"" + email + "\"";
    const std::string blank = name.empty() || email.empty() ? "" : " ";
    return "Attendee@4(" + nameElement + blank + emailElement + ")";
  }

  std::string CategoriesOf(std::string list) {
    AS_CALENDAR_T event = {};
    event.Categories = list.data();
    return DataOf(event);
  }
};

TEST_F(GeneratorCalendar, WritesAllNineteenElementsOfAnAddInTheirOrder) {
  FullEvent event;
  HandOut(AS_CHANGE_ADD, "", 1, &event.record);
  sml_element* const request = NextRequest();
  const sml_element* const add = SE_GetChild(request, "Collections/Collection/Commands/Add");
  EXPECT_EQ(InHex(DocumentOf(add)), InHex(GoldenDocument("sync-calendar-event-add")));
  EXPECT_EQ(SE_GetNumberOfChildren(SE_GetChild(add, "ApplicationData")), 19);
  SE_Destroy(request);
}

TEST_F(GeneratorCalendar, LeavesTheOrganizerOutOfAChange) {
  FullEvent event;
  HandOut(AS_CHANGE_CHANGE, "2:1", 0, &event.record);
  sml_element* const request = NextRequest();
  const sml_element* const change = SE_GetChild(request, "Collections/Collection/Commands/Change");
  EXPECT_EQ(InHex(DocumentOf(change)), InHex(GoldenDocument("sync-calendar-event-change")));
  EXPECT_EQ(SE_GetNumberOfChildren(SE_GetChild(change, "ApplicationData")), 17);
  SE_Destroy(request);
}

TEST_F(GeneratorCalendar, LeavesOutEachFieldThatIsNull) {
  AS_CALENDAR_T event = {};
  EXPECT_EQ(DataOf(event), "ApplicationData") << "also the end";
  EXPECT_EQ(DataOfChange(event), "ApplicationData");
}

// One text field and its tag.
const struct {
  char* AS_CALENDAR_T::*field;
  const char* tag;
} kTexts[] = {
    {&AS_CALENDAR_T::Subject, "Subject"},
    {&AS_CALENDAR_T::UID, "Uid"},
    {&AS_CALENDAR_T::OrganizerName, "OrganizerName"},
    {&AS_CALENDAR_T::OrganizerEmail, "OrganizerEmail"},
    {&AS_CALENDAR_T::Location, "Location"},
    {&AS_CALENDAR_T::Body, "Body"},
};

TEST_F(GeneratorCalendar, WritesEachTextUnderItsOwnTagAndNoEmptyOne) {
  for (const auto& text : kTexts) {
    AS_CALENDAR_T event = {};
    event.*text.field = const_cast<char*>("x");
    EXPECT_EQ(DataOf(event), std::string("ApplicationData(") + text.tag + "@4=\"x\")");
    const bool organizer = std::string(text.tag).rfind("Organizer", 0) == 0;
    EXPECT_EQ(DataOfChange(event) == "ApplicationData", organizer) << text.tag;
    event.*text.field = const_cast<char*>("");
    EXPECT_EQ(DataOf(event), "ApplicationData") << text.tag;
  }
}

TEST_F(GeneratorCalendar, WritesTextsAsTheyAre) {
  AS_CALENDAR_T event = {};
  std::string text = " <b>&amp;\r\n\xC3\xA9\xFF @@##\" ";
  event.Body = text.data();
  EXPECT_EQ(DataOf(event), "ApplicationData(Body@4=\"" + text + "\")");
}

TEST_F(GeneratorCalendar, WritesEachNumberUnderItsOwnTag) {
  const struct {
    INT32* AS_CALENDAR_T::*field;
    const char* tag;
  } rows[] = {{&AS_CALENDAR_T::Sensitivity, "Sensitivity"},
              {&AS_CALENDAR_T::BusyStatus, "Busystatus"},
              {&AS_CALENDAR_T::Reminder, "ReminderMinsbefore"},
              {&AS_CALENDAR_T::MeetingStatus, "Meetingstatus"}};
  for (const auto& row : rows) {
    for (INT32 number : {0, 15, -1, INT_MAX, INT_MIN}) {
      AS_CALENDAR_T event = {};
      event.*row.field = &number;
      EXPECT_EQ(DataOf(event),
                std::string("ApplicationData(") + row.tag + "@4=\"" + std::to_string(number) + "\")");
    }
  }
}

TEST_F(GeneratorCalendar, WritesAFlagsByteAsItsNumber) {
  for (UINT8 flag : {UINT8{0}, UINT8{1}, UINT8{2}, UINT8{255}}) {
    AS_CALENDAR_T event = {};
    event.AllDayEvent = &flag;
    EXPECT_EQ(DataOf(event), "ApplicationData(Alldayevent@4=\"" + std::to_string(flag) + "\")");
  }
}

TEST_F(GeneratorCalendar, NeverWritesSizeAndTruncationOfTheBody) {
  AS_CALENDAR_T event = {};
  INT32 size = 5;
  UINT8 truncated = 1;
  event.BodySize = &size;
  event.BodyTruncated = &truncated;
  EXPECT_EQ(DataOf(event), "ApplicationData");
}

// Times.

TEST_F(GeneratorCalendar, WritesEachTimeUnderItsOwnTag) {
  struct tm time = TimeOf(2005, 3, 7, 9, 30, 0);
  AS_CALENDAR_T event = {};
  event.StartTime = &time;
  EXPECT_EQ(DataOf(event), "ApplicationData(Starttime@4=\"20050307T093000Z\")");
  event = {};
  event.EndTime = &time;
  EXPECT_EQ(DataOf(event), "ApplicationData(Endtime@4=\"20050307T093000Z\")");
  event = {};
  event.DtStamp = &time;
  EXPECT_EQ(DataOf(event), "ApplicationData(Dtstamp@4=\"20050307T093000Z\")");
}

TEST_F(GeneratorCalendar, WritesAllSixPartsOfATimeWithoutConversion) {
  struct tm time = TimeOf(2004, 12, 31, 23, 58, 59);
  time.tm_isdst = 1;
  time.tm_wday = 3;
  time.tm_yday = 99;
  EXPECT_EQ(TimeText(time), Start("20041231T235859Z"));
  EXPECT_EQ(TimeText(TimeOf(900, 1, 2, 3, 4, 5)), Start("09000102T030405Z"));
}

TEST_F(GeneratorCalendar, HasRoomForAnyTime) {
  struct tm time = {};
  time.tm_year = INT_MAX;
  time.tm_mon = INT_MAX;
  time.tm_mday = time.tm_hour = time.tm_min = time.tm_sec = INT_MIN;
  EXPECT_EQ(TimeText(time), Start("-2147481749-2147483648-2147483648T-2147483648-2147483648-2147483648Z"));
}

// The time zone.

TEST_F(GeneratorCalendar, WritesA172ByteZoneIn232Characters) {
  FullEvent full;
  AS_CALENDAR_T event = {};
  event.Timezone = full.zone;
  EXPECT_EQ(DataOf(event), "ApplicationData(Timezone@4=\"" + ZoneInBase64() + "\")");
  EXPECT_EQ(ZoneInBase64().size(), 232U);
}

TEST_F(GeneratorCalendar, ReadsNoByteBehindTheZone) {
  const std::vector<UINT8> exact(172, 0);  // on the heap, where the sanitizer sees the end
  AS_CALENDAR_T event = {};
  event.Timezone = const_cast<UINT8*>(exact.data());
  EXPECT_EQ(DataOf(event), "ApplicationData(Timezone@4=\"" + std::string(230, 'A') + "==\")");
}

// Lists.

TEST_F(GeneratorCalendar, SplitsCategoriesIntoTheirEntries) {
  EXPECT_EQ(CategoriesOf("A@@B"), "ApplicationData(Categories@4(Category@4=\"A\" Category@4=\"B\"))");
  EXPECT_EQ(CategoriesOf("@@A@@"), "ApplicationData(Categories@4(Category@4=\"A\"))");
  EXPECT_EQ(CategoriesOf(""), "ApplicationData(Categories@4)");
  EXPECT_EQ(CategoriesOf("@@"), "ApplicationData(Categories@4)");
}

TEST_F(GeneratorCalendar, SplitsAttendeesIntoNameAndAddress) {
  EXPECT_EQ(AttendeesOf("Ann##a1"), Attendees(Attendee("Ann", "a1")));
  EXPECT_EQ(AttendeesOf("Ann##a1@@##b2"), Attendees(Attendee("Ann", "a1") + " " + Attendee("", "b2")));
  EXPECT_EQ(AttendeesOf("Ann##ann@x@@Bob##bob@y"),
            Attendees(Attendee("Ann", "ann@x") + " " + Attendee("Bob", "bob@y")));
}

TEST_F(GeneratorCalendar, TakesAnAttendeeWithoutTheMarkForAName) {
  EXPECT_EQ(AttendeesOf("Ann"), Attendees(Attendee("Ann", "")));
  EXPECT_EQ(AttendeesOf("Ann#a1"), Attendees(Attendee("Ann#a1", "")));
  EXPECT_EQ(AttendeesOf("Ann##"), Attendees(Attendee("Ann", "")));
}

TEST_F(GeneratorCalendar, CutsAnAttendeesAddressAtAnotherMark) {
  EXPECT_EQ(AttendeesOf("Ann##a1##more"), Attendees(Attendee("Ann", "a1")));
  EXPECT_EQ(AttendeesOf("Ann####more"), Attendees(Attendee("Ann", "")));
  EXPECT_EQ(AttendeesOf("Ann###a1"), Attendees(Attendee("Ann", "#a1")));
}

TEST_F(GeneratorCalendar, SkipsEmptyAttendees) {
  EXPECT_EQ(AttendeesOf("@@Ann##a@@@@Bob##b@@"),
            Attendees(Attendee("Ann", "a") + " " + Attendee("Bob", "b")));
  EXPECT_EQ(AttendeesOf(""), Attendees(""));
  EXPECT_EQ(AttendeesOf("@@"), Attendees(""));
  EXPECT_EQ(AttendeesOf("##"), Attendees("Attendee@4")) << "not empty, but without either part";
}

TEST_F(GeneratorCalendar, LeavesTheStoragesListsAsTheyWere) {
  std::string attendees = "Ann##a@@Bob##b";
  std::string categories = "A@@B";
  AS_CALENDAR_T event = {};
  event.Attendees = attendees.data();
  event.Categories = categories.data();
  DataOf(event);
  EXPECT_EQ(attendees, "Ann##a@@Bob##b");
  EXPECT_EQ(categories, "A@@B");
}

TEST_F(GeneratorCalendar, LogsTheNameAndTheValueOfEachField) {
  LogSpy spy;
  Log::SetLevel(AS_LOG_SOURCE_GENERATOR, AS_LOG_LEVEL_DETAIL, &spy);
  INT32 reminder = 15;
  AS_CALENDAR_T event = {};
  event.Subject = const_cast<char*>("x");
  event.Location = const_cast<char*>("");
  event.Reminder = &reminder;
  event.Attendees = const_cast<char*>("Ann##a1");
  DataOf(event);
  std::vector<std::string> fields;
  for (const std::string& line : spy.Lines()) {
    if (line.rfind("current Element ", 0) == 0) fields.push_back(line);
  }
  EXPECT_EQ(fields,
            (std::vector<std::string>{"current Element Name:|Subject", "current Element Value:|x",
                                      "current Element Name:|ReminderMinsbefore", "current Element Value:|15",
                                      "current Element Name:|AttendeeName", "current Element Value:|Ann",
                                      "current Element Name:|AttendeeEmail", "current Element Value:|a1"}));
}

TEST_F(GeneratorCalendar, EndsWithExhaustionWhicheverAllocationFails) {
  FullEvent event;
  for (std::size_t k = 1;; ++k) {
    HandOut(AS_CHANGE_ADD, "", 1, &event.record);
    FailingMemory::Reset();
    FailingMemory::FailAt(k);
    sml_element* request = nullptr;
    const SYNC_RESULT result = CatchAbort([this, &request]() { request = NextRequest(); });
    FailingMemory::Reset();
    SE_Destroy(request);
    generator.ForgetTrackedMemory();
    store.ForgetChanges();
    ASSERT_EQ(FailingMemory::LiveBlocks(), blocksBefore) << k;
    if (result == 0) {
      EXPECT_GT(k, 150U);
      return;
    }
    ASSERT_EQ(result, 0x8001000dU) << k;
  }
}

}  // namespace
}  // namespace airsync_test
