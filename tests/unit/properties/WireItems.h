// Items as a Sync request carries them, read from its bytes alone: nothing of the library is used, tokens and
// forms are written down here once more.
#ifndef TESTS_UNIT_PROPERTIES_WIRE_ITEMS_H
#define TESTS_UNIT_PROPERTIES_WIRE_ITEMS_H

#include <string>

#include "support/ItemCopies.h"

namespace airsync_test {

/// The fields of the only item in a request that adds or changes one, as copies of records have them. What
/// is not a Sync request of one collection with one such command, in WBXML and with its elements in their
/// order, gives the one field "error", which says why.
ItemFields ContactOnTheWire(const std::string& request);
ItemFields EventOnTheWire(const std::string& request);

}  // namespace airsync_test

#endif
