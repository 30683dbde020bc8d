#include "cli/session/Library.h"

#include "cli/ExitError.h"
#include "cli/ResultText.h"

namespace airsync {

using namespace AIRSYNC_STACK;

Library::Library(const SERVER_INFO& server, AirSyncTransportInterface& transport, AirSyncDBInterface& storage,
                 Log* log)
    : airSync_(*AirSync::getInstance()) {
  const SYNC_RESULT result =
      airSync_.Initialize(server, server.deviceId, &transport, &storage, ENCODING_WBXML, log);
  if (result == AS_RESULT_OK) return;
  airSync_.Uninitialize();
  AirSync::destroyInstance();
  throw ExitError(ExitCode::kInternal, "the library can't be initialised: " + describe(result).sentence);
}

Library::~Library() {
  if (connected_) airSync_.Disconnect();
  airSync_.Uninitialize();
  AirSync::destroyInstance();
}

SYNC_RESULT Library::connect() {
  const SYNC_RESULT result = airSync_.Connect();
  connected_ = true;  // also after a failure: the library keeps its side of the connection
  return result;
}

}  // namespace airsync
