#include "protocol/Notify.h"

#include <algorithm>

#include "protocol/Status.h"
#include "support/Numbers.h"

namespace demoserver {
namespace {

constexpr std::size_t kMaxFolders = 1000;
constexpr std::size_t kMaxText = 256;

Element answer(int status) {
  Element response(Page::Notify, "AirNotify");
  response.add("Status", std::to_string(status));
  return response;
}

Element withCarriers(int status) {
  Element response = answer(status);
  Element& list = response.add("ValidCarrierProfiles");
  for (const std::string_view carrier : kCarriers) list.add("CarrierProfile", std::string(carrier));
  return response;
}

// The status of the new address; the set-up has it if that is a success.
int takeAddress(const Element& info, NotifySetup& setup) {
  const std::string_view address = info.textOf("DeviceAddress");
  const std::string_view name = info.textOf("FriendlyName");
  const std::string_view carrier = info.textOf("CarrierProfile");
  if (address.empty() || address.size() > kMaxText || name.size() > kMaxText) return kBadDeviceInfo;
  const bool known = std::find(kCarriers.begin(), kCarriers.end(), carrier) != kCarriers.end();
  const bool needed = address.find('@') == std::string_view::npos;
  if (!known && (needed || !carrier.empty())) return kUnknownCarrier;
  setup.address = address;
  setup.friendlyName = name;
  setup.carrier = carrier;
  return kSuccess;
}

Element setAddress(State& state, NotifySetup setup, const Element& info) {
  const int status = takeAddress(info, setup);
  if (status == kUnknownCarrier) return withCarriers(status);
  if (status == kSuccess) state.devices.keep(setup);
  return answer(status);
}

Element switchOff(State& state, NotifySetup setup) {
  setup.lifetime = 0;
  setup.folders.clear();
  state.devices.keep(setup);
  return answer(kSuccess);
}

Element switchOn(State& state, NotifySetup setup, const Element* info, const Element& request) {
  const int status = info == nullptr ? static_cast<int>(kBadDeviceInfo) : takeAddress(*info, setup);
  if (status == kUnknownCarrier) return withCarriers(status);
  if (status != kSuccess) return answer(status);
  Element response = answer(kSuccess);
  Element& responses = response.add("Responses");
  setup.folders.clear();
  if (const Element* enable = request.child("Enable")) {
    if (enable->children.size() > kMaxFolders) throw BadRequest("Enable names too many folders");
    for (const Element& folder : enable->children) {
      const std::string id(folder.textOf("ServerId"));
      if (!folder.is(Page::Notify, "Folder") || id.empty())
        throw BadRequest("Enable may hold nothing but Folder, each with a ServerId");
      const bool exists = state.folders.find(id).has_value();
      if (exists) setup.folders.push_back(id);
      Element& each = responses.add("Folder");
      each.add("ServerId", id);
      each.add("Status", std::to_string(exists ? kSuccess : static_cast<int>(kNoNotifyFolder)));
    }
  }
  state.devices.keep(setup);
  return response;
}

}  // namespace

Element runNotify(State& state, const std::string& device, const Element& request) {
  if (!request.is(Page::Notify, "AirNotify"))
    throw BadRequest("the root of a Notify request must be AirNotify");
  const Element* info = request.child("DeviceInfo");
  NotifySetup setup = state.devices.find(device).value_or(NotifySetup{device, "", "", "", 0, {}});
  if (request.child("Lifetime") != nullptr) {
    const int lifetime = numberOr(request.textOf("Lifetime"), -1);
    if (lifetime < 0) return answer(kBadLifetime);
    if (lifetime == 0) return switchOff(state, setup);
    setup.lifetime = lifetime;
    return switchOn(state, setup, info, request);
  }
  if (info == nullptr) throw BadRequest("a Notify request needs a Lifetime or a DeviceInfo");
  return info->children.empty() ? withCarriers(kSuccess) : setAddress(state, setup, *info);
}

}  // namespace demoserver
