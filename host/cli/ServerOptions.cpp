// airsync options: which protocol versions and commands the server knows, in its own words.
#include <algorithm>
#include <array>
#include <fmt/core.h>
#include <string_view>

#include "cli/Commands.h"
#include "cli/output/Displayable.h"
#include "cli/output/Json.h"
#include "cli/session/Turn.h"

namespace airsync {

namespace {

constexpr std::size_t kVersionsRoom = 256;
constexpr std::size_t kCommandsRoom = 2048;

// "1.0, 2.0,2.1" in its parts.
Json partsOf(std::string_view list) {
  Json parts = Json::array();
  while (!list.empty()) {
    const std::size_t end = std::min(list.find(','), list.size());
    std::string_view part = list.substr(0, end);
    list.remove_prefix(std::min(end + 1, list.size()));
    while (part.starts_with(' ')) part.remove_prefix(1);
    while (part.ends_with(' ')) part.remove_suffix(1);
    if (!part.empty()) parts.push_back(part);
  }
  return parts;
}

std::string shown(std::string_view list) { return list.empty() ? "not told" : displayable(list); }

}  // namespace

ExitCode runOptions(Context& context) {
  const Account& account = context.onlyAccount();
  std::array<unsigned char, kVersionsRoom> versions{};
  std::array<unsigned char, kCommandsRoom> commands{};
  Turn turn(account, context.runOptions());
  AccountSession& session = turn.session();
  session.connect();
  session.beginCommand();
  session.require(session.airSync().GetOptions(versions.data(), static_cast<int>(versions.size()),
                                               commands.data(), static_cast<int>(commands.size())),
                  "asking for the options of", "account " + account.name, ErrorKind::account);
  // The transport ends both texts within their room.
  const std::string versionList = session.withoutSecrets(reinterpret_cast<const char*>(versions.data()));
  const std::string commandList = session.withoutSecrets(reinterpret_cast<const char*>(commands.data()));
  context.output.line("versions: " + shown(versionList));
  context.output.line("commands: " + shown(commandList));
  context.output.document(
      {{"account", account.name}, {"versions", partsOf(versionList)}, {"commands", partsOf(commandList)}});
  return ExitCode::kDone;
}

}  // namespace airsync
