#include "transport/HttpTransport.h"

#include <array>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "unit/transport/Client.h"
#include "unit/transport/ScriptedServer.h"

namespace airsync::testing {
namespace {

using Kind = TransportErrorKind;

TEST(HttpTransport, SendsTheHeadWithoutItsNulAndTheBodyByteForByte) {
  std::string seen;
  {
    ScriptedServer server({[&](Peer& peer) {
      seen = peer.readRequest();
      peer.send(answerOf("ok"));
      seen += peer.readToEnd();
    }});
    HttpTransport transport(plainOptions(server.port()));
    ASSERT_EQ(transport.Open(nullptr), 0U);
    EXPECT_EQ(exchange(transport, std::string("a\0b", 3), 2), "ok");
    transport.Close();
    server.waitForClosed(1);
  }
  EXPECT_EQ(seen,
            "POST /sync?Cmd=FolderSync HTTP/1.1\r\n"
            "Authorization: Basic c2VjcmV0\r\n"
            "Content-Length: 3\r\n"
            "\r\n" +
                std::string("a\0b", 3));
}

TEST(HttpTransport, SendsARequestWithoutABodyBeforeItReadsTheHead) {
  std::string seen;
  ScriptedServer server({[&](Peer& peer) {
    seen = peer.readRequest();
    peer.send(answerOf(""));
    peer.readToEnd();
  }});
  HttpTransport transport(plainOptions(server.port()));
  ASSERT_EQ(transport.Open(nullptr), 0U);
  ASSERT_EQ(sendHead(transport, requestHead(0), 0), 0U);
  EXPECT_EQ(readHead(transport).status, 200);
  EXPECT_EQ(seen, requestHead(0));
}

TEST(HttpTransport, SendsARequestWithoutABodyOnceWhenItIsEndedExplicitly) {
  std::string seen;
  {
    ScriptedServer server({[&](Peer& peer) {
      seen = peer.readRequest();
      peer.send(answerOf(""));
      seen += peer.readToEnd();
    }});
    HttpTransport transport(plainOptions(server.port()));
    ASSERT_EQ(transport.Open(nullptr), 0U);
    ASSERT_EQ(sendHead(transport, requestHead(0), 0), 0U);
    EXPECT_EQ(transport.EndRequest(), 0U);
    EXPECT_EQ(readHead(transport).status, 200);
    transport.Close();
    server.waitForClosed(1);
  }
  EXPECT_EQ(seen, requestHead(0));
}

TEST(HttpTransport, KeepsOneConnectionOverManyCommands) {
  ScriptedServer server({[&](Peer& peer) {
    for (int i = 0; i < 20; ++i) {
      const std::string request = peer.readRequest();
      peer.send(answerOf("answer to " + request.substr(request.size() - 2)));
    }
  }});
  HttpTransport transport(plainOptions(server.port()));
  ASSERT_EQ(transport.Open(nullptr), 0U);
  for (int i = 10; i < 30; ++i) {
    EXPECT_EQ(exchange(transport, std::to_string(i), 12), "answer to " + std::to_string(i));
  }
  EXPECT_EQ(server.accepted(), 1U);
}

TEST(HttpTransport, ReadsAChunkedBodyCutIntoSingleBytes) {
  const std::string answer =
      "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n"
      "3;name=value\r\nabc\r\n"
      "00000A\r\n0123456789\r\n"
      "1 \r\nz\r\n"
      "0\r\nTrailer: value\r\n\r\n";
  ScriptedServer server({[&](Peer& peer) {
    for (int i = 0; i < 2; ++i) {
      peer.readRequest();
      for (const char& byte : answer) peer.send(std::string_view(&byte, 1));
    }
  }});
  HttpTransport transport(plainOptions(server.port()));
  ASSERT_EQ(transport.Open(nullptr), 0U);
  EXPECT_EQ(exchange(transport, "1", 14), "abc0123456789z");
  EXPECT_EQ(exchange(transport, "2", 14), "abc0123456789z");
  EXPECT_EQ(server.accepted(), 1U);
}

TEST(HttpTransport, ReadsABodyThatEndsWithTheConnection) {
  ScriptedServer server({[](Peer& peer) {
                           peer.readRequest();
                           peer.send("HTTP/1.1 200 OK\r\n\r\nuntil the end");
                         },
                         [](Peer& peer) {
                           peer.readRequest();
                           peer.send(answerOf("next"));
                         }});
  HttpTransport transport(plainOptions(server.port()));
  ASSERT_EQ(transport.Open(nullptr), 0U);
  EXPECT_EQ(exchange(transport, "1", 100), "until the end");
  EXPECT_EQ(transport.lastError().kind, Kind::kBodyEnded);
  EXPECT_EQ(exchange(transport, "2", 4), "next");
}

TEST(HttpTransport, SkipsInterimResponses) {
  ScriptedServer server({[](Peer& peer) {
    peer.readRequest();
    peer.send("HTTP/1.1 100 Continue\r\n\r\nHTTP/1.1 103 Early Hints\r\nLink: <x>\r\n\r\n" + answerOf("ok"));
    peer.readToEnd();
  }});
  HttpTransport transport(plainOptions(server.port()));
  ASSERT_EQ(transport.Open(nullptr), 0U);
  EXPECT_EQ(exchange(transport, "1", 2), "ok");
}

TEST(HttpTransport, FailsAReadPastTheEndOfTheBodyInsteadOfWaiting) {
  ScriptedServer server({[](Peer& peer) {
    peer.readRequest();
    peer.send(answerOf("abc"));
    peer.readRequest();
    peer.send(answerOf("next"));
    peer.readToEnd();
  }});
  HttpTransport transport(plainOptions(server.port()));
  ASSERT_EQ(transport.Open(nullptr), 0U);
  ASSERT_EQ(post(transport, "1"), 0U);
  ASSERT_EQ(readHead(transport).result, 0U);
  std::array<UINT8, 8> bytes{};
  INT32 count = 5;
  EXPECT_EQ(transport.Read(bytes.data(), &count, 0), resultOf(Kind::kBodyEnded));
  EXPECT_EQ(count, 3);
  EXPECT_EQ(bytes, (std::array<UINT8, 8>{'a', 'b', 'c'}));
  EXPECT_FALSE(transport.lastResponseWasEmpty());
  EXPECT_EQ(exchange(transport, "2", 4), "next");
  EXPECT_EQ(server.accepted(), 1U);
}

TEST(HttpTransport, TellsAnEmptyAnswerInEachFraming) {
  const std::array<std::string, 3> answers = {
      "HTTP/1.1 200 OK\r\nContent-Length: 0\r\n\r\n",
      "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n0\r\n\r\n",
      "HTTP/1.1 200 OK\r\nConnection: close\r\n\r\n",
  };
  for (const std::string& answer : answers) {
    ScriptedServer server({[&](Peer& peer) {
      peer.readRequest();
      peer.send(answer);
    }});
    HttpTransport transport(plainOptions(server.port()));
    ASSERT_EQ(transport.Open(nullptr), 0U);
    EXPECT_FALSE(transport.lastResponseWasEmpty());
    EXPECT_EQ(exchange(transport, "1", 1), "") << answer;
    EXPECT_TRUE(transport.lastResponseWasEmpty()) << answer;
    EXPECT_EQ(transport.lastError().kind, Kind::kBodyEnded) << answer;
  }
}

TEST(HttpTransport, DoesNotTakeAnUnreadBodyForAnEmptyAnswer) {
  ScriptedServer server({[](Peer& peer) {
    peer.readRequest();
    peer.send(answerOf("a"));
    peer.readToEnd();
  }});
  HttpTransport transport(plainOptions(server.port()));
  ASSERT_EQ(transport.Open(nullptr), 0U);
  ASSERT_EQ(post(transport, "1"), 0U);
  ASSERT_EQ(readHead(transport).result, 0U);
  EXPECT_FALSE(transport.lastResponseWasEmpty());
  EXPECT_EQ(readBody(transport, 1), "a");
  EXPECT_FALSE(transport.lastResponseWasEmpty());
}

TEST(HttpTransport, DeliversALargeRawBodyInOneReadWhateverItsPieces) {
  std::string attachment(300'000, '\0');
  for (std::size_t i = 0; i < attachment.size(); ++i) attachment[i] = static_cast<char>(i * 31 % 251);
  std::string chunked = "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n";
  chunked += "186a0\r\n" + attachment.substr(0, 100'000) + "\r\n";  // 186a0 is 100,000
  chunked += "30d40\r\n" + attachment.substr(100'000) + "\r\n0\r\n\r\n";
  for (const std::string& answer : {answerOf(attachment), chunked}) {
    ScriptedServer server({[&](Peer& peer) {
      peer.readRequest();
      peer.send(answer);
      peer.readToEnd();
    }});
    HttpTransport transport(plainOptions(server.port()));
    ASSERT_EQ(transport.Open(nullptr), 0U);
    ASSERT_EQ(post(transport, "1"), 0U);
    ASSERT_EQ(readHead(transport).result, 0U);
    std::string got(attachment.size(), 'x');
    INT32 count = static_cast<INT32>(got.size());
    EXPECT_EQ(transport.Read(reinterpret_cast<UINT8*>(got.data()), &count, 1), 0U);
    EXPECT_EQ(count, 300'000);
    EXPECT_TRUE(got == attachment);
  }
}

TEST(HttpTransport, SendsALargeMessageUnchanged) {
  std::string message(500'000, 'm');
  for (std::size_t i = 0; i < message.size(); i += 7) message[i] = static_cast<char>(i % 256);
  std::string seen;
  ScriptedServer server({[&](Peer& peer) {
    seen = peer.readRequest();
    peer.send(answerOf(""));
    peer.readToEnd();
  }});
  HttpTransport transport(plainOptions(server.port()));
  ASSERT_EQ(transport.Open(nullptr), 0U);
  ASSERT_EQ(sendHead(transport, requestHead(message.size()), message.size()), 0U);
  ASSERT_EQ(write(transport, std::string_view(message).substr(0, 10), 1), 0U);
  ASSERT_EQ(write(transport, std::string_view(message).substr(10, 400'000), 1), 0U);
  ASSERT_EQ(write(transport, std::string_view(message).substr(400'010), 1), 0U);
  EXPECT_EQ(readHead(transport).status, 200);
  EXPECT_TRUE(seen == requestOf(message));
}

TEST(HttpTransport, FillsTheBuffersOfTheOptionsCommandCutAndTerminated) {
  ScriptedServer server({[](Peer& peer) {
    peer.readRequest();
    peer.send(
        "HTTP/1.1 200 OK\r\nms-asprotocolversions: 1.0,2.0,2.1\r\n"
        "MS-ASProtocolCommands: Sync,SendMail\r\nContent-Length: 0\r\n\r\n");
    peer.readToEnd();
  }});
  HttpTransport transport(plainOptions(server.port()));
  ASSERT_EQ(transport.Open(nullptr), 0U);
  ASSERT_EQ(sendHead(transport, requestHead(0), 0), 0U);
  UINT16 status = 0;
  UINT8* destination = nullptr;
  UINT32 length = 0;
  std::array<UINT8, 32> versions;
  versions.fill('?');
  std::array<UINT8, 5> commands;
  commands.fill('?');
  ASSERT_EQ(transport.ReadResponseHead(&status, &destination, &length, false, versions.data(), 32,
                                       commands.data(), 5),
            0U);
  EXPECT_STREQ(reinterpret_cast<const char*>(versions.data()), "1.0,2.0,2.1");
  EXPECT_EQ(commands, (std::array<UINT8, 5>{'S', 'y', 'n', 'c', 0}));
}

TEST(HttpTransport, TracesHeadsWithoutTheCredentialsAndWithoutBodies) {
  std::vector<std::string> lines;
  ScriptedServer server({[](Peer& peer) {
    peer.readRequest();
    peer.send("HTTP/1.1 200 OK\r\nSet-Cookie: session=1\r\nContent-Length: 6\r\n\r\nanswer");
    peer.readToEnd();
  }});
  TransportOptions options = plainOptions(server.port());
  options.trace = [&](std::string_view line) { lines.emplace_back(line); };
  HttpTransport transport(options);
  ASSERT_EQ(transport.Open(nullptr), 0U);
  EXPECT_EQ(exchange(transport, "request", 6), "answer");
  EXPECT_THAT(
      lines, ::testing::ElementsAre("* connecting to 127.0.0.1 port " + std::to_string(server.port()),
                                    "* connected, without encryption", "> POST /sync?Cmd=FolderSync HTTP/1.1",
                                    "> Authorization: (not shown)", "> Content-Length: 7", "< HTTP/1.1 200",
                                    "< Set-Cookie: (not shown)", "< Content-Length: 6"));
}

}  // namespace
}  // namespace airsync::testing
