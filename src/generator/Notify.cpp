// The notification requests, on the notification page.
#include "generator/Generator.h"
#include "support/Porting.h"

namespace AIRSYNC_STACK {

namespace {

const UINT8 kAirNotifyPage = 3;

// A part that holds children of its own page while it is built.
sml_element* NewPart(const char* tag) {
  sml_element* part = SE_New(tag, nullptr);
  part->CodePage = kAirNotifyPage;
  return part;
}

sml_element* NewRequest() {
  sml_element* request = SE_NewWithAttribute("AirNotify", "xmlns", "AirNotify:", nullptr);
  request->CodePage = kAirNotifyPage;
  return request;
}

const char* TextOf(const unsigned char* text) { return reinterpret_cast<const char*>(text); }

bool IsEmpty(const char* text) { return text == nullptr || text[0] == '\0'; }

}  // namespace

sml_element* Generator::GetCarrierList() {
  sml_element* request = NewRequest();
  SE_AddChild(request, SE_New("DeviceInfo", nullptr));
  return request;
}

// The page holds no tag "Carrier": in WBXML this request ends in the writer.
sml_element* Generator::SetDeviceAddress(const unsigned char* carrier, const char* friendlyName,
                                         const char* deviceAddress) {
  sml_element* request = NewRequest();
  sml_element* device = DeviceInfo(friendlyName, deviceAddress);
  SE_AddChild(device, SE_New("Carrier", TextOf(carrier)));
  SE_AddChild(request, device);
  return request;
}

sml_element* Generator::DeviceInfo(const char* friendlyName, const char* deviceAddress) {
  sml_element* device = NewPart("DeviceInfo");
  SE_AddChild(device, SE_New("FriendlyName", friendlyName));
  SE_AddChild(device, SE_New("DeviceAddress", deviceAddress));
  return device;
}

sml_element* Generator::NotifyEnable(FOLDER_INFO** folders, int count, unsigned int lifetime,
                                     const char* friendlyName, const char* deviceAddress,
                                     const unsigned char* carrier) {
  sml_element* request = NewRequest();
  SE_AddChild(request, NumberElement("Lifetime", static_cast<INT32>(lifetime)));
  if (lifetime == 0) {
    SE_AddChild(request, SE_New("DeviceInfo", nullptr));
    return request;
  }
  sml_element* device = DeviceInfo(friendlyName, deviceAddress);
  // An e-mail address needs no carrier.
  const bool byCarrier = deviceAddress == nullptr || SmlStrchr(deviceAddress, '@') == nullptr;
  if (byCarrier && !IsEmpty(TextOf(carrier))) SE_AddChild(device, SE_New("CarrierProfile", TextOf(carrier)));
  SE_AddChild(request, device);

  sml_element* enable = NewPart("Enable");
  for (int i = 0; i < count; ++i) {
    if (folders[i] == nullptr || folders[i]->notifyEnabled == 0) continue;
    sml_element* folder = NewPart("Folder");
    SE_AddChild(folder, FolderCollId(folders[i]->folder.serverId));
    SE_AddChild(enable, folder);
  }
  SE_AddChild(request, enable);
  return request;
}

}  // namespace AIRSYNC_STACK
