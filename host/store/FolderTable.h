// The table of folders.
#ifndef AIRSYNC_HOST_STORE_FOLDER_TABLE_H
#define AIRSYNC_HOST_STORE_FOLDER_TABLE_H

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "store/Database.h"
#include "store/StoreTypes.h"

namespace airsync {

// What synchronising needs of a folder.
struct FolderState {
  std::string syncKey;
  std::int64_t generation = 0;
  bool reconciling = false;  // a full download is under way; see Store::resetFolder
  bool gone = false;
  INT32 type = 0;
  bool asked = false;     // a request went out under this key, and no answer came yet
  bool oneByOne = false;  // each change goes in a request of its own
};

class FolderTable {
 public:
  explicit FolderTable(Database& database) : database_(database) {}

  /// All folders with paths and counts, by path.
  std::vector<Folder> list();
  /// Without the counts: see Store::uncountedFolders.
  std::vector<Folder> listUncounted();

  /// See Store::folder and Store::findFolder.
  Folder get(FolderNumber number);
  Folder find(std::string_view text);
  Folder getUncounted(FolderNumber number);

  /// Empty when there is no such folder.
  std::optional<FolderState> state(FolderNumber number);

  /// See Store::repetitionDue.
  bool repetitionDue(FolderNumber number);

  /// Whether additions went out under the folder's key, or met with an error, and what became of them is to
  /// be seen in a full download only.
  bool additionsUnanswered(FolderNumber number);

  /// See Store::nextStep and Store::waitingDeletions.
  SyncStep nextStep(FolderNumber number, INT32 syncMode, bool received);
  WaitingDeletions waitingDeletions(FolderNumber number);

  /// Stores the key. The next request goes out under it without another word, so it counts as asked already.
  void storeKey(FolderNumber number, const std::string& key);
  /// A request is about to go out under the folder's key; or none is under way any more.
  void noteAsked(FolderNumber number);
  void forgetAsked(FolderNumber number);

  void setOneByOne(FolderNumber number, bool oneByOne);

  void storeLastSync(FolderNumber number);

  /// The key becomes "0", and a full download begins or ends.
  void beginReconciling(FolderNumber number);
  void endReconciling(FolderNumber number);

 private:
  void readFolders(std::vector<Folder>& folders);
  void readCounts(std::vector<Folder>& folders);

  Database& database_;
};

}  // namespace airsync

#endif
