#include "items/ContactFields.h"

#include <gtest/gtest.h>
#include <sstream>
#include <string>

#include "wbxml/Vocabulary.h"

namespace demoserver {
namespace {

// The record's fields in their order; a tag in brackets where it is spelled otherwise.
constexpr char kPublished[] =
    "Body BodySize BodyTruncated Anniversary AssistantName AssistantPhoneNumber(AssistnamePhoneNumber) "
    "Birthday "
    "Business2PhoneNumber BusinessCity BusinessCountry BusinessPostalCode BusinessState BusinessStreet "
    "BusinessFaxNumber BusinessPhoneNumber CarPhoneNumber Categories Children CompanyName Department "
    "Email1Address Email2Address Email3Address FileAs FirstName Home2PhoneNumber HomeCity HomeCountry "
    "HomePostalCode HomeState HomeStreet HomeFaxNumber HomePhoneNumber JobTitle LastName MiddleName "
    "MobilePhoneNumber OfficeLocation OtherCity OtherCountry OtherPostalCode OtherState OtherStreet "
    "PagerNumber "
    "RadioPhoneNumber Spouse Suffix Title WebPage YomiCompanyName(YOMICompanyName) "
    "YomiFirstName(YOMIFirstName) "
    "YomiLastName(YOMILastName)";

TEST(DemoContactFields, AreThe52OfTheRecordUnderTheirTags) {
  std::istringstream published(kPublished);
  std::string entry;
  std::size_t number = 0;
  for (; published >> entry; ++number) {
    ASSERT_LT(number, kContactFields.size());
    const ContactField& field = kContactFields[number];
    const std::size_t bracket = entry.find('(');
    EXPECT_EQ(field.name, entry.substr(0, bracket));
    EXPECT_EQ(field.tag,
              bracket == std::string::npos ? entry : entry.substr(bracket + 1, entry.size() - bracket - 2));
    EXPECT_NE(tokenOf(Page::Contacts, field.tag), 0) << field.tag;
  }
  EXPECT_EQ(number, 52u);
}

TEST(DemoContactFields, HoldTextUnlessTheyAreListedHere) {
  for (const ContactField& field : kContactFields) {
    const FieldKind expected = field.name == "Anniversary" || field.name == "Birthday" ? FieldKind::Date
                               : field.name == "Categories"                            ? FieldKind::Categories
                               : field.name == "Children"                              ? FieldKind::Children
                               : field.name == "Body"                                  ? FieldKind::Body
                               : field.name == "BodySize"                              ? FieldKind::BodySize
                               : field.name == "BodyTruncated"   ? FieldKind::BodyTruncated
                               : field.name.starts_with("Email") ? FieldKind::Address
                                                                 : FieldKind::Text;
    EXPECT_EQ(field.kind, expected) << field.name;
  }
}

}  // namespace
}  // namespace demoserver
