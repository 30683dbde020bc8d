// One connection to the server, plain or encrypted.
#ifndef AIRSYNC_TRANSPORT_CONNECTION_H
#define AIRSYNC_TRANSPORT_CONNECTION_H

#include <boost/asio/ssl/context.hpp>
#include <boost/asio/ssl/stream.hpp>
#include <optional>
#include <span>
#include <string>

#include "support/types.h"
#include "transport/PollingSocket.h"
#include "transport/TransportError.h"

namespace airsync {

/// All operations wait as long as the last setPatience allows and throw TransportFailure: kCancelled,
/// kIdleTimeout, kTotalTimeout, kClosedEarly, and the kinds of TLS. After a failure the connection is good
/// for nothing but its end.
class Connection {
 public:
  /// `peer` names the server in messages.
  Connection(boost::asio::ip::tcp::socket socket, std::string peer, const CancelSignal& cancel)
      : socket_(std::move(socket), cancel), peer_(std::move(peer)) {}

  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  /// Encrypts from here on; the server proves to be `host`. A time-out is kConnectTimeout here.
  void startTls(boost::asio::ssl::context& context, const std::string& host);

  void setPatience(const Patience& patience) { socket_.setPatience(patience); }

  /// Reads at least one byte. 0: the server ended the connection in an orderly way.
  std::size_t read(std::span<UINT8> destination);
  void write(std::span<const UINT8> bytes);

  /// What is there already, without waiting; 0 when there is nothing. Leaves the patience as it is. Never
  /// throws.
  std::size_t readPending(std::span<UINT8> destination) noexcept;

  /// Whether the server has neither closed the connection nor said anything on it. Both would make it
  /// useless for another request. Does not wait. Uses patience up.
  bool isQuiet();

  /// Bytes of the encrypted or plain stream that have left so far. While the number stays the same, the
  /// server has not got anything.
  std::uint64_t written() const { return socket_.written(); }

  /// Whether the server's system has not yet got all that was written.
  bool hasUnconfirmed() { return socket_.hasUnconfirmed(); }

  /// Whether the server's system breaks the connection off within `time`. One that closes a connection in
  /// which there are bytes that nobody has read does, right behind what was written before.
  bool isResetWithin(std::chrono::milliseconds time) { return socket_.isResetWithin(time); }

  /// Tells the server that the connection ends, as far as that is possible without waiting.
  void sayGoodbye() noexcept;

  const std::string& peer() const { return peer_; }

 private:
  std::size_t readSome(std::span<UINT8> destination, boost::system::error_code& error);
  [[noreturn]] void fail(const boost::system::error_code& error, const char* doing) const;

  PollingSocket socket_;
  std::optional<boost::asio::ssl::stream<PollingSocket&>> tls_;
  std::string peer_;
};

}  // namespace airsync

#endif
