#include "support/GoldenDocument.h"

#include <cctype>
#include <fstream>
#include <gtest/gtest.h>

namespace airsync_test {

namespace {

bool IsByteAt(const std::string& line, std::size_t at) {
  return at + 1 < line.size() && std::isxdigit(static_cast<unsigned char>(line[at])) != 0 &&
         std::isxdigit(static_cast<unsigned char>(line[at + 1])) != 0;
}

// The bytes of one line; a line that is not as told above fails the test.
std::string BytesOf(const std::string& line) {
  std::string bytes;
  std::size_t at = line.find_first_not_of(' ');
  if (at == std::string::npos || line[at] == '#') return bytes;
  for (;;) {
    if (!IsByteAt(line, at)) {
      ADD_FAILURE() << "no byte at column " << at + 1 << ": " << line;
      return bytes;
    }
    bytes += static_cast<char>(std::stoi(line.substr(at, 2), nullptr, 16));
    at += 2;
    if (at >= line.size() || line.compare(at, 2, "  ") == 0) return bytes;
    if (line[at] != ' ') {
      ADD_FAILURE() << "bytes are separated by one blank: " << line;
      return bytes;
    }
    ++at;
  }
}

}  // namespace

std::string GoldenDocument(const std::string& name) {
  std::ifstream file(std::string(AIRSYNC_WIRE_DIRECTORY) + "/" + name);
  std::string bytes;
  for (std::string line; std::getline(file, line);) bytes += BytesOf(line);
  EXPECT_FALSE(bytes.empty()) << "there is no golden document " << name;
  return bytes;
}

std::string InHex(const std::string& bytes) {
  const char* const digits = "0123456789ABCDEF";
  std::string hex;
  for (const char byte : bytes) {
    const unsigned value = static_cast<unsigned char>(byte);
    if (!hex.empty()) hex += ' ';
    hex += digits[value >> 4];
    hex += digits[value & 15];
  }
  return hex;
}

}  // namespace airsync_test
