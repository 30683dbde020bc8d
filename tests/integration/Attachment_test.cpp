// Attachments: what a server may answer, and where it ends up.
#include <future>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>

#include "integration/Fixture.h"
#include "unit/transport/ScriptedServer.h"

namespace airsync::integration {
namespace {

using airsync::testing::Peer;
using airsync::testing::ScriptedServer;
using nlohmann::json;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

struct Told {
  std::string oid;
  long long size;
  std::string displayName;
};

std::string headOf(std::size_t length) {
  return "HTTP/1.1 200 OK\r\nContent-Type: application/octet-stream\r\nContent-Length: " +
         std::to_string(length) + "\r\n\r\n";
}

std::string answerOf(const std::string& content) { return headOf(content.size()) + content; }

// The mail comes from the demo server; its attachments from a server that does what the test says.
class AttachmentDownload : public AirsyncTest {
 protected:
  void bringMail(const std::vector<Told>& attachments) {
    serve({"--contacts", "0"});
    json mail = {{"Subject", "Plans"}, {"DateReceived", "2026-11-20T08:30:00Z"}};
    for (const Told& told : attachments) {
      json attachment = {
          {"OID", told.oid}, {"Size", told.size}, {"Method", 1}, {"DisplayName", told.displayName}};
      if (told.size == 0) attachment.erase("Size");
      mail["Attachments"].push_back(attachment);
    }
    server().add("f2", mail);
    sync();
  }

  // Runs `airsync attachment f2 1 ...` while the server answers the one request so.
  Finished download(const std::string& answer, const std::vector<std::string>& more = {}) {
    ScriptedServer attachments({[&](Peer& peer) {
      request_ = peer.readRequest();
      peer.send(answer);
      peer.finish();
    }});
    configure("http://127.0.0.1:" + std::to_string(attachments.port()) + "/service");
    std::vector<std::string> arguments = {"attachment", "f2", "1"};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return run(arguments);
  }

  std::vector<std::string> files() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(work())) {
      names.push_back(entry.path().filename().string());
    }
    return names;
  }

  std::string request_;
};

TEST_F(AttachmentDownload, ArrivesUnderItsNameAndCutToWhatCame) {
  bringMail({{"Att/7:plan%20", 4000, "Plan März.bin"}});
  std::string content(2500, '\0');
  for (std::size_t i = 0; i < content.size(); ++i) content[i] = static_cast<char>(i % 256);
  const Finished result = download(answerOf(content));
  ASSERT_EQ(result.code, 0) << result.errors;
  EXPECT_EQ(result.output, "Plan März.bin: 2500 bytes\n");
  EXPECT_THAT(request_, HasSubstr("Cmd=GetAttachment&AttachmentName=Att/7:plan%20&"));
  ASSERT_THAT(files(), ElementsAre("Plan März.bin"));
  EXPECT_TRUE(readFile(work() / "Plan März.bin") == content);
}

TEST_F(AttachmentDownload, MayBeEmptyAndMayComeInChunks) {
  bringMail({{"a", 10, "a.txt"}});
  const Finished empty = download(answerOf(""));
  ASSERT_EQ(empty.code, 0) << empty.errors;
  EXPECT_EQ(std::filesystem::file_size(work() / "a.txt"), 0U);
  EXPECT_EQ(empty.errors, "");
  const Finished chunked = download(
      "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n4\r\ntext\r\n0\r\n\r\n", {"-o", "b.txt"});
  ASSERT_EQ(chunked.code, 0) << chunked.errors;
  EXPECT_EQ(readFile(work() / "b.txt"), "text");
}

// The size that a mail tells may be an estimate; the answer's own length is none.
// Keeps S17.
TEST_F(AttachmentDownload, SaysSoWhenNobodyCanTellWhetherItIsComplete) {
  bringMail({{"a", 10, "a.txt"}});
  const std::string note =
      "4 of the 10 bytes came that the mail tells of, and the answer told no length of its own";
  for (const char* head : {"HTTP/1.1 200 OK\r\n\r\ntext",
                           "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n4\r\ntext\r\n0\r\n\r\n"}) {
    const Finished doubtful = download(head, {"--force", "--json"});
    EXPECT_EQ(doubtful.code, 0) << doubtful.errors;
    EXPECT_THAT(doubtful.errors, HasSubstr(note));
    EXPECT_EQ(doubtful.json().at("bytes"), 4);
    EXPECT_EQ(doubtful.json().at("announced"), 10);
    EXPECT_EQ(readFile(work() / "a.txt"), "text");
  }
  EXPECT_THAT(download("HTTP/1.1 200 OK\r\n\r\ntext", {"-o", "-"}).errors, HasSubstr(note));
  EXPECT_EQ(download("HTTP/1.1 200 OK\r\n\r\n0123456789", {"--force"}).errors, "");
  EXPECT_EQ(download(answerOf("text"), {"--force"}).errors, "");
}

