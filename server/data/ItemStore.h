// The items of all folders, as JSON records.
#pragma once

#include <cstdint>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

#include "data/Database.h"

namespace demoserver {

struct Item {
  std::string id;
  std::string folder;
  nlohmann::json record;  // null when the item is gone
  std::int64_t revision = 0;
  bool gone = false;
};

class ItemStore {
 public:
  explicit ItemStore(Database& database) : database_(database) {}

  // Both give the item's new revision a place after every earlier change.
  Item add(const std::string& folder, const nlohmann::json& record);
  // Also brings back an item that was removed. Returns the new revision.
  std::int64_t replace(const std::string& id, const nlohmann::json& record);
  // Leaves a tombstone for the devices that hold the item. Returns its revision.
  std::int64_t remove(const std::string& id);
  // Forgets a folder's items altogether, tombstones included.
  void forgetFolder(const std::string& folder);

  // The item or its tombstone, if it belongs to that folder.
  std::optional<Item> find(const std::string& folder, const std::string& id);
  // Up to `limit` items and tombstones changed after `position`, in the order of their changes.
  std::vector<Item> changedAfter(const std::string& folder, std::int64_t position, int limit);
  // The items that exist.
  std::vector<Item> list(const std::string& folder);
  std::int64_t count(const std::string& folder);

 private:
  Database& database_;
};

}  // namespace demoserver
