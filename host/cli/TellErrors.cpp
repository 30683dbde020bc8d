#include "cli/TellErrors.h"

#include <exception>

#include "cli/ExitError.h"
#include "cli/output/Displayable.h"

namespace airsync {

ExitCode tellErrors(Output& output, const std::function<ExitCode()>& work) {
  ExitCode code = ExitCode::kInternal;
  try {
    code = work();
  } catch (const Error& error) {
    code = exitCodeOf(error);
    output.error(error);
  } catch (const std::exception& error) {
    output.error(displayable(error.what()), "this is a defect of airsync: please report it with this line");
  }
  if (output.flush()) return code;
  output.error("the result can't be written to standard output", "");
  return code == ExitCode::kDone ? ExitCode::kInternal : code;
}

}  // namespace airsync
