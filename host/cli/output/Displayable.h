// Text of unknown origin, made safe for a terminal and for log lines.
#ifndef AIRSYNC_CLI_OUTPUT_DISPLAYABLE_H
#define AIRSYNC_CLI_OUTPUT_DISPLAYABLE_H

#include <cstddef>
#include <string>
#include <string_view>

namespace airsync {

/// `text` as it may be shown: valid UTF-8 stays as it is, apart from what would drive the terminal or
/// reorder the line (control characters, direction marks), which is written as an escape such as \x1b or
/// \u202e; bytes that are no UTF-8 are written as \xNN, a backslash stays a backslash.
std::string displayable(std::string_view text);

/// The same, cut to about `columns` characters, "..." at the end when something is missing.
std::string displayable(std::string_view text, std::size_t columns);

/// A JSON document without what would drive the terminal or reorder the line: these characters, which only
/// stand in texts, are written as JSON's own escapes. It means what it meant.
std::string displayableJson(std::string_view document);

/// How many columns of a terminal a text takes, roughly: East Asian characters take two, combining marks
/// none.
std::size_t columnsOf(std::string_view text);

}  // namespace airsync

#endif
