// A date and time in UTC, and its ISO text.
#ifndef AIRSYNC_HOST_STORE_UTC_TIME_H
#define AIRSYNC_HOST_STORE_UTC_TIME_H

#include <ctime>
#include <optional>
#include <string>
#include <string_view>

namespace airsync {

/// The six numbers of a calendar date and a time of day. A server may send numbers that are no date
/// ("2004-99-00"); they are kept as they came. valid() tells.
struct UtcTime {
  int year = 1970;
  int month = 1;  // from 1
  int day = 1;
  int hour = 0;
  int minute = 0;
  int second = 0;

  static UtcTime fromTm(const std::tm& time);
  static UtcTime now();

  /// Reads "YYYY-MM-DDTHH:MM:SSZ" (a fraction of a second is passed over) or "YYYY-MM-DD". Empty: not such a
  /// text. The numbers are not tested: see valid().
  static std::optional<UtcTime> parse(std::string_view text);

  /// "YYYY-MM-DDTHH:MM:SSZ". parse() gives back the same numbers, whatever they are.
  std::string text() const;

  /// The fields that item records use; the others are 0.
  std::tm tm() const;

  /// Whether it is a date of the years 0 to 9999 and a time of day (second 60 included).
  bool valid() const;

  friend bool operator==(const UtcTime&, const UtcTime&) = default;
};

}  // namespace airsync

#endif
