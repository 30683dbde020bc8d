// Decimal numbers in texts that others wrote.
#pragma once

#include <charconv>
#include <string_view>

namespace demoserver {

// The number that the whole text is, or the fallback when it is none or does not fit.
inline int numberOr(std::string_view text, int fallback) {
  int value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  return error == std::errc() && end == text.data() + text.size() && !text.empty() ? value : fallback;
}

}  // namespace demoserver
