#include "transport/Resolver.h"

#include <array>
#include <boost/asio/io_context.hpp>
#include <exception>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>

#include "transport/TransportError.h"

namespace airsync {

namespace {

namespace asio = boost::asio;

// What the resolving thread leaves behind. Shared, because the thread may come back after everybody else
// has lost patience.
struct Resolution {
  CancelSignal finished;
  std::mutex mutex;
  Endpoints endpoints;
  std::string failure;
};

void run(const std::shared_ptr<Resolution>& resolution, const Resolve& resolve, const std::string& host,
         std::uint16_t port) {
  Endpoints endpoints;
  std::string failure = "it has no address";
  try {
    endpoints = resolve(host, port);
  } catch (const std::exception& error) {
    failure = error.what();
  }
  {
    const std::lock_guard lock(resolution->mutex);
    resolution->endpoints = std::move(endpoints);
    resolution->failure = std::move(failure);
  }
  resolution->finished.raise();
}

Endpoints resultOf(Resolution& resolution, const std::string& host) {
  const std::lock_guard lock(resolution.mutex);
  if (resolution.endpoints.empty()) {
    throw TransportFailure(
        TransportErrorKind::kResolve,
        "The host name " + printable(host) + " could not be resolved: " + printable(resolution.failure) + '.',
        "Check the name in the account's url, and that this machine is online.");
  }
  return std::move(resolution.endpoints);
}

}  // namespace

Endpoints systemResolve(const std::string& host, std::uint16_t port) {
  asio::io_context context;
  asio::ip::tcp::resolver resolver(context);
  const auto found = resolver.resolve(host, std::to_string(port), asio::ip::resolver_base::numeric_service);
  Endpoints endpoints;
  for (const auto& entry : found) endpoints.push_back(entry.endpoint());
  return endpoints;
}

Endpoints resolveHost(const Resolve& resolve, const std::string& host, std::uint16_t port,
                      Clock::time_point deadline, const CancelSignal& cancel) {
  boost::system::error_code notLiteral;
  const auto literal = asio::ip::make_address(host, notLiteral);
  if (!notLiteral) return {{literal, port}};

  const auto resolution = std::make_shared<Resolution>();
  std::thread([resolution, resolve = resolve ? resolve : Resolve(systemResolve), host, port] {
    run(resolution, resolve, host, port);
  }).detach();

  std::array<pollfd, 1> watched{{{resolution->finished.descriptor(), POLLIN, 0}}};
  switch (waitFor(watched, deadline, cancel)) {
    case WaitResult::kCancelled:
      throw TransportFailure(TransportErrorKind::kCancelled,
                             "Cancelled while the host name " + printable(host) + " was being resolved.");
    case WaitResult::kTimedOut:
      throw TransportFailure(TransportErrorKind::kConnectTimeout,
                             "Resolving the host name " + printable(host) + " took too long.",
                             "Check that this machine is online and that its name servers answer.");
    case WaitResult::kReady:
      break;
  }
  return resultOf(*resolution, host);
}

}  // namespace airsync
