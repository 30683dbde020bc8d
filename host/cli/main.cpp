// airsync: see airsync(1).
#include <cstdio>
#include <fmt/core.h>
#include <string>
#include <vector>

#include "cli/Commands.h"
#include "cli/ExitError.h"
#include "cli/TellErrors.h"
#include "cli/config/Paths.h"
#include "cli/process/Child.h"
#include "cli/session/Interrupt.h"

namespace {

using namespace airsync;

ExitCode run(const Options& options, Output& output) {
  const std::optional<Password> environment = takePasswordFromEnvironment();
  const Config config = loadConfig(options.configFile.empty() ? configFile().string() : options.configFile);
  Context context{options, config, stateDirectory(), environment ? &*environment : nullptr, output};
  return runCommand(context);
}

ExitCode runAndTell(const Options& options) {
  Output output({options.json, options.quiet, options.verbosity});
  return tellErrors(output, [&] { return run(options, output); });
}

}  // namespace

int main(int argc, char** argv) {
  protectMemory();
  Interrupt::install();
  try {
    const ParsedOptions parsed = parseOptions(std::vector<std::string>(argv + 1, argv + argc));
    if (!parsed.stop) return static_cast<int>(runAndTell(parsed.options));
    const std::size_t written = std::fwrite(parsed.text.data(), 1, parsed.text.size(), stdout);
    if (std::fflush(stdout) == 0 && written == parsed.text.size()) return 0;
    throw ExitError(ExitCode::kInternal, "this can't be written to standard output",
                    "See where it goes, and whether there is room.");
  } catch (const ExitError& error) {
    fmt::print(stderr, "airsync: error: {}\nairsync:   {}\n", sentenceOf(error), error.advice());
    return static_cast<int>(error.code());
  }
}
