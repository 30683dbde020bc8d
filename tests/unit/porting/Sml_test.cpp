// The porting functions over the standard library, as support/Porting.h promises them.
#include <cstdlib>
#include <cstring>
#include <gtest/gtest.h>
#include <sys/resource.h>

#include "support/Porting.h"

using namespace AIRSYNC_STACK;

#ifdef __SANITIZE_ADDRESS__
// AddressSanitizer has limits of its own, and stops the process at them unless it is told otherwise. It asks
// for this function by its name. NOLINTNEXTLINE(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp)
extern "C" const char* __asan_default_options() {
  return "allocator_may_return_null=1:max_allocation_size_mb=2048";
}
#endif

namespace {

// No block of more than 2 GiB can be had while it exists.
class ScarceMemory {
 public:
#ifdef __SANITIZE_ADDRESS__
  ScarceMemory() {}  // it is so all the time
#else
  ScarceMemory() {
    EXPECT_EQ(getrlimit(RLIMIT_AS, &before_), 0);
    const rlimit narrow = {1U << 31, before_.rlim_max};
    EXPECT_EQ(setrlimit(RLIMIT_AS, &narrow), 0);
  }
  ~ScarceMemory() { EXPECT_EQ(setrlimit(RLIMIT_AS, &before_), 0); }
  ScarceMemory(const ScarceMemory&) = delete;
  ScarceMemory& operator=(const ScarceMemory&) = delete;

