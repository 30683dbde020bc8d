// An event as the host handles it: a value that may be copied, compared, edited and kept.
#ifndef AIRSYNC_HOST_STORE_EVENT_H
#define AIRSYNC_HOST_STORE_EVENT_H

#include <optional>
#include <string>
#include <vector>

#include "store/FieldValues.h"

namespace airsync {

/// A single event or a series: its own fields, the rule by which it repeats, and the occurrences that differ
/// from the others or are cancelled.
struct Event {
  FieldValues<AIRSYNC_STACK::AS_CALENDAR_T> fields;
  std::optional<FieldValues<AIRSYNC_STACK::AS_RECURRENCE_T>> recurrence;
  std::vector<FieldValues<AIRSYNC_STACK::AS_EXCEPTION_T>> exceptions;  // in the record's order

  /// What people can send of exceptions in one event.
  static constexpr std::size_t kMostExceptions = 300;

  /// A copy of a record of the library. Of the exceptions, ExceptionCount entries, and none without a pointer
  /// to them; an array without entries is the same as none.
  static Event fromRecord(const AIRSYNC_STACK::AS_CALENDAR_T& record);

  /// Throws Error (item) when it can't be sent as it stands: a field that can't (see FieldValues::validate),
  /// too many exceptions, or more than kMostItemBytes in sum. What arrives from a server is kept as it is.
  void validate() const;

  /// What lists and messages call it: its subject, or the best there is instead (place, start). Empty where
  /// there is nothing.
  std::string displayName() const;

  friend bool operator==(const Event&, const Event&) = default;
};

}  // namespace airsync

#endif
