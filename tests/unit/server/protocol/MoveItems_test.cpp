#include "protocol/MoveItems.h"

#include <gtest/gtest.h>

#include "protocol/Status.h"
#include "support/Mailroom.h"

namespace demoserver {
namespace {

class DemoMoveItems : public Mailroom {
 protected:
  Lines move(const std::vector<MoveOf>& moves) {
    const Element response = runMoveItems(state, {}, "device-1", moveRequest(moves));
    EXPECT_TRUE(response.is(Page::Move, "Moves"));
    return linesOf(&response);
  }
};

TEST_F(DemoMoveItems, AnswersTheNewId) {
  const std::string id = put("A");
  const Lines answer = move({{id, "f2", "m%2F1"}});
  const Item moved = state.items.list("m%2F1").at(0);
  EXPECT_EQ(answer, Lines{"Response SrcMsgId=" + id + " Status=3 DstMsgId=" + moved.id});
  EXPECT_EQ(moved.record["Subject"], "A");
  EXPECT_EQ(state.items.count("f2"), 0);
}

TEST_F(DemoMoveItems, AnswersEachMoveInItsOrder) {
  const std::string a = put("A");
  const std::string b = put("B");
  const Lines answer = move({{b, "f2", "f4"}, {"i/999", "f2", "f4"}, {a, "f2", "f4"}});
  ASSERT_EQ(answer.size(), 3u);
  EXPECT_TRUE(answer[0].starts_with("Response SrcMsgId=" + b + " Status=3 "));
  EXPECT_EQ(answer[1], "Response SrcMsgId=i/999 Status=1");
  EXPECT_TRUE(answer[2].starts_with("Response SrcMsgId=" + a + " Status=3 "));
}

TEST_F(DemoMoveItems, RefusesABadSource) {
  const std::string id = put("A");
  EXPECT_EQ(move({{id, "f5", "f4"}}), Lines{"Response SrcMsgId=" + id + " Status=1"});
  EXPECT_EQ(move({{id, "nowhere", "f4"}}), Lines{"Response SrcMsgId=" + id + " Status=1"});
  state.items.remove(id);
  EXPECT_EQ(move({{id, "f2", "f4"}}), Lines{"Response SrcMsgId=" + id + " Status=1"});
}

TEST_F(DemoMoveItems, RefusesABadDestination) {
  const std::string id = put("A");
  for (const char* folder : {"nowhere", "f7", "f8", "f9"})
    EXPECT_EQ(move({{id, "f2", folder}}), Lines{"Response SrcMsgId=" + id + " Status=2"}) << folder;
  EXPECT_EQ(state.items.count("f2"), 1);
}

TEST_F(DemoMoveItems, RefusesToMoveToTheSameFolder) {
  const std::string id = put("A");
  EXPECT_EQ(move({{id, "f2", "f2"}}), Lines{"Response SrcMsgId=" + id + " Status=4"});
}

TEST_F(DemoMoveItems, AnswersARepeatedMoveLikeTheFirst) {
  const std::string id = put("A");
  const Lines first = move({{id, "f2", "f4"}});
  EXPECT_EQ(move({{id, "f2", "f4"}}), first);
  EXPECT_EQ(state.items.count("f4"), 1);
  EXPECT_EQ(move({{id, "f2", "f5"}}), Lines{"Response SrcMsgId=" + id + " Status=1"});
}

TEST_F(DemoMoveItems, TakesAttachmentsAlong) {
  const std::string id = put("A");
  const std::string handle = state.attachments.add(id, "a.txt", "text/plain", "1");
  move({{id, "f2", "f4"}});
  EXPECT_EQ(state.attachments.find(handle)->item, state.items.list("f4").at(0).id);
}

TEST_F(DemoMoveItems, GivesDevicesADeleteAndAnAdd) {
  state.folders.create("0", "Friends", kUserContacts, "k1");
  const std::string id = state.items.add("f9", {{"FirstName", "A"}}).id;
  Device source(state);
  source.catchUp();
  Device destination(state);
  destination.sync({.folder = "k1"});
  move({{id, "f9", "k1"}});
  EXPECT_EQ(source.sync().commands, Lines{"Delete ServerId=" + id});
  EXPECT_EQ(destination.sync({.folder = "k1"}).commands,
            Lines{"Add ServerId=" + state.items.list("k1").at(0).id + " FirstName=A"});
}

TEST_F(DemoMoveItems, RefusesWhatIsNoRequest) {
  EXPECT_THROW(runMoveItems(state, {}, "device-1", Element(Page::Sync, "Sync")), BadRequest);
  EXPECT_THROW(runMoveItems(state, {}, "device-1", moveRequest({{"", "f2", "f4"}})), BadRequest);
  Element request(Page::Move, "Moves");
  EXPECT_TRUE(runMoveItems(state, {}, "device-1", request).children.empty());
  request.add("Response");
  EXPECT_THROW(runMoveItems(state, {}, "device-1", request), BadRequest);
}

}  // namespace
}  // namespace demoserver
