// Events: records with the fields of kCalendarFields, in the forms of ItemFields.h.
//
// Clients hold less than the server gave them, and send less than they hold: of a long body they keep the
// head, and a Change never names the organizer. A Change that brings back exactly what the client was given
// of the body leaves it as it is, and one without an organizer leaves that. Everything else that a Change
// lacks is cleared, as far as the device supports it. The bodies of exceptions are never cut: nothing could
// tell so.
//
// FilterType: 4, 5, 6 and 7 are 2 weeks, 1 month, 3 and 6 months back from now; any other number is all. An
// event counts by its EndTime, a series by the end of its last occurrence.
#pragma once

#include "items/ItemClass.h"

namespace demoserver {

class CalendarClass : public ItemClass {
 public:
  std::string_view name() const override { return "Calendar"; }
  Element encode(const nlohmann::json& record, const TransferOptions& options) const override;
  nlohmann::json decode(const Element& data, const nlohmann::json& previous,
                        const TransferOptions& options) const override;
  nlohmann::json check(const nlohmann::json& record) const override;
  nlohmann::json view(const nlohmann::json& record) const override;
  std::int64_t windowStart(int filter, Moment now) const override;
};

// Throws ItemError when the record has a Recurrence of a type that nobody knows: 0 daily, 1 weekly, 2 monthly
// by day, 3 monthly by weekday, 5 yearly by day, 6 yearly by weekday.
void checkRecurrence(const nlohmann::json& record);

}  // namespace demoserver
