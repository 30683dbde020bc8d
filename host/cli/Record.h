// Records from files and standard input.
#ifndef AIRSYNC_CLI_RECORD_H
#define AIRSYNC_CLI_RECORD_H

#include <string>

#include "cli/output/Output.h"
#include "formats/ContactJson.h"
#include "store/Contact.h"

namespace airsync {

/// Reads the record in `file` ("-": standard input). Throws ExitError(kUsage) that names the place.
ContactPatch readRecord(const std::string& file);

/// Tells when a contact is so large that no request will have room for it.
void noteIfTooLarge(const Contact& contact, Output& output);

}  // namespace airsync

#endif
