// The command line of the demo server.
#pragma once

#include <optional>
#include <string>

#include "data/Seed.h"
#include "http/Listener.h"
#include "http/Service.h"

namespace demoserver {

struct Options {
  std::string dataFile;
  std::optional<Moment> now;  // the server's clock stands still when it is set
  SeedOptions seed;
  ListenerOptions listener;
  ServiceOptions service;
};

// The options, or the exit code of a program that is to do no more (after --help, or after telling what is
// wrong on standard error).
std::optional<Options> parseOptions(int argc, char** argv, int& exitCode);

}  // namespace demoserver
