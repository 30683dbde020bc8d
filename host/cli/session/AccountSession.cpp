#include "cli/session/AccountSession.h"

#include <algorithm>
#include <cstring>
#include <fmt/core.h>
#include <string.h>
#include <utility>

#include "cli/ExitError.h"
#include "cli/ResultReach.h"
#include "cli/ResultText.h"
#include "cli/output/Displayable.h"

namespace airsync {

namespace {

using namespace AIRSYNC_STACK;

constexpr SYNC_RESULT kStatusBits = 0xff;

// The configuration was checked: nothing is cut here.
template <std::size_t size>
void copyText(char (&field)[size], const std::string& text) {
  std::memcpy(field, text.data(), std::min(text.size(), size - 1));
}

// The record that the library copies; the password in it is wiped afterwards.
class ServerRecord {
 public:
  ServerRecord(const Account& account, const std::string& deviceId, const Password& password) {
    copyText(info_.host, account.url.authority());
    copyText(info_.path, account.url.path);
    copyText(info_.user, account.user);
    copyText(info_.domain, account.domain);
    copyText(info_.password, password.reveal());
    copyText(info_.deviceType, account.deviceType);
    copyText(info_.deviceId, deviceId);
    copyText(info_.userAgent, account.userAgent);
  }
  ~ServerRecord() { ::explicit_bzero(info_.password, sizeof(info_.password)); }
  ServerRecord(const ServerRecord&) = delete;
  ServerRecord& operator=(const ServerRecord&) = delete;

  const SERVER_INFO& info() const { return info_; }

