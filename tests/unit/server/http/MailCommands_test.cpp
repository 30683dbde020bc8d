// The commands that move whole messages and attachments, as they come over a connection.
#include <gtest/gtest.h>

#include "support/Mailroom.h"
#include "support/RunningServer.h"

namespace demoserver {
namespace {

constexpr char kMessage[] =
    "To: demo@example.com\r\nSubject: Hi\r\nContent-Type: multipart/mixed; boundary=x\r\n\r\n"
    "--x\r\n\r\ntext\r\n--x\r\nContent-Type: image/png; name=\"100% a&b.png\"\r\n"
    "Content-Transfer-Encoding: base64\r\n\r\nAAEC/w==\r\n--x--\r\n";

class DemoMailCommands : public Mailroom {
 protected:
  DemoMailCommands() : server(state, {}), connection(server.port()) {}

  using Reply = std::pair<std::string, std::string>;

  Reply post(const std::string& command, const std::string& body) {
    connection.send(wireRequest(command, body));
    return connection.answer();
  }
  Reply get(const std::string& page) {
    connection.send("GET /admin/" + page + " HTTP/1.1\r\nAuthorization: " + kDemoAuthorization + "\r\n\r\n");
    return connection.answer();
  }

  RunningServer server;
  Connection connection;
};

TEST_F(DemoMailCommands, SendAMessageAndFetchItsAttachment) {
  EXPECT_EQ(post("SendMail&SaveInSent=T", kMessage), Reply("HTTP/1.1 200 OK", ""));
  EXPECT_EQ(state.items.count("f5"), 1);
  const Item received = state.items.list("f2").at(0);
  EXPECT_EQ(get("message?folder=f2&id=" + received.id).second, kMessage);
  const std::string handle = received.record["Attachments"][0]["OID"];
  EXPECT_TRUE(handle.ends_with(":100%25%20a%26b.png")) << handle;
  EXPECT_EQ(post("GetAttachment&AttachmentName=" + handle, "").second, std::string("\0\1\2\xFF", 4));
}

TEST_F(DemoMailCommands, AnAttachmentHasItsTypeAndItsLength) {
  const std::string handle = state.attachments.add(put("A"), "a.png", "image/png", "12345");
  connection.send(wireRequest("GetAttachment&AttachmentName=" + handle, ""));
  const std::string head = connection.head();
  EXPECT_NE(head.find("Content-Type: image/png\r\n"), std::string::npos);
  EXPECT_NE(head.find("Content-Length: 5\r\n"), std::string::npos);
}

TEST_F(DemoMailCommands, AHandleMayComeEscaped) {
  state.attachments.add(put("A"), "a b", "", "1");
  const std::string handle = state.attachments.list(state.items.list("f2").at(0).id).at(0).handle;
  std::string escaped;
  for (const char c : handle) escaped += c == '%' ? "%25" : c == '/' ? "%2F" : std::string(1, c);
  EXPECT_EQ(post("GetAttachment&AttachmentName=" + escaped, "").second, "1");
}

TEST_F(DemoMailCommands, WithoutSaveInSentLeaveNoCopy) {
  post("SendMail", kMessage);
  EXPECT_EQ(state.items.count("f5"), 0);
  EXPECT_EQ(state.items.count("f2"), 1);
}

TEST_F(DemoMailCommands, ReplyAndForwardByUnescapedIds) {
  const std::string id =
      state.items.add("m%2F1", {{"From", "ada@example.org"}, {"Subject", "S"}, {"Body", "b"}}).id;
  for (const char* command : {"SmartReply", "SmartForward"})
    EXPECT_EQ(post(std::string(command) + "&ItemId=" + id + "&CollectionId=m%2F1&SaveInSent=T",
                   "To: ada@example.org\r\n\r\nMine")
                  .first,
              "HTTP/1.1 200 OK");
  EXPECT_EQ(state.items.count("f5"), 2);
  const std::string sent = state.items.list("f5").at(0).id;
  EXPECT_NE(get("message?folder=f5&id=" + sent).second.find("> b\r\n"), std::string::npos);
}

TEST_F(DemoMailCommands, WhatIsNotThereIsA404WithASentence) {
  const std::pair<const char*, const char*> table[] = {
      {"GetAttachment&AttachmentName=Att/1:x", ""},
      {"GetAttachment", ""},
      {"SmartReply&ItemId=i/9&CollectionId=f2", "x"},
      {"SmartForward", "x"},
  };
  for (const auto& [command, body] : table) {
    const auto [status, sentence] = post(command, body);
    EXPECT_EQ(status, "HTTP/1.1 404 Not Found") << command;
    EXPECT_NE(sentence.find("there is no "), std::string::npos) << command;
  }
  EXPECT_EQ(get("message?folder=f2&id=i/9").first, "HTTP/1.1 404 Not Found");
  EXPECT_EQ(get("message?folder=f2&id=" + put("A")).first, "HTTP/1.1 404 Not Found");
  EXPECT_EQ(get("attachment?handle=x").first, "HTTP/1.1 404 Not Found");
}

TEST_F(DemoMailCommands, TheAdministrationShowsAttachments) {
  const std::string handle = state.attachments.add(put("A"), "a", "", "12345");
  EXPECT_EQ(get("attachment?handle=" + handle).second, "12345");
}

TEST_F(DemoMailCommands, AnEmptyMessageIsRefused) {
  EXPECT_EQ(post("SendMail", "").first, "HTTP/1.1 400 Bad Request");
}

TEST_F(DemoMailCommands, MessagesMayHave64MebibytesAndNoMore) {
  std::string message = "To: demo@example.com\r\n\r\n";
  message.resize(64 * 1024 * 1024, 'x');
  EXPECT_EQ(post("SendMail", message).first, "HTTP/1.1 200 OK");
  EXPECT_EQ(state.messages.find(state.items.list("f2").at(0).id)->size(), message.size());
  connection.send("POST /x?Cmd=SendMail&DeviceId=D1 HTTP/1.1\r\nAuthorization: " +
                  std::string(kDemoAuthorization) + "\r\nContent-Length: 67108865\r\n\r\n");
  EXPECT_EQ(connection.answer().first, "HTTP/1.1 413 Payload Too Large");
}

TEST_F(DemoMailCommands, DocumentsMayHaveOneMebibyteAndNoMore) {
  EXPECT_EQ(post("MoveItems", std::string(1024 * 1024 + 1, 'x')).first, "HTTP/1.1 413 Payload Too Large");
}

TEST_F(DemoMailCommands, TheStateShowsWhatDevicesSetUp) {
  state.devices.keep({"D7", "Ada's", "ada@example.org", "", 60, {"f2", "f8"}});
  const nlohmann::json devices = nlohmann::json::parse(get("state").second)["devices"];
  const nlohmann::json expected = {
      {"device", "D7"}, {"friendlyName", "Ada's"}, {"address", "ada@example.org"},
      {"carrier", ""},  {"lifetime", 60},          {"folders", {"f2", "f8"}}};
  EXPECT_EQ(devices, nlohmann::json::array({expected}));
}

}  // namespace
}  // namespace demoserver
