// What some servers make of an event that a client sent: the same event, in other words.
#pragma once

#include <nlohmann/json.hpp>

namespace demoserver {

// Takes the names out of the Timezone; gives a Recurrence without Interval the 1 that it means; makes a daily
// one on certain weekdays a weekly one. Leaves every other record as it is.
void rewriteZoneAndRule(nlohmann::json& record);

}  // namespace demoserver
