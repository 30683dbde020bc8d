#include "unit/transport/ScriptedServer.h"

#include <algorithm>
#include <array>
#include <boost/asio/read.hpp>
#include <boost/asio/write.hpp>
#include <linux/sockios.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <utility>

namespace airsync::testing {

namespace asio = boost::asio;
using tcp = asio::ip::tcp;

Peer::Peer(tcp::socket socket, asio::ssl::context* tls) : socket_(std::move(socket)) {
  if (tls != nullptr) tls_.emplace(socket_, *tls);
}

bool Peer::handshake() {
  boost::system::error_code error;
  if (tls_) tls_->handshake(asio::ssl::stream_base::server, error);
  return !error;
}

bool Peer::readMore() {
  std::array<char, 65536> piece;
  boost::system::error_code error;
  const std::size_t count =
      tls_ ? tls_->read_some(asio::buffer(piece), error) : socket_.read_some(asio::buffer(piece), error);
  buffer_.append(piece.data(), count);
  return !error;
}

std::string Peer::readBytes(std::size_t count) {
  while (buffer_.size() < count && readMore()) continue;
  const std::string bytes = buffer_.substr(0, count);
  buffer_.erase(0, bytes.size());
  return bytes;
}

std::string Peer::readNoMoreThan(std::size_t count) {
  std::string bytes(count, '\0');
  boost::system::error_code error;
  bytes.resize(asio::read(socket_, asio::buffer(bytes), error));
  return bytes;
}

std::string Peer::readRequest() {
  std::size_t end = 0;
  while ((end = buffer_.find("\r\n\r\n")) == std::string::npos) {
    if (!readMore()) return std::exchange(buffer_, {});
  }
  const std::string name = "Content-Length: ";
  const std::size_t length = buffer_.find(name);
  const std::size_t body = length < end ? std::stoul(buffer_.substr(length + name.size())) : 0;
  return readBytes(end + 4 + body);
}

std::string Peer::readToEnd() {
  while (readMore()) continue;
  return std::exchange(buffer_, {});
}

bool Peer::send(std::string_view bytes) {
  boost::system::error_code error;
  const auto buffer = asio::buffer(bytes.data(), bytes.size());
  if (tls_) {
    asio::write(*tls_, buffer, error);
  } else {
    asio::write(socket_, buffer, error);
  }
  return !error;
}

// An orderly shutdown would wait for the client's answer; without blocking it only says its part.
void Peer::sendCloseNotify() {
  boost::system::error_code ignored;
  socket_.non_blocking(true, ignored);
  tls_->shutdown(ignored);
  socket_.non_blocking(false, ignored);
  waitUntilDelivered();
}

void Peer::waitUntilDelivered() {
  const int descriptor = socket_.native_handle();
  int waiting = 0;
  tcp_info info{};
  socklen_t size = sizeof info;
  while (::ioctl(descriptor, SIOCOUTQ, &waiting) == 0 && waiting > 0 &&
         ::getsockopt(descriptor, IPPROTO_TCP, TCP_INFO, &info, &size) == 0 && info.tcpi_state != TCP_CLOSE) {
    std::this_thread::yield();
  }
}

void Peer::finish() {
  ::shutdown(socket_.native_handle(), SHUT_WR);
  waitUntilDelivered();
}

bool Peer::receivedCloseNotify() {
  return (::SSL_get_shutdown(tls_->native_handle()) & SSL_RECEIVED_SHUTDOWN) != 0;
}

void Peer::reset() {
  boost::system::error_code ignored;
  socket_.set_option(asio::socket_base::linger(true, 0), ignored);
  socket_.close(ignored);
}

void Peer::abort() { ::shutdown(socket_.native_handle(), SHUT_RDWR); }

ScriptedServer::ScriptedServer(std::vector<Script> scripts, asio::ssl::context* tls)
    : scripts_(std::move(scripts)),
      tls_(tls),
      acceptor_(context_, tcp::endpoint(asio::ip::address_v4::loopback(), 0)),
      port_(acceptor_.local_endpoint().port()),
      thread_([this] { acceptAll(); }) {}

ScriptedServer::~ScriptedServer() {
  {
    const std::lock_guard lock(mutex_);
    stopping_ = true;
    for (const auto& session : sessions_) {
      if (!session->closed) session->peer->abort();
    }
  }
  ::shutdown(acceptor_.native_handle(), SHUT_RDWR);  // wakes accept()
  thread_.join();
  for (const auto& session : sessions_) session->thread.join();
}

void ScriptedServer::acceptAll() {
  for (std::size_t index = 0;; ++index) {
    boost::system::error_code error;
    tcp::socket socket(context_);
    acceptor_.accept(socket, error);
    const std::lock_guard lock(mutex_);
    if (error || stopping_) return;
    sessions_.push_back(std::make_unique<Session>());
    sessions_.back()->peer = std::make_unique<Peer>(std::move(socket), tls_);
    const Script script = index < scripts_.size() ? scripts_[index] : [](Peer&) {};
    sessions_.back()->thread = std::thread([this, index, script] { serve(index, script); });
    changed_.notify_all();
  }
}

void ScriptedServer::serve(std::size_t index, const Script& script) {
  Peer* peer = nullptr;
  {
    const std::lock_guard lock(mutex_);
    peer = sessions_[index]->peer.get();
  }
  if (peer->handshake()) script(*peer);
  peer->finish();
  const std::lock_guard lock(mutex_);
  sessions_[index]->peer.reset();
  sessions_[index]->closed = true;
  changed_.notify_all();
}

void ScriptedServer::waitForClosed(std::size_t count) {
  std::unique_lock lock(mutex_);
  changed_.wait(lock, [&] {
    return sessions_.size() >= count &&
           std::all_of(sessions_.begin(), sessions_.begin() + static_cast<std::ptrdiff_t>(count),
                       [](const auto& session) { return session->closed; });
  });
}

void ScriptedServer::waitForAccepted(std::size_t count) {
  std::unique_lock lock(mutex_);
  changed_.wait(lock, [&] { return sessions_.size() >= count; });
}

std::size_t ScriptedServer::accepted() {
  const std::lock_guard lock(mutex_);
  return sessions_.size();
}

}  // namespace airsync::testing
