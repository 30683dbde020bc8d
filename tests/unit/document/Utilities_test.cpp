#include "document/Utilities.h"

#include <cstring>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>
#include <string>

#include "document/FieldList.h"
#include "support/CatchAbort.h"
#include "support/FailingMemory.h"
#include "support/Memory.h"
#include "support/Wire.h"

namespace {

using namespace AIRSYNC_STACK;
using airsync_test::CatchAbort;
using airsync_test::FailingMemory;
using airsync_test::HexBytes;
using airsync_test::Wire;
using testing::Each;
using testing::ElementsAre;

const ByteChannel kRead = &Communications::Read;
const ByteChannel kSend = &Communications::Send;

class ByteStreams : public testing::Test {
 protected:
  void SetUp() override { FailingMemory::Reset(); }
  void TearDown() override {
    FailingMemory::Reset();
    AdapterFreeAll();
  }
};

typedef ByteStreams ByteStreamsDeathTest;

TEST_F(ByteStreams, ReadsBytesInOrder) {
  Wire wire(HexBytes("00 7F FF"));
  EXPECT_EQ(ByteIn(kRead, wire.comms), 0x00);
  EXPECT_EQ(ByteIn(kRead, wire.comms), 0x7F);
  EXPECT_EQ(ByteIn(kRead, wire.comms), 0xFF);
}

TEST_F(ByteStreams, WritesBytesInOrder) {
  Wire wire;
  ByteOut(0x00, kSend, wire.comms);
  ByteOut(0xFF, kSend, wire.comms);
  EXPECT_THAT(wire.SentPieces(), ElementsAre(HexBytes("00"), HexBytes("FF")));
}

TEST_F(ByteStreams, WritesAStringInOneTransferWithoutItsTerminator) {
  Wire wire;
  StringOut("Sync", kSend, wire.comms);
  EXPECT_THAT(wire.SentPieces(), ElementsAre("Sync"));
}

TEST_F(ByteStreams, WritesNothingForTheEmptyString) {
  Wire wire;
  StringOut("", kSend, wire.comms);
  EXPECT_THAT(wire.SentPieces(), ElementsAre());
}

TEST_F(ByteStreams, CountsInsteadOfSendingWhenToldSo) {
  Wire wire;
  StringOut("12345", &Communications::CountOutStream, wire.comms);
  ByteOut(0, &Communications::CountOutStream, wire.comms);
  EXPECT_EQ(wire.comms.OutCount(), 6);
  EXPECT_EQ(wire.transport.CallCount(), 0U);
}

TEST_F(ByteStreams, PeeksAtOneByte) {
  Wire wire("ab");
  EXPECT_EQ(PeekAtNextByte(kRead, wire.comms), 'a');
  EXPECT_EQ(PeekAtNextByte(kRead, wire.comms), 'a');
  EXPECT_EQ(ByteIn(kRead, wire.comms), 'a');
  EXPECT_EQ(ByteIn(kRead, wire.comms), 'b');
  EXPECT_EQ(wire.transport.CallCount(), 2U) << "what was given back is not asked for again";
}

TEST_F(ByteStreams, PeeksAheadUpTo68Bytes) {
  const std::string text(68, 'x');
  Wire wire(text + "y");
  UINT8 buffer[68];
  PeekAhead(buffer, 68, kRead, wire.comms);
  EXPECT_EQ(std::string(reinterpret_cast<char*>(buffer), 68), text);
  for (int i = 0; i < 68; ++i) EXPECT_EQ(ByteIn(kRead, wire.comms), 'x');
  EXPECT_EQ(ByteIn(kRead, wire.comms), 'y');
}

TEST_F(ByteStreams, PeekingAtNothingReadsNothing) {
  Wire wire;
  UINT8 buffer[1];
  PeekAhead(buffer, 0, kRead, wire.comms);
  EXPECT_EQ(wire.transport.CallCount(), 0U);
}

TEST_F(ByteStreamsDeathTest, DoesNotPeekAtMoreThan68Bytes) {
  Wire wire(std::string(80, 'x'));
  UINT8 buffer[69];
  EXPECT_DEATH(PeekAhead(buffer, 69, kRead, wire.comms),
               "`NumberOfBytesYouWantToPeekAhead < \\(5 \\+ 64\\)'");
}

TEST_F(ByteStreams, AcceptsTheExpectedByte) {
  Wire wire("a");
  EXPECT_EQ(CatchAbort([&] { ExpectByte('a', kRead, wire.comms); }), 0U);
}

TEST_F(ByteStreams, RefusesAnotherByte) {
  Wire wire("b");
  EXPECT_EQ(CatchAbort([&] { ExpectByte('a', kRead, wire.comms); }), 0x8001000bU);
}

TEST_F(ByteStreams, ExpectsEachCharacterOfATextWithoutItsTerminator) {
  Wire wire("<?xml");
  EXPECT_EQ(CatchAbort([&] { Expect("<?xml", kRead, wire.comms); }), 0U);
  EXPECT_EQ(wire.transport.Unread(), 0U);
}

TEST_F(ByteStreams, RefusesATextAtItsFirstOtherCharacter) {
  Wire wire("<?xMl");
  EXPECT_EQ(CatchAbort([&] { Expect("<?xml", kRead, wire.comms); }), 0x8001000bU);
  EXPECT_EQ(wire.transport.Unread(), 1U);
}

TEST_F(ByteStreams, SkipsAPatternThatComesAtOnce) {
  Wire wire("-->rest");
  SkipUntil("-->", kRead, wire.comms);
  EXPECT_EQ(ByteIn(kRead, wire.comms), 'r');
}

TEST_F(ByteStreams, SkipsUpToAndIncludingTheFirstOccurrence) {
  Wire wire("a -- b ----> c --> d");
  SkipUntil("-->", kRead, wire.comms);
  EXPECT_EQ(ByteIn(kRead, wire.comms), ' ');
  EXPECT_EQ(ByteIn(kRead, wire.comms), 'c');
}

TEST_F(ByteStreams, SkipsAPatternOfOneByte) {
  Wire wire("aab");
  SkipUntil("b", kRead, wire.comms);
  EXPECT_EQ(wire.transport.Unread(), 0U);
}

TEST_F(ByteStreams, SkipsAPatternOf68Bytes) {
  const std::string pattern = std::string(67, 'x') + "y";
  Wire wire("xxxxx" + pattern + "z");
  SkipUntil(pattern.c_str(), kRead, wire.comms);
  EXPECT_EQ(ByteIn(kRead, wire.comms), 'z');
}

TEST_F(ByteStreams, SkipsNothingForTheEmptyPattern) {
  Wire wire("a");
  SkipUntil("", kRead, wire.comms);
  EXPECT_EQ(wire.transport.CallCount(), 0U);
}

TEST_F(ByteStreams, EndsTheExchangeWhenAPatternNeverComes) {
  Wire wire("no such thing");
  EXPECT_EQ(CatchAbort([&] { SkipUntil("-->", kRead, wire.comms); }), 0x8001000cU);
}

TEST_F(ByteStreamsDeathTest, DoesNotSkipAPatternOfMoreThan68Bytes) {
  Wire wire(std::string(80, 'x'));
  EXPECT_DEATH(SkipUntil(std::string(69, 'x').c_str(), kRead, wire.comms), "`Length < \\(5 \\+ 64\\)'");
}

TEST_F(ByteStreams, ReadsAString) {
  Wire wire(std::string("text\0more", 9));
  EXPECT_STREQ(StringIn(kRead, wire.comms), "text");
  EXPECT_EQ(ByteIn(kRead, wire.comms), 'm');
}

TEST_F(ByteStreams, ReadsTheEmptyString) {
  Wire wire(std::string(1, '\0'));
  EXPECT_STREQ(StringIn(kRead, wire.comms), "");
}

TEST_F(ByteStreams, ReadsAStringByteByByteWithoutGivingAnyBack) {
  Wire wire(std::string("text\0", 5));
  StringIn(kRead, wire.comms);
  EXPECT_EQ(wire.transport.CallCount(), 5U);
  EXPECT_THAT(wire.transport.Lines(), Each("Read 1 document"));
}

TEST_F(ByteStreams, AStringOfTenCharactersFitsTheFirstBlock) {
  Wire wire(std::string("0123456789\0", 11));
  FailingMemory::Record(true);
  EXPECT_STREQ(StringIn(kRead, wire.comms), "0123456789");
  EXPECT_EQ(FailingMemory::CallsAsText(), "malloc " + std::to_string(sizeof(LL_Node)) + ", malloc 11");
}

TEST_F(ByteStreams, AStringDoublesItsBlockWhenItIsFull) {
  Wire wire(std::string("0123456789abcdefghijkl\0", 23));
  FailingMemory::Record(true);
  UINT32 capacity = 0;
  EXPECT_STREQ(StringIn(kRead, wire.comms, capacity), "0123456789abcdefghijkl");
  EXPECT_EQ(FailingMemory::CallsAsText(),
            "malloc " + std::to_string(sizeof(LL_Node)) + ", malloc 11, realloc 22, realloc 44");
  EXPECT_EQ(capacity, 44U);
}

TEST_F(ByteStreams, AStringOf65536CharactersComesWhole) {
  const std::string text(65536, 'x');
  Wire wire(text + std::string("\0y", 2));
  EXPECT_EQ(text, StringIn(kRead, wire.comms));
  EXPECT_EQ(ByteIn(kRead, wire.comms), 'y');
}

TEST_F(ByteStreams, OneMoreCharacterIsCutAndTheRestSkipped) {
  const std::string text(65536, 'x');
  Wire wire(text + std::string("z\0y", 3));
  EXPECT_EQ(text, StringIn(kRead, wire.comms));
  EXPECT_EQ(ByteIn(kRead, wire.comms), 'y');
}

TEST_F(ByteStreams, AnEndlessStringTakesNoMoreMemoryThanTheLongest) {
  Wire wire(std::string(300000, 'x') + std::string("\0y", 2));
  EXPECT_EQ(std::strlen(StringIn(kRead, wire.comms)), 65536U);
  EXPECT_EQ(ByteIn(kRead, wire.comms), 'y');
  EXPECT_LT(FailingMemory::MostLiveBytes(), 200000U);
}

TEST_F(ByteStreams, AStringThatFindsNoMemoryEndsTheExchange) {
  for (std::size_t k = 1; k <= 3; ++k) {
    Wire wire(std::string("0123456789abc\0", 14));
    FailingMemory::FailAt(k);
    EXPECT_EQ(CatchAbort([&] { StringIn(kRead, wire.comms); }), 0x8001000dU) << k;
  }
}

TEST_F(ByteStreams, AStringThatNeverEndsEndsTheExchange) {
  Wire wire("abc");
  EXPECT_EQ(CatchAbort([&] { StringIn(kRead, wire.comms); }), 0x8001000cU);
}

// What the characters 0 to 255 are, class by class, as lists of those that belong.
template <typename Test>
std::string Members(const Test& test) {
  std::string members;
  for (int c = 0; c < 256; ++c) {
    if (test(static_cast<char>(c))) members += static_cast<char>(c);
  }
  return members;
}

TEST(CharacterClasses, LettersAreTheAsciiLetters) {
  EXPECT_EQ(Members(IsLetter), "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz");
}

TEST(CharacterClasses, SpacesAreTabLineFeedAndSpaceButNotCarriageReturn) {
  EXPECT_EQ(Members(IsSpaceChar), "\t\n ");
  EXPECT_FALSE(IsSpaceChar('\r'));
}

TEST(CharacterClasses, DigitsAreDecimal) { EXPECT_EQ(Members(IsDigit), "0123456789"); }

TEST(CharacterClasses, DigitsOfBase10And16) {
  EXPECT_EQ(Members([](char c) { return IsBaseNDigit(c, 10); }), "0123456789");
  EXPECT_EQ(Members([](char c) { return IsBaseNDigit(c, 16); }), "0123456789ABCDEFabcdef");
}

TEST(CharacterClassesDeathTest, ThereIsNoOtherBase) {
  EXPECT_DEATH(IsBaseNDigit('0', 8), "`Base == 10 \\|\\| Base == 16'");
  EXPECT_DEATH(IsBaseNDigit('0', 0), "`Base == 10 \\|\\| Base == 16'");
}

TEST(CharacterClasses, DigitsHaveTheirValues) {
  const std::string lower = "0123456789abcdef";
  const std::string upper = "0123456789ABCDEF";
  for (UINT16 value = 0; value < 16; ++value) {
    EXPECT_EQ(DigitToInt(lower[value]), value);
    EXPECT_EQ(DigitToInt(upper[value]), value);
  }
}

TEST(CharacterClassesDeathTest, WhatIsNoDigitHasNoValue) {
  EXPECT_DEATH(DigitToInt('g'), "`IsBaseNDigit\\(c, 16\\)'");
  EXPECT_DEATH(DigitToInt('\0'), "`IsBaseNDigit\\(c, 16\\)'");
}

struct NumberCase {
  const char* text;
  UINT32 value;
};

TEST(Numbers, AreReadFromTheirLeadingDigits) {
  const NumberCase cases[] = {
      {"0", 0},          {"7", 7},          {"12ab", 12},       {" 12", 0},
      {"", 0},           {"ab", 0},         {"-5", 0},          {"+5", 0},
      {"007", 7},        {"12 34", 12},     {"12.5", 12},       {"4294967295", 4294967295U},
      {"4294967296", 0}, {"4294967297", 1}, {"42949672960", 0},
  };
  for (const NumberCase& row : cases) EXPECT_EQ(SmlStringToUnsignedInteger(row.text), row.value) << row.text;
}

TEST(Numbers, AreWrittenInDecimal) {
  const NumberCase cases[] = {
      {"0", 0},
      {"9", 9},
      {"10", 10},
      {"99", 99},
      {"100", 100},
      {"65536", 65536},
      {"1000000000", 1000000000},
      {"4294967295", 4294967295U},
  };
  for (const NumberCase& row : cases) {
    // Exactly as large as the caller must provide: AddressSanitizer watches its end.
    const auto buffer = std::make_unique<char[]>(11);
    std::memset(buffer.get(), 'x', 11);
    SmlUnsignedIntegerToString(buffer.get(), row.value);
    EXPECT_STREQ(buffer.get(), row.text);
  }
}

TEST(SameText, ComparesExactlyAndTakesNullAsEmpty) {
  EXPECT_TRUE(SameText("Status", "Status"));
  EXPECT_FALSE(SameText("Status", "status"));
  EXPECT_FALSE(SameText("Status", "Statu"));
  EXPECT_TRUE(SameText(nullptr, nullptr));
  EXPECT_TRUE(SameText(nullptr, ""));
  EXPECT_TRUE(SameText("", nullptr));
  EXPECT_FALSE(SameText(nullptr, "a"));
}

}  // namespace
