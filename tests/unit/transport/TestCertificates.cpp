#include "unit/transport/TestCertificates.h"

#include <cstdio>
#include <cstdlib>
#include <openssl/ec.h>
#include <openssl/pem.h>
#include <openssl/ssl.h>
#include <openssl/x509v3.h>
#include <stdexcept>
#include <string>
#include <unistd.h>

namespace airsync::testing {

namespace {

void require(bool condition, const char* what) {
  if (!condition) throw std::runtime_error(what);
}

KeyPtr makeKey() {
  KeyPtr key(EVP_EC_gen("P-256"), EVP_PKEY_free);
  require(key != nullptr, "no key");
  return key;
}

void addExtension(X509* certificate, int nid, const std::string& value) {
  X509V3_CTX context;
  X509V3_set_ctx_nodb(&context);
  X509V3_set_ctx(&context, certificate, certificate, nullptr, nullptr, 0);
  const std::unique_ptr<X509_EXTENSION, decltype(&X509_EXTENSION_free)> extension(
      X509V3_EXT_conf_nid(nullptr, &context, nid, value.c_str()), X509_EXTENSION_free);
  require(extension != nullptr && X509_add_ext(certificate, extension.get(), -1) == 1, "no extension");
}

CertificatePtr makeCertificate(EVP_PKEY* key, const std::string& name, const CertificateRequest& request) {
  static long serial = 1;
  CertificatePtr certificate(X509_new(), X509_free);
  X509_set_version(certificate.get(), 2);
  ASN1_INTEGER_set(X509_get_serialNumber(certificate.get()), serial++);
  X509_gmtime_adj(X509_getm_notBefore(certificate.get()), request.notBefore);
  X509_gmtime_adj(X509_getm_notAfter(certificate.get()), request.notAfter);
  X509_NAME_add_entry_by_txt(X509_get_subject_name(certificate.get()), "CN", MBSTRING_ASC,
                             reinterpret_cast<const unsigned char*>(name.c_str()), -1, -1, 0);
  X509_set_pubkey(certificate.get(), key);
  return certificate;
}

void sign(X509* certificate, X509_NAME* issuer, EVP_PKEY* key) {
  X509_set_issuer_name(certificate, issuer);
  require(X509_sign(certificate, key, EVP_sha256()) > 0, "not signed");
}

}  // namespace

TestAuthority::TestAuthority(const std::string& name)
    : identity_{CertificatePtr(nullptr, X509_free), makeKey()} {
  identity_.certificate = makeCertificate(identity_.key.get(), name, {});
  X509* const certificate = identity_.certificate.get();
  addExtension(certificate, NID_basic_constraints, "critical,CA:TRUE");
  sign(certificate, X509_get_subject_name(certificate), identity_.key.get());

  std::string path = "/tmp/airsync-test-authority-XXXXXX";
  const int descriptor = ::mkstemp(path.data());
  require(descriptor >= 0, "no file");
  std::FILE* const stream = ::fdopen(descriptor, "w");
  PEM_write_X509(stream, certificate);
  std::fclose(stream);
  file_ = path;
}

TestAuthority::~TestAuthority() { ::unlink(file_.c_str()); }

Identity TestAuthority::issue(const CertificateRequest& request) const {
  Identity issued{CertificatePtr(nullptr, X509_free), makeKey()};
  issued.certificate = makeCertificate(issued.key.get(), request.commonName, request);
  if (!request.alternativeName.empty()) {
    addExtension(issued.certificate.get(), NID_subject_alt_name, request.alternativeName);
  }
  sign(issued.certificate.get(), X509_get_subject_name(identity_.certificate.get()), identity_.key.get());
  return issued;
}

Identity selfSigned(const CertificateRequest& request) {
  Identity issued{CertificatePtr(nullptr, X509_free), makeKey()};
  issued.certificate = makeCertificate(issued.key.get(), request.commonName, request);
  if (!request.alternativeName.empty()) {
    addExtension(issued.certificate.get(), NID_subject_alt_name, request.alternativeName);
  }
  sign(issued.certificate.get(), X509_get_subject_name(issued.certificate.get()), issued.key.get());
  return issued;
}

std::unique_ptr<boost::asio::ssl::context> serverContext(const Identity& identity) {
  auto context = std::make_unique<boost::asio::ssl::context>(boost::asio::ssl::context::tls_server);
  SSL_CTX* const native = context->native_handle();
  require(SSL_CTX_use_certificate(native, identity.certificate.get()) == 1, "certificate refused");
  require(SSL_CTX_use_PrivateKey(native, identity.key.get()) == 1, "key refused");
  return context;
}

}  // namespace airsync::testing
