#include "items/EventRewriting.h"

#include <algorithm>
#include <array>
#include <string>

#include "items/ItemFields.h"
#include "support/Base64.h"
#include "support/Json.h"

namespace demoserver {
namespace {

using nlohmann::json;

constexpr int kDaily = 0;
constexpr int kWeekly = 1;
constexpr std::size_t kNameSize = 64;
// Bias, name, date, bias, name, date, bias.
constexpr std::array<std::size_t, 2> kNameOffsets = {4, 88};

std::string withoutNames(const std::string& zone) {
  auto bytes = base64Decoded(zone);
  if (!bytes || bytes->size() != kZoneSize) return zone;
  for (const std::size_t offset : kNameOffsets) bytes->replace(offset, kNameSize, kNameSize, '\0');
  return base64(*bytes);
}

}  // namespace

void rewriteZoneAndRule(json& record) {
  if (record.contains("Timezone")) record["Timezone"] = withoutNames(textOf(record, "Timezone"));
  const auto rule = record.find("Recurrence");
  if (rule == record.end()) return;
  if (!rule->contains("Interval")) (*rule)["Interval"] = 1;
  if (rule->value("Type", kDaily) == kDaily && rule->contains("DayOfWeek")) (*rule)["Type"] = kWeekly;
}

}  // namespace demoserver
