#include "data/AttachmentStore.h"

#include <gtest/gtest.h>

#include "data/State.h"

namespace demoserver {
namespace {

struct DemoAttachments : ::testing::Test {
  State state{":memory:"};
  Item mail = state.items.add("f2", {{"Subject", "A"}});
};

TEST_F(DemoAttachments, AreFoundByTheirHandle) {
  const std::string bytes("a\0b\xFF", 4);
  const std::string handle = state.attachments.add(mail.id, "a.bin", "image/png", bytes);
  const auto found = state.attachments.find(handle);
  ASSERT_TRUE(found);
  EXPECT_EQ(found->item, mail.id);
  EXPECT_EQ(found->name, "a.bin");
  EXPECT_EQ(found->type, "image/png");
  EXPECT_EQ(found->content, bytes);
  EXPECT_FALSE(state.attachments.find(handle + "x"));
}

TEST_F(DemoAttachments, MayBeEmptyAndOfNoKnownType) {
  const auto found = state.attachments.find(state.attachments.add(mail.id, "", "", ""));
  ASSERT_TRUE(found);
  EXPECT_EQ(found->content, "");
  EXPECT_EQ(found->type, "application/octet-stream");
}

TEST_F(DemoAttachments, HaveHandlesThatARequestLineCarries) {
  const std::string handle = state.attachments.add(mail.id, "Bericht & Plan #1/ä.pdf", "", "");
  EXPECT_EQ(handle, "Att/2:Bericht%20%26%20Plan%20%231%2f%c3%a4.pdf");
  EXPECT_NE(state.attachments.add(mail.id, "Bericht & Plan #1/ä.pdf", "", ""), handle);
}

TEST_F(DemoAttachments, HaveShortHandlesAndSplitNoEscape) {
  EXPECT_EQ(state.attachments.add(mail.id, std::string(500, 'x'), "", ""), "Att/2:" + std::string(64, 'x'));
  EXPECT_EQ(state.attachments.add(mail.id, std::string(62, 'x') + "  ", "", ""),
            "Att/3:" + std::string(62, 'x'));
}

TEST_F(DemoAttachments, AreListedInTheirOrder) {
  const std::string second = state.items.add("f2", {{"Subject", "B"}}).id;
  state.attachments.add(mail.id, "z", "", "1");
  state.attachments.add(second, "y", "", "2");
  state.attachments.add(mail.id, "a", "", "3");
  const auto list = state.attachments.list(mail.id);
  ASSERT_EQ(list.size(), 2u);
  EXPECT_EQ(list[0].name, "z");
  EXPECT_EQ(list[1].content, "3");
}

TEST_F(DemoAttachments, GoWithTheirItem) {
  const std::string handle = state.attachments.add(mail.id, "a", "", "1");
  state.messages.keep(mail.id, "m");
  state.items.remove(mail.id);
  EXPECT_FALSE(state.attachments.find(handle));
  EXPECT_FALSE(state.messages.find(mail.id));
}

TEST_F(DemoAttachments, GoWithTheirFolder) {
  const std::string handle = state.attachments.add(mail.id, "a", "", "1");
  state.messages.keep(mail.id, "m");
  state.items.forgetFolder("f2");
  EXPECT_FALSE(state.attachments.find(handle));
  EXPECT_FALSE(state.messages.find(mail.id));
}

TEST_F(DemoAttachments, StayWhenTheirItemChanges) {
  const std::string handle = state.attachments.add(mail.id, "a", "", "1");
  state.items.replace(mail.id, {{"Subject", "C"}});
  EXPECT_TRUE(state.attachments.find(handle));
}

// 57 bytes make the 76 characters of one line.
TEST(DemoAnnouncedSize, IsThatOfBase64WithLineBreaks) {
  EXPECT_EQ(announcedSize(0), 0u);
  EXPECT_EQ(announcedSize(1), 6u);
  EXPECT_EQ(announcedSize(3), 6u);
  EXPECT_EQ(announcedSize(4), 10u);
  EXPECT_EQ(announcedSize(57), 78u);
  EXPECT_EQ(announcedSize(58), 84u);
}

}  // namespace
}  // namespace demoserver
