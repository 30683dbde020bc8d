// The library's lifecycle, tied to an object's.
#ifndef AIRSYNC_CLI_SESSION_LIBRARY_H
#define AIRSYNC_CLI_SESSION_LIBRARY_H

#include "api/AirSync.h"

namespace airsync {

/// Initialised from construction to destruction. There is one AirSync object in a process: at most one
/// Library exists at a time.
class Library {
 public:
  /// Everything passed must outlive this object but `server`, which is copied. Throws ExitError(kInternal).
  Library(const AIRSYNC_STACK::SERVER_INFO& server, AIRSYNC_STACK::AirSyncTransportInterface& transport,
          AIRSYNC_STACK::AirSyncDBInterface& storage, AIRSYNC_STACK::Log* log);
  /// Disconnects where it is connected.
  ~Library();
  Library(const Library&) = delete;
  Library& operator=(const Library&) = delete;

  /// AirSync::Connect.
  AIRSYNC_STACK::SYNC_RESULT connect();

  AIRSYNC_STACK::AirSync& airSync() { return airSync_; }

 private:
  AIRSYNC_STACK::AirSync& airSync_;
  bool connected_ = false;
};

}  // namespace airsync

#endif
