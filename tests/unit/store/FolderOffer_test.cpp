#include "StoreFixture.h"

namespace airsync::test {
namespace {

class FolderOffer : public StoreTest {
 protected:
  void SetUp() override {
    one_ = contacts();
    two_ = inbox();
  }
  void offerBoth() {
    std::vector<FolderRecord> records;
    records.push_back(store().folderInfo(one_, {}));
    records.push_back(store().folderInfo(two_, {}));
    store().offerFolders(std::move(records));
  }
  std::vector<std::string> offered() {
    FOLDER_INFO** folders = nullptr;
    int count = -1;
    store().GetFolderList(&folders, &count);
    std::vector<std::string> ids;
    for (int index = 0; index < count; ++index) ids.emplace_back(folders[index]->folder.serverId.text);
    return ids;
  }

  FolderNumber one_ = 0;
  FolderNumber two_ = 0;
};

TEST_F(FolderOffer, IsWhatTheLibraryIsHanded) {
  EXPECT_EQ(offered(), std::vector<std::string>{});
  offerBoth();
  EXPECT_EQ(offered(), (std::vector<std::string>{"c1", "m1"}));
  EXPECT_EQ(offered(), (std::vector<std::string>{"c1", "m1"}));
  store().offerFolders({});
  EXPECT_EQ(offered(), std::vector<std::string>{});
}

TEST_F(FolderOffer, CollectsTheLastReportAboutEachFolder) {
  offerBoth();
  store().SetItemEstimate(two_, AS_RESULT_FAMILY_ESTIMATE | 2U, 0);
  store().SetItemEstimate(one_, AS_RESULT_OK, 17);
  store().SetItemEstimate(two_, AS_RESULT_FAMILY_ESTIMATE | 2U, 5);
  const auto estimates = store().estimates();
  ASSERT_EQ(estimates.size(), 2U);
  EXPECT_EQ(estimates[0].folder, two_);
  EXPECT_EQ(estimates[0].result, AS_RESULT_FAMILY_ESTIMATE | 2U);
  EXPECT_EQ(estimates[0].items, 5);
  EXPECT_EQ(estimates[1].folder, one_);
  EXPECT_EQ(estimates[1].result, AS_RESULT_OK);
  EXPECT_EQ(estimates[1].items, 17);
  EXPECT_TRUE(store().notifyStatuses().empty());
}

TEST_F(FolderOffer, CollectsTheStatusesOfNotifications) {
  offerBoth();
  store().SetNotifyFolderStatus(one_, AS_RESULT_OK);
  ASSERT_EQ(store().notifyStatuses().size(), 1U);
  EXPECT_EQ(store().notifyStatuses()[0].folder, one_);
  EXPECT_EQ(store().notifyStatuses()[0].result, AS_RESULT_OK);
  EXPECT_TRUE(store().estimates().empty());
}

TEST_F(FolderOffer, ForgetsTheReportsAboutEarlierFolders) {
  offerBoth();
  store().SetItemEstimate(one_, AS_RESULT_OK, 17);
  store().SetNotifyFolderStatus(one_, AS_RESULT_OK);
  offerBoth();
  EXPECT_TRUE(store().estimates().empty());
  EXPECT_TRUE(store().notifyStatuses().empty());
}

}  // namespace
}  // namespace airsync::test
