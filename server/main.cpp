// airsync-demo-server: see --help, and http/Admin.h for the administration.
#include <exception>
#include <iostream>
#include <sys/stat.h>

#include "Options.h"
#include "data/Seed.h"
#include "data/State.h"
#include "http/Listener.h"
#include "http/Service.h"

namespace {

int serve(const demoserver::Options& options) {
  demoserver::State state(options.dataFile);
  state.clock.fixed = options.now;
  if (!demoserver::seed(state, options.seed))
    std::cerr << options.dataFile << " holds data already: it is served as it is" << std::endl;
  demoserver::Service service(state, options.service);
  demoserver::Listener listener(service, options.listener);
  std::cout << "listening on " << listener.endpoint() << std::endl;
  listener.run();
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  ::umask(S_IRWXG | S_IRWXO);  // people's mail is in the data file
  try {
    int exitCode = 0;
    const auto options = demoserver::parseOptions(argc, argv, exitCode);
    return options ? serve(*options) : exitCode;
  } catch (const std::exception& error) {
    std::cerr << "airsync-demo-server: " << error.what() << std::endl;
    return 1;
  }
}
