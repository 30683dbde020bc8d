#include "transport/WireTrace.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace airsync {
namespace {

using ::testing::ElementsAre;

std::vector<std::string> linesOf(std::string_view head) {
  std::vector<std::string> lines;
  traceHead([&](std::string_view line) { lines.emplace_back(line); }, "> ", head);
  return lines;
}

TEST(WireTrace, ShowsEachLineButNoSecret) {
  EXPECT_THAT(linesOf("POST / HTTP/1.1\r\nHost: h\r\nAuthorization: Basic secret\r\n\r\n"),
              ElementsAre("> POST / HTTP/1.1", "> Host: h", "> Authorization: (not shown)"));
}

// Keeps S12.
TEST(WireTrace, HidesSecretsHoweverTheirNamesAreWritten) {
  EXPECT_THAT(linesOf("authorization:secret\r\nAUTHORIZATION : secret\r\nSet-Cookie: secret\r\n"
                      "Cookie: secret\r\nProxy-Authorization: secret\r\n"),
              ElementsAre("> authorization: (not shown)", "> AUTHORIZATION : (not shown)",
                          "> Set-Cookie: (not shown)", "> Cookie: (not shown)",
                          "> Proxy-Authorization: (not shown)"));
}

TEST(WireTrace, HidesTheFoldedRestOfASecret) {
  EXPECT_THAT(
      linesOf("Authorization: Basic\r\n secret: more\r\n\tsecret\r\nHost: h\r\n x\r\n"),
      ElementsAre("> Authorization: (not shown)", "> (not shown)", "> (not shown)", "> Host: h", ">  x"));
}

TEST(WireTrace, ReplacesControlCharacters) {
  EXPECT_THAT(linesOf("X: a\x1b[2J\r\n"), ElementsAre("> X: a?[2J"));
}

TEST(WireTrace, DoesNothingWithoutATaker) { EXPECT_NO_THROW(traceHead({}, "> ", "Host: h\r\n")); }

}  // namespace
}  // namespace airsync
