// From a host name to addresses.
#ifndef AIRSYNC_TRANSPORT_RESOLVER_H
#define AIRSYNC_TRANSPORT_RESOLVER_H

#include <boost/asio/ip/tcp.hpp>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "transport/CancelSignal.h"
#include "transport/Deadline.h"

namespace airsync {

using Endpoints = std::vector<boost::asio::ip::tcp::endpoint>;

/// Returns the addresses of `host`, best first; throws std::exception when there are none. It may block, and
/// runs on a thread of its own, which may outlive the transport: it must not refer to anything that dies.
using Resolve = std::function<Endpoints(const std::string& host, std::uint16_t port)>;

/// The system's resolver.
Endpoints systemResolve(const std::string& host, std::uint16_t port);

/// Resolves `host`; IP literals need no resolver. Returns at once on `cancel` and at `deadline`, even though
/// the resolver, which can't be interrupted, goes on in its thread. Throws TransportFailure: kResolve,
/// kConnectTimeout, kCancelled.
Endpoints resolveHost(const Resolve& resolve, const std::string& host, std::uint16_t port,
                      Clock::time_point deadline, const CancelSignal& cancel);

}  // namespace airsync

#endif
