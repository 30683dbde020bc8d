#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <stdexcept>

#include "support/Device.h"
#include "support/FolderDevice.h"
#include "support/Scratch.h"
#include "wbxml/Codec.h"

namespace demoserver {
namespace {

struct DemoPersistence : ::testing::Test {
  Scratch scratch;
  std::string file = scratch.path("state.db");
};

TEST_F(DemoPersistence, KeysItemsAndIdsSurviveARestart) {
  std::string key, hierarchyKey, id;
  {
    State state(file);
    state.folders.create("0", "Contacts", kContacts, "f9");
    FolderDevice folders(state);
    folders.sync();
    hierarchyKey = folders.key;
    Device device(state);
    device.sync();
    device.sync({.commands = {addCommand("1", "A")}});
    key = device.key;
    id = state.items.list("f9").at(0).id;
  }
  State state(file);
  EXPECT_EQ(state.items.list("f9").at(0).id, id);
  Device device(state);
  device.key = key;
  EXPECT_EQ(device.sync().commands, Lines{});
  FolderDevice folders(state);
  folders.key = hierarchyKey;
  EXPECT_EQ(folders.sync().count, "0");
  EXPECT_NE(state.items.add("f9", {{"FirstName", "B"}}).id, id);
}

TEST_F(DemoPersistence, TheLastAnswerSurvivesARestart) {
  Element request(Page::Sync, "");
  std::string first;
  {
    State state(file);
    state.folders.create("0", "Contacts", kContacts, "f9");
    Device device(state);
    device.sync();
    request = documentOf({.key = device.key, .commands = {addCommand("1", "A")}});
    first = encode(*runSync(state, {}, "device-1", request));
  }
  State state(file);
  EXPECT_EQ(encode(*runSync(state, {}, "device-1", request)), first);
  EXPECT_EQ(state.items.count("f9"), 1);
}

TEST_F(DemoPersistence, ATransactionThatIsNotCommittedLeavesNothing) {
  State state(file);
  state.folders.create("0", "Contacts", kContacts, "f9");
  Device device(state);
  device.sync();
  const std::string key = device.key;
  {
    SQLite::Transaction transaction(state.database.handle());
    device.sync({.commands = {addCommand("1", "A")}});
  }
  EXPECT_EQ(state.items.count("f9"), 0);
  device.key = key;
  EXPECT_EQ(device.sync({.commands = {addCommand("1", "A")}}).responses.size(), 1u);
}

// A copy of the files while they are open is what a killed process leaves behind.
TEST_F(DemoPersistence, AKillLeavesEveryCommittedRequest) {
  State state(file);
  state.folders.create("0", "Contacts", kContacts, "f9");
  Device device(state);
  device.sync();
  device.sync({.commands = {addCommand("1", "A")}});
  const std::string copy = scratch.path("killed.db");
  for (const char* suffix : {"", "-wal"}) std::filesystem::copy_file(file + suffix, copy + suffix);
  State revived(copy);
  EXPECT_EQ(revived.items.count("f9"), 1);
  Device again(revived);
  again.key = device.key;
  EXPECT_EQ(again.sync().status, "1");
}

TEST_F(DemoPersistence, AFileOfANewerServerIsRefused) {
  { State state(file); }
  SQLite::Database(file, SQLite::OPEN_READWRITE).exec("PRAGMA user_version = 99");
  EXPECT_THROW(State{file}, std::runtime_error);
}

TEST_F(DemoPersistence, AFileThatIsNoDatabaseIsRefused) {
  std::ofstream(file) << "this is a text of some length, and no database at all; it must be left alone";
  EXPECT_THROW(State{file}, std::exception);
}

TEST_F(DemoPersistence, RevisionsOnlyEverGrow) {
  State state(file);
  const auto first = state.database.nextRevision();
  EXPECT_EQ(state.database.nextRevision(), first + 1);
}

TEST_F(DemoPersistence, AFileOfAnotherVersionIsRefusedWithASentence) {
  for (const int version : {1, 999}) {
    {
      SQLite::Database(file, SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE)
          .exec("PRAGMA user_version = " + std::to_string(version));
    }
    try {
      State state(file);
      ADD_FAILURE() << "took version " << version;
    } catch (const std::runtime_error& error) {
      EXPECT_NE(std::string(error.what()).find("; use another file"), std::string::npos) << error.what();
    }
  }
}

}  // namespace
}  // namespace demoserver
