// How a run of airsync ended: the number that the shell sees, and the sentence that the manual gives it.
#ifndef AIRSYNC_CLI_EXIT_CODE_H
#define AIRSYNC_CLI_EXIT_CODE_H

#include <array>
#include <string_view>
#include <vector>

namespace airsync {

enum class ExitCode : int {
  kDone = 0,
  kUsage = 1,
  kConfiguration = 2,
  kLoginRefused = 3,
  kNetwork = 4,
  kTls = 5,
  kServer = 6,
  kPartlyDone = 7,
  kNeedsPerson = 8,
  kLocked = 9,
  kInternal = 10,
  kInterrupted = 130,
};

struct ExitCodeText {
  ExitCode code;
  std::string_view name;  // for machines: stable
  std::string_view sentence;
};

/// Every exit code, in ascending order.
inline constexpr std::array<ExitCodeText, 12> kExitCodes = {{
    {ExitCode::kDone, "done", "everything that was asked for is done"},
    {ExitCode::kUsage, "usage", "the command line or the record given to it can't be understood"},
    {ExitCode::kConfiguration, "configuration", "the configuration is missing or wrong"},
    {ExitCode::kLoginRefused, "login-refused", "the server refused the user name or the password"},
    {ExitCode::kNetwork, "network", "the server can't be reached, or the connection broke"},
    {ExitCode::kTls, "tls", "the encrypted connection could not be established or trusted"},
    {ExitCode::kServer, "server", "the server answered with an error or with nonsense"},
    {ExitCode::kPartlyDone, "partly-done", "some of it is done, the rest is told on standard error"},
    {ExitCode::kNeedsPerson, "needs-person", "only a person can decide how to go on"},
    {ExitCode::kLocked, "locked", "another run of airsync works on the account"},
    {ExitCode::kInternal, "internal", "airsync itself failed"},
    {ExitCode::kInterrupted, "interrupted", "the run was interrupted"},
}};

const ExitCodeText& describe(ExitCode code);

/// One code for several pieces of work (folders of an account, accounts of a run): an interruption wins;
/// equal codes stay what they are; anything else is partly done. No pieces at all are done.
ExitCode combine(const std::vector<ExitCode>& pieces);

}  // namespace airsync

#endif
