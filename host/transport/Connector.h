// From addresses to one connected socket.
#ifndef AIRSYNC_TRANSPORT_CONNECTOR_H
#define AIRSYNC_TRANSPORT_CONNECTOR_H

#include <boost/asio/io_context.hpp>
#include <string>

#include "transport/CancelSignal.h"
#include "transport/Resolver.h"

namespace airsync {

/// Connects to the first of `endpoints` that answers. They are tried in their order, the next one as soon
/// as one has failed or has not answered within a quarter of a second, while the earlier ones stay under
/// way: one dead address (often IPv6) costs no more than that. Returns a non-blocking socket. Throws
/// TransportFailure: kConnect, kConnectTimeout, kCancelled; `peer` names the server in its sentence.
boost::asio::ip::tcp::socket connectToFirst(boost::asio::io_context& context, const Endpoints& endpoints,
                                            const std::string& peer, Clock::time_point deadline,
                                            const CancelSignal& cancel);

}  // namespace airsync

#endif
