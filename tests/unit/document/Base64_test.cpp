#include "document/Base64.h"

#include <cstring>
#include <gtest/gtest.h>
#include <memory>
#include <string>

namespace {

using namespace AIRSYNC_STACK;

// Areas are exactly as large as they must be, so that AddressSanitizer sees every step beyond them.
std::string Encoded(const std::string& bytes) {
  const auto source = std::make_unique<UINT8[]>(bytes.size());
  std::memcpy(source.get(), bytes.data(), bytes.size());
  const std::size_t capacity = (bytes.size() + 2) / 3 * 4 + 1;
  const auto destination = std::make_unique<char[]>(capacity);
  SmlBase64Encode(destination.get(), source.get(), static_cast<int>(bytes.size()));
  return destination.get();
}

struct Decoding {
  bool valid;
  std::string area;  // what the destination holds, up to the last byte that may be written
};

Decoding Decoded(const std::string& text) {
  const std::size_t capacity = text.size() / 4 * 3 + 1;
  const auto destination = std::make_unique<char[]>(capacity);
  std::memset(destination.get(), '~', capacity);
  const bool valid = SmlBase64Decode(destination.get(), text.c_str());
  return {valid, std::string(destination.get(), capacity)};
}

struct Pair {
  const char* plain;
  const char* encoded;
};

const Pair kPairs[] = {
    {"f", "Zg=="},
    {"fo", "Zm8="},
    {"foo", "Zm9v"},
    {"foob", "Zm9vYg=="},
    {"fooba", "Zm9vYmE="},
    {"foobar", "Zm9vYmFy"},
    {"domain/user:password", "ZG9tYWluL3VzZXI6cGFzc3dvcmQ="},
};

TEST(Base64, EncodesWithPadding) {
  for (const Pair& pair : kPairs) EXPECT_EQ(Encoded(pair.plain), pair.encoded);
}

TEST(Base64, EncodesNothingAsTheEmptyText) { EXPECT_EQ(Encoded(""), ""); }

TEST(Base64, EncodesANegativeLengthAsTheEmptyText) {
  char destination[] = "~~";
  SmlBase64Encode(destination, reinterpret_cast<const UINT8*>("abc"), -1);
  EXPECT_STREQ(destination, "");
}

TEST(Base64, UsesTheWholeStandardAlphabet) {
  std::string bytes;
  // 64 groups of six bits, 0 to 63 in order: three bytes hold four of them.
  for (unsigned i = 0; i < 64; i += 4) {
    const unsigned group = i << 18 | (i + 1) << 12 | (i + 2) << 6 | (i + 3);
    bytes += static_cast<char>(group >> 16);
    bytes += static_cast<char>(group >> 8 & 0xFF);
    bytes += static_cast<char>(group & 0xFF);
  }
  const std::string alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  EXPECT_EQ(Encoded(bytes), alphabet);
  EXPECT_EQ(Decoded(alphabet).area.substr(0, 48), bytes);
}

TEST(Base64, EncodesBytesWithTheirTopBitSet) {
  EXPECT_EQ(Encoded("\xFF\xFE\xFD"), "//79");
  EXPECT_EQ(Encoded("\xFF"), "/w==");
}

TEST(Base64, DecodesWhatItEncodes) {
  for (const Pair& pair : kPairs) {
    const Decoding decoding = Decoded(pair.encoded);
    EXPECT_TRUE(decoding.valid);
    EXPECT_STREQ(decoding.area.c_str(), pair.plain);
  }
}

TEST(Base64, DecodesTheEmptyTextToATerminator) {
  const Decoding decoding = Decoded("");
  EXPECT_TRUE(decoding.valid);
  EXPECT_EQ(decoding.area, std::string(1, '\0'));
}

TEST(Base64, RefusesALengthThatIsNoMultipleOfFourAndWritesNothing) {
  for (const char* const text : {"Z", "Zg", "Zg=", "Zm9vY"}) {
    char destination[8] = "~~~~~~~";
    EXPECT_FALSE(SmlBase64Decode(destination, text)) << text;
    EXPECT_STREQ(destination, "~~~~~~~") << text;
  }
}

TEST(Base64, RefusesACharacterOutsideTheAlphabet) {
  for (const char* const text : {"Zm9*", "*m9v", "Z\n9v", "Zm-v", "Zm_v", "\xC3\xA4m9"}) {
    EXPECT_FALSE(Decoded(text).valid) << text;
  }
}

TEST(Base64, KeepsWhatItDecodedBeforeTheBadCharacter) {
  const Decoding decoding = Decoded("Zm9vYm*y");
  EXPECT_FALSE(decoding.valid);
  EXPECT_STREQ(decoding.area.c_str(), "foo");
}

TEST(Base64, WritesATerminatorBeforeTheFirstGroup) {
  const Decoding decoding = Decoded("*m9v");
  EXPECT_FALSE(decoding.valid);
  EXPECT_EQ(decoding.area, std::string("\0~~~", 4));
}

TEST(Base64, TerminatesAfterAGroupWhoseThirdByteIsNotZero) {
  EXPECT_EQ(Decoded("Zm9v").area, std::string("foo\0", 4));
}

TEST(Base64, WritesNothingBehindAGroupWhoseThirdByteIsZero) {
  EXPECT_EQ(Decoded("Zm8A").area, std::string("fo\0~", 4));
  EXPECT_EQ(Decoded("Zm8=").area, std::string("fo\0~", 4));
}

TEST(Base64, EndsAtTheFirstPaddedGroup) {
  const Decoding decoding = Decoded("Zg==****");
  EXPECT_TRUE(decoding.valid);
  EXPECT_EQ(decoding.area, std::string("f\0\0~~~~", 7));
}

TEST(Base64, TakesPaddingInsideAGroupAsZero) {
  // Z=9v: 011001 000000 111101 101111.
  const Decoding decoding = Decoded("Z=9vZm9v");
  EXPECT_TRUE(decoding.valid);
  EXPECT_EQ(decoding.area, std::string("\x64\x0F\x6F"
                                       "foo\0",
                                       7));
}

}  // namespace
