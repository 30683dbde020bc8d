// What each device has set up for notifications: where it is reached, for how long, and about which folders.
// This server keeps and shows the set-up; it sends no notifications.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "data/Database.h"

namespace demoserver {

struct NotifySetup {
  std::string device;
  std::string friendlyName;
  std::string address;               // an e-mail address, or a telephone number that needs a carrier
  std::string carrier;               // one of kCarriers, or empty
  std::int64_t lifetime = 0;         // as the device gave it; 0: notification is off
  std::vector<std::string> folders;  // ids; none when notification is off
};

class DeviceStore {
 public:
  explicit DeviceStore(Database& database) : database_(database) {}

  // Replaces the whole set-up of setup.device.
  void keep(const NotifySetup& setup);
  std::optional<NotifySetup> find(const std::string& device);
  // Of all devices that ever set something up, by their ids.
  std::vector<NotifySetup> list();

 private:
  std::vector<std::string> foldersOf(const std::string& device);

  Database& database_;
};

}  // namespace demoserver
