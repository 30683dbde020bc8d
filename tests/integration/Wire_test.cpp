// What of a server's answers counts, over the wire: redirections, framings, and answers to messages.
#include <atomic>
#include <cstdio>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "integration/Fixture.h"
#include "support/HexAndText.h"
#include "unit/transport/ScriptedServer.h"

namespace airsync::integration {
namespace {

using airsync::testing::Peer;
using airsync::testing::ScriptedServer;
using airsync_test::HexAndText;
using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::Not;

class Wire : public AirsyncTest {
 protected:
  void configureFor(const ScriptedServer& server) {
    configure("http://127.0.0.1:" + std::to_string(server.port()) + "/service");
  }
};

// Keeps S9.
TEST_F(Wire, RedirectionIsToldWithItsTargetAndNotFollowed) {
  for (const int status : {301, 302, 303, 307, 308, 451}) {
    ScriptedServer target({[](Peer& peer) { peer.readToEnd(); }});
    const std::string place = "http://127.0.0.1:" + std::to_string(target.port()) + "/elsewhere";
    ScriptedServer server({[&](Peer& peer) {
      peer.readRequest();
      peer.send("HTTP/1.1 " + std::to_string(status) + " Moved\r\nLocation: " + place +
                "\r\nContent-Length: 0\r\n\r\n");
    }});
    configureFor(server);
    const Finished result = run({"folders", "--refresh"});
    EXPECT_EQ(result.code, 6) << status;
    EXPECT_THAT(result.errors, AllOf(HasSubstr("(HTTP " + std::to_string(status) +
                                               "); the address that it names is " + place),
                                     HasSubstr("Nothing was sent there")));
    EXPECT_EQ(server.accepted(), 1U);
    EXPECT_EQ(target.accepted(), 0U);
  }
}

// A list of folders with one in it, complete.
std::string folderList() {
  return HexAndText(
      "03 01 6A 00 00 07 56 4C 03 '1' 00 01 52 03 '7' 00 01 4E 4F 48 03 'a' 00 01 49 03 '0' 00 01 47 03 "
      "'Ours' 00 "
      "01 4A 03 '14' 00 01 01 01 01");
}

std::string hex(std::size_t number) {
  char digits[17] = {};
  std::snprintf(digits, sizeof(digits), "%zx", number);
  return digits;
}

struct FramingRow {
  const char* what;
  std::string answer;
  int code;
};

// Keeps S10.
TEST_F(Wire, AnswerCountsWhenItsFramingHasEndedAndNotBefore) {
  const std::string list = folderList();
  const std::string ok = "HTTP/1.1 200 OK\r\n";
  const std::string chunked = ok + "Transfer-Encoding: chunked\r\n\r\n" + hex(list.size()) + "\r\n" + list;
  const std::string length = ok + "Content-Length: ";
  const FramingRow rows[] = {
      {"a length that is more than what comes", length + std::to_string(list.size() + 1) + "\r\n\r\n" + list,
       4},
      {"a chunk without an end", chunked, 4},
      {"no last chunk", chunked + "\r\n", 4},
      {"a chunk that is longer than it says", chunked + "x\r\n0\r\n\r\n", 6},
      {"no chunk behind a chunk", chunked + "\r\nHTTP/1.1 200 OK\r\n\r\n", 6},
      {"a last chunk without its end", chunked + "\r\n0\r\n", 4},
      {"a trailer that does not end", chunked + "\r\n0\r\nA: " + std::string(9000, 'x'), 6},
      {"the right length", length + std::to_string(list.size()) + "\r\n\r\n" + list, 0},
      {"a proper last chunk", chunked + "\r\n0\r\n\r\n", 0},
      {"the end of the connection", ok + "\r\n" + list, 0},
  };
  for (const FramingRow& row : rows) {
    std::filesystem::remove_all(directory() / "state");
    ScriptedServer server({[&](Peer& peer) {
      peer.readRequest();
      peer.send(row.answer);
    }});
    configureFor(server);
    const Finished result = run({"folders", "--refresh"});
    EXPECT_EQ(result.code, row.code) << row.what << result.errors;
    const bool counted = run({"folders"}).output.find("Ours") != std::string::npos;
    EXPECT_EQ(counted, row.code == 0) << row.what;
  }
}

constexpr char kNotKnown[] = "whether the message went out is not known";

class Messages : public Wire {
 protected:
  static std::string message(std::size_t size) {
    return "To: ann@example.com\r\n\r\n" + std::string(size, 'm') + "\r\n";
  }

