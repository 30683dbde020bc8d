// Bytes as a person writes them down.
#ifndef TESTS_SUPPORT_HEX_AND_TEXT_H
#define TESTS_SUPPORT_HEX_AND_TEXT_H

#include <cstdlib>
#include <string>

namespace airsync_test {

/// Pairs of hexadecimal digits and texts in single quotes: "03 01 6A 00 4B 03 'key' 00 01".
inline std::string HexAndText(const std::string& description) {
  std::string bytes;
  for (std::size_t at = 0; at < description.size(); ++at) {
    if (description[at] == ' ') continue;
    if (description[at] == '\'') {
      const std::size_t end = description.find('\'', at + 1);
      bytes += description.substr(at + 1, end - at - 1);
      at = end;
    } else {
      bytes += static_cast<char>(std::strtol(description.substr(at, 2).c_str(), nullptr, 16));
      ++at;
    }
  }
  return bytes;
}

}  // namespace airsync_test

#endif
