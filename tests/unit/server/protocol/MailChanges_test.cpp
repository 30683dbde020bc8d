#include <gtest/gtest.h>

#include "support/Device.h"

namespace demoserver {
namespace {

using nlohmann::json;

class DemoMailChanges : public WithMail {
 protected:
  SyncAnswer send(std::vector<Element> commands, bool deletesAsMoves = false,
                  const std::string& folder = "f2", int conflict = 1) {
    SyncRequest request = mail;
    request.folder = folder;
    request.commands = std::move(commands);
    request.deletesAsMoves = deletesAsMoves;
    request.conflict = conflict;
    return device.sync(request);
  }
  // A change by the server of one member.
  void change(const std::string& id, const char* name, const json& value) {
    json record = recordOf("f2", id);
    record[name] = value;
    state.items.replace(id, record);
  }
};

TEST_F(DemoMailChanges, AMailThatWasReadIsToldByReadAlone) {
  const std::string id = put("a");
  device.catchUp(mail);
  change(id, "Read", true);
  EXPECT_EQ(device.sync(mail).commands, Lines{"Change ServerId=" + id + " Read=1"});
  change(id, "Read", false);
  change(id, "Read", true);
  EXPECT_EQ(device.sync(mail).commands, Lines{"Change ServerId=" + id + " Read=1"});
}

TEST_F(DemoMailChanges, AnyOtherChangeIsToldByTheWholeMail) {
  const std::string id = put("a");
  device.catchUp(mail);
  change(id, "Subject", "b");
  const std::string whole =
      "Change ServerId=" + id + " DateReceived=2026-11-21T11:00:00.000Z Subject=b Importance=1 Read=";
  EXPECT_EQ(device.sync(mail).commands, Lines{whole + "0"});
  change(id, "Subject", "c");
  change(id, "Subject", "b");
  change(id, "Read", true);
  EXPECT_EQ(device.sync(mail).commands, Lines{whole + "1"});
}

TEST_F(DemoMailChanges, ALostChangeOfTheWholeIsNotCutToReadWhenItComesAgain) {
  const std::string id = put("a");
  device.catchUp(mail);
  change(id, "Subject", "b");
  SyncRequest lost = mail;
  lost.key = device.key;
  device.send(lost);
  change(id, "Read", true);
  SyncRequest again = mail;
  again.window = 9;
  EXPECT_EQ(device.sync(again).commands,
            Lines{"Change ServerId=" + id +
                  " DateReceived=2026-11-21T11:00:00.000Z Subject=b Importance=1 Read=1"});
}

TEST_F(DemoMailChanges, AClientMarksMailsReadAndUnread) {
  const std::string id = put("a");
  device.catchUp(mail);
  Device other(state, "device-2");
  other.catchUp(mail);
  EXPECT_EQ(send({readCommand(id, true)}).responses, Lines{});
  EXPECT_EQ(recordOf("f2", id)["Read"], true);
  EXPECT_EQ(recordOf("f2", id)["Subject"], "a");
  EXPECT_EQ(other.sync(mail).commands, Lines{"Change ServerId=" + id + " Read=1"});
  EXPECT_EQ(send({readCommand(id, false)}).commands, Lines{});
  EXPECT_EQ(recordOf("f2", id)["Read"], false);
}

TEST_F(DemoMailChanges, AClientCanDoNothingElseToAMail) {
  const std::string id = put("a");
  device.catchUp(mail);
  Element change(Page::Sync, "Change");
  change.add("ServerId", id);
  change.add("ApplicationData").children.emplace_back(Page::Mail, "Subject", "b");
  Element add(Page::Sync, "Add");
  add.add("ClientId", "1");
  add.add("ApplicationData").children.emplace_back(Page::Mail, "Subject", "b");
  EXPECT_EQ(send({change, add}).responses,
            (Lines{"Change ServerId=" + id + " Status=6", "Add ClientId=1 Status=6"}));
  EXPECT_EQ(recordOf("f2", id)["Subject"], "a");
  EXPECT_EQ(state.items.count("f2"), 1);
}

TEST_F(DemoMailChanges, AMailThatIsGoneDoesNotComeBackByAChange) {
  const std::string id = put("a");
  device.catchUp(mail);
  state.items.remove(id);
  const SyncAnswer answer = send({readCommand(id, true)}, false, "f2", 0);
  EXPECT_EQ(answer.responses, Lines{"Change ServerId=" + id + " Status=8"});
  EXPECT_EQ(answer.commands, Lines{"Delete ServerId=" + id});
}

TEST_F(DemoMailChanges, ADeleteMovesTheMailToDeletedItemsWhenAskedTo) {
  const std::string id = put("a");
  device.catchUp(mail);
  EXPECT_EQ(send({deleteCommand(id)}, true).responses, Lines{});
  EXPECT_EQ(state.items.count("f2"), 0);
  ASSERT_EQ(state.items.count("f4"), 1);
  EXPECT_EQ(state.items.list("f4")[0].record["Subject"], "a");
  EXPECT_EQ(device.sync(mail).commands, Lines{});
  Device other(state, "device-2");
  SyncRequest bin = mail;
  bin.folder = "f4";
  other.sync(bin);
  EXPECT_EQ(other.sync(bin).commands.size(), 1u);
}

TEST_F(DemoMailChanges, ADeleteIsFinalWithoutThatAndInDeletedItems) {
  const std::string id = put("a");
  device.catchUp(mail);
  send({deleteCommand(id)});
  EXPECT_EQ(state.items.count("f4"), 0);
  const std::string binned = state.items.add("f4", {{"Subject", "b"}, {"Read", true}}).id;
  SyncRequest bin = mail;
  bin.folder = "f4";
  device.catchUp(bin);
  send({deleteCommand(binned)}, true, "f4");
  EXPECT_EQ(state.items.count("f4"), 0);
}

TEST_F(DemoMailChanges, ADeleteWhoseAnswerGotLostMovesTheMailOnce) {
  const std::string id = put("a");
  device.catchUp(mail);
  SyncRequest lost = mail;
  lost.key = device.key;
  lost.commands = {deleteCommand(id)};
  lost.deletesAsMoves = true;
  device.send(lost);
  EXPECT_EQ(send({deleteCommand(id), deleteCommand("i/99")}, true).responses,
            Lines{"Delete ServerId=i/99 Status=8"});
  EXPECT_EQ(state.items.count("f4"), 1);
}

TEST_F(DemoMailChanges, AnEventIsDeletedForGood) {
  const std::string id = putEvent("e", "2026-11-21T11:00:00Z");
  device.catchUp(events);
  SyncRequest request = events;
  request.commands = {deleteCommand(id)};
  request.deletesAsMoves = true;
  device.sync(request);
  EXPECT_EQ(state.items.count("f8"), 0);
  EXPECT_EQ(state.items.count("f4"), 0);
}

TEST_F(DemoMailChanges, AttachmentsGoToDeletedItemsWithTheirMail) {
  const std::string id = put("a");
  const std::string handle = state.attachments.add(id, "a.txt", "text/plain", "hello");
  device.catchUp(mail);
  send({deleteCommand(id)}, true);
  ASSERT_TRUE(state.attachments.find(handle).has_value());
  EXPECT_EQ(state.attachments.find(handle)->item, state.items.list("f4")[0].id);
}

}  // namespace
}  // namespace demoserver
