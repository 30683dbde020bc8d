#include "support/Dates.h"

#include <chrono>

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

}  // namespace

std::string normalisedDate(std::string_view text) {
  constexpr std::size_t kSecondsEnd = 19;
  if (!hasForm(text, "dddd-dd-ddTdd:dd:dd.dddZ") && !hasForm(text, "dddd-dd-ddTdd:dd:ddZ")) return {};
  const std::chrono::year_month_day day{std::chrono::year{number(text.substr(0, 4))},
                                        std::chrono::month{static_cast<unsigned>(number(text.substr(5, 2)))},
                                        std::chrono::day{static_cast<unsigned>(number(text.substr(8, 2)))}};
  const bool time =
      number(text.substr(11, 2)) < 24 && number(text.substr(14, 2)) < 60 && number(text.substr(17, 2)) < 60;
  if (!day.ok() || !time) return {};
  return std::string(text.substr(0, kSecondsEnd)) + ".000Z";
}

}  // namespace demoserver
