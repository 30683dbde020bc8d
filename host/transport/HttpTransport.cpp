#include "transport/HttpTransport.h"

#include <algorithm>
#include <cstring>
#include <exception>
#include <utility>

namespace airsync {

namespace {

using AIRSYNC_STACK::AS_RESULT_OK;
using Kind = TransportErrorKind;

TransportOptions completed(TransportOptions options) {
  if (options.host.starts_with('[') && options.host.ends_with(']')) {
    options.host = options.host.substr(1, options.host.size() - 2);
  }
  if (options.port == 0) options.port = options.scheme == Scheme::kHttps ? 443 : 80;
  return options;
}

void copyText(const std::string& text, UINT8* destination, INT32 length) {
  if (destination == nullptr || length <= 0) return;
  const std::size_t count = std::min(text.size(), static_cast<std::size_t>(length) - 1);
  std::memcpy(destination, text.data(), count);
  destination[count] = 0;
}

constexpr const char* kMayExpectTls =
    "Check the port in the account's url, and whether it should begin with https.";

bool isSuccess(UINT16 status, bool ofMessage) {
  return status == 200 || (ofMessage && (status == 201 || status == 202 || status == 204));
}

// After these the connection is as good as before.
bool keepsConnection(Kind kind) { return kind == Kind::kHttpStatus || kind == Kind::kBodyEnded; }

}  // namespace

HttpTransport::HttpTransport(TransportOptions options)
    : options_(completed(std::move(options))),
      peer_(printable(options_.host) + " port " + std::to_string(options_.port)),
      response_(options_.maxHead, options_.maxBody) {}

HttpTransport::~HttpTransport() { Close(); }

template <class Operation>
HttpTransport::SYNC_RESULT HttpTransport::guarded(Operation operation) noexcept {
  try {
    operation();
    return AS_RESULT_OK;
  } catch (const TransportFailure& failure) {
    return record(failure.error());
  } catch (const std::exception& error) {
    return record({Kind::kInternal, 0, std::string("The transport failed: ") + error.what() + '.',
                   "Free some memory and try again."});
  }
}

HttpTransport::SYNC_RESULT HttpTransport::record(const TransportError& error) noexcept {
  if (error.kind == Kind::kCancelled) cancel_.clear();
  const bool expectsTls = mayExpectTls(error.kind);
  if (!keepsConnection(error.kind)) {
    answered_ = false;
    drop();
    phase_ = Phase::kIdle;
  }
  lastError_ = error;
  if (expectsTls) lastError_.advice = kMayExpectTls;
  lastError_.httpStatus = status_;
  if (options_.trace) trace("failed: " + error.what);
  return resultOf(error.kind);
}

HttpTransport::SYNC_RESULT HttpTransport::Open(const AIRSYNC_STACK::SERVER_INFO*) {
  lastError_ = {};
  status_ = 0;
  touched_ = answered_ = spoke_ = false;
  drop();
  phase_ = Phase::kIdle;
  open_ = true;
  return guarded([&] { connect(); });
}

HttpTransport::SYNC_RESULT HttpTransport::Close() {
  const bool halfSent = phase_ == Phase::kSending && prepared_;
  if (connection_ && !halfSent) connection_->sayGoodbye();
  drop();
  request_.clear();
  phase_ = Phase::kIdle;
  open_ = false;
  cancel_.clear();
  return AS_RESULT_OK;
}

// May run in a signal handler: nothing but this.
HttpTransport::SYNC_RESULT HttpTransport::Cancel() {
  cancel_.raise();
  return AS_RESULT_OK;
}

HttpTransport::SYNC_RESULT HttpTransport::SendHeader(const char* head, INT32 length, UINT32 contentLength) {
  cancel_.clear();
  lastError_ = {};
  return guarded([&] { startRequest(head, length, contentLength); });
}

HttpTransport::SYNC_RESULT HttpTransport::Write(const UINT8* bytes, INT32 count, INT32 raw) {
  return guarded([&] {
    requirePhase(Phase::kSending, "Write");
    if (count < 0 || (bytes == nullptr && count != 0)) throw misuse("Write without bytes");
    write({bytes, static_cast<std::size_t>(count)}, raw != 0);
  });
}

HttpTransport::SYNC_RESULT HttpTransport::EndRequest() {
  return guarded([&] {
    requirePhase(Phase::kSending, "EndRequest");
    finishSending();
  });
}

HttpTransport::SYNC_RESULT HttpTransport::ReadResponseHead(UINT16* status, UINT8**, UINT32* length, bool raw,
                                                           UINT8* first, INT32 firstLength, UINT8* second,
                                                           INT32 secondLength) {
  *status = 0;
  return guarded([&] {
    requirePhase(Phase::kSending, "ReadResponseHead");
    finishSending();
    const ResponseHead head = readHead(raw ? std::optional<std::uint64_t>(*length) : std::nullopt);
    *status = status_ = head.status;
    if (head.framing == FramingKind::kLength) bodyLength_ = head.contentLength;
    answered_ = serverTookAll();
    if (!answered_) keepAlive_ = false;
    if (!isSuccess(head.status, request_.isMessage())) throw TransportFailure(statusError(head, peer_));
    if (!answered_) {
      throw TransportFailure(Kind::kAnsweredEarly,
                             peer_ + " answered (HTTP status " + std::to_string(head.status) +
                                 ") before it had the whole request.",
                             "Ask whoever runs the server.");
    }
    if (first != nullptr) response_.fetch(*connection_);  // nobody is going to read it
    copyText(head.protocolVersions, first, firstLength);
    copyText(head.protocolCommands, second, secondLength);
  });
}

HttpTransport::SYNC_RESULT HttpTransport::Read(UINT8* destination, INT32* count, INT32 raw) {
  if (raw != 0) return readWhole(destination, count);
  if (response_.take(destination, *count)) return AS_RESULT_OK;
  return readSlowly(destination, count);
}

HttpTransport::SYNC_RESULT HttpTransport::readSlowly(UINT8* destination, INT32* count) {
  const INT32 wanted = std::exchange(*count, 0);
  std::size_t got = 0;
  const SYNC_RESULT result = guarded([&] {
    requirePhase(Phase::kResponse, "Read");
    if (wanted < 0 || (destination == nullptr && wanted != 0)) throw misuse("Read without room");
    response_.fetch(*connection_);
    response_.read(*connection_, {destination, static_cast<std::size_t>(wanted)}, got);
    if (got == static_cast<std::size_t>(wanted)) return;
    const std::uint64_t size = response_.bodyBytes();
    throw TransportFailure(Kind::kBodyEnded,
                           "The body of the answer of " + peer_ + " ended after " + std::to_string(size) +
                               " bytes, though it was not complete.",
                           "Try again; if it happens again, ask whoever runs the server.");
  });
  *count = static_cast<INT32>(got);
  return result;
}

HttpTransport::SYNC_RESULT HttpTransport::readWhole(UINT8* destination, INT32* count) {
  const INT32 room = std::exchange(*count, 0);
  std::size_t got = 0;
  const SYNC_RESULT result = guarded([&] {
    requirePhase(Phase::kResponse, "Read");
    if (room < 0 || (destination == nullptr && room != 0)) throw misuse("Read without room");
    readPieces({destination, static_cast<std::size_t>(room)}, got);
    if (response_.endsHere(*connection_)) return;
    throw TransportFailure(
        Kind::kTooLarge,
        "The body of the answer of " + peer_ + " is longer than " + std::to_string(room) + " bytes.",
        "Ask whoever runs the server: it had told another size.");
  });
  *count = static_cast<INT32>(got);
  return result;
}

bool HttpTransport::lastResponseWasEmpty() const {
  return phase_ == Phase::kResponse && status_ == 200 && response_.endedEmpty();
}

// Many servers hang up without a word when they are greeted by the wrong protocol.
bool HttpTransport::mayExpectTls(TransportErrorKind kind) const {
  return kind == Kind::kClosedEarly && options_.scheme == Scheme::kHttp && !spoke_ &&
         response_.arrived() == 0;
}

RequestFate HttpTransport::fate() const {
  if (answered_) return RequestFate::kAnswered;
  return touched_ ? RequestFate::kUnknown : RequestFate::kNotSent;
}

void HttpTransport::requirePhase(Phase phase, const char* operation) const {
  if (phase_ == phase) return;
  throw misuse(std::string(operation) + " came out of order");
}

void HttpTransport::startRequest(const char* head, INT32 length, UINT32 contentLength) {
  // Part of a request went out, and nobody waited for its response: the connection is spoilt.
  if (phase_ == Phase::kSending && prepared_) drop();
  if (!open_) throw misuse("SendHeader came before Open");
  if (head == nullptr || length < 2 || head[length - 1] != '\0') throw misuse("SendHeader without a head");
  const std::string_view text(head, static_cast<std::size_t>(length) - 1);
  if (text.find('\0') != std::string_view::npos) throw misuse("there is a NUL inside the head");
  request_.start(text, contentLength);
  traceHead(options_.trace, HeadOf::kRequest, text);
  response_.pause();
  phase_ = Phase::kSending;
  prepared_ = reused_ = earlyAnswer_ = touched_ = answered_ = false;
  bodyLength_.reset();
  status_ = 0;
}

}  // namespace airsync
