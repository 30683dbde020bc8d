// The configuration: anything but an account that can be used is an error with a story.
//
// Keeps S20.
#include <string_view>

#include "cli/config/Config.h"
#include "support/Error.h"

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  try {
    const airsync::Config config =
        airsync::parseConfig(std::string_view(reinterpret_cast<const char*>(data), size), "config.toml");
    if (config.accounts.empty()) __builtin_trap();
  } catch (const airsync::Error&) {  // NOLINT(bugprone-empty-catch): refused, as it should be
  }
  return 0;
}
