#include <gtest/gtest.h>
#include <stdexcept>

#include "support/Bytes.h"
#include "wbxml/Codec.h"

namespace demoserver {
namespace {

TEST(DemoEncoder, WritesHeaderAndBareRoot) {
  EXPECT_EQ(hexOf(encode(Element(Page::Sync, "Sync"))), "03 01 6A 00 05");
}

TEST(DemoEncoder, WritesTextAsAnInlineString) {
  // 4E: Status (0E) with content.
  EXPECT_EQ(hexOf(encode(Element(Page::Sync, "Status", "1"))), "03 01 6A 00 4E 03 31 00 01");
}

TEST(DemoEncoder, WritesEmptyTextAsAnEmptyString) {
  EXPECT_EQ(hexOf(encode(Element(Page::Sync, "Status", ""))), "03 01 6A 00 4E 03 00 01");
}

TEST(DemoEncoder, SwitchesThePageOnceForARunOfElements) {
  Element data(Page::Sync, "ApplicationData");
  data.children.emplace_back(Page::Contacts, "FirstName", "A");
  data.children.emplace_back(Page::Contacts, "LastName", "B");
  Element add(Page::Sync, "Add");
  add.add(std::move(data));
  add.add("ClientId", "5");
  EXPECT_EQ(hexOf(encode(add)),
            "03 01 6A 00 47 "        // Add
            "5D "                    // ApplicationData
            "00 01 5F 03 41 00 01 "  // page 1, FirstName "A"
            "69 03 42 00 01 "        // LastName "B"
            "01 "
            "00 00 4C 03 35 00 01 "  // page 0, ClientId "5"
            "01");
}

TEST(DemoEncoder, StartsADocumentOfAnotherPageWithASwitch) {
  Element root(Page::Folders, "FolderSync");
  root.add("Status", "1");
  EXPECT_EQ(hexOf(encode(root)), "03 01 6A 00 00 07 56 4C 03 31 00 01 01");
}

TEST(DemoEncoder, PutsAnUnknownPageIntoItemsWhenAsked) {
  Element root(Page::Sync, "Add");
  root.add("ServerId", "5");
  root.add("ApplicationData").children.emplace_back(Page::Contacts, "FirstName", "A");
  root.add("ApplicationData");
  EXPECT_EQ(hexOf(encodeWithUnknownPage(root)),
            "03 01 6A 00 47 "        // Add
            "4D 03 35 00 01 "        // ServerId "5"
            "5D "                    // ApplicationData
            "00 11 45 03 31 00 01 "  // page 17, token 5 "1"
            "00 01 5F 03 41 00 01 "  // page 1, FirstName "A"
            "01 "
            "00 00 1D "  // page 0, an empty ApplicationData as it is
            "01");
}

TEST(DemoEncoder, RefusesATagThatItsPageLacks) {
  EXPECT_THROW(encode(Element(Page::Sync, "FirstName")), std::logic_error);
}

TEST(DemoEncoder, RefusesTextThatWouldBeCutAtANul) {
  EXPECT_THROW(encode(Element(Page::Sync, "ClientId", std::string("a\0b", 3))), std::logic_error);
}

}  // namespace
}  // namespace demoserver
