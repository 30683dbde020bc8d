// One FolderSync: folders and the hierarchy's key, in one transaction.
#ifndef AIRSYNC_HOST_STORE_HIERARCHY_UPDATE_H
#define AIRSYNC_HOST_STORE_HIERARCHY_UPDATE_H

#include <memory>
#include <optional>
#include <string>
#include <unordered_set>

#include "api/AirSyncDBInterface.h"
#include "store/Database.h"
#include "store/StoreTypes.h"

namespace airsync {

/// Its transaction begins with the first folder that comes, when the response has been read.
class HierarchyUpdate {
 public:
  /// With `all`, folders that do not come are gone at the end.
  HierarchyUpdate(Database& database, bool all) : database_(database), all_(all) {}

  void update(const AIRSYNC_STACK::BASE_FOLDER& folder, int operation);

  /// Throws Error (folder: those that are known stand) when the whole hierarchy was to come and nothing came.
  void commit(const std::string& key);

 private:
  void begin();
  void store(const AIRSYNC_STACK::BASE_FOLDER& folder, const std::string& serverId);
  bool isForMail(FolderNumber folder);
  void remove(FolderNumber folder);
  void removeMissing();

  Database& database_;
  bool all_;
  std::optional<Transaction> transaction_;
  std::unordered_set<std::string> seen_;
};

}  // namespace airsync

#endif
