#include "transport/Connection.h"

#include <array>
#include <boost/asio/ssl/error.hpp>
#include <boost/asio/write.hpp>
#include <exception>
#include <openssl/err.h>

#include "transport/Tls.h"

namespace airsync {

namespace {

namespace asio = boost::asio;
using Kind = TransportErrorKind;

TransportFailure waitFailure(WaitEnd end, const std::string& peer, const char* doing) {
  const std::string where = std::string(doing) + ' ' + peer;
  switch (end) {
    case WaitEnd::kIdle:
      return {Kind::kIdleTimeout, "Time ran out while " + where + ": nothing moved any more.",
              "Try again; if it happens again, the server or the network is overloaded."};
    case WaitEnd::kTotal:
      return {Kind::kTotalTimeout, "Time ran out while " + where + ": it goes on, but far too slowly.",
              "Try again; if it happens again, the server or the network is overloaded."};
    default:
      return {Kind::kCancelled, "Cancelled while " + where + '.'};
  }
}

}  // namespace

void Connection::startTls(asio::ssl::context& context, const std::string& host) {
  tls_.emplace(socket_, context);
  expectHost(tls_->native_handle(), host);
  boost::system::error_code error;
  tls_->handshake(asio::ssl::stream_base::client, error);
  if (!error) return;
  ERR_clear_error();
  if (error != asio::error::operation_aborted) throw handshakeFailure(tls_->native_handle(), error, peer_);
  if (socket_.waitEnd() == WaitEnd::kCancelled) {
    throw TransportFailure(Kind::kCancelled, "Cancelled during the TLS handshake with " + peer_ + '.');
  }
  throw TransportFailure(Kind::kConnectTimeout, "The TLS handshake with " + peer_ + " took too long.",
                         "Check the port in the account's url; if it is right, try again later.");
}

std::size_t Connection::readSome(std::span<UINT8> destination, boost::system::error_code& error) {
  const auto buffer = asio::buffer(destination.data(), destination.size());
  return tls_ ? tls_->read_some(buffer, error) : socket_.read_some(buffer, error);
}

std::size_t Connection::read(std::span<UINT8> destination) {
  boost::system::error_code error;
  const std::size_t count = readSome(destination, error);
  if (!error) return count;
  if (error == asio::error::eof) return 0;
  fail(error, "reading the answer of");
}

std::size_t Connection::readPending(std::span<UINT8> destination) noexcept {
  const Patience before = socket_.patience();
  try {
    socket_.setPatience(Patience::none());
    boost::system::error_code error;
    const std::size_t count = readSome(destination, error);
    socket_.setPatience(before);
    return error ? 0 : count;
  } catch (const std::exception&) {
    return 0;
  }
}

void Connection::write(std::span<const UINT8> bytes) {
  boost::system::error_code error;
  const auto buffer = asio::buffer(bytes.data(), bytes.size());
  if (tls_) {
    asio::write(*tls_, buffer, error);
  } else {
    asio::write(socket_, buffer, error);
  }
  if (error) fail(error, "sending the request to");
}

// Reading is the only way to learn it: the end may stand in the TLS layer's own buffer, and what the socket
// holds may be a session ticket, which is no reason to drop the connection.
bool Connection::isQuiet() {
  socket_.setPatience(Patience::none());
  std::array<UINT8, 1> unexpected{};
  boost::system::error_code error;
  readSome(unexpected, error);
  if (error != asio::error::operation_aborted) return false;
  if (socket_.waitEnd() == WaitEnd::kCancelled) fail(error, "sending the request to");
  return true;
}

void Connection::sayGoodbye() noexcept {
  if (!tls_) return;
  try {
    socket_.setPatience(Patience::none());
    boost::system::error_code ignored;
    tls_->shutdown(ignored);
  } catch (const std::exception&) {
    // Nobody is left to be told.
  }
  ERR_clear_error();
}

void Connection::fail(const boost::system::error_code& error, const char* doing) const {
  ERR_clear_error();
  if (error == asio::error::operation_aborted) throw waitFailure(socket_.waitEnd(), peer_, doing);
  const std::string what = "The connection broke while " + std::string(doing) + ' ' + peer_ + " (" +
                           printable(error.message()) + ").";
  if (error.category() == asio::error::get_ssl_category()) {
    throw TransportFailure(Kind::kTls, what, "Try again; if it happens again, ask whoever runs the server.");
  }
  throw TransportFailure(Kind::kClosedEarly, what, "Try again.");
}

}  // namespace airsync
