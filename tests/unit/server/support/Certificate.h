// A certificate for localhost that nobody else vouches for, made on the spot.
#pragma once

#include <cstdio>
#include <memory>
#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/x509.h>
#include <openssl/x509v3.h>
#include <stdexcept>
#include <string>

namespace demoserver {

inline void writeCertificate(const std::string& certificateFile, const std::string& keyFile) {
  const std::unique_ptr<EVP_PKEY, decltype(&EVP_PKEY_free)> key(EVP_EC_gen("P-256"), EVP_PKEY_free);
  const std::unique_ptr<X509, decltype(&X509_free)> certificate(X509_new(), X509_free);
  ASN1_INTEGER_set(X509_get_serialNumber(certificate.get()), 1);
  X509_gmtime_adj(X509_getm_notBefore(certificate.get()), -3600);
  X509_gmtime_adj(X509_getm_notAfter(certificate.get()), 3600);
  X509_set_pubkey(certificate.get(), key.get());
  X509_NAME* name = X509_get_subject_name(certificate.get());
  const std::string host = "localhost";
  X509_NAME_add_entry_by_txt(name, "CN", MBSTRING_ASC, reinterpret_cast<const unsigned char*>(host.c_str()),
                             -1, -1, 0);
  X509_set_issuer_name(certificate.get(), name);
  // The name that counts stands in an extension, which came with the third version.
  X509_set_version(certificate.get(), X509_VERSION_3);
  const std::unique_ptr<X509_EXTENSION, decltype(&X509_EXTENSION_free)> names(
      X509V3_EXT_conf_nid(nullptr, nullptr, NID_subject_alt_name, "DNS:localhost"), X509_EXTENSION_free);
  X509_add_ext(certificate.get(), names.get(), -1);
  if (X509_sign(certificate.get(), key.get(), EVP_sha256()) == 0)
    throw std::runtime_error("can't sign a certificate");
  const std::unique_ptr<std::FILE, decltype(&std::fclose)> to(std::fopen(certificateFile.c_str(), "w"),
                                                              std::fclose);
  const std::unique_ptr<std::FILE, decltype(&std::fclose)> keyTo(std::fopen(keyFile.c_str(), "w"),
                                                                 std::fclose);
  if (!to || !keyTo || PEM_write_X509(to.get(), certificate.get()) != 1 ||
      PEM_write_PrivateKey(keyTo.get(), key.get(), nullptr, nullptr, 0, nullptr, nullptr) != 1)
    throw std::runtime_error("can't write " + certificateFile);
}

}  // namespace demoserver
