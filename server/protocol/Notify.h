// The Notify command: how a device wants to hear of changes. The request tells by its parts what it asks for:
//
//   an empty DeviceInfo and no Lifetime    the list of carriers
//   a DeviceInfo and no Lifetime           the device's address is kept, the rest stays as it is
//   Lifetime 0                             notification is switched off; the address is kept
//   another Lifetime, with Enable          notification is switched on for these folders, and no others
//
// A Status other than 1 changes nothing. An address without "@" needs a carrier of the list; the list comes
// with the answer when it was another. Each folder has a Status of its own, too.
#pragma once

#include <array>
#include <string>
#include <string_view>

#include "data/State.h"
#include "wbxml/Element.h"

namespace demoserver {

// What the demo server knows, in place of the companies of the real world.
inline constexpr std::array<std::string_view, 4> kCarriers = {"Demo Mobile", "Example Wireless",
                                                              "Loopback Telecom", "Überlandfunk"};

// Throws BadRequest. Runs inside the caller's transaction.
Element runNotify(State& state, const std::string& device, const Element& request);

}  // namespace demoserver
