// How much of a store has changed: what comes and goes again does not count.
#include "StoreFixture.h"

namespace airsync::test {
namespace {

class ChangeCount : public StoreTest {
 protected:
  std::int64_t count() { return store().changeCount(); }

  FolderNumber begun(const std::vector<std::string>& ids = {}) {
    const FolderNumber folder = contactsWith(ids);
    EXPECT_EQ(count(), 0);
    return folder;
  }

  void bring(FolderNumber folder, const std::function<void(Library&)>& what) {
    Library library(store(), folder);
    what(library);
    library.key(("n" + std::to_string(++keys_)).c_str());
    library.end();
  }

 private:
  int keys_ = 0;
};

TEST_F(ChangeCount, GrowsWithEachNewItem) {
  const FolderNumber folder = begun();
  bring(folder, [](Library& library) {
    library.add("a", person("Ada"));
    library.add("b", person("Ben"));
  });
  EXPECT_EQ(count(), 2);
  bring(folder, [](Library& library) { library.add("c", person("Cy")); });
  EXPECT_EQ(count(), 3);
}

TEST_F(ChangeCount, BeginsWithTheFirstQuestion) {
  const FolderNumber folder = contactsWith({"a", "b"});
  EXPECT_EQ(count(), 0);
  bring(folder, [](Library&) {});
  EXPECT_EQ(count(), 0);
}

TEST_F(ChangeCount, IsLostWithWhatCameAndWent) {
  const FolderNumber folder = begun();
  Library library(store(), folder);
  for (int n = 0; n < 50; ++n) {
    library.add("a" + std::to_string(n), person("Ada"));
    if (n > 0) library.remove("a" + std::to_string(n - 1));
    library.key(("k" + std::to_string(n)).c_str());
    EXPECT_EQ(count(), 1);
  }
  library.end();
  EXPECT_TRUE(store().trash().empty());
}

TEST_F(ChangeCount, GrowsOnceWithWhatWasThere) {
  const FolderNumber folder = begun({"a", "b", "c"});
  bring(folder, [](Library& library) { library.remove("a"); });
  EXPECT_EQ(count(), 1);
  bring(folder, [](Library& library) { library.change("b", person("Ben")); });
  const std::int64_t changed = count();
  EXPECT_GT(changed, 1);
  for (int n = 0; n < 50; ++n) {
    bring(folder, [n](Library& library) { library.change("b", person("Ben " + std::to_string(n))); });
    EXPECT_EQ(count(), changed);
  }
}

TEST_F(ChangeCount, HoldsLocalChangesThatWereSettled) {
  const FolderNumber folder = contactsWith({"a", "b"});
  store().changeItem(item(folder, "a"), person("Ada"));
  store().changeItem(item(folder, "b"), person("Ben"));
  EXPECT_EQ(count(), 0);
  bring(folder, [](Library& library) {
    library.request();
    library.changeResult("a");
    library.changeResult("b");
  });
  EXPECT_GE(count(), 2);
}

TEST_F(ChangeCount, HoldsNothingThatWasRolledBack) {
  const FolderNumber folder = begun({"a"});
  {
    Library library(store(), folder);
    library.add("b", person("Ben"));
    library.remove("a");
    library.end(AS_RESULT_TRANSPORT_FAILED);
  }
  EXPECT_EQ(count(), 0);
  bring(folder, [](Library& library) { library.remove("a"); });
  EXPECT_EQ(count(), 1);
}

}  // namespace
}  // namespace airsync::test
