// Base64, as records and requests carry bytes: the alphabet with "+" and "/", padded, in one line.
#ifndef AIRSYNC_FORMATS_BASE64_H
#define AIRSYNC_FORMATS_BASE64_H

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace airsync {

std::string base64Of(std::span<const std::uint8_t> bytes);

/// The bytes; empty when the text is anything but what base64Of writes.
std::optional<std::vector<std::uint8_t>> bytesOfBase64(std::string_view text);

}  // namespace airsync

#endif
