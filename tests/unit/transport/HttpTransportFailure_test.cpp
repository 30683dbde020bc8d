// Answers that are refused, and how they are told.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <vector>

#include "transport/HttpTransport.h"
#include "unit/transport/Client.h"
#include "unit/transport/ScriptedServer.h"

namespace airsync::testing {
namespace {

using Kind = TransportErrorKind;
using ::testing::HasSubstr;

// What the transport makes of an answer: the result of its head, or the error met in its body.
struct Outcome {
  HeadResult head{};
  std::string body;
  TransportError error;
  bool empty = false;
};

Outcome outcomeOf(const std::string& answer, TransportOptions options = plainOptions(0)) {
  ScriptedServer server({[&](Peer& peer) {
    peer.readRequest();
    peer.send(answer);
  }});
  options.port = server.port();
  HttpTransport transport(options);
  Outcome outcome;
  EXPECT_EQ(transport.Open(nullptr), 0U);
  EXPECT_EQ(post(transport, "1"), 0U);
  outcome.head = readHead(transport);
  if (outcome.head.result == 0) outcome.body = readBody(transport, 1000);
  outcome.error = transport.lastError();
  outcome.empty = transport.lastResponseWasEmpty();
  return outcome;
}

TEST(HttpTransportFailure, ReportsEveryStatusButTwoHundred) {
  for (const int status : {201, 202, 204, 304, 400, 401, 403, 404, 413, 500, 503, 999}) {
    const Outcome outcome =
        outcomeOf("HTTP/1.1 " + std::to_string(status) + " Text\r\nContent-Length: 0\r\n\r\n");
    EXPECT_EQ(outcome.head.result, resultOf(Kind::kHttpStatus)) << status;
    EXPECT_EQ(outcome.head.status, status);
    EXPECT_EQ(outcome.error.httpStatus, status);
    EXPECT_EQ(outcome.error.errorClass(),
              status == 401 ? TransportErrorClass::kLogin : TransportErrorClass::kServer);
    EXPECT_THAT(outcome.error.what, HasSubstr("answered with HTTP status " + std::to_string(status)));
    EXPECT_FALSE(outcome.empty) << status;
  }
}

// Keeps S9.
TEST(HttpTransportFailure, NamesWhereARedirectLeads) {
  const Outcome hostile = outcomeOf(
      "HTTP/1.1 302 Moved\r\nLocation: https://other.example/\x1b[2Jx\r\nContent-Length: 0\r\n\r\n");
  // A control character makes the head malformed; it must not reach the terminal in any case.
  EXPECT_THAT(hostile.error.sentence(), ::testing::Not(HasSubstr("\x1b")));
  const Outcome clean =
      outcomeOf("HTTP/1.1 302 Moved\r\nLocation: https://other.example/sync\r\nContent-Length: 0\r\n\r\n");
  EXPECT_EQ(clean.head.status, 302);
  EXPECT_EQ(clean.error.location, "https://other.example/sync");
}

TEST(HttpTransportFailure, TellsThatTheServerSpeaksTls) {
  const Outcome outcome = outcomeOf(std::string("\x15\x03\x01\x00\x02\x02\x46", 7));
  EXPECT_THAT(outcome.error.sentence(), HasSubstr("speaks TLS, and was asked in plain HTTP"));
}

TEST(HttpTransportFailure, TakesAServerThatHangsUpWithoutAWordForOneThatMayExpectTls) {
  EXPECT_THAT(outcomeOf("").error.advice, HasSubstr("whether it should begin with https"));
  EXPECT_EQ(outcomeOf("H").error.advice, "Try again.");
}

struct HostileCase {
  const char* name;
  std::string answer;
  Kind kind;
};

// Keeps S10.
TEST(HttpTransportFailure, RefusesHostileHeadsWithStatusZero) {
  const std::string ok = "HTTP/1.1 200 OK\r\n";
  const std::vector<HostileCase> cases = {
      {"nothing", "", Kind::kClosedEarly},
      {"half a head", ok + "Content-Len", Kind::kClosedEarly},
      {"another protocol", "SSH-2.0-server\r\n", Kind::kProtocol},
      {"binary", std::string("\x15\x03\x03\x00\x02", 5), Kind::kProtocol},
      {"no status", "HTTP/1.1 OK\r\n\r\n", Kind::kProtocol},
      {"a status of four digits", "HTTP/1.1 2000 OK\r\n\r\n", Kind::kProtocol},
      {"a status below 100", "HTTP/1.1 099 OK\r\n\r\n", Kind::kProtocol},
      {"version 1.2", "HTTP/1.2 200 OK\r\n\r\n", Kind::kProtocol},
      {"a line without a colon", ok + "nonsense\r\n\r\n", Kind::kProtocol},
      {"a blank before the colon", ok + "Content-Length : 1\r\n\r\n", Kind::kProtocol},
      {"a NUL in a value", ok + std::string("X: a\0b\r\n\r\n", 11), Kind::kProtocol},
      {"a negative length", ok + "Content-Length: -1\r\n\r\n", Kind::kProtocol},
      {"a signed length", ok + "Content-Length: +1\r\n\r\n", Kind::kProtocol},
      {"a hexadecimal length", ok + "Content-Length: 0x1\r\n\r\n", Kind::kProtocol},
      {"no length's value", ok + "Content-Length:\r\n\r\n", Kind::kProtocol},
      {"a length of 2^64", ok + "Content-Length: 18446744073709551616\r\n\r\n", Kind::kProtocol},
      {"a length of 2^64-1", ok + "Content-Length: 18446744073709551615\r\n\r\n", Kind::kTooLarge},
      {"two lengths", ok + "Content-Length: 1\r\nContent-Length: 2\r\n\r\n", Kind::kProtocol},
      {"two lengths in one line", ok + "Content-Length: 1, 2\r\n\r\n", Kind::kProtocol},
      {"length, then chunked", ok + "Content-Length: 1\r\nTransfer-Encoding: chunked\r\n\r\n",
       Kind::kProtocol},
      {"chunked, then length", ok + "Transfer-Encoding: chunked\r\nContent-Length: 1\r\n\r\n",
       Kind::kProtocol},
      {"length and another coding", ok + "Transfer-Encoding: gzip\r\nContent-Length: 1\r\n\r\n",
       Kind::kProtocol},
      {"a transfer coding nobody asked for", ok + "Transfer-Encoding: gzip, chunked\r\n\r\n",
       Kind::kProtocol},
      {"chunked twice", ok + "Transfer-Encoding: chunked\r\nTransfer-Encoding: chunked\r\n\r\n",
       Kind::kProtocol},
      {"a content coding nobody asked for", ok + "Content-Encoding: gzip\r\nContent-Length: 1\r\n\r\nx",
       Kind::kProtocol},
      {"another protocol by upgrade", "HTTP/1.1 101 Switch\r\n\r\n", Kind::kProtocol},
  };
  for (const HostileCase& row : cases) {
    const Outcome outcome = outcomeOf(row.answer);
    EXPECT_EQ(outcome.head.result, resultOf(row.kind)) << row.name << ": " << outcome.error.sentence();
    EXPECT_EQ(outcome.head.status, 0) << row.name;
    EXPECT_EQ(outcome.error.kind, row.kind) << row.name;
  }
}

// Keeps S10.
TEST(HttpTransportFailure, RefusesAHeadBeyondTheLimitWhetherItEndsOrNot) {
  TransportOptions options = plainOptions(0);
  options.maxHead = 1000;
  const std::string line = "X: " + std::string(95, 'x') + "\r\n";  // 100 bytes
  std::string head = "HTTP/1.1 200 OK\r\n";
  for (int i = 0; i < 10; ++i) head += line;
  EXPECT_EQ(outcomeOf(head, options).error.kind, Kind::kTooLarge);
  EXPECT_EQ(outcomeOf(head + "\r\n", options).error.kind, Kind::kTooLarge);
  const std::string endless = "HTTP/1.1 200 OK\r\nX: " + std::string(100'000, 'x');
  EXPECT_EQ(outcomeOf(endless).error.kind, Kind::kTooLarge);
}

TEST(HttpTransportFailure, TakesAHeadThatFillsTheLimitExactly) {
  TransportOptions options = plainOptions(0);
  std::string answer = "HTTP/1.1 200 OK\r\nContent-Length: 2\r\nX: " + std::string(100, 'x') + "\r\n\r\n";
  options.maxHead = answer.size();
  EXPECT_EQ(outcomeOf(answer + "ok", options).body, "ok");
  options.maxHead = answer.size() - 1;
  EXPECT_EQ(outcomeOf(answer + "ok", options).error.kind, Kind::kTooLarge);
}

TEST(HttpTransportFailure, CountsInterimResponsesAgainstTheHeadLimit) {
  std::string answer;
  for (int i = 0; i < 2000; ++i) answer += "HTTP/1.1 100 Continue\r\n\r\n";
  EXPECT_EQ(outcomeOf(answer + answerOf("ok")).error.kind, Kind::kTooLarge);
}

// Keeps S10.
TEST(HttpTransportFailure, DeliversNothingOfABodyThatIsCut) {
  const Outcome outcome = outcomeOf("HTTP/1.1 200 OK\r\nContent-Length: 5\r\n\r\nabc");
  EXPECT_EQ(outcome.body, "");
  EXPECT_EQ(outcome.error.kind, Kind::kClosedEarly);
  EXPECT_EQ(outcome.error.httpStatus, 200);
  EXPECT_FALSE(outcome.empty);
}

TEST(HttpTransportFailure, DoesNotTakeACutEmptyBodyForAnEmptyAnswer) {
  for (const std::string framing : {"Content-Length: 5", "Transfer-Encoding: chunked"}) {
    const Outcome outcome = outcomeOf("HTTP/1.1 200 OK\r\n" + framing + "\r\n\r\n");
    EXPECT_EQ(outcome.error.kind, Kind::kClosedEarly) << framing;
    EXPECT_FALSE(outcome.empty) << framing;
  }
}

TEST(HttpTransportFailure, DeliversNothingOfABodyWhoseCodingBreaks) {
  const Outcome outcome = outcomeOf("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n3\r\nabcX");
  EXPECT_EQ(outcome.body, "");
  EXPECT_EQ(outcome.error.kind, Kind::kProtocol);
}

// Keeps S10.
TEST(HttpTransportFailure, StopsABodyAtItsLimit) {
  TransportOptions options = plainOptions(0);
  options.maxBody = 4;
  EXPECT_EQ(outcomeOf(answerOf("four"), options).body, "four");
  EXPECT_EQ(outcomeOf(answerOf("five!"), options).error.kind, Kind::kTooLarge);
  EXPECT_EQ(outcomeOf("HTTP/1.1 200 OK\r\n\r\nfive!", options).error.kind, Kind::kTooLarge);
}

TEST(HttpTransportFailure, ReadsTheAnswerOfAServerThatRefusesAMessageHalfSent) {
  ScriptedServer server({[](Peer& peer) {
    peer.readBytes(1000);
    peer.send("HTTP/1.1 413 Too much\r\nContent-Length: 0\r\n\r\n");
    peer.reset();
  }});
  TransportOptions options = plainOptions(server.port());
  HttpTransport transport(options);
  ASSERT_EQ(transport.Open(nullptr), 0U);
  const std::string message(16 * 1024 * 1024, 'm');
  const SYNC_RESULT sent = postMessage(transport, message);
  // Whether the answer outruns the reset is the network's affair; it is never a success.
  if (sent == 0) {
    EXPECT_EQ(readHead(transport).status, 413);
  } else {
    EXPECT_EQ(sent, resultOf(Kind::kClosedEarly));
  }
  EXPECT_EQ(transport.fate(), RequestFate::kUnknown);
}

TEST(HttpTransportFailure, RefusesCallsOutOfOrder) {
  ScriptedServer server({[](Peer& peer) { peer.readToEnd(); }});
  HttpTransport transport(plainOptions(server.port()));
  const SYNC_RESULT misused = resultOf(Kind::kInternal);
  EXPECT_EQ(sendHead(transport, requestHead(0), 0), misused);
  ASSERT_EQ(transport.Open(nullptr), 0U);
  EXPECT_EQ(write(transport, "1"), misused);
  ASSERT_EQ(transport.Open(nullptr), 0U);
  EXPECT_EQ(readHead(transport).result, misused);
  ASSERT_EQ(transport.Open(nullptr), 0U);
  EXPECT_EQ(readBody(transport, 1), "");
  EXPECT_EQ(transport.lastError().kind, Kind::kInternal);
  transport.Close();
  EXPECT_EQ(sendHead(transport, requestHead(0), 0), misused);
}

TEST(HttpTransportFailure, RefusesABodyThatIsNotAsLongAsAnnounced) {
  ScriptedServer server({[](Peer& peer) { peer.readToEnd(); }});
  HttpTransport transport(plainOptions(server.port()));
  ASSERT_EQ(transport.Open(nullptr), 0U);
  ASSERT_EQ(sendHead(transport, requestHead(3), 3), 0U);
  EXPECT_EQ(write(transport, "four"), resultOf(Kind::kInternal));
  ASSERT_EQ(sendHead(transport, requestHead(3), 3), 0U);
  ASSERT_EQ(write(transport, "tw"), 0U);
  EXPECT_EQ(readHead(transport).result, resultOf(Kind::kInternal));
}

TEST(HttpTransportFailure, RefusesAByteMoreAfterACompleteBody) {
  ScriptedServer server({[](Peer& peer) { peer.readToEnd(); }});
  HttpTransport transport(plainOptions(server.port()));
  ASSERT_EQ(transport.Open(nullptr), 0U);
  ASSERT_EQ(post(transport, "1"), 0U);
  EXPECT_EQ(write(transport, ""), 0U);
  EXPECT_EQ(write(transport, "2"), resultOf(Kind::kInternal));
}

TEST(HttpTransportFailure, RefusesAHeadWithANulInside) {
  ScriptedServer server({[](Peer& peer) { peer.readToEnd(); }});
  HttpTransport transport(plainOptions(server.port()));
  ASSERT_EQ(transport.Open(nullptr), 0U);
  EXPECT_EQ(sendHead(transport, std::string("a\0b", 3), 0), resultOf(Kind::kInternal));
  EXPECT_EQ(transport.SendHeader("abc", 3, 0), resultOf(Kind::kInternal));  // without its terminator
  EXPECT_EQ(transport.SendHeader(nullptr, 5, 0), resultOf(Kind::kInternal));
}

}  // namespace
}  // namespace airsync::testing
