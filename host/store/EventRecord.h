// An event's record for the library, with its recurrence and its exceptions.
#ifndef AIRSYNC_HOST_STORE_EVENT_RECORD_H
#define AIRSYNC_HOST_STORE_EVENT_RECORD_H

#include <deque>
#include <optional>
#include <vector>

#include "store/Event.h"
#include "store/FieldRecord.h"

namespace airsync {

/// Owns an AS_CALENDAR_T made from an Event, and all that it leads to. Like FieldRecord it stays at one
/// address. The array of exceptions is null when there are none.
class EventRecord {
 public:
  explicit EventRecord(const Event& event);
  EventRecord(const EventRecord&) = delete;
  EventRecord& operator=(const EventRecord&) = delete;

  AIRSYNC_STACK::AS_CALENDAR_T& record() { return fields_.record(); }

 private:
  FieldRecord<AIRSYNC_STACK::AS_CALENDAR_T> fields_;
  std::optional<FieldRecord<AIRSYNC_STACK::AS_RECURRENCE_T>> recurrence_;
  std::deque<FieldRecord<AIRSYNC_STACK::AS_EXCEPTION_T>>
      exceptions_;  // own what the array's entries point to
  std::vector<AIRSYNC_STACK::AS_EXCEPTION_T> array_;
};

}  // namespace airsync

#endif
