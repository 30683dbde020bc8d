#include "transport/WireTrace.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace airsync {
namespace {

using ::testing::ElementsAre;

std::vector<std::string> linesOf(std::string_view head, HeadOf side = HeadOf::kRequest) {
  std::vector<std::string> lines;
  traceHead([&](std::string_view line) { lines.emplace_back(line); }, side, head);
  return lines;
}

TEST(WireTrace, ShowsEachLineButNoSecret) {
  EXPECT_THAT(linesOf("POST / HTTP/1.1\r\nHost: h\r\nAuthorization: Basic secret\r\n\r\n"),
              ElementsAre("> POST / HTTP/1.1", "> Host: h", "> Authorization: (not shown)"));
}

// Keeps S12.
TEST(WireTrace, HidesSecretsHoweverTheirNamesAreWritten) {
  EXPECT_THAT(linesOf("GET /\r\nauthorization:secret\r\nAUTHORIZATION : secret\r\n"
                      "Cookie: secret\r\nProxy-Authorization: secret\r\n"),
              ElementsAre("> GET /", "> authorization: (not shown)", "> AUTHORIZATION : (not shown)",
                          "> Cookie: (not shown)", "> Proxy-Authorization: (not shown)"));
}

TEST(WireTrace, HidesTheFoldedRestOfASecret) {
  EXPECT_THAT(linesOf("GET /\r\nAuthorization: Basic\r\n secret: more\r\n\tsecret\r\nHost: h\r\n x\r\n"),
              ElementsAre("> GET /", "> Authorization: (not shown)", "> (not shown)", "> (not shown)",
                          "> Host: h", ">  x"));
}

TEST(WireTrace, ReplacesControlCharacters) {
  EXPECT_THAT(linesOf("X: a\x1b[2J\r\n"), ElementsAre("> X: a?[2J"));
}

// Keeps S12.
TEST(WireTrace, ShowsOfAnAnswerTheValuesThatAreKnownAndOfOthersTheNamesOnly) {
  EXPECT_THAT(linesOf("HTTP/1.1 302 secret words\r\nlocation: /x\r\nSet-Cookie: secret\r\nX-Echo : secret\r\n"
                      " secret\r\nContent-Length: 0\r\nno colon\r\n\r\n",
                      HeadOf::kAnswer),
              ElementsAre("< HTTP/1.1 302", "< location: /x", "< Set-Cookie: (not shown)",
                          "< X-Echo : (not shown)", "< (not shown)", "< Content-Length: 0", "< no colon"));
  EXPECT_THAT(linesOf("HTTP/1.1 secret\r\n\r\n", HeadOf::kAnswer), ElementsAre("< HTTP/1.1 "));
}

TEST(WireTrace, DoesNothingWithoutATaker) { EXPECT_NO_THROW(traceHead({}, HeadOf::kRequest, "Host: h\r\n")); }

}  // namespace
}  // namespace airsync
