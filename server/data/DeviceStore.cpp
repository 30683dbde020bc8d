#include "data/DeviceStore.h"

namespace demoserver {
namespace {

NotifySetup readSetup(Query& row) {
  return {row.text(0), row.text(1), row.text(2), row.text(3), row.integer(4), {}};
}

}  // namespace

void DeviceStore::keep(const NotifySetup& setup) {
  Query(database_, "INSERT OR REPLACE INTO devices VALUES(?, ?, ?, ?, ?)", setup.device, setup.friendlyName,
        setup.address, setup.carrier, setup.lifetime)
      .run();
  Query(database_, "DELETE FROM notified WHERE device = ?", setup.device).run();
  for (const std::string& folder : setup.folders)
    Query(database_, "INSERT OR IGNORE INTO notified VALUES(?, ?)", setup.device, folder).run();
}

std::optional<NotifySetup> DeviceStore::find(const std::string& device) {
  Query row(database_,
            "SELECT device, friendly_name, address, carrier, lifetime FROM devices WHERE device = ?", device);
  if (!row.next()) return std::nullopt;
  NotifySetup setup = readSetup(row);
  setup.folders = foldersOf(device);
  return setup;
}

std::vector<NotifySetup> DeviceStore::list() {
  std::vector<NotifySetup> setups;
  Query rows(database_,
             "SELECT device, friendly_name, address, carrier, lifetime FROM devices ORDER BY device");
  while (rows.next()) {
    setups.push_back(readSetup(rows));
    setups.back().folders = foldersOf(setups.back().device);
  }
  return setups;
}

std::vector<std::string> DeviceStore::foldersOf(const std::string& device) {
  std::vector<std::string> folders;
  Query rows(database_, "SELECT folder FROM notified WHERE device = ? ORDER BY folder", device);
  while (rows.next()) folders.push_back(rows.text(0));
  return folders;
}

}  // namespace demoserver