 private:
  SERVER_INFO info_ = {};
};

constexpr int kTraceVerbosity = 2;

TransportOptions transportOptions(const Account& account, const std::vector<std::string>& secrets,
                                  const SessionEvents& events) {
  TransportOptions options;
  options.scheme = account.url.tls ? Scheme::kHttps : Scheme::kHttp;
  options.host = account.url.host;
  options.port = account.url.port;
  options.loopbackOnly = account.loopbackOnly;
  options.caFile = account.caFile;
  options.connectTimeout = account.timeouts.connect;
  options.idleTimeout = account.timeouts.idle;
  options.totalTimeout = account.timeouts.total;
  options.watchRaw = events.transfer;
  if (events.verbosity >= kTraceVerbosity) {
    // The transport leaves credentials out; but a server may say them back, anywhere.
    options.trace = [log = events.log, &secrets](std::string_view line) {
      // cppcheck-suppress ignoredReturnValue ; not the logarithm
      log(displayable(withoutSecrets(std::string(line), secrets)));
    };
  }
  return options;
}

LogDetail detailOf(int verbosity) {
  if (verbosity <= 1) return LogDetail::facts;
  return verbosity == kTraceVerbosity ? LogDetail::steps : LogDetail::contents;
}

bool isFamily(SYNC_RESULT result, SYNC_RESULT family, SYNC_RESULT statusBits) {
  return (result & ~statusBits) == family && (result & statusBits) != 0;
}

// The transport's own account of a failure is the better one, unless an HTTP status says it all.
bool isTransportStory(SYNC_RESULT result, const TransportError& error) {
  if (!error || error.kind == TransportErrorKind::kHttpStatus) return false;
  if (error.kind == TransportErrorKind::kAnsweredEarly) return true;
  constexpr SYNC_RESULT kHttpOk = AS_RESULT_FAMILY_HTTP | 200;
  return result == AS_RESULT_TRANSPORT_FAILED || result == AS_RESULT_FAMILY_HTTP || result == kHttpOk ||
         isFamily(result, kTransportResultFamily, 0xffff);
}

}  // namespace

AccountSession::AccountSession(const Account& account, const std::string& deviceId, const Password& password,
                               Store& store, SessionEvents events)
    : account_(account),
      store_(store),
      events_(std::move(events)),
      flight_(events_.flight != nullptr ? *events_.flight : ownFlight_),
      secrets_(secretsOf(account.domain, account.user, password.reveal())),
      transport_(transportOptions(account, secrets_, events_)),
      watchedTransport_(transport_, guard_, flight_),
      watchedStorage_(store, guard_, flight_, [this] { events_.progress(currentFolder_, ++items_); }) {
  Log* log = nullptr;
  if (events_.verbosity > 0) {
    const LogDetail detail = detailOf(events_.verbosity);
    appender_.emplace(detail, secrets_, events_.log);
    registration_.emplace(*appender_, detail);
    log = Log::getInstance();
  }
  const ServerRecord server(account, deviceId, password);
  library_ = std::make_unique<Library>(server.info(), watchedTransport_, watchedStorage_, log);
  store_.setCancel([this] { library_->airSync().CancelSync(); });
  interruptScope_.emplace(library_->airSync());
}

void AccountSession::checkInterrupt() const {
  if (!Interrupt::requested()) return;
  fail(AS_RESULT_CANCELLED, "working on", "account " + account_.name, ErrorKind::account);
}

void AccountSession::fail(SYNC_RESULT result, const std::string& operation, const std::string& subject,
                          ErrorKind least, Asked asked) const {
  // The transport may have noticed the interruption before the library did.
  if (Interrupt::requested()) result = AS_RESULT_CANCELLED;
  const TransportError& transport = transport_.lastError();
  const ResultText text = describe(result, asked);
  ErrorStory story;
  story.operation = operation;
  story.subject = subject;
  story.cause = text.sentence;
  story.advice = text.advice;
  story.result = result;
  story.kind = std::max(least, reachOf(result));
  ExitCode code = text.exitCode;
  if (isTransportStory(result, transport)) {
    code = exitCodeOf(transport.errorClass());
    story.kind = std::max(least, reachOf(resultOf(transport.kind)));
    story.cause = withoutSecrets(transport.what);
    story.advice = transport.advice;
  } else if (transport.kind == TransportErrorKind::kHttpStatus) {
    tellOfStatus(transport, story);
  }
  if (story.cause.ends_with('.')) story.cause.pop_back();
  story.cause += fmt::format(" ({})", text.name);
  throw ExitError(code, std::move(story));
}

// What of an answer's head helps beside its status.
void AccountSession::tellOfStatus(const TransportError& transport, ErrorStory& story) const {
  constexpr int kBadRequest = 400;
  if (!transport.location.empty()) {
    story.cause += "; the address that it names is " + withoutSecrets(transport.location);
  }
  if (transport.httpStatus == kBadRequest && !account_.url.tls) {
    story.advice += ", and whether it should begin with https";  // so answers many a server that expects TLS
  }
}

std::string AccountSession::withoutSecrets(const std::string& text) const {
  return airsync::withoutSecrets(text, secrets_);
}

void AccountSession::beginCommand() {
  checkInterrupt();
  guard_.begin({});
}

void AccountSession::require(SYNC_RESULT result, const std::string& operation, const std::string& subject,
                             ErrorKind least, Asked asked) const {
  if (result != AS_RESULT_OK) fail(result, operation, subject, least, asked);
}

void AccountSession::connect() {
  checkInterrupt();
  const SYNC_RESULT result = library_->connect();
  if (result == AS_RESULT_OK) return;
  fail(result, "connecting", fmt::format("account {} to {}", account_.name, account_.url.authority()),
       ErrorKind::account);
}

SYNC_RESULT AccountSession::syncHierarchy(HierarchyFetch fetch) {
  guard_.begin({});
  _SYNC_KEY key = store_.beginHierarchy(fetch);
  const bool first = std::string_view(key.text) == "0";
  const SYNC_RESULT result = library_->airSync().FolderSync(key);
  if (result == AS_RESULT_OK) {
    store_.commitHierarchy(key);
    return result;
  }
  store_.rollbackHierarchy();
  return !first && isEmptyAnswer(result) ? SYNC_RESULT{AS_RESULT_OK} : result;
}

void AccountSession::refreshFolders() {
  checkInterrupt();
  SYNC_RESULT result = syncHierarchy(HierarchyFetch::changes);
  if (isFamily(result, AS_RESULT_FAMILY_FOLDER, kStatusBits) && store_.hierarchyKey() != "0") {
    result = syncHierarchy(HierarchyFetch::all);
  }
  if (result == AS_RESULT_OK) return;
  fail(result, "fetching the list of folders of", "account " + account_.name, ErrorKind::folder,
       Asked::folderList);
}

bool AccountSession::isEmptyAnswer(SYNC_RESULT result) {
  return result == AS_RESULT_TRANSPORT_FAILED && !guard_.stalled() && transport_.lastResponseWasEmpty();
}

Reached AccountSession::lastReached() const {
  return transport_.fate() == RequestFate::kNotSent ? Reached::no : Reached::perhaps;
}

// What the server said with an error, or the sentence for it.
std::string AccountSession::wordsOf(SYNC_RESULT result) const {
  const TransportError& transport = transport_.lastError();
  std::string words = isTransportStory(result, transport) ? withoutSecrets(transport.what)
                                                          : describe(result, Asked::folder).sentence;
  if (words.ends_with('.')) words.pop_back();
  return displayable(words);
}

}  // namespace airsync
