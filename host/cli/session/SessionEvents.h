// What a session tells while it works.
#ifndef AIRSYNC_CLI_SESSION_SESSION_EVENTS_H
#define AIRSYNC_CLI_SESSION_SESSION_EVENTS_H

#include <cstddef>
#include <functional>
#include <string>

#include "cli/process/FlightRecord.h"
#include "transport/TransportOptions.h"

namespace airsync {

struct SessionEvents {
  int verbosity = 0;
  std::function<void(const std::string& line)> log;  // called from verbosity 1 on
  // How many items of the running folder have come so far.
  std::function<void(const std::string& folder, std::size_t items)> progress;
  // How far a message or an attachment has come. See WatchRaw for what it may do.
  WatchRaw transfer;
  // Where the session tells what it is doing; null: nobody wants to know.
  FlightRecord* flight = nullptr;
};

}  // namespace airsync

#endif
