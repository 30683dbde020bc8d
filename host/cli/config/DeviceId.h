// The identifier under which the server knows this device.
#ifndef AIRSYNC_CLI_CONFIG_DEVICE_ID_H
#define AIRSYNC_CLI_CONFIG_DEVICE_ID_H

#include <filesystem>
#include <string>

namespace airsync {

/// The identifier kept in `file`; when there is none yet, a new one of 32 random hexadecimal digits is
/// made and kept. Two processes that come here together get the same one.
/// Throws ExitError(kNeedsPerson) when the file can't be read or written, or holds something else.
std::string keptDeviceId(const std::filesystem::path& file);

}  // namespace airsync

#endif
