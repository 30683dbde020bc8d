// Passwords, credentials and the texts of messages appear in nothing that airsync writes, however much it is
// asked to tell and whatever goes wrong.
#include <algorithm>
#include <chrono>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

#include "formats/Base64.h"
#include "integration/Fixture.h"
#include "integration/Seeds.h"
#include "unit/server/support/Certificate.h"
#include "unit/transport/ScriptedServer.h"

namespace airsync::integration {
namespace {

using airsync::testing::Peer;
using airsync::testing::ScriptedServer;
using nlohmann::json;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

using Arguments = std::vector<std::string>;

constexpr char kPassword[] = "Salt+Seed/7 x%&9";
constexpr char kMailBody[] = "Mail-text-Quokka-31";
constexpr char kContactBody[] = "Contact-text-Numbat-32";
constexpr char kEventBody[] = "Event-text-Bilby-33";
constexpr char kLocalBody[] = "Local-text-Dingo-34";
constexpr char kLetter[] = "Letter-text-Wombat-35";
constexpr char kAttachment[] = "Attachment-content-Possum-36";

const std::vector<std::string>& bodies() {
  static const std::vector<std::string> texts = {kMailBody,  kContactBody, kEventBody,
                                                 kLocalBody, kLetter,      kAttachment};
  return texts;
}

std::vector<std::string> everySecret() {
  std::vector<std::string> secrets = bodies();
  secrets.emplace_back(kPassword);
  return secrets;
}

std::string letter(const std::string& subject) {
  return "From: demo@example.com\r\nTo: demo@example.com\r\nSubject: " + subject +
         "\r\nDate: Sat, 21 Nov 2026 12:00:00 +0000\r\nMessage-ID: <" + subject +
         "@example.com>\r\nMIME-Version: 1.0\r\nContent-Type: multipart/mixed; boundary=b\r\n\r\n"
         "--b\r\nContent-Type: text/plain\r\n\r\n" +
         kLetter +
         "\r\n--b\r\nContent-Type: application/octet-stream; name=plan.bin\r\n"
         "Content-Disposition: attachment; filename=plan.bin\r\n\r\n" +
         kAttachment + "\r\n--b--\r\n";
}

class Secrets : public AirsyncTest {
 protected:
  void serveSalted(const Arguments& more = {}) {
    Arguments switches = {"--password", kPassword, "--contacts", "3", "--mails", "60"};
    switches.insert(switches.end(), more.begin(), more.end());
    environment()["AIRSYNC_PASSWORD"] = kPassword;
    environment()["TMPDIR"] = (directory() / "tmp").string();
    std::filesystem::create_directories(directory() / "tmp");
    serve(switches);
    server().usePassword(kPassword);
  }

  // One item of each kind on the server, and here.
  void salt() {
    contact_ = server().add("f9", {{"FirstName", "Ann"}, {"Body", kContactBody}});
    mail_ = server().add("f2", {{"Subject", "Tea"}, {"Body", kMailBody}});
    event_ = server().add("f8", {{"Subject", "Rowing"},
                                 {"Body", kEventBody},
                                 {"StartTime", "2026-11-21T16:00:00Z"},
                                 {"EndTime", "2026-11-21T17:00:00Z"}});
    ASSERT_EQ(run({"sync"}).code, 0);
    ASSERT_EQ(run({"send", "-"}, letter("Salted")).code, 0);
    ASSERT_EQ(run({"sync", "f2"}).code, 0);
    const json inbox = run({"--json", "list", "f2"}).json().at("items");
    for (const json& mail : inbox) {
      if (mail.at("subject") == "Salted") letter_ = mail.at("id");
      if (mail.at("meeting_request") == true) meeting_ = mail.at("id");
    }
    ASSERT_NE(letter_, "");
    ASSERT_NE(meeting_, "");
  }

