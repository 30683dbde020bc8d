// How a host name becomes a connection.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stdexcept>

#include "transport/HttpTransport.h"
#include "unit/transport/Client.h"
#include "unit/transport/DeafPort.h"
#include "unit/transport/ScriptedServer.h"

namespace airsync::testing {
namespace {

using Kind = TransportErrorKind;
namespace ip = boost::asio::ip;

// A port of 127.0.0.1 that nobody listens on.
std::uint16_t closedPort() {
  boost::asio::io_context context;
  const ip::tcp::acceptor acceptor(context, {ip::address_v4::loopback(), 0});
  return acceptor.local_endpoint().port();
}

TEST(Connect, FindsAHostByItsName) {
  ScriptedServer server({[](Peer& peer) { peer.readToEnd(); }});
  TransportOptions options = plainOptions(server.port());
  options.host = "localhost";
  HttpTransport transport(options);
  EXPECT_EQ(transport.Open(nullptr), 0U) << transport.lastError().sentence();
}

TEST(Connect, TriesEachAddressUntilOneAnswers) {
  ScriptedServer server({[](Peer& peer) { peer.readToEnd(); }});
  const std::uint16_t closed = closedPort();
  TransportOptions options = plainOptions(server.port());
  options.host = "several.example";
  options.resolve = [closed](const std::string&, std::uint16_t port) -> Endpoints {
    return {{ip::address_v4::loopback(), closed},
            {ip::make_address("127.0.0.9"), closed},
            {ip::address_v4::loopback(), port}};
  };
  HttpTransport transport(options);
  EXPECT_EQ(transport.Open(nullptr), 0U) << transport.lastError().sentence();
}

TEST(Connect, TellsEveryAddressThatRefused) {
  const std::uint16_t closed = closedPort();
  TransportOptions options = plainOptions(closed);
  options.host = "several.example";
  options.resolve = [](const std::string&, std::uint16_t port) -> Endpoints {
    return {{ip::address_v4::loopback(), port}, {ip::make_address("127.0.0.9"), port}};
  };
  HttpTransport transport(options);
  EXPECT_EQ(transport.Open(nullptr), resultOf(Kind::kConnect));
  const std::string port = std::to_string(closed);
  EXPECT_EQ(transport.lastError().what,
            "Could not connect to several.example port " + port + " (127.0.0.1:" + port +
                ": Connection refused; 127.0.0.9:" + port + ": Connection refused).");
  EXPECT_EQ(transport.lastError().errorClass(), TransportErrorClass::kNetwork);
}

TEST(Connect, TellsThatANameCannotBeResolved) {
  TransportOptions options = plainOptions(1);
  options.host = "nowhere.example";
  options.resolve = [](const std::string&, std::uint16_t) -> Endpoints {
    throw std::runtime_error("Host not found");
  };
  HttpTransport transport(options);
  EXPECT_EQ(transport.Open(nullptr), resultOf(Kind::kResolve));
  EXPECT_EQ(transport.lastError().what,
            "The host name nowhere.example could not be resolved: Host not found.");
}

TEST(Connect, TellsThatANameHasNoAddress) {
  TransportOptions options = plainOptions(1);
  options.host = "nowhere.example";
  options.resolve = [](const std::string&, std::uint16_t) -> Endpoints { return {}; };
  HttpTransport transport(options);
  EXPECT_EQ(transport.Open(nullptr), resultOf(Kind::kResolve));
}

TEST(Connect, AsksNoResolverForALiteralAddress) {
  for (const std::string host : {"127.0.0.1", "::1", "[::1]"}) {
    TransportOptions options = plainOptions(closedPort());
    options.host = host;
    options.resolve = [](const std::string&, std::uint16_t) -> Endpoints {
      throw std::runtime_error("asked");
    };
    HttpTransport transport(options);
    EXPECT_EQ(transport.Open(nullptr), resultOf(Kind::kConnect)) << transport.lastError().sentence();
  }
}

TEST(Connect, RefusesAnEmptyHost) {
  TransportOptions options = plainOptions(1);
  options.host = "";
  HttpTransport transport(options);
  EXPECT_EQ(transport.Open(nullptr), resultOf(Kind::kConfiguration));
}

TEST(Connect, HidesControlCharactersOfAHostInItsMessages) {
  TransportOptions options = plainOptions(1);
  options.host = "evil\n.example";
  options.resolve = [](const std::string&, std::uint16_t) -> Endpoints { return {}; };
  HttpTransport transport(options);
  EXPECT_EQ(transport.Open(nullptr), resultOf(Kind::kResolve));
  EXPECT_THAT(transport.lastError().what, ::testing::HasSubstr("evil?.example"));
}

// The first address neither takes the connection nor refuses it.
TEST(Connect, GoesOnToTheNextAddressWhenOneStaysSilent) {
  const DeafPort deaf;
  ScriptedServer server({[](Peer& peer) { peer.readToEnd(); }});
  TransportOptions options = plainOptions(server.port());
  options.host = "several.example";
  options.resolve = [&deaf](const std::string&, std::uint16_t port) -> Endpoints {
    return {{ip::address_v4::loopback(), deaf.port()}, {ip::address_v4::loopback(), port}};
  };
  options.connectTimeout = std::chrono::seconds(10);
  HttpTransport transport(options);
  EXPECT_EQ(transport.Open(nullptr), 0U) << transport.lastError().sentence();
}

// Keeps S8.
TEST(Connect, GoesToThisMachineOnlyWhereThatIsDemanded) {
  ScriptedServer server({[](Peer& peer) { peer.readToEnd(); }});
  TransportOptions options = plainOptions(server.port());
  options.host = "localhost";
  options.loopbackOnly = true;
  options.resolve = [](const std::string&, std::uint16_t port) -> Endpoints {
    return {{ip::make_address("192.0.2.7"), port}, {ip::make_address("2001:db8::7"), port}};
  };
  HttpTransport misled(options);
  EXPECT_EQ(misled.Open(nullptr), resultOf(Kind::kConfiguration));
  EXPECT_THAT(misled.lastError().what, ::testing::HasSubstr("it stands for 192.0.2.7, 2001:db8::7"));
  options.resolve = [](const std::string&, std::uint16_t port) -> Endpoints {
    return {{ip::make_address("192.0.2.7"), port}, {ip::address_v4::loopback(), port}};
  };
  HttpTransport right(options);
  EXPECT_EQ(right.Open(nullptr), 0U) << right.lastError().sentence();
}

}  // namespace
}  // namespace airsync::testing
