// What the parts of a running synchronisation share.
#ifndef AIRSYNC_HOST_STORE_SYNC_FOLDER_H
#define AIRSYNC_HOST_STORE_SYNC_FOLDER_H

#include "store/Database.h"
#include "store/FolderTable.h"
#include "store/ItemContents.h"
#include "store/ItemTable.h"
#include "store/StoreTypes.h"
#include "store/TrashTable.h"

namespace airsync {

// The tables, as one AirSync::Sync sees them: with the contents of the folder's class.
struct SyncTables {
  Database& database;
  FolderTable& folders;
  ItemTable& items;
  PendingTable& pending;
  TrashTable& trash;
  ItemContents& contents;
};

// The folder, as it is between two stored keys.
struct SyncFolder {
  FolderNumber number = 0;
  std::string key;  // what the running exchange was asked with
  std::int64_t generation = 0;
  bool reconciling = false;
  bool oneByOne = false;
  SyncRules rules;
};

}  // namespace airsync

#endif
