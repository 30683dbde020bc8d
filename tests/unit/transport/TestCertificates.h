// Certificates made while the tests run: an authority, and what it signs.
#ifndef AIRSYNC_TESTS_TRANSPORT_TEST_CERTIFICATES_H
#define AIRSYNC_TESTS_TRANSPORT_TEST_CERTIFICATES_H

#include <boost/asio/ssl/context.hpp>
#include <memory>
#include <openssl/evp.h>
#include <openssl/x509.h>
#include <string>

namespace airsync::testing {

using CertificatePtr = std::unique_ptr<X509, decltype(&X509_free)>;
using KeyPtr = std::unique_ptr<EVP_PKEY, decltype(&EVP_PKEY_free)>;

struct Identity {
  CertificatePtr certificate;
  KeyPtr key;
};

/// What differs between the certificates of the tests.
struct CertificateRequest {
  std::string alternativeName = "IP:127.0.0.1";  // as OpenSSL's configuration writes it; empty: none
  long notBefore = -3600;                        // seconds from now
  long notAfter = 3600;
  std::string commonName = "Test server";
};

class TestAuthority {
 public:
  explicit TestAuthority(const std::string& name = "Test authority");
  ~TestAuthority();
  TestAuthority(const TestAuthority&) = delete;
  TestAuthority& operator=(const TestAuthority&) = delete;

  Identity issue(const CertificateRequest& request = {}) const;
  /// A PEM file with the authority's certificate; it goes with this object.
  const std::string& file() const { return file_; }

 private:
  Identity identity_;
  std::string file_;
};

Identity selfSigned(const CertificateRequest& request = {});

/// A server's context with that certificate.
std::unique_ptr<boost::asio::ssl::context> serverContext(const Identity& identity);

}  // namespace airsync::testing

#endif
