// What can be had of a damaged store: copies of its files, and a new store of the rows that can be read.
//
//   RunLock lock(file);
//   if (conditionOf(file) == StoreCondition::damaged) {
//     const SavedStore saved = saveStore(file);   // nothing is in its place yet
//     ...                                         // look at saved.fresh
//     putInPlace(saved, file);
//   }
#ifndef AIRSYNC_HOST_STORE_STORE_REPAIR_H
#define AIRSYNC_HOST_STORE_STORE_REPAIR_H

#include <filesystem>
#include <string>
#include <vector>

namespace airsync {

enum class StoreCondition { missing, sound, damaged };

/// Reads the whole file. Throws Error where it can't be told: the file is of a newer version, in use, not to
/// be opened.
StoreCondition conditionOf(const std::filesystem::path& file);

struct SavedStore {
  std::filesystem::path aside;     // the directory with the copies, byte for byte where the disk gives them
  std::filesystem::path fresh;     // the new store, in that directory
  std::vector<std::string> notes;  // what could not be read, and what became of changes that lack a part
};

/// Copies the files of the store into a new directory beside it, and makes a new store out of the rows that
/// can be read. In that, the server's items are to be fetched anew, and local changes wait; those whose
/// folder or item can't be told any more are failures, so that a person decides. The store itself stays as it
/// is. The caller holds the account's RunLock. Throws Error.
SavedStore saveStore(const std::filesystem::path& file);

/// The new store takes the place of the damaged one.
void putInPlace(const SavedStore& saved, const std::filesystem::path& file);

}  // namespace airsync

#endif
