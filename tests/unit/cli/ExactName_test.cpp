#include "cli/ExactName.h"

#include <cstring>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>

#include "unit/cli/Support.h"

namespace airsync {
namespace {

using namespace AIRSYNC_STACK;
using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;

class ExactName : public testing::Test {
 protected:
  ExactName() {
    store_->beginHierarchy(HierarchyFetch::changes);
    folder("c", "0", "Contacts", 9);
    folder("f1", "c", "Friends", 14);
    folder("f2", "0", "Friends", 14);
    folder("f3", "0", "f1", 14);  // its name is another one's id
    folder("d1", "0", "Double", 14);
    folder("d2", "0", "Double", 14);
    folder("m", "0", "id:f1", 14);  // its name looks like an exact id
    folder("only", "c", "Below", 14);
    _SYNC_KEY stored = {};
    std::strcpy(stored.text, "h1");
    store_->commitHierarchy(stored);
  }

  // The id of the folder that is found, or the error.
  std::string found(const char* text) {
    std::string id;
    const std::string error = test::errorOf([&] { id = findExactFolder(*store_, text).serverId; });
    return error == "no error" ? id : error;
  }

  Store& store() { return *store_; }

 private:
  void folder(const char* id, const char* parent, const char* name, INT32 type) {
    BASE_FOLDER record = {};
    std::strcpy(record.serverId.text, id);
    std::strcpy(record.parentId.text, parent);
    std::strcpy(record.displayName, name);
    record.type = type;
    store_->UpdateFolder(&record, AS_FOLDER_ADDED);
  }

  test::TemporaryDirectory directory_;
  std::unique_ptr<Store> store_ = std::make_unique<Store>(directory_.path() / "work.db");
};

TEST_F(ExactName, OfAFolderIsAPathFromTheRootOrAMarkedId) {
  EXPECT_EQ(found("Contacts"), "c");
  EXPECT_EQ(found("Contacts/Friends"), "f1");
  EXPECT_EQ(found("Friends"), "f2");
  EXPECT_EQ(found("id:f2"), "f2");
  EXPECT_EQ(found("id:d1"), "d1");
}

TEST_F(ExactName, OfAFolderIsNoNameNoPlainIdAndNoOtherCase) {
  EXPECT_THAT(found("Below"), AllOf(StartsWith("1 "), HasSubstr("the name of Contacts/Below (id:only)")));
  EXPECT_THAT(found("only"), AllOf(StartsWith("1 "), HasSubstr("the id of Contacts/Below (id:only)")));
  EXPECT_THAT(found("contacts"), AllOf(StartsWith("1 "), HasSubstr("there is no such folder")));
  EXPECT_THAT(found("id:Contacts"), HasSubstr("there is no such folder"));
}

TEST_F(ExactName, ThatCouldMeanSeveralFoldersListsThem) {
  EXPECT_THAT(found("Double"), AllOf(StartsWith("1 "), HasSubstr("Double (id:d1), Double (id:d2)")));
  EXPECT_THAT(found("f1"), AllOf(HasSubstr("Contacts/Friends (id:f1)"), HasSubstr("f1 (id:f3)")));
  EXPECT_THAT(found("id:f1"), AllOf(HasSubstr("Contacts/Friends (id:f1)"), HasSubstr("id:f1 (id:m)")));
  EXPECT_EQ(found("id:m"), "m");
}

TEST_F(ExactName, OfAnItemIsItsNumberOrItsId) {
  const Folder folder = findExactFolder(store(), "Contacts");
  Contact ann;
  ann.set("FirstName", std::string("Ann"));
  const ItemNumber item = store().addItem(folder.number, ann);
  EXPECT_EQ(findExactItem(store(), folder, std::to_string(item)), item);
  EXPECT_THROW(findExactItem(store(), folder, "999"), Error);
  // It has no id, and its number is none.
  EXPECT_THROW(findExactItem(store(), folder, "id:" + std::to_string(item)), Error);
}

}  // namespace
}  // namespace airsync
