#include <gtest/gtest.h>

#include "protocol/FolderRules.h"
#include "protocol/Status.h"
#include "support/Bytes.h"
#include "support/FolderDevice.h"
#include "wbxml/Codec.h"

namespace demoserver {
namespace {

class DemoFolderSync : public WithFolders {};

TEST_F(DemoFolderSync, TheFirstTimeEveryFolderIsAdded) {
  const FolderAnswer answer = device.sync();
  EXPECT_EQ(answer.status, "1");
  EXPECT_NE(answer.key, "0");
  EXPECT_EQ(answer.count, "3");
  EXPECT_EQ(answer.changes, (Lines{"Add ServerId=f2 ParentId=0 DisplayName=Inbox Type=2",
                                   "Add ServerId=u2 ParentId=u1 DisplayName=Reisen Type=12",
                                   "Add ServerId=u1 ParentId=0 DisplayName=Privat Type=12"}));
}

TEST_F(DemoFolderSync, AResponseIsWrittenOnPage7) {
  const std::string bytes =
      encode(runFolderSync(state, "d", folderRequest("FolderSync", {{"SyncKey", "0"}})));
  // Page 7, FolderSync, Status "1", SyncKey.
  EXPECT_EQ(hexOf(bytes.substr(0, 14)), "03 01 6A 00 00 07 56 4C 03 31 00 01 52 03");
}

TEST_F(DemoFolderSync, WithNothingNewTheCountIs0) {
  device.sync();
  const FolderAnswer answer = device.sync();
  EXPECT_EQ(answer.count, "0");
  EXPECT_EQ(answer.changes, Lines{});
}

TEST_F(DemoFolderSync, LaterOnlyChangesAreTold) {
  device.sync();
  std::string id;
  ASSERT_EQ(createFolder(state, "0", "New", kUserContacts, id), kSuccess);
  ASSERT_EQ(updateFolder(state, "u1", "f2", "Moved"), kSuccess);
  ASSERT_EQ(deleteFolder(state, "u2"), kSuccess);
  const FolderAnswer answer = device.sync();
  EXPECT_EQ(answer.count, "3");
  EXPECT_EQ(answer.changes,
            (Lines{"Add ServerId=" + id + " ParentId=0 DisplayName=New Type=14",
                   "Update ServerId=u1 ParentId=f2 DisplayName=Moved Type=12", "Delete ServerId=u2"}));
}

TEST_F(DemoFolderSync, AnUnknownKeyGetsStatus9AndNothingElse) {
  device.key = "5";
  const Element response = runFolderSync(state, "d", folderRequest("FolderSync", {{"SyncKey", "5"}}));
  EXPECT_EQ(response.textOf("Status"), "9");
  EXPECT_EQ(response.children.size(), 1u);
}

TEST_F(DemoFolderSync, TheOldKeyTellsTheSameAgain) {
  const FolderAnswer first = device.sync();
  state.folders.create("0", "Later", kUserMail);
  device.key = "0";
  const FolderAnswer again = device.sync();
  EXPECT_EQ(again.key, first.key);
  EXPECT_EQ(again.changes, first.changes);
  EXPECT_EQ(device.sync().count, "1");
}

TEST_F(DemoFolderSync, SeveralHundredFoldersGoInOneAnswer) {
  for (int i = 0; i < 700; ++i) state.folders.create("0", "F" + std::to_string(i), kUserMail);
  EXPECT_EQ(device.sync().count, "703");
}

TEST_F(DemoFolderSync, GetHierarchyListsEveryFolder) {
  EXPECT_EQ(linesOf([&] {
              static Element response(Page::Folders, "");
              response = runGetHierarchy(state);
              return &response;
            }()),
            (Lines{"Folder DisplayName=Inbox ServerId=f2 Type=2 ParentId=0",
                   "Folder DisplayName=Reisen ServerId=u2 Type=12 ParentId=u1",
                   "Folder DisplayName=Privat ServerId=u1 Type=12 ParentId=0"}));
}

TEST_F(DemoFolderSync, OtherRootsAndMissingKeysAreNoRequest) {
  EXPECT_THROW(runFolderSync(state, "d", Element(Page::Sync, "Sync")), BadRequest);
  EXPECT_THROW(runFolderSync(state, "d", Element(Page::Folders, "FolderSync")), BadRequest);
  EXPECT_THROW(runFolderCreate(state, "d", folderRequest("DeleteCmd", {{"SyncKey", "0"}})), BadRequest);
}

}  // namespace
}  // namespace demoserver
