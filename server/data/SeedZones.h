// Time-zone blocks as calendars carry them.
#pragma once

#include <cstddef>
#include <string>

namespace demoserver {

inline constexpr std::size_t kSeedZones = 6;
inline constexpr std::size_t kUtcZone = 0;

// The block of this zone, 172 bytes: bias, standard name, date and bias, daylight name, date and bias.
// Numbers are little-endian, names 32 UTF-16 units, dates 8 numbers of 16 bits: year (0: every year), month,
// weekday from Sunday 0, which such weekday of the month (5: the last), hour, minute, second and millisecond.
std::string seedZone(std::size_t number);

}  // namespace demoserver
