#include "store/Event.h"

#include "support/Error.h"

namespace airsync {

using namespace AIRSYNC_STACK;

Event Event::fromRecord(const AS_CALENDAR_T& record) {
  Event event;
  event.fields = FieldValues<AS_CALENDAR_T>::fromRecord(record);
  if (record.Recurrence != nullptr) {
    event.recurrence = FieldValues<AS_RECURRENCE_T>::fromRecord(*record.Recurrence);
  }
  const INT32 count = record.Exceptions == nullptr ? 0 : record.ExceptionCount;
  for (INT32 index = 0; index < count; ++index) {
    event.exceptions.push_back(FieldValues<AS_EXCEPTION_T>::fromRecord(record.Exceptions[index]));
  }
  return event;
}

void Event::validate() const {
  if (exceptions.size() > kMostExceptions) {
    throw Error({.kind = ErrorKind::item,
                 .operation = "checking the event's field",
                 .subject = "Exceptions",
                 .cause = "it has " + std::to_string(exceptions.size()) + " entries, and at most " +
                          std::to_string(kMostExceptions) + " can be sent",
                 .advice = "End the series earlier, and continue it in another event."});
  }
  std::size_t size = fields.validate();
  if (recurrence) size = recurrence->validate(size);
  constexpr std::size_t markup = 40;  // of one exception, its texts' included
  for (const auto& exception : exceptions) size = exception.validate(size + markup);
}

std::string Event::displayName() const {
  for (const char* field : {"Subject", "Location"}) {
    const auto* text = fields.get<std::string>(field);
    if (text != nullptr && !text->empty()) return *text;
  }
  const auto* start = fields.get<UtcTime>("StartTime");
  return start == nullptr ? "" : start->text();
}

}  // namespace airsync
