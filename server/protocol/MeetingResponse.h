// The MeetingResponse command: answers the meeting requests that mails carry.
//
// To accept (1), or to accept tentatively (2), puts the meeting into the calendar under the UID of the
// request, in place of what an earlier answer to it made; to decline (3) takes such an item out again. The
// request then goes to Deleted Items. One that went there before is found again under its old id, so that a
// repeated answer is taken like the first.
#pragma once

#include <nlohmann/json.hpp>

#include "data/State.h"
#include "wbxml/Element.h"

namespace demoserver {

enum class MeetingAnswer : int { Accept = 1, Tentative = 2, Decline = 3 };

// The event that accepting makes of a mail with a MeetingRequest.
nlohmann::json eventOf(const nlohmann::json& mail, MeetingAnswer answer);

// Throws BadRequest. Runs inside the caller's transaction.
Element runMeetingResponse(State& state, const Element& request);

}  // namespace demoserver
