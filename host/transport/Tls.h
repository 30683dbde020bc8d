// What this transport demands of TLS: version 1.2 or newer, a certificate that is verified, the right name.
#ifndef AIRSYNC_TRANSPORT_TLS_H
#define AIRSYNC_TRANSPORT_TLS_H

#include <boost/asio/ssl/context.hpp>
#include <memory>
#include <string>

#include "transport/TransportError.h"

namespace airsync {

/// A client context that trusts the authorities in `caFile` (PEM), or, when that is empty, those of the
/// system's store. Throws TransportFailure(kConfiguration) when the file can't be used.
std::unique_ptr<boost::asio::ssl::context> makeTlsContext(const std::string& caFile);

/// Before the handshake: the certificate must be `host`'s (a name or an IP literal), and a name is announced
/// to the server.
void expectHost(SSL* tls, const std::string& host);

/// What a failed handshake means, in a person's words.
TransportFailure handshakeFailure(SSL* tls, const boost::system::error_code& error, const std::string& peer);

}  // namespace airsync

#endif