// Keeps S17.
TEST_F(AttachmentDownload, TakesALimitOnFilesForAFullDisk) {
  bringMail({{"a", 5'000'000, "a.txt"}});
  setLargestFile(4'000'000);
  const Finished result = download(answerOf("text"));
  EXPECT_EQ(result.code, 8) << result.errors;
  EXPECT_THAT(result.errors, HasSubstr("a.txt: File too large"));
  EXPECT_EQ(request_, "");
  EXPECT_THAT(files(), IsEmpty());
}

// Keeps S17.
TEST_F(AttachmentDownload, LeavesNothingWhenItBreaksOff) {
  bringMail({{"a", 100, "a.txt"}});
  const Finished cut = download(headOf(50) + std::string(49, 'x'));
  EXPECT_EQ(cut.code, 4) << cut.errors;
  EXPECT_THAT(cut.errors, HasSubstr("closed the connection in the middle of its answer, after 49 bytes"));
  const Finished refused = download("HTTP/1.1 404 Not Found\r\nContent-Length: 0\r\n\r\n");
  EXPECT_EQ(refused.code, 6);
  EXPECT_THAT(refused.errors, HasSubstr("the server does not have it any more (HTTP status 404)"));
  EXPECT_THAT(files(), IsEmpty());
}

// Keeps S17.
TEST_F(AttachmentDownload, MayNotBeLargerThanTheServerTold) {
  bringMail({{"a", 10, "a.txt"}});
  for (const std::string& answer :
       {answerOf("12345678901"), std::string("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n"
                                             "8\r\n12345678\r\n3\r\n901\r\n0\r\n\r\n")}) {
    const Finished result = download(answer);
    EXPECT_EQ(result.code, 6);
    EXPECT_THAT(result.errors, HasSubstr("the server sends more than the 10 bytes that it had told"));
  }
  EXPECT_THAT(files(), IsEmpty());
}

TEST_F(AttachmentDownload, ReplacesAFileOnlyWhenItIsTold) {
  bringMail({{"a", 10, "a.txt"}});
  writeFile(work() / "a.txt", "older");
  const Finished refused = download(answerOf("new"));
  EXPECT_EQ(refused.code, 1);
  EXPECT_THAT(refused.errors, HasSubstr("there is a file of this name already"));
  EXPECT_EQ(request_, "");
  EXPECT_EQ(readFile(work() / "a.txt"), "older");
  const Finished replaced = download(answerOf("new"), {"--force"});
  EXPECT_EQ(replaced.code, 0) << replaced.errors;
  EXPECT_EQ(readFile(work() / "a.txt"), "new");
  EXPECT_EQ(download(answerOf("new"), {"--force", "-o", "."}).code, 1);
  EXPECT_EQ(download(answerOf("new"), {"-o", "nowhere/a.txt"}).code, 8);
  EXPECT_THAT(files(), ElementsAre("a.txt"));
}

TEST_F(AttachmentDownload, WritesToStandardOutput) {
  bringMail({{"a", 10, "a.txt"}});
  const std::string content("a\0b\n", 4);
  const Finished result = download(answerOf(content), {"-o", "-"});
  EXPECT_EQ(result.code, 0) << result.errors;
  EXPECT_EQ(result.output, content);
  const Finished cut = download(headOf(5) + "abcd", {"-o", "-"});
  EXPECT_EQ(cut.code, 4);
  EXPECT_EQ(cut.output, "");
  EXPECT_EQ(download(answerOf(content), {"--json", "-o", "-"}).code, 1);
  EXPECT_THAT(files(), IsEmpty());
}

TEST_F(AttachmentDownload, NeverLeavesTheDirectory) {
  bringMail({{"a", 10, "../../.ssh/authorized_keys\n"}});
  const Finished result = download(answerOf("x"));
  ASSERT_EQ(result.code, 0) << result.errors;
  EXPECT_THAT(files(), ElementsAre("_.._.ssh_authorized_keys_x0a"));
}

