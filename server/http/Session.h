// One connection: reads requests, has the service answer them, and brings the answers onto the wire with
// whatever faults they are to have.
//
// Limits: a head of 16 KiB (431 beyond), a body of Service::bodyLimit (413 beyond), and for all connections
// together the bytes of the load, as they come (503 beyond, and nothing is done); what is no HTTP/1.1 is
// answered with 400, and so is a request line with a space in its target.
#pragma once

#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/ssl/context.hpp>

#include "http/Listener.h"
#include "http/Load.h"
#include "http/Service.h"

namespace demoserver {

// Serves the connection for as long as it lasts; returns at once. `tls` is null for plain http. All that is
// passed by reference or pointer must live as long as the socket's io_context runs.
void serve(boost::asio::ip::tcp::socket socket, boost::asio::ssl::context* tls, Service& service,
           const ListenerOptions& options, Load& load);

}  // namespace demoserver
