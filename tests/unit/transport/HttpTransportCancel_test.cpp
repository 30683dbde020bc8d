// Calls that end before their time: cancelled, or out of patience.
#include <csignal>
#include <future>
#include <gtest/gtest.h>
#include <optional>
#include <sys/socket.h>
#include <thread>

#include "transport/HttpTransport.h"
#include "unit/transport/Client.h"
#include "unit/transport/DeafPort.h"
#include "unit/transport/ScriptedServer.h"

namespace airsync::testing {
namespace {

using Kind = TransportErrorKind;
using std::chrono::milliseconds;
namespace asio = boost::asio;

void answerOnce(Peer& peer) {
  peer.readRequest();
  peer.send(answerOf("ok"));
  peer.readToEnd();
}

TEST(HttpTransportCancel, EndsAConnectThatNobodyAnswers) {
  const DeafPort deaf;
  std::promise<void> connecting;
  TransportOptions options = plainOptions(deaf.port());
  options.trace = [&](std::string_view line) {
    if (line.starts_with("* connecting")) connecting.set_value();
  };
  HttpTransport transport(options);
  std::thread canceller([&] {
    connecting.get_future().wait();
    transport.Cancel();
  });
  EXPECT_EQ(transport.Open(nullptr), resultOf(Kind::kCancelled));
  canceller.join();
}

TEST(HttpTransportCancel, EndsAHandshakeThatTheServerDoesNotTakePartIn) {
  HttpTransport* client = nullptr;
  ScriptedServer server({[&](Peer& peer) {
    peer.readBytes(1);  // the client has begun its handshake
    client->Cancel();
    peer.readToEnd();
  }});
  TransportOptions options = plainOptions(server.port());
  options.scheme = Scheme::kHttps;
  HttpTransport transport(options);
  client = &transport;
  EXPECT_EQ(transport.Open(nullptr), resultOf(Kind::kCancelled));
}

TEST(HttpTransportCancel, EndsAResolverThatDoesNotComeBack) {
  struct Gate {
    std::promise<void> entered;
    std::promise<void> release;
  };
  const auto gate = std::make_shared<Gate>();
  TransportOptions options = plainOptions(1);
  options.host = "slow.example";
  options.resolve = [gate](const std::string&, std::uint16_t) -> Endpoints {
    gate->entered.set_value();
    gate->release.get_future().wait();
    return {};
  };
  HttpTransport transport(options);
  std::thread canceller([&] {
    gate->entered.get_future().wait();
    transport.Cancel();
  });
  EXPECT_EQ(transport.Open(nullptr), resultOf(Kind::kCancelled));
  canceller.join();
  gate->release.set_value();
}

TEST(HttpTransportCancel, EndsTheWaitForTheHeadAndLetsTheNextCommandWork) {
  HttpTransport* client = nullptr;
  ScriptedServer server({[&](Peer& peer) {
                           peer.readRequest();
                           client->Cancel();
                           peer.readToEnd();
                         },
                         answerOnce});
  HttpTransport transport(plainOptions(server.port()));
  client = &transport;
  ASSERT_EQ(transport.Open(nullptr), 0U);
  ASSERT_EQ(post(transport, "1"), 0U);
  const HeadResult head = readHead(transport);
  EXPECT_EQ(head.result, resultOf(Kind::kCancelled));
  EXPECT_EQ(head.status, 0);
  EXPECT_EQ(transport.lastError().kind, Kind::kCancelled);
  EXPECT_EQ(exchange(transport, "2", 2), "ok");
}

TEST(HttpTransportCancel, EndsAReadInTheMiddleOfTheBody) {
  HttpTransport* client = nullptr;
  ScriptedServer server({[&](Peer& peer) {
                           peer.readRequest();
                           peer.send("HTTP/1.1 200 OK\r\nContent-Length: 10\r\n\r\nabc");
                           client->Cancel();
                           peer.readToEnd();
                         },
                         answerOnce});
  HttpTransport transport(plainOptions(server.port()));
  client = &transport;
  ASSERT_EQ(transport.Open(nullptr), 0U);
  ASSERT_EQ(post(transport, "1"), 0U);
  // Cancel may come as early as while the head is waited for.
  const bool started = readHead(transport).result == 0;
  EXPECT_LE(started ? readBody(transport, 10).size() : 0, 3U);
  EXPECT_EQ(transport.lastError().kind, Kind::kCancelled);
  EXPECT_EQ(exchange(transport, "2", 2), "ok");
}

TEST(HttpTransportCancel, EndsASendThatTheServerDoesNotTake) {
  HttpTransport* client = nullptr;
  std::promise<void> done;
  ScriptedServer server({[&](Peer& peer) {
    peer.readBytes(1);
    client->Cancel();
    done.get_future().wait();
  }});
  HttpTransport transport(plainOptions(server.port()));
  client = &transport;
  ASSERT_EQ(transport.Open(nullptr), 0U);
  const std::string message(64 * 1024 * 1024, 'm');  // more than any socket buffers
  EXPECT_EQ(postMessage(transport, message), resultOf(Kind::kCancelled));
  done.set_value();
}

HttpTransport* interruptible = nullptr;

// Keeps S6.
TEST(HttpTransportCancel, MayComeFromASignalHandler) {
  ScriptedServer server({[&](Peer& peer) {
    peer.readRequest();
    ::kill(::getpid(), SIGUSR1);
    peer.readToEnd();
  }});
  HttpTransport transport(plainOptions(server.port()));
  interruptible = &transport;
  struct sigaction action {};
  action.sa_handler = [](int) { interruptible->Cancel(); };
  struct sigaction before {};
  ASSERT_EQ(::sigaction(SIGUSR1, &action, &before), 0);
  ASSERT_EQ(transport.Open(nullptr), 0U);
  ASSERT_EQ(post(transport, "1"), 0U);
  EXPECT_EQ(readHead(transport).result, resultOf(Kind::kCancelled));
  ::sigaction(SIGUSR1, &before, nullptr);
}

TEST(HttpTransportCancel, LeavesErrnoAlone) {
  HttpTransport transport(plainOptions(1));
  errno = 4711;
  transport.Cancel();
  EXPECT_EQ(errno, 4711);
}

TEST(HttpTransportCancel, BetweenCommandsIsForgottenWhenTheNextOneBegins) {
  ScriptedServer server({answerOnce});
  HttpTransport transport(plainOptions(server.port()));
  ASSERT_EQ(transport.Open(nullptr), 0U);
  transport.Cancel();
  transport.Cancel();
  EXPECT_EQ(exchange(transport, "1", 2), "ok");
}

TEST(HttpTransportCancel, AfterTheHeadWasGivenEndsTheCommandBeforeItIsSent) {
  ScriptedServer server({[](Peer& peer) { peer.readToEnd(); }});
  HttpTransport transport(plainOptions(server.port()));
  ASSERT_EQ(transport.Open(nullptr), 0U);
  ASSERT_EQ(sendHead(transport, requestHead(1), 1), 0U);
  transport.Cancel();
  EXPECT_EQ(write(transport, "1"), resultOf(Kind::kCancelled));
}

TEST(HttpTransportCancel, BeforeOpenEndsThatOpenAndNoOther) {
  ScriptedServer server({answerOnce});
  HttpTransport transport(plainOptions(server.port()));
  transport.Cancel();
  EXPECT_EQ(transport.Open(nullptr), resultOf(Kind::kCancelled));
  EXPECT_EQ(transport.Open(nullptr), 0U);
  EXPECT_EQ(exchange(transport, "1", 2), "ok");
}

TEST(HttpTransportCancel, IsForgottenByClose) {
  ScriptedServer server({answerOnce, answerOnce});
  HttpTransport transport(plainOptions(server.port()));
  ASSERT_EQ(transport.Open(nullptr), 0U);
  transport.Cancel();
  transport.Close();
  EXPECT_EQ(transport.Open(nullptr), 0U);
}

TEST(HttpTransportTimeout, EndsAConnectThatNobodyAnswers) {
  const DeafPort deaf;
  TransportOptions options = plainOptions(deaf.port());
  options.connectTimeout = milliseconds(50);
  HttpTransport transport(options);
  EXPECT_EQ(transport.Open(nullptr), resultOf(Kind::kConnectTimeout));
}

TEST(HttpTransportTimeout, EndsAHandshakeThatTheServerDoesNotTakePartIn) {
  ScriptedServer server({[](Peer& peer) { peer.readToEnd(); }});
  TransportOptions options = plainOptions(server.port());
  options.scheme = Scheme::kHttps;
  options.connectTimeout = milliseconds(50);
  HttpTransport transport(options);
  EXPECT_EQ(transport.Open(nullptr), resultOf(Kind::kConnectTimeout));
}

TEST(HttpTransportTimeout, EndsAResolverThatDoesNotComeBack) {
  const auto release = std::make_shared<std::promise<void>>();
  TransportOptions options = plainOptions(1);
  options.host = "slow.example";
  options.connectTimeout = milliseconds(50);
  options.resolve = [release](const std::string&, std::uint16_t) -> Endpoints {
    release->get_future().wait();
    return {};
  };
  HttpTransport transport(options);
  EXPECT_EQ(transport.Open(nullptr), resultOf(Kind::kConnectTimeout));
  release->set_value();
}

TEST(HttpTransportTimeout, EndsTheWaitForAServerThatSaysNothing) {
  ScriptedServer server({[](Peer& peer) { peer.readToEnd(); }, answerOnce});
  TransportOptions options = plainOptions(server.port());
  options.idleTimeout = milliseconds(50);
  HttpTransport transport(options);
  ASSERT_EQ(transport.Open(nullptr), 0U);
  ASSERT_EQ(post(transport, "1"), 0U);
  const HeadResult head = readHead(transport);
  EXPECT_EQ(head.result, resultOf(Kind::kIdleTimeout));
  EXPECT_EQ(head.status, 0);
}

TEST(HttpTransportTimeout, DoesNotRepeatARequestThatTimedOutOnAReusedConnection) {
  int requests = 0;
  ScriptedServer server({[&](Peer& peer) {
    peer.readRequest();
    peer.send(answerOf("ok"));
    peer.readRequest();
    ++requests;
    peer.readToEnd();
  }});
  TransportOptions options = plainOptions(server.port());
  options.idleTimeout = milliseconds(200);
  HttpTransport transport(options);
  ASSERT_EQ(transport.Open(nullptr), 0U);
  EXPECT_EQ(exchange(transport, "1", 2), "ok");
  ASSERT_EQ(post(transport, "2"), 0U);
  EXPECT_EQ(readHead(transport).result, resultOf(Kind::kIdleTimeout));
  server.waitForClosed(1);
  EXPECT_EQ(requests, 1);
  EXPECT_EQ(server.accepted(), 1U);
}

// Keeps S10.
TEST(HttpTransportTimeout, EndsAnAnswerThatDripsForEver) {
  ScriptedServer server({[](Peer& peer) {
    peer.readRequest();
    peer.send("HTTP/1.1 200 OK\r\nContent-Length: 1000000\r\n\r\n");
    while (peer.send("x")) std::this_thread::sleep_for(milliseconds(2));
  }});
  TransportOptions options = plainOptions(server.port());
  options.totalTimeout = milliseconds(200);
  HttpTransport transport(options);
  ASSERT_EQ(transport.Open(nullptr), 0U);
  ASSERT_EQ(post(transport, "1"), 0U);
  if (readHead(transport).result == 0) readBody(transport, 1'000'000);
  EXPECT_EQ(transport.lastError().kind, Kind::kTotalTimeout);
}

}  // namespace
}  // namespace airsync::testing
