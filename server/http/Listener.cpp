#include "http/Listener.h"

#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/signal_set.hpp>
#include <boost/asio/ssl/context.hpp>
#include <boost/asio/steady_timer.hpp>
#include <chrono>
#include <csignal>
#include <iostream>
#include <optional>
#include <stdexcept>
#include <utility>

#include "http/Session.h"

namespace demoserver {
namespace {

namespace asio = boost::asio;
using asio::ip::tcp;

constexpr std::chrono::seconds kPause(1);

tcp::endpoint endpointOf(const ListenerOptions& options) {
  boost::system::error_code error;
  const auto address = asio::ip::make_address(options.address, error);
  if (error || !address.is_loopback())
    throw std::runtime_error("this server listens on loopback addresses only, which " + options.address +
                             " is not");
  return {address, options.port};
}

std::optional<asio::ssl::context> tlsOf(const ListenerOptions& options) {
  if (options.certificateFile.empty()) return std::nullopt;
  asio::ssl::context context(asio::ssl::context::tls_server);
  context.set_options(asio::ssl::context::no_tlsv1 | asio::ssl::context::no_tlsv1_1);
  boost::system::error_code error;
  context.use_certificate_chain_file(options.certificateFile, error);
  if (error)
    throw std::runtime_error("can't use the certificate " + options.certificateFile + ": " + error.message());
  context.use_private_key_file(options.keyFile, asio::ssl::context::pem, error);
  if (error) throw std::runtime_error("can't use the key " + options.keyFile + ": " + error.message());
  return context;
}

}  // namespace

class Listener::Implementation {
 public:
  Implementation(Service& service, const ListenerOptions& options)
      : service_(service),
        options_(options),
        tls_(tlsOf(options)),
        load_(options.limits),
        acceptor_(context_),
        signals_(context_),
        pause_(context_) {
    const tcp::endpoint endpoint = endpointOf(options);
    boost::system::error_code error;
    acceptor_.open(endpoint.protocol());
    acceptor_.set_option(tcp::acceptor::reuse_address(true));
    acceptor_.bind(endpoint, error);
    if (!error) acceptor_.listen(tcp::acceptor::max_listen_connections, error);
    if (error)
      throw std::runtime_error("can't listen on " + options.address + ":" + std::to_string(options.port) +
                               ": " + error.message());
    bound_ = acceptor_.local_endpoint();
    load_.released = [this] { pause_.cancel(); };
  }
  // The connections end with the context, after the timer.
  ~Implementation() { load_.released = nullptr; }
  Implementation(const Implementation&) = delete;
  Implementation& operator=(const Implementation&) = delete;

  std::string endpoint() const {
    const std::string address = bound_.address().to_string();
    return (bound_.address().is_v6() ? "[" + address + "]" : address) + ":" + std::to_string(port());
  }
  std::uint16_t port() const { return bound_.port(); }

  void run() {
    signals_.add(SIGTERM);
    signals_.add(SIGINT);
    signals_.async_wait([this](const boost::system::error_code& error, int) {
      if (!error) context_.stop();
    });
    accept();
    context_.run();
  }

  void stop() { context_.stop(); }

 private:
  void accept() {
    if (!load_.takesConnections()) return pause();
    acceptor_.async_accept([this](const boost::system::error_code& error, tcp::socket socket) {
      if (error == asio::error::operation_aborted) return;
      if (error) {
        std::cerr << "can't accept a connection: " << error.message() << "; trying again in a second"
                  << std::endl;
        return pause();
      }
      serve(std::move(socket), tls_ ? &*tls_ : nullptr, service_, options_, load_);
      accept();
    });
  }

  // The end of a connection ends it early.
  void pause() {
    pause_.expires_after(kPause);
    pause_.async_wait([this](const boost::system::error_code&) { accept(); });
  }

  Service& service_;
  ListenerOptions options_;
  std::optional<asio::ssl::context> tls_;
  Load load_;
  asio::io_context context_{1};
  tcp::acceptor acceptor_;
  asio::signal_set signals_;
  asio::steady_timer pause_;
  tcp::endpoint bound_;
};

Listener::Listener(Service& service, const ListenerOptions& options)
    : implementation_(std::make_unique<Implementation>(service, options)) {}
Listener::~Listener() = default;

std::string Listener::endpoint() const { return implementation_->endpoint(); }
std::uint16_t Listener::port() const { return implementation_->port(); }
void Listener::run() { implementation_->run(); }
void Listener::stop() { implementation_->stop(); }

}  // namespace demoserver
