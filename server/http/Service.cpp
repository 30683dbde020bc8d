#include "http/Service.h"

#include <array>
#include <fstream>
#include <iostream>
#include <iterator>
#include <stdexcept>

#include "http/Admin.h"
#include "protocol/Delivery.h"
#include "protocol/FolderCommands.h"
#include "protocol/GetItemEstimate.h"
#include "protocol/MeetingResponse.h"
#include "protocol/MoveItems.h"
#include "protocol/Notify.h"
#include "protocol/SmartMail.h"
#include "protocol/Status.h"
#include "protocol/SyncCommand.h"
#include "wbxml/Codec.h"

namespace demoserver {
namespace {

constexpr char kDocumentType[] = "application/vnd.ms-sync.wbxml";
constexpr std::size_t kMaxDeviceId = 64;

struct Call {
  State& state;
  const ServiceOptions& options;
  const std::string& device;
  const HttpRequest& request;
};

struct Command {
  std::string_view name;
  HttpReply (*run)(const Call& call);
  std::size_t bodyLimit = kMaxDocument;
};

// The answer to a command whose request is a document. `Function` takes the state and the arguments.
template <typename Function, typename... Arguments>
HttpReply answerTo(const Call& call, Function function, const Arguments&... arguments) {
  return {200, kDocumentType, encode(function(call.state, arguments..., decode(call.request.body))), {}};
}

Posting postingOf(const Call& call) {
  return {call.options.mailAddress, call.state.clock.now(), call.request.parameter("SaveInSent") == "T"};
}

HttpReply sendMail(const Call& call) {
  deliver(call.state, postingOf(call), call.request.body);
  return {};
}

HttpReply sendSmart(const Call& call, SmartKind kind) {
  sendSmart(call.state, postingOf(call), kind,
            {call.request.spellings("ItemId"), call.request.spellings("CollectionId")}, call.request.body);
  return {};
}

HttpReply getAttachment(const Call& call) {
  for (const std::string& handle : call.request.spellings("AttachmentName"))
    if (auto found = call.state.attachments.find(handle))
      return {200, found->type, std::move(found->content), {}};
  throw NotFound("there is no such attachment: its handle is unknown, or its mail is gone");
}

HttpReply sync(const Call& call) {
  const Habits& habits = call.options.habits;
  const auto response = runSync(call.state, habits, call.device, decode(call.request.body));
  if (!response) return {200, kDocumentType, "", {}};
  return {200,
          kDocumentType,
          habits.unknownPageInAnswers ? encodeWithUnknownPage(*response) : encode(*response),
          {}};
}

constexpr std::array<Command, 14> kCommands = {{
    {"Sync", sync},
    {"SendMail", sendMail, kMaxMessage},
    {"SmartForward", [](const Call& c) { return sendSmart(c, SmartKind::Forward); }, kMaxMessage},
    {"SmartReply", [](const Call& c) { return sendSmart(c, SmartKind::Reply); }, kMaxMessage},
    {"GetAttachment", getAttachment},
    {"GetHierarchy",
     [](const Call& c) {
       return HttpReply{200, kDocumentType, encode(runGetHierarchy(c.state)), {}};
     }},
    {"FolderSync", [](const Call& c) { return answerTo(c, runFolderSync, c.device); }},
    {"FolderCreate", [](const Call& c) { return answerTo(c, runFolderCreate, c.device); }},
    {"FolderDelete", [](const Call& c) { return answerTo(c, runFolderDelete, c.device); }},
    {"FolderUpdate", [](const Call& c) { return answerTo(c, runFolderUpdate, c.device); }},
    {"MoveItems", [](const Call& c) { return answerTo(c, runMoveItems, c.options.habits, c.device); }},
    {"GetItemEstimate", [](const Call& c) { return answerTo(c, runGetItemEstimate, c.device); }},
    {"MeetingResponse", [](const Call& c) { return answerTo(c, runMeetingResponse); }},
    {"Notify", [](const Call& c) { return answerTo(c, runNotify, c.device); }},
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

std::string contentOf(const std::string& file) {
  std::ifstream stream(file, std::ios::binary);
  if (!stream) throw std::runtime_error("can't read " + file);
  return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

// For a line of the log: what a client wrote may not end it or colour it.
std::string printable(std::string_view text) {
  constexpr std::size_t kMaxShown = 100;
  std::string shown;
  for (const char c : text.substr(0, kMaxShown)) shown += c > ' ' && c < '\x7f' ? c : '?';
  return shown;
}

}  // namespace

std::size_t Service::bodyLimit(const HttpRequest& request) const {
  const Command* command = commandNamed(request.parameter("Cmd"));
  const bool trusted = command != nullptr && isAuthorized(request.authorization, options_.credentials);
  return trusted ? command->bodyLimit : kMaxDocument;
}

Answer Service::answer(const HttpRequest& request) {
  Answer answer;
  try {
    answer.reply = route(request, answer.fault);
  } catch (const WbxmlError& error) {
    answer.reply = HttpReply::text(400, error.what());
  } catch (const BadRequest& error) {
    answer.reply = HttpReply::text(400, error.what());
  } catch (const NotFound& error) {
    answer.reply = HttpReply::text(404, error.what());
  } catch (const TooLarge& error) {
    answer.reply = HttpReply::text(413, error.what());
  } catch (const std::exception& error) {
    std::cerr << "a request failed: " << error.what() << std::endl;
    answer.reply = HttpReply::text(500, "the server failed; its standard error tells why");
  }
  answer.close = options_.habits.closeAfterAnswer;
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
  if (admin) return runAdmin(state_, {options_.habits, options_.faults}, request);
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
  if (command != nullptr && request.body.size() > command->bodyLimit)
    return HttpReply::text(413, "the request's body is too long");
  if (command == nullptr) return HttpReply::text(501, "this server does not know the command");
  if (fault.noCollection && name == "Sync") {
    Element bare(Page::Sync, "Sync");
    bare.add("Status", "1");
    return {200, kDocumentType, encode(bare), {}};
  }
  if (!fault.answerFile.empty()) return {200, kDocumentType, contentOf(fault.answerFile), {}};
  SQLite::Transaction transaction(state_.database.handle());
  HttpReply reply;
  try {
    reply = command->run({state_, options_, device, request});
  } catch (const StoredInPart& failure) {
    reply = HttpReply::text(501, failure.what());
  }
  transaction.commit();
  return reply;
}

}  // namespace demoserver
