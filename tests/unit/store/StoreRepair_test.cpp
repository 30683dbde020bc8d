#include "store/StoreRepair.h"

#include <SQLiteCpp/Database.h>

#include "StoreFixture.h"

namespace airsync::test {
namespace {

class StoreRepairTrash : public StoreTest {
 protected:
  // A folder with one item, and one more in the trash.
  void SetUp() override {
    const FolderNumber folder = contactsWith({"s1", "s2"});
    trashed_ = item(folder, "s1");
    exchange(folder, [](Library& library) { library.remove("s1"); });
  }

  // What is in the trash of the new store, when this has become of the old one.
  std::vector<TrashedItem> savedTrash(const char* damage) {
    close();
    SQLite::Database(file().string(), SQLite::OPEN_READWRITE).exec(damage);
    saved_ = saveStore(file());
    const Store fresh(saved_.fresh);
    // Nothing of it goes to the server.
    EXPECT_TRUE(fresh.failures().empty());
    for (const Folder& folder : fresh.folders()) EXPECT_EQ(folder.pending, 0U);
    EXPECT_EQ(std::get<Contact>(fresh.trashedItem(trashed_)), person("s1"));
    return fresh.trash();
  }

  ItemNumber trashed_ = 0;
  SavedStore saved_;
};

TEST_F(StoreRepairTrash, IsSaved) {
  const auto before = store().trash();
  const auto trash = savedTrash("PRAGMA user_version");
  ASSERT_EQ(trash.size(), 1U);
  EXPECT_EQ(trash[0].number, trashed_);
  EXPECT_EQ(trash[0].folder, before[0].folder);
  EXPECT_EQ(trash[0].folderName, "Contacts");
  EXPECT_EQ(trash[0].reason, "It was deleted on the server.");
  EXPECT_EQ(trash[0].since, before[0].since);
  EXPECT_TRUE(saved_.notes.empty());
}

TEST_F(StoreRepairTrash, IsSavedWhenWhatIsKnownOfItIsLost) {
  const auto trash = savedTrash("DELETE FROM trash");
  ASSERT_EQ(trash.size(), 1U);
  EXPECT_EQ(trash[0].number, trashed_);
  EXPECT_EQ(trash[0].dataType, DATATYPE_CONTACTS);
  EXPECT_EQ(trash[0].reason, "The store was damaged; why it is here could not be read.");
  EXPECT_TRUE(trash[0].since);
  EXPECT_EQ(saved_.notes, std::vector<std::string>{"1 items in the trash whose folders could not be read"});
}

TEST_F(StoreRepairTrash, IsSavedWhenItsItemsAreLost) {
  const auto trash = savedTrash("PRAGMA foreign_keys = OFF; DELETE FROM item WHERE folder_id = 0");
  ASSERT_EQ(trash.size(), 1U);
  EXPECT_EQ(trash[0].folderName, "Contacts");
  EXPECT_EQ(trash[0].name, "s1 Lovelace");
}

}  // namespace
}  // namespace airsync::test