TEST_F(AttachmentDownload, TellsWhichOnesThereAre) {
  bringMail({{"a", 10, "a.txt"}, {"b", 20, "b.txt"}});
  const Finished several = download(answerOf("x"));
  EXPECT_EQ(several.code, 1);
  EXPECT_EQ(several.output, "N  NAME   BYTES\n1  a.txt  10\n2  b.txt  20\n");
  EXPECT_THAT(several.errors, HasSubstr("the mail has 2 attachments"));
  const Finished second = download(answerOf("x"), {"2", "--json"});
  ASSERT_EQ(second.code, 0) << second.errors;
  EXPECT_THAT(request_, HasSubstr("AttachmentName=b&"));
  EXPECT_EQ(second.json().at("attachment"), 2);
  EXPECT_EQ(second.json().at("file"), "b.txt");
  EXPECT_EQ(second.json().at("bytes"), 1);
  EXPECT_EQ(download(answerOf("x"), {"3"}).code, 1);
}

TEST_F(AttachmentDownload, AsksForNothingThatCanNotBe) {
  bringMail({{"a", 0, "none"},
             {"b", 2000000000, "absurd"},
             {"c d", 10, "handle"},
             {"e&Cmd=Sync", 10, "query"},
             {"f#g", 10, "fragment"}});
  const struct {
    const char* number;
    const char* cause;
  } rows[] = {{"1", "the server tells no size for it"},
              {"2", "2000000000 bytes, which is absurd"},
              {"3", "its name on the server has spaces, control characters, '&', '#'"},
              {"4", "its name on the server has spaces, control characters, '&', '#'"},
              {"5", "its name on the server has spaces, control characters, '&', '#'"}};
  for (const auto& [number, cause] : rows) {
    const Finished result = download(answerOf("x"), {number});
    EXPECT_EQ(result.code, 6);
    EXPECT_THAT(result.errors, HasSubstr(cause));
    EXPECT_EQ(request_, "");
  }
  EXPECT_THAT(files(), IsEmpty());
}

TEST_F(AttachmentDownload, IsForMailsThatHaveSome) {
  bringMail({});
  EXPECT_EQ(download(answerOf("x")).code, 1);
  const long long contact = addHere({{"FirstName", "Ann"}});
  const Finished result = run({"attachment", "f9", std::to_string(contact)});
  EXPECT_EQ(result.code, 1);
  EXPECT_THAT(result.errors, HasSubstr("it is no mail"));
}

TEST_F(AttachmentDownload, LeavesNothingAfterCtrlC) {
  bringMail({{"a", 1000000, "a.txt"}});
  std::promise<void> begun;
  ScriptedServer attachments({[&begun](Peer& peer) {
    peer.readRequest();
    peer.send(headOf(900000) + std::string(200000, 'x'));
    peer.waitUntilDelivered();
    begun.set_value();
    peer.readToEnd();
  }});
  configure("http://127.0.0.1:" + std::to_string(attachments.port()) + "/service");
  const auto process = start({"attachment", "f2", "1"});
  begun.get_future().wait();
  process->signal(SIGINT);
  EXPECT_EQ(process->wait(), 130);
  EXPECT_THAT(process->errors(), HasSubstr("the run was interrupted"));
  EXPECT_THAT(files(), IsEmpty());
}

TEST_F(AttachmentDownload, BringsWhateverAMailboxHolds) {
  serve({"--contacts", "0", "--mails", "60", "--seed", "3", "--now", "2026-11-21T12:00:00Z"});
  sync();
  std::size_t downloaded = 0;
  for (const auto& [id, mail] : itemsHere("f2")) {
    const json attachments = mail.value("Attachments", json::array());
    for (std::size_t i = 0; i < attachments.size(); ++i) {
      const Finished result =
          run({"attachment", "f2", id, std::to_string(i + 1), "-o", "content", "--force"});
      const long long told = attachments[i].at("Size");
      EXPECT_EQ(result.code, told == 0 ? 6 : 0) << attachments[i] << result.errors;
      if (result.code != 0) continue;
      ++downloaded;
      EXPECT_TRUE(readFile(work() / "content") == server().attachment(attachments[i].at("OID")))
          << attachments[i];
    }
  }
  EXPECT_GE(downloaded, 5U);
}

}  // namespace
}  // namespace airsync::integration
