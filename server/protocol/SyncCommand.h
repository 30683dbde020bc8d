// The Sync command: one answer per collection of the request.
//
// A collection's request is judged by its key (see Chain): "0" starts anew and answers a key without items;
// the current key goes on; the key before it gets the very same answer if the request is the same, and
// otherwise runs again from where that key stood, with the client's own changes recognised; any other key
// gets status 3.
//
// Conflicts, that is changes by the client to an item of which the server has a version that this client was
// not sent, follow the collection's Conflict option:
//   0  the client's change is taken; an item that the server removed is brought back.
//   1  (and when the option is missing) the server's version stands: the client's Change or Delete is
//      answered with status 7, or 8 if the item is gone, and the server's version is sent.
//
// Each of these can be otherwise, by one of the Habits.
//
// Truncation and FilterType limit what is sent (see bodyLimitOf and the classes); what leaves the window of a
// filter is deleted on the device, what enters it is added.
#pragma once

#include <optional>
#include <string>

#include "data/State.h"
#include "protocol/Habits.h"
#include "wbxml/Element.h"

namespace demoserver {

// Nothing when the answer is an empty body. Throws BadRequest; throws StoredInPart when a habit says so, and
// the transaction is to be committed then. Runs inside the caller's transaction.
std::optional<Element> runSync(State& state, const Habits& habits, const std::string& device,
                               const Element& request);

}  // namespace demoserver