  // Everything that asks the server, in an order in which all of it can be done.
  std::vector<std::pair<Arguments, std::string>> remoteCommands() const {
    return {{{"folders", "--refresh"}, ""},
            {{"sync"}, ""},
            {{"options"}, ""},
            {{"hierarchy"}, ""},
            {{"estimate"}, ""},
            {{"fetch", "f2", mail_}, ""},
            {{"fetch", "f9", contact_}, ""},
            {{"attachment", "f2", letter_, "-o", "plan.bin", "--force"}, ""},
            {{"send", "-"}, letter("Again")},
            {{"reply", "f2", mail_, "-"}, letter("Reply")},
            {{"forward", "f2", mail_, "-"}, letter("Forward")},
            {{"folder", "create", "Rowing"}, ""},
            {{"folder", "rename", "Rowing", "Sailing"}, ""},
            {{"folder", "delete", "Sailing", "--force"}, ""},
            {{"notify", "enable", "ann@example.com"}, ""},
            {{"notify", "carriers"}, ""},
            {{"notify", "disable"}, ""}};
  }

  std::vector<std::pair<Arguments, std::string>> localCommands() const {
    const std::string record = json{{"Body", kLocalBody}}.dump();
    return {{{"status"}, ""},
            {{"list", "f2"}, ""},
            {{"list", "f8"}, ""},
            {{"list", "f9"}, ""},
            {{"add", "f9", "-"}, json{{"FirstName", "Bea"}, {"Body", kLocalBody}}.dump()},
            {{"change", "f9", contact_, "-"}, record},
            {{"change", "f8", event_, "-"}, record},
            {{"mark", "f2", mail_, "--read"}, ""},
            {{"sync"}, ""}};
  }

  // Runs the command and keeps what it wrote; its exit code.
  int tell(const Arguments& flags, const Arguments& command, const std::string& input) {
    Arguments arguments = flags;
    arguments.insert(arguments.end(), command.begin(), command.end());
    const Finished result = run(arguments, input);
    told_ += result.output + result.errors;
    return result.code;
  }

  // What airsync left in files; in the store bodies belong, and in the attachment its content.
  void expectNoLeakInFiles() const {
    for (const auto& entry : std::filesystem::recursive_directory_iterator(directory())) {
      const std::string name = entry.path().filename().string();
      const bool ours = name.rfind("server.db", 0) == 0 || name.rfind("process-", 0) == 0;
      if (!entry.is_regular_file() || ours) continue;
      const bool store = name.rfind("demo.db", 0) == 0 && entry.path().parent_path().filename() == "airsync";
      const bool keepsBodies = store || name == "plan.bin";
      const std::vector<std::string> forbidden =
          keepsBodies ? std::vector<std::string>{kPassword} : everySecret();
      EXPECT_THAT(leaks(readFile(entry.path()), forbidden), IsEmpty()) << entry.path();
    }
    EXPECT_THAT(
        std::vector<std::filesystem::path>(std::filesystem::directory_iterator(directory() / "tmp"), {}),
        IsEmpty());
  }

  void expectNoLeak() const {
    EXPECT_THAT(leaks(told_, everySecret()), IsEmpty());
    expectNoLeakInFiles();
  }

