#include "data/SeedZones.h"

#include <array>
#include <cstdint>
#include <string_view>

namespace demoserver {
namespace {

// When clocks change. Month 0: never.
struct Change {
  int month = 0;
  int weekday = 0;
  int week = 0;
  int hour = 0;
};

struct Zone {
  int bias;  // minutes from local time to UTC
  std::u16string_view standardName;
  Change standard;
  std::u16string_view daylightName;
  Change daylight;
};

constexpr std::array<Zone, kSeedZones> kZones = {{
    {0, u"UTC", {}, u"UTC", {}},
    {-60, u"Mitteleuropäische Zeit", {10, 0, 5, 3}, u"Mitteleuropäische Sommerzeit", {3, 0, 5, 2}},
    {300, u"Eastern Standard Time", {11, 0, 1, 2}, u"Eastern Daylight Time", {3, 0, 2, 2}},
    {-540, u"東京 (標準時)", {}, u"東京 (夏時間)", {}},
    {-330, u"भारतीय मानक समय", {}, u"भारतीय मानक समय", {}},
    {-600, u"AUS Eastern Standard Time", {4, 0, 1, 3}, u"AUS Eastern Daylight Time", {10, 0, 1, 2}},
}};

void append(std::string& block, std::uint32_t value, int bytes) {
  for (int i = 0; i < bytes; ++i) block += static_cast<char>(value >> (8 * i) & 0xFFu);
}

void appendName(std::string& block, std::u16string_view name) {
  constexpr std::size_t kUnits = 32;
  for (std::size_t i = 0; i < kUnits; ++i) append(block, i < name.size() ? name[i] : 0u, 2);
}

void appendDate(std::string& block, const Change& change) {
  for (const int part : {0, change.month, change.weekday, change.week, change.hour, 0, 0, 0})
    append(block, static_cast<std::uint32_t>(part), 2);
}

}  // namespace

std::string seedZone(std::size_t number) {
  constexpr int kSummerBias = -60;
  const Zone& zone = kZones[number % kZones.size()];
  std::string block;
  append(block, static_cast<std::uint32_t>(zone.bias), 4);
  appendName(block, zone.standardName);
  appendDate(block, zone.standard);
  append(block, 0, 4);
  appendName(block, zone.daylightName);
  appendDate(block, zone.daylight);
  append(block, static_cast<std::uint32_t>(zone.daylight.month == 0 ? 0 : kSummerBias), 4);
  return block;
}

}  // namespace demoserver
