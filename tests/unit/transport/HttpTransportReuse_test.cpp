// Which connection a request goes out on, and how often.
#include <gtest/gtest.h>
#include <mutex>
#include <vector>

#include "support/HexAndText.h"
#include "transport/HttpTransport.h"
#include "unit/transport/Client.h"
#include "unit/transport/ScriptedServer.h"

namespace airsync::testing {
namespace {

using airsync_test::HexAndText;
using Kind = TransportErrorKind;

// Requests in the order of their arrival, over all connections.
class Requests {
 public:
  std::string add(std::string request) {
    const std::lock_guard lock(mutex_);
    all_.push_back(request);
    return request;
  }
  std::vector<std::string> all() {
    const std::lock_guard lock(mutex_);
    return all_;
  }

 private:
  std::mutex mutex_;
  std::vector<std::string> all_;
};

class HttpTransportReuse : public ::testing::Test {
 protected:
  // Answers each of `answers` to one request, then hangs up.
  ScriptedServer::Script answering(std::vector<std::string> answers) {
    return [this, answers](Peer& peer) {
      for (const std::string& answer : answers) {
        requests.add(peer.readRequest());
        peer.send(answer);
      }
    };
  }

  // The same, but takes one more request and hangs up without a word.
  ScriptedServer::Script answeringAndLosing(std::vector<std::string> answers) {
    return [this, answers](Peer& peer) {
      answering(answers)(peer);
      requests.add(peer.readRequest());
    };
  }

