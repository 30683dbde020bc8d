#include "protocol/GetItemEstimate.h"

#include <gtest/gtest.h>

#include "protocol/Status.h"
#include "support/Device.h"

namespace demoserver {
namespace {

// A Collection as the library of this project writes it.
Element collectionOf(const std::string& folder, const std::string& key,
                     const std::string& itemClass = "Contacts") {
  Element collection(Page::Estimate, "Collection");
  collection.add("Class", itemClass);
  collection.add("CollectionId", folder);
  collection.add("A:FilterType", "0");
  collection.add("A:SyncKey", key);
  return collection;
}

class DemoEstimate : public WithContacts {
 protected:
  Element ask(const std::vector<Element>& collections) {
    Element request(Page::Estimate, "GetItemEstimate");
    request.add("Collections").children = collections;
    return runGetItemEstimate(state, "device-1", request);
  }
  std::string estimate(const std::string& key) {
    const Element answer = ask({collectionOf("f9", key)});
    return std::string(answer.children.at(0).textOf("Status")) + ":" +
           std::string(answer.children.at(0).child("Collection")->textOf("Estimate"));
  }
};

TEST_F(DemoEstimate, CountsWhatASyncWouldBring) {
  device.sync();
  EXPECT_EQ(estimate(device.key), "1:0");
  const std::string a = put("A");
  const std::string b = put("B");
  EXPECT_EQ(estimate(device.key), "1:2");
  device.sync();
  EXPECT_EQ(estimate(device.key), "1:0");
  state.items.replace(a, {{"FirstName", "C"}});
  state.items.remove(b);
  put("D");
  EXPECT_EQ(estimate(device.key), "1:3");
  EXPECT_EQ(device.sync().commands.size(), 3u);
}

TEST_F(DemoEstimate, CountsBeyondTheWindow) {
  device.sync();
  for (int i = 0; i < 150; ++i) put("A");
  EXPECT_EQ(estimate(device.key), "1:150");
  device.sync({.window = 20});
  EXPECT_EQ(estimate(device.key), "1:130");
}

TEST_F(DemoEstimate, OfTheKeyBeforeTakesTheLostCycleBackAndChangesNothing) {
  device.sync();
  put("A");
  const std::string before = device.key;
  device.sync();
  put("B");
  EXPECT_EQ(estimate(before), "1:2");
  EXPECT_EQ(estimate(device.key), "1:1");
  EXPECT_EQ(device.sync().commands.size(), 1u);
}

TEST_F(DemoEstimate, HasTheCollectionInEachResponse) {
  device.sync();
  put("A");
  const Element answer = ask({collectionOf("f9", device.key), collectionOf("nowhere", "1")});
  EXPECT_TRUE(answer.is(Page::Estimate, "GetItemEstimate"));
  ASSERT_EQ(answer.children.size(), 2u);
  const Element& first = answer.children[0];
  EXPECT_TRUE(first.is(Page::Estimate, "Response"));
  EXPECT_EQ(first.children[0].name, "Status");
  const Element& collection = *first.child("Collection");
  EXPECT_EQ(collection.textOf("Class"), "Contacts");
  EXPECT_EQ(collection.textOf("CollectionId"), "f9");
  EXPECT_EQ(collection.textOf("Estimate"), "1");
  EXPECT_EQ(answer.children[1].textOf("Status"), "2");
  EXPECT_EQ(answer.children[1].child("Collection")->textOf("CollectionId"), "nowhere");
  EXPECT_EQ(answer.children[1].child("Collection")->child("Estimate"), nullptr);
}

TEST_F(DemoEstimate, RefusesKeysAndClassesThatDoNotFit) {
  EXPECT_EQ(estimate("0"), "3:");
  EXPECT_EQ(estimate("a.1"), "3:");
  EXPECT_EQ(estimate(""), "3:");
  device.sync();
  EXPECT_EQ(estimate("0"), "3:");
  EXPECT_EQ(estimate("a.1"), "4:");
  EXPECT_EQ(ask({collectionOf("f9", device.key, "Email")}).children[0].textOf("Status"), "2");
}

TEST_F(DemoEstimate, TakesKeyAndFilterFromTheSyncPage) {
  device.sync();
  put("A");
  Element collection(Page::Estimate, "Collection");
  collection.add("Class", "Contacts");
  collection.add("CollectionId", "f9");
  collection.children.emplace_back(Page::Sync, "FilterType", "0");
  collection.children.emplace_back(Page::Sync, "SyncKey", device.key);
  EXPECT_EQ(ask({collection}).children[0].textOf("Status"), "1");
}

// At 9:00 on 21 November, a day reaches back to 9:00 on the 20th.
TEST_F(DemoEstimate, HonoursTheFilterUnderBothNames) {
  state.clock.fixed = Moment(std::chrono::seconds(1'795'251'600));
  state.folders.create("0", "Inbox", kInbox, "f2");
  for (const char* received : {"2026-11-20T08:59:59Z", "2026-11-20T09:00:00Z", "2026-11-21T08:00:00Z"})
    state.items.add("f2", {{"DateReceived", received}, {"Importance", 1}, {"Read", false}});
  Device inbox(state);
  inbox.sync({.folder = "f2", .itemClass = "Email"});
  for (const auto& [filter, count] : {std::pair{"0", "3"}, std::pair{"1", "2"}}) {
    Element collection = collectionOf("f2", inbox.key, "Email");
    collection.children[2].text = filter;
    EXPECT_EQ(ask({collection}).children[0].child("Collection")->textOf("Estimate"), count);
    collection.children[2] = Element(Page::Sync, "FilterType", filter);
    EXPECT_EQ(ask({collection}).children[0].child("Collection")->textOf("Estimate"), count);
  }
}

TEST_F(DemoEstimate, RefusesWhatIsNoRequest) {
  EXPECT_THROW(runGetItemEstimate(state, "d", Element(Page::Sync, "Sync")), BadRequest);
  EXPECT_THROW(runGetItemEstimate(state, "d", Element(Page::Estimate, "GetItemEstimate")), BadRequest);
  EXPECT_THROW(ask({collectionOf("", "1")}), BadRequest);
  EXPECT_THROW(ask({Element(Page::Estimate, "Response")}), BadRequest);
  EXPECT_TRUE(ask({}).children.empty());
}

}  // namespace
}  // namespace demoserver
