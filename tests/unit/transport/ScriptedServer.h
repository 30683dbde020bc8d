// A server that does exactly what it is told, piece by piece, on 127.0.0.1.
#ifndef AIRSYNC_TESTS_TRANSPORT_SCRIPTED_SERVER_H
#define AIRSYNC_TESTS_TRANSPORT_SCRIPTED_SERVER_H

#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/ssl/context.hpp>
#include <boost/asio/ssl/stream.hpp>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace airsync::testing {

/// The server's end of one connection, in the hands of its script. No call throws: a client that hangs up
/// is what many scripts wait for.
class Peer {
 public:
  Peer(boost::asio::ip::tcp::socket socket, boost::asio::ssl::context* tls);

  /// With TLS: false when the handshake failed.
  bool handshake();

  /// One request, its head and the body that Content-Length tells; less when the client hung up.
  std::string readRequest();
  /// `count` bytes, or less when the client hung up.
  std::string readBytes(std::size_t count);
  /// The same, and leaves everything behind them in the system, where nobody has read it.
  std::string readNoMoreThan(std::size_t count);
  /// Everything until the client hangs up.
  std::string readToEnd();
  /// False when the client is gone.
  bool send(std::string_view bytes);
  /// Returns when everything sent has arrived in the client's socket: without it, what the client finds
  /// there right afterwards is a matter of luck, even on one machine.
  void waitUntilDelivered();
  /// TLS: says that it closes, and that has arrived, but leaves the socket open.
  void sendCloseNotify();
  bool receivedCloseNotify();
  /// Sends the end of the stream, and that has arrived.
  void finish();
  /// Closes with a reset instead of an orderly end.
  void reset();
  /// Makes reads and writes under way in another thread fail.
  void abort();

 private:
  bool readMore();

  boost::asio::ip::tcp::socket socket_;
  std::optional<boost::asio::ssl::stream<boost::asio::ip::tcp::socket&>> tls_;
  std::string buffer_;
};

/// Gives the n-th connection to the n-th script, each on a thread of its own, and closes it when the script
/// returns. Connections beyond the scripts are closed at once.
class ScriptedServer {
 public:
  using Script = std::function<void(Peer&)>;

  explicit ScriptedServer(std::vector<Script> scripts, boost::asio::ssl::context* tls = nullptr);
  ~ScriptedServer();
  ScriptedServer(const ScriptedServer&) = delete;
  ScriptedServer& operator=(const ScriptedServer&) = delete;

  std::uint16_t port() const { return port_; }

  /// Returns when the scripts of the first `count` connections have returned and these are closed.
  void waitForClosed(std::size_t count);
  /// Returns when `count` connections have been made.
  void waitForAccepted(std::size_t count);

  /// Connections made so far.
  std::size_t accepted();

 private:
  struct Session {
    std::unique_ptr<Peer> peer;
    bool closed = false;
    std::thread thread;
  };

  void acceptAll();
  void serve(std::size_t index, const Script& script);

  std::vector<Script> scripts_;
  boost::asio::ssl::context* tls_;
  boost::asio::io_context context_;
  boost::asio::ip::tcp::acceptor acceptor_;
  std::uint16_t port_;
  std::mutex mutex_;
  std::condition_variable changed_;
  std::vector<std::unique_ptr<Session>> sessions_;
  bool stopping_ = false;
  std::thread thread_;
};

}  // namespace airsync::testing

#endif
