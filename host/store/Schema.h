// The tables of the store and their versions.
#ifndef AIRSYNC_HOST_STORE_SCHEMA_H
#define AIRSYNC_HOST_STORE_SCHEMA_H

#include <SQLiteCpp/Database.h>
#include <filesystem>

namespace airsync {

/// Brings the file's tables to the newest version, from nothing or from an older one, in one transaction.
/// `file` is only named in errors. Throws Error (account), with the file unchanged, when its version is newer
/// than this program or it is not a store; SQLite::Exception when SQLite fails.
void migrate(SQLite::Database& connection, const std::filesystem::path& file);

}  // namespace airsync

#endif
