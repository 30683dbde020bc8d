// The events of a new data file.
//
// Every twelve make a round: single ones, all-day ones and meetings, and a series of each type. A series with
// exceptions has every field that these have, so that a client which looks for the first element of a name
// anywhere in an event finds the event's own.
#pragma once

#include <cstdint>
#include <nlohmann/json.hpp>
#include <string>

#include "support/Dates.h"

namespace demoserver {

// The event of this number: one of the many that one seed can give around one moment.
nlohmann::json seedEvent(std::uint64_t seed, int number, Moment now);
// The folder that it belongs to.
std::string seedEventFolder(int number);

// A rule of this type (0 to 6, not 4) whose first occurrence is at this moment; without an end.
nlohmann::json seedRecurrence(int type, Moment first);
// The start of the n-th occurrence of such a rule, counted from 0.
Moment seedOccurrence(int type, Moment first, int n);

}  // namespace demoserver
