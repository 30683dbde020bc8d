// The end of a piece of work: how it went, told and as an exit code.
#ifndef AIRSYNC_CLI_TELL_ERRORS_H
#define AIRSYNC_CLI_TELL_ERRORS_H

#include <functional>

#include "cli/ExitCode.h"
#include "cli/output/Output.h"

namespace airsync {

/// Runs the work, tells the error that ended it, if one did, and writes out all results. Never throws.
ExitCode tellErrors(Output& output, const std::function<ExitCode()>& work);

}  // namespace airsync

#endif
