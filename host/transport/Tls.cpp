#include "transport/Tls.h"

#include <algorithm>
#include <array>
#include <boost/asio/ip/address.hpp>
#include <boost/asio/ssl/error.hpp>
#include <openssl/err.h>
#include <openssl/ssl.h>
#include <openssl/x509v3.h>

namespace airsync {

namespace {

namespace asio = boost::asio;
using Kind = TransportErrorKind;

struct VerifyRow {
  long code;
  Kind kind;
  const char* problem;  // follows "The certificate of HOST "
  const char* advice;
};

constexpr const char* kExpiredAdvice =
    "Ask whoever runs the server to renew it, and check this machine's clock.";
constexpr const char* kClockAdvice = "Check this machine's clock.";
constexpr const char* kTrustAdvice =
    "If you know the authority that signed it, name its file with the account's ca_file.";
constexpr const char* kNameAdvice =
    "Check the host in the account's url, and that the certificate has it as a subjectAltName, the only name "
    "that counts: somebody else may be answering in its place.";

constexpr std::array<VerifyRow, 9> kVerifyRows = {{
    {X509_V_ERR_CERT_HAS_EXPIRED, Kind::kTlsExpired, "has expired", kExpiredAdvice},
    {X509_V_ERR_CERT_NOT_YET_VALID, Kind::kTlsNotYetValid, "is not valid yet", kClockAdvice},
    {X509_V_ERR_DEPTH_ZERO_SELF_SIGNED_CERT, Kind::kTlsSelfSigned, "is signed by nobody but itself",
     kTrustAdvice},
    {X509_V_ERR_SELF_SIGNED_CERT_IN_CHAIN, Kind::kTlsUntrusted, "comes from an authority that is not trusted",
     kTrustAdvice},
    {X509_V_ERR_UNABLE_TO_GET_ISSUER_CERT_LOCALLY, Kind::kTlsUntrusted,
     "comes from an authority that is not trusted", kTrustAdvice},
    {X509_V_ERR_UNABLE_TO_VERIFY_LEAF_SIGNATURE, Kind::kTlsUntrusted,
     "comes from an authority that is not trusted", kTrustAdvice},
    {X509_V_ERR_CERT_SIGNATURE_FAILURE, Kind::kTlsUntrusted, "was not signed by the authority that it names",
     kNameAdvice},
    {X509_V_ERR_HOSTNAME_MISMATCH, Kind::kTlsWrongHost, "was made for another host", kNameAdvice},
    {X509_V_ERR_IP_ADDRESS_MISMATCH, Kind::kTlsWrongHost, "was made for another host", kNameAdvice},
}};

TransportFailure verifyFailure(long code, const std::string& peer) {
  const std::string reason = X509_verify_cert_error_string(code);
  const auto* const row = std::find_if(kVerifyRows.begin(), kVerifyRows.end(),
                                       [&](const VerifyRow& candidate) { return candidate.code == code; });
  if (row == kVerifyRows.end()) {
    return {Kind::kTls, "The certificate of " + peer + " can't be verified (" + reason + ").", kTrustAdvice};
  }
  return {row->kind, "The certificate of " + peer + ' ' + row->problem + " (" + reason + ").", row->advice};
}

bool isVersionProblem(int reason) {
  constexpr std::array<int, 5> reasons = {SSL_R_UNSUPPORTED_PROTOCOL, SSL_R_TLSV1_ALERT_PROTOCOL_VERSION,
                                          SSL_R_VERSION_TOO_LOW, SSL_R_WRONG_SSL_VERSION,
                                          SSL_R_NO_PROTOCOLS_AVAILABLE};
  return std::find(reasons.begin(), reasons.end(), reason) != reasons.end();
}

TransportFailure protocolFailure(const boost::system::error_code& error, const std::string& peer) {
  const int reason = ERR_GET_REASON(static_cast<unsigned long>(error.value()));
  if (isVersionProblem(reason)) {
    return {Kind::kTlsProtocolVersion, "There is no version of TLS, 1.2 or newer, that " + peer + " speaks.",
            "Ask whoever runs the server to switch a newer version on."};
  }
  if (reason == SSL_R_WRONG_VERSION_NUMBER || reason == SSL_R_HTTP_REQUEST) {
    return {Kind::kTls, "What answers at " + peer + " does not speak TLS.",
            "Check the port in the account's url, and whether it should begin with http."};
  }
  return {Kind::kTls, "The TLS handshake with " + peer + " failed (" + printable(error.message()) + ").",
          "Ask whoever runs the server."};
}

}  // namespace

std::unique_ptr<asio::ssl::context> makeTlsContext(const std::string& caFile) {
  auto context = std::make_unique<asio::ssl::context>(asio::ssl::context::tls_client);
  SSL_CTX_set_min_proto_version(context->native_handle(), TLS1_2_VERSION);
  SSL_CTX_set_options(context->native_handle(), SSL_OP_NO_RENEGOTIATION | SSL_OP_NO_COMPRESSION);
  context->set_verify_mode(asio::ssl::verify_peer);
  boost::system::error_code error;
  if (caFile.empty()) {
    context->set_default_verify_paths(error);
  } else {
    context->load_verify_file(caFile, error);
  }
  ERR_clear_error();
  if (error) {
    throw TransportFailure(
        Kind::kConfiguration,
        "The CA file " + printable(caFile) + " can't be used (" + printable(error.message()) + ").",
        "The account's ca_file must name a readable file of PEM certificates.");
  }
  return context;
}

void expectHost(SSL* tls, const std::string& host) {
  // A final dot makes a name absolute for the resolver; certificates are written without it.
  const std::string name = host.ends_with('.') ? host.substr(0, host.size() - 1) : host;
  X509_VERIFY_PARAM* const parameters = SSL_get0_param(tls);
  // The subject's common name says nothing: authorities do not verify it.
  X509_VERIFY_PARAM_set_hostflags(parameters,
                                  X509_CHECK_FLAG_NO_PARTIAL_WILDCARDS | X509_CHECK_FLAG_NEVER_CHECK_SUBJECT);
  boost::system::error_code notLiteral;
  asio::ip::make_address(name, notLiteral);
  const bool accepted = notLiteral
                            ? SSL_set_tlsext_host_name(tls, name.c_str()) == 1 &&
                                  X509_VERIFY_PARAM_set1_host(parameters, name.data(), name.size()) == 1
                            : X509_VERIFY_PARAM_set1_ip_asc(parameters, name.c_str()) == 1;
  if (!accepted) {
    throw TransportFailure(Kind::kConfiguration,
                           "No certificate can be verified against the host " + printable(host) + '.',
                           "Check the host in the account's url.");
  }
}

TransportFailure handshakeFailure(SSL* tls, const boost::system::error_code& error, const std::string& peer) {
  const long verified = SSL_get_verify_result(tls);
  if (verified != X509_V_OK) return verifyFailure(verified, peer);
  if (error.category() == asio::error::get_ssl_category()) return protocolFailure(error, peer);
  return {Kind::kClosedEarly,
          peer + " broke the connection off during the TLS handshake (" + printable(error.message()) + ").",
          "Check the port in the account's url; if it is right, try again later."};
}

}  // namespace airsync