 private:
  rlimit before_ = {};
#endif
};

TEST(PortingMemory, ABlockOfNoBytesIsNotExhaustion) {
  void* block = SmlMalloc(0);
  ASSERT_NE(block, nullptr);
  block = SmlRealloc(block, 0);
  ASSERT_NE(block, nullptr);
  SmlFree(block);
}

TEST(PortingMemory, AGrownBlockKeepsWhatItHeld) {
  char* block = static_cast<char*>(SmlMalloc(4));
  SmlMemcpy(block, "abc", 4);
  block = static_cast<char*>(SmlRealloc(block, 100000));
  EXPECT_STREQ(block, "abc");
  SmlFree(block);
}

TEST(PortingMemory, WhatCannotBeHadLeavesTheBlockAsItIs) {
  char* const block = static_cast<char*>(SmlMalloc(4));
  SmlMemcpy(block, "abc", 4);
  void* grown = block;
  {
    const ScarceMemory scarce;
    grown = SmlRealloc(block, UINT32_MAX);
  }
  EXPECT_EQ(grown, nullptr);
  EXPECT_STREQ(block, "abc");
  SmlFree(block);
}

TEST(PortingMemory, MoveCopesWithOverlap) {
  char text[] = "abcdef";
  SmlMemmove(text, text + 1, 5);
  EXPECT_STREQ(text, "bcdeff");
  SmlMemmove(text + 1, text, 5);
  EXPECT_STREQ(text, "bbcdef");
}

TEST(PortingMemory, SetFillsWithAByteAndNoFurther) {
  UINT8 area[4] = {1, 2, 3, 4};
  SmlMemset(area, 0xFF, 3);
  EXPECT_EQ(area[2], 0xFF);
  EXPECT_EQ(area[3], 4);
}

TEST(PortingMemory, NothingToDoTouchesNothing) {
  SmlMemcpy(nullptr, nullptr, 0);
  SmlMemmove(nullptr, nullptr, 0);
  SmlMemset(nullptr, 1, 0);
  char text[] = "abc";
  SmlMemcpy(text, "xyz", 0);
  SmlMemmove(text, text + 1, 0);
  SmlMemset(text, 1, 0);
  EXPECT_STREQ(text, "abc");
}

TEST(PortingText, LengthLeavesTheTerminatorOut) {
  EXPECT_EQ(SmlStrlen("four"), 4U);
  EXPECT_EQ(SmlStrlen(""), 0U);
}

TEST(PortingText, CopiesAndAppends) {
  char text[16];
  SmlStrcpy(text, "one");
  SmlStrcat(text, "two");
  EXPECT_STREQ(text, "onetwo");
}

TEST(PortingText, ABoundedCopyOfALongerTextHasNoTerminator) {
  char text[] = "......";
  SmlStrncpy(text, "abcdef", 3);
  EXPECT_STREQ(text, "abc...");
  SmlStrncpy(text, "x", 3);
  EXPECT_EQ(std::memcmp(text, "x\0\0...", 6), 0);
}

TEST(PortingText, ComparisonIsExactAndKnowsCase) {
  EXPECT_EQ(SmlStrcmp("Add", "Add"), 0);
  EXPECT_NE(SmlStrcmp("Add", "add"), 0);
  EXPECT_NE(SmlStrcmp("Add", "Adds"), 0);
  EXPECT_NE(SmlStrcmp("Add", ""), 0);
}

// A comparison that returned a difference of bytes or words would lose one of 65536 when it is cut.
TEST(PortingText, ADifferenceIsNeverFoldedToZero) {
  for (int left = 1; left < 256; ++left) {
    for (int right = 1; right < 256; ++right) {
      const char a[] = {static_cast<char>(left), '\0'};
      const char b[] = {static_cast<char>(right), '\0'};
      ASSERT_EQ(SmlStrcmp(a, b) == 0, left == right) << left << ' ' << right;
    }
  }
}

TEST(PortingText, BoundedComparisonLooksNoFurther) {
  EXPECT_EQ(SmlStrncmp("abcX", "abcY", 3), 0);
  EXPECT_NE(SmlStrncmp("abcX", "abcY", 4), 0);
}

TEST(PortingText, FindsTheFirstOccurrence) {
  const char text[] = "a.b.c";
  EXPECT_EQ(SmlStrchr(text, '.'), text + 1);
  EXPECT_EQ(SmlStrchr(text, 'x'), nullptr);
  EXPECT_EQ(SmlStrstr(text, ".c"), text + 3);
  EXPECT_EQ(SmlStrstr(text, "ca"), nullptr);
}

TEST(PortingText, NullCountsAsEmpty) {
  char text[8] = "x";
  EXPECT_EQ(SmlStrlen(nullptr), 0U);
  EXPECT_EQ(SmlStrcmp(nullptr, nullptr), 0);
  EXPECT_EQ(SmlStrcmp(nullptr, ""), 0);
  EXPECT_NE(SmlStrcmp("a", nullptr), 0);
  EXPECT_EQ(SmlStrncmp(nullptr, "", 3), 0);
  EXPECT_EQ(SmlStrchr(nullptr, 'a'), nullptr);
  EXPECT_EQ(SmlStrstr(nullptr, "a"), nullptr);
  EXPECT_STREQ(SmlStrstr("a", nullptr), "a");
  EXPECT_EQ(SmlAtoi(nullptr), 0);
  SmlStrcat(text, nullptr);
  EXPECT_STREQ(text, "x");
  SmlStrcpy(text, nullptr);
  EXPECT_STREQ(text, "");
}

TEST(PortingText, FormatsTheConversionsThatTheLibraryUses) {
  char text[64];
  SmlSprintf(text, "%d %02d %03d %3d %04d %02x %s", -7, 5, 5, 5, 5, 0xAU, "text");
  EXPECT_STREQ(text, "-7 05 005   5 0005 0a text");
}

TEST(PortingText, ReadsADecimalNumberAtTheStart) {
  EXPECT_EQ(SmlAtoi("12ab"), 12);
  EXPECT_EQ(SmlAtoi(" -3"), -3);
  EXPECT_EQ(SmlAtoi("ab"), 0);
}

TEST(PortingDeathTest, UnexpectedReturnsAndSaysNothing) {
  const auto tell = [] {
    SmlUnexpected(false);
    std::_Exit(7);
  };
  EXPECT_EXIT(tell(), testing::ExitedWithCode(7), "^$");
}

}  // namespace
