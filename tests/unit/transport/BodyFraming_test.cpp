#include "transport/BodyFraming.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <string>
#include <string_view>
#include <vector>

#include "transport/TransportError.h"

namespace airsync {
namespace {

using Kind = TransportErrorKind;

constexpr std::uint64_t kNoLimit = 1'000'000;

// Feeds `input` in pieces that end at `cut` and at the end; returns the body bytes.
std::string decode(BodyFraming& framing, std::string_view input, std::size_t cut) {
  std::string body;
  for (std::string_view piece : {input.substr(0, cut), input.substr(cut)}) {
    while (!piece.empty() && !framing.done()) {
      const auto* const bytes = reinterpret_cast<const UINT8*>(piece.data());
      piece.remove_prefix(framing.skipFraming({bytes, piece.size()}));
      const auto count = std::min<std::uint64_t>(framing.runLeft(), piece.size());
      body += piece.substr(0, count);
      piece.remove_prefix(count);
      framing.took(count);
    }
  }
  return body;
}

Kind failureOf(std::string_view input, std::uint64_t limit = kNoLimit) {
  BodyFraming framing;
  try {
    framing.start(FramingKind::kChunked, 0, limit);
    decode(framing, input, input.size());
    framing.inputEnded();
  } catch (const TransportFailure& failure) {
    return failure.kind();
  }
  return Kind::kNone;
}

TEST(BodyFraming, FindsTheSameChunkedBodyWhereverTheInputIsCut) {
  const std::string input =
      "5\r\nhello\r\n0a;x=\"y\"\r\n, worlds!!\r\n1  \r\n.\r\n000\r\nA: b\r\nC: d\r\n\r\n";
  for (std::size_t cut = 0; cut <= input.size(); ++cut) {
    BodyFraming framing;
    framing.start(FramingKind::kChunked, 0, kNoLimit);
    EXPECT_EQ(decode(framing, input, cut), "hello, worlds!!.") << cut;
    EXPECT_TRUE(framing.done()) << cut;
    EXPECT_EQ(framing.taken(), 16U) << cut;
  }
}

TEST(BodyFraming, LeavesWhatFollowsTheLastChunk) {
  const std::string input = "0\r\n\r\nHTTP/1.1";
  BodyFraming framing;
  framing.start(FramingKind::kChunked, 0, kNoLimit);
  EXPECT_EQ(framing.skipFraming({reinterpret_cast<const UINT8*>(input.data()), input.size()}), 5U);
  EXPECT_TRUE(framing.done());
}

TEST(BodyFraming, MissesTheRestOfAChunkedBodyThatIsCutAnywhere) {
  const std::string input = "2\r\nab\r\n0\r\n\r\n";
  for (std::size_t size = 0; size < input.size(); ++size) {
    EXPECT_EQ(failureOf(input.substr(0, size)), Kind::kClosedEarly) << size;
  }
  EXPECT_EQ(failureOf(input), Kind::kNone);
}

// Keeps S10.
TEST(BodyFraming, RefusesBrokenChunks) {
  const std::vector<std::string> inputs = {
      "\r\n",                            // no size
      " 1\r\na\r\n",                     // a blank first
      "-1\r\n",                          // a sign
      "0x1\r\n",                         // a prefix
      "g\r\n",                           // no digit
      "1\na\r\n",                        // a line feed alone
      "1\rX",                            // a carriage return alone
      "1;a\nb\r\nx\r\n",                 // a line feed in an extension
      "1\r\nabc\r\n",                    // more than the size says
      "1\r\na\rX",                       // no line feed behind the data
      "10000000000000000\r\n",           // 2^64
      "ffffffffffffffffff\r\n",          // far beyond
      "0\r\nA: b\rX",                    // a carriage return alone in the trailer
      "0\r\n\rX",                        // ... at its end
      "1;" + std::string(5000, 'e'),     // an endless extension
      "0\r\n" + std::string(5000, 't'),  // an endless trailer
      std::string(5000, '0'),            // an endless size
  };
  for (const std::string& input : inputs) EXPECT_EQ(failureOf(input), Kind::kProtocol) << input.substr(0, 30);
}

TEST(BodyFraming, RefusesAChunkBeyondTheLimitBeforeItsFirstByte) {
  EXPECT_EQ(failureOf("5\r\nhello\r\n5\r\n", 10), Kind::kClosedEarly);
  EXPECT_EQ(failureOf("5\r\nhello\r\n6\r\n", 10), Kind::kTooLarge);
  EXPECT_EQ(failureOf("ffffffffffffffff\r\n", 10), Kind::kTooLarge);
}

TEST(BodyFraming, CountsALengthDown) {
  BodyFraming framing;
  framing.start(FramingKind::kLength, 3, kNoLimit);
  EXPECT_EQ(framing.runLeft(), 3U);
  framing.took(2);
  EXPECT_FALSE(framing.done());
  framing.took(1);
  EXPECT_TRUE(framing.done());
  EXPECT_EQ(framing.runLeft(), 0U);
}

TEST(BodyFraming, HasNoBodyWithALengthOfNothing) {
  BodyFraming framing;
  framing.start(FramingKind::kLength, 0, kNoLimit);
  EXPECT_TRUE(framing.done());
  framing.start(FramingKind::kNone, 7, kNoLimit);
  EXPECT_TRUE(framing.done());
}

TEST(BodyFraming, EndsWithTheConnectionWhereThatIsTheRule) {
  BodyFraming framing;
  framing.start(FramingKind::kUntilClose, 0, kNoLimit);
  framing.took(5);
  EXPECT_FALSE(framing.done());
  framing.inputEnded();
  EXPECT_TRUE(framing.done());
  EXPECT_EQ(framing.taken(), 5U);
}

TEST(BodyFraming, TakesAnyLengthWithoutALimit) {
  BodyFraming framing;
  framing.start(FramingKind::kUntilClose, 0, UINT64_MAX);
  EXPECT_EQ(framing.runLeft(), UINT64_MAX);
}

}  // namespace
}  // namespace airsync
