#include <gtest/gtest.h>

#include "items/ItemClass.h"
#include "protocol/ServerChanges.h"
#include "support/Device.h"

namespace demoserver {
namespace {

class DemoFilterWindow : public WithMail {
 protected:
  // An exchange under this FilterType.
  SyncAnswer sync(int filter, int window = 10) {
    SyncRequest request = mail;
    request.filter = filter;
    request.window = window;
    return device.sync(request);
  }
  void start() { device.sync(mail); }
  // The ids of the commands, with "+", "-" or "~" for added, deleted and changed.
  static Lines idsOf(const SyncAnswer& answer) {
    Lines ids;
    for (const std::string& line : answer.commands) {
      const std::size_t at = line.find("ServerId=") + 9;
      ids.push_back((line[0] == 'A'   ? "+"
                     : line[0] == 'D' ? "-"
                                      : "~") +
                    line.substr(at, line.find(' ', at) - at));
    }
    return ids;
  }
};

TEST_F(DemoFilterWindow, HoldsWhatIsYoungerThanItsStart) {
  put("old", "2026-11-20T11:59:59Z");
  const std::string young = put("young", "2026-11-20T12:00:00Z");
  const std::string undated = state.items.add("f2", {{"Subject", "undated"}}).id;
  start();
  EXPECT_EQ(idsOf(sync(1)), (Lines{"+" + young, "+" + undated}));
}

TEST_F(DemoFilterWindow, AnItemThatLeavesItIsDeletedOnTheDevice) {
  const std::string a = put("a", "2026-11-20T13:00:00Z");
  const std::string b = put("b", "2026-11-20T14:00:00Z");
  start();
  EXPECT_EQ(idsOf(sync(1)), (Lines{"+" + a, "+" + b}));
  setNow("2026-11-21T13:30:00Z");
  EXPECT_EQ(sync(1).commands, Lines{"Delete ServerId=" + a});
  EXPECT_EQ(idsOf(sync(1)), Lines{});
  EXPECT_EQ(recordOf("f2", a)["Subject"], "a");
}

TEST_F(DemoFilterWindow, AWiderFilterAddsWhatItLetsInWithTheNextSync) {
  const std::string old = put("old", "2026-11-01T00:00:00Z");
  const std::string week = put("week", "2026-11-15T00:00:00Z");
  const std::string day = put("day");
  start();
  EXPECT_EQ(idsOf(sync(1)), Lines{"+" + day});
  EXPECT_EQ(idsOf(sync(3)), Lines{"+" + week});
  EXPECT_EQ(idsOf(sync(0)), Lines{"+" + old});
  EXPECT_EQ(idsOf(sync(0)), Lines{});
}

TEST_F(DemoFilterWindow, ANarrowerFilterDeletesWhatItShutsOut) {
  const std::string old = put("old", "2026-11-01T00:00:00Z");
  const std::string week = put("week", "2026-11-15T00:00:00Z");
  const std::string day = put("day");
  start();
  sync(0);
  EXPECT_EQ(idsOf(sync(1)), (Lines{"-" + old, "-" + week}));
  EXPECT_EQ(idsOf(sync(0)), (Lines{"+" + week, "+" + old}));
}

TEST_F(DemoFilterWindow, ManyThatLeaveOrEnterTakeSeveralExchanges) {
  std::vector<std::string> ids;
  for (int i = 0; i < 7; ++i) ids.push_back(put("m", "2026-11-10T00:00:00Z"));
  start();
  while (sync(0, 3).more) {
  }
  SyncAnswer answer = sync(1, 3);
  EXPECT_EQ(answer.commands.size(), 3u);
  EXPECT_TRUE(answer.more);
  EXPECT_EQ(sync(1, 3).commands.size(), 3u);
  answer = sync(1, 3);
  EXPECT_EQ(answer.commands.size(), 1u);
  EXPECT_FALSE(answer.more);
  answer = sync(4, 5);
  EXPECT_EQ(answer.commands.size(), 5u);
  EXPECT_TRUE(answer.more);
  EXPECT_EQ(sync(4, 5).commands.size(), 2u);
  EXPECT_EQ(sync(4, 5).commands.size(), 0u);
}

TEST_F(DemoFilterWindow, AFilterThatChangesHalfWayIsFollowed) {
  for (int i = 0; i < 6; ++i) put("m", "2026-11-10T00:00:00Z");
  const std::string day = put("day");
  start();
  EXPECT_EQ(sync(0, 4).commands.size(), 4u);
  EXPECT_EQ(idsOf(sync(1, 9)).size(), 5u);  // four leave, the young one comes
  EXPECT_EQ(sync(0, 9).commands.size(), 6u);
  EXPECT_EQ(sync(0, 9).commands.size(), 0u);
}

TEST_F(DemoFilterWindow, AChangeMayMoveAnItemOutAndIn) {
  const std::string id = put("a");
  start();
  sync(1);
  state.items.replace(id, {{"Subject", "a"}, {"DateReceived", "2026-11-01T00:00:00Z"}});
  EXPECT_EQ(idsOf(sync(1)), Lines{"-" + id});
  state.items.replace(id, {{"Subject", "b"}, {"DateReceived", "2026-11-01T00:00:00Z"}});
  EXPECT_EQ(idsOf(sync(1)), Lines{});
  state.items.replace(id, {{"Subject", "b"}, {"DateReceived", "2026-11-21T00:00:00Z"}});
  EXPECT_EQ(idsOf(sync(1)), Lines{"+" + id});
}

TEST_F(DemoFilterWindow, AnItemThatLeftAndIsRemovedIsNotDeletedTwice) {
  const std::string id = put("a", "2026-11-20T13:00:00Z");
  start();
  sync(1);
  setNow("2026-11-22T00:00:00Z");
  EXPECT_EQ(idsOf(sync(1)), Lines{"-" + id});
  state.items.remove(id);
  EXPECT_EQ(idsOf(sync(1)), Lines{});
}

TEST_F(DemoFilterWindow, AnAnswerThatGotLostIsGivenAgain) {
  const std::string id = put("a", "2026-11-15T00:00:00Z");
  start();
  sync(0);
  SyncRequest lost = mail;
  lost.key = device.key;
  lost.filter = 1;
  EXPECT_EQ(idsOf(device.send(lost)), Lines{"-" + id});
  EXPECT_EQ(idsOf(sync(1, 9)), Lines{"-" + id});
  EXPECT_EQ(idsOf(sync(1)), Lines{});
}

TEST_F(DemoFilterWindow, WhatIsLeftToSayIsCounted) {
  for (int i = 0; i < 5; ++i) put("m", "2026-11-10T00:00:00Z");
  start();
  const auto count = [&](int filter) {
    Chain chain(state.database, "device-1", "f2");
    const std::int64_t windowStart = itemClassOf(kInbox)->windowStart(filter, state.clock.now());
    return ServerChanges(state.items, "f2", chain, windowStart).count();
  };
  EXPECT_EQ(count(0), 5);
  EXPECT_EQ(count(1), 0);
  sync(0, 3);
  EXPECT_EQ(count(0), 2);
  EXPECT_EQ(count(1), 3);
  sync(0);
  const std::string day = put("day");
  EXPECT_EQ(count(0), 1);
  EXPECT_EQ(count(1), 6);
  EXPECT_EQ(count(1), 6);
  EXPECT_EQ(sync(1).commands.size(), 6u);
}

TEST_F(DemoFilterWindow, OfEventsGoesByTheirEnds) {
  const std::string over = putEvent("over", "2026-11-07T11:59:59Z");
  const std::string recent = putEvent("recent", "2026-11-07T12:00:00Z");
  const std::string lasting = state.items
                                  .add("f8", {{"StartTime", "2001-01-01T00:00:00Z"},
                                              {"EndTime", "2001-01-01T01:00:00Z"},
                                              {"Recurrence", {{"Type", 0}}}})
                                  .id;
  const std::string ended = state.items
                                .add("f8", {{"StartTime", "2001-01-01T00:00:00Z"},
                                            {"EndTime", "2001-01-01T01:00:00Z"},
                                            {"Recurrence", {{"Type", 0}, {"Until", "2001-02-01T00:00:00Z"}}}})
                                .id;
  SyncRequest request = events;
  request.filter = 4;
  device.sync(request);
  EXPECT_EQ(idsOf(device.sync(request)), (Lines{"+" + recent, "+" + lasting}));
  request.filter = 7;
  EXPECT_EQ(idsOf(device.sync(request)), Lines{"+" + over});
  request.filter = 0;
  EXPECT_EQ(idsOf(device.sync(request)), Lines{"+" + ended});
}

TEST_F(DemoFilterWindow, WhatTheDevicePutsOutsideGoesWithTheNextSync) {
  Element add(Page::Sync, "Add");
  add.add("ClientId", "1");
  add.add("ApplicationData").children.emplace_back(Page::Calendar, "Endtime", "20200101T000000Z");
  SyncRequest request = events;
  request.filter = 4;
  device.sync(request);
  device.sync(request);
  request.commands = {add};
  const SyncAnswer answer = device.sync(request);
  const std::string id = state.items.list("f8").at(0).id;
  EXPECT_EQ(answer.responses, Lines{"Add ClientId=1 ServerId=" + id + " Status=1"});
  EXPECT_EQ(answer.commands, Lines{});
  request.commands = {};
  EXPECT_EQ(idsOf(device.sync(request)), Lines{"-" + id});
  EXPECT_EQ(state.items.count("f8"), 1);
}

}  // namespace
}  // namespace demoserver
