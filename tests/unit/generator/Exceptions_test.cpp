// Recurring events as they go to the server: the rule, and the occurrences that differ.
#include "EventRig.h"

namespace airsync_test {
namespace {

class GeneratorExceptions : public EventRig {
 protected:
  std::string RuleOf(AS_RECURRENCE_T rule) {
    AS_CALENDAR_T event = {};
    event.Recurrence = &rule;
    return DataOf(event);
  }
  std::string ExceptionOf(AS_EXCEPTION_T exception) {
    AS_CALENDAR_T event = {};
    event.Exceptions = &exception;
    event.ExceptionCount = 1;
    return DataOf(event);
  }
  // The data of an event with one exception, which has these children behind its first.
  static std::string Exception(const std::string& more) {
    return "ApplicationData(Exceptions@4(Exception@4(ExceptionIsdeleted@4=\"0\"" +
           (more.empty() ? "" : " " + more) + ")))";
  }
};

TEST_F(GeneratorExceptions, WriteTheTypeOfARuleAlways) {
  EXPECT_EQ(RuleOf({}), "ApplicationData(Recurrence@4(RecurrenceType@4=\"0\"))");
  AS_RECURRENCE_T rule = {};
  rule.Type = 5;
  EXPECT_EQ(RuleOf(rule), "ApplicationData(Recurrence@4(RecurrenceType@4=\"5\"))");
}

TEST_F(GeneratorExceptions, WriteEachNumberOfARuleUnderItsOwnTag) {
  const struct {
    INT32* AS_RECURRENCE_T::*field;
    const char* tag;
  } rows[] = {{&AS_RECURRENCE_T::Interval, "RecurrenceInterval"},
              {&AS_RECURRENCE_T::DayOfWeek, "RecurrenceDayofweek"},
              {&AS_RECURRENCE_T::DayOfMonth, "RecurrenceDayofmonth"},
              {&AS_RECURRENCE_T::WeekOfMonth, "RecurrenceWeekofmonth"},
              {&AS_RECURRENCE_T::MonthOfYear, "RecurrenceMonthofyear"},
              {&AS_RECURRENCE_T::Occurrences, "RecurrenceOccurrences"}};
  for (const auto& row : rows) {
    INT32 number = 17;
    AS_RECURRENCE_T rule = {};
    rule.*row.field = &number;
    EXPECT_EQ(RuleOf(rule),
              std::string("ApplicationData(Recurrence@4(RecurrenceType@4=\"0\" ") + row.tag + "@4=\"17\"))");
  }
}

TEST_F(GeneratorExceptions, WriteTheEndOfARule) {
  struct tm until = TimeOf(2010, 12, 31, 1, 2, 3);
  AS_RECURRENCE_T rule = {};
  rule.Until = &until;
  EXPECT_EQ(RuleOf(rule),
            "ApplicationData(Recurrence@4(RecurrenceType@4=\"0\" RecurrenceUntil@4=\"20101231T010203Z\"))");
}

TEST_F(GeneratorExceptions, AreAnElementWheneverThereIsAnArray) {
  AS_EXCEPTION_T exception = {};
  AS_CALENDAR_T event = {};
  event.ExceptionCount = 1;
  EXPECT_EQ(DataOf(event), "ApplicationData") << "a count without an array";
  event.Exceptions = &exception;
  event.ExceptionCount = 0;
  EXPECT_EQ(DataOf(event), "ApplicationData(Exceptions@4)");
  event.ExceptionCount = -1;
  EXPECT_EQ(DataOf(event), "ApplicationData(Exceptions@4)");
}

TEST_F(GeneratorExceptions, SayAlwaysWhetherTheyAreDeleted) {
  EXPECT_EQ(ExceptionOf({}), Exception(""));
  UINT8 deleted = 0;
  AS_EXCEPTION_T exception = {};
  exception.Deleted = &deleted;
  EXPECT_EQ(ExceptionOf(exception), Exception(""));
  deleted = 1;
  EXPECT_EQ(ExceptionOf(exception), "ApplicationData(Exceptions@4(Exception@4(ExceptionIsdeleted@4=\"1\")))");
}

TEST_F(GeneratorExceptions, WriteEachTimeUnderItsOwnTag) {
  const struct {
    struct tm* AS_EXCEPTION_T::*field;
    const char* tag;
  } rows[] = {{&AS_EXCEPTION_T::DtStamp, "Dtstamp"},
              {&AS_EXCEPTION_T::ExceptionStartTime, "ExceptionStarttime"},
              {&AS_EXCEPTION_T::StartTime, "Starttime"},
              {&AS_EXCEPTION_T::EndTime, "Endtime"}};
  for (const auto& row : rows) {
    struct tm time = TimeOf(2005, 3, 7, 9, 30, 0);
    AS_EXCEPTION_T exception = {};
    exception.*row.field = &time;
    EXPECT_EQ(ExceptionOf(exception), Exception(std::string(row.tag) + "@4=\"20050307T093000Z\""));
  }
}

TEST_F(GeneratorExceptions, WriteEachTextUnderItsOwnTagAndNoEmptyOne) {
  const struct {
    char* AS_EXCEPTION_T::*field;
    const char* tag;
  } rows[] = {{&AS_EXCEPTION_T::Location, "Location"},
              {&AS_EXCEPTION_T::Body, "Body"},
              {&AS_EXCEPTION_T::Subject, "Subject"},
              {&AS_EXCEPTION_T::UID, "Uid"}};
  for (const auto& row : rows) {
    AS_EXCEPTION_T exception = {};
    exception.*row.field = const_cast<char*>("x");
    EXPECT_EQ(ExceptionOf(exception), Exception(std::string(row.tag) + "@4=\"x\""));
    exception.*row.field = const_cast<char*>("");
    EXPECT_EQ(ExceptionOf(exception), Exception(""));
  }
}

TEST_F(GeneratorExceptions, WriteEachNumberUnderItsOwnTag) {
  const struct {
    INT32* AS_EXCEPTION_T::*field;
    const char* tag;
  } rows[] = {{&AS_EXCEPTION_T::BusyStatus, "Busystatus"},
              {&AS_EXCEPTION_T::Sensitivity, "Sensitivity"},
              {&AS_EXCEPTION_T::Reminder, "ReminderMinsbefore"}};
  for (const auto& row : rows) {
    INT32 number = 0;
    AS_EXCEPTION_T exception = {};
    exception.*row.field = &number;
    EXPECT_EQ(ExceptionOf(exception), Exception(std::string(row.tag) + "@4=\"0\""));
  }
}

TEST_F(GeneratorExceptions, WriteWholeDaysAndCategories) {
  UINT8 yes = 1;
  AS_EXCEPTION_T exception = {};
  exception.AllDayEvent = &yes;
  exception.Categories = const_cast<char*>("A@@@@B");
  EXPECT_EQ(ExceptionOf(exception),
            Exception("Alldayevent@4=\"1\" Categories@4(Category@4=\"A\" Category@4=\"B\")"));
  exception.Categories = const_cast<char*>("");
  EXPECT_EQ(ExceptionOf(exception), Exception("Alldayevent@4=\"1\" Categories@4"));
}

TEST_F(GeneratorExceptions, AreWrittenInTheArraysOrder) {
  AS_EXCEPTION_T exceptions[3] = {};
  exceptions[0].UID = const_cast<char*>("2");
  exceptions[1].UID = const_cast<char*>("1");
  AS_CALENDAR_T event = {};
  event.Exceptions = exceptions;
  event.ExceptionCount = 2;
  EXPECT_EQ(DataOf(event),
            "ApplicationData(Exceptions@4(Exception@4(ExceptionIsdeleted@4=\"0\" Uid@4=\"2\") "
            "Exception@4(ExceptionIsdeleted@4=\"0\" Uid@4=\"1\")))")
      << "as many as are counted";
}

}  // namespace
}  // namespace airsync_test
