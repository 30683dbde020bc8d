// What airsync leaves on the disk: for its owner alone, never through a link, never outside its directory.
#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <optional>

#include "integration/Fixture.h"
#include "unit/transport/ScriptedServer.h"

namespace airsync::integration {
namespace {

using airsync::testing::Peer;
using airsync::testing::ScriptedServer;
using nlohmann::json;
using std::filesystem::path;
using ::testing::AllOf;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

class Files : public AirsyncTest {
 protected:
  path state() const { return directory() / "state" / "airsync"; }

  // A mail for each name of an attachment; their ids.
  std::vector<std::string> bringMails(const std::vector<std::string>& displayNames) {
    serve({"--contacts", "0"});
    std::vector<std::string> ids;
    for (const std::string& name : displayNames) {
      const json attachment = {{"OID", "a"}, {"Size", 10}, {"Method", 1}, {"DisplayName", name}};
      ids.push_back(server().add("f2", {{"Subject", "Plans"},
                                        {"DateReceived", "2026-11-20T08:30:00Z"},
                                        {"Attachments", json::array({attachment})}}));
    }
    sync();
    return ids;
  }

  Finished download(const std::string& mail, const std::vector<std::string>& more = {}) {
    ScriptedServer attachments({[](Peer& peer) {
      peer.readRequest();
      peer.send("HTTP/1.1 200 OK\r\nContent-Length: 3\r\n\r\nnew");
      peer.finish();
    }});
    configure("http://127.0.0.1:" + std::to_string(attachments.port()) + "/service");
    std::vector<std::string> arguments = {"attachment", "f2", mail};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return run(arguments);
  }

