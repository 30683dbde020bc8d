// airsync notify enable|disable|carriers|address|check: being told of changes on the server.
//
// What arrives is not received here: a device's own software gets the notification, and `check` says whether
// it is for the set-up that the device knows.
#include <fmt/core.h>
#include <vector>

#include "cli/Commands.h"
#include "cli/ExitError.h"
#include "cli/NotifyPayload.h"
#include "cli/RemoteItem.h"
#include "cli/ResultText.h"
#include "cli/config/Paths.h"
#include "cli/output/Displayable.h"
#include "cli/output/Json.h"
#include "cli/session/Library.h"
#include "cli/session/Turn.h"

namespace airsync {

namespace {

using namespace AIRSYNC_STACK;

// About what a request leaves for its folders, and what each of them takes beside its id.
constexpr std::size_t kLargestRequest = 8'000;
constexpr std::size_t kAroundFolder = 6;
constexpr std::size_t kLongestText = 255;

using CarrierTexts = unsigned char (*)[64];

std::vector<std::string> carriersOf(const CarrierTexts list, unsigned short count) {
  std::vector<std::string> carriers;
  for (unsigned short index = 0; list != nullptr && index < count; ++index) {
    carriers.emplace_back(reinterpret_cast<const char*>(list[index]));
  }
  return carriers;
}

void checkText(const char* what, const std::string& text) {
  if (text.size() <= kLongestText && displayable(text) == text) return;
  throw ExitError(ExitCode::kUsage,
                  fmt::format("the {} is longer than {} bytes, or no plain UTF-8 text", what, kLongestText),
                  "Choose another one.");
}

const unsigned char* bytesOf(const std::string& text) {
  return reinterpret_cast<const unsigned char*>(text.c_str());
}

std::vector<FolderRecord> recordsOf(const Account& account, const Store& store,
                                    const std::vector<Folder>& folders) {
  std::vector<FolderRecord> records;
  std::size_t size = 0;
  for (const Folder& folder : folders) {
    size += folder.serverId.size() + kAroundFolder;
    const FolderPolicy& policy = account.policyFor(folder.name, folder.serverId);
    records.push_back(store.folderInfo(folder.number, policy.protocol));
    records.back().info().notifyEnabled = 1;
  }
  if (size <= kLargestRequest) return records;
  throw ExitError(ExitCode::kUsage, fmt::format("{} folders are too many for one request", folders.size()),
                  "Name those that matter.");
}

// The server's word on an enable request, with the carriers that it knows where it told them.
void requireEnabled(Context& context, const AccountSession& session, SYNC_RESULT result,
                    const std::vector<std::string>& carriers, const std::string& subject) {
  if (!carriers.empty() && result != AS_RESULT_OK) {
    std::string text;
    for (const std::string& carrier : carriers) text += (text.empty() ? "" : ", ") + displayable(carrier);
    context.output.note("carriers that the server knows: " + text);
  }
  session.require(result, "enabling notifications for", subject, ErrorKind::account);
}

bool isNotifyStatus(SYNC_RESULT result) { return (result & ~SYNC_RESULT{0xff}) == AS_RESULT_FAMILY_NOTIFY; }

}  // namespace

ExitCode runNotifyEnable(Context& context) {
  const Account& account = context.onlyAccount();
  const NotifyOptions& notify = context.options.notify;
  checkText("address", notify.address);
  checkText("carrier", notify.carrier);
  checkText("name", notify.name);
  Turn turn(account, context.runOptions());
  const std::vector<Folder> folders = chooseRemoteFolders(account, turn.store(), context.options.folders);
  turn.store().offerFolders(recordsOf(account, turn.store(), folders));
  AccountSession& session = turn.session();
  session.connect();
  session.beginCommand();
  CarrierTexts list = nullptr;
  unsigned short count = 0;
  const SYNC_RESULT result = session.airSync().NotifyEnable(
      bytesOf(notify.carrier), notify.name.c_str(), notify.address.c_str(), notify.lifetime, list, count);
  // After any other failure the list is released.
  const bool told = result == AS_RESULT_OK || isNotifyStatus(result);
  const std::vector<std::string> carriers = told ? carriersOf(list, count) : std::vector<std::string>();
  requireEnabled(context, session, result, carriers, "account " + account.name);

  Json rows = Json::array();
  Table table({"FOLDER", "NOTIFIED"});
  std::vector<ExitCode> codes;
  for (const Folder& folder : folders) {
    std::optional<Trouble> trouble =
        Trouble{ExitCode::kServer, "the server said nothing of it", "Try again."};
    for (const FolderNotifyStatus& status : turn.store().notifyStatuses()) {
      if (status.folder != folder.number) continue;
      const ResultText text = describe(status.result);
      trouble.reset();
      if (status.result != AS_RESULT_OK) trouble = {text.exitCode, text.sentence, asSentence(text.advice)};
    }
    table.add({displayable(folder.path), trouble ? trouble->message : "yes"});
    rows.push_back({{"id", folder.serverId}, {"path", folder.path}, {"error", troubleJson(trouble)}});
    codes.push_back(trouble ? trouble->code : ExitCode::kDone);
  }
  const ExitCode code = combine(codes);
  table.print(context.output);
  context.output.document({{"account", account.name},
                           {"action", "enable"},
                           {"lifetime", notify.lifetime},
                           {"folders", std::move(rows)},
                           {"exit", exitJson(code)}});
  return code;
}

ExitCode runNotifyDisable(Context& context) {
  const Account& account = context.onlyAccount();
  Turn turn(account, context.runOptions());
  turn.store().offerFolders({});
  AccountSession& session = turn.session();
  session.connect();
  session.beginCommand();
  CarrierTexts list = nullptr;
  unsigned short count = 0;
  session.require(session.airSync().NotifyEnable(nullptr, "", "", 0, list, count),
                  "switching notifications off for", "account " + account.name, ErrorKind::account);
  context.output.document({{"account", account.name}, {"action", "disable"}});
  context.output.done(fmt::format("account {}: notifications are off", account.name));
  return ExitCode::kDone;
}

ExitCode runNotifyCarriers(Context& context) {
  const Account& account = context.onlyAccount();
  Turn turn(account, context.runOptions());
  AccountSession& session = turn.session();
  session.connect();
  session.beginCommand();
  CarrierTexts list = nullptr;
  unsigned short count = 0;
  session.require(session.airSync().GetCarrierList(list, count), "asking for the carriers of",
                  "account " + account.name, ErrorKind::account, Asked::carriers);
  const std::vector<std::string> carriers = carriersOf(list, count);
  if (carriers.empty()) context.output.note("the server knows no carriers");
  for (const std::string& carrier : carriers) context.output.line(displayable(carrier));
  context.output.document({{"account", account.name}, {"carriers", carriers}});
  return ExitCode::kDone;
}

ExitCode runNotifyAddress(Context& context) {
  const Account& account = context.onlyAccount();
  const NotifyOptions& notify = context.options.notify;
  Turn turn(account, context.runOptions());
  AccountSession& session = turn.session();
  session.connect();
  session.beginCommand();
  const SYNC_RESULT result = session.airSync().SetDeviceAddress(bytesOf(notify.carrier), notify.name.c_str(),
                                                                notify.address.c_str());
  if (result == AS_RESULT_MALFORMED_DOCUMENT) {
    ErrorStory story;
    story.operation = "registering";
    story.subject = fmt::format("address \"{}\" of account {}", notify.address, account.name);
    story.cause =
        "the request holds an element, \"Carrier\", that the WBXML encoding has no token for, so it can't be "
        "written (AS_RESULT_MALFORMED_DOCUMENT, 0x8001000b); nothing was sent";
    story.advice = "Use airsync notify enable, which registers the address together with the folders.";
    story.result = result;
    throw ExitError(ExitCode::kNeedsPerson, std::move(story));
  }
  session.require(result, "registering the address of", "account " + account.name, ErrorKind::account);
  context.output.document({{"account", account.name}, {"action", "address"}});
  context.output.done(fmt::format("account {}: the address is registered", account.name));
  return ExitCode::kDone;
}

ExitCode runNotifyCheck(Context& context) {
  const NotifyOptions& notify = context.options.notify;
  const _SYNC_KEY guid = notificationGuid(notify.guid);
  const std::string payload = notificationPayload(notify.payload);
  // Nothing is sent: no password, no lock and no connection are needed, only what Initialize wants.
  Store store(storeFile(context.state, context.onlyAccount().name));
  HttpTransport transport{TransportOptions{}};
  Library library(SERVER_INFO{}, transport, store, nullptr);
  const bool matches = library.airSync().NotifyRecv(reinterpret_cast<const unsigned char*>(payload.data()),
                                                    static_cast<int>(payload.size()), guid) == AS_RESULT_OK;
  context.output.document({{"guid", guid.text}, {"matches", matches}});
  if (matches) {
    context.output.done(fmt::format("the notification is for {}", guid.text));
    return ExitCode::kDone;
  }
  throw ExitError(ExitCode::kUsage,
                  {.operation = "checking the",
                   .subject = "notification",
                   .cause = fmt::format("it is not for {}, or no notification at all", guid.text),
                   .advice = "Compare it with the set-up that the device was given."});
}

}  // namespace airsync
