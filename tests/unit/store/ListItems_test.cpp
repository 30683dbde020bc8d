#include "StoreFixture.h"

namespace airsync::test {
namespace {

class ListItems : public StoreTest {};

TEST_F(ListItems, ShowsWhatAListNeeds) {
  const FolderNumber folder = contacts();
  Contact contact = person("Ada");
  contact.set("Email1Address", std::string("ada@example.com"));
  contact.set("HomePhoneNumber", std::string("+44 1"));
  const ItemNumber added = store().addItem(folder, contact);
  std::vector<ItemSummary> lines;
  store().listItems(folder, [&](const ItemSummary& line) {
    lines.push_back(line);
    return true;
  });
  ASSERT_EQ(lines.size(), 1U);
  EXPECT_EQ(lines[0].number, added);
  EXPECT_EQ(lines[0].serverId, std::nullopt);
  const auto& details = std::get<ContactSummary>(lines[0].details);
  EXPECT_EQ(details.name, "Ada Lovelace");
  EXPECT_EQ(details.email, "ada@example.com");
  EXPECT_EQ(details.phone, "+44 1");
  ASSERT_TRUE(lines[0].pending);
  EXPECT_EQ(lines[0].pending->kind, ChangeKind::add);
}

TEST_F(ListItems, GoesOnOverThePages) {
  const FolderNumber folder = contacts();
  std::vector<std::string> expected;
  Library library(store(), folder);
  for (int number = 0; number < 401; ++number) {
    expected.push_back("n" + std::to_string(number));
    library.add("s" + std::to_string(number), person(expected.back()));
  }
  library.key("k1");
  library.end();
  EXPECT_EQ(names(folder), expected);
}

TEST_F(ListItems, StopsWhenItIsTold) {
  const FolderNumber folder = contactsWith({"s1", "s2", "s3"});
  int lines = 0;
  store().listItems(folder, [&](const ItemSummary&) { return ++lines < 2; });
  EXPECT_EQ(lines, 2);
}

TEST_F(ListItems, LetsTheReaderChangeTheStore) {
  const FolderNumber folder = contactsWith({"s1", "s2", "s3"});
  store().listItems(folder, [&](const ItemSummary& line) {
    store().deleteItem(line.number);
    return true;
  });
  EXPECT_TRUE(names(folder).empty());
}

TEST_F(ListItems, KeepsFoldersApart) {
  hierarchy(
      HierarchyFetch::changes,
      [&] {
        updateFolder("c1", "Contacts", 9, AS_FOLDER_ADDED);
        updateFolder("c2", "Friends", 14, AS_FOLDER_ADDED, "c1");
      },
      "h1");
  const FolderNumber one = store().findFolder("c1").number;
  const FolderNumber two = store().findFolder("c2").number;
  store().addItem(one, person("Ada"));
  store().addItem(two, person("Grace"));
  EXPECT_EQ(names(one), (std::vector<std::string>{"Ada"}));
  EXPECT_EQ(names(two), (std::vector<std::string>{"Grace"}));
}

class FindItem : public StoreTest {};

TEST_F(FindItem, TakesANumberOrAServerId) {
  const FolderNumber folder = contactsWith({"a/b%2F", "2"});
  const ItemNumber first = item(folder, "a/b%2F");
  const ItemNumber second = first + 1;
  EXPECT_EQ(store().findItem(folder, std::to_string(first)), first);
  EXPECT_EQ(second, 2);  // its number and its server id are the same text
  EXPECT_EQ(store().findItem(folder, "2"), second);
  EXPECT_EQ(*store().item(first).serverId, "a/b%2F");
}

TEST_F(FindItem, PrefersTheNumber) {
  const FolderNumber folder = contactsWith({"x", "1"});
  EXPECT_EQ(store().findItem(folder, "1"), 1);
}

TEST_F(FindItem, TakesAServerIdWhoseNumberIsInAnotherFolder) {
  const FolderNumber folder = contactsWith({"s1", "77"});
  EXPECT_EQ(store().findItem(folder, "77"), 2);
}

TEST_F(FindItem, TellsWhenThereIsNone) {
  const FolderNumber folder = contactsWith({"s1"});
  EXPECT_THROW(store().findItem(folder, "s2"), Error);
  EXPECT_THROW(store().findItem(folder, ""), Error);
  EXPECT_THROW(store().findItem(folder + 1, "s1"), Error);
  EXPECT_THROW(store().item(99), Error);
}

}  // namespace
}  // namespace airsync::test
