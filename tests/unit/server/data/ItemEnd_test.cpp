#include "data/ItemEnd.h"

#include <gtest/gtest.h>

#include "support/Dates.h"

namespace demoserver {
namespace {

using nlohmann::json;

// The end as a text; "never" when there is none.
std::string endText(const json& record) {
  const std::int64_t seconds = endOf(record);
  return seconds == kNoEnd ? "never" : itemTime(Moment(std::chrono::seconds(seconds)));
}

// From 9 to 10 o'clock on Saturday, 21 November 2026.
std::string endOfSeries(const json& rule, const json& exceptions = nullptr) {
  json event = {
      {"StartTime", "2026-11-21T09:00:00Z"}, {"EndTime", "2026-11-21T10:00:00Z"}, {"Recurrence", rule}};
  if (!exceptions.is_null()) event["Exceptions"] = exceptions;
  return endText(event);
}

TEST(DemoItemEnd, OfAMailIsWhenItWasReceived) {
  EXPECT_EQ(endText({{"DateReceived", "2026-11-21T09:00:00Z"}, {"StartTime", "2030-01-01T00:00:00Z"}}),
            "2026-11-21T09:00:00Z");
  EXPECT_EQ(endText({{"Subject", "x"}}), "never");
}

TEST(DemoItemEnd, OfAnEventIsItsEndOrElseItsStart) {
  EXPECT_EQ(endText({{"StartTime", "2026-11-21T09:00:00Z"}, {"EndTime", "2026-11-21T10:00:00Z"}}),
            "2026-11-21T10:00:00Z");
  EXPECT_EQ(endText({{"StartTime", "2026-11-21T09:00:00Z"}}), "2026-11-21T09:00:00Z");
}

TEST(DemoItemEnd, OfASeriesWithoutEndIsNever) {
  EXPECT_EQ(endOfSeries({{"Type", 0}}), "never");
  EXPECT_EQ(endOfSeries({{"Type", 0}, {"Occurrences", 0}}), "never");
  EXPECT_EQ(endOfSeries({{"Type", 0}, {"Occurrences", 2147483647}, {"Interval", 2147483647}}), "never");
}

TEST(DemoItemEnd, OfASeriesUntilADayIsTheEndOfItsLastOccurrence) {
  EXPECT_EQ(endOfSeries({{"Type", 0}, {"Until", "2026-12-24T09:00:00Z"}}), "2026-12-24T10:00:00Z");
  EXPECT_EQ(endOfSeries({{"Type", 0}, {"Until", "2020-01-01T00:00:00Z"}}), "2026-11-21T10:00:00Z");
}

TEST(DemoItemEnd, OfACountedSeriesIsWhenAnotherOccurrenceWouldBegin) {
  EXPECT_EQ(endOfSeries({{"Type", 0}, {"Occurrences", 10}}), "2026-12-01T09:00:00Z");
  EXPECT_EQ(endOfSeries({{"Type", 0}, {"Occurrences", 10}, {"Interval", 3}}), "2026-12-21T09:00:00Z");
  EXPECT_EQ(endOfSeries({{"Type", 1}, {"Occurrences", 2}}), "2026-12-05T09:00:00Z");
  // Monday, Wednesday and Friday: seven of them take three weeks.
  EXPECT_EQ(endOfSeries({{"Type", 1}, {"Occurrences", 7}, {"DayOfWeek", 42}}), "2026-12-12T09:00:00Z");
  EXPECT_EQ(endOfSeries({{"Type", 0}, {"Occurrences", 10}, {"DayOfWeek", 62}}), "2026-12-05T09:00:00Z");
  EXPECT_EQ(endOfSeries({{"Type", 2}, {"Occurrences", 1}, {"DayOfMonth", 21}}), "2026-12-22T09:00:00Z");
  EXPECT_EQ(endOfSeries({{"Type", 6}, {"Occurrences", 1}}), "2027-11-22T09:00:00Z");
}

TEST(DemoItemEnd, OfASeriesIsNotBeforeItsExceptions) {
  EXPECT_EQ(endOfSeries({{"Type", 0}, {"Occurrences", 2}}, {{{"EndTime", "2027-01-01T00:00:00Z"}}}),
            "2027-01-01T00:00:00Z");
  EXPECT_EQ(endOfSeries({{"Type", 0}, {"Until", "2026-11-23T09:00:00Z"}},
                        {{{"Deleted", true}}, {{"EndTime", "2027-01-01T00:00:00Z"}}}),
            "2027-01-01T00:00:00Z");
}

}  // namespace
}  // namespace demoserver
