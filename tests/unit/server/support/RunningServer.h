// The server on a port of its own, served by a thread until the end of the test; and a connection to it that
// sends and receives bytes as they are.
#pragma once

#include <boost/asio/connect.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/read.hpp>
#include <boost/asio/read_until.hpp>
#include <boost/asio/write.hpp>
#include <string>
#include <thread>

#include "http/Listener.h"
#include "support/Requests.h"

namespace demoserver {

class RunningServer {
 public:
  RunningServer(State& state, const ServiceOptions& options, const ListenerOptions& listener = {})
      : service_(state, options), listener_(service_, listener), thread_([this] { listener_.run(); }) {}
  ~RunningServer() {
    listener_.stop();
    thread_.join();
  }
  RunningServer(const RunningServer&) = delete;
  RunningServer& operator=(const RunningServer&) = delete;

  std::uint16_t port() const { return listener_.port(); }
  std::string endpoint() const { return listener_.endpoint(); }

 private:
  Service service_;
  Listener listener_;
  std::thread thread_;
};

// The bytes of a POST of one command.
inline std::string wireRequest(const std::string& command, const std::string& body) {
  return "POST /sync?Cmd=" + command +
         "&User=demo&DeviceId=D1&DeviceType=PC HTTP/1.1\r\nHost: localhost\r\n" +
         "Authorization: " + kDemoAuthorization + "\r\nContent-Length: " + std::to_string(body.size()) +
         "\r\n\r\n" + body;
}

class Connection {
 public:
  explicit Connection(std::uint16_t port) : socket_(context_) {
    socket_.connect({boost::asio::ip::address_v4::loopback(), port});
  }

  void send(const std::string& bytes) { boost::asio::write(socket_, boost::asio::buffer(bytes)); }

  // Bytes that have come and were not read yet.
  std::size_t waiting() { return buffer_.size() + socket_.available(); }

  // Everything up to and including the empty line that ends a head.
  std::string head() { return until("\r\n\r\n"); }
  std::string until(const std::string& mark) {
    boost::system::error_code error;
    const std::size_t count =
        boost::asio::read_until(socket_, boost::asio::dynamic_buffer(buffer_), mark, error);
    return take(count);
  }
  std::string bytes(std::size_t count) {
    boost::system::error_code error;
    if (buffer_.size() < count)
      boost::asio::read(socket_, boost::asio::dynamic_buffer(buffer_),
                        boost::asio::transfer_exactly(count - buffer_.size()), error);
    return take(std::min(count, buffer_.size()));
  }
  // Sends a request, and returns the status line of its answer.
  std::string ask(const std::string& request) {
    send(request);
    return answer().first;
  }
  // All that still comes before the server closes.
  std::string rest() {
    boost::system::error_code error;
    boost::asio::read(socket_, boost::asio::dynamic_buffer(buffer_), error);
    return take(buffer_.size());
  }
  // A whole answer with a Content-Length: its status line and its body.
  std::pair<std::string, std::string> answer() {
    const std::string text = head();
    const std::size_t length = text.find("Content-Length: ");
    const std::string body = length == std::string::npos
                                 ? ""
                                 : bytes(static_cast<std::size_t>(std::stoul(text.substr(length + 16))));
    return {text.substr(0, text.find('\r')), body};
  }

 private:
  std::string take(std::size_t count) {
    const std::string taken = buffer_.substr(0, count);
    buffer_.erase(0, count);
    return taken;
  }

  boost::asio::io_context context_;
  boost::asio::ip::tcp::socket socket_;
  std::string buffer_;
};

}  // namespace demoserver
