#include "protocol/FolderCommands.h"

#include <gtest/gtest.h>

#include "support/FolderDevice.h"

namespace demoserver {
namespace {

class DemoFolderCommands : public WithFolders {
 protected:
  DemoFolderCommands() { device.sync(); }
};

TEST_F(DemoFolderCommands, CreateAnswersTheIdAndTheNextKey) {
  const std::string before = device.key;
  const FolderAnswer answer = device.create("0", "Freunde", "14");
  EXPECT_EQ(answer.status, "1");
  EXPECT_NE(answer.key, before);
  const auto folder = state.folders.find(answer.serverId);
  ASSERT_TRUE(folder.has_value());
  EXPECT_EQ(folder->name, "Freunde");
  EXPECT_EQ(folder->parent, "0");
  EXPECT_EQ(folder->type, kUserContacts);
}

TEST_F(DemoFolderCommands, ADeviceDoesNotHearOfItsOwnFolderChanges) {
  device.create("0", "Freunde", "14");
  device.update("u1", "0", "Renamed");
  device.remove("u2");
  EXPECT_EQ(device.sync().changes, Lines{});
}

TEST_F(DemoFolderCommands, ChangesByOthersStillReachADeviceThatCreatesAFolder) {
  state.folders.create("0", "Other", kUserMail, "u9");
  device.create("0", "Own", "12");
  EXPECT_EQ(device.sync().changes, Lines{"Add ServerId=u9 ParentId=0 DisplayName=Other Type=12"});
}

TEST_F(DemoFolderCommands, ARepeatedCreateMakesOneFolder) {
  const std::string before = device.key;
  const FolderAnswer first = device.create("0", "Freunde", "14");
  device.key = before;
  const FolderAnswer again = device.create("0", "Freunde", "14");
  EXPECT_EQ(again.serverId, first.serverId);
  EXPECT_EQ(again.key, first.key);
  EXPECT_EQ(state.folders.list().size(), 4u);
}

TEST_F(DemoFolderCommands, AFolderSyncAfterALostCreateTellsTheFolder) {
  const std::string before = device.key;
  const FolderAnswer lost = device.create("0", "Freunde", "14");
  device.key = before;
  EXPECT_EQ(device.sync().changes,
            Lines{"Add ServerId=" + lost.serverId + " ParentId=0 DisplayName=Freunde Type=14"});
}

TEST_F(DemoFolderCommands, DeletingAFolderDeletesWhatIsInIt) {
  state.folders.create("u2", "Karten", kUserContacts, "k1");
  state.items.add("k1", {{"FirstName", "A"}});
  device.sync();
  EXPECT_EQ(device.remove("u1").status, "1");
  EXPECT_EQ(state.folders.list().size(), 1u);
  EXPECT_EQ(state.items.count("k1"), 0);
  EXPECT_EQ(device.sync().changes, (Lines{"Delete ServerId=u2", "Delete ServerId=k1"}));
}

TEST_F(DemoFolderCommands, FailuresHaveTheirStatus) {
  const std::string longName(256, 'x');
  EXPECT_EQ(device.create("0", "Privat", "12").status, "2");
  EXPECT_EQ(device.create("nowhere", "A", "12").status, "5");
  EXPECT_EQ(device.create("0", "", "12").status, "10");
  EXPECT_EQ(device.create("0", longName, "12").status, "10");
  EXPECT_EQ(device.create("0", "a\nb", "12").status, "10");
  EXPECT_EQ(device.create("0", "a\xFF", "12").status, "10");
  for (const char* type : {"", "0", "2", "9", "11", "18", "x"})
    EXPECT_EQ(device.create("0", "A", type).status, "10") << type;
  EXPECT_EQ(device.remove("nowhere").status, "4");
  EXPECT_EQ(device.remove("f2").status, "3");
  EXPECT_EQ(device.update("nowhere", "0", "A").status, "4");
  EXPECT_EQ(device.update("f2", "0", "A").status, "3");
  EXPECT_EQ(device.update("u1", "nowhere", "A").status, "5");
  EXPECT_EQ(device.update("u1", "0", "").status, "10");
  EXPECT_EQ(device.update("u1", "0", "Inbox").status, "2");
}

TEST_F(DemoFolderCommands, EveryTypeThatUsersMayMakeCanBeCreated) {
  for (const char* type : {"1", "12", "13", "14", "15", "16", "17"})
    EXPECT_EQ(device.create("0", std::string("T") + type, type).status, "1") << type;
}

TEST_F(DemoFolderCommands, AFolderCanNotMoveIntoItself) {
  EXPECT_EQ(device.update("u1", "u1", "Privat").status, "5");
  EXPECT_EQ(device.update("u1", "u2", "Privat").status, "5");
  EXPECT_EQ(device.update("u2", "0", "Reisen").status, "1");
}

TEST_F(DemoFolderCommands, KeepingANameIsNoClash) {
  EXPECT_EQ(device.update("u1", "0", "Privat").status, "1");
}

TEST_F(DemoFolderCommands, AFailureLeavesTheKeyAsItIs) {
  const std::string before = device.key;
  device.create("0", "Privat", "12");
  device.key = before;
  EXPECT_EQ(device.sync().status, "1");
}

TEST_F(DemoFolderCommands, NothingIsDoneWithAnUnknownKey) {
  for (const char* key : {"0", "77"}) {
    device.key = key;
    EXPECT_EQ(device.create("0", "New", "12").status, "9");
    EXPECT_EQ(device.remove("u1").status, "9");
    EXPECT_EQ(device.update("u1", "0", "New").status, "9");
  }
  EXPECT_EQ(state.folders.list().size(), 3u);
}

}  // namespace
}  // namespace demoserver
