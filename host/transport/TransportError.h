// What can go wrong between this machine and the server, and how it is told.
//
// The library knows one number for it (AS_RESULT_TRANSPORT_FAILED); people need the story. So the transport
// keeps a TransportError of its last failure, which the program reads after a command has failed.
#ifndef AIRSYNC_TRANSPORT_TRANSPORT_ERROR_H
#define AIRSYNC_TRANSPORT_TRANSPORT_ERROR_H

#include <cstdint>
#include <exception>
#include <string>
#include <string_view>
#include <utility>

#include "api/ResultCodes.h"

namespace airsync {

enum class TransportErrorKind : std::uint16_t {
  kNone = 0,
  kConfiguration,       // the options can't be used: no host, an unreadable CA file
  kResolve,             // the host name has no address
  kConnect,             // no address of the host took the connection
  kConnectTimeout,      // resolving, connecting and the TLS handshake together took too long
  kIdleTimeout,         // the connection stands, but nothing moved on it
  kTotalTimeout,        // the exchange as a whole took too long
  kTlsExpired,          // the certificate, or one that signed it, has expired
  kTlsNotYetValid,      // the certificate is valid later only: often this machine's clock
  kTlsSelfSigned,       // the certificate was signed by nobody but itself
  kTlsUntrusted,        // nobody in the store of trusted authorities signed the certificate
  kTlsWrongHost,        // the certificate is another host's
  kTlsProtocolVersion,  // the server speaks no TLS that is new enough
  kTls,                 // any other failure of the encryption layer
  kProtocol,            // the answer breaks the rules of HTTP
  kClosedEarly,         // the connection broke, or the server closed it in the middle
  kBodyEnded,           // the answer ended, by its own framing, before the reader was content
  kTooLarge,            // the answer is larger than the limits allow
  kHttpStatus,          // the server answered, with a status that is no success
  kAnsweredEarly,       // it answered with success before it had the whole request
  kCancelled,           // Cancel was called
  kInternal,            // the caller broke the order of calls, or memory ran out
};

/// What a kind means for whoever has to act: one of these per kind, from one table.
enum class TransportErrorClass : std::uint8_t {
  kNone,
  kConfiguration,
  kNetwork,
  kTls,
  kServer,
  kLogin,  // kHttpStatus with status 401
  kCancelled,
  kInternal,
};

struct TransportError {
  TransportErrorKind kind = TransportErrorKind::kNone;
  std::uint16_t httpStatus = 0;  // of the response head, when one arrived; otherwise 0
  std::string what;              // a sentence: what failed, with which host
  std::string advice;            // a sentence: what to do now; empty when there is nothing to do
  std::string location = {};     // kHttpStatus: where the server sends its clients; printable

  explicit operator bool() const { return kind != TransportErrorKind::kNone; }

  TransportErrorClass errorClass() const;

  /// Both sentences as one line. Holds no control characters and no secret.
  std::string sentence() const;
};

/// The family of result codes that the transport returns: or-ed with the kind. The library passes Open's
/// result on to the caller of AirSync::Connect; of the others it only looks whether they are 0.
inline constexpr AIRSYNC_STACK::SYNC_RESULT kTransportResultFamily = 0x80030000;

constexpr AIRSYNC_STACK::SYNC_RESULT resultOf(TransportErrorKind kind) {
  return kind == TransportErrorKind::kNone
             ? static_cast<AIRSYNC_STACK::SYNC_RESULT>(AIRSYNC_STACK::AS_RESULT_OK)
             : kTransportResultFamily | static_cast<AIRSYNC_STACK::SYNC_RESULT>(kind);
}

/// A stable name for machines and traces, for example "tls-expired".
std::string_view nameOf(TransportErrorKind kind);

/// How the layers below HttpTransport report failure. It never leaves HttpTransport.
class TransportFailure : public std::exception {
 public:
  TransportFailure(TransportErrorKind kind, std::string what, std::string advice = {})
      : error_{kind, 0, std::move(what), std::move(advice), {}} {}
  explicit TransportFailure(TransportError error) : error_(std::move(error)) {}

  const TransportError& error() const { return error_; }
  TransportErrorKind kind() const { return error_.kind; }
  const char* what() const noexcept override { return error_.what.c_str(); }

 private:
  TransportError error_;
};

/// The failure of a caller that broke the order of calls or gave bad arguments.
TransportFailure misuse(const std::string& what);

/// Text from the network made fit for a message: control characters become '?', more than `limit` bytes
/// are cut and marked with "...".
std::string printable(std::string_view text, std::size_t limit = 200);

}  // namespace airsync

#endif
