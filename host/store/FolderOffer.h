// The folders that a command about several of them works on, and what the server reports about each.
#ifndef AIRSYNC_HOST_STORE_FOLDER_OFFER_H
#define AIRSYNC_HOST_STORE_FOLDER_OFFER_H

#include <vector>

#include "store/StoreTypes.h"

namespace airsync {

/// See Store::offerFolders.
class FolderOffer {
 public:
  explicit FolderOffer(std::vector<FolderRecord> folders = {});

  /// An array of count() records that lives as long as this object; null when there are none.
  AIRSYNC_STACK::FOLDER_INFO** infos() { return infos_.empty() ? nullptr : infos_.data(); }
  int count() const { return static_cast<int>(infos_.size()); }

  /// A later report about a folder replaces the earlier one.
  void report(const FolderEstimate& estimate);
  void report(const FolderNotifyStatus& status);

  const std::vector<FolderEstimate>& estimates() const { return estimates_; }
  const std::vector<FolderNotifyStatus>& notifyStatuses() const { return notifyStatuses_; }

 private:
  std::vector<FolderRecord> folders_;
  std::vector<AIRSYNC_STACK::FOLDER_INFO*> infos_;
  std::vector<FolderEstimate> estimates_;
  std::vector<FolderNotifyStatus> notifyStatuses_;
};

}  // namespace airsync

#endif
