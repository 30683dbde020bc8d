// Servers that can't be trusted: the refusal says why, and nothing that could be of use to them goes out.
#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <mutex>
#include <openssl/ssl.h>

#include "integration/Fixture.h"
#include "unit/transport/ScriptedServer.h"
#include "unit/transport/TestCertificates.h"

namespace airsync::integration {
namespace {

using airsync::testing::CertificateRequest;
using airsync::testing::Identity;
using airsync::testing::Peer;
using airsync::testing::ScriptedServer;
using airsync::testing::selfSigned;
using airsync::testing::serverContext;
using airsync::testing::TestAuthority;
using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::Not;
using Context = std::unique_ptr<boost::asio::ssl::context>;

constexpr char kMessage[] = "To: ann@example.com\r\nSubject: Tea\r\n\r\nAt four.\r\n";
constexpr long kHour = 3600;

const TestAuthority& trusted() {
  static const TestAuthority authority;
  return authority;
}

Context contextOf(const CertificateRequest& request) { return serverContext(trusted().issue(request)); }

Context ofOldVersion(int version) {
  Context context = contextOf({});
  SSL_CTX_set_min_proto_version(context->native_handle(), version);
  SSL_CTX_set_max_proto_version(context->native_handle(), version);
  SSL_CTX_set_cipher_list(context->native_handle(), "DEFAULT:@SECLEVEL=0");
  return context;
}

struct Refusal {
  const char* name;
  std::function<Context()> context;
  const char* why;
  const char* advice;
};

// What the client sends through the encryption, from its first byte to its last.
class Ear {
 public:
  explicit Ear(boost::asio::ssl::context* tls, std::size_t connections = 1)
      : server_(std::vector<ScriptedServer::Script>(connections, [this](Peer& peer) { listen(peer); }), tls) {
  }

  std::uint16_t port() const { return server_.port(); }
  std::size_t accepted() { return server_.accepted(); }
  std::string heard(std::size_t connections = 1) {
    server_.waitForClosed(connections);
    const std::lock_guard lock(mutex_);
    return heard_;
  }

 private:
  void listen(Peer& peer) {
    const std::string bytes = peer.readToEnd();
    const std::lock_guard lock(mutex_);
    heard_ += bytes;
  }

