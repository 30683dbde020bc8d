// What of a login must never be shown, found in whatever form it is said back.
#ifndef AIRSYNC_CLI_SESSION_SECRETS_H
#define AIRSYNC_CLI_SESSION_SECRETS_H

#include <string>
#include <vector>

namespace airsync {

/// The password, and the credentials as requests carry them, the longest first.
std::vector<std::string> secretsOf(const std::string& domain, const std::string& user,
                                   const std::string& password);

/// `text` with "***" in the place of each of them. They are found as they are; with any of their characters
/// escaped (%41, =41, \x41, \u0041, &#65;) or followed by a byte 0; as digits of either case, alone or with a
/// space, ':' or '-' between the bytes; and in base64 of either alphabet, at each of its three alignments,
/// padded or not. So is the beginning of one before a cut, "...".
std::string withoutSecrets(const std::string& text, const std::vector<std::string>& secrets);

}  // namespace airsync

#endif
