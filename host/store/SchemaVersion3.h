// What version 3 of the store's tables adds: the login that the store belongs to.
#ifndef AIRSYNC_HOST_STORE_SCHEMA_VERSION3_H
#define AIRSYNC_HOST_STORE_SCHEMA_VERSION3_H

namespace airsync {

/// The statements that bring the tables of version 2 there.
extern const char* const kSchemaVersion3;

}  // namespace airsync

#endif
