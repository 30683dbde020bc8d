// Events as JSON: one object, whose members are the fields of the record (see FieldJson.h), and
//
//   "Recurrence": {"Type": 1, ...}                       the rule by which it repeats
//   "Exceptions": [{"ExceptionStartTime": ..., ...}]     occurrences that differ, or are cancelled
//
// A series without a rule or without exceptions has no such member.
#ifndef AIRSYNC_FORMATS_EVENT_JSON_H
#define AIRSYNC_FORMATS_EVENT_JSON_H

#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string_view>
#include <vector>

#include "formats/FieldJson.h"
#include "formats/RecordError.h"
#include "store/Event.h"

namespace airsync {

using Recurrence = FieldValues<AIRSYNC_STACK::AS_RECURRENCE_T>;
using EventException = FieldValues<AIRSYNC_STACK::AS_EXCEPTION_T>;

/// What a text names of an event. Rule and exceptions are replaced as a whole; null stands for none.
struct EventPatch {
  FieldPatch<AIRSYNC_STACK::AS_CALENDAR_T> fields;
  std::optional<std::optional<Recurrence>> recurrence;
  std::optional<std::vector<EventException>> exceptions;

  bool names(std::string_view name) const;
  void applyTo(Event& event) const;
};

/// Reads one record; throws RecordError as parseContactPatch does, and for a rule without a type and an
/// exception that does not say which occurrence it is about.
EventPatch parseEventPatch(std::string_view json);

/// Throws Error (item) when `event`, to which `patch` was applied, is nothing that a calendar could show: it
/// ends before it starts, has no start or no end, exceptions without a rule, or an attendee whom nobody can
/// write to. What the patch does not touch
/// is left as the server has it, unless the event is new.
void checkEvent(const Event& event, const EventPatch& patch, bool isNew);

/// The record of an event, in the order of the fields.
nlohmann::ordered_json eventToJson(const Event& event);

nlohmann::ordered_json recurrenceToJson(const Recurrence& recurrence);

}  // namespace airsync

#endif
