#include "support/Dates.h"

#include <array>
#include <cstdio>

namespace demoserver {
namespace {

bool isDigit(char c) { return c >= '0' && c <= '9'; }

// "d" stands for a digit, every other character for itself.
bool hasForm(std::string_view text, std::string_view form) {
  if (text.size() != form.size()) return false;
  for (std::size_t i = 0; i < form.size(); ++i)
    if (form[i] == 'd' ? !isDigit(text[i]) : text[i] != form[i]) return false;
  return true;
}

int number(std::string_view digits) {
  int value = 0;
  for (const char c : digits) value = value * 10 + (c - '0');
  return value;
}

constexpr std::size_t kSecondsEnd = 19;

}  // namespace

std::optional<Moment> momentOf(std::string_view text) {
  if (!hasForm(text, "dddd-dd-ddTdd:dd:dd.dddZ") && !hasForm(text, "dddd-dd-ddTdd:dd:ddZ")) return {};
  const std::chrono::year_month_day day{std::chrono::year{number(text.substr(0, 4))},
                                        std::chrono::month{static_cast<unsigned>(number(text.substr(5, 2)))},
                                        std::chrono::day{static_cast<unsigned>(number(text.substr(8, 2)))}};
  const int hour = number(text.substr(11, 2)), minute = number(text.substr(14, 2)),
            second = number(text.substr(17, 2));
  if (!day.ok() || hour >= 24 || minute >= 60 || second >= 60) return {};
  return std::chrono::sys_days(day) + std::chrono::hours(hour) + std::chrono::minutes(minute) +
         std::chrono::seconds(second);
}

std::string normalisedDate(std::string_view text) {
  return momentOf(text) ? std::string(text.substr(0, kSecondsEnd)) + ".000Z" : std::string();
}

std::string itemTime(std::string_view text) {
  return momentOf(text) ? std::string(text.substr(0, kSecondsEnd)) + "Z" : std::string();
}

std::string itemTimeOfCompact(std::string_view text) {
  if (!hasForm(text, "ddddddddTddddddZ")) return {};
  const auto part = [&](std::size_t at, std::size_t size) { return std::string(text.substr(at, size)); };
  return itemTime(part(0, 4) + "-" + part(4, 2) + "-" + part(6, 2) + "T" + part(9, 2) + ":" + part(11, 2) +
                  ":" + part(13, 2) + "Z");
}

std::string compactTime(std::string_view itemTime) {
  std::string text;
  for (const char c : itemTime)
    if (c != '-' && c != ':') text += c;
  return text;
}

std::string itemTime(Moment moment) {
  const auto day = std::chrono::floor<std::chrono::days>(moment);
  const std::chrono::year_month_day date(day);
  const std::chrono::hh_mm_ss time(moment - day);
  std::array<char, 64> text{};
  static_cast<void>(std::snprintf(text.data(), text.size(), "%04d-%02u-%02uT%02d:%02d:%02dZ",
                                  static_cast<int>(date.year()), static_cast<unsigned>(date.month()),
                                  static_cast<unsigned>(date.day()), static_cast<int>(time.hours().count()),
                                  static_cast<int>(time.minutes().count()),
                                  static_cast<int>(time.seconds().count())));
  return text.data();
}

}  // namespace demoserver
