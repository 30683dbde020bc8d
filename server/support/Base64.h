// Base64 with its usual alphabet, padded and without line breaks.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace demoserver {

std::string base64(std::string_view bytes);

// The bytes; nothing for a text that base64() would not have written.
std::optional<std::string> base64Decoded(std::string_view text);

}  // namespace demoserver
