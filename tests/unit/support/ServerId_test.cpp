#include "support/ServerId.h"

#include <algorithm>
#include <cstring>
#include <gtest/gtest.h>
#include <memory>
#include <string>

namespace {

using namespace AIRSYNC_STACK;

const std::string k48 = "123456789012345678901234567890123456789012345678";

SERVER_ID IdOf(const std::string& text) {
  SERVER_ID id = {};
  std::memcpy(id.text, text.data(), std::min(text.size(), sizeof id.text));
  return id;
}

std::string Written(const SERVER_ID& id) {
  // Exactly as large as it must be: AddressSanitizer watches its end.
  const auto destination = std::make_unique<char[]>(49);
  std::memset(destination.get(), 'x', 49);
  EXPECT_EQ(ServerId::toChar(id, destination.get()), destination.get());
  return destination.get();
}

TEST(ServerIdText, WritesAnIdentifier) { EXPECT_EQ(Written(IdOf("2:17")), "2:17"); }

TEST(ServerIdText, WritesTheEmptyIdentifierAsZero) { EXPECT_EQ(Written(IdOf("")), "0"); }

TEST(ServerIdText, WritesAtMost48Characters) {
  EXPECT_EQ(Written(IdOf(k48)), k48);
  EXPECT_EQ(Written(IdOf(k48 + "9ab")), k48);
}

TEST(ServerIdText, WritesAnIdentifierThatFillsItsField) { EXPECT_EQ(Written(IdOf(k48 + "9abc")), k48); }

TEST(ServerIdText, AlwaysTerminatesAtPosition48) {
  char destination[49];
  std::memset(destination, 'x', sizeof destination);
  ServerId::toChar(IdOf("1"), destination);
  EXPECT_EQ(destination[48], '\0');
}

TEST(ServerIdText, ReadsAnIdentifier) { EXPECT_STREQ(ServerId::fromChar("2:17").text, "2:17"); }

TEST(ServerIdText, ReadsNullAndTheEmptyTextAsZero) {
  EXPECT_STREQ(ServerId::fromChar(nullptr).text, "0");
  EXPECT_STREQ(ServerId::fromChar("").text, "0");
}

TEST(ServerIdText, ReadsTheFirst48Characters) {
  EXPECT_EQ(ServerId::fromChar((k48 + "9abcdefghijk").c_str()).text, k48);
  EXPECT_EQ(ServerId::fromChar(k48.c_str()).text, k48);
}

TEST(ServerIdText, LeavesNoByteOfTheRecordUndefined) {
  const SERVER_ID id = ServerId::fromChar("ab");
  for (std::size_t i = 2; i < sizeof id.text; ++i) EXPECT_EQ(id.text[i], '\0') << i;
}

TEST(ServerIdText, ComparesTexts) {
  EXPECT_EQ(ServerId::compare(IdOf("2:17"), IdOf("2:17")), 0);
  EXPECT_NE(ServerId::compare(IdOf("2:17"), IdOf("2:18")), 0);
  EXPECT_NE(ServerId::compare(IdOf("2:1"), IdOf("2:17")), 0);
  EXPECT_NE(ServerId::compare(IdOf("a"), IdOf("A")), 0);
}

TEST(ServerIdText, ComparesTheFirst48Characters) {
  EXPECT_EQ(ServerId::compare(IdOf(k48 + "abc"), IdOf(k48 + "xyz")), 0);
  SERVER_ID other = IdOf(k48);
  other.text[47] = 'x';
  EXPECT_NE(ServerId::compare(IdOf(k48), other), 0);
}

}  // namespace
