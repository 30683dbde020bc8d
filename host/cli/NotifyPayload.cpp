#include "cli/NotifyPayload.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fmt/core.h>
#include <string_view>
#include <system_error>

#include "cli/ExitError.h"
#include "cli/output/Displayable.h"

namespace airsync {

namespace {

constexpr std::string_view kShape = "{xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx}";
constexpr std::size_t kLargestPayload = 65'536;

bool hasShape(const std::string& guid) {
  return std::equal(guid.begin(), guid.end(), kShape.begin(), kShape.end(), [](char c, char shape) {
    return shape == 'x' ? std::isxdigit(static_cast<unsigned char>(c)) != 0 : c == shape;
  });
}

std::string readInput() {
  std::string text;
  std::array<char, 4096> buffer{};
  while (const std::size_t count = std::fread(buffer.data(), 1, buffer.size(), stdin)) {
    text.append(buffer.data(), count);
    if (text.size() > kLargestPayload) break;
  }
  if (std::ferror(stdin) == 0) return text;
  throw ExitError(ExitCode::kUsage, fmt::format("the notification can't be read from standard input: {}",
                                                std::generic_category().message(errno)));
}

}  // namespace

AIRSYNC_STACK::_SYNC_KEY notificationGuid(const std::string& text) {
  std::string guid = text;
  if (!guid.starts_with('{')) guid = "{" + guid + "}";
  std::transform(guid.begin(), guid.end(), guid.begin(),
                 [](char c) { return static_cast<char>(std::tolower(static_cast<unsigned char>(c))); });
  if (!hasShape(guid)) {
    throw ExitError(ExitCode::kUsage, fmt::format("\"{}\" is no identifier of a set-up", displayable(text)),
                    "It looks like {01234567-89ab-cdef-0123-456789abcdef}.");
  }
  AIRSYNC_STACK::_SYNC_KEY key = {};
  std::memcpy(key.text, guid.data(), guid.size());
  return key;
}

std::string notificationPayload(const std::string& text) {
  std::string payload = text == "-" ? readInput() : text;
  std::erase_if(payload, [](char c) { return std::isspace(static_cast<unsigned char>(c)) != 0; });
  if (payload.size() <= kLargestPayload) return payload;
  throw ExitError(ExitCode::kUsage, "the notification is longer than 64 KiB", "Give the base64 text alone.");
}

}  // namespace airsync
