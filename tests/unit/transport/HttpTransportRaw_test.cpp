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

struct Steps {
  std::vector<Step> seen;
  WatchRaw watch() {
    return [this](const RawProgress& progress) {
      seen.emplace_back(progress.done, progress.next, progress.total);
    };
  }
};

TEST(HttpTransportRaw, TellsOfAMessagePieceByPiece) {
  const std::string message(150'000, 'm');
  std::string seen;
  ScriptedServer server({[&](Peer& peer) {
    seen = peer.readRequest();
    peer.send(answerOf(""));
    peer.readToEnd();
  }});
  Steps steps;
  TransportOptions options = plainOptions(server.port());
  options.watchRaw = steps.watch();
  HttpTransport transport(options);
  ASSERT_EQ(transport.Open(nullptr), 0U);
  ASSERT_EQ(postMessage(transport, message), 0U);
  EXPECT_EQ(readHead(transport).status, 200);
  EXPECT_THAT(steps.seen, ElementsAre(Step(0, 65536, 150000), Step(65536, 65536, 150000),
                                      Step(131072, 18928, 150000), Step(150000, 0, 150000)));
  EXPECT_EQ(seen, requestOf(message));
}

TEST(HttpTransportRaw, TellsOfASmallMessageBeforeItGoesOutWithTheHead) {
  ScriptedServer server({[](Peer& peer) {
    peer.readRequest();
    peer.send(answerOf(""));
    peer.readToEnd();
  }});
  Steps steps;
  TransportOptions options = plainOptions(server.port());
  options.watchRaw = steps.watch();
  HttpTransport transport(options);
  ASSERT_EQ(transport.Open(nullptr), 0U);
  ASSERT_EQ(postMessage(transport, "abc"), 0U);
  EXPECT_THAT(steps.seen, ElementsAre(Step(0, 3, 3), Step(3, 0, 3)));
}

TEST(HttpTransportRaw, TellsOfAnAttachmentPieceByPiece) {
  const std::string content(70'000, 'a');
  ScriptedServer server({[&](Peer& peer) {
    peer.readRequest();
    peer.send(answerOf(content));
    peer.readToEnd();
  }});
  Steps steps;
  TransportOptions options = plainOptions(server.port());
  options.watchRaw = steps.watch();
  HttpTransport transport(options);
  ASSERT_EQ(transport.Open(nullptr), 0U);
  ASSERT_EQ(sendHead(transport, requestHead(0), 0), 0U);
  ASSERT_EQ(readHead(transport).status, 200);
  std::string got(70'000, '\0');
  INT32 count = 70'000;
  ASSERT_EQ(transport.Read(reinterpret_cast<UINT8*>(got.data()), &count, 1), 0U);
  EXPECT_EQ(count, 70'000);
  EXPECT_EQ(got, content);
  EXPECT_THAT(steps.seen,
              ElementsAre(Step(0, 65536, 70000), Step(65536, 4464, 70000), Step(70000, 0, 70000)));
}

TEST(HttpTransportRaw, CountsWhatArrivedOfAnAttachmentThatIsShorter) {
  ScriptedServer server({[](Peer& peer) {
    peer.readRequest();
    peer.send(answerOf(std::string(65'540, 'a')));
    peer.readToEnd();
  }});
  Steps steps;
  TransportOptions options = plainOptions(server.port());
  options.watchRaw = steps.watch();
  HttpTransport transport(options);
  ASSERT_EQ(transport.Open(nullptr), 0U);
  ASSERT_EQ(sendHead(transport, requestHead(0), 0), 0U);
  ASSERT_EQ(readHead(transport).status, 200);
  std::string got(70'000, '\0');
  INT32 count = 70'000;
  EXPECT_EQ(transport.Read(reinterpret_cast<UINT8*>(got.data()), &count, 1), 0U);
  EXPECT_EQ(count, 65'540);
  EXPECT_EQ(steps.seen.back(), Step(65540, 0, 70000));
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
  ScriptedServer server({[](Peer& peer) {
    peer.readRequest();
    peer.send(answerOf("ok"));
    peer.readToEnd();
  }});
  Steps steps;
  TransportOptions options = plainOptions(server.port());
  options.watchRaw = steps.watch();
  HttpTransport transport(options);
  ASSERT_EQ(transport.Open(nullptr), 0U);
  EXPECT_EQ(exchange(transport, "document", 2), "ok");
  EXPECT_THAT(steps.seen, IsEmpty());
}

}  // namespace
}  // namespace airsync::testing
