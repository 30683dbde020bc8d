#include "data/ItemEnd.h"

#include <algorithm>
#include <bit>
#include <optional>
#include <string>

#include "support/Dates.h"

namespace demoserver {
namespace {

using nlohmann::json;
using std::chrono::days;

std::optional<Moment> timeIn(const json& record, const char* name) {
  const auto found = record.find(name);
  if (found == record.end() || !found->is_string()) return std::nullopt;
  return momentOf(found->get_ref<const std::string&>());
}

int numberIn(const json& record, const char* name, int fallback) {
  const auto found = record.find(name);
  return found != record.end() && found->is_number_integer() ? found->get<int>() : fallback;
}

std::int64_t secondsOf(Moment moment) { return moment.time_since_epoch().count(); }

// From the first occurrence to the one that would follow the last.
std::optional<std::chrono::seconds> lengthOfSeries(const json& rule) {
  constexpr std::int64_t kLongest = 100'000;
  const std::int64_t occurrences = numberIn(rule, "Occurrences", 0);
  const std::int64_t interval = std::max(1, numberIn(rule, "Interval", 1));
  if (occurrences <= 0 || occurrences > kLongest || interval > kLongest) return std::nullopt;
  const int type = numberIn(rule, "Type", 0);
  const auto mask = static_cast<unsigned>(numberIn(rule, "DayOfWeek", 0)) & 0x7Fu;
  // A daily rule with weekdays is one that repeats every week.
  const bool weekly = type == 1 || (type == 0 && mask != 0);
  const std::int64_t each = weekly ? std::max(1, std::popcount(mask)) : 1;
  const days period(weekly ? 7 : type == 0 ? 1 : type < 5 ? 31 : 366);
  return (occurrences + each - 1) / each * interval * period;
}

std::int64_t lastExceptionOf(const json& event) {
  std::int64_t last = INT64_MIN;
  const auto exceptions = event.find("Exceptions");
  if (exceptions == event.end()) return last;
  for (const json& exception : *exceptions)
    if (const auto end = timeIn(exception, "EndTime")) last = std::max(last, secondsOf(*end));
  return last;
}

std::int64_t endOfSeries(const json& event, const json& rule, Moment start, Moment end) {
  if (const auto until = timeIn(rule, "Until"))
    return std::max({secondsOf(*until + (end - start)), secondsOf(end), lastExceptionOf(event)});
  const auto length = lengthOfSeries(rule);
  if (!length) return kNoEnd;
  return std::max(secondsOf(start + *length), lastExceptionOf(event));
}

}  // namespace

std::int64_t endOf(const json& record) {
  if (const auto received = timeIn(record, "DateReceived")) return secondsOf(*received);
  const auto start = timeIn(record, "StartTime");
  const auto end = timeIn(record, "EndTime");
  if (!start && !end) return kNoEnd;
  const auto rule = record.find("Recurrence");
  if (rule == record.end()) return secondsOf(end ? *end : *start);
  return endOfSeries(record, *rule, start ? *start : *end, end ? *end : *start);
}

}  // namespace demoserver
