// Bodies that are read whole, into room whose size was known before: attachments.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>

#include "transport/HttpTransport.h"
#include "unit/transport/Client.h"
#include "unit/transport/ScriptedServer.h"

namespace airsync::testing {
namespace {

using Kind = TransportErrorKind;
using ::testing::HasSubstr;

struct Outcome {
  UINT16 status = 0;
  Kind head = Kind::kNone;
  Kind body = Kind::kNone;
  std::string bytes;
  std::uint64_t told = 0;
  std::string sentence;

  // A chunk's size may have arrived together with the head, or later.
  Kind failure() const { return head != Kind::kNone ? head : body; }
};

Outcome outcomeOf(const std::string& answer, UINT32 room) {
  ScriptedServer server({[&](Peer& peer) {
    peer.readRequest();
    peer.send(answer);
  }});
  HttpTransport transport(plainOptions(server.port()));
  EXPECT_EQ(transport.Open(nullptr), 0U);
  EXPECT_EQ(sendHead(transport, requestHead(0), 0), 0U);
  std::string bytes(room, '?');
  auto* destination = reinterpret_cast<UINT8*>(bytes.data());
  UINT32 length = room;
  Outcome outcome;
  const auto kind = [&] {
    outcome.sentence = transport.lastError().sentence();
    return transport.lastError().kind;
  };
  if (transport.ReadResponseHead(&outcome.status, &destination, &length, true, nullptr, 0, nullptr, 0) != 0) {
    outcome.head = kind();
    return outcome;
  }
  auto count = static_cast<INT32>(room);
  const SYNC_RESULT result = transport.Read(destination, &count, 1);
  if (result != 0) outcome.body = kind();
  EXPECT_EQ(result == 0, outcome.body == Kind::kNone);
  outcome.bytes = bytes.substr(0, static_cast<std::size_t>(count));
  outcome.told = transport.lastBodyBytes();
  return outcome;
}

const std::string kOk = "HTTP/1.1 200 OK\r\n";
const std::string kChunked = kOk + "Transfer-Encoding: chunked\r\n\r\n";

TEST(HttpTransportWhole, TakesABodyThatIsShorterThanTheRoom) {
  for (const std::string& answer :
       {answerOf("abcde"), kChunked + "2\r\nab\r\n3\r\ncde\r\n0\r\n\r\n", kOk + "\r\nabcde"}) {
    for (const UINT32 room : {5U, 6U, 100'000U}) {
      const Outcome outcome = outcomeOf(answer, room);
      EXPECT_EQ(outcome.status, 200);
      EXPECT_EQ(outcome.body, Kind::kNone) << answer << room;
      EXPECT_EQ(outcome.bytes, "abcde") << answer;
      EXPECT_EQ(outcome.told, 5U) << answer;
    }
  }
}

TEST(HttpTransportWhole, TakesAnEmptyBody) {
  for (const std::string& answer : {answerOf(""), kChunked + "0\r\n\r\n", kOk + "\r\n"}) {
    const Outcome outcome = outcomeOf(answer, 10);
    EXPECT_EQ(outcome.body, Kind::kNone) << answer;
    EXPECT_EQ(outcome.told, 0U);
  }
}

TEST(HttpTransportWhole, RefusesABodyThatIsAnnouncedToBeLargerThanTheRoomBeforeItIsRead) {
  const Outcome outcome = outcomeOf(answerOf("abcde"), 4);
  EXPECT_EQ(outcome.head, Kind::kTooLarge);
  EXPECT_THAT(outcome.sentence, HasSubstr("larger than 4 bytes"));
}

TEST(HttpTransportWhole, RefusesABodyThatGoesOnBehindTheRoom) {
  for (const std::string& answer : {kChunked + "4\r\nabcd\r\n1\r\ne\r\n0\r\n\r\n",
                                    kChunked + "5\r\nabcde\r\n0\r\n\r\n", kOk + "\r\nabcde"}) {
    EXPECT_EQ(outcomeOf(answer, 4).failure(), Kind::kTooLarge) << answer;
  }
}

TEST(HttpTransportWhole, TellsABodyThatBreaksOffFromAShortOne) {
  for (const std::string& answer :
       {kOk + "Content-Length: 5\r\n\r\nabcd", kChunked + "5\r\nabcd", kChunked + "4\r\nabcd\r\n",
        kChunked + "4\r\nabcd\r\n0\r\n", kOk + "Content-Length: 5\r\n\r\n"}) {
    EXPECT_EQ(outcomeOf(answer, 5).body, Kind::kClosedEarly) << answer;
  }
}

TEST(HttpTransportWhole, TellsTheStatusEvenIfItsPageIsLargerThanTheRoom) {
  const Outcome outcome = outcomeOf("HTTP/1.1 404 Not Found\r\nContent-Length: 9\r\n\r\nnot there", 4);
  EXPECT_EQ(outcome.head, Kind::kHttpStatus);
  EXPECT_EQ(outcome.status, 404);
}

TEST(HttpTransportWhole, LeavesTheConnectionFitForTheNextCommand) {
  ScriptedServer server({[](Peer& peer) {
    peer.readRequest();
    peer.send(kChunked + "3\r\nabc\r\n0\r\n\r\n");
    peer.readRequest();
    peer.send(answerOf("next"));
    peer.readToEnd();
  }});
  HttpTransport transport(plainOptions(server.port()));
  ASSERT_EQ(transport.Open(nullptr), 0U);
  ASSERT_EQ(sendHead(transport, requestHead(0), 0), 0U);
  UINT8 bytes[8];
  UINT8* destination = bytes;
  UINT32 length = sizeof(bytes);
  UINT16 status = 0;
  ASSERT_EQ(transport.ReadResponseHead(&status, &destination, &length, true, nullptr, 0, nullptr, 0), 0U);
  INT32 count = sizeof(bytes);
  ASSERT_EQ(transport.Read(bytes, &count, 1), 0U);
  EXPECT_EQ(count, 3);
  EXPECT_EQ(exchange(transport, "x", 4), "next");
  EXPECT_EQ(server.accepted(), 1U);
}

}  // namespace
}  // namespace airsync::testing
