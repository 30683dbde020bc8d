// WBXML 1.3 as AirSync uses it: UTF-8 text, nine code pages, no attributes.
//
// decode is made for hostile input: it never reads past the end of the bytes, never recurses deeper than
// kMaxDepth, takes no more text from the string table than kFreeTableText and kTableTextFactor times the
// table (or its first kFreeTableText), and else allocates no more than a multiple of the input's size.
// Refused, by WbxmlError: another version or charset, unknown pages, tokens and string table offsets,
// attributes, literal tags, processing instructions, text with a NUL in it, and bytes that follow the root
// element.
#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>

#include "wbxml/Element.h"

namespace demoserver {

inline constexpr int kMaxDepth = 32;
inline constexpr std::size_t kMaxElements = 50'000;
inline constexpr std::size_t kFreeTableText = std::size_t{8} * 1024 * 1024;
inline constexpr std::size_t kTableTextFactor = 16;

class WbxmlError : public std::runtime_error {
 public:
  WbxmlError(std::size_t offset, const std::string& what)
      : std::runtime_error("malformed WBXML at byte " + std::to_string(offset) + ": " + what) {}
};

Element decode(std::string_view document);

// Throws std::logic_error for a tag that is not in its page, or a text that holds a NUL.
std::string encode(const Element& root);

// The same, with an element of a code page that the nine do not include first in every ApplicationData.
std::string encodeWithUnknownPage(const Element& root);

}  // namespace demoserver
