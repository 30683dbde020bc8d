// What version 2 of the store's tables adds: events and mails.
#ifndef AIRSYNC_HOST_STORE_SCHEMA_VERSION2_H
#define AIRSYNC_HOST_STORE_SCHEMA_VERSION2_H

namespace airsync {

/// The statements that bring the tables of version 1 there.
extern const char* const kSchemaVersion2;

}  // namespace airsync

#endif
