// Dates in the forms in which items carry them, all of them UTC.
//
//   contacts, records and wire     "2026-11-21T09:00:00.000Z"
//   events and mails, records      "2026-11-21T09:00:00Z"
//   events, wire                   "20261121T090000Z"
//   mails, wire                    "2026-11-21T09:00:00.000Z"
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

namespace demoserver {

using Moment = std::chrono::sys_seconds;

// "2026-11-21T09:00:00.000Z" from that form with any milliseconds (which are dropped) or none at all. Empty
// when the text has another form, or names no day of the calendar or no time of day.
std::string normalisedDate(std::string_view text);

// "2026-11-21T09:00:00Z" from the same forms; empty for what is no time.
std::string itemTime(std::string_view text);
// The same from "20261121T090000Z".
std::string itemTimeOfCompact(std::string_view text);
// The compact form of a text that itemTime or itemTimeOfCompact gave.
std::string compactTime(std::string_view itemTime);

// Between texts of itemTime's form and moments. Years are 0 to 9999.
std::optional<Moment> momentOf(std::string_view text);
std::string itemTime(Moment moment);

}  // namespace demoserver
