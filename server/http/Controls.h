// The part of the administration that changes how the server behaves while it runs: its habits, its faults,
// and what it forgets. See Admin.h for the pages.
#pragma once

#include <optional>
#include <string_view>

#include "data/Database.h"
#include "http/Faults.h"
#include "http/Message.h"
#include "protocol/Habits.h"

namespace demoserver {

struct Controls {
  Habits& habits;
  FaultPlan& faults;
};

// Nothing when `what` and the method name no page of this part. Throws BadRequest, and what the JSON parser
// throws; then nothing is changed. Runs inside the caller's transaction.
std::optional<HttpReply> runControl(Database& database, const Controls& controls, std::string_view what,
                                    const HttpRequest& request);

}  // namespace demoserver
