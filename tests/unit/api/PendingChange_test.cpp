// A change that one synchronisation left over never goes out with the next, which may be another folder's.
#include <gtest/gtest.h>
#include <string>

#include "support/ApiSession.h"

namespace {

using namespace AIRSYNC_STACK;
using namespace airsync_test;

std::string Answer(const std::string& collection, const std::string& key) {
  return HexAndText("03 01 6A 00 45 5C 4F 50 03 'Contacts' 00 01 4B 03 '" + key + "' 00 01 52 03 '" +
                    collection + "' 00 01 4E 03 '1' 00 01 01 01 01");
}

TEST(PendingChange, IsGivenUpWhenANewSynchronisationBegins) {
  ApiSession session;
  // Two changes that do not fit into one request: the second waits for the next one.
  std::string body(5000, 'b');
  AS_CONTACT_T contact = {};
  contact.Body = body.data();
  session.store.HandOut({AS_CHANGE_ADD, "", 1, &contact});
  session.store.HandOut({AS_CHANGE_ADD, "", 2, &contact});
  // The key "0" makes the next request an initial one, without commands: the change is still waiting at the
  // end.
  session.transport.Answer(Answer("5", "0"));
  session.transport.Answer(Answer("5", "k3"));
  ASSERT_EQ(session.airSync->Sync(session.key, &session.folder), 0U);
  ASSERT_EQ(session.store.ChangesLeft(), 0U);
  ASSERT_GT(FailingMemory::LiveBlocks(), 0U);

  FOLDER_INFO other = TestFolder();
  Put(other.folder.serverId.text, "6");
  Put(other.syncKey.text, "m1");
  session.transport.ClearCalls();
  session.transport.Answer(Answer("6", "m2"));
  EXPECT_EQ(session.airSync->Sync(session.key, &other), 0U);
  EXPECT_EQ(session.transport.Requests().back().body,
            HexAndText("03 01 6A 00 45 5C 4F 50 03 'Contacts' 00 01 4B 03 'm1' 00 01 52 03 '6' 00 01 1E 13"
                       "55 03 '10' 00 01 57 5B 03 '1' 00 01 59 03 '0' 00 01 01 01 01 01"));
  EXPECT_EQ(FailingMemory::LiveBlocks(), 0U);
}

}  // namespace