  std::mutex mutex_;
  std::string heard_;
  ScriptedServer server_;
};

class Tls : public AirsyncTest {
 protected:
  void configureFor(std::uint16_t port, const std::string& host = "127.0.0.1") {
    configure("https://" + host + ":" + std::to_string(port) + "/service",
              "ca_file = \"" + trusted().file() + "\"\n");
  }
};

class TlsRefusal : public Tls, public ::testing::WithParamInterface<Refusal> {};

// Keeps S7, S8.
TEST_P(TlsRefusal, SaysWhyAndSendsNothing) {
  const std::vector<std::pair<std::vector<std::string>, std::string>> commands = {
      {{"sync"}, ""}, {{"options"}, ""}, {{"send", "-"}, kMessage}};
  for (const auto& [arguments, input] : commands) {
    const Context context = GetParam().context();
    Ear server(context.get());
    configureFor(server.port());
    const Finished result = run(arguments, input);
    EXPECT_EQ(result.code, 5);
    EXPECT_EQ(result.output, "");
    EXPECT_THAT(result.errors,
                AllOf(HasSubstr("account demo to 127.0.0.1:" + std::to_string(server.port()) + ": "),
                      HasSubstr(GetParam().why), HasSubstr(GetParam().advice)));
    EXPECT_EQ(server.heard(), "");
    EXPECT_EQ(server.accepted(), 1U);
  }
}

const Refusal kRefusals[] = {
    {"Expired",
     [] {
       return contextOf({"IP:127.0.0.1", -2 * kHour, -kHour});
     },
     " has expired (certificate has expired)",
     "Ask whoever runs the server to renew it, and check this machine's clock."},
    {"NotYetValid",
     [] {
       return contextOf({"IP:127.0.0.1", kHour, 2 * kHour});
     },
     " is not valid yet (certificate is not yet valid)", "Check this machine's clock."},
    {"SelfSigned", [] { return serverContext(selfSigned()); },
     " is signed by nobody but itself (self-signed certificate)",
     "If you know the authority that signed it, name its file with the account's ca_file."},
    {"UnknownAuthority", [] { return serverContext(TestAuthority("Other authority").issue()); },
     " comes from an authority that is not trusted (unable to get local issuer certificate)",
     "If you know the authority that signed it, name its file with the account's ca_file."},
    {"ImpostorOfATrustedAuthority", [] { return serverContext(TestAuthority().issue()); },
     " was not signed by the authority that it names (certificate signature failure)",
     "somebody else may be answering in its place."},
    {"OtherAddress", [] { return contextOf({"IP:127.0.0.2"}); },
     " was made for another host (IP address mismatch)", "somebody else may be answering in its place."},
    {"OtherName", [] { return contextOf({"DNS:mail.example"}); },
     " was made for another host (IP address mismatch)", "somebody else may be answering in its place."},
    {"OnlyTls10", [] { return ofOldVersion(TLS1_VERSION); },
     "There is no version of TLS, 1.2 or newer, that ",
     "Ask whoever runs the server to switch a newer version on."},
    {"OnlyTls11", [] { return ofOldVersion(TLS1_1_VERSION); },
     "There is no version of TLS, 1.2 or newer, that ",
     "Ask whoever runs the server to switch a newer version on."},
};

INSTANTIATE_TEST_SUITE_P(, TlsRefusal, ::testing::ValuesIn(kRefusals),
                         [](const auto& row) { return std::string(row.param.name); });

TEST_F(Tls, SendsItsRequestWhereTheCertificateIsRight) {
  const Context context = contextOf({});
  ScriptedServer server({[](Peer& peer) {
                          EXPECT_THAT(peer.readRequest(), HasSubstr("Authorization: Basic "));
                          peer.send("HTTP/1.1 503 Busy\r\nContent-Length: 0\r\n\r\n");
                          peer.readToEnd();
                        }},
                        context.get());
  configureFor(server.port());
  EXPECT_EQ(run({"options"}).code, 6);
  server.waitForClosed(1);
}

TEST_F(Tls, RefusesACertificateOfAnotherName) {
  const Context context = contextOf({"DNS:mail.example"});
  // Whichever of its addresses localhost is tried by first.
  Ear server(context.get());
  configureFor(server.port(), "localhost");
  const Finished result = run({"sync"});
  EXPECT_EQ(result.code, 5);
  EXPECT_THAT(result.errors, HasSubstr(" was made for another host (hostname mismatch)"));
  EXPECT_EQ(server.heard(), "");
}

// Authorities verify what stands in subjectAltName.
// Keeps S7.
TEST_F(Tls, RefusesACertificateWhoseSubjectAloneNamesTheHost) {
  CertificateRequest request{""};
  request.commonName = "localhost";
  const Context context = contextOf(request);
  Ear server(context.get());
  configureFor(server.port(), "localhost");
  const Finished result = run({"sync"});
  EXPECT_EQ(result.code, 5);
  EXPECT_THAT(result.errors, AllOf(HasSubstr(" was made for another host (hostname mismatch)"),
                                   HasSubstr("that the certificate has it as a subjectAltName")));
  EXPECT_EQ(server.heard(), "");
}

TEST_F(Tls, TrustsNoTestAuthorityByItself) {
  const Context context = contextOf({});
  Ear server(context.get());
  configure("https://127.0.0.1:" + std::to_string(server.port()) + "/service");
  const Finished result = run({"sync"});
  EXPECT_EQ(result.code, 5);
  EXPECT_THAT(result.errors, HasSubstr(" comes from an authority that is not trusted"));
  EXPECT_EQ(server.heard(), "");
}

// Keeps S8.
TEST_F(Tls, SaysNothingToAServerWithoutTlsButTheGreetingOfTheProtocol) {
  ScriptedServer server({[](Peer& peer) {
    const std::string greeting = peer.readBytes(1);
    EXPECT_EQ(greeting, "\x16");  // a handshake record
    peer.send("HTTP/1.1 401 Unauthorized\r\nWWW-Authenticate: Basic\r\nContent-Length: 0\r\n\r\n");
    EXPECT_THAT(peer.readToEnd(), AllOf(Not(HasSubstr("Authorization")), Not(HasSubstr("REVNTy9k"))));
  }});
  configureFor(server.port());
  const Finished result = run({"sync"});
  EXPECT_EQ(result.code, 5);
  EXPECT_THAT(result.errors, HasSubstr("does not speak TLS"));
  server.waitForClosed(1);
}

// Keeps S8.
TEST_F(Tls, NeverFallsBackToPlainText) {
  const Context context = ofOldVersion(TLS1_1_VERSION);
  Ear server(context.get(), 3);
  configure("https://127.0.0.1:" + std::to_string(server.port()) + "/service",
            "allow_plain_http = true\nca_file = \"" + trusted().file() + "\"\n");
  EXPECT_EQ(run({"sync"}).code, 5);
  EXPECT_EQ(server.accepted(), 1U);
}

// A resolver that is somebody else's, or a line in /etc/hosts, may take localhost elsewhere.
// Keeps S8.
TEST_F(Tls, TakesLocalhostForThisMachineOnlyWhereItResolvesToIt) {
  environment()["LD_PRELOAD"] = AIRSYNC_TEST_RESOLVER;
  environment()["ASAN_OPTIONS"] = "verify_asan_link_order=0";
  ScriptedServer server({[](Peer& peer) {
    peer.readRequest();
    peer.send("HTTP/1.1 503 Busy\r\nContent-Length: 0\r\n\r\n");
  }});
  const std::string url = "http://localhost:" + std::to_string(server.port()) + "/service";
  configure(url);
  environment()["AIRSYNC_TEST_LOCALHOST"] = "192.0.2.7";
  const Finished elsewhere = run({"options"});
  EXPECT_EQ(elsewhere.code, 2);
  EXPECT_THAT(elsewhere.errors, AllOf(HasSubstr("localhost is not this machine's: it stands for 192.0.2.7"),
                                      HasSubstr("allow_plain_http = true")));
  EXPECT_EQ(server.accepted(), 0U);
  environment()["AIRSYNC_TEST_LOCALHOST"] = "127.0.0.1";
  EXPECT_EQ(run({"options"}).code, 6);
  EXPECT_EQ(server.accepted(), 1U);
}

// Keeps S8.
TEST_F(Tls, TakesNoPlainAddressThatLeavesTheMachine) {
  configure("http://mail.example/service");
  const Finished result = run({"sync"});
  EXPECT_EQ(result.code, 2);
  EXPECT_THAT(result.errors, HasSubstr("allow_plain_http"));
}

TEST_F(Tls, SaysThatAPlainAddressLeadsToAPortForTls) {
  const Context context = contextOf({});
  ScriptedServer encrypted({[](Peer&) {}}, context.get());
  ScriptedServer alerting({[](Peer& peer) {
    peer.readRequest();
    peer.send(std::string("\x15\x03\x01\x00\x02\x02\x46", 7));
  }});
  ScriptedServer explaining({[](Peer& peer) {
    peer.readRequest();
    peer.send("HTTP/1.1 400 Bad Request\r\nContent-Length: 0\r\n\r\n");
  }});
  for (const ScriptedServer* server : {&encrypted, &alerting, &explaining}) {
    configure("http://127.0.0.1:" + std::to_string(server->port()) + "/service");
    EXPECT_THAT(run({"options"}).errors, HasSubstr("begin with https"));
  }
}

}  // namespace
}  // namespace airsync::integration
