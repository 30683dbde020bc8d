// The part of HttpTransport that touches the network: connections, and one exchange on them.
#include <algorithm>
#include <utility>

#include "transport/Connector.h"
#include "transport/HttpTransport.h"
#include "transport/Tls.h"

namespace airsync {

namespace {

using Kind = TransportErrorKind;

// What is left of a body that nobody read is worth this much before a new connection is cheaper.
constexpr std::size_t kDrainLimit = std::size_t{64} * 1024;
constexpr std::chrono::milliseconds kDrainTime{500};
// A reset comes right behind the answer that it belongs to.
constexpr std::chrono::milliseconds kResetTime{100};

// What of a name's addresses is on this machine.
Endpoints onlyLoopback(const Endpoints& endpoints, const std::string& host) {
  Endpoints kept;
  std::string others;
  for (const auto& endpoint : endpoints) {
    if (endpoint.address().is_loopback()) {
      kept.push_back(endpoint);
    } else {
      others += (others.empty() ? "" : ", ") + endpoint.address().to_string();
    }
  }
  if (!kept.empty()) return kept;
  throw TransportFailure(Kind::kConfiguration,
                         "The host name " + printable(host) + " is not this machine's: it stands for " +
                             others +
                             ", and plain http would send the password readable by everyone on the way.",
                         "Let the account's url begin with https://, or set allow_plain_http = true if you "
                         "know what you do.");
}

}  // namespace

void HttpTransport::connect() {
  if (options_.host.empty()) {
    throw TransportFailure(Kind::kConfiguration, "No host is given.", "Check the account's url.");
  }
  if (waitFor({}, Clock::now(), cancel_) == WaitResult::kCancelled) {
    throw TransportFailure(Kind::kCancelled, "Cancelled before connecting to " + peer_ + '.');
  }
  const bool encrypted = options_.scheme == Scheme::kHttps;
  if (encrypted && !tls_) tls_ = makeTlsContext(options_.caFile);
  const Clock::time_point deadline = Clock::now() + options_.connectTimeout;
  trace("connecting to " + peer_);
  Endpoints endpoints = resolveHost(options_.resolve, options_.host, options_.port, deadline, cancel_);
  if (options_.loopbackOnly) endpoints = onlyLoopback(endpoints, options_.host);
  auto connection = std::make_unique<Connection>(
      connectToFirst(context_, endpoints, peer_, deadline, cancel_), peer_, cancel_);
  if (encrypted) {
    connection->setPatience({deadline, options_.connectTimeout});
    connection->startTls(*tls_, options_.host);
  }
  trace(encrypted ? "connected, the certificate is verified" : "connected, without encryption");
  connection_ = std::move(connection);
  response_.reset();
  carried_ = false;
  keepAlive_ = true;
}

void HttpTransport::drop() noexcept {
  connection_.reset();
  response_.reset();
}

// A connection that is fit for a request that has not begun yet.
void HttpTransport::prepareConnection() {
  if (connection_ && !canBeReused()) {
    trace("the connection is of no more use");
    drop();
  }
  reused_ = connection_ && carried_;
  if (!connection_) connect();
  writtenBefore_ = connection_->written();
  response_.begin();
  exchangeEnd_ = Clock::now() + options_.totalTimeout;
  armExchange();
  prepared_ = true;
}

bool HttpTransport::canBeReused() {
  if (!keepAlive_) return false;
  connection_->setPatience({Clock::now() + kDrainTime, kDrainTime});
  try {
    if (!response_.drain(*connection_, kDrainLimit)) return false;
  } catch (const TransportFailure& failure) {
    if (failure.kind() == Kind::kCancelled) throw;
    return false;
  }
  return !response_.hasSurplus() && connection_->isQuiet();
}

void HttpTransport::armExchange() {
  connection_->setPatience({exchangeEnd_, options_.idleTimeout, options_.totalTimeout});
}

void HttpTransport::write(std::span<const UINT8> bytes, bool raw) {
  const bool sent = prepared_ && request_.isComplete();
  if (sent && bytes.empty()) return;
  const std::uint64_t before = request_.given();
  if (!request_.announce(bytes.size(), raw)) throw misuse("more body bytes came than were announced");
  const bool staged = request_.isKept() || request_.fits(bytes.size());
  if (staged) {
    request_.stage(bytes);
  } else {
    sendStaged();
    sendPieces(bytes, before, raw);
  }
  if (!request_.isComplete()) return;
  if (raw && staged) tellRaw(before, bytes.size(), request_.contentLength());
  sendStaged();
  if (raw) tellRaw(request_.given(), 0, request_.contentLength());
}

void HttpTransport::sendPieces(std::span<const UINT8> bytes, std::uint64_t before, bool raw) {
  for (std::size_t sent = 0; sent < bytes.size();) {
    const std::size_t piece = std::min(bytes.size() - sent, kRawPiece);
    if (!earlyAnswer_) earlyAnswer_ = response_.takePending(*connection_);
    if (raw) tellRaw(before + sent, piece, request_.contentLength());
    send(bytes.subspan(sent, piece));
    sent += piece;
  }
}

void HttpTransport::readPieces(std::span<UINT8> destination, std::size_t& got) {
  for (std::size_t end = 0; got == end && end < destination.size();) {
    end = std::min(destination.size(), got + kRawPiece);
    tellRaw(got, end - got, destination.size());
    response_.read(*connection_, destination.first(end), got);
  }
  tellRaw(got, 0, destination.size());
}

void HttpTransport::tellRaw(std::uint64_t done, std::uint64_t next, std::uint64_t total) const {
  if (options_.watchRaw) options_.watchRaw({done, next, total});
}

void HttpTransport::finishSending() {
  if (!request_.isComplete()) {
    throw misuse("the request's body is " + std::to_string(request_.contentLength()) + " bytes, but only " +
                 std::to_string(request_.given()) + " came");
  }
  if (!prepared_) sendStaged();
}

void HttpTransport::sendStaged() {
  if (!prepared_) prepareConnection();
  send(request_.staged());
  if (!request_.isKept()) request_.clear();
}

// A server that refuses a request may answer before it has the whole of it, and hang up or read no further.
// Its answer says more than the broken connection, so the rest of the request is swallowed and the answer
// read.
void HttpTransport::send(std::span<const UINT8> bytes) {
  if (earlyAnswer_) return;
  try {
    writeNow(bytes);
  } catch (const TransportFailure& failure) {
    if (failure.kind() == Kind::kCancelled) throw;
    if (takeEarlyAnswer()) return;
    if (!mayResend(failure)) throw;
    resend();
  }
}

void HttpTransport::writeNow(std::span<const UINT8> bytes) {
  const auto note = [this] { touched_ = touched_ || connection_->written() != writtenBefore_; };
  try {
    connection_->write(bytes);
  } catch (const TransportFailure&) {
    note();
    throw;
  }
  note();
}

bool HttpTransport::takeEarlyAnswer() {
  earlyAnswer_ = response_.takePending(*connection_);
  armExchange();
  return earlyAnswer_;
}

bool HttpTransport::mayResend(const TransportFailure& failure) const {
  const bool harmless = !touched_ || request_.mayBeRepeated();
  return failure.kind() == Kind::kClosedEarly && reused_ && response_.arrived() == 0 && harmless;
}

void HttpTransport::resend() {
  trace("the server had closed the connection; sending the request again on a new one");
  drop();
  connect();
  reused_ = false;
  writtenBefore_ = connection_->written();
  armExchange();
  writeNow(request_.staged());
}

ResponseHead HttpTransport::readHead(std::optional<std::uint64_t> roomForBody) {
  for (;;) {
    try {
      ResponseHead head = response_.readHead(*connection_, options_.trace, roomForBody);
      carried_ = spoke_ = true;
      keepAlive_ = head.keepAlive && !earlyAnswer_;
      phase_ = Phase::kResponse;
      request_.clear();
      return head;
    } catch (const TransportFailure& failure) {
      if (!mayResend(failure)) throw;
    }
    resend();
  }
}

// Whether the server had all of the request when it answered. Of a document, which is small, that is taken
// for granted unless sending it has failed. A message may still lie in this machine, or in the server's,
// where nobody has read it: the server's system confirms what it has got with the answer at the latest, and
// what its program has not read by then ends the connection with a reset.
bool HttpTransport::serverTookAll() {
  if (earlyAnswer_) return false;
  if (!request_.isMessage()) return true;
  if (connection_->hasUnconfirmed()) return false;
  response_.fetch(*connection_);
  return !connection_->isResetWithin(kResetTime);
}

void HttpTransport::trace(const std::string& event) const {
  if (options_.trace) options_.trace("* " + event);
}

}  // namespace airsync
