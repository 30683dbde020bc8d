#include "cli/ExitCode.h"

#include <algorithm>

namespace airsync {

const ExitCodeText& describe(ExitCode code) {
  const auto found = std::find_if(kExitCodes.begin(), kExitCodes.end(),
                                  [code](const ExitCodeText& entry) { return entry.code == code; });
  // Every enumerator has its row (a test walks them); a number from elsewhere is our own mistake.
  return found != kExitCodes.end() ? *found : describe(ExitCode::kInternal);
}

ExitCode combine(const std::vector<ExitCode>& pieces) {
  if (pieces.empty()) return ExitCode::kDone;
  if (std::find(pieces.begin(), pieces.end(), ExitCode::kInterrupted) != pieces.end()) {
    return ExitCode::kInterrupted;
  }
  const bool equal = std::all_of(pieces.begin(), pieces.end(),
                                 [&pieces](ExitCode piece) { return piece == pieces.front(); });
  return equal ? pieces.front() : ExitCode::kPartlyDone;
}

}  // namespace airsync
