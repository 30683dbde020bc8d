#include "transport/Connector.h"

#include <cerrno>
#include <optional>
#include <sstream>
#include <sys/socket.h>
#include <system_error>
#include <utility>
#include <vector>

#include "transport/TransportError.h"

namespace airsync {

namespace {

namespace asio = boost::asio;
using tcp = asio::ip::tcp;

constexpr std::chrono::milliseconds kHeadStart{250};

class Connector {
 public:
  Connector(asio::io_context& context, const Endpoints& endpoints, const std::string& peer,
            Clock::time_point deadline, const CancelSignal& cancel)
      : context_(context), endpoints_(endpoints), peer_(peer), deadline_(deadline), cancel_(cancel) {}

  tcp::socket connect() {
    for (;;) {
      if (auto connected = startNext()) return std::move(*connected);
      if (underWay_.empty() && next_ == endpoints_.size()) throw refused();
      if (auto connected = waitForOne()) return std::move(*connected);
    }
  }

 private:
  struct Attempt {
    tcp::socket socket;
    tcp::endpoint endpoint;
  };

  // Starts the next attempt when it is due. Yields a socket when that is connected at once.
  std::optional<tcp::socket> startNext() {
    const bool due = underWay_.empty() || Clock::now() >= nextStart_;
    if (next_ == endpoints_.size() || !due || underWay_.size() == kMaxWatched) return std::nullopt;
    const tcp::endpoint& endpoint = endpoints_[next_++];
    nextStart_ = Clock::now() + kHeadStart;
    tcp::socket socket(context_);
    boost::system::error_code error;
    socket.open(endpoint.protocol(), error);
    if (!error) socket.non_blocking(true, error);
    if (!error) socket.set_option(tcp::no_delay(true), error);
    if (error) {
      note(endpoint, error.value());
      return std::nullopt;
    }
    // Asio's own connect would wait where no Cancel can reach it.
    const auto size = static_cast<socklen_t>(endpoint.size());
    if (::connect(socket.native_handle(), endpoint.data(), size) == 0) return socket;
    if (errno == EINPROGRESS || errno == EINTR) {
      underWay_.push_back({std::move(socket), endpoint});
    } else {
      note(endpoint, errno);
    }
    return std::nullopt;
  }

  std::optional<tcp::socket> waitForOne() {
    if (underWay_.empty()) return std::nullopt;
    std::vector<pollfd> watched;
    for (Attempt& attempt : underWay_) watched.push_back({attempt.socket.native_handle(), POLLOUT, 0});
    const bool more = next_ < endpoints_.size() && underWay_.size() < kMaxWatched;
    const WaitResult result = waitFor(watched, more ? std::min(nextStart_, deadline_) : deadline_, cancel_);
    if (result == WaitResult::kCancelled) {
      throw TransportFailure(TransportErrorKind::kCancelled, "Cancelled while connecting to " + peer_ + '.');
    }
    if (result == WaitResult::kTimedOut && Clock::now() >= deadline_) throw tooLate();
    return result == WaitResult::kReady ? settle(watched) : std::nullopt;
  }

  // Judges the attempts that poll() reported; the failed ones leave the list.
  std::optional<tcp::socket> settle(const std::vector<pollfd>& watched) {
    for (std::size_t i = watched.size(); i-- > 0;) {
      if (watched[i].revents == 0) continue;
      int error = 0;
      socklen_t size = sizeof error;
      ::getsockopt(watched[i].fd, SOL_SOCKET, SO_ERROR, &error, &size);
      if (error == 0) return std::move(underWay_[i].socket);
      note(underWay_[i].endpoint, error);
      underWay_.erase(underWay_.begin() + static_cast<std::ptrdiff_t>(i));
    }
    return std::nullopt;
  }

  void note(const tcp::endpoint& endpoint, int error) {
    std::ostringstream text;
    text << (failures_.empty() ? "" : "; ") << endpoint << ": " << std::generic_category().message(error);
    failures_ += text.str();
  }

  TransportFailure refused() const {
    return {TransportErrorKind::kConnect, "Could not connect to " + peer_ + " (" + failures_ + ").",
            "Check the host and the port in the account's url, and that the server is running."};
  }

  TransportFailure tooLate() const {
    return {TransportErrorKind::kConnectTimeout,
            "Connecting to " + peer_ + " took too long" +
                (failures_.empty() ? std::string(".") : " (" + failures_ + ")."),
            "Check that this machine is online and that no firewall is in the way; then try again."};
  }

  asio::io_context& context_;
  const Endpoints& endpoints_;
  const std::string& peer_;
  const Clock::time_point deadline_;
  const CancelSignal& cancel_;
  std::vector<Attempt> underWay_;
  std::size_t next_ = 0;
  Clock::time_point nextStart_{};
  std::string failures_;
};

}  // namespace

tcp::socket connectToFirst(asio::io_context& context, const Endpoints& endpoints, const std::string& peer,
                           Clock::time_point deadline, const CancelSignal& cancel) {
  return Connector(context, endpoints, peer, deadline, cancel).connect();
}

}  // namespace airsync
