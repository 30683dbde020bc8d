#include "support/Time.h"

namespace AIRSYNC_STACK {

namespace {

typedef std::int64_t INT64;

const INT16 kDaysBeforeMonth[12] = {0, 31, 59, 90, 120, 151, 181, 212, 243, 273, 304, 334};

INT64 SecondsSince1970(const struct tm& time) {
  INT64 year = static_cast<UINT16>(INT64{time.tm_year} + time.tm_mon / 12) + INT64{1900};
  int month = time.tm_mon % 12;
  if (month < 0) {
    month += 12;
    --year;
  }
  // January and February count the leap days of the years before.
  const INT64 leapYear = month < 2 ? year - 1 : year;
  // 719051 makes 1970-01-01 day 0.
  const INT64 days = year * 365 + kDaysBeforeMonth[month] + (leapYear - 1968) / 4 - (leapYear - 1900) / 100 +
                     (leapYear - 1600) / 400 + time.tm_mday - 719051;
  return ((days * 24 + time.tm_hour) * 60 + time.tm_min) * 60 + time.tm_sec;
}

bool Fits(INT64 seconds) { return seconds >= INT32_MIN && seconds <= INT32_MAX; }

}  // namespace

INT32 mkgmtime(const struct tm* time) { return static_cast<INT32>(SecondsSince1970(*time)); }

void AdjustTime(INT32& year, INT32& month, INT32& day, INT32& hour, INT32& minute, INT32& second,
                INT32& milliseconds) {
  if (milliseconds == 0) return;
  milliseconds = 0;
  if (second < INT32_MAX) ++second;
  if (second <= 59) return;

  // Numbers from the wire: a year or a month that a tm can't hold is no time at all.
  if (year < 1900 || year - 1900 > UINT16_MAX || month == INT32_MIN) return;
  struct tm time = {};
  time.tm_year = year - 1900;
  time.tm_mon = month - 1;
  time.tm_mday = day;
  time.tm_hour = hour;
  time.tm_min = minute;
  time.tm_sec = second;
  const INT64 seconds = SecondsSince1970(time);
  if (!Fits(seconds)) return;
  const std::time_t stamp = static_cast<std::time_t>(seconds);
  // The library runs on one thread, and the result is used up at once.
  const struct tm* const carried = std::gmtime(&stamp);  // NOLINT(concurrency-mt-unsafe)
  if (!carried) return;
  year = carried->tm_year + 1900;
  month = carried->tm_mon + 1;
  day = carried->tm_mday;
  hour = carried->tm_hour;
  minute = carried->tm_min;
  second = carried->tm_sec;
}

}  // namespace AIRSYNC_STACK
