#include "items/EventRewriting.h"

#include <gtest/gtest.h>

#include "items/ItemFields.h"
#include "support/Base64.h"

namespace demoserver {
namespace {

using nlohmann::json;

json rewritten(json record) {
  rewriteZoneAndRule(record);
  return record;
}

TEST(DemoEventRewriting, TakesTheNamesOutOfAZoneAndNothingElse) {
  // Bias 4, name 64, date 16, bias 4, name 64, date 16, bias 4.
  const std::string zone = "BIAS" + std::string(64, 's') + std::string(16, 'd') + "bias" +
                           std::string(64, 'S') + std::string(16, 'D') + "Bias";
  const std::string nameless = "BIAS" + std::string(64, '\0') + std::string(16, 'd') + "bias" +
                               std::string(64, '\0') + std::string(16, 'D') + "Bias";
  EXPECT_EQ(rewritten({{"Timezone", base64(zone)}}), json({{"Timezone", base64(nameless)}}));
}

TEST(DemoEventRewriting, SaysTheIntervalThatIsMeant) {
  EXPECT_EQ(rewritten({{"Recurrence", {{"Type", 2}}}}),
            json({{"Recurrence", {{"Type", 2}, {"Interval", 1}}}}));
  EXPECT_EQ(rewritten({{"Recurrence", {{"Type", 2}, {"Interval", 3}}}}),
            json({{"Recurrence", {{"Type", 2}, {"Interval", 3}}}}));
}

TEST(DemoEventRewriting, MakesDailyOnWeekdaysWeekly) {
  EXPECT_EQ(rewritten({{"Recurrence", {{"Type", 0}, {"Interval", 1}, {"DayOfWeek", 62}}}}),
            json({{"Recurrence", {{"Type", 1}, {"Interval", 1}, {"DayOfWeek", 62}}}}));
  EXPECT_EQ(rewritten({{"Recurrence", {{"Type", 3}, {"Interval", 1}, {"DayOfWeek", 2}}}}),
            json({{"Recurrence", {{"Type", 3}, {"Interval", 1}, {"DayOfWeek", 2}}}}));
}

TEST(DemoEventRewriting, LeavesOtherRecordsAsTheyAre) {
  EXPECT_EQ(rewritten({{"FirstName", "A"}}), json({{"FirstName", "A"}}));
}

}  // namespace
}  // namespace demoserver
