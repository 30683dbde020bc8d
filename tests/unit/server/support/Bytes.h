// Bytes as people write them: "03 01 6A 00".
#pragma once

#include <array>
#include <cstdio>
#include <cstdlib>
#include <sstream>
#include <string>
#include <string_view>

namespace demoserver {

inline std::string hexOf(std::string_view bytes) {
  std::string text;
  for (const char byte : bytes) {
    std::array<char, 4> pair{};
    std::snprintf(pair.data(), pair.size(), "%02X", static_cast<unsigned>(static_cast<unsigned char>(byte)));
    text.append(text.empty() ? "" : " ").append(pair.data());
  }
  return text;
}

inline std::string fromHex(const std::string& text) {
  std::istringstream pairs(text);
  std::string bytes, pair;
  while (pairs >> pair) bytes += static_cast<char>(std::strtol(pair.c_str(), nullptr, 16));
  return bytes;
}

}  // namespace demoserver
