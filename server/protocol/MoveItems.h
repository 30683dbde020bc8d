// The MoveItems command: brings items into other folders of the same class.
//
// Each Move gets one Response, in the same order. The item goes on under a new id (see Moves); every device,
// the one that asked included, gets a Delete from the old folder and an Add from the new one with its next
// Sync. A Move that was done before, and whose answer was lost, is answered as it was the first time.
#pragma once

#include <string>

#include "data/State.h"
#include "protocol/Habits.h"
#include "wbxml/Element.h"

namespace demoserver {

// Throws BadRequest. Runs inside the caller's transaction.
Element runMoveItems(State& state, const Habits& habits, const std::string& device, const Element& request);

}  // namespace demoserver
