#include "transport/OutgoingRequest.h"

#include <gtest/gtest.h>
#include <string>

namespace airsync {
namespace {

std::span<const UINT8> bytesOf(const std::string& text) {
  return {reinterpret_cast<const UINT8*>(text.data()), text.size()};
}

TEST(OutgoingRequest, KeepsADocument) {
  OutgoingRequest request;
  request.start("HEAD\r\n\r\n", 2);
  EXPECT_TRUE(request.announce(2, false));
  request.stage(bytesOf("ab"));
  EXPECT_TRUE(request.isKept());
  EXPECT_TRUE(request.isComplete());
  EXPECT_EQ(std::string(request.staged().begin(), request.staged().end()), "HEAD\r\n\r\nab");
}

TEST(OutgoingRequest, DoesNotKeepWhatIsWrittenAsAMessage) {
  OutgoingRequest request;
  request.start("HEAD\r\n\r\n", 2);
  EXPECT_TRUE(request.isKept());
  EXPECT_TRUE(request.announce(1, true));
  EXPECT_FALSE(request.isKept());
  EXPECT_TRUE(request.announce(1, false));
  EXPECT_FALSE(request.isKept());
}

TEST(OutgoingRequest, DoesNotKeepWhatIsDeclaredAMessage) {
  OutgoingRequest request;
  for (const std::string line : {"Content-Type: message/rfc822", "content-type:MESSAGE/RFC822 "}) {
    request.start("POST / HTTP/1.1\r\nHost: h\r\n" + line + "\r\n\r\n", 2);
    EXPECT_FALSE(request.isKept()) << line;
  }
  request.start("POST / HTTP/1.1\r\nContent-Type: application/vnd.ms-sync.wbxml\r\n\r\n", 2);
  EXPECT_TRUE(request.isKept());
}

TEST(OutgoingRequest, DoesNotKeepWhatIsTooLongForADocument) {
  OutgoingRequest request;
  request.start("HEAD", 65'536);
  EXPECT_TRUE(request.isKept());
  request.start("HEAD", 65'537);
  EXPECT_FALSE(request.isKept());
}

TEST(OutgoingRequest, RefusesMoreThanWasAnnounced) {
  OutgoingRequest request;
  request.start("HEAD", 3);
  EXPECT_TRUE(request.announce(2, false));
  EXPECT_FALSE(request.announce(2, false));
  EXPECT_EQ(request.given(), 2U);
  EXPECT_TRUE(request.announce(1, false));
  EXPECT_TRUE(request.isComplete());
}

TEST(OutgoingRequest, IsCompleteAtOnceWithoutABody) {
  OutgoingRequest request;
  request.start("HEAD", 0);
  EXPECT_TRUE(request.isComplete());
}

TEST(OutgoingRequest, StagesAMessageUpToOnePiece) {
  OutgoingRequest request;
  request.start("HEAD", 100'000);
  EXPECT_TRUE(request.fits(16 * 1024 - 4));
  EXPECT_FALSE(request.fits(16 * 1024 - 3));
}

TEST(OutgoingRequest, StartsAnewWithoutTheOldBytes) {
  OutgoingRequest request;
  request.start("FIRST", 9);
  request.announce(4, true);
  request.start("SECOND", 1);
  EXPECT_TRUE(request.isKept());
  EXPECT_EQ(request.given(), 0U);
  EXPECT_EQ(std::string(request.staged().begin(), request.staged().end()), "SECOND");
}

}  // namespace
}  // namespace airsync
