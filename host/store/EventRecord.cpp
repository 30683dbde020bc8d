#include "store/EventRecord.h"

namespace airsync {

EventRecord::EventRecord(const Event& event) : fields_(event.fields) {
  if (event.recurrence) record().Recurrence = &recurrence_.emplace(*event.recurrence).record();
  for (const auto& exception : event.exceptions) {
    array_.push_back(exceptions_.emplace_back(exception).record());
  }
  if (array_.empty()) return;
  record().Exceptions = array_.data();
  record().ExceptionCount = static_cast<INT32>(array_.size());
}

}  // namespace airsync
