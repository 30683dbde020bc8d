// Local changes that need a person, told to that person.
#ifndef AIRSYNC_CLI_OUTPUT_FAILURE_LIST_H
#define AIRSYNC_CLI_OUTPUT_FAILURE_LIST_H

#include <string>
#include <vector>

#include "store/StoreTypes.h"

namespace airsync {

/// One line per failure, and one with what to do: the commands to type. Displayable.
/// `account` is put into the commands where several accounts are configured; otherwise it is empty.
std::vector<std::string> failureLines(const std::vector<Failure>& failures, const std::string& account);

}  // namespace airsync

#endif
