#include "store/UtcTime.h"

#include <array>
#include <charconv>
#include <cstdio>

namespace airsync {
namespace {

// Reads numbers one after the other, each followed by a mark of its own. Signs are read too: a stored time
// keeps whatever numbers the server sent.
class Reader {
 public:
  explicit Reader(std::string_view text) : rest_(text) {}

  bool number(int& value) {
    const auto [end, error] = std::from_chars(rest_.data(), rest_.data() + rest_.size(), value);
    if (error != std::errc()) return false;
    rest_.remove_prefix(static_cast<std::size_t>(end - rest_.data()));
    return true;
  }

  bool mark(char expected) {
    if (rest_.empty() || rest_.front() != expected) return false;
    rest_.remove_prefix(1);
    return true;
  }

  void fraction() {
    if (!mark('.')) return;
    while (!rest_.empty() && rest_.front() >= '0' && rest_.front() <= '9') rest_.remove_prefix(1);
  }

  bool done() const { return rest_.empty(); }

 private:
  std::string_view rest_;
};

int daysOf(int year, int month) {
  constexpr std::array<int, 12> days = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  const bool leap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
  return month == 2 && leap ? 29 : days.at(static_cast<std::size_t>(month - 1));
}

int narrowed(long long value) {
  constexpr long long low = -2147483648LL;
  constexpr long long high = 2147483647LL;
  return static_cast<int>(value < low ? low : value > high ? high : value);
}

}  // namespace

UtcTime UtcTime::fromTm(const std::tm& time) {
  return {.year = narrowed(time.tm_year + 1900LL),
          .month = narrowed(time.tm_mon + 1LL),
          .day = time.tm_mday,
          .hour = time.tm_hour,
          .minute = time.tm_min,
          .second = time.tm_sec};
}

UtcTime UtcTime::now() {
  const std::time_t seconds = std::time(nullptr);
  std::tm time = {};
  gmtime_r(&seconds, &time);
  return fromTm(time);
}

std::optional<UtcTime> UtcTime::parse(std::string_view text) {
  UtcTime time;
  Reader reader(text);
  if (!reader.number(time.year) || !reader.mark('-') || !reader.number(time.month) || !reader.mark('-') ||
      !reader.number(time.day)) {
    return std::nullopt;
  }
  if (reader.done()) return time;
  if (!reader.mark('T') || !reader.number(time.hour) || !reader.mark(':') || !reader.number(time.minute) ||
      !reader.mark(':') || !reader.number(time.second)) {
    return std::nullopt;
  }
  reader.fraction();
  if (!reader.mark('Z') || !reader.done()) return std::nullopt;
  return time;
}

std::string UtcTime::text() const {
  std::array<char, 96> buffer = {};
  const int length = std::snprintf(buffer.data(), buffer.size(), "%04d-%02d-%02dT%02d:%02d:%02dZ", year,
                                   month, day, hour, minute, second);
  return {buffer.data(), static_cast<std::size_t>(length)};
}

std::tm UtcTime::tm() const {
  std::tm time = {};
  time.tm_year = narrowed(year - 1900LL);
  time.tm_mon = narrowed(month - 1LL);
  time.tm_mday = day;
  time.tm_hour = hour;
  time.tm_min = minute;
  time.tm_sec = second;
  return time;
}

bool UtcTime::valid() const {
  return year >= 0 && year <= 9999 && month >= 1 && month <= 12 && day >= 1 && day <= daysOf(year, month) &&
         hour >= 0 && hour <= 23 && minute >= 0 && minute <= 59 && second >= 0 && second <= 60;
}

}  // namespace airsync
