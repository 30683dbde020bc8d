// How far back the numbers of a FilterType reach.
#pragma once

#include <chrono>
#include <cstdint>
#include <span>

#include "items/ItemClass.h"

namespace demoserver {

struct FilterSpan {
  int filter;
  std::chrono::days days;
  std::chrono::months months;  // of the calendar: a month before 31 March is the end of February
};

// The start of the window in seconds since 1970; kNoWindow for a number that the table does not hold.
inline std::int64_t startOfWindow(std::span<const FilterSpan> spans, int filter, Moment now) {
  for (const FilterSpan& span : spans) {
    if (span.filter != filter) continue;
    const auto today = std::chrono::floor<std::chrono::days>(now);
    std::chrono::year_month_day date = std::chrono::year_month_day(today) - span.months;
    if (!date.ok()) date = date.year() / date.month() / std::chrono::last;
    const Moment start = std::chrono::sys_days(date) - span.days + (now - today);
    return start.time_since_epoch().count();
  }
  return kNoWindow;
}

}  // namespace demoserver
