#include "formats/Base64.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "unit/cli/FieldSamples.h"

namespace airsync {
namespace {

using Bytes = std::vector<std::uint8_t>;

TEST(Base64, WritesAndReadsEveryLengthOfTheLastGroup) {
  const struct {
    Bytes bytes;
    const char* text;
  } rows[] = {{{}, ""},
              {{0x66}, "Zg=="},
              {{0x66, 0x6f}, "Zm8="},
              {{0x66, 0x6f, 0x6f}, "Zm9v"},
              {{0xfb, 0xff, 0xbf, 0x00}, "+/+/AA=="}};
  for (const auto& [bytes, text] : rows) {
    EXPECT_EQ(base64Of(bytes), text);
    EXPECT_EQ(bytesOfBase64(text), bytes) << text;
  }
}

TEST(Base64, WritesAZoneInOneLine) { EXPECT_EQ(base64Of(test::sampleZone()), test::sampleZoneText()); }

TEST(Base64, RefusesEveryOtherText) {
  for (const char* text : {"Z", "Zg", "Zg=", "Zg===", "Zh==", "Zm9=", "Zm9v\n", "Zm 9v", "Zm9-", "=",
                           "====", "Zg==Zg==", "Zm\xc3\xb6v"}) {
    EXPECT_EQ(bytesOfBase64(text), std::nullopt) << text;
  }
}

}  // namespace
}  // namespace airsync
