#include "support/Wire.h"

#include <gtest/gtest.h>

namespace airsync_test {

std::string HexBytes(const std::string& hex) {
  std::string bytes;
  bool comment = false;
  int high = -1;
  for (const char c : hex) {
    if (c == '\n') comment = false;
    if (c == '#') comment = true;
    if (comment || c == ' ' || c == '\n' || c == '\t') continue;
    const std::size_t digit = std::string("0123456789ABCDEF").find(c);
    if (digit == std::string::npos) {
      ADD_FAILURE() << "no hexadecimal digit: " << c;
      continue;
    }
    if (high < 0) {
      high = static_cast<int>(digit);
    } else {
      bytes += static_cast<char>(high * 16 + static_cast<int>(digit));
      high = -1;
    }
  }
  EXPECT_EQ(high, -1) << "half a byte at the end";
  return bytes;
}

std::string Wire::Sent() const {
  std::string all;
  for (const std::string& piece : SentPieces()) all += piece;
  return all;
}

std::vector<std::string> Wire::SentPieces() const {
  std::vector<std::string> pieces;
  for (const TransportCall& call : transport.Calls()) {
    if (call.line.rfind("Write", 0) == 0) pieces.push_back(call.bytes);
  }
  return pieces;
}

}  // namespace airsync_test
