// How the transport tells of messages and attachments that are under way.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <tuple>
#include <vector>

#include "transport/HttpTransport.h"
#include "unit/transport/Client.h"
#include "unit/transport/ScriptedServer.h"

namespace airsync::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Kind = TransportErrorKind;
using Step = std::tuple<std::uint64_t, std::uint64_t, std::uint64_t>;

// A transport to a server that gives one answer, and what it tells meanwhile.
class Watched {
 public:
  explicit Watched(const std::string& answer)
      : server_({[this, answer](Peer& peer) {
          request = peer.readRequest();
          peer.send(answerOf(answer));
          peer.readToEnd();
        }}),
        transport(options()) {
    EXPECT_EQ(transport.Open(nullptr), 0U);
  }

  std::string request;
  std::vector<Step> steps;

 private:
  TransportOptions options() {
    TransportOptions options = plainOptions(server_.port());
    options.watchRaw = [this](const RawProgress& progress) {
      steps.emplace_back(progress.done, progress.next, progress.total);
    };
    return options;
  }

  ScriptedServer server_;

 public:
  HttpTransport transport;
};

// What arrives of an attachment of that announced size.
std::string download(HttpTransport& transport, std::size_t size) {
  EXPECT_EQ(sendHead(transport, requestHead(0), 0), 0U);
  EXPECT_EQ(readHead(transport).status, 200);
  std::string got(size, '\0');
  INT32 count = static_cast<INT32>(size);
  EXPECT_EQ(transport.Read(reinterpret_cast<UINT8*>(got.data()), &count, 1), 0U);
  got.resize(static_cast<std::size_t>(count));
  return got;
}

TEST(HttpTransportRaw, TellsOfAMessagePieceByPiece) {
  const std::string message(150'000, 'm');
  Watched watched("");
  ASSERT_EQ(postMessage(watched.transport, message), 0U);
  EXPECT_EQ(readHead(watched.transport).status, 200);
  EXPECT_THAT(watched.steps, ElementsAre(Step(0, 65536, 150000), Step(65536, 65536, 150000),
                                         Step(131072, 18928, 150000), Step(150000, 0, 150000)));
  EXPECT_EQ(watched.request, requestOf(message));
}

TEST(HttpTransportRaw, TellsOfASmallMessageBeforeItGoesOutWithTheHead) {
  Watched watched("");
  ASSERT_EQ(postMessage(watched.transport, "abc"), 0U);
  EXPECT_THAT(watched.steps, ElementsAre(Step(0, 3, 3), Step(3, 0, 3)));
}

TEST(HttpTransportRaw, TellsOfAnAttachmentPieceByPiece) {
  const std::string content(70'000, 'a');
  Watched watched(content);
  EXPECT_EQ(download(watched.transport, 70'000), content);
  EXPECT_THAT(watched.steps,
              ElementsAre(Step(0, 65536, 70000), Step(65536, 4464, 70000), Step(70000, 0, 70000)));
}

TEST(HttpTransportRaw, CountsWhatArrivedOfAnAttachmentThatIsShorter) {
  const std::string content(65'540, 'a');
  Watched watched(content);
  EXPECT_EQ(download(watched.transport, 70'000), content);
  EXPECT_EQ(watched.steps.back(), Step(65540, 0, 70000));
}

TEST(HttpTransportRaw, MovesNoFurtherPieceWhenTheWatcherCancels) {
  std::string seen;
  {
    ScriptedServer server({[&](Peer& peer) { seen = peer.readToEnd(); }});
    TransportOptions options = plainOptions(server.port());
    HttpTransport* cancelled = nullptr;
    options.watchRaw = [&](const RawProgress& progress) {
      if (progress.done == 65536) cancelled->Cancel();
    };
    HttpTransport transport(options);
    cancelled = &transport;
    ASSERT_EQ(transport.Open(nullptr), 0U);
    EXPECT_EQ(postMessage(transport, std::string(150'000, 'm')), resultOf(Kind::kCancelled));
    transport.Close();
    server.waitForClosed(1);
  }
  EXPECT_EQ(seen.size(), requestHead(150'000).size() + 65536);
}

TEST(HttpTransportRaw, SaysNothingOfDocuments) {
  Watched watched("ok");
  EXPECT_EQ(exchange(watched.transport, "document", 2), "ok");
  EXPECT_THAT(watched.steps, IsEmpty());
}

const std::string kMessageLine = "Content-Type: message/rfc822\r\n";

HeadResult resultOfMessage(HttpTransport& transport, const std::string& message) {
  const SYNC_RESULT opened = transport.Open(nullptr);
  EXPECT_EQ(opened, 0U);
  EXPECT_EQ(sendHead(transport, requestHead(message.size(), kMessageLine), message.size()), 0U);
  const SYNC_RESULT sent = write(transport, message, 1);
  return sent == 0 ? readHead(transport) : HeadResult{sent, 0};
}

TEST(HttpTransportRaw, TakesFourStatusesForTheSuccessOfAMessage) {
  for (const int status : {200, 201, 202, 204, 203, 206, 302, 400, 500}) {
    ScriptedServer server({[status](Peer& peer) {
      peer.readRequest();
      peer.send("HTTP/1.1 " + std::to_string(status) + " X\r\n" +
                (status == 204 ? "" : "Content-Length: 0\r\n") + "\r\n");
      peer.readToEnd();
    }});
    HttpTransport transport(plainOptions(server.port()));
    const HeadResult head = resultOfMessage(transport, "To: a\r\n\r\n");
    const bool good = status == 200 || status == 201 || status == 202 || status == 204;
    EXPECT_EQ(head.result, good ? 0U : resultOf(Kind::kHttpStatus)) << status;
    EXPECT_EQ(head.status, status);
    EXPECT_EQ(transport.fate(), RequestFate::kAnswered);
  }
}

// A large one does not fit into the buffers of both systems; a small one does, and only the reset tells.
// Keeps S21.
TEST(HttpTransportRaw, TakesNoAnswerForSuccessThatComesBeforeTheWholeMessageWasRead) {
  for (const std::size_t size : {std::size_t{60'000}, std::size_t{16} * 1024 * 1024}) {
    for (const int status : {200, 202, 403, 503}) {
      ScriptedServer server({[status](Peer& peer) {
        peer.readNoMoreThan(20'000);
        peer.send("HTTP/1.1 " + std::to_string(status) + " X\r\nContent-Length: 0\r\n\r\n");
        peer.waitUntilDelivered();
      }});
      HttpTransport transport(plainOptions(server.port()));
      const HeadResult head = resultOfMessage(transport, std::string(size, 'm'));
      EXPECT_NE(head.result, 0U) << size << ' ' << status;
      EXPECT_EQ(transport.fate(), RequestFate::kUnknown) << size << ' ' << status;
    }
  }
}

}  // namespace
}  // namespace airsync::testing
