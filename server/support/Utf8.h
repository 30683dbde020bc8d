// UTF-8 checks and cuts, for text that arrives from clients and leaves for them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace demoserver {

// True when every byte belongs to a well-formed sequence (no overlong forms, no surrogates).
bool isUtf8(std::string_view text);

// True for text that an item may hold: well-formed, and of the control characters only tab, LF and CR.
bool isItemText(std::string_view text);

// The text with U+FFFD in place of every byte that an item may not hold.
std::string itemText(std::string_view text);

// The character's bytes; empty for 0, a surrogate, or a number beyond Unicode.
std::string utf8(std::uint32_t character);

// The longest head of the text that has at most `limit` bytes and splits no character.
std::string_view utf8Head(std::string_view text, std::size_t limit);

}  // namespace demoserver