  std::string contact_;
  std::string mail_;
  std::string event_;
  std::string letter_;
  std::string meeting_;
  std::string told_;
};

TEST(Seeds, AreFoundInEveryForm) {
  for (const std::string& form : formsOf("Seed+1")) {
    EXPECT_THAT(leaks("before\nxy" + form + "z\nafter", {"Seed+1"}), ::testing::Not(IsEmpty())) << form;
  }
  // "DEMO/demo:Seed+1" as base64(1) writes it.
  EXPECT_THAT(leaks("Basic REVNTy9kZW1vOlNlZWQrMQ==", {"Seed+1"}), ::testing::SizeIs(1));
  EXPECT_THAT(leaks("nothing of it, not even See+1", {"Seed+1"}), IsEmpty());
}

// Keeps S12.
TEST_F(Secrets, StayOutOfEverythingAtAnyVerbosity) {
  serveSalted();
  salt();
  for (const Arguments& flags : {Arguments{}, Arguments{"-q"}, Arguments{"-v"}, Arguments{"-vv"},
                                 Arguments{"-vvv"}, Arguments{"--json", "-vvv"}}) {
    for (const auto& [command, input] : remoteCommands()) EXPECT_EQ(tell(flags, command, input), 0) << told_;
    for (const auto& [command, input] : localCommands()) EXPECT_EQ(tell(flags, command, input), 0) << told_;
    tell(flags, {"respond", "f2", meeting_, "accept"}, "");
    tell(flags, {"notify", "address", "ann@example.com"}, "");
    tell(flags, {"notify", "check", "1", "Tm90aGluZw=="}, "");
    tell(flags, {"discard", "f9", contact_}, "");
    tell(flags, {"retry", "f9", contact_}, "");
    tell(flags, {"move", "id:f2", mail_, "--to", "id:m/1"}, "");
    mail_ = server().add("f2", {{"Subject", "Tea"}, {"Body", kMailBody}});
    EXPECT_EQ(tell(flags, {"sync"}, ""), 0);
    EXPECT_EQ(tell(flags, {"delete", "id:f2", mail_}, ""), 0);
    mail_ = server().add("f2", {{"Subject", "Tea"}, {"Body", kMailBody}});
    EXPECT_EQ(tell(flags, {"sync"}, ""), 0);
  }
  // They were there to be told.
  EXPECT_THAT(run({"show", "f2", mail_}).output, HasSubstr(kMailBody));
  EXPECT_THAT(readFile(work() / "plan.bin"), HasSubstr(kAttachment));
  for (const char* step : {"Cmd=SendMail", "Cmd=GetAttachment", "Authorization: (not shown)",
                           "Element Tag: Body", "Element Value: Tea"}) {
    EXPECT_THAT(told_, HasSubstr(step));
  }
  expectNoLeak();
}

// Keeps S12.
TEST_F(Secrets, StayOutOfWhatFailuresSay) {
  serveSalted();
  salt();
  const std::vector<Arguments> faults = {{"--fail-status", "401"},
                                         {"--fail-status", "403"},
                                         {"--fail-status", "500"},
                                         {"--cut-body", "30"},
                                         {"--close-before-answer"},
                                         {"--close-before-handling"},
                                         {"--chunked", "7", "--cut-body", "100"}};
  for (const Arguments& fault : faults) {
    serveSalted(fault);
    for (const Arguments& flags : {Arguments{"-vvv"}, Arguments{"--json"}}) {
      for (const auto& [command, input] : remoteCommands()) tell(flags, command, input);
    }
  }
  EXPECT_THAT(told_, HasSubstr("the server refused the user name or the password (HTTP 401)"));
  EXPECT_THAT(told_, HasSubstr("in the middle of its answer"));
  expectNoLeak();
}

// Keeps S12.
TEST_F(Secrets, StayOutOfWhatLocalErrorsSay) {
  serveSalted();
  salt();
  const std::string body = std::string("{\"Body\": \"") + kLocalBody + "\", ";
  const std::pair<Arguments, std::string> wrong[] = {
      {{"add", "f9", "-"}, body + "\"Bogus\": 1}"},
      {{"add", "f9", "-"}, body + "\"Birthday\": \"never\"}"},
      {{"add", "f9", "-"}, body},
      {{"add", "f9", "-"}, body + "\"Body\": \"" + kLocalBody + "\"}"},
      {{"add", "f9", "-"}, std::string("{\"Body\": [\"") + kLocalBody + "\"]}"},
      {{"add", "f9", "-"}, std::string("{\"Body\": \"") + kLocalBody + "\xff\"}"},
      {{"add", "f9", "-"}, std::string("{\"Body\": \"") + kLocalBody + std::string(60000, 'x') + "\"}"},
      {{"send", "-"}, kLetter},
      {{"send", "-"}, std::string(kLetter) + " and more\r\n\r\n"},
      {{"reply", "f2", "999", "-"}, letter("Nobody")},
      {{"respond", "f2", mail_, "accept"}, ""},
      {{"move", "id:f2", mail_, "--to", "id:f9"}, ""}};
  for (const auto& [command, input] : wrong) EXPECT_NE(tell({"-vvv"}, command, input), 0) << command[0];
  // Too large for a request: set aside, and told.
  EXPECT_EQ(tell({"-vvv"}, {"change", "f9", contact_, "-"},
                 json{{"Body", kLocalBody + std::string(20000, 'x')}}.dump()),
            0);
  EXPECT_EQ(tell({"-vvv"}, {"sync", "f9"}, ""), 7);
  EXPECT_EQ(tell({}, {"status"}, ""), 0);
  expectNoLeak();
}

TEST_F(Secrets, StayOutOfWhatIsToldOfAServerThatCannotBeTrusted) {
  serveSalted();
  salt();
  const std::string certificate = (directory() / "cert.pem").string();
  const std::string key = (directory() / "key.pem").string();
  demoserver::writeCertificate(certificate, key);
  serveSalted({"--tls-cert", certificate, "--tls-key", key});
  const std::string port = std::to_string(server().port());
  for (const std::string& url : {"https://localhost:" + port, "http://localhost:" + port,
                                 std::string("http://127.0.0.1:1"), std::string("https://127.0.0.1:1")}) {
    configure(url + "/service");
    for (const auto& [command, input] : remoteCommands()) {
      EXPECT_THAT(tell({"-vvv"}, command, input), ::testing::AnyOf(1, 4, 5, 6)) << url;
    }
  }
  EXPECT_THAT(told_, HasSubstr("is signed by nobody but itself"));
  expectNoLeak();
}

// A server that says back what it was told to keep to itself.
std::string echo(std::size_t turn, const std::string& request) {
  const std::string name = "Authorization: ";
  const std::size_t begin = request.find(name) + name.size();
  const std::string credentials = request.substr(begin, request.find("\r\n", begin) - begin);
  const std::string secret = credentials + " " + kPassword + " DEMO/demo:" + kPassword;
  const std::string end = "\r\nContent-Length: 0\r\n\r\n";
  const std::string answers[] = {
      "HTTP/1.1 500 " + secret + end,
      "HTTP/1.1 302 Found\r\nLocation: https://example.com/?" + secret + end,
      "HTTP/1.1 200 OK\r\nContent-Encoding: " + secret + end,
      "HTTP/1.1 200 OK\r\nTransfer-Encoding: " + secret + end,
      "HTTP/1.1 401 Unauthorized\r\nWWW-Authenticate: Basic realm=\"" + secret + "\"\r\nX-Echo: " + secret +
          "\r\n " + secret + "\r\nSet-Cookie: " + secret + "\r\nAuthorization: " + credentials + end,
      "HTTP/1.1 200 OK\r\nContent-Length: " + std::to_string(secret.size()) + "\r\n\r\n" + secret,
      "HTTP/1.1 " + secret + end,
      "HTTP/1.1 200 OK\r\nX-Long: " + std::string(950, 'x') + secret + secret + end,
      credentials + "\r\n\r\n",
      std::string(kPassword) + std::string(30, 'y') + "\r\n\r\n",
      "SSH-2.0 banner of a server " + secret + "\r\n\r\n",
  };
  return answers[turn % std::size(answers)];
}

constexpr std::size_t kEchoes = 11;

// Keeps S12.
TEST_F(Secrets, StayOutOfWhatAServerSaysBack) {
  serveSalted();
  salt();
  std::vector<ScriptedServer::Script> scripts;
  std::size_t answered = 0;
  for (std::size_t turn = 0; turn < 4 * kEchoes; ++turn) {
    scripts.emplace_back([turn, &answered](Peer& peer) {
      const std::string request = peer.readRequest();
      if (request.find("Authorization: Basic ") != std::string::npos) ++answered;
      peer.send(echo(turn, request));
    });
  }
  ScriptedServer server(scripts);
  configure("http://127.0.0.1:" + std::to_string(server.port()) + "/service");
  const std::pair<Arguments, std::string> commands[] = {
      {{"options"}, ""},
      {{"folders", "--refresh"}, ""},
      {{"send", "-"}, letter("Echo")},
      {{"attachment", "f2", letter_, "-o", "echo.bin", "--force"}, ""}};
  for (const auto& [command, input] : commands) {
    for (std::size_t turn = 0; turn < kEchoes; ++turn) tell({"-vvv"}, command, input);
  }
  server.waitForClosed(4 * kEchoes);
  EXPECT_EQ(answered, 4 * kEchoes);
  EXPECT_THAT(told_, HasSubstr("***"));
  // The attachment that was "downloaded" holds what the server sent for it.
  std::filesystem::remove(work() / "echo.bin");
  expectNoLeak();
  // Nor does a cut leave a telling part of them.
  EXPECT_THAT(told_, ::testing::Not(HasSubstr("REVNTy9kZW1v")));
  EXPECT_THAT(told_, ::testing::Not(HasSubstr("Salt+")));
}

// Of the credentials as requests carry them, and of the password.
std::vector<std::string> saidBack() {
  std::vector<std::string> forms;
  for (const std::string& secret : {std::string(kPassword), std::string("DEMO/demo:") + kPassword}) {
    for (const std::string& form : formsOf(secret)) {
      if (form.find('\0') == std::string::npos) forms.push_back(form);  // no head can hold that
    }
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(secret.data());
    std::string encoded = base64Of({bytes, secret.size()});
    forms.push_back(encoded);
    std::replace(encoded.begin(), encoded.end(), '+', '-');
    std::replace(encoded.begin(), encoded.end(), '/', '_');
    forms.push_back(encoded.substr(0, encoded.find('=')));
  }
  return forms;
}

// Without -v, too: the target of a redirection is told always.
// Keeps S12.
TEST_F(Secrets, StayOutOfWhatAServerSaysBackInAnyEncoding) {
  environment()["AIRSYNC_PASSWORD"] = kPassword;
  const std::vector<std::string> forms = saidBack();
  ASSERT_EQ(forms.size(), 24U);
  for (const std::string& form : forms) {
    const std::string end = "\r\nContent-Length: 0\r\n\r\n";
    const std::string answers[] = {
        "HTTP/1.1 302 Found\r\nLocation: https://example.com/?" + form + end,
        "HTTP/1.1 200 OK\r\nMS-ASProtocolVersions: 2.0," + form + "\r\nMS-ASProtocolCommands: " + form + end,
        "HTTP/1.1 500 " + form + "\r\nX-Echo: " + form + end,
    };
    for (const std::string& answer : answers) {
      ScriptedServer server(std::vector<ScriptedServer::Script>(2, [&answer](Peer& peer) {
        peer.readRequest();
        peer.send(answer);
      }));
      configure("http://127.0.0.1:" + std::to_string(server.port()) + "/service");
      told_.clear();
      tell({}, {"options"}, "");
      tell({"-vvv"}, {"options"}, "");
      EXPECT_EQ(server.accepted(), 2U);
      EXPECT_THAT(leaks(told_, {form}), IsEmpty());
      EXPECT_THAT(leaks(told_, {kPassword}), IsEmpty());
    }
  }
}

// Nobody knows what a server may put there, and in which encoding.
// Keeps S12.
TEST_F(Secrets, StayOutOfHeaderLinesThatNobodyKnowsAtAnyVerbosity) {
  ScriptedServer server({[](Peer& peer) {
    peer.readRequest();
    peer.send(
        "HTTP/1.1 500 Unheard-of-words\r\nX-Echo: unknown-value\r\n folded-value\r\nSet-Cookie: a=cookie\r\n"
        "Content-Type: text/plain\r\nContent-Length: 0\r\n\r\n");
  }});
  configure("http://127.0.0.1:" + std::to_string(server.port()) + "/service");
  tell({"-vvv"}, {"options"}, "");
  for (const char* shown : {"< HTTP/1.1 500\n", "< X-Echo: (not shown)", "< Content-Type: text/plain"}) {
    EXPECT_THAT(told_, HasSubstr(shown));
  }
  for (const char* hidden : {"Unheard-of-words", "unknown-value", "folded-value", "cookie"}) {
    EXPECT_THAT(told_, ::testing::Not(HasSubstr(hidden)));
  }
}

// Keeps S12.
TEST_F(Secrets, StayOutOfWhatIsSaidOfTheConfiguration) {
  const std::string secret = kPassword;
  const std::string file = (directory() / "password").string();
  writeFile(file, secret + "\n");
  std::filesystem::permissions(file, std::filesystem::perms(0644));
  for (const std::string& line :
       {"password = \"" + secret + "\"\n", "password_command = \"echo '" + secret + "'; exit 3\"\n",
        "password_command = \"printf '" + secret + "\\\\tx'\"\n", "password_file = \"" + file + "\"\n",
        "password = \"" + secret + "\n", "password: " + secret + "\n"}) {
    configure("http://127.0.0.1:1/service", line);
    environment().erase("AIRSYNC_PASSWORD");
    EXPECT_EQ(tell({"-vvv"}, {"sync"}, ""), 2) << line;
  }
  EXPECT_THAT(leaks(told_, {secret}), IsEmpty());
}

// A run in the middle of its work, waiting for the server.
// Keeps S13.
TEST_F(Secrets, AreNotInWhatTheSystemShowsOfTheProcess) {
  serveSalted({"--fail-cmd", "FolderSync", "--delay-ms", "1000000"});
  const std::string place = (directory() / "seen").string();
  const std::string script = (directory() / "ask").string();
  writeFile(script, "#!/bin/sh\nenv > " + place + "\ntr '\\0' '\\n' < /proc/$PPID/cmdline >> " + place +
                        "\ntr '\\0' '\\n' < /proc/$PPID/environ >> " + place + "\ncat " +
                        (directory() / "password").string() + "\n");
  writeFile(directory() / "password", std::string(kPassword) + "\n");
  std::filesystem::permissions(script, std::filesystem::perms(0700));
  for (const bool byCommand : {false, true}) {
    configure(url(), byCommand ? "password_command = [\"" + script + "\"]\n" : "");
    const auto process = start({"-vv", "sync"});
    while (process->errors().find("Cmd=FolderSync") == std::string::npos) {
      ASSERT_TRUE(process->running()) << process->errors();
      std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    const std::string proc = "/proc/" + std::to_string(process->pid()) + "/";
    EXPECT_THAT(leaks(readFile(proc + "cmdline"), {kPassword}), IsEmpty());
    EXPECT_THAT(leaks(readFile(proc + "environ"), {kPassword}), IsEmpty());
    EXPECT_THAT(readFile(proc + "environ"), HasSubstr("AIRSYNC_PASSWORD="));
    process->signal(SIGTERM);
    EXPECT_EQ(process->wait(), 130);
  }
  EXPECT_THAT(readFile(place), HasSubstr("sync"));
  EXPECT_THAT(leaks(readFile(place), {kPassword}), IsEmpty());
}

constexpr uid_t kSomebody = 54321;
constexpr uid_t kSomebodyElse = 54322;

// Root may read any file, and has to be told; to others it is told before the permissions are, which they
// can't mend.
// Keeps S13.
TEST_F(Secrets, AreNotTakenFromAFileOfSomebodyElse) {
  if (::geteuid() != 0) GTEST_SKIP() << "only root can give a file away";
  environment().erase("AIRSYNC_PASSWORD");
  const std::filesystem::path file = directory() / "password";
  writeFile(file, std::string(kPassword) + "\n");
  configure("http://127.0.0.1:1/service", "password_file = \"" + file.string() + "\"\n");
  for (const uid_t reader : {uid_t{0}, kSomebody}) {
    if (reader != 0) become(reader);
    ASSERT_EQ(::chown(file.c_str(), kSomebodyElse, kSomebodyElse), 0);
    std::filesystem::permissions(file, std::filesystem::perms(reader == 0 ? 0600 : 0644));
    const Finished result = run({"sync"});
    EXPECT_EQ(result.code, 2);
    EXPECT_THAT(result.errors, HasSubstr(file.string() + ": it belongs to somebody else"));
  }
}

// What the system shows of a process whose memory may not be dumped belongs to root.
// Keeps S13.
TEST_F(Secrets, AreInNoMemoryThatCanBeDumped) {
  serveSalted({"--fail-cmd", "FolderSync", "--delay-ms", "1000000"});
  if (::geteuid() == 0) become(kSomebody);
  const auto process = start({"-vv", "sync"});
  while (process->errors().find("Cmd=FolderSync") == std::string::npos) {
    ASSERT_TRUE(process->running()) << process->errors();
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  std::vector<pid_t> processes = process->children();
  ASSERT_EQ(processes.size(), 1U);
  processes.push_back(process->pid());
  for (const pid_t each : processes) {
    struct stat status = {};
    const std::string proc = "/proc/" + std::to_string(each);
    ASSERT_EQ(::stat((proc + "/mem").c_str(), &status), 0);
    EXPECT_EQ(status.st_uid, 0U);
    EXPECT_THAT(readFile(proc + "/limits"), ::testing::ContainsRegex("Max core file size +0 +0 "));
  }
  process->signal(SIGTERM);
  process->wait();
}

}  // namespace
}  // namespace airsync::integration
