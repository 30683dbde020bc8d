// The GetItemEstimate command: how many items a Sync under the same key and filter would bring, now and
// without its window. It changes nothing.
//
// Each collection gets one Response. The filter and the key are taken under the names and from the pages
// under which clients write them: FilterType and SyncKey of a Sync, or A:FilterType and A:SyncKey.
#pragma once

#include <string>

#include "data/State.h"
#include "wbxml/Element.h"

namespace demoserver {

// Throws BadRequest. Runs inside the caller's transaction.
Element runGetItemEstimate(State& state, const std::string& device, const Element& request);

}  // namespace demoserver
