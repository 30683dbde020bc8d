// Nothing that a server or a sender calls something drives the terminal on which it is shown.
#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Statement.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "integration/Fixture.h"
#include "unit/transport/ScriptedServer.h"

namespace airsync::integration {
namespace {

using airsync::testing::Peer;
using airsync::testing::ScriptedServer;
using nlohmann::json;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

// A title, a cleared screen, the same with one character, a deletion, a line that is written over, letters in
// the other direction, another line.
constexpr char kHostile[] =
    "x\x1b]0;pwn\x07\x1b[2J\xc2\x9b"
    "2J\x7f\r\b\xe2\x80\xae\xe2\x80\xa8\xe2\x81\xa6";

// The first thing in `text` that would be more than a character on a terminal; line ends are ours.
std::string whatDrivesTheTerminal(const std::string& text) {
  for (std::size_t at = 0; at < text.size(); ++at) {
    const auto byte = static_cast<unsigned char>(text[at]);
    const bool control = (byte < 0x20 && byte != '\n') || byte == 0x7f;
    const bool longControl = byte == 0xc2 && static_cast<unsigned char>(text[at + 1]) < 0xa0;
    const bool mark = text.compare(at, 3, "\xe2\x80\xae") == 0 || text.compare(at, 3, "\xe2\x80\xa8") == 0 ||
                      text.compare(at, 3, "\xe2\x81\xa6") == 0;
    if (control || longControl || mark) return text.substr(at < 60 ? 0 : at - 60, 80);
  }
  return {};
}

class Terminal : public AirsyncTest {
 protected:
  // Everything on the server is called what no client can call it; all of that is synchronised.
  void poison() {
    serve({"--contacts", "0"});
    server().add("f9", {{"FirstName", "POISON"},
                        {"Email1Address", "POISON"},
                        {"Body", "POISON"},
                        {"MobilePhoneNumber", "POISON"},
                        {"Categories", {"POISON"}}});
    server().add("f8", {{"Subject", "POISON"},
                        {"Location", "POISON"},
                        {"OrganizerName", "POISON"},
                        {"StartTime", "2026-11-21T16:00:00Z"},
                        {"EndTime", "2026-11-21T17:00:00Z"}});
    json attachment = {{"OID", "a"}, {"Size", 10}, {"Method", 1}, {"DisplayName", "POISON"}};
    server().add("f2", {{"Subject", "POISON"},
                        {"From", "POISON"},
                        {"To", "POISON"},
                        {"Body", "POISON"},
                        {"DateReceived", "2026-11-20T08:30:00Z"},
                        {"Attachments", {attachment, attachment}}});
    server().stop();
    {
      SQLite::Database database((directory() / "server.db").string(), SQLite::OPEN_READWRITE);
      SQLite::Statement folders(database, "UPDATE folders SET name = name || ?");
      folders.bind(1, kHostile);
      folders.exec();
      const std::string text = json(kHostile).dump();
      SQLite::Statement items(database, "UPDATE items SET record = replace(record, 'POISON', ?)");
      items.bind(1, text.substr(1, text.size() - 2));
      items.exec();
    }
    serve({});
  }

