// The network side: accepts connections on a loopback address and serves each of them until it is closed,
// all on the thread that calls run. More connections than the limit wait until one ends; so do those that
// can't be accepted, for a second at most.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "http/Load.h"
#include "http/Service.h"

namespace demoserver {

struct ListenerOptions {
  std::string address = "127.0.0.1";
  std::uint16_t port = 0;       // 0: any free one
  std::string certificateFile;  // PEM; https is spoken when it is set
  std::string keyFile;          // PEM
  std::size_t chunkSize = 0;    // not 0: bodies are sent in chunks of so many bytes
  int idleSeconds = 300;        // a connection that is silent for so long is closed
  LoadLimits limits;
};

class Listener {
 public:
  // Binds at once. Throws std::runtime_error when the address is no loopback address, is taken, or the
  // certificate can't be used. The service must outlive the listener.
  Listener(Service& service, const ListenerOptions& options);
  ~Listener();

  // "127.0.0.1:1234"; an IPv6 address stands in brackets.
  std::string endpoint() const;
  std::uint16_t port() const;

  // Serves until stop is called, or SIGTERM or SIGINT arrives. To be called once.
  void run();
  // May be called from any thread.
  void stop();

 private:
  class Implementation;
  std::unique_ptr<Implementation> implementation_;
};

}  // namespace demoserver
