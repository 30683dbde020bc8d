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
  std::int64_t contentRevision = 0;  // of the last change of more than the member Read
  std::int64_t until = 0;            // see endOf
};

// Items by their ends in seconds since 1970; the upper end does not belong to it.
struct EndRange {
  std::int64_t from = 0;
  std::int64_t to = 0;
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
  // Up to `limit` of the items that exist, end in the range, have not changed after `position`, and that the
  // device holds or does not hold: the earliest ends first of those that it holds, the latest of the others.
  std::vector<Item> heldIn(const std::string& folder, const std::string& device, const EndRange& ends,
                           std::int64_t position, int limit);
  std::vector<Item> notHeldIn(const std::string& folder, const std::string& device, const EndRange& ends,
                              std::int64_t position, int limit);
  // The item that exists and has this text in that field; of several, the one that was changed first.
  std::optional<Item> findByText(const std::string& folder, const std::string& field,
                                 const std::string& text);
  // The items that exist.
  std::vector<Item> list(const std::string& folder);
  std::int64_t count(const std::string& folder);

 private:
  Database& database_;
};

}  // namespace demoserver
