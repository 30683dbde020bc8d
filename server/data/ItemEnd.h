// When an item ends: the moment that a FilterType compares with now.
#pragma once

#include <cstdint>
#include <nlohmann/json.hpp>

namespace demoserver {

// Of an item that never ends, or has no time.
inline constexpr std::int64_t kNoEnd = INT64_MAX;

// Seconds since 1970. A mail ends when it was received, an event with its EndTime, a series with its last
// occurrence: that of its Until, or, counted in whole periods and so never too early, that of its
// Occurrences; and no sooner than any exception to it.
std::int64_t endOf(const nlohmann::json& record);

}  // namespace demoserver
