// The porting functions' types. They are part of the names under which a host's definitions are found: a
// change of one, however small, is a host that no longer links.
#include "support/Porting.h"

#include <gtest/gtest.h>
#include <type_traits>

namespace {

using namespace AIRSYNC_STACK;

template <typename Expected, typename Function>
constexpr bool Is(Function) {
  return std::is_same_v<Function, Expected>;
}

TEST(Porting, SizesAndResultsHaveTheirWidths) {
  EXPECT_TRUE((std::is_same_v<UINT8, unsigned char>));
  EXPECT_TRUE((std::is_same_v<INT16, short>));
  EXPECT_TRUE((std::is_same_v<UINT32, unsigned int>));
  EXPECT_TRUE((std::is_same_v<INT32, int>));
}

TEST(Porting, FunctionsOfMemoryHaveTheirTypes) {
  EXPECT_TRUE((Is<void* (*)(unsigned int)>(&SmlMalloc)));
  EXPECT_TRUE((Is<void (*)(void*)>(&SmlFree)));
  EXPECT_TRUE((Is<void* (*)(void*, unsigned int)>(&SmlRealloc)));
  EXPECT_TRUE((Is<void (*)(void*, const void*, unsigned int)>(&SmlMemcpy)));
  EXPECT_TRUE((Is<void (*)(void*, const void*, unsigned int)>(&SmlMemmove)));
  EXPECT_TRUE((Is<void (*)(void*, unsigned char, unsigned int)>(&SmlMemset))) << "a byte, not an int";
}

TEST(Porting, FunctionsOfTextsHaveTheirTypes) {
  EXPECT_TRUE((Is<unsigned int (*)(const char*)>(&SmlStrlen)));
  EXPECT_TRUE((Is<void (*)(char*, const char*)>(&SmlStrcpy)));
  EXPECT_TRUE((Is<void (*)(char*, const char*, unsigned int)>(&SmlStrncpy)));
  EXPECT_TRUE((Is<void (*)(char*, const char*)>(&SmlStrcat)));
  EXPECT_TRUE((Is<short (*)(const char*, const char*)>(&SmlStrcmp))) << "16 bits";
  EXPECT_TRUE((Is<int (*)(const char*, const char*, unsigned int)>(&SmlStrncmp)));
  EXPECT_TRUE((Is<char* (*)(const char*, int)>(&SmlStrchr)));
  EXPECT_TRUE((Is<char* (*)(const char*, const char*)>(&SmlStrstr)));
  EXPECT_TRUE((Is<void (*)(char*, const char*, ...)>(&SmlSprintf)));
  EXPECT_TRUE((Is<int (*)(const char*)>(&SmlAtoi)));
}

TEST(Porting, TheNotificationHasItsType) { EXPECT_TRUE((Is<void (*)(bool)>(&SmlUnexpected))); }

}  // namespace
