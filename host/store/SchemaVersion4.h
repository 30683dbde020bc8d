// What a file of version 3 lacks; see Schema.cpp.
#ifndef AIRSYNC_HOST_STORE_SCHEMA_VERSION4_H
#define AIRSYNC_HOST_STORE_SCHEMA_VERSION4_H

namespace airsync {

extern const char* const kSchemaVersion4;

}  // namespace airsync

#endif
