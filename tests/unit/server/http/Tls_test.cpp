#include <boost/asio/ssl/context.hpp>
#include <boost/asio/ssl/stream.hpp>
#include <gtest/gtest.h>
#include <stdexcept>

#include "support/Certificate.h"
#include "support/RunningServer.h"
#include "support/Scratch.h"

namespace demoserver {
namespace {

namespace asio = boost::asio;

class DemoTls : public WithContacts {
 protected:
  DemoTls() {
    listener.certificateFile = scratch.path("certificate.pem");
    listener.keyFile = scratch.path("key.pem");
    writeCertificate(listener.certificateFile, listener.keyFile);
  }

  // The answer to a GetHierarchy, and with what the connection ended.
  std::string askOverTls(std::uint16_t port, boost::system::error_code& end) const {
    asio::io_context context;
    asio::ssl::context tls(asio::ssl::context::tls_client);
    tls.load_verify_file(listener.certificateFile);
    tls.set_verify_mode(asio::ssl::verify_peer);
    asio::ssl::stream<asio::ip::tcp::socket> stream(context, tls);
    stream.next_layer().connect({asio::ip::address_v4::loopback(), port});
    stream.handshake(asio::ssl::stream_base::client);
    std::string request = wireRequest("GetHierarchy", "");
    request.insert(request.find("\r\n") + 2, "Connection: close\r\n");
    asio::write(stream, asio::buffer(request));
    std::string answer;
    asio::read(stream, asio::dynamic_buffer(answer), end);
    return answer;
  }

  Scratch scratch;
  ListenerOptions listener;
};

TEST_F(DemoTls, AnswersOverTlsAndSaysGoodbye) {
  RunningServer server(state, {}, listener);
  boost::system::error_code end;
  EXPECT_TRUE(askOverTls(server.port(), end).starts_with("HTTP/1.1 200 OK\r\n"));
  // An end without the closing alert would be reported as a truncated stream.
  EXPECT_EQ(end, asio::error::eof);
}

TEST_F(DemoTls, AClientWithoutTlsIsTurnedAway) {
  RunningServer server(state, {}, listener);
  Connection connection(server.port());
  connection.send(wireRequest("GetHierarchy", ""));
  EXPECT_EQ(connection.rest().find("HTTP/"), std::string::npos);
  // Somebody was there to turn it away, and is there for the others.
  boost::system::error_code end;
  EXPECT_TRUE(askOverTls(server.port(), end).starts_with("HTTP/1.1 200 OK\r\n"));
}

TEST_F(DemoTls, SaysWhichFileIsNoCertificate) {
  Service service(state, {});
  listener.certificateFile = listener.keyFile;
  try {
    const Listener refused(service, listener);
    FAIL() << "a key was taken for a certificate";
  } catch (const std::runtime_error& error) {
    EXPECT_NE(std::string(error.what()).find("can't use the certificate " + listener.keyFile),
              std::string::npos);
  }
}

}  // namespace
}  // namespace demoserver
