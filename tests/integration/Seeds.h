// Secrets with which a test salts what airsync handles, and a search for them in whatever form they appear.
#ifndef AIRSYNC_TESTS_INTEGRATION_SEEDS_H
#define AIRSYNC_TESTS_INTEGRATION_SEEDS_H

#include <string>
#include <vector>

namespace airsync::integration {

/// The forms in which a text could leak: as it is, in base64 at each of its three alignments,
/// percent-encoded, as a hex dump (small and capital digits, with and without spaces), and with a byte 0
/// after each character.
std::vector<std::string> formsOf(const std::string& secret);

/// Those of the secrets, in any form, that stand in `text`, described for a person.
std::vector<std::string> leaks(const std::string& text, const std::vector<std::string>& secrets);

}  // namespace airsync::integration

#endif