  // The permissions of everything below a directory, and of itself, by the path from there.
  static std::map<std::string, unsigned> modesBelow(const path& top) {
    std::map<std::string, unsigned> modes;
    const auto add = [&](const path& entry) {
      modes[entry.lexically_relative(top).string()] =
          static_cast<unsigned>(std::filesystem::symlink_status(entry).permissions());
    };
    add(top);
    for (const auto& entry : std::filesystem::recursive_directory_iterator(top)) add(entry.path());
    return modes;
  }
};

// Keeps S14.
TEST_F(Files, AreForTheirOwnerAloneWhateverTheUmask) {
  for (const mode_t mask : {0000U, 0022U, 0077U}) {
    std::filesystem::remove_all(directory() / "state");
    std::filesystem::remove_all(work());
    std::filesystem::create_directory(work());
    setUmask(mask);
    const std::string mail = bringMails({"plan.txt"})[0];
    serve({"--fail-cmd", "Sync", "--delay-ms", "1000000"});
    const auto process = start({"-vv", "sync", "f9"});
    while (process->errors().find("Cmd=Sync") == std::string::npos) ASSERT_TRUE(process->running());
    // In the middle of a run, and so that the store's companions are there.
    EXPECT_EQ(modesBelow(directory() / "state"),
              (std::map<std::string, unsigned>{{".", 0700},
                                               {"airsync", 0700},
                                               {"airsync/demo.db", 0600},
                                               {"airsync/demo.db-shm", 0600},
                                               {"airsync/demo.db-wal", 0600},
                                               {"airsync/demo.db.lock", 0600},
                                               {"airsync/demo.db.made", 0600},
                                               {"airsync/demo.device-id", 0600}}));
    process->signal(SIGTERM);
    process->wait();
    ASSERT_EQ(download(mail).code, 0);
    ASSERT_EQ(download(mail, {"-o", "other.txt"}).code, 0);
    auto modes = modesBelow(work());
    modes.erase(".");
    EXPECT_EQ(modes, (std::map<std::string, unsigned>{{"other.txt", 0600}, {"plan.txt", 0600}}));
  }
}

// Keeps S23.
TEST_F(Files, OfTheDemoServerAreForItsOwnerAlone) {
  serve({"--contacts", "3"});
  sync();
  std::map<std::string, unsigned> modes = modesBelow(directory());
  EXPECT_EQ(modes.at("server.db"), 0600U);
  EXPECT_EQ(modes.at("server.db-wal"), 0600U);
}

// Keeps S15.
TEST_F(Files, OfTheStateAreNotReachedThroughLinks) {
  serve({"--contacts", "3"});
  sync();
  const path victim = directory() / "victim";
  for (const char* name : {"demo.db", "demo.db.lock", "demo.device-id"}) {
    const path place = state() / name;
    const path aside = directory() / "aside";
    std::filesystem::rename(place, aside);
    for (const std::optional<std::string>& content :
         {std::optional<std::string>(), std::optional<std::string>("untouched"),
          std::optional<std::string>(readFile(aside))}) {
      std::filesystem::remove(victim);
      if (content) writeFile(victim, *content);
      std::filesystem::create_symlink(victim, place);
      const Finished result = run({"sync"});
      EXPECT_EQ(result.code, 8) << name << result.errors;
      EXPECT_THAT(result.errors, AllOf(HasSubstr(place.string() + ": it is a symbolic link"),
                                       HasSubstr("these are not followed")));
      EXPECT_EQ(std::filesystem::exists(victim), content.has_value());
      EXPECT_EQ(readFile(victim), content.value_or("")) << name;
      std::filesystem::remove(place);
    }
    std::filesystem::rename(aside, place);
  }
  sync();
}

// Keeps S15.
TEST_F(Files, BesideTheStoreAreNotWrittenThroughLinks) {
  serve({"--contacts", "3"});
  sync();
  const path victim = directory() / "victim";
  for (const char* suffix : {"-wal", "-shm", "-journal"}) {
    writeFile(victim, "untouched");
    const path place = (state() / "demo.db").string() + suffix;
    std::filesystem::remove(place);
    std::filesystem::create_symlink(victim, place);
    server().add("f9", {{"FirstName", "Ann"}});
    run({"sync"});
    EXPECT_EQ(readFile(victim), "untouched") << suffix;
    std::filesystem::remove(place);
  }
  sync();
  expectSameOnBothSides();
}

// Keeps S15.
TEST_F(Files, OfAttachmentsAreNotWrittenThroughLinks) {
  const std::string mail = bringMails({"plan.txt"})[0];
  const path victim = directory() / "victim";
  for (const bool dangling : {true, false}) {
    std::filesystem::remove(victim);
    if (!dangling) writeFile(victim, "untouched");
    std::filesystem::create_symlink(victim, work() / "plan.txt");
    EXPECT_EQ(download(mail).code, 1) << "without being told to replace it";
    EXPECT_TRUE(std::filesystem::is_symlink(work() / "plan.txt"));
    EXPECT_EQ(download(mail, {"--force"}).code, 0);
    EXPECT_FALSE(std::filesystem::is_symlink(work() / "plan.txt"));
    EXPECT_EQ(readFile(work() / "plan.txt"), "new");
    EXPECT_EQ(std::filesystem::exists(victim), !dangling);
    EXPECT_EQ(readFile(victim), dangling ? "" : "untouched");
    std::filesystem::remove(work() / "plan.txt");
  }
}

struct NameRow {
  std::string given;
  std::string kept;
};

// What a sender calls an attachment, and the one file that there is afterwards.
const NameRow kNames[] = {
    {"../../x", "_.._x"},
    {"/etc/x", "_etc_x"},
    {"a/b", "a_b"},
    {"a\\b", "a_b"},
    {"..", "attachment"},
    {".", "attachment"},
    {"", "attachment"},
    {"   ", "attachment"},
    {".profile", "profile"},
    {"-rf", "_-rf"},
    {"~", "_~"},
    {"CON", "_CON"},
    {"lpt1.txt", "_lpt1.txt"},
    {"COM\u00b9.txt", "_COM\u00b9.txt"},
    {"lpt\u00b3", "_lpt\u00b3"},
    {"CONIN$", "_CONIN$"},
    {"conout$.log", "_conout$.log"},
    {"C:evil", "C_evil"},
    {"invoice\u202efdp.exe", "invoice_u202efdp.exe"},
    {"\u009b2J", "_x9b2J"},
    {std::string(300, 'n') + ".pdf", std::string(196, 'n') + ".pdf"},
};

// Keeps S16.
TEST_F(Files, OfAttachmentsStayInTheirDirectoryWhateverTheyAreCalled) {
  std::vector<std::string> given;
  for (const NameRow& row : kNames) given.push_back(row.given);
  const std::vector<std::string> mails = bringMails(given);
  for (std::size_t i = 0; i < mails.size(); ++i) {
    const NameRow& row = kNames[i];
    const Finished result = download(mails[i]);
    ASSERT_EQ(result.code, 0) << row.given << result.errors;
    EXPECT_EQ(result.output, row.kept + ": 3 bytes\n");
    std::vector<std::string> files;
    for (const auto& entry : std::filesystem::directory_iterator(work())) {
      EXPECT_TRUE(entry.is_regular_file());
      files.push_back(entry.path().filename().string());
    }
    EXPECT_THAT(files, ElementsAre(row.kept)) << row.given;
    std::filesystem::remove(work() / row.kept);
  }
}

// Keeps S24. Where airsync runs, an attachment may lie that a stranger has named. The programs are those of
// the build tree: the package's test looks at installed ones.
TEST_F(Files, InTheCurrentDirectoryAreNotLoadedAsLibraries) {
  serve({"--contacts", "0"});
  sync();
  for (const char* name :
       {"libsqlite3.so.0", "libSQLiteCpp.so.0", "libc.so.6", "libkroairsync-xscale-r.so.1"})
    writeFile(work() / name, "no library");
  const Finished status = run({"status"});
  EXPECT_EQ(status.code, 0) << status.errors;
  EXPECT_EQ(status.errors, "");
}

}  // namespace
}  // namespace airsync::integration
