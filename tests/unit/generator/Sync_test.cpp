// The Sync request without commands: the handshake, the options of the three classes, the sync modes.
#include "GeneratorRig.h"

namespace airsync_test {
namespace {

class GeneratorSync : public GeneratorRig {
 protected:
  void ExpectRequest(const std::string& golden) {
    EXPECT_EQ(InHex(Written(NextRequest())), InHex(GoldenDocument(golden)));
    EXPECT_EQ(status, GENERATOR_DONE);
    EXPECT_EQ(FailingMemory::LiveBlocks(), blocksBefore) << "the request's tree is all that was allocated";
  }

  void BecomeCalendar() {
    folder.dataType = DATATYPE_CALENDAR;
    folder.options.calendar.filterType = 5;
    folder.options.calendar.supported = nullptr;
    folder.options.calendar.supportedCount = 0;
  }

  void BecomeEmail() {
    folder.dataType = DATATYPE_EMAIL;
    folder.options.email.filterType = 5;
  }
};

TEST_F(GeneratorSync, BeginsAnAddressBookWithItsKeyAndId) {
  Fill(folder.syncKey.text, "0");
  ExpectRequest("sync-initial-contacts");
}

TEST_F(GeneratorSync, NamesTheSupportedElementsOfAnAddressBookOnTheContactsPage) {
  const SUPPORTED_TAG tags[] = {"AssistnamePhoneNumber", "Email1Address", "YOMILastName"};
  Fill(folder.syncKey.text, "0");
  folder.options.contacts.supported = tags;
  folder.options.contacts.supportedCount = 3;
  ExpectRequest("sync-initial-contacts-supported");
}

TEST_F(GeneratorSync, LeavesOutAListWithoutEntriesAndEntriesWithoutAList) {
  const SUPPORTED_TAG tags[] = {"Email1Address"};
  Fill(folder.syncKey.text, "0");
  folder.options.contacts.supported = tags;
  folder.options.contacts.supportedCount = 0;
  ExpectRequest("sync-initial-contacts");
  folder.options.contacts.supported = nullptr;
  folder.options.contacts.supportedCount = 1;
  ExpectRequest("sync-initial-contacts");
}

TEST_F(GeneratorSync, BeginsACalendarWithItsKeyAndId) {
  BecomeCalendar();
  Fill(folder.syncKey.text, "0");
  ExpectRequest("sync-initial-calendar");
}

TEST_F(GeneratorSync, NamesTheSupportedElementsOfACalendarOnTheCalendarPage) {
  const SUPPORTED_TAG tags[] = {"Alldayevent", "Uid"};
  BecomeCalendar();
  Fill(folder.syncKey.text, "0");
  folder.options.calendar.supported = tags;
  folder.options.calendar.supportedCount = 2;
  ExpectRequest("sync-initial-calendar-supported");
}

TEST_F(GeneratorSync, BeginsAMailFolderWithoutAnySupportedElements) {
  BecomeEmail();
  Fill(folder.syncKey.text, "0");
  ExpectRequest("sync-initial-email");
}

TEST_F(GeneratorSync, SendsNoCommandsWithTheFirstKeyAndAsksForNone) {
  HandOut(AS_CHANGE_DELETE, "2:1", 0, nullptr);
  Fill(folder.syncKey.text, "0");
  folder.notifyGuid = 1;
  ExpectRequest("sync-initial-contacts");
  EXPECT_TRUE(store.Calls().empty());
}

TEST_F(GeneratorSync, TakesAKeyThatOnlyBeginsWithZeroForAKey) {
  Fill(folder.syncKey.text, "00");
  EXPECT_EQ(NextOutline(),
            "Sync(Collections(Collection(Class=\"Contacts\" SyncKey=\"00\" CollectionId=\"2:1\" "
            "DeletesAsMoves GetChanges WindowSize=\"10\" Options(Conflict=\"1\" Truncation=\"4\"))))");
}

TEST_F(GeneratorSync, AsksForTenContactsWithTwoOptions) {
  folder.options.contacts.supportedCount = 5;  // no filter type, whatever the union holds
  ExpectRequest("sync-contacts-nothing-to-send");
}

TEST_F(GeneratorSync, AsksForFifteenEventsWithTheirFilter) {
  BecomeCalendar();
  ExpectRequest("sync-calendar-nothing-to-send");
}

TEST_F(GeneratorSync, AsksForFiveMailsWithTheirFilter) {
  BecomeEmail();
  ExpectRequest("sync-email-nothing-to-send");
}

TEST_F(GeneratorSync, CarriesTheNotificationGuidThatTheCommandWasGiven) {
  folder.notifyGuid = 1;
  ExpectRequest("sync-contacts-notify");
  folder.notifyGuid = 0x80;
  ExpectRequest("sync-contacts-notify");
}

TEST_F(GeneratorSync, DoesNotTakeTheEnableFlagForTheGuidFlag) {
  folder.notifyEnabled = 1;
  ExpectRequest("sync-contacts-nothing-to-send");
}

TEST_F(GeneratorSync, DoesNotAskForChangesInModeOne) {
  folder.syncMode = 1;
  ExpectRequest("sync-contacts-mode-1");
  EXPECT_EQ(store.Lines(), std::vector<std::string>{"GetNextChange 42"});
}

TEST_F(GeneratorSync, KeepsLocalChangesInModeTwo) {
  HandOut(AS_CHANGE_DELETE, "2:1", 0, nullptr);
  folder.syncMode = 2;
  ExpectRequest("sync-contacts-mode-2");
  EXPECT_TRUE(store.Calls().empty());
}

TEST_F(GeneratorSync, AsksTheStorageOnceWhereItHasNoChanges) {
  ExpectRequest("sync-contacts-nothing-to-send");
  EXPECT_EQ(store.Lines(), std::vector<std::string>{"GetNextChange 42"});
}

TEST_F(GeneratorSync, WritesNegativeSettingsAsTheyAre) {
  BecomeCalendar();
  folder.conflict = INT32_MIN;
  folder.truncation = -1;
  folder.options.calendar.filterType = INT32_MAX;
  EXPECT_EQ(NextOutline(),
            "Sync(Collections(Collection(Class=\"Calendar\" SyncKey=\"{7}12\" CollectionId=\"2:1\" "
            "DeletesAsMoves GetChanges WindowSize=\"15\" Options(Conflict=\"-2147483648\" "
            "Truncation=\"-1\" FilterType=\"2147483647\"))))");
}

TEST_F(GeneratorSync, RefusesADataClassThatItDoesNotKnow) {
  for (const int type : {3, -1, 1000, INT32_MIN}) {
    folder.dataType = static_cast<DATATYPE>(type);
    EXPECT_EQ(CatchAbort([this]() { NextRequest(); }), 0x80000001U) << type;
    EXPECT_EQ(FailingMemory::LiveBlocks(), blocksBefore);
  }
}

TEST_F(GeneratorSync, ReadsNoFurtherThanTheEndOfAFullField) {
  const std::string key(68, 'k');
  const std::string id(68, 'i');
  const std::string guid(68, 'g');
  Fill(folder.syncKey.text, key);
  Fill(folder.folder.serverId.text, id);
  Fill(notifyKey.text, guid);
  folder.notifyGuid = 1;
  EXPECT_EQ(NextOutline(), "Sync(Collections(Collection(Class=\"Contacts\" SyncKey=\"" + key +
                               "\" CollectionId=\"" + id + "\" NotifyGUID=\"" + guid +
                               "\" DeletesAsMoves GetChanges WindowSize=\"10\" "
                               "Options(Conflict=\"1\" Truncation=\"4\"))))");
}

TEST_F(GeneratorSync, ReadsNoFurtherThanTheEndOfASupportedTagOfSixtyFourCharacters) {
  SUPPORTED_TAG tags[2];
  Fill(tags[0], std::string(64, 'a'));
  Fill(tags[1], std::string(64, 'b'));
  Fill(folder.syncKey.text, "0");
  folder.options.contacts.supported = tags;
  folder.options.contacts.supportedCount = 2;
  EXPECT_EQ(NextOutline(),
            "Sync(Collections(Collection(Class=\"Contacts\" SyncKey=\"0\" CollectionId=\"2:1\" Supported(" +
                std::string(64, 'a') + "@1 " + std::string(64, 'b') + "@1))))");
}

TEST_F(GeneratorSync, NamesAllOf255SupportedElements) {
  SUPPORTED_TAG tags[255];
  for (SUPPORTED_TAG& tag : tags) Fill(tag, "Body");
  Fill(folder.syncKey.text, "0");
  folder.options.contacts.supported = tags;
  folder.options.contacts.supportedCount = 255;
  sml_element* const request = NextRequest();
  EXPECT_EQ(SE_CountChildren(SE_GetChild(request, "Collections/Collection/Supported"), "Body"), 255);
  SE_Destroy(request);
}

TEST_F(GeneratorSync, HasASupportedListForTheTwoClassesOnly) {
  const SUPPORTED_TAG tags[] = {"Body"};
  Fill(folder.syncKey.text, "0");
  folder.options.contacts.supported = tags;
  folder.options.contacts.supportedCount = 1;
  SE_Destroy(NextRequest());
  EXPECT_EQ(generator.Supported(DATATYPE_EMAIL), nullptr);
  EXPECT_EQ(generator.Supported(static_cast<DATATYPE>(3)), nullptr);
  sml_element* const supported = generator.Supported(DATATYPE_CONTACTS);
  EXPECT_EQ(Outline(supported), "Supported@1(Body@1)");
  SE_Destroy(supported);
}

}  // namespace
}  // namespace airsync_test
