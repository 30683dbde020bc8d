// Golden documents: files of tests/wire that hold the bytes of one document, readable by people.
//
//   # Sync response: one contact added by the server, nothing more to come.
//   03 01 6A 00                    version 1.3, public id unknown, UTF-8, no string table
//   45                             Sync
//     5C                             Collections
//
// A line begins with bytes as pairs of hexadecimal digits, one blank between them. Two blanks or the end of
// the line end the bytes; what follows is a comment. Empty lines and lines that begin with "#" hold no bytes.
#ifndef TESTS_SUPPORT_GOLDEN_DOCUMENT_H
#define TESTS_SUPPORT_GOLDEN_DOCUMENT_H

#include <string>

namespace airsync_test {

/// The bytes of tests/wire/`name`. A file that is missing or empty, or a line that is not as told above,
/// fails the test.
std::string GoldenDocument(const std::string& name);

/// Bytes in the same form, for comparisons that show where they differ: "03 01 6A 00".
std::string InHex(const std::string& bytes);

}  // namespace airsync_test

#endif
