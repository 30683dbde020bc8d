#include "http/Listener.h"

#include <gtest/gtest.h>
#include <optional>
#include <stdexcept>

#include "support/RunningServer.h"

namespace demoserver {
namespace {

class DemoListener : public WithContacts {
 protected:
  ServiceOptions options;
  ListenerOptions listener;
  std::string hierarchy = wireRequest("GetHierarchy", "");

  // A Sync that announces so many bytes, and the first of them: no document.
  static std::string bodyOf(std::size_t announced, std::size_t sent) {
    return "POST /x?Cmd=Sync&DeviceId=D1 HTTP/1.1\r\nAuthorization: " + std::string(kDemoAuthorization) +
           "\r\nContent-Length: " + std::to_string(announced) + "\r\n\r\n" + std::string(sent, 'x');
  }
  static constexpr char kBusy[] = "HTTP/1.1 503 Service Unavailable";
};

TEST_F(DemoListener, ServesRequestAfterRequestOnOneConnection) {
  RunningServer server(state, options);
  EXPECT_EQ(server.endpoint(), "127.0.0.1:" + std::to_string(server.port()));
  Connection connection(server.port());
  for (int i = 0; i < 3; ++i) {
    connection.send(hierarchy);
    const auto [status, body] = connection.answer();
    EXPECT_EQ(status, "HTTP/1.1 200 OK");
    EXPECT_EQ(decode(body).children.size(), 1u);
  }
}

TEST_F(DemoListener, ServesPipelinedAndPiecemealRequests) {
  RunningServer server(state, options);
  Connection connection(server.port());
  const std::string two = hierarchy + hierarchy;
  connection.send(two.substr(0, 30));
  connection.send(two.substr(30, hierarchy.size()));
  connection.send(two.substr(30 + hierarchy.size()));
  EXPECT_EQ(connection.answer().first, "HTTP/1.1 200 OK");
  EXPECT_EQ(connection.answer().first, "HTTP/1.1 200 OK");
}

TEST_F(DemoListener, ClosesWhenTheClientAsksForIt) {
  RunningServer server(state, options);
  Connection connection(server.port());
  std::string request = hierarchy;
  request.insert(request.find("\r\n") + 2, "Connection: close\r\n");
  connection.send(request);
  EXPECT_NE(connection.rest().find("Connection: close\r\n"), std::string::npos);
}

// Keeps S23.
TEST_F(DemoListener, RefusesOverlongAndMalformedRequests) {
  RunningServer server(state, options);
  const std::pair<std::string, std::string> table[] = {
      {"nonsense\r\n\r\n", "HTTP/1.1 400"},
      {"GET / HTTP/1.1\r\nX: " + std::string(20'000, 'x') + "\r\n\r\n", "HTTP/1.1 431"},
      {"POST / HTTP/1.1\r\nContent-Length: 1048577\r\n\r\n", "HTTP/1.1 413"},
      {"POST /x?Cmd=SendMail&DeviceId=D1 HTTP/1.1\r\nContent-Length: 1048577\r\n\r\n", "HTTP/1.1 413"},
      {"POST /x?Cmd=Sync HTTP/1.1\r\nTransfer-Encoding: chunked\r\n\r\n100001\r\n" +
           std::string(1'048'577, 'x') + "\r\n0\r\n\r\n",
       "HTTP/1.1 413"},
      {"POST / HTTP/1.1\r\nContent-Length: -1\r\n\r\n", "HTTP/1.1 400"},
      {"POST /x?%zz=a HTTP/1.1\r\nConnection: close\r\n\r\n", "HTTP/1.1 400"},
  };
  for (const auto& [request, status] : table) {
    Connection connection(server.port());
    connection.send(request);
    EXPECT_EQ(connection.rest().substr(0, 12), status) << request.substr(0, 40);
  }
}

// Keeps S23.
TEST_F(DemoListener, ReadsNoMoreThanItMayHold) {
  listener.limits.bytes = 50'000;
  RunningServer server(state, options, listener);
  EXPECT_EQ(Connection(server.port()).ask(bodyOf(60'000, 60'000)), kBusy);
  EXPECT_EQ(Connection(server.port()).ask(bodyOf(40'000, 40'000)), "HTTP/1.1 400 Bad Request");
}

// Keeps S23.
TEST_F(DemoListener, CountsWhatWasSentByHalf) {
  listener.limits.bytes = 100'000;
  RunningServer server(state, options, listener);
  std::optional<Connection> half(server.port());
  half->send(bodyOf(60'000, 50'000));
  // Both are too much together. Who is refused depends on whose bytes the server reads last; nobody is, while
  // it has read little of the first.
  bool refused = false;
  while (!refused)
    refused = Connection(server.port()).ask(bodyOf(60'000, 60'000)) == kBusy ||
              (half->waiting() > 0 && half->answer().first == kBusy);
  half.reset();
  while (Connection(server.port()).ask(bodyOf(60'000, 60'000)) == kBusy) {
  }
}

// Keeps S23.
TEST_F(DemoListener, CountsAnswersThatNobodyFetches) {
  // More than the system takes off the server's hands.
  constexpr std::size_t kSize = std::size_t{32} * 1024 * 1024;
  const std::string handle = state.attachments.add(put("A"), "a", "", std::string(kSize, 'x'));
  listener.limits.bytes = 1'000'000;
  RunningServer server(state, options, listener);
  Connection slow(server.port());
  slow.send("GET /admin/attachment?handle=" + handle + " HTTP/1.1\r\nAuthorization: " + kDemoAuthorization +
            "\r\n\r\n");
  EXPECT_NE(slow.head().find("200 OK"), std::string::npos);
  EXPECT_EQ(Connection(server.port()).ask(hierarchy), kBusy);
  EXPECT_EQ(slow.bytes(kSize).size(), kSize);
  // The server learns late that the last of it was taken.
  while (Connection(server.port()).ask(hierarchy) == kBusy) {
  }
}

// Keeps S23.
TEST_F(DemoListener, LetsConnectionsBeyondItsLimitWaitUntilOneEnds) {
  listener.limits.connections = 2;
  RunningServer server(state, options, listener);
  std::optional<Connection> first(server.port());
  Connection second(server.port());
  for (Connection* each : {&*first, &second}) {
    each->send(hierarchy);
    EXPECT_EQ(each->answer().first, "HTTP/1.1 200 OK");
  }
  Connection third(server.port());
  third.send(hierarchy);
  for (int i = 0; i < 20; ++i) {
    second.send(hierarchy);
    EXPECT_EQ(second.answer().first, "HTTP/1.1 200 OK");
  }
  EXPECT_EQ(third.waiting(), 0u);
  first.reset();
  EXPECT_EQ(third.answer().first, "HTTP/1.1 200 OK");
}

TEST_F(DemoListener, SurvivesClientsThatGoAway) {
  RunningServer server(state, options);
  { Connection connection(server.port()); }
  { Connection(server.port()).send("POST / HT"); }
  { Connection(server.port()).send("POST / HTTP/1.1\r\nContent-Length: 50\r\n\r\nabc"); }
  Connection connection(server.port());
  connection.send(hierarchy);
  EXPECT_EQ(connection.answer().first, "HTTP/1.1 200 OK");
}

TEST_F(DemoListener, SendsBodiesInChunks) {
  listener.chunkSize = 5;
  RunningServer server(state, options, listener);
  Connection connection(server.port());
  connection.send(hierarchy);
  const std::string head = connection.head();
  EXPECT_NE(head.find("Transfer-Encoding: chunked\r\n"), std::string::npos);
  EXPECT_EQ(head.find("Content-Length"), std::string::npos);
  // The document starts 03 01 6A 00 00.
  EXPECT_EQ(connection.bytes(10), std::string("5\r\n\x03\x01\x6A\0\0\r\n", 10));
  EXPECT_TRUE(connection.until("0\r\n\r\n").ends_with("\r\n0\r\n\r\n"));
  connection.send(hierarchy);
  EXPECT_NE(connection.head(), "");
}

TEST_F(DemoListener, CutsABodyAndCloses) {
  options.faults.fault.cutBody = 7;
  RunningServer server(state, options);
  Connection connection(server.port());
  connection.send(hierarchy);
  const std::string head = connection.head();
  EXPECT_EQ(head.find("Content-Length: 7\r\n"), std::string::npos);
  EXPECT_EQ(connection.rest().size(), 7u);
}

TEST_F(DemoListener, ClosesUnannouncedAfterAnAnswer) {
  options.faults.fault.closeAfter = true;
  RunningServer server(state, options);
  Connection connection(server.port());
  connection.send(hierarchy);
  EXPECT_NE(connection.head().find("Connection: keep-alive\r\n"), std::string::npos);
  EXPECT_TRUE(connection.rest().ends_with("\x01"));
}

TEST_F(DemoListener, SaysSoAndClosesAfterEachAnswerWhenThatIsItsHabit) {
  options.habits.closeAfterAnswer = true;
  RunningServer server(state, options);
  for (int i = 0; i < 2; ++i) {
    Connection connection(server.port());
    connection.send(hierarchy);
    EXPECT_NE(connection.head().find("Connection: close\r\n"), std::string::npos);
    EXPECT_TRUE(connection.rest().ends_with("\x01"));
  }
}

TEST_F(DemoListener, ClosesInPlaceOfAnAnswer) {
  options.faults.fault.dropAnswer = true;
  options.faults.count = 1;
  RunningServer server(state, options);
  Connection first(server.port());
  first.send(hierarchy);
  EXPECT_EQ(first.rest(), "");
  Connection second(server.port());
  second.send(hierarchy);
  EXPECT_EQ(second.answer().first, "HTTP/1.1 200 OK");
}

TEST_F(DemoListener, DropsARequestUnhandled) {
  options.faults.fault.dropRequest = true;
  RunningServer server(state, options);
  Connection connection(server.port());
  connection.send(wireRequest("Sync", encode(documentOf({.key = "0"}))));
  EXPECT_EQ(connection.rest(), "");
}

TEST_F(DemoListener, ADelayedAnswerHoldsUpNobodyElse) {
  options.faults.fault.delayMs = 3'600'000;
  options.faults.count = 1;
  RunningServer server(state, options);
  Connection waiting(server.port());
  waiting.send(hierarchy);
  Connection other(server.port());
  other.send("GET /admin/state HTTP/1.1\r\nAuthorization: " + std::string(kDemoAuthorization) + "\r\n\r\n");
  EXPECT_EQ(other.answer().first, "HTTP/1.1 200 OK");
}

TEST_F(DemoListener, AShortDelayEndsWithTheAnswer) {
  options.faults.fault.delayMs = 1;
  RunningServer server(state, options);
  Connection connection(server.port());
  connection.send(hierarchy);
  EXPECT_EQ(connection.answer().first, "HTTP/1.1 200 OK");
}

// Keeps S23.
TEST_F(DemoListener, ListensOnLoopbackAddressesOnly) {
  Service service(state, {});
  for (const char* address : {"0.0.0.0", "192.0.2.1", "::", "localhost", ""}) {
    listener.address = address;
    EXPECT_THROW(Listener(service, listener), std::runtime_error) << address;
  }
  listener.address = "127.0.0.2";
  EXPECT_EQ(Listener(service, listener).endpoint().substr(0, 10), "127.0.0.2:");
}

TEST_F(DemoListener, SaysThatAPortIsTaken) {
  Service service(state, {});
  const Listener first(service, listener);
  listener.port = first.port();
  try {
    const Listener second(service, listener);
    FAIL() << "two listeners on one port";
  } catch (const std::runtime_error& error) {
    EXPECT_NE(std::string(error.what()).find("can't listen on 127.0.0.1:" + std::to_string(first.port())),
              std::string::npos);
  }
}

}  // namespace
}  // namespace demoserver
