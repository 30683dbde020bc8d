#include "data/Seed.h"

#include <gtest/gtest.h>
#include <map>
#include <set>

#include "items/ContactFields.h"
#include "items/ItemClass.h"
#include "support/Utf8.h"

namespace demoserver {
namespace {

using nlohmann::json;

constexpr int kMany = 1000;

TEST(DemoSeed, TheSameSeedGivesTheSameContacts) {
  EXPECT_EQ(seedContact(42, 7), seedContact(42, 7));
  EXPECT_NE(seedContact(42, 7), seedContact(42, 8));
  EXPECT_NE(seedContact(42, 7), seedContact(43, 7));
}

TEST(DemoSeed, EveryContactIsARecordAsItIsStored) {
  const ItemClass* contacts = itemClassOf(kContacts);
  for (int number = 0; number < kMany; ++number) {
    const json contact = seedContact(1, number);
    EXPECT_EQ(contacts->check(contact), contact) << number;
  }
}

TEST(DemoSeed, AThousandContactsUseEveryField) {
  const ItemClass* contacts = itemClassOf(kContacts);
  std::map<std::string, int> uses;
  for (int number = 0; number < kMany; ++number) {
    const json shown = contacts->view(seedContact(1, number));
    for (const auto& [name, value] : shown.items()) ++uses[name];
  }
  for (const ContactField& field : kContactFields) {
    EXPECT_GT(uses[std::string(field.name)], 0) << field.name;
    const int most = field.name == "LastName" ? kMany : kMany - 1;
    EXPECT_LE(uses[std::string(field.name)], most) << field.name;
  }
}

TEST(DemoSeed, HasLongNotesDisplayNamesAndMarkupCharacters) {
  int longNotes = 0, displayNames = 0;
  std::string all;
  for (int number = 0; number < kMany; ++number) {
    const json contact = seedContact(1, number);
    longNotes += contact.value("Body", "").size() > 2000 ? 1 : 0;
    displayNames += contact.value("Email1Address", "").starts_with("\"") ? 1 : 0;
    all += contact.dump();
  }
  EXPECT_EQ(longNotes, 20);
  EXPECT_EQ(displayNames, 50);
  for (const char* piece : {"&", "<", ">", "'", "\\\"", "ü", "Ł", "Ε", "Д", "日", "ש", "श", "1976-02-29"})
    EXPECT_NE(all.find(piece), std::string::npos) << piece;
}

TEST(DemoSeed, FillsAFileOnce) {
  State state(":memory:");
  EXPECT_TRUE(seed(state, {.contacts = 30, .folders = 5, .seed = 3}));
  EXPECT_FALSE(seed(state, {.contacts = 90, .folders = 9, .seed = 4}));
  EXPECT_EQ(state.items.count("f9"), 30);
  EXPECT_EQ(state.folders.list().size(), 24u);
}

TEST(DemoSeed, PutsEventsIntoTheCalendarAndTheUserCalendars) {
  State state(":memory:");
  seed(state, {.contacts = 0, .events = 28});
  EXPECT_EQ(state.items.count("c1"), 4);
  EXPECT_EQ(state.items.count("c2"), 2);
  EXPECT_EQ(state.items.count("f8"), 22);
}

TEST(DemoSeed, TheSameTimeGivesTheSameEventsAndMails) {
  const auto filled = [](const char* now) {
    State state(":memory:");
    state.clock.fixed = momentOf(now);
    seed(state, {.contacts = 0, .events = 30, .mails = 30});
    json all;
    for (const Folder& folder : state.folders.list())
      for (const Item& item : state.items.list(folder.id)) all[item.id] = item.record;
    return all;
  };
  EXPECT_EQ(filled("2026-11-21T12:00:00Z"), filled("2026-11-21T12:00:00Z"));
  EXPECT_NE(filled("2026-11-21T12:00:00Z"), filled("2026-11-22T12:00:00Z"));
}

TEST(DemoSeed, MakesTheUsualFoldersOfEveryType) {
  State state(":memory:");
  seed(state, {.contacts = 0});
  std::set<int> types;
  std::set<std::string> seen;
  bool childFirst = false;
  for (const Folder& folder : state.folders.list()) {
    types.insert(folder.type);
    childFirst = childFirst || (folder.parent != "0" && !seen.contains(folder.parent));
    seen.insert(folder.id);
  }
  EXPECT_EQ(types, (std::set<int>{2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14}));
  EXPECT_TRUE(childFirst);
  for (const Folder& folder : state.folders.list())
    EXPECT_TRUE(folder.parent == "0" || seen.contains(folder.parent)) << folder.name;
}

TEST(DemoSeed, MakesHundredsOfFoldersWhenAsked) {
  State state(":memory:");
  seed(state, {.contacts = 0, .folders = 500});
  EXPECT_EQ(state.folders.list().size(), 519u);
  EXPECT_EQ(state.folders.find("x1")->parent, "0");
  EXPECT_EQ(state.folders.find("x10")->parent, "x1");
  EXPECT_EQ(state.folders.find("x11")->parent, "0");
}

}  // namespace
}  // namespace demoserver
