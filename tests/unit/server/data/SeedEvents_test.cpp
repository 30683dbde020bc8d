#include "data/SeedEvents.h"

#include <gtest/gtest.h>
#include <map>
#include <set>

#include "data/SeedZones.h"
#include "items/CalendarClass.h"
#include "items/CalendarFields.h"
#include "support/Base64.h"
#include "support/Bytes.h"

namespace demoserver {
namespace {

using nlohmann::json;

constexpr int kMany = 500;
const Moment kNow = *momentOf("2026-11-21T12:00:00Z");

json event(int number) { return seedEvent(1, number, kNow); }

TEST(DemoSeedEvents, AreTheSameForTheSameSeedAndTime) {
  EXPECT_EQ(seedEvent(42, 7, kNow), seedEvent(42, 7, kNow));
  EXPECT_NE(seedEvent(42, 7, kNow), seedEvent(42, 8, kNow));
  EXPECT_NE(seedEvent(42, 7, kNow), seedEvent(43, 7, kNow));
  EXPECT_NE(seedEvent(42, 7, kNow), seedEvent(42, 7, kNow + std::chrono::days(1)));
}

TEST(DemoSeedEvents, AreRecordsAsTheyAreStored) {
  for (int number = 0; number < kMany; ++number)
    EXPECT_EQ(CalendarClass().check(event(number)), event(number)) << number;
}

TEST(DemoSeedEvents, UseEveryField) {
  std::map<std::string, int> uses, inRules, inExceptions, inAttendees;
  const auto count = [](std::map<std::string, int>& counts, const json& record) {
    for (const auto& [name, value] : record.items()) ++counts[name];
  };
  for (int number = 0; number < kMany; ++number) {
    const json shown = CalendarClass().view(event(number));
    count(uses, shown);
    if (shown.contains("Recurrence")) count(inRules, shown["Recurrence"]);
    if (shown.contains("Exceptions"))
      for (const json& each : shown["Exceptions"]) count(inExceptions, each);
    if (shown.contains("Attendees"))
      for (const json& each : shown["Attendees"]) count(inAttendees, each);
  }
  for (const ItemField& field : kCalendarFields) EXPECT_GT(uses[std::string(field.name)], 0) << field.name;
  for (const ItemField& field : kRecurrenceFields)
    EXPECT_GT(inRules[std::string(field.name)], 0) << field.name;
  for (const ItemField& field : kExceptionFields)
    EXPECT_GT(inExceptions[std::string(field.name)], 0) << field.name;
  for (const ItemField& field : kAttendeeFields)
    EXPECT_GT(inAttendees[std::string(field.name)], 0) << field.name;
}

TEST(DemoSeedEvents, HaveSeriesOfEveryTypeWithAndWithoutEndsAndExceptions) {
  std::map<int, std::set<std::string>> seen;
  for (int number = 0; number < kMany; ++number) {
    const json record = event(number);
    if (!record.contains("Recurrence")) continue;
    const json& rule = record["Recurrence"];
    std::set<std::string>& kinds = seen[rule["Type"]];
    kinds.insert(rule.contains("Until") ? "until" : rule.contains("Occurrences") ? "counted" : "endless");
    kinds.insert(record.contains("Exceptions") ? "exceptions" : "none");
  }
  ASSERT_EQ(seen.size(), 6u);
  for (const auto& [type, kinds] : seen) {
    EXPECT_NE(type, 4);
    EXPECT_EQ(kinds, (std::set<std::string>{"until", "counted", "endless", "exceptions", "none"})) << type;
  }
}

TEST(DemoSeedEvents, RulesAreThoseOfTheFirstOccurrence) {
  const Moment first = *momentOf("2026-11-25T09:15:00Z");  // a Wednesday, the fourth of its month
  EXPECT_EQ(seedRecurrence(0, first), json({{"Type", 0}, {"Interval", 2}}));
  EXPECT_EQ(seedRecurrence(1, first), json({{"Type", 1}, {"Interval", 1}, {"DayOfWeek", 8 + 32}}));
  EXPECT_EQ(seedRecurrence(2, first), json({{"Type", 2}, {"Interval", 1}, {"DayOfMonth", 25}}));
  EXPECT_EQ(seedRecurrence(3, first),
            json({{"Type", 3}, {"Interval", 1}, {"DayOfWeek", 8}, {"WeekOfMonth", 4}}));
  EXPECT_EQ(seedRecurrence(5, first),
            json({{"Type", 5}, {"Interval", 1}, {"DayOfMonth", 25}, {"MonthOfYear", 11}}));
  EXPECT_EQ(seedRecurrence(6, first),
            json({{"Type", 6}, {"Interval", 1}, {"DayOfWeek", 8}, {"WeekOfMonth", 4}, {"MonthOfYear", 11}}));
}

TEST(DemoSeedEvents, OccurrencesFollowTheirRules) {
  const Moment first = *momentOf("2026-11-25T09:15:00Z");
  const auto third = [&](int type) { return itemTime(seedOccurrence(type, first, 3)); };
  EXPECT_EQ(third(0), "2026-12-01T09:15:00Z");
  EXPECT_EQ(third(1), "2026-12-04T09:15:00Z");
  EXPECT_EQ(third(2), "2027-02-25T09:15:00Z");
  EXPECT_EQ(third(3), "2027-02-24T09:15:00Z");
  EXPECT_EQ(third(5), "2029-11-25T09:15:00Z");
  EXPECT_EQ(third(6), "2029-11-28T09:15:00Z");
}

TEST(DemoSeedEvents, ASeriesHasEveryFieldOfItsExceptions) {
  for (int number = 0; number < kMany; ++number) {
    const json record = event(number);
    if (!record.contains("Exceptions")) continue;
    for (const json& exception : record["Exceptions"])
      for (const auto& [name, value] : exception.items())
        EXPECT_TRUE(name == "Deleted" || name == "ExceptionStartTime" || record.contains(name))
            << number << name;
  }
}

TEST(DemoSeedEvents, EndAfterTheyBeginAndAllDayOnesAtMidnight) {
  int allDay = 0;
  for (int number = 0; number < kMany; ++number) {
    const json record = event(number);
    EXPECT_LT(record["StartTime"], record["EndTime"]) << number;
    if (!record["AllDayEvent"]) continue;
    ++allDay;
    EXPECT_EQ(record["StartTime"].get<std::string>().substr(10), "T00:00:00Z");
    EXPECT_EQ(record["EndTime"].get<std::string>().substr(10), "T00:00:00Z");
  }
  EXPECT_GT(allDay, kMany / 12);
}

TEST(DemoSeedEvents, HaveBodiesBeyondEveryLimit) {
  for (int truncation = 1; truncation <= 7; ++truncation) {
    const std::size_t size = event(12 * (truncation - 1) + 1)["Body"].get<std::string>().size();
    EXPECT_GT(size, bodyLimitOf(truncation));
    EXPECT_LT(size, bodyLimitOf(truncation) + 200);
  }
}

TEST(DemoSeedZones, AreBlocksOf172Bytes) {
  for (std::size_t number = 0; number < kSeedZones; ++number)
    EXPECT_EQ(seedZone(number).size(), 172u) << number;
}

TEST(DemoSeedZones, HoldBiasNamesAndDates) {
  const std::string zone = seedZone(1);
  EXPECT_EQ(hexOf(zone.substr(0, 8)), "C4 FF FF FF 4D 00 69 00");  // -60, "Mi"
  EXPECT_EQ(hexOf(zone.substr(4 + 2 * 11, 2)), "E4 00");           // "ä"
  EXPECT_EQ(hexOf(zone.substr(68, 16)), "00 00 0A 00 00 00 05 00 03 00 00 00 00 00 00 00");
  EXPECT_EQ(hexOf(zone.substr(84, 8)), "00 00 00 00 4D 00 69 00");
  EXPECT_EQ(hexOf(zone.substr(152, 20)), "00 00 03 00 00 00 05 00 02 00 00 00 00 00 00 00 C4 FF FF FF");
}

}  // namespace
}  // namespace demoserver
