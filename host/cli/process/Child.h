// Work that a server's answers may end at any moment, in a process of its own.
//
//   const ChildEnd end = runInChild(context.output, [&](Child& child) { ...; return ExitCode::kDone; });
//   if (end.death) context.output.error(Error(obituaryOf(*end.death, purpose)));
//
// The child has everything that this process has, standard input and output among it; it writes out what it
// has to say before it ends. Signals that ask this process to stop reach it, too, and it does not outlive
// this process.
#ifndef AIRSYNC_CLI_PROCESS_CHILD_H
#define AIRSYNC_CLI_PROCESS_CHILD_H

#include <functional>
#include <nlohmann/json.hpp>
#include <optional>
#include <vector>

#include "cli/ExitCode.h"
#include "cli/output/Output.h"
#include "cli/process/FlightRecord.h"

namespace airsync {

/// The child's side.
class Child {
 public:
  Child(FlightRecord& flight, int pipe) : flight_(flight), pipe_(pipe) {}

  FlightRecord& flight() { return flight_; }

  /// Hands something up. It arrives even when the process dies right after it.
  void report(const nlohmann::ordered_json& message) const;

 private:
  FlightRecord& flight_;
  int pipe_;
};

/// A child that did not come to its own end.
struct Death {
  int signal = 0;
  FlightRecord flight;
};

struct ChildEnd {
  ExitCode code = ExitCode::kInternal;           // of a child that ended by itself
  std::optional<Death> death;                    // of another one
  std::vector<nlohmann::ordered_json> messages;  // what it reported, in that order
};

using ChildWork = std::function<ExitCode(Child& child)>;

/// Runs the work in a new process and waits for its end. Nothing that the child must not share may be open
/// yet, and no other thread may run. Errors that the work throws are told by the child. Throws
/// ExitError(kInternal) when no process can be made.
ChildEnd runInChild(Output& output, const ChildWork& work);

/// No dump of this process's memory, nor of those that it becomes the parent of, is ever written, and no
/// other process of the same user may look into it: there are passwords in it.
void protectMemory();

}  // namespace airsync

#endif
