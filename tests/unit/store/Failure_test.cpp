// A storage call that fails: the command ends, nothing of its response is stored, and endSync tells.
#include <sqlite3.h>

#include "StoreFixture.h"

namespace airsync::test {
namespace {

class Failure : public StoreTest {
 protected:
  // Makes every write to a table of the store fail from now on, with this message.
  void breakTable(const std::string& table) {
    sqlite3* database = nullptr;
    ASSERT_EQ(sqlite3_open(file().c_str(), &database), SQLITE_OK);
    const std::string sql = "CREATE TRIGGER broken BEFORE INSERT ON " + table +
                            " BEGIN SELECT RAISE(ABORT, 'the table is broken'); END";
    EXPECT_EQ(sqlite3_exec(database, sql.c_str(), nullptr, nullptr, nullptr), SQLITE_OK);
    sqlite3_close(database);
  }

  int cancels_ = 0;
};

TEST_F(Failure, CancelsTheCommandOnceAndIsToldAtTheEnd) {
  const FolderNumber folder = contactsWith({"s1"});
  store().setCancel([&] { ++cancels_; });
  breakTable("contact");
  Library library(store(), folder);
  library.remove("s1");
  library.add("s2", person("Ada"));
  library.add("s3", person("Grace"));
  library.key("k2");
  EXPECT_EQ(cancels_, 1);
  EXPECT_STREQ(library.info().syncKey.text, "k1");
  try {
    library.end(AS_RESULT_CANCELLED);
    FAIL() << "the failure was not told";
  } catch (const Error& error) {
    EXPECT_EQ(error.story().operation, "storing an item in");
    EXPECT_EQ(error.story().cause, "the table is broken");
  }
  EXPECT_EQ(names(folder), std::vector<std::string>{"s1"});
  EXPECT_EQ(store().folder(folder).syncKey, "k1");
}

TEST_F(Failure, EndsTheHandingOutOfChanges) {
  const FolderNumber folder = contactsWith({"s1"});
  store().changeItem(item(folder, "s1"), person("Ada"));
  breakTable("contact");
  Library library(store(), folder);
  library.add("s2", person("Grace"));
  EXPECT_TRUE(library.request().empty());
  EXPECT_THROW(library.end(), Error);
  receive(folder);
  Library next(store(), folder);
  EXPECT_EQ(next.request().size(), 1U);
}

TEST_F(Failure, NeverReachesTheLibraryEvenWhenTheCancellingFails) {
  const FolderNumber folder = synchronisedContacts();
  store().setCancel([] { throw std::runtime_error("no"); });
  breakTable("item");
  Library library(store(), folder);
  EXPECT_NO_THROW(library.add("s1", person("Ada")));
  EXPECT_THROW(library.end(), Error);
}

TEST_F(Failure, OfOneSyncIsForgottenByTheNext) {
  const FolderNumber folder = synchronisedContacts();
  breakTable("item");
  {
    Library library(store(), folder);
    library.add("s1", person("Ada"));
    EXPECT_THROW(library.end(), Error);
  }
  Library library(store(), folder);
  library.key("k2");
  EXPECT_EQ(library.end().keys, 1U);
}

TEST_F(Failure, InTheHierarchyIsToldByTheCommit) {
  breakTable("folder");
  store().setCancel([&] { ++cancels_; });
  store().beginHierarchy(HierarchyFetch::changes);
  updateFolder("c1", "Contacts", 9, AS_FOLDER_ADDED);
  updateFolder("c2", "Friends", 9, AS_FOLDER_ADDED);
  EXPECT_EQ(cancels_, 1);
  EXPECT_THROW(store().commitHierarchy({"h1"}), Error);
  EXPECT_EQ(store().hierarchyKey(), "0");
}

TEST_F(Failure, ComesFromCallsThatBelongToNoCommand) {
  const FolderNumber folder = synchronisedContacts();
  EXPECT_THROW(store().endSync(AS_RESULT_OK), Error);
  EXPECT_THROW(store().commitHierarchy({"h1"}), Error);
  store().StoreSyncKey(folder, nullptr, "k9");
  EXPECT_EQ(store().folder(folder).syncKey, "k1");

  Library library(store(), folder);
  store().StoreSyncKey(folder + 1, nullptr, "k9");
  EXPECT_THROW(library.end(), Error);
  EXPECT_EQ(store().folder(folder).syncKey, "k1");
}

TEST_F(Failure, ComesFromARecordThatIsOutOfDate) {
  const FolderNumber folder = synchronisedContacts();
  FolderRecord record = store().folderInfo(folder, {});
  store().resetFolder(folder);
  EXPECT_THROW(store().beginSync(record.info()), Error);
}

TEST_F(Failure, LeavesOperationsThatAreNeverUsedWithoutEffect) {
  EXPECT_EQ(store().Reserved1(), 0U);
  EXPECT_EQ(store().Reserved6(), 0U);
  EXPECT_EQ(store().Reserved14(), 0U);
  EXPECT_EQ(store().Reserved15(), 0U);
  EXPECT_EQ(store().Reserved16(), 0U);
  EXPECT_EQ(store().SetNotifyFolderStatus(1, 0), 0U);
  EXPECT_EQ(store().SetItemEstimate(1, 0, 5), 0U);
  FOLDER_INFO** folders = reinterpret_cast<FOLDER_INFO**>(this);
  int count = -1;
  EXPECT_EQ(store().GetFolderList(&folders, &count), 0U);
  EXPECT_EQ(folders, nullptr);
  EXPECT_EQ(count, 0);
}

}  // namespace
}  // namespace airsync::test
