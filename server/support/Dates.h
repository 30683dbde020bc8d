// Dates in the form in which items carry them: UTC, "YYYY-MM-DDThh:mm:ss.000Z".
#pragma once

#include <string>
#include <string_view>

namespace demoserver {

// Accepts the form above with any milliseconds (which are dropped) or none at all. Empty when the text has
// another form, or names no day of the calendar or no time of day.
std::string normalisedDate(std::string_view text);

}  // namespace demoserver
