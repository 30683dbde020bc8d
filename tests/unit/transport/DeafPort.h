// An address that does not answer.
#ifndef AIRSYNC_TESTS_TRANSPORT_DEAF_PORT_H
#define AIRSYNC_TESTS_TRANSPORT_DEAF_PORT_H

#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <cstdint>
#include <sys/socket.h>
#include <vector>

namespace airsync::testing {

// A port that takes no connection and refuses none: its queue is full.
class DeafPort {
 public:
  DeafPort() : listener_(context_, boost::asio::ip::tcp::v4()) {
    listener_.bind({boost::asio::ip::address_v4::loopback(), 0});
    listener_.listen(0);
    for (int i = 0; i < 8; ++i) {
      fillers_.emplace_back(context_, boost::asio::ip::tcp::v4());
      fillers_.back().non_blocking(true);
      const auto endpoint = listener_.local_endpoint();
      ::connect(fillers_.back().native_handle(), endpoint.data(), static_cast<socklen_t>(endpoint.size()));
    }
  }
  std::uint16_t port() const { return listener_.local_endpoint().port(); }

 private:
  boost::asio::io_context context_;
  boost::asio::ip::tcp::acceptor listener_;
  std::vector<boost::asio::ip::tcp::socket> fillers_;
};

}  // namespace airsync::testing

#endif