  void expectHarmless(const std::vector<std::string>& arguments, const std::string& input = {}) {
    for (const std::vector<std::string>& flags :
         {std::vector<std::string>{}, {"-v"}, {"-vv"}, {"-vvv"}, {"--json"}, {"--json", "-vvv"}}) {
      std::vector<std::string> all = flags;
      all.insert(all.end(), arguments.begin(), arguments.end());
      const Finished result = run(all, input);
      EXPECT_THAT(whatDrivesTheTerminal(result.output), IsEmpty()) << ::testing::PrintToString(all);
      EXPECT_THAT(whatDrivesTheTerminal(result.errors), IsEmpty()) << ::testing::PrintToString(all);
    }
  }
};

TEST(WhatDrivesTheTerminal, IsFoundWhereItStands) {
  EXPECT_THAT(whatDrivesTheTerminal("plain \xc3\xbc\n"), IsEmpty());
  for (const char* text : {"\x1b[2J", "a\x7f", "a\tb",
                           "\xc2\x9b"
                           "2J",
                           "\xe2\x80\xae", "\r"}) {
    EXPECT_EQ(whatDrivesTheTerminal(text), text);
  }
}

// Keeps S18.
TEST_F(Terminal, IsDrivenByNothingThatIsSynchronised) {
  poison();
  for (const std::vector<std::string>& command :
       std::vector<std::vector<std::string>>{{"sync"},
                                             {"folders"},
                                             {"folders", "--refresh"},
                                             {"status"},
                                             {"hierarchy"},
                                             {"estimate"},
                                             {"list", "f2"},
                                             {"list", "f8"},
                                             {"list", "f9"},
                                             {"show", "f2", "1"},
                                             {"show", "f2", "2"},
                                             {"show", "f2", "3"},
                                             {"fetch", "f2", "3"},
                                             {"attachment", "f2", "3"},
                                             {"attachment", "f2", "3", "1"},
                                             {"mark", "f2", "3", "--read"},
                                             {"delete", "id:f9", "1"},
                                             {"discard", "f9", "1"},
                                             {"retry", "f9", "1"},
                                             {"respond", "f2", "3", "accept"},
                                             {"move", "id:f2", "3", "--to", "id:f9"},
                                             {"move", "id:f9", "1", "--to", "id:f2"},
                                             {"list", "nowhere"},
                                             {"notify", "enable", "ann@example.com"},
                                             {"notify", "carriers"},
                                             {"notify", "disable"}}) {
    expectHarmless(command);
  }
  for (const char* id : {"1", "2", "3"}) {
    for (const char* folder : {"f8", "f9"}) expectHarmless({"show", folder, id});
  }
  EXPECT_THAT(run({"list", "f2"}).output, HasSubstr("x\\x1b]0;pwn\\x07\\x1b[2J\\x9b2J\\x7f"));
}

TEST_F(Terminal, IsDrivenByNoRefusedChange) {
  poison();
  ASSERT_EQ(run({"sync"}).code, 0);
  expectHarmless({"change", "f9", "1", "-"}, json{{"Body", std::string(20000, 'x')}}.dump());
  expectHarmless({"add", "f9", "-"}, json{{"FirstName", kHostile}, {"Bogus\x1b[2J", 1}}.dump());
  expectHarmless({"sync", "f9"});
  expectHarmless({"status"});
  EXPECT_EQ(run({"status"}).code, 0);
}

// Keeps S18.
TEST_F(Terminal, IsDrivenByNothingInAHead) {
  serve({"--contacts", "0"});
  sync();
  const std::string c1 =
      "\xc2\x9b"
      "2J\xe2\x80\xae";
  const std::string answers[] = {
      "HTTP/1.1 500 \x1b[2J" + c1 + "\r\nContent-Length: 0\r\n\r\n",
      "HTTP/1.1 302 Found\r\nLocation: https://" + c1 + "\r\nContent-Length: 0\r\n\r\n",
      "HTTP/1.1 200 OK\r\nContent-Encoding: " + c1 + "\r\nContent-Length: 0\r\n\r\n",
      "HTTP/1.1 200 OK\r\nMS-ASProtocolVersions: 2.5" + c1 + "\r\nMS-ASProtocolCommands: Sync" + c1 +
          "\r\nX-A: \x1b[2J\r\nContent-Length: 0\r\n\r\n",
      "\x1b[2J" + c1 + "\r\n\r\n"};
  for (const std::string& answer : answers) {
    ScriptedServer::Script script = [&](Peer& peer) {
      while (!peer.readRequest().empty() && peer.send(answer)) continue;
    };
    ScriptedServer talker(std::vector<ScriptedServer::Script>(24, script));
    configure("http://127.0.0.1:" + std::to_string(talker.port()) + "/service");
    expectHarmless({"options"});
    expectHarmless({"sync"});
  }
}

}  // namespace
}  // namespace airsync::integration
