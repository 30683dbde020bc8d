#include "support/Base64.h"

#include <gtest/gtest.h>

namespace demoserver {
namespace {

TEST(DemoBase64, WritesTheWellKnownTexts) {
  const std::pair<std::string_view, std::string_view> table[] = {
      {"", ""},        {"f", "Zg=="},        {"fo", "Zm8="},
      {"foo", "Zm9v"}, {"foob", "Zm9vYg=="}, {"\xFF\xFE\xFD", "//79"}};
  for (const auto& [bytes, text] : table) {
    EXPECT_EQ(base64(bytes), text);
    EXPECT_EQ(base64Decoded(text), bytes);
  }
}

TEST(DemoBase64, RefusesWhatItWouldNotWrite) {
  for (const char* text : {"Zg", "Zg=", "Zg===", "=", "Zh==", "Zm9v\n", " Zm9v", "Zm9-", "Zm=v", "Z"})
    EXPECT_EQ(base64Decoded(text), std::nullopt) << text;
}

TEST(DemoBase64, TakesMegabytesAtOnce) {
  const std::string bytes(3'000'001, '\x5A');
  EXPECT_EQ(base64Decoded(base64(bytes)), bytes);
}

}  // namespace
}  // namespace demoserver
