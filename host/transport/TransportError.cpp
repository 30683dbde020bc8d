#include "transport/TransportError.h"

#include <algorithm>
#include <array>

namespace airsync {

namespace {

using Kind = TransportErrorKind;
using Class = TransportErrorClass;

struct KindRow {
  Kind kind;
  Class errorClass;
  std::string_view name;
};

constexpr std::array<KindRow, 22> kKinds = {{
    {Kind::kNone, Class::kNone, "none"},
    {Kind::kConfiguration, Class::kConfiguration, "configuration"},
    {Kind::kResolve, Class::kNetwork, "resolve"},
    {Kind::kConnect, Class::kNetwork, "connect"},
    {Kind::kConnectTimeout, Class::kNetwork, "connect-timeout"},
    {Kind::kIdleTimeout, Class::kNetwork, "idle-timeout"},
    {Kind::kTotalTimeout, Class::kNetwork, "total-timeout"},
    {Kind::kTlsExpired, Class::kTls, "tls-expired"},
    {Kind::kTlsNotYetValid, Class::kTls, "tls-not-yet-valid"},
    {Kind::kTlsSelfSigned, Class::kTls, "tls-self-signed"},
    {Kind::kTlsUntrusted, Class::kTls, "tls-untrusted"},
    {Kind::kTlsWrongHost, Class::kTls, "tls-wrong-host"},
    {Kind::kTlsProtocolVersion, Class::kTls, "tls-protocol-version"},
    {Kind::kTls, Class::kTls, "tls"},
    {Kind::kProtocol, Class::kServer, "protocol"},
    {Kind::kClosedEarly, Class::kNetwork, "closed-early"},
    {Kind::kBodyEnded, Class::kServer, "body-ended"},
    {Kind::kTooLarge, Class::kServer, "too-large"},
    {Kind::kHttpStatus, Class::kServer, "http-status"},
    {Kind::kAnsweredEarly, Class::kServer, "answered-early"},
    {Kind::kCancelled, Class::kCancelled, "cancelled"},
    {Kind::kInternal, Class::kInternal, "internal"},
}};

constexpr bool rowsStandAtTheirNumber() {
  for (std::size_t i = 0; i < kKinds.size(); ++i) {
    if (static_cast<std::size_t>(kKinds[i].kind) != i) return false;
  }
  return true;
}
static_assert(rowsStandAtTheirNumber());
static_assert(kKinds.back().kind == Kind::kInternal);

const KindRow& rowOf(Kind kind) { return kKinds.at(static_cast<std::size_t>(kind)); }

}  // namespace

TransportErrorClass TransportError::errorClass() const {
  constexpr std::uint16_t unauthorized = 401;
  if (kind == Kind::kHttpStatus && httpStatus == unauthorized) return Class::kLogin;
  return rowOf(kind).errorClass;
}

std::string TransportError::sentence() const {
  if (advice.empty()) return what;
  return what + ' ' + advice;
}

std::string_view nameOf(TransportErrorKind kind) { return rowOf(kind).name; }

TransportFailure misuse(const std::string& what) {
  return {Kind::kInternal, "The transport was not used as it must be: " + what + '.',
          "This is a defect of the program; please report it."};
}

std::string printable(std::string_view text, std::size_t limit) {
  std::string result(text.substr(0, limit));
  const auto isControl = [](char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte < 0x20 || byte == 0x7f;
  };
  std::replace_if(result.begin(), result.end(), isControl, '?');
  if (text.size() > limit) result += "...";
  return result;
}

}  // namespace airsync