  Requests requests;
};

using Strings = std::vector<std::string>;

TEST_F(HttpTransportReuse, NoticesAConnectionThatTheServerClosedMeanwhile) {
  ScriptedServer server({answering({answerOf("one")}), answering({answerOf("two")})});
  HttpTransport transport(plainOptions(server.port()));
  ASSERT_EQ(transport.Open(nullptr), 0U);
  EXPECT_EQ(exchange(transport, "1", 3), "one");
  server.waitForClosed(1);
  ASSERT_EQ(postMessage(transport, "2"), 0U);  // a message: a second attempt would not be allowed
  EXPECT_EQ(readHead(transport).status, 200);
  EXPECT_EQ(requests.all(), (Strings{requestOf("1"), requestOf("2")}));
}

TEST_F(HttpTransportReuse, NoticesThatTheServerClosedTheConnectionBeforeItsFirstRequest) {
  ScriptedServer server({[](Peer&) {}, answering({answerOf("one")})});
  HttpTransport transport(plainOptions(server.port()));
  ASSERT_EQ(transport.Open(nullptr), 0U);
  server.waitForClosed(1);
  EXPECT_EQ(exchange(transport, "1", 3), "one");
}

TEST_F(HttpTransportReuse, SendsADocumentOnceMoreWhenAReusedConnectionBreaksBeforeTheAnswer) {
  ScriptedServer server({answeringAndLosing({answerOf("one")}), answering({answerOf("two")})});
  HttpTransport transport(plainOptions(server.port()));
  ASSERT_EQ(transport.Open(nullptr), 0U);
  EXPECT_EQ(exchange(transport, "1", 3), "one");
  EXPECT_EQ(exchange(transport, "2", 3), "two");
  EXPECT_EQ(requests.all(), (Strings{requestOf("1"), requestOf("2"), requestOf("2")}));
}

TEST_F(HttpTransportReuse, SendsADocumentOnceMoreWhenAReusedConnectionIsReset) {
  ScriptedServer server({[&](Peer& peer) {
                           answering({answerOf("one")})(peer);
                           requests.add(peer.readRequest());
                           peer.reset();
                         },
                         answering({answerOf("two")})});
  HttpTransport transport(plainOptions(server.port()));
  ASSERT_EQ(transport.Open(nullptr), 0U);
  EXPECT_EQ(exchange(transport, "1", 3), "one");
  EXPECT_EQ(exchange(transport, "2", 3), "two");
  EXPECT_EQ(requests.all(), (Strings{requestOf("1"), requestOf("2"), requestOf("2")}));
}

TEST_F(HttpTransportReuse, SendsADocumentNoMoreThanTwice) {
  ScriptedServer server(
      {answeringAndLosing({answerOf("one")}), answeringAndLosing({}), answering({answerOf("three")})});
  HttpTransport transport(plainOptions(server.port()));
  ASSERT_EQ(transport.Open(nullptr), 0U);
  EXPECT_EQ(exchange(transport, "1", 3), "one");
  ASSERT_EQ(post(transport, "2"), 0U);
  const HeadResult head = readHead(transport);
  EXPECT_EQ(head.result, resultOf(Kind::kClosedEarly));
  EXPECT_EQ(head.status, 0);
  EXPECT_EQ(requests.all(), (Strings{requestOf("1"), requestOf("2"), requestOf("2")}));
}

TEST_F(HttpTransportReuse, DoesNotRepeatADocumentOnAConnectionThatWasNew) {
  ScriptedServer server({answeringAndLosing({}), answering({answerOf("two")})});
  HttpTransport transport(plainOptions(server.port()));
  ASSERT_EQ(transport.Open(nullptr), 0U);
  ASSERT_EQ(post(transport, "1"), 0U);
  EXPECT_EQ(readHead(transport).result, resultOf(Kind::kClosedEarly));
  EXPECT_EQ(requests.all(), (Strings{requestOf("1")}));
}

TEST_F(HttpTransportReuse, DoesNotRepeatADocumentAfterTheFirstByteOfItsAnswer) {
  ScriptedServer server({[&](Peer& peer) {
                           answering({answerOf("one")})(peer);
                           requests.add(peer.readRequest());
                           peer.send("H");
                         },
                         answering({answerOf("two")})});
  HttpTransport transport(plainOptions(server.port()));
  ASSERT_EQ(transport.Open(nullptr), 0U);
  EXPECT_EQ(exchange(transport, "1", 3), "one");
  ASSERT_EQ(post(transport, "2"), 0U);
  EXPECT_EQ(readHead(transport).result, resultOf(Kind::kClosedEarly));
  EXPECT_EQ(requests.all(), (Strings{requestOf("1"), requestOf("2")}));
}

// A document that names its command; the bytes are worked out by hand.
std::string headOf(const std::string& command, std::size_t length) {
  return "POST /sync?Cmd=" + command + "&User=ann HTTP/1.1\r\nContent-Length: " + std::to_string(length) +
         "\r\n\r\n";
}

struct CommandRow {
  const char* what;
  std::string command;
  std::string document;
  std::size_t sendings;
};

const std::string kWbxml = HexAndText("03 01 6A 00");
// Sync/Collections/Collection/{SyncKey "7"}, and what follows in the collection.
std::string syncOf(const char* more) {
  return kWbxml + HexAndText("45 5C 4F 4B 03 '7' 00 01") + HexAndText(more) + HexAndText("01 01 01");
}

const CommandRow kCommands[] = {
    {"a list of folders", "FolderSync", "x", 2},
    {"an estimate", "GetItemEstimate", "x", 2},
    {"the hierarchy", "GetHierarchy", "", 2},
    {"an attachment", "GetAttachment&AttachmentName=a", "", 2},
    {"a synchronisation that sends nothing", "Sync", syncOf("13"), 2},
    {"one that fetches an item", "Sync", syncOf("56 4A 4D 03 ':' 00 01 01 01"), 2},
    {"an id whose letters are those of changes", "Sync", syncOf("52 03 'GHI' 00 01"), 2},
    {"an opaque id", "Sync", syncOf("52 C3 02 47 48 01"), 2},
    {"an addition", "Sync", syncOf("56 47 01 01"), 1},
    {"a change", "Sync", syncOf("56 48 01 01"), 1},
    {"a deletion", "Sync", syncOf("56 49 01 01"), 1},
    {"an element that is called like one on another page", "Sync", syncOf("00 01 47 01 00 00"), 2},
    {"a change behind elements of another page", "Sync", syncOf("00 01 5F 01 00 00 48 01"), 1},
    {"attributes", "Sync", syncOf("C5 01 01"), 1},
    {"an extension", "Sync", syncOf("40 'x' 00"), 1},
    {"a text without an end", "Sync", kWbxml + HexAndText("45 03 'x'"), 1},
    {"no document", "Sync", "", 1},
    {"a move", "MoveItems", "x", 1},
    {"a new folder", "FolderCreate", "x", 1},
    {"a folder to be deleted", "FolderDelete", "x", 1},
    {"a folder to be renamed", "FolderUpdate", "x", 1},
    {"an answer to a meeting", "MeetingResponse", "x", 1},
    {"a notification", "Notify", "x", 1},
    {"a command that nobody knows", "FolderSyncs", "x", 1},
    {"no command", "", "x", 1},
};

TEST_F(HttpTransportReuse, SendsOnceMoreWhatChangesNothingAndNothingElse) {
  for (const CommandRow& row : kCommands) {
    Requests seen;
    ScriptedServer server({[&](Peer& peer) {
                             peer.readRequest();
                             peer.send(answerOf("one"));
                             seen.add(peer.readRequest());
                           },
                           [&](Peer& peer) {
                             seen.add(peer.readRequest());
                             peer.send(answerOf("two"));
                           }});
    HttpTransport transport(plainOptions(server.port()));
    ASSERT_EQ(transport.Open(nullptr), 0U);
    EXPECT_EQ(exchange(transport, "1", 3), "one");
    const std::string head = headOf(row.command, row.document.size());
    ASSERT_EQ(sendHead(transport, head, row.document.size()), 0U) << row.what;
    ASSERT_EQ(write(transport, row.document), 0U) << row.what;
    const HeadResult result = readHead(transport);
    EXPECT_EQ(result.result, row.sendings == 2 ? 0U : resultOf(Kind::kClosedEarly)) << row.what;
    EXPECT_EQ(seen.all(), Strings(row.sendings, head + row.document)) << row.what;
    EXPECT_EQ(transport.fate(), row.sendings == 2 ? RequestFate::kAnswered : RequestFate::kUnknown)
        << row.what;
  }
}

TEST_F(HttpTransportReuse, KnowsThatNothingOfARequestHasLeft) {
  ScriptedServer server({answering({answerOf("one")})});
  HttpTransport transport(plainOptions(server.port()));
  ASSERT_EQ(transport.Open(nullptr), 0U);
  EXPECT_EQ(transport.fate(), RequestFate::kNotSent);
  EXPECT_EQ(exchange(transport, "1", 3), "one");
  EXPECT_EQ(transport.fate(), RequestFate::kAnswered);
  ASSERT_EQ(sendHead(transport, requestHead(1), 1), 0U);
  EXPECT_EQ(transport.fate(), RequestFate::kNotSent);
  transport.Cancel();
  EXPECT_EQ(write(transport, "2"), resultOf(Kind::kCancelled));
  EXPECT_EQ(transport.fate(), RequestFate::kNotSent);
}

TEST_F(HttpTransportReuse, DoesNotKnowWhatBecameOfARequestWhoseAnswerIsCut) {
  ScriptedServer server({answering({"HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\none"})});
  HttpTransport transport(plainOptions(server.port()));
  ASSERT_EQ(transport.Open(nullptr), 0U);
  EXPECT_EQ(exchange(transport, "1", 3), "");
  EXPECT_EQ(transport.fate(), RequestFate::kUnknown);
}

// Keeps S21.
TEST_F(HttpTransportReuse, NeverRepeatsAMessage) {
  ScriptedServer server({answeringAndLosing({answerOf("one")}), answering({answerOf("two")})});
  HttpTransport transport(plainOptions(server.port()));
  ASSERT_EQ(transport.Open(nullptr), 0U);
  EXPECT_EQ(exchange(transport, "1", 3), "one");
  ASSERT_EQ(postMessage(transport, "2"), 0U);
  EXPECT_EQ(readHead(transport).result, resultOf(Kind::kClosedEarly));
  EXPECT_EQ(requests.all(), (Strings{requestOf("1"), requestOf("2")}));
}

TEST_F(HttpTransportReuse, NeverRepeatsAMessageThatIsWrittenLikeADocument) {
  ScriptedServer server({answeringAndLosing({answerOf("one")}), answering({answerOf("two")})});
  HttpTransport transport(plainOptions(server.port()));
  ASSERT_EQ(transport.Open(nullptr), 0U);
  EXPECT_EQ(exchange(transport, "1", 3), "one");
  const std::string head = requestHead(1, "Content-Type: message/rfc822\r\n");
  ASSERT_EQ(sendHead(transport, head, 1), 0U);
  ASSERT_EQ(write(transport, "2", 0), 0U);
  EXPECT_EQ(readHead(transport).result, resultOf(Kind::kClosedEarly));
  EXPECT_EQ(requests.all(), (Strings{requestOf("1"), head + "2"}));
}

TEST_F(HttpTransportReuse, NeverRepeatsAMessageOfNoBytes) {
  ScriptedServer server({answeringAndLosing({answerOf("one")}), answering({answerOf("two")})});
  HttpTransport transport(plainOptions(server.port()));
  ASSERT_EQ(transport.Open(nullptr), 0U);
  EXPECT_EQ(exchange(transport, "1", 3), "one");
  ASSERT_EQ(postMessage(transport, ""), 0U);
  EXPECT_EQ(readHead(transport).result, resultOf(Kind::kClosedEarly));
  EXPECT_EQ(requests.all(), (Strings{requestOf("1"), requestOf("")}));
}

TEST_F(HttpTransportReuse, MakesANewConnectionWhenTheServerAnnouncedTheEnd) {
  ScriptedServer server(
      {[&](Peer& peer) {
         answering({"HTTP/1.1 200 OK\r\nConnection: close\r\nContent-Length: 3\r\n\r\none"})(peer);
         requests.add(peer.readToEnd());  // the server waits: only the announcement can tell
       },
       answering({answerOf("two")})});
  HttpTransport transport(plainOptions(server.port()));
  ASSERT_EQ(transport.Open(nullptr), 0U);
  EXPECT_EQ(exchange(transport, "1", 3), "one");
  ASSERT_EQ(postMessage(transport, "2"), 0U);
  EXPECT_EQ(readHead(transport).status, 200);
  server.waitForClosed(1);
  EXPECT_EQ(requests.all().size(), 3U);
}

TEST_F(HttpTransportReuse, DrainsTheRestOfAnUnreadBody) {
  ScriptedServer server({answering({answerOf("one and more"), answerOf("two")})});
  HttpTransport transport(plainOptions(server.port()));
  ASSERT_EQ(transport.Open(nullptr), 0U);
  EXPECT_EQ(exchange(transport, "1", 3), "one");
  EXPECT_EQ(exchange(transport, "2", 3), "two");
  EXPECT_EQ(server.accepted(), 1U);
}

TEST_F(HttpTransportReuse, DrainsTheBodyOfARefusal) {
  ScriptedServer server(
      {answering({"HTTP/1.1 503 Busy\r\nContent-Length: 5\r\n\r\nsorry", answerOf("two")})});
  HttpTransport transport(plainOptions(server.port()));
  ASSERT_EQ(transport.Open(nullptr), 0U);
  ASSERT_EQ(post(transport, "1"), 0U);
  EXPECT_EQ(readHead(transport).status, 503);
  EXPECT_EQ(exchange(transport, "2", 3), "two");
  EXPECT_EQ(server.accepted(), 1U);
}

TEST_F(HttpTransportReuse, DropsTheConnectionWhenTooMuchWasLeftUnread) {
  ScriptedServer server({answering({answerOf(std::string(200'000, 'x'))}), answering({answerOf("two")})});
  HttpTransport transport(plainOptions(server.port()));
  ASSERT_EQ(transport.Open(nullptr), 0U);
  ASSERT_EQ(post(transport, "1"), 0U);
  ASSERT_EQ(readHead(transport).status, 200);
  EXPECT_EQ(exchange(transport, "2", 3), "two");
  EXPECT_EQ(server.accepted(), 2U);
}

TEST_F(HttpTransportReuse, DropsTheConnectionWhenTheRestOfTheBodyDoesNotCome) {
  ScriptedServer server({[&](Peer& peer) {
                           peer.readRequest();
                           peer.send("HTTP/1.1 200 OK\r\nContent-Length: 6\r\n\r\none");
                           requests.add(peer.readToEnd());
                         },
                         answering({answerOf("two")})});
  HttpTransport transport(plainOptions(server.port()));
  ASSERT_EQ(transport.Open(nullptr), 0U);
  ASSERT_EQ(post(transport, "1"), 0U);
  ASSERT_EQ(readHead(transport).status, 200);  // and its body is not read
  EXPECT_EQ(exchange(transport, "2", 3), "two");
  server.waitForClosed(1);
  EXPECT_EQ(server.accepted(), 2U);
}

TEST_F(HttpTransportReuse, DropsAConnectionOnWhichTheServerSaidMoreThanItWasAsked) {
  ScriptedServer server({[&](Peer& peer) {
                           requests.add(peer.readRequest());
                           peer.send(answerOf("one") + answerOf("forged"));
                           peer.readToEnd();
                         },
                         answering({answerOf("second")})});
  HttpTransport transport(plainOptions(server.port()));
  ASSERT_EQ(transport.Open(nullptr), 0U);
  EXPECT_EQ(exchange(transport, "1", 3), "one");
  EXPECT_EQ(exchange(transport, "2", 6), "second");
}

TEST_F(HttpTransportReuse, DropsAConnectionOnWhichTheServerSpeaksUnasked) {
  ScriptedServer server({[&](Peer& peer) {
                           peer.send(answerOf("forged"));
                           peer.waitUntilDelivered();
                           requests.add("spoken");
                           peer.readToEnd();
                         },
                         answering({answerOf("second")})});
  HttpTransport transport(plainOptions(server.port()));
  ASSERT_EQ(transport.Open(nullptr), 0U);
  while (requests.all().empty()) std::this_thread::yield();
  EXPECT_EQ(exchange(transport, "2", 6), "second");
}

TEST_F(HttpTransportReuse, GivesNothingOfTheOldBodyToAReadBeforeTheNewHead) {
  ScriptedServer server({answering({answerOf("one and more"), answerOf("two")})});
  HttpTransport transport(plainOptions(server.port()));
  ASSERT_EQ(transport.Open(nullptr), 0U);
  EXPECT_EQ(exchange(transport, "1", 3), "one");
  ASSERT_EQ(post(transport, "2"), 0U);
  EXPECT_EQ(readBody(transport, 1), "");
  EXPECT_EQ(transport.lastError().kind, Kind::kInternal);
}

TEST_F(HttpTransportReuse, DropsTheConnectionAfterAHalfSentMessage) {
  ScriptedServer server({[&](Peer& peer) { requests.add(peer.readToEnd()); }, answering({answerOf("two")})});
  HttpTransport transport(plainOptions(server.port()));
  ASSERT_EQ(transport.Open(nullptr), 0U);
  ASSERT_EQ(sendHead(transport, requestHead(100'000), 100'000), 0U);
  ASSERT_EQ(write(transport, std::string(40'000, 'm'), 1), 0U);  // and then the library was cancelled
  EXPECT_EQ(exchange(transport, "2", 3), "two");
  server.waitForClosed(1);
  EXPECT_EQ(server.accepted(), 2U);
}

TEST_F(HttpTransportReuse, DropsTheConnectionWhenAnAnswerWasNeverRead) {
  ScriptedServer server({[&](Peer& peer) {
                           peer.readRequest();
                           peer.send(answerOf("one"));
                           requests.add(peer.readToEnd());
                         },
                         answering({answerOf("two")})});
  HttpTransport transport(plainOptions(server.port()));
  ASSERT_EQ(transport.Open(nullptr), 0U);
  ASSERT_EQ(post(transport, "1"), 0U);
  EXPECT_EQ(exchange(transport, "2", 3), "two");
}

TEST_F(HttpTransportReuse, KeepsTheConnectionWhenARequestWasGivenUpBeforeItWentOut) {
  ScriptedServer server({answering({answerOf("one"), answerOf("two")})});
  HttpTransport transport(plainOptions(server.port()));
  ASSERT_EQ(transport.Open(nullptr), 0U);
  EXPECT_EQ(exchange(transport, "1", 3), "one");
  ASSERT_EQ(sendHead(transport, requestHead(10), 10), 0U);
  ASSERT_EQ(write(transport, "half", 0), 0U);
  EXPECT_EQ(exchange(transport, "2", 3), "two");
  EXPECT_EQ(requests.all(), (Strings{requestOf("1"), requestOf("2")}));
}

TEST_F(HttpTransportReuse, ConnectsAgainByItselfAfterAFailure) {
  ScriptedServer server({[](Peer& peer) {
                           peer.readRequest();
                           peer.send("nonsense\r\n\r\n");
                         },
                         answering({answerOf("two")})});
  HttpTransport transport(plainOptions(server.port()));
  ASSERT_EQ(transport.Open(nullptr), 0U);
  ASSERT_EQ(post(transport, "1"), 0U);
  EXPECT_EQ(readHead(transport).result, resultOf(Kind::kProtocol));
  EXPECT_EQ(exchange(transport, "2", 3), "two");
  EXPECT_FALSE(transport.lastError());
}

}  // namespace
}  // namespace airsync::testing
