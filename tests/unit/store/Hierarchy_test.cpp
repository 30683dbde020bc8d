#include "StoreFixture.h"

namespace airsync::test {
namespace {

class Hierarchy : public StoreTest {
 protected:
  std::vector<std::string> paths() {
    std::vector<std::string> list;
    for (const Folder& folder : store().folders()) list.push_back(folder.path);
    return list;
  }
  void add(const char* id, const char* name, INT32 type = 9, const char* parent = "0") {
    updateFolder(id, name, type, AS_FOLDER_ADDED, parent);
  }
  void remove(const char* id) { updateFolder(id, "", 0, AS_FOLDER_DELETED, ""); }
  void changes(const std::function<void()>& updates, const char* key = "h2") {
    hierarchy(HierarchyFetch::changes, updates, key);
  }
  void all(const std::function<void()>& updates) { hierarchy(HierarchyFetch::all, updates, "h9"); }
};

using Paths = std::vector<std::string>;

TEST_F(Hierarchy, BeginsWithTheKeyZero) {
  EXPECT_STREQ(store().beginHierarchy(HierarchyFetch::changes).text, "0");
  EXPECT_EQ(store().hierarchyKey(), "0");
}

TEST_F(Hierarchy, HandsOutItsStoredKeyUnlessAllIsWanted) {
  changes([&] { add("c1", "Contacts"); }, "h/1");
  EXPECT_STREQ(store().beginHierarchy(HierarchyFetch::changes).text, "h/1");
  EXPECT_STREQ(store().beginHierarchy(HierarchyFetch::all).text, "0");
}

TEST_F(Hierarchy, StoresFoldersAsTheyCome) {
  changes([&] {
    add("t", "Tasks", 7);
    add("c/1", "Contacts", 9);
    add("f", "Friends", 14, "c/1");
  });
  const std::vector<Folder> folders = store().folders();
  ASSERT_EQ(folders.size(), 3U);
  EXPECT_EQ(folders[1].path, "Contacts/Friends");
  EXPECT_EQ(folders[1].serverId, "f");
  EXPECT_EQ(folders[1].parentId, "c/1");
  EXPECT_EQ(folders[1].name, "Friends");
  EXPECT_EQ(folders[1].type, 14);
  EXPECT_EQ(folders[1].dataType, DATATYPE_CONTACTS);
  EXPECT_EQ(folders[1].syncKey, "0");
  EXPECT_EQ(folders[1].lastSync, std::nullopt);
  EXPECT_EQ(folders[2].dataType, std::nullopt);
}

TEST_F(Hierarchy, IsDurableOnlyAfterTheCommit) {
  store().beginHierarchy(HierarchyFetch::changes);
  add("c1", "Contacts");
  store().rollbackHierarchy();
  EXPECT_TRUE(paths().empty());
  store().beginHierarchy(HierarchyFetch::changes);
  add("c1", "Contacts");
  reopen();
  EXPECT_TRUE(paths().empty());
  EXPECT_EQ(store().hierarchyKey(), "0");
  changes([&] { add("c1", "Contacts"); });
  reopen();
  EXPECT_EQ(paths(), Paths{"Contacts"});
  EXPECT_EQ(store().hierarchyKey(), "h2");
}

TEST_F(Hierarchy, StoresAKeyWithoutFolders) {
  contacts();
  changes([] {}, "h3");
  EXPECT_EQ(store().hierarchyKey(), "h3");
  EXPECT_EQ(paths(), Paths{"Contacts"});
}

// The server's answer to a command of ours brings the key alone; the host tells what it has done.
TEST_F(Hierarchy, TakesWhatWeDidOurselves) {
  const FolderNumber folder = contactsWith({"s1"});
  const auto key = [&] { return std::string(store().beginHierarchy(HierarchyFetch::nothing).text); };
  EXPECT_EQ(key(), "h1");
  updateFolder("c2", "Friends", 14, AS_FOLDER_ADDED, "c1");
  store().commitHierarchy({"h2"});
  EXPECT_EQ(paths(), (Paths{"Contacts", "Contacts/Friends"}));
  EXPECT_EQ(key(), "h2");
  updateFolder("c2", "Rowing", 14, AS_FOLDER_UPDATED, "0");
  store().commitHierarchy({"h3"});
  EXPECT_EQ(paths(), (Paths{"Contacts", "Rowing"}));
  EXPECT_EQ(key(), "h3");
  updateFolder("c2", "", 0, AS_FOLDER_DELETED);
  store().commitHierarchy({"h4"});
  EXPECT_EQ(paths(), Paths{"Contacts"});
  EXPECT_EQ(store().hierarchyKey(), "h4");
  EXPECT_EQ(store().folder(folder).items, 1U);
}

TEST_F(Hierarchy, KeepsNothingOfACommandOfOursThatFailed) {
  contacts();
  store().beginHierarchy(HierarchyFetch::nothing);
  updateFolder("c2", "Friends", 14, AS_FOLDER_ADDED);
  store().rollbackHierarchy();
  EXPECT_EQ(paths(), Paths{"Contacts"});
  EXPECT_EQ(store().hierarchyKey(), "h1");
}

TEST_F(Hierarchy, HasNoKeyForACommandOfOursBeforeTheFirstFolderSync) {
  try {
    store().beginHierarchy(HierarchyFetch::nothing);
    FAIL() << "a key was handed out";
  } catch (const Error& error) {
    EXPECT_EQ(error.advice(), "Run \"airsync folders --refresh\" first.");
  }
}

TEST_F(Hierarchy, UpdatesNameParentAndType) {
  const FolderNumber folder = contactsWith({"s1"});
  changes([&] {
    add("p", "People", 12);
    updateFolder("c1", "Addresses", 14, AS_FOLDER_UPDATED, "p");
  });
  const Folder updated = store().folder(folder);
  EXPECT_EQ(updated.path, "People/Addresses");
  EXPECT_EQ(updated.type, 14);
  EXPECT_EQ(updated.items, 1U);
  EXPECT_EQ(updated.syncKey, "k1");
}

TEST_F(Hierarchy, TakesAnUpdateOfAnUnknownFolderAsAnAddition) {
  changes([&] { updateFolder("c1", "Contacts", 9, AS_FOLDER_UPDATED); });
  EXPECT_EQ(paths(), Paths{"Contacts"});
}

TEST_F(Hierarchy, PassesOverADeletionOfAnUnknownFolderAndAFolderWithoutIdentifier) {
  contacts();
  changes([&] {
    remove("nobody");
    add("", "Nameless");
  });
  EXPECT_EQ(paths(), Paths{"Contacts"});
}

TEST_F(Hierarchy, IsToldWithCountsOrWithoutThem) {
  const FolderNumber folder = contactsWith({"s1", "s2"});
  store().addItem(folder, person("Ada"));
  changes([&] { add("a1", "Adresses"); });
  const std::vector<Folder> counted = store().folders();
  const std::vector<Folder> uncounted = store().uncountedFolders();
  ASSERT_EQ(counted.size(), 2U);
  EXPECT_EQ(counted[1].items, 3U);
  EXPECT_EQ(counted[1].pending, 1U);
  ASSERT_EQ(uncounted.size(), 2U);
  EXPECT_EQ(uncounted[0].path, "Adresses");
  EXPECT_EQ(uncounted[1].path, "Contacts");
  EXPECT_EQ(uncounted[1].syncKey, counted[1].syncKey);
  EXPECT_EQ(uncounted[1].items, 0U);
  EXPECT_EQ(uncounted[1].pending, 0U);
}

TEST_F(Hierarchy, TakesADeletedFolderWithItsItems) {
  const FolderNumber folder = contactsWith({"s1", "s2"});
  const ItemNumber number = item(folder, "s1");
  changes([&] { remove("c1"); });
  EXPECT_TRUE(paths().empty());
  EXPECT_THROW(store().item(number), Error);
  EXPECT_THROW(store().folder(folder), Error);
}

TEST_F(Hierarchy, KeepsWhatWasChangedInADeletedFolderAsFailures) {
  const FolderNumber folder = contactsWith({"s1", "s2", "s3"});
  const ItemNumber added = store().addItem(folder, person("Ada"));
  const ItemNumber changed = item(folder, "s1");
  store().changeItem(changed, person("Grace"));
  store().deleteItem(item(folder, "s2"));
  changes([&] { remove("c1"); });

  const Folder gone = store().folder(folder);
  EXPECT_TRUE(gone.gone);
  EXPECT_EQ(gone.items, 2U);
  EXPECT_EQ(gone.failed, 2U);
  EXPECT_EQ(gone.pending, 0U);
  const std::vector<Failure> failures = store().failures(folder);
  ASSERT_EQ(failures.size(), 2U);
  EXPECT_EQ(failures[0].item, added);
  EXPECT_EQ(failures[1].item, changed);
  EXPECT_EQ(failures[1].serverId, std::nullopt);
  EXPECT_EQ(failures[1].change.reason, "Its folder was deleted on the server.");
  EXPECT_EQ(names(folder), (Paths{"Grace", "Ada"}));
  EXPECT_THROW(store().retry(added), Error);
  EXPECT_THROW(store().addItem(folder, person("Joan")), Error);
  EXPECT_THROW(store().folderInfo(folder, {}), Error);
}

TEST_F(Hierarchy, ForgetsADeletedFolderWithItsLastFailure) {
  const FolderNumber folder = contacts();
  const ItemNumber one = store().addItem(folder, person("Ada"));
  const ItemNumber two = store().addItem(folder, person("Grace"));
  changes([&] { remove("c1"); });
  store().discard(one);
  EXPECT_EQ(paths(), Paths{"Contacts"});
  store().discard(two);
  EXPECT_TRUE(paths().empty());
}

TEST_F(Hierarchy, LetsNothingBeChangedInADeletedFolder) {
  const FolderNumber folder = contacts();
  const ItemNumber number = store().addItem(folder, person("Ada"));
  changes([&] { remove("c1"); });
  try {
    store().changeItem(number, person("Grace"));
    FAIL();
  } catch (const Error& error) {
    EXPECT_EQ(error.kind(), ErrorKind::folder);
    EXPECT_EQ(error.story().cause, "it was deleted on the server");
  }
  EXPECT_EQ(names(folder), Paths{"Ada"});
  EXPECT_EQ(store().failures(folder).size(), 1U);
}

TEST_F(Hierarchy, ForgetsADeletedFolderWhenItsLastItemIsDeleted) {
  const FolderNumber folder = contacts();
  const ItemNumber number = store().addItem(folder, person("Ada"));
  changes([&] { remove("c1"); });
  store().deleteItem(number);
  EXPECT_TRUE(paths().empty());
}

TEST_F(Hierarchy, TakesNoDeletedFolderForAParent) {
  const FolderNumber folder = contacts();
  store().addItem(folder, person("Ada"));
  changes([&] { remove("c1"); });
  changes([&] { add("c2", "Friends", 14, ""); }, "h3");
  EXPECT_EQ(paths(), (Paths{"Contacts", "Friends"}));
}

TEST_F(Hierarchy, TakesAnIdentifierThatComesAgainForANewFolder) {
  const FolderNumber folder = contacts();
  store().addItem(folder, person("Ada"));
  changes([&] { remove("c1"); });
  changes([&] { add("c1", "Contacts"); }, "h3");
  EXPECT_EQ(store().folders().size(), 2U);
  const Folder fresh = store().findFolder("Contacts");
  EXPECT_FALSE(fresh.gone);
  EXPECT_NE(fresh.number, folder);
  EXPECT_EQ(fresh.items, 0U);
}

TEST_F(Hierarchy, TakesAFolderWhoseClassChangedForANewOne) {
  const FolderNumber folder = contactsWith({"s1"});
  changes([&] { updateFolder("c1", "Calendar", 8, AS_FOLDER_UPDATED); });
  const Folder fresh = store().findFolder("c1");
  EXPECT_NE(fresh.number, folder);
  EXPECT_EQ(fresh.items, 0U);
  EXPECT_EQ(fresh.syncKey, "0");
  EXPECT_EQ(fresh.dataType, DATATYPE_CALENDAR);
}

TEST_F(Hierarchy, FetchedAnewKeepsItemsAndKeysOfFoldersThatComeAgain) {
  const FolderNumber folder = contactsWith({"s1"});
  changes([&] { add("c2", "Friends"); });
  all([&] { add("c1", "Contacts"); });
  EXPECT_EQ(paths(), Paths{"Contacts"});
  EXPECT_EQ(store().folder(folder).items, 1U);
  EXPECT_EQ(store().folder(folder).syncKey, "k1");
}

TEST_F(Hierarchy, FetchedAnewWithoutAnyFolderIsRefusedAndChangesNothing) {
  contacts();
  store().beginHierarchy(HierarchyFetch::all);
  try {
    store().commitHierarchy({"h9"});
    ADD_FAILURE();
  } catch (const Error& error) {
    EXPECT_EQ(error.kind(), ErrorKind::folder);
    EXPECT_EQ(error.story().result, AS_RESULT_MALFORMED_DOCUMENT);
  }
  EXPECT_EQ(paths(), Paths{"Contacts"});
  EXPECT_EQ(store().hierarchyKey(), "h1");
}

TEST_F(Hierarchy, PutsNoFolderIntoItsOwnPath) {
  changes([&] {
    add("a", "A", 9, "b");
    add("b", "B", 9, "a");
    add("c", "C", 9, "c");
    add("d", "D", 9, "b");
  });
  EXPECT_EQ(paths(), (Paths{"A/B", "A/B/D", "B/A", "C"}));
}

TEST_F(Hierarchy, NeverReadsPastAFieldThatIsFull) {
  store().beginHierarchy(HierarchyFetch::changes);
  BASE_FOLDER folder;
  std::fill_n(reinterpret_cast<char*>(&folder), sizeof(folder), 'x');
  folder.type = 9;
  store().UpdateFolder(&folder, AS_FOLDER_ADDED);
  store().commitHierarchy({"h1"});
  EXPECT_EQ(store().folders().at(0).name, std::string(64, 'x'));
  EXPECT_EQ(store().folders().at(0).serverId, std::string(68, 'x'));
}

class FindFolder : public Hierarchy {};

TEST_F(FindFolder, TakesIdentifierPathAndNameInThisOrder) {
  changes([&] {
    add("1", "Contacts");
    add("2", "Friends", 14, "1");
    add("3", "2", 14);
    add("4", "Contacts/Friends", 14);
  });
  EXPECT_EQ(store().findFolder("2").serverId, "2");
  EXPECT_EQ(store().findFolder("Friends").serverId, "2");
  EXPECT_EQ(store().findFolder("friends").serverId, "2");
  EXPECT_EQ(store().findFolder("CONTACTS").serverId, "1");
}

TEST_F(FindFolder, NamesAllThatFit) {
  changes([&] {
    add("1", "Work");
    add("2", "Friends", 14, "1");
    add("3", "Home");
    add("4", "Friends", 14, "3");
  });
  EXPECT_EQ(store().findFolder("Home/Friends").serverId, "4");
  try {
    store().findFolder("Friends");
    FAIL() << "one of two was chosen";
  } catch (const Error& error) {
    EXPECT_EQ(error.story().cause, "it could be any of Home/Friends (4), Work/Friends (2)");
  }
}

TEST_F(FindFolder, PrefersWhatCanBeSynchronised) {
  changes([&] {
    add("t", "Plans", 7);
    add("m", "Plans", 12);
    add("n", "Notes", 10);
    add("x", "Top", 12);
    add("y", "Notes", 12, "x");
  });
  EXPECT_EQ(store().findFolder("Plans").serverId, "m");
  EXPECT_EQ(store().findFolder("t").serverId, "t");
  EXPECT_EQ(store().findFolder("Notes").serverId, "n");  // its path, which is more than a name
}

TEST_F(FindFolder, TellsWhenThereIsNone) {
  const auto causeOf = [&](const char* text) {
    try {
      store().findFolder(text);
    } catch (const Error& error) {
      return error.story().cause;
    }
    return std::string();
  };
  EXPECT_EQ(causeOf("Contacts"), "no folders are known yet");
  contacts();
  EXPECT_EQ(causeOf("Friends"), "there is no such folder");
}

}  // namespace
}  // namespace airsync::test
