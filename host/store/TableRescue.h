// Reads the rows of a damaged database's tables, as many as can be had.
#ifndef AIRSYNC_HOST_STORE_TABLE_RESCUE_H
#define AIRSYNC_HOST_STORE_TABLE_RESCUE_H

#include <SQLiteCpp/Database.h>
#include <string>

namespace airsync {

/// Copies the rows of the table into the table of that name in `sound`, in the columns that both have; rows
/// that are there already stay. Where reading fails, it goes on behind the place: from the other end, and row
/// by row in between. Returns whether nothing failed. Throws Error for failures of `sound` alone.
bool rescueTable(SQLite::Database& damaged, SQLite::Database& sound, const std::string& table);

}  // namespace airsync

#endif
