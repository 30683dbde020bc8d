// The store's file as the file system sees it, before SQLite touches it.
#ifndef AIRSYNC_HOST_STORE_STORE_FILE_H
#define AIRSYNC_HOST_STORE_STORE_FILE_H

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "support/Error.h"

namespace airsync {

// Marks a file as this store's, in the place that SQLite's header has for it ("ASYC").
constexpr std::uint32_t kApplicationId = 0x41535943;

/// Makes a directory and those above it where they are missing, for their owner alone (mode 0700). One that
/// is there stays as it is. Throws Error (account).
void makePrivateDirectory(const std::filesystem::path& directory);

/// open(2) of a file beside the store, with mode 0600 where it is made. A symbolic link in its place is not
/// followed: that is an error. A pipe in its place is opened without waiting for its other end; see
/// isRegularFile.
int openStateFile(const std::filesystem::path& file, int flags);

/// What an errno of openStateFile means.
std::string openFailure(int error);

/// Whether the descriptor is that of a file with contents, and not of a pipe or a device.
bool isRegularFile(int descriptor);

/// Makes an empty file with mode 0600 if there is none. Otherwise the file must begin like a store, or be
/// empty and never have been one (throws Error (account) if it does not, and leaves it alone), and loses
/// whatever rights others had to it. So it is with what SQLite keeps beside it: regular files or nothing.
void prepareStoreFile(const std::filesystem::path& file);

/// Remembers beside the file that there is a store in it: when it is empty later, it has lost what was in it.
void markStoreMade(const std::filesystem::path& file);

/// The files that belong to a store: itself, what SQLite keeps beside it, and the mark of markStoreMade. The
/// store itself is the last of those with contents.
std::vector<std::filesystem::path> filesOfStore(const std::filesystem::path& file);

/// A store that can't be read, or holds what no store has.
class DamagedStore : public Error {
 public:
  using Error::Error;
};

/// What to do about one.
inline constexpr const char* kDamagedAdvice =
    "Local changes that were not sent may be in it, and nowhere else: keep it. Move it aside; the next "
    "synchronisation makes a new store and fetches everything again.";

/// Throws DamagedStore.
[[noreturn]] void failDamaged(const std::filesystem::path& file, const std::string& cause,
                              const std::string& advice = kDamagedAdvice);

}  // namespace airsync

#endif
