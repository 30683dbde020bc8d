#include "cli/session/Turn.h"

#include <chrono>
#include <string>

#include "cli/config/DeviceId.h"
#include "cli/config/Password.h"
#include "cli/config/Paths.h"

namespace airsync {

namespace {

// The process of a run that was killed a moment ago may not be gone yet.
constexpr std::chrono::seconds kPatience(2);

std::string deviceIdOf(const Account& account, const RunOptions& options) {
  if (!account.deviceId.empty()) return account.deviceId;
  return keptDeviceId(deviceIdFile(options.state, account.name));
}

}  // namespace

Turn::Turn(const Account& account, const RunOptions& options)
    : file_(storeFile(options.state, account.name)),
      lock_(file_, kPatience),
      store_(file_),
      session_(account, deviceIdOf(account, options), passwordOf(account, options.environment), store_,
               options.events) {}

}  // namespace airsync
