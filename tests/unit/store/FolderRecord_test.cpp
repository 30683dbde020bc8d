#include "StoreFixture.h"

namespace airsync::test {
namespace {

Folder folderOf(std::optional<DATATYPE> dataType) {
  Folder folder;
  folder.number = 7;
  folder.serverId = "c/1%2F";
  folder.parentId = "0";
  folder.name = "Contacts";
  folder.path = "Contacts";
  folder.type = 9;
  folder.dataType = dataType;
  folder.syncKey = "k1";
  return folder;
}

TEST(FolderRecord, CarriesTheFolderAndItsSettings) {
  FolderRecord record(folderOf(DATATYPE_CONTACTS), {.truncation = 4,
                                                    .conflict = ConflictRule::local,
                                                    .filter = 5,
                                                    .syncMode = 2,
                                                    .supported = std::nullopt});
  const FOLDER_INFO& info = record.info();
  EXPECT_STREQ(info.folder.serverId.text, "c/1%2F");
  EXPECT_STREQ(info.folder.parentId.text, "0");
  EXPECT_STREQ(info.folder.displayName, "Contacts");
  EXPECT_EQ(info.folder.type, 9);
  EXPECT_EQ(info.dataType, DATATYPE_CONTACTS);
  EXPECT_EQ(info.handle, 7);
  EXPECT_EQ(info.syncMode, 2);
  EXPECT_STREQ(info.syncKey.text, "k1");
  EXPECT_EQ(info.truncation, 4);
  EXPECT_EQ(info.conflict, 0);
  EXPECT_EQ(info.selected, 1);
  EXPECT_EQ(info.notifyEnabled, 0);
  EXPECT_EQ(info.notifyGuid, 0);
  EXPECT_EQ(info.options.contacts.supported, nullptr);
}

TEST(FolderRecord, CarriesTheListOfSupportedTags) {
  FolderRecord record(folderOf(DATATYPE_CONTACTS), {.supported = {{"FirstName", "LastName"}}});
  ASSERT_EQ(record.info().options.contacts.supportedCount, 2);
  EXPECT_STREQ(record.info().options.contacts.supported[0], "FirstName");
  EXPECT_STREQ(record.info().options.contacts.supported[1], "LastName");
}

TEST(FolderRecord, PutsTheFilterWhereTheClassHasIt) {
  FolderRecord calendar(folderOf(DATATYPE_CALENDAR), {.filter = 4, .supported = {{"Subject"}}});
  EXPECT_EQ(calendar.info().options.calendar.filterType, 4);
  ASSERT_EQ(calendar.info().options.calendar.supportedCount, 1);
  EXPECT_STREQ(calendar.info().options.calendar.supported[0], "Subject");
  FolderRecord mail(folderOf(DATATYPE_EMAIL), {.filter = 3, .supported = std::nullopt});
  EXPECT_EQ(mail.info().options.email.filterType, 3);
}

TEST(FolderRecord, StaysInItsPlaceWhenItIsMoved) {
  FolderRecord record(folderOf(DATATYPE_CONTACTS), {});
  const FOLDER_INFO* const address = &record.info();
  FolderRecord moved = std::move(record);
  EXPECT_EQ(&moved.info(), address);
}

TEST(FolderRecord, RefusesWhatCanNotBeSynchronised) {
  EXPECT_THROW(FolderRecord(folderOf(std::nullopt), {}), Error);
  Folder gone = folderOf(DATATYPE_CONTACTS);
  gone.gone = true;
  EXPECT_THROW(FolderRecord(gone, {}), Error);
}

TEST(FolderRecord, RefusesTagsThatDoNotFit) {
  const Folder folder = folderOf(DATATYPE_CONTACTS);
  const auto with = [](std::vector<std::string> tags) {
    return FolderSettings{.supported = std::move(tags)};
  };
  EXPECT_NO_THROW(FolderRecord(folder, with({std::string(63, 'x')})));
  EXPECT_THROW(FolderRecord(folder, with({std::string(64, 'x')})), Error);
  EXPECT_THROW(FolderRecord(folder, with({""})), Error);
  EXPECT_NO_THROW(FolderRecord(folder, with(std::vector<std::string>(255, "Title"))));
  EXPECT_THROW(FolderRecord(folder, with(std::vector<std::string>(256, "Title"))), Error);
}

}  // namespace
}  // namespace airsync::test
