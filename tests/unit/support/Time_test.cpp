#include "support/Time.h"

#include <gtest/gtest.h>

namespace {

using namespace AIRSYNC_STACK;

// Years since 1900 and months from 0, as the record has them.
struct tm Moment(int year, int month, int day, int hour = 0, int minute = 0, int second = 0) {
  struct tm time = {};
  time.tm_year = year;
  time.tm_mon = month;
  time.tm_mday = day;
  time.tm_hour = hour;
  time.tm_min = minute;
  time.tm_sec = second;
  return time;
}

struct MomentCase {
  const char* what;
  struct tm time;
  INT32 seconds;
};

const MomentCase kMoments[] = {
    {"the first second", Moment(70, 0, 1), 0},
    {"the second before it", Moment(69, 11, 31, 23, 59, 59), -1},
    {"the first day that comes out right", Moment(68, 2, 1), -57974400},
    {"the day before it comes out a day late", Moment(68, 1, 29), -57974400},
    {"the first of March 2000, day 11017", Moment(100, 2, 1), 951868800},
    {"a leap day of a century that has one", Moment(100, 1, 29), 951782400},
    {"the day after no leap day", Moment(101, 2, 1), 983404800},
    {"a leap day", Moment(104, 1, 29, 12, 30, 15), 1078057815},
    {"the last second of a leap year", Moment(104, 11, 31, 23, 59, 59), 1104537599},
    {"month 12 is January of the next year", Moment(104, 12, 1), 1104537600},
    {"month 25 is February of the year after the next", Moment(104, 25, 1), 1138752000},
    {"month -1 is December of the year before", Moment(105, -1, 1), 1101859200},
    {"month -13 is December, two years before", Moment(106, -13, 1), 1101859200},
    {"seconds add up", Moment(70, 0, 1, 0, 0, 3661), 3661},
    {"minutes add up", Moment(70, 0, 1, 0, 1440, 0), 86400},
    {"hours add up", Moment(70, 0, 1, 49, 0, 0), 176400},
    {"hours may be negative", Moment(70, 0, 2, -1, 0, 0), 82800},
    {"days add up", Moment(70, 0, 60), 5097600},
    {"the last second of 32 bits", Moment(138, 0, 19, 3, 14, 7), 2147483647},
    {"one more wraps", Moment(138, 0, 19, 3, 14, 8), -2147483647 - 1},
    {"a century without a leap day, wrapped", Moment(200, 2, 1), -187424896},
};

TEST(MkGmTime, GivesSecondsSince1970) {
  for (const MomentCase& row : kMoments) EXPECT_EQ(mkgmtime(&row.time), row.seconds) << row.what;
}

TEST(MkGmTime, ReadsSixFieldsOnly) {
  struct tm time = Moment(100, 2, 1);
  time.tm_wday = 77;
  time.tm_yday = 888;
  time.tm_isdst = 1;
  EXPECT_EQ(mkgmtime(&time), 951868800);
}

TEST(MkGmTime, TakesTheYearAsAnUnsigned16BitNumber) {
  const struct tm time = Moment(65536 + 70, 0, 1);
  EXPECT_EQ(mkgmtime(&time), 0);
}

// Nothing overflows on the way, and the low 32 bits of the sum are what is left: of the year 45589, and of
// 23745.
TEST(MkGmTime, SurvivesTheWorstRecord) {
  const struct tm highest = Moment(INT32_MAX, INT32_MAX, INT32_MAX, INT32_MAX, INT32_MAX, INT32_MAX);
  const struct tm lowest = Moment(INT32_MIN, INT32_MIN, INT32_MIN, INT32_MIN, INT32_MIN, INT32_MIN);
  EXPECT_EQ(mkgmtime(&highest), -36154829);
  EXPECT_EQ(mkgmtime(&lowest), 2115676288);
}

struct Stamp {
  INT32 year, month, day, hour, minute, second, milliseconds;
  bool operator==(const Stamp&) const = default;
};

void PrintTo(const Stamp& stamp, std::ostream* out) {
  *out << stamp.year << '-' << stamp.month << '-' << stamp.day << ' ' << stamp.hour << ':' << stamp.minute
       << ':' << stamp.second << '.' << stamp.milliseconds;
}

struct AdjustCase {
  const char* what;
  Stamp before;
  Stamp after;
};

const AdjustCase kAdjustments[] = {
    {"no milliseconds: nothing changes", {2004, 12, 31, 23, 59, 59, 0}, {2004, 12, 31, 23, 59, 59, 0}},
    {"not even what is no time", {2004, 13, 99, 77, 88, 99, 0}, {2004, 13, 99, 77, 88, 99, 0}},
    {"the smallest fraction counts", {2004, 5, 6, 10, 20, 30, 1}, {2004, 5, 6, 10, 20, 31, 0}},
    {"a negative fraction counts", {2004, 5, 6, 10, 20, 30, -1}, {2004, 5, 6, 10, 20, 31, 0}},
    {"up to second 59 there is no carry", {2004, 5, 6, 10, 20, 58, 999}, {2004, 5, 6, 10, 20, 59, 0}},
    {"without a carry nothing is put right", {2004, 13, 40, 25, 61, 30, 5}, {2004, 13, 40, 25, 61, 31, 0}},
    {"not at second 59 either", {2004, 13, 40, 25, 61, 58, 5}, {2004, 13, 40, 25, 61, 59, 0}},
    {"carry into the minute", {2004, 5, 6, 10, 20, 59, 1}, {2004, 5, 6, 10, 21, 0, 0}},
    {"carry into the hour", {2004, 5, 6, 10, 59, 59, 1}, {2004, 5, 6, 11, 0, 0, 0}},
    {"carry into the day", {2004, 5, 6, 23, 59, 59, 1}, {2004, 5, 7, 0, 0, 0, 0}},
    {"carry into the month", {2004, 4, 30, 23, 59, 59, 1}, {2004, 5, 1, 0, 0, 0, 0}},
    {"carry into a leap day", {2004, 2, 28, 23, 59, 59, 1}, {2004, 2, 29, 0, 0, 0, 0}},
    {"carry past a missing leap day", {2005, 2, 28, 23, 59, 59, 1}, {2005, 3, 1, 0, 0, 0, 0}},
    {"carry into the year", {2004, 12, 31, 23, 59, 59, 500}, {2005, 1, 1, 0, 0, 0, 0}},
    {"the last second that can be carried to", {2038, 1, 19, 3, 13, 59, 1}, {2038, 1, 19, 3, 14, 0, 0}},
    {"the last second of 32 bits", {2038, 1, 19, 3, 13, 66, 1}, {2038, 1, 19, 3, 14, 7, 0}},
    {"the one after it", {2038, 1, 19, 3, 13, 67, 1}, {2038, 1, 19, 3, 13, 68, 0}},
    {"the first second of 32 bits, a day late",
     {1901, 12, 12, 20, 44, 111, 1},
     {1901, 12, 13, 20, 45, 52, 0}},
    {"the one before it", {1901, 12, 12, 20, 44, 110, 1}, {1901, 12, 12, 20, 44, 111, 0}},
    {"beyond 32 bits: second 60 stays", {2040, 1, 1, 10, 20, 59, 1}, {2040, 1, 1, 10, 20, 60, 0}},
    {"before 1900", {1899, 12, 31, 10, 20, 59, 1}, {1899, 12, 31, 10, 20, 60, 0}},
    {"a year that 16 bits would take for 2004", {67540, 1, 1, 10, 20, 59, 1}, {67540, 1, 1, 10, 20, 60, 0}},
    {"a year before 1900 that 16 bits would take for 2004",
     {-63532, 1, 1, 10, 20, 59, 1},
     {-63532, 1, 1, 10, 20, 60, 0}},
    {"a year of more than 16 bits", {70000, 1, 1, 10, 20, 59, 1}, {70000, 1, 1, 10, 20, 60, 0}},
    {"a year that can't be counted from 1900",
     {INT32_MIN, 1, 1, 10, 20, 59, 1},
     {INT32_MIN, 1, 1, 10, 20, 60, 0}},
    {"a month that can't be counted from 0",
     {2004, INT32_MIN, 1, 1, 1, 59, 1},
     {2004, INT32_MIN, 1, 1, 1, 60, 0}},
    {"such a month that would wrap to August 2004",
     {23850, INT32_MIN, 1, 1, 1, 59, 1},
     {23850, INT32_MIN, 1, 1, 1, 60, 0}},
    {"a second that can't be counted up",
     {INT32_MAX, INT32_MAX, INT32_MAX, INT32_MAX, INT32_MAX, INT32_MAX, 1},
     {INT32_MAX, INT32_MAX, INT32_MAX, INT32_MAX, INT32_MAX, INT32_MAX, 0}},
};

TEST(AdjustTime, RoundsFractionsOfASecondUp) {
  for (const AdjustCase& row : kAdjustments) {
    Stamp stamp = row.before;
    AdjustTime(stamp.year, stamp.month, stamp.day, stamp.hour, stamp.minute, stamp.second,
               stamp.milliseconds);
    EXPECT_EQ(stamp, row.after) << row.what;
  }
}

}  // namespace
