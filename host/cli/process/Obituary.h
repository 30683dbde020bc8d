// What there is to say of a process that died over an account.
#ifndef AIRSYNC_CLI_PROCESS_OBITUARY_H
#define AIRSYNC_CLI_PROCESS_OBITUARY_H

#include <string>

#include "cli/ExitError.h"
#include "cli/process/Child.h"

namespace airsync {

/// What the process was there for.
struct Purpose {
  std::string account{};
  std::string operation{};  // "synchronising", "running airsync move for"
  std::string folder{};     // that the command is about, where the record names none; empty: no single one
  bool acts = false;        // it changes something on the server that the store does not know of
  bool synchronises = false;
};

/// Whose fault it was, as far as one can tell: an assertion that fails over a server's answer is the server's
/// (kServer), everything else is ours (kInternal).
ExitError obituaryOf(const Death& death, const Purpose& purpose);

}  // namespace airsync

#endif
