// A change that one synchronisation left over goes out with the next one of its folder, unless that begins
// anew or something was broken off in between; with another folder's, never.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>

#include "support/ApiSession.h"

namespace {

using namespace AIRSYNC_STACK;
using namespace airsync_test;
using testing::HasSubstr;
using testing::Not;

std::string Answer(const std::string& collection, const std::string& key) {
  return HexAndText("03 01 6A 00 45 5C 4F 50 03 'Contacts' 00 01 4B 03 '" + key + "' 00 01 52 03 '" +
                    collection + "' 00 01 4E 03 '1' 00 01 01 01 01");
}

// The beginning of the addition that waits.
const std::string kWaiting = HexAndText("47 4C 03 '2' 00 01");

class PendingChange : public testing::Test {
 protected:
  PendingChange() {
    // Two changes that do not fit into one request: the second waits for the next one.
    contact_.Body = body_.data();
    session_.store.HandOut({AS_CHANGE_ADD, "", 1, &contact_});
    session_.store.HandOut({AS_CHANGE_ADD, "", 2, &contact_});
    // The key "0" makes the next request an initial one, without commands: the change is still waiting at
    // the end.
    session_.transport.Answer(Answer("5", "0"));
    session_.transport.Answer(Answer("5", "k3"));
    EXPECT_EQ(session_.airSync->Sync(session_.key, &session_.folder), 0U);
    EXPECT_EQ(session_.store.ChangesLeft(), 0U);
    EXPECT_GT(FailingMemory::LiveBlocks(), 0U);
    session_.store.ClearCalls();
  }

  std::string LastBody() const { return session_.transport.Requests().back().body; }

  SYNC_RESULT SyncOnce(FOLDER_INFO& folder, const std::string& newKey) {
    session_.transport.Answer(Answer(folder.folder.serverId.text, newKey));
    return session_.airSync->Sync(session_.key, &folder);
  }

  ApiSession session_;
  std::string body_ = std::string(5000, 'b');
  AS_CONTACT_T contact_ = {};
};

TEST_F(PendingChange, LeadsTheNextSynchronisationOfItsFolder) {
  session_.store.HandOut({AS_CHANGE_DELETE, "5:9", 0, nullptr});
  EXPECT_EQ(SyncOnce(session_.folder, "k4"), 0U);
  EXPECT_THAT(LastBody(), HasSubstr(kWaiting));
  EXPECT_THAT(LastBody(), HasSubstr(HexAndText("01 01 01 00 00 49 4D 03 '5:9' 00 01 01")))
      << "storage's next change comes after it";
  EXPECT_EQ(SyncOnce(session_.folder, "k5"), 0U);
  EXPECT_THAT(LastBody(), Not(HasSubstr(kWaiting))) << "once";
  EXPECT_EQ(FailingMemory::LiveBlocks(), 0U);
}

// The folder's record may be another one: its identifier counts.
TEST_F(PendingChange, LeadsItWithAnotherRecordOfTheFolder) {
  FOLDER_INFO copy = session_.folder;
  EXPECT_EQ(SyncOnce(copy, "k4"), 0U);
  EXPECT_THAT(LastBody(), HasSubstr(kWaiting));
}

TEST_F(PendingChange, WaitsWhileOtherCommandsRun) {
  EXPECT_EQ(Perform(session_, "FolderSync"), 0U);
  EXPECT_EQ(SyncOnce(session_.folder, "k4"), 0U);
  EXPECT_THAT(LastBody(), HasSubstr(kWaiting));
}

TEST_F(PendingChange, IsGivenUpWhenTheFolderBeginsAnew) {
  Put(session_.folder.syncKey.text, "0");
  EXPECT_EQ(SyncOnce(session_.folder, "k4"), 0U);
  EXPECT_EQ(FailingMemory::LiveBlocks(), 0U);
  EXPECT_EQ(SyncOnce(session_.folder, "k5"), 0U);
  EXPECT_THAT(LastBody(), Not(HasSubstr(kWaiting)));
}

TEST_F(PendingChange, IsGivenUpWhenACommandIsBrokenOff) {
  session_.transport.FailAt(1);
  EXPECT_EQ(session_.airSync->FolderSync(session_.key), 0x8001000cU);
  EXPECT_EQ(FailingMemory::LiveBlocks(), 0U);
  EXPECT_EQ(SyncOnce(session_.folder, "k4"), 0U);
  EXPECT_THAT(LastBody(), Not(HasSubstr(kWaiting)));
}

TEST_F(PendingChange, IsGivenUpWhenAnotherFolderIsSynchronised) {
  FOLDER_INFO other = TestFolder();
  Put(other.folder.serverId.text, "6");
  Put(other.syncKey.text, "m1");
  EXPECT_EQ(SyncOnce(other, "m2"), 0U);
  EXPECT_EQ(LastBody(),
            HexAndText("03 01 6A 00 45 5C 4F 50 03 'Contacts' 00 01 4B 03 'm1' 00 01 52 03 '6' 00 01 1E 13"
                       "55 03 '10' 00 01 57 5B 03 '1' 00 01 59 03 '0' 00 01 01 01 01 01"));
  EXPECT_EQ(FailingMemory::LiveBlocks(), 0U);
}

}  // namespace
