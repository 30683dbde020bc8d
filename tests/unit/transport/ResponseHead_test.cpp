#include "transport/ResponseHead.h"

#include <gtest/gtest.h>
#include <vector>

namespace airsync {
namespace {

ResponseHead parse(const std::string& lines, const std::string& first = "HTTP/1.1 200 OK") {
  return parseResponseHead(first + "\r\n" + lines + "\r\n", "server");
}

TEST(ResponseHead, FramesABodyByItsLength) {
  const ResponseHead head = parse("Content-Length: 12\r\n");
  EXPECT_EQ(head.status, 200);
  EXPECT_EQ(head.framing, FramingKind::kLength);
  EXPECT_EQ(head.contentLength, 12U);
}

TEST(ResponseHead, TakesTheSameLengthTwiceForOne) {
  EXPECT_EQ(parse("Content-Length: 12\r\nContent-Length: 12\r\n").contentLength, 12U);
}

TEST(ResponseHead, FramesAChunkedBodyWhateverTheCase) {
  EXPECT_EQ(parse("transfer-encoding: Chunked\r\n").framing, FramingKind::kChunked);
}

TEST(ResponseHead, FramesABodyWithoutEitherByTheConnection) {
  const ResponseHead head = parse("");
  EXPECT_EQ(head.framing, FramingKind::kUntilClose);
  EXPECT_FALSE(head.keepAlive);
}

TEST(ResponseHead, KnowsTheStatusesThatHaveNoBody) {
  for (const std::string status : {"100", "103", "204", "304"}) {
    EXPECT_EQ(parse("Content-Length: 12\r\n", "HTTP/1.1 " + status + " X").framing, FramingKind::kNone)
        << status;
  }
}

struct KeepAliveCase {
  std::string version, line;
  bool keepAlive;
};

TEST(ResponseHead, KnowsWhetherTheConnectionStands) {
  const std::vector<KeepAliveCase> cases = {
      {"HTTP/1.1", "", true},
      {"HTTP/1.1", "Connection: close\r\n", false},
      {"HTTP/1.1", "Connection: Keep-Alive\r\n", true},
      {"HTTP/1.0", "", false},
      {"HTTP/1.0", "Connection: Keep-Alive\r\n", true},
  };
  for (const KeepAliveCase& row : cases) {
    EXPECT_EQ(parse(row.line + "Content-Length: 1\r\n", row.version + " 200 OK").keepAlive, row.keepAlive)
        << row.version << ' ' << row.line;
  }
}

TEST(ResponseHead, JoinsProtocolLinesThatComeInPieces) {
  const ResponseHead head =
      parse("MS-ASProtocolVersions: 1.0\r\nMS-ASProtocolVersions: 2.0\r\nContent-Length: 0\r\n");
  EXPECT_EQ(head.protocolVersions, "1.0,2.0");
  EXPECT_EQ(head.protocolCommands, "");
}

TEST(ResponseHead, AllowsAnEncodedBodyWhereNobodyReadsIt) {
  EXPECT_EQ(parse("Content-Encoding: gzip\r\nContent-Length: 1\r\n", "HTTP/1.1 500 X").status, 500);
  EXPECT_EQ(parse("Content-Encoding: identity\r\nContent-Length: 1\r\n").status, 200);
  EXPECT_THROW(parse("Content-Encoding: gzip\r\nContent-Length: 1\r\n"), TransportFailure);
}

TEST(ResponseHead, TellsEarlyWhatCannotBeAHead) {
  EXPECT_TRUE(mayBeResponseHead(""));
  EXPECT_TRUE(mayBeResponseHead("H"));
  EXPECT_TRUE(mayBeResponseHead("HTTP/1.1 200"));
  EXPECT_FALSE(mayBeResponseHead("HTTP/2"));
  EXPECT_FALSE(mayBeResponseHead("h"));
}

}  // namespace
}  // namespace airsync
