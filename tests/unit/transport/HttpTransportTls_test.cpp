#include <future>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>
#include <openssl/ssl.h>

#include "transport/HttpTransport.h"
#include "unit/transport/Client.h"
#include "unit/transport/ScriptedServer.h"
#include "unit/transport/TestCertificates.h"

namespace airsync::testing {
namespace {

using Kind = TransportErrorKind;

class HttpTransportTls : public ::testing::Test {
 protected:
  TransportOptions optionsFor(const ScriptedServer& server) const {
    TransportOptions options = plainOptions(server.port());
    options.scheme = Scheme::kHttps;
    options.caFile = authority.file();
    return options;
  }

  // What Open makes of a server with this context.
  TransportError refusal(boost::asio::ssl::context& context) const {
    ScriptedServer server({[](Peer& peer) { peer.readToEnd(); }}, &context);
    HttpTransport transport(optionsFor(server));
    const SYNC_RESULT result = transport.Open(nullptr);
    EXPECT_EQ(result, resultOf(transport.lastError().kind));
    return transport.lastError();
  }

  TransportError refusal(const Identity& identity) const { return refusal(*serverContext(identity)); }

  TestAuthority authority;
};

void answerAll(Peer& peer) {
  while (!peer.readRequest().empty()) peer.send(answerOf("ok"));
}

TEST_F(HttpTransportTls, ExchangesOverOneVerifiedConnection) {
  const auto context = serverContext(authority.issue());
  ScriptedServer server({answerAll}, context.get());
  HttpTransport transport(optionsFor(server));
  ASSERT_EQ(transport.Open(nullptr), 0U) << transport.lastError().sentence();
  EXPECT_EQ(exchange(transport, "1", 2), "ok");
  EXPECT_EQ(exchange(transport, "2", 2), "ok");
  EXPECT_EQ(exchange(transport, "3", 2), "ok");
  EXPECT_EQ(server.accepted(), 1U);
}

TEST_F(HttpTransportTls, ExchangesOverTheOldestVersionThatIsAllowed) {
  const auto context = serverContext(authority.issue());
  SSL_CTX_set_max_proto_version(context->native_handle(), TLS1_2_VERSION);
  ScriptedServer server({answerAll}, context.get());
  HttpTransport transport(optionsFor(server));
  ASSERT_EQ(transport.Open(nullptr), 0U) << transport.lastError().sentence();
  EXPECT_EQ(exchange(transport, "1", 2), "ok");
}

TEST_F(HttpTransportTls, CarriesLargeBodiesBothWays) {
  const std::string large(3'000'000, 'l');
  const auto context = serverContext(authority.issue());
  std::string seen;
  ScriptedServer server({[&](Peer& peer) {
                          seen = peer.readRequest();
                          peer.send(answerOf(large));
                          peer.readToEnd();
                        }},
                        context.get());
  HttpTransport transport(optionsFor(server));
  ASSERT_EQ(transport.Open(nullptr), 0U);
  ASSERT_EQ(postMessage(transport, large), 0U);
  ASSERT_EQ(readHead(transport).status, 200);
  EXPECT_TRUE(readBody(transport, large.size()) == large);
  transport.Close();
  server.waitForClosed(1);
  EXPECT_TRUE(seen == requestOf(large));
}

TEST_F(HttpTransportTls, AnnouncesTheNameAndVerifiesIt) {
  std::string announced;
  const auto context = serverContext(authority.issue({"DNS:mail.example"}));
  SSL_CTX_set_tlsext_servername_arg(context->native_handle(), &announced);
  SSL_CTX_set_tlsext_servername_callback(
      context->native_handle(), +[](SSL* tls, int*, void* argument) {
        const char* const name = SSL_get_servername(tls, TLSEXT_NAMETYPE_host_name);
        *static_cast<std::string*>(argument) = name == nullptr ? "(none)" : name;
        return SSL_TLSEXT_ERR_OK;
      });
  ScriptedServer server({answerAll}, context.get());
  TransportOptions options = optionsFor(server);
  options.host = "mail.example";
  options.resolve = [](const std::string&, std::uint16_t port) -> Endpoints {
    return {{boost::asio::ip::address_v4::loopback(), port}};
  };
  HttpTransport transport(options);
  ASSERT_EQ(transport.Open(nullptr), 0U) << transport.lastError().sentence();
  EXPECT_EQ(exchange(transport, "1", 2), "ok");
  transport.Close();
  server.waitForClosed(1);
  EXPECT_EQ(announced, "mail.example");
}

TEST_F(HttpTransportTls, RefusesASelfSignedCertificate) {
  EXPECT_EQ(refusal(selfSigned()).kind, Kind::kTlsSelfSigned);
}

TEST_F(HttpTransportTls, RefusesACertificateOfAnUnknownAuthority) {
  const TestAuthority other("Other authority");
  EXPECT_EQ(refusal(other.issue()).kind, Kind::kTlsUntrusted);
}

// Keeps S7.
TEST_F(HttpTransportTls, RefusesACertificateThatOnlyClaimsToComeFromATrustedAuthority) {
  const TestAuthority impostor;  // of the same name, with another key
  EXPECT_EQ(refusal(impostor.issue()).kind, Kind::kTlsUntrusted);
}

TEST_F(HttpTransportTls, DoesNotTrustTheTestAuthorityWithoutItsFile) {
  const auto context = serverContext(authority.issue());
  ScriptedServer server({answerAll}, context.get());
  TransportOptions options = optionsFor(server);
  options.caFile.clear();
  HttpTransport transport(options);
  EXPECT_EQ(transport.Open(nullptr), resultOf(Kind::kTlsUntrusted));
}

TEST_F(HttpTransportTls, RefusesAnExpiredCertificate) {
  const TransportError error = refusal(authority.issue({"IP:127.0.0.1", -7200, -3600}));
  EXPECT_EQ(error.kind, Kind::kTlsExpired);
  EXPECT_EQ(error.errorClass(), TransportErrorClass::kTls);
  EXPECT_THAT(error.sentence(), ::testing::HasSubstr("127.0.0.1"));
  EXPECT_THAT(error.sentence(), ::testing::HasSubstr("has expired"));
}

TEST_F(HttpTransportTls, RefusesACertificateThatIsNotValidYet) {
  EXPECT_EQ(refusal(authority.issue({"IP:127.0.0.1", 3600, 7200})).kind, Kind::kTlsNotYetValid);
}

TEST_F(HttpTransportTls, RefusesACertificateOfAnotherHost) {
  EXPECT_EQ(refusal(authority.issue({"IP:127.0.0.2"})).kind, Kind::kTlsWrongHost);
  EXPECT_EQ(refusal(authority.issue({"DNS:127.0.0.1"})).kind, Kind::kTlsWrongHost);
}

// Keeps S7.
TEST_F(HttpTransportTls, RefusesACertificateWhoseSubjectAloneNamesTheHost) {
  CertificateRequest request{""};
  request.commonName = "mail.example";
  const auto context = serverContext(authority.issue(request));
  ScriptedServer server({answerAll}, context.get());
  TransportOptions options = optionsFor(server);
  options.host = "mail.example";
  options.resolve = [](const std::string&, std::uint16_t port) -> Endpoints {
    return {{boost::asio::ip::address_v4::loopback(), port}};
  };
  HttpTransport transport(options);
  EXPECT_EQ(transport.Open(nullptr), resultOf(Kind::kTlsWrongHost));
  EXPECT_THAT(transport.lastError().advice, ::testing::HasSubstr("subjectAltName"));
}

TEST_F(HttpTransportTls, RefusesACertificateOfAnotherName) {
  const auto context = serverContext(authority.issue({"DNS:other.example"}));
  ScriptedServer server({answerAll}, context.get());
  TransportOptions options = optionsFor(server);
  options.host = "mail.example";
  options.resolve = [](const std::string&, std::uint16_t port) -> Endpoints {
    return {{boost::asio::ip::address_v4::loopback(), port}};
  };
  HttpTransport transport(options);
  EXPECT_EQ(transport.Open(nullptr), resultOf(Kind::kTlsWrongHost));
}

// Keeps S7.
TEST_F(HttpTransportTls, RefusesAServerThatSpeaksOldVersionsOnly) {
  const auto context = serverContext(authority.issue());
  SSL_CTX* const native = context->native_handle();
  SSL_CTX_set_min_proto_version(native, TLS1_VERSION);
  SSL_CTX_set_max_proto_version(native, TLS1_1_VERSION);
  SSL_CTX_set_cipher_list(native, "DEFAULT:@SECLEVEL=0");
  EXPECT_EQ(refusal(*context).kind, Kind::kTlsProtocolVersion);
}

TEST_F(HttpTransportTls, RefusesAServerThatSpeaksNoTls) {
  ScriptedServer server({[](Peer& peer) {
    peer.send("HTTP/1.1 400 Bad Request\r\nContent-Length: 0\r\n\r\n");
    peer.readToEnd();
  }});
  HttpTransport transport(optionsFor(server));
  EXPECT_EQ(transport.Open(nullptr), resultOf(Kind::kTls));
  EXPECT_THAT(transport.lastError().sentence(), ::testing::HasSubstr("does not speak TLS"));
}

TEST_F(HttpTransportTls, TellsThatTheServerHungUpDuringTheHandshake) {
  ScriptedServer server({[](Peer& peer) { peer.readBytes(1); }});
  HttpTransport transport(optionsFor(server));
  EXPECT_EQ(transport.Open(nullptr), resultOf(Kind::kClosedEarly));
}

TEST_F(HttpTransportTls, RefusesACaFileThatCannotBeUsedBeforeItConnects) {
  const auto context = serverContext(authority.issue());
  ScriptedServer server({answerAll}, context.get());
  TransportOptions options = optionsFor(server);
  options.caFile = "/nonexistent/authority.pem";
  HttpTransport transport(options);
  EXPECT_EQ(transport.Open(nullptr), resultOf(Kind::kConfiguration));
  EXPECT_THAT(transport.lastError().sentence(), ::testing::HasSubstr("/nonexistent/authority.pem"));
  EXPECT_EQ(server.accepted(), 0U);
}

TEST_F(HttpTransportTls, NoticesACloseNotifyOnAnIdleConnection) {
  const auto context = serverContext(authority.issue());
  std::promise<void> closed;
  ScriptedServer server({[&](Peer& peer) {
                           peer.readRequest();
                           peer.send(answerOf("ok"));
                           peer.sendCloseNotify();  // the socket itself stays open
                           closed.set_value();
                           peer.readToEnd();
                         },
                         answerAll},
                        context.get());
  HttpTransport transport(optionsFor(server));
  ASSERT_EQ(transport.Open(nullptr), 0U);
  EXPECT_EQ(exchange(transport, "1", 2), "ok");
  closed.get_future().wait();
  ASSERT_EQ(postMessage(transport, "2"), 0U);  // would not be repeated
  EXPECT_EQ(readHead(transport).status, 200);
  EXPECT_EQ(server.accepted(), 2U);
}

TEST_F(HttpTransportTls, NoticesAnEndThatArrivedTogetherWithTheAnswer) {
  const auto context = serverContext(authority.issue());
  ScriptedServer server({[](Peer& peer) {
                           peer.readRequest();
                           peer.send(answerOf("ok"));
                           peer.sendCloseNotify();
                         },
                         answerAll},
                        context.get());
  HttpTransport transport(optionsFor(server));
  ASSERT_EQ(transport.Open(nullptr), 0U);
  ASSERT_EQ(post(transport, "1"), 0U);
  server.waitForClosed(1);  // before anything of the answer is read
  ASSERT_EQ(readHead(transport).status, 200);
  EXPECT_EQ(readBody(transport, 2), "ok");
  ASSERT_EQ(postMessage(transport, "2"), 0U);
  EXPECT_EQ(readHead(transport).status, 200);
}

TEST_F(HttpTransportTls, DoesNotTakeACutConnectionForTheEndOfABody) {
  const auto context = serverContext(authority.issue());
  for (const bool orderly : {true, false}) {
    ScriptedServer server({[&](Peer& peer) {
                            peer.readRequest();
                            peer.send("HTTP/1.1 200 OK\r\n\r\nabc");
                            if (orderly) peer.sendCloseNotify();
                          }},
                          context.get());
    HttpTransport transport(optionsFor(server));
    ASSERT_EQ(transport.Open(nullptr), 0U);
    EXPECT_EQ(exchange(transport, "1", 4), orderly ? "abc" : "");
    EXPECT_EQ(transport.lastError().kind, orderly ? Kind::kBodyEnded : Kind::kClosedEarly);
  }
}

TEST_F(HttpTransportTls, SaysGoodbyeWhenItCloses) {
  const auto context = serverContext(authority.issue());
  int shutdown = 0;
  ScriptedServer server({[&](Peer& peer) {
                          answerAll(peer);
                          shutdown = peer.receivedCloseNotify() ? 1 : -1;
                        }},
                        context.get());
  HttpTransport transport(optionsFor(server));
  ASSERT_EQ(transport.Open(nullptr), 0U);
  EXPECT_EQ(exchange(transport, "1", 2), "ok");
  transport.Close();
  server.waitForClosed(1);
  EXPECT_EQ(shutdown, 1);
}

}  // namespace
}  // namespace airsync::testing
