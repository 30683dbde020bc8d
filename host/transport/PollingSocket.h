// A connected socket whose reads and writes wait no longer than they are told to, and end on Cancel.
#ifndef AIRSYNC_TRANSPORT_POLLING_SOCKET_H
#define AIRSYNC_TRANSPORT_POLLING_SOCKET_H

#include <boost/asio/ip/tcp.hpp>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <utility>

#include "transport/CancelSignal.h"
#include "transport/Deadline.h"

namespace airsync {

/// How long the reads and writes that follow may wait.
struct Patience {
  Clock::time_point end;           // of everything
  std::chrono::milliseconds idle;  // of each single wait
  /// When not 0: every kProgress bytes that moved set `end` to that much from now.
  std::chrono::milliseconds renewal{0};

  static constexpr std::size_t kProgress = std::size_t{64} * 1024;

  /// Takes what is there and does not wait at all.
  static Patience none() { return {Clock::now(), std::chrono::milliseconds(0)}; }
};

/// What ended the last wait, where it was not the peer.
enum class WaitEnd { kReady, kCancelled, kIdle, kTotal };

/// Has the synchronous stream operations that asio's TLS stream wants of the layer below it. They wait in
/// poll(), never in the kernel's read or write. A wait that ended without data yields operation_aborted, and
/// `waitEnd` says why. The cancel signal must outlive the socket.
class PollingSocket {
 public:
  using lowest_layer_type = boost::asio::ip::tcp::socket;
  using executor_type = lowest_layer_type::executor_type;

  PollingSocket(boost::asio::ip::tcp::socket socket, const CancelSignal& cancel)
      : socket_(std::move(socket)), cancel_(cancel), patience_(Patience::none()) {}

  void setPatience(const Patience& patience) {
    patience_ = patience;
    moved_ = 0;
  }
  const Patience& patience() const { return patience_; }
  WaitEnd waitEnd() const { return waitEnd_; }

  /// Bytes that the system has taken so far.
  std::uint64_t written() const { return written_; }
  /// Whether the peer's system has not confirmed all of them yet.
  bool hasUnconfirmed();
  /// Waits for a reset, whatever else arrives.
  bool isResetWithin(std::chrono::milliseconds time);

  template <class Buffers>
  std::size_t read_some(const Buffers& buffers, boost::system::error_code& error) {
    return transfer(POLLIN, error, [&] { return socket_.read_some(buffers, error); });
  }

  template <class Buffers>
  std::size_t write_some(const Buffers& buffers, boost::system::error_code& error) {
    const std::size_t count = transfer(POLLOUT, error, [&] { return socket_.write_some(buffers, error); });
    written_ += count;
    return count;
  }

  lowest_layer_type& lowest_layer() { return socket_; }
  executor_type get_executor() { return socket_.get_executor(); }

 private:
  // poll() may promise what the kernel does not keep: then the wait starts over.
  template <class Operation>
  std::size_t transfer(short event, boost::system::error_code& error, Operation operation) {
    for (;;) {
      if (!wait(event, error)) return 0;
      const std::size_t count = operation();
      if (error == boost::asio::error::would_block || error == boost::asio::error::try_again) continue;
      progress(count);
      return count;
    }
  }

  bool wait(short event, boost::system::error_code& error);
  void progress(std::size_t count);

  boost::asio::ip::tcp::socket socket_;
  const CancelSignal& cancel_;
  Patience patience_;
  std::size_t moved_ = 0;  // since `end` was set last
  std::uint64_t written_ = 0;
  WaitEnd waitEnd_ = WaitEnd::kReady;
};

}  // namespace airsync

#endif
