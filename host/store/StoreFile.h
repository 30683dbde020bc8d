// The store's file as the file system sees it, before SQLite touches it.
#ifndef AIRSYNC_HOST_STORE_STORE_FILE_H
#define AIRSYNC_HOST_STORE_STORE_FILE_H

#include <cstdint>
#include <filesystem>
#include <string>

namespace airsync {

// Marks a file as this store's, in the place that SQLite's header has for it ("ASYC").
constexpr std::uint32_t kApplicationId = 0x41535943;

/// Makes a directory and those above it where they are missing, for their owner alone (mode 0700). One that
/// is there stays as it is. Throws Error (account).
void makePrivateDirectory(const std::filesystem::path& directory);

/// open(2) of a file beside the store, with mode 0600 where it is made. A symbolic link in its place is not
/// followed: that is an error.
int openStateFile(const std::filesystem::path& file, int flags);

/// What an errno of openStateFile means.
std::string openFailure(int error);

/// Makes an empty file with mode 0600 if there is none. Otherwise the file must be empty or begin like a
/// store (throws Error (account) if it does not, and leaves it alone) and loses whatever rights others had to
/// it.
void prepareStoreFile(const std::filesystem::path& file);

}  // namespace airsync

#endif