  static std::string answerWith(int status) {
    return "HTTP/1.1 " + std::to_string(status) + " X\r\n" + (status == 204 ? "" : "Content-Length: 0\r\n") +
           "\r\n";
  }

  // Sends the message to a server that reads so many bytes before it answers; 0: all of them.
  Finished send(std::size_t size, std::size_t read, int status) {
    ScriptedServer server({[&](Peer& peer) {
                             if (read == 0) {
                               peer.readRequest();
                             } else {
                               peer.readNoMoreThan(read);
                             }
                             ++sendings_;
                             peer.send(answerWith(status));
                             peer.waitUntilDelivered();
                           },
                           [&](Peer& peer) {
                             if (!peer.readRequest().empty()) ++sendings_;
                           }});
    configureFor(server);
    sendings_ = 0;
    return run({"send", "-"}, message(size));
  }

  std::atomic<int> sendings_{0};
};

// The second does not fit into the buffers of both systems; of the first, a reset alone tells.
// Keeps S21.
TEST_F(Messages, AreNotKnownToHaveGoneOutWhenTheAnswerCameBeforeTheyWereRead) {
  for (const std::size_t size : {std::size_t{60'000}, std::size_t{16} * 1024 * 1024}) {
    for (const int status : {200, 202, 204, 403, 413, 500, 503}) {
      const Finished result = send(size, 20'916, status);
      EXPECT_NE(result.code, 0) << size << ' ' << status;
      EXPECT_THAT(result.errors, AllOf(HasSubstr(kNotKnown), HasSubstr("Look into Sent Items"),
                                       Not(HasSubstr("refused the message")), Not(HasSubstr("again later"))))
          << size << ' ' << status;
      EXPECT_EQ(sendings_, 1);
    }
  }
}

// Keeps S21.
TEST_F(Messages, AreSentWhenTheServerTookAllAndSaysSo) {
  for (const int status : {200, 201, 202, 204}) {
    for (const std::size_t size : {std::size_t{100}, std::size_t{4} * 1024 * 1024}) {
      const Finished result = send(size, 0, status);
      EXPECT_EQ(result.code, 0) << status << result.errors;
      EXPECT_THAT(result.output, HasSubstr("sent"));
      EXPECT_EQ(sendings_, 1);
    }
  }
}

// Keeps S21.
TEST_F(Messages, AreNotKnownToHaveGoneOutWhenSomethingOnTheWayFailed) {
  for (const int status : {500, 501, 502, 503, 504, 507, 203, 207, 600}) {
    const Finished result = send(1000, 0, status);
    EXPECT_NE(result.code, 0) << status;
    EXPECT_THAT(result.errors, AllOf(HasSubstr(kNotKnown), HasSubstr("Look into Sent Items"),
                                     Not(HasSubstr("un the command again"))))
        << status;
    EXPECT_EQ(sendings_, 1);
  }
}

TEST_F(Messages, AreRefusedByAStatusThatSaysSo) {
  for (const int status : {302, 400, 401, 403, 404, 413, 429}) {
    const Finished result = send(1000, 0, status);
    EXPECT_THAT(result.errors,
                AllOf(HasSubstr("the server refused the message"), Not(HasSubstr("not known"))))
        << status;
  }
}

}  // namespace
}  // namespace airsync::integration
