// The data of a contact as it goes to the server.
#include <climits>

#include "GeneratorRig.h"
#include "support/FullContact.h"

namespace airsync_test {
namespace {

class GeneratorContact : public GeneratorRig {
 protected:
  // The ApplicationData of an Add of this contact, as a line.
  std::string DataOf(AS_CONTACT_T& contact) {
    HandOut(AS_CHANGE_ADD, "", 1, &contact);
    sml_element* const request = NextRequest();
    std::string outline =
        Outline(SE_GetChild(request, "Collections/Collection/Commands/Add/ApplicationData"));
    SE_Destroy(request);
    EXPECT_EQ(FailingMemory::LiveBlocks(), blocksBefore);
    return outline;
  }

  std::string CategoriesOf(std::string list) {
    AS_CONTACT_T contact = {};
    contact.Categories = list.data();
    return DataOf(contact);
  }

  std::string BirthdayOf(const struct tm& date) {
    AS_CONTACT_T contact = {};
    struct tm copy = date;
    contact.Birthday = &copy;
    return DataOf(contact);
  }
};

TEST_F(GeneratorContact, WritesAllFiftyElementsInTheirOrder) {
  FullContact contact;
  HandOut(AS_CHANGE_ADD, "", 1, &contact.record);
  sml_element* const request = NextRequest();
  const sml_element* const add = SE_GetChild(request, "Collections/Collection/Commands/Add");
  EXPECT_EQ(InHex(DocumentOf(add)), InHex(GoldenDocument("sync-contact-all-fields")));
  EXPECT_EQ(SE_GetNumberOfChildren(SE_GetChild(add, "ApplicationData")), 50);
  SE_Destroy(request);
}

TEST_F(GeneratorContact, WritesTheSameDataForAChange) {
  FullContact contact;
  HandOut(AS_CHANGE_ADD, "", 1, &contact.record);
  HandOut(AS_CHANGE_CHANGE, "2:1", 0, &contact.record);
  sml_element* const request = NextRequest();
  const sml_element* const commands = SE_GetChild(request, "Collections/Collection/Commands");
  EXPECT_EQ(Outline(SE_GetChild(commands, "Change/ApplicationData")),
            Outline(SE_GetChild(commands, "Add/ApplicationData")));
  SE_Destroy(request);
}

TEST_F(GeneratorContact, LeavesOutEachFieldThatIsNull) {
  AS_CONTACT_T contact = {};
  EXPECT_EQ(DataOf(contact), "ApplicationData");
}

TEST_F(GeneratorContact, LeavesOutEachTextThatIsEmpty) {
  AS_CONTACT_T contact = {};
  char empty[] = "";
  for (const ContactText& text : kContactTexts) contact.*text.field = empty;
  EXPECT_EQ(DataOf(contact), "ApplicationData");
}

TEST_F(GeneratorContact, WritesEachTextUnderItsOwnTag) {
  for (const ContactText& text : kContactTexts) {
    AS_CONTACT_T contact = {};
    contact.*text.field = const_cast<char*>("x");
    EXPECT_EQ(DataOf(contact), std::string("ApplicationData(") + text.tag + "@1=\"x\")");
  }
}

TEST_F(GeneratorContact, NeverWritesSizeAndTruncationOfTheBody) {
  AS_CONTACT_T contact = {};
  INT32 size = 5;
  UINT8 truncated = 1;
  contact.BodySize = &size;
  contact.BodyTruncated = &truncated;
  EXPECT_EQ(DataOf(contact), "ApplicationData");
}

TEST_F(GeneratorContact, WritesTextsAsTheyAre) {
  AS_CONTACT_T contact = {};
  std::string text = " <b>&amp;\r\n\xC3\xA9\xFF @@\" ";
  contact.Body = text.data();
  EXPECT_EQ(DataOf(contact), "ApplicationData(Body@1=\"" + text + "\")");
}

TEST_F(GeneratorContact, WritesTheFirstSecondOf1970) {
  struct tm date = {};
  date.tm_year = 70;
  date.tm_mday = 1;
  EXPECT_EQ(BirthdayOf(date), "ApplicationData(Birthday@1=\"1970-01-01T00:00:00.000Z\")");
}

TEST_F(GeneratorContact, WritesAllSixPartsOfADateWithoutConversion) {
  struct tm date = {};
  date.tm_year = 104;
  date.tm_mon = 11;
  date.tm_mday = 31;
  date.tm_hour = 23;
  date.tm_min = 58;
  date.tm_sec = 59;
  date.tm_isdst = 1;
  date.tm_wday = 3;
  date.tm_yday = 99;
  EXPECT_EQ(BirthdayOf(date), "ApplicationData(Birthday@1=\"2004-12-31T23:58:59.000Z\")");
}

TEST_F(GeneratorContact, PadsAYearOfThreeDigits) {
  struct tm date = {};
  date.tm_year = -1000;
  EXPECT_EQ(BirthdayOf(date), "ApplicationData(Birthday@1=\"0900-01-00T00:00:00.000Z\")");
}

// Year and month wrap where they don't fit; the text holds any value of the six.
TEST_F(GeneratorContact, HasRoomForAnyDate) {
  struct tm date = {};
  date.tm_year = INT_MAX;
  date.tm_mon = INT_MAX;
  date.tm_mday = date.tm_hour = date.tm_min = date.tm_sec = INT_MIN;
  EXPECT_EQ(BirthdayOf(date),
            "ApplicationData(Birthday@1=\"-2147481749--2147483648--2147483648T-2147483648:-2147483648:"
            "-2147483648.000Z\")");
}

TEST_F(GeneratorContact, SplitsAListIntoItsEntries) {
  EXPECT_EQ(CategoriesOf("A@@B"), "ApplicationData(Categories@1(Category@1=\"A\" Category@1=\"B\"))");
  EXPECT_EQ(CategoriesOf("A"), "ApplicationData(Categories@1(Category@1=\"A\"))");
}

TEST_F(GeneratorContact, SkipsEmptyEntriesOfAList) {
  EXPECT_EQ(CategoriesOf("@@A@@"), "ApplicationData(Categories@1(Category@1=\"A\"))");
  EXPECT_EQ(CategoriesOf("A@@@@B"), "ApplicationData(Categories@1(Category@1=\"A\" Category@1=\"B\"))");
}

TEST_F(GeneratorContact, WritesAListWithoutEntriesAsAnEmptyElement) {
  EXPECT_EQ(CategoriesOf(""), "ApplicationData(Categories@1)");
  EXPECT_EQ(CategoriesOf("@@"), "ApplicationData(Categories@1)");
  EXPECT_EQ(CategoriesOf("@@@@"), "ApplicationData(Categories@1)");
}

TEST_F(GeneratorContact, TakesSingleSignsForText) {
  EXPECT_EQ(CategoriesOf("@"), "ApplicationData(Categories@1(Category@1=\"@\"))");
  EXPECT_EQ(CategoriesOf("a@b@@c@"), "ApplicationData(Categories@1(Category@1=\"a@b\" Category@1=\"c@\"))");
  EXPECT_EQ(CategoriesOf("A@@@B"), "ApplicationData(Categories@1(Category@1=\"A\" Category@1=\"@B\"))");
}

TEST_F(GeneratorContact, LeavesTheStoragesListAsItWas) {
  std::string list = "A@@B";
  AS_CONTACT_T contact = {};
  contact.Children = list.data();
  EXPECT_EQ(DataOf(contact), "ApplicationData(Children@1(Child@1=\"A\" Child@1=\"B\"))");
  EXPECT_EQ(list, "A@@B");
}

}  // namespace
}  // namespace airsync_test
