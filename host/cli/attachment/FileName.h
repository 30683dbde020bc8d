// The name under which an attachment is kept.
#ifndef AIRSYNC_CLI_ATTACHMENT_FILE_NAME_H
#define AIRSYNC_CLI_ATTACHMENT_FILE_NAME_H

#include <string>
#include <string_view>

namespace airsync {

/// A name that a file in the current directory can have without surprises, made from what the sender of a
/// mail calls an attachment. No separators of any system, no characters that drive a terminal, reorder a line
/// or mean something to a shell's patterns, nothing that hides the file or makes it look like an option or a
/// device; at most 200 bytes, the extension kept. "attachment" when nothing is left.
std::string safeFileName(std::string_view displayName);

}  // namespace airsync

#endif
