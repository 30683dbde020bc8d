// The tags of the nine code pages that AirSync documents are made of, and their tokens.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace demoserver {

enum class Page : std::uint8_t {
  Sync = 0,
  Contacts = 1,
  Mail = 2,
  Notify = 3,
  Calendar = 4,
  Move = 5,
  Estimate = 6,
  Folders = 7,
  Meeting = 8,
};

inline constexpr std::size_t kPageCount = 9;

// The token of a tag, without attribute and content bits; 0 when the page has no such tag.
std::uint8_t tokenOf(Page page, std::string_view name);

// The tag of a token; empty when the page has none. The text lives as long as the program.
std::string_view nameOf(Page page, std::uint8_t token);

}  // namespace demoserver
