// The table of a contact's fields against the protocol's documentation: order, names, tags, forms, places.
#include "api/ContactFields.h"

#include <cstring>
#include <gtest/gtest.h>

namespace airsync_test {
namespace {

using namespace AIRSYNC_STACK;

struct Documented {
  const char* name;
  const char* tag;
  AS_FIELD_FORM_T form;
};

const Documented kDocumented[] = {
    {"Body", "Body", AS_FORM_TEXT},
    {"BodySize", "BodySize", AS_FORM_NUMBER},
    {"BodyTruncated", "BodyTruncated", AS_FORM_FLAG},
    {"Anniversary", "Anniversary", AS_FORM_TIME},
    {"AssistantName", "AssistantName", AS_FORM_TEXT},
    {"AssistantPhoneNumber", "AssistnamePhoneNumber", AS_FORM_TEXT},
    {"Birthday", "Birthday", AS_FORM_TIME},
    {"Business2PhoneNumber", "Business2PhoneNumber", AS_FORM_TEXT},
    {"BusinessCity", "BusinessCity", AS_FORM_TEXT},
    {"BusinessCountry", "BusinessCountry", AS_FORM_TEXT},
    {"BusinessPostalCode", "BusinessPostalCode", AS_FORM_TEXT},
    {"BusinessState", "BusinessState", AS_FORM_TEXT},
    {"BusinessStreet", "BusinessStreet", AS_FORM_TEXT},
    {"BusinessFaxNumber", "BusinessFaxNumber", AS_FORM_TEXT},
    {"BusinessPhoneNumber", "BusinessPhoneNumber", AS_FORM_TEXT},
    {"CarPhoneNumber", "CarPhoneNumber", AS_FORM_TEXT},
    {"Categories", "Categories", AS_FORM_LIST},
    {"Children", "Children", AS_FORM_LIST},
    {"CompanyName", "CompanyName", AS_FORM_TEXT},
    {"Department", "Department", AS_FORM_TEXT},
    {"Email1Address", "Email1Address", AS_FORM_QUOTED},
    {"Email2Address", "Email2Address", AS_FORM_QUOTED},
    {"Email3Address", "Email3Address", AS_FORM_QUOTED},
    {"FileAs", "FileAs", AS_FORM_TEXT},
    {"FirstName", "FirstName", AS_FORM_TEXT},
    {"Home2PhoneNumber", "Home2PhoneNumber", AS_FORM_TEXT},
    {"HomeCity", "HomeCity", AS_FORM_TEXT},
    {"HomeCountry", "HomeCountry", AS_FORM_TEXT},
    {"HomePostalCode", "HomePostalCode", AS_FORM_TEXT},
    {"HomeState", "HomeState", AS_FORM_TEXT},
    {"HomeStreet", "HomeStreet", AS_FORM_TEXT},
    {"HomeFaxNumber", "HomeFaxNumber", AS_FORM_TEXT},
    {"HomePhoneNumber", "HomePhoneNumber", AS_FORM_TEXT},
    {"JobTitle", "JobTitle", AS_FORM_TEXT},
    {"LastName", "LastName", AS_FORM_TEXT},
    {"MiddleName", "MiddleName", AS_FORM_TEXT},
    {"MobilePhoneNumber", "MobilePhoneNumber", AS_FORM_TEXT},
    {"OfficeLocation", "OfficeLocation", AS_FORM_TEXT},
    {"OtherCity", "OtherCity", AS_FORM_TEXT},
    {"OtherCountry", "OtherCountry", AS_FORM_TEXT},
    {"OtherPostalCode", "OtherPostalCode", AS_FORM_TEXT},
    {"OtherState", "OtherState", AS_FORM_TEXT},
    {"OtherStreet", "OtherStreet", AS_FORM_TEXT},
    {"PagerNumber", "PagerNumber", AS_FORM_TEXT},
    {"RadioPhoneNumber", "RadioPhoneNumber", AS_FORM_TEXT},
    {"Spouse", "Spouse", AS_FORM_TEXT},
    {"Suffix", "Suffix", AS_FORM_TEXT},
    {"Title", "Title", AS_FORM_TEXT},
    {"WebPage", "WebPage", AS_FORM_TEXT},
    {"YomiCompanyName", "YOMICompanyName", AS_FORM_TEXT},
    {"YomiFirstName", "YOMIFirstName", AS_FORM_TEXT},
    {"YomiLastName", "YOMILastName", AS_FORM_TEXT},
};

// What the row's member pointer finds in the record, in which the n-th word is the number n.
const void* PlaceOf(const AS_CONTACT_T& contact, const AS_CONTACT_FIELD_T& row) {
  if (row.text != nullptr) return contact.*row.text;
  if (row.number != nullptr) return contact.*row.number;
  if (row.flag != nullptr) return contact.*row.flag;
  return contact.*row.time;
}

TEST(ContactFields, AreThoseOfTheRecordInItsOrder) {
  ASSERT_EQ(std::size(kDocumented), 52U);
  std::uintptr_t words[52];
  for (std::uintptr_t i = 0; i < 52; ++i) words[i] = i;
  AS_CONTACT_T contact;
  static_assert(sizeof words == sizeof contact);
  std::memcpy(&contact, words, sizeof contact);
  for (std::size_t i = 0; i < 52; ++i) {
    const AS_CONTACT_FIELD_T& row = AS_CONTACT_FIELDS[i];
    EXPECT_STREQ(row.name, kDocumented[i].name);
    EXPECT_STREQ(row.tag, kDocumented[i].tag);
    EXPECT_EQ(row.form, kDocumented[i].form) << row.name;
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(PlaceOf(contact, row)), i) << row.name;
  }
}

}  // namespace
}  // namespace airsync_test
