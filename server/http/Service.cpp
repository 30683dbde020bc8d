#include "http/Service.h"

#include <array>
#include <iostream>
#include <optional>

#include "http/Admin.h"
#include "protocol/FolderCommands.h"
#include "protocol/Status.h"
#include "wbxml/Codec.h"

namespace demoserver {
namespace {

constexpr char kDocumentType[] = "application/vnd.ms-sync.wbxml";
constexpr std::size_t kMaxDeviceId = 64;

struct Call {
  State& state;
  const SyncBehaviour& behaviour;
  const std::string& device;
  const std::string& body;
};

struct Command {
  std::string_view name;
  std::optional<Element> (*run)(const Call& call);
};

constexpr std::array<Command, 6> kCommands = {{
    {"Sync", [](const Call& c) { return runSync(c.state, c.behaviour, c.device, decode(c.body)); }},
    {"FolderSync",
     [](const Call& c) { return std::optional(runFolderSync(c.state, c.device, decode(c.body))); }},
    {"FolderCreate",
     [](const Call& c) { return std::optional(runFolderCreate(c.state, c.device, decode(c.body))); }},
    {"FolderDelete",
     [](const Call& c) { return std::optional(runFolderDelete(c.state, c.device, decode(c.body))); }},
    {"FolderUpdate",
     [](const Call& c) { return std::optional(runFolderUpdate(c.state, c.device, decode(c.body))); }},
    {"GetHierarchy", [](const Call& c) { return std::optional(runGetHierarchy(c.state)); }},
}};

const Command* commandNamed(std::string_view name) {
  for (const Command& each : kCommands)
    if (each.name == name) return &each;
  return nullptr;
}

HttpReply options() {
  std::string names;
  for (const Command& each : kCommands) names.append(names.empty() ? "" : ",").append(each.name);
  HttpReply reply;
  reply.headers = {{"MS-ASProtocolVersions", "2.0"}, {"MS-ASProtocolCommands", names}};
  return reply;
}

HttpReply refuse(int status, std::string_view sentence, const std::string& header, const std::string& value) {
  HttpReply reply = HttpReply::text(status, sentence);
  reply.headers.emplace_back(header, value);
  return reply;
}

// For a line of the log: what a client wrote may not end it or colour it.
std::string printable(std::string_view text) {
  constexpr std::size_t kMaxShown = 100;
  std::string shown;
  for (const char c : text.substr(0, kMaxShown)) shown += c > ' ' && c < '\x7f' ? c : '?';
  return shown;
}

}  // namespace

Answer Service::answer(const HttpRequest& request) {
  Answer answer;
  try {
    answer.reply = route(request, answer.fault);
  } catch (const WbxmlError& error) {
    answer.reply = HttpReply::text(400, error.what());
  } catch (const BadRequest& error) {
    answer.reply = HttpReply::text(400, error.what());
  } catch (const std::exception& error) {
    std::cerr << "a request failed: " << error.what() << std::endl;
    answer.reply = HttpReply::text(500, "the server failed; its standard error tells why");
  }
  if (request.method == "HEAD") answer.reply.body.clear();
  if (options_.verbose)
    std::cerr << printable(request.method) << ' ' << printable(request.path)
              << " Cmd=" << printable(request.parameter("Cmd"))
              << " DeviceId=" << printable(request.parameter("DeviceId")) << ' ' << request.body.size()
              << " bytes -> " << answer.reply.status << ' ' << answer.reply.body.size() << " bytes"
              << std::endl;
  return answer;
}

HttpReply Service::route(const HttpRequest& request, Fault& fault) {
  const bool admin = isAdminPath(request.path);
  if (!admin) fault = options_.faults.next(request.parameter("Cmd"));
  if (fault.status != 0) return {fault.status, "", "", {}};
  if (fault.dropRequest) return {};
  if (!isAuthorized(request.authorization, options_.credentials))
    return refuse(401, "wrong domain, user or password", "WWW-Authenticate", "Basic realm=\"AirSync demo\"");
  if (admin) return runAdmin(state_, request);
  if (request.method == "OPTIONS") return options();
  if (request.method != "POST") return refuse(405, "commands are sent with POST", "Allow", "OPTIONS, POST");
  return command(request, fault);
}

HttpReply Service::command(const HttpRequest& request, const Fault& fault) {
  const std::string& name = request.parameter("Cmd");
  const std::string& device = request.parameter("DeviceId");
  if (name.empty()) return HttpReply::text(400, "the query names no command (Cmd)");
  if (device.empty() || device.size() > kMaxDeviceId)
    return HttpReply::text(400, "the query needs a DeviceId of 1 to 64 characters");
  const Command* command = commandNamed(name);
  if (command == nullptr) return HttpReply::text(501, "this server does not know the command");
  if (fault.noCollection && name == "Sync") {
    Element bare(Page::Sync, "Sync");
    bare.add("Status", "1");
    return {200, kDocumentType, encode(bare), {}};
  }
  SQLite::Transaction transaction(state_.database.handle());
  const std::optional<Element> response = command->run({state_, options_.behaviour, device, request.body});
  HttpReply reply{200, kDocumentType, response ? encode(*response) : std::string(), {}};
  transaction.commit();
  return reply;
}

}  // namespace demoserver
