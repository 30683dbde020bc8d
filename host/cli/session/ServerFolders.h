// Folders that we make, rename and delete on the server ourselves.
#ifndef AIRSYNC_CLI_SESSION_SERVER_FOLDERS_H
#define AIRSYNC_CLI_SESSION_SERVER_FOLDERS_H

#include <functional>
#include <string>
#include <vector>

#include "api/AirSync.h"
#include "cli/session/Report.h"
#include "cli/session/Turn.h"

namespace airsync {

/// What became of a folder and those below it.
struct Removal {
  struct Kept {
    Folder folder;
    Trouble trouble;
  };
  std::vector<Folder> deleted;
  std::vector<Kept> kept;
};

/// Each operation does its work on the server and then here, so that both are equal when it returns. When the
/// server refuses the hierarchy's key, because somebody else changed folders meanwhile, the list of folders
/// is brought up to date and the operation tried once more. Throws Error (folder), with the server's reason
/// and advice; then nothing was changed here but the list.
class ServerFolders {
 public:
  /// Connected; the list of folders has just been brought up to date.
  ServerFolders(Turn& turn, const Account& account) : turn_(turn), account_(account) {}

  /// Returns the new folder. `parent` is the server id of a folder, or "0".
  Folder create(const std::string& name, INT32 type, const std::string& parent);

  void rename(const Folder& folder, const std::string& name, const std::string& parent);

  /// Deletes the folder and those below it, the deepest first, each by a request of its own. What the server
  /// keeps stays here, and so do the folders above that, which are not asked for. Throws nothing.
  Removal remove(const Folder& folder);

  /// All folders below this one, the deepest first. None when parents go round in a ring.
  std::vector<Folder> below(const Folder& folder) const;

 private:
  using Command = std::function<AIRSYNC_STACK::SYNC_RESULT(AIRSYNC_STACK::_SYNC_KEY& key)>;

  void run(Asked asked, const std::string& operation, const std::string& path, const Command& command,
           const std::function<void()>& storeIt);
  void removeOne(const Folder& folder);
  void forget(const Folder& folder);
  AIRSYNC_STACK::SYNC_RESULT tryOnce(const Command& command, const std::function<void()>& storeIt);

  Turn& turn_;
  const Account& account_;
};

/// What a folder may be called: 1 to 63 bytes of UTF-8 without control characters. Throws ExitError(kUsage).
void checkFolderName(const std::string& name);

}  // namespace airsync

#endif
