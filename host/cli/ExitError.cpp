#include "cli/ExitError.h"

#include "cli/ResultText.h"
#include "store/RunLock.h"

namespace airsync {

ExitCode exitCodeOf(const Error& error) {
  if (const auto* exit = dynamic_cast<const ExitError*>(&error)) return exit->code();
  if (dynamic_cast<const LockedError*>(&error) != nullptr) return ExitCode::kLocked;
  if (error.story().result != AIRSYNC_STACK::AS_RESULT_OK) return describe(error.story().result).exitCode;
  switch (error.kind()) {
    case ErrorKind::item:
    case ErrorKind::folder:
      return ExitCode::kUsage;  // named on the command line, and not there or not fit for it
    case ErrorKind::account:
      return ExitCode::kNeedsPerson;  // the store is damaged, the disk is full
    case ErrorKind::cancelled:
      return ExitCode::kInterrupted;
  }
  return ExitCode::kInternal;
}

}  // namespace airsync
