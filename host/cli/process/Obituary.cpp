#include "cli/process/Obituary.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <cstring>
#include <fmt/core.h>
#include <string.h>

namespace airsync {

namespace {

struct ProvokedRow {
  std::string_view assertion;
  std::string_view what;
};

// What a server can send against the rules so that the stack stops by design.
constexpr std::array<ProvokedRow, 2> kProvoked = {{
    {"pSmlElement->NumberOfAttributes < 1", "it holds an element with a second attribute"},
    {"__null == &In", "it holds an extension in the place of an attribute's value"},
}};

std::string_view ruleBroken(const std::string& assertion) {
  const auto row = std::find_if(kProvoked.begin(), kProvoked.end(),
                                [&](const ProvokedRow& each) { return each.assertion == assertion; });
  return row == kProvoked.end() ? "it holds what the protocol stack takes for impossible" : row->what;
}

std::string doing(const FlightRecord& flight) {
  const std::string command = flight.command.get();
  switch (flight.step) {
    case Step::beginning:
      break;
    case Step::connecting:
      return "while it connected";
    case Step::sending:
      return fmt::format("while it sent the request {}", command);
    case Step::waiting:
      return fmt::format("while it waited for the answer to {}", command);
    case Step::reading:
      return fmt::format("while it read the answer to {}", command);
    case Step::storing:
      return fmt::format("while it stored the answer to {}", command);
  }
  return "before it asked the server anything";
}

bool hasAnswer(const FlightRecord& flight) {
  return flight.step == Step::reading || flight.step == Step::storing;
}

std::string end(int signal) {
  if (signal == SIGABRT) return "stopped itself";
  if (signal == SIGKILL) return "was killed (signal 9), by somebody or because the system ran out of memory,";
  const char* name = ::sigdescr_np(signal);
  return fmt::format("crashed (signal {}, {})", signal, name == nullptr ? "unknown" : name);
}

std::string whereOf(const FlightRecord& flight) {
  const std::string file = flight.assertionFile.get();
  return fmt::format("assertion \"{}\", {}:{}", flight.assertion.get(), file.substr(file.rfind('/') + 1),
                     flight.assertionLine);
}

// What is safe, and what to look at before going on.
std::string whatHolds(const Purpose& purpose) {
  if (purpose.acts) {
    return "Whether the server did what it was asked for is not known: look there (airsync sync; for a "
           "message, "
           "Sent Items) before you run this again";
  }
  return "What came with earlier answers is kept, and nothing of this one";
}

std::string withoutTheFolder(const Purpose& purpose, const std::string& folder) {
  if (!purpose.synchronises || folder.empty()) return {};
  return "; until then selected = false in the folder's table of the configuration leaves it out";
}

}  // namespace

ExitError obituaryOf(const Death& death, const Purpose& purpose) {
  const FlightRecord& flight = death.flight;
  const std::string noted = flight.folder.get();
  const std::string folder = noted.empty() ? purpose.folder : noted;
  const std::string assertion = flight.assertion.get();
  ErrorStory story;
  story.operation = purpose.operation;
  story.subject = folder.empty() ? fmt::format("account {}", purpose.account)
                                 : fmt::format("folder \"{}\" of account {}", folder, purpose.account);
  if (!assertion.empty() && hasAnswer(flight)) {
    story.cause = fmt::format(
        "the server's answer to {} broke a rule of the protocol: {}; the process that read it "
        "stopped itself ({})",
        flight.command.get(), ruleBroken(assertion), whereOf(flight));
    story.advice = fmt::format("{}. Tell the server's administrator, with what airsync -vv writes of it{}.",
                               whatHolds(purpose), withoutTheFolder(purpose, folder));
    return ExitError(ExitCode::kServer, std::move(story));
  }
  story.cause = fmt::format("the process that worked on it {} {}", end(death.signal), doing(flight));
  if (!assertion.empty()) story.cause += fmt::format(" ({})", whereOf(flight));
  story.advice =
      death.signal == SIGKILL
          ? fmt::format("{}. Run it again.", whatHolds(purpose))
          : fmt::format("{}. This is a defect of airsync: please report it, with what airsync -vv writes{}.",
                        whatHolds(purpose), withoutTheFolder(purpose, folder));
  if (death.signal == SIGKILL && purpose.acts) story.advice = whatHolds(purpose) + ".";
  return ExitError(ExitCode::kInternal, std::move(story));
}

}  // namespace airsync
