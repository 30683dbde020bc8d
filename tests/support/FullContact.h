// A contact with all its fields, each with a value of its own.
#ifndef TESTS_SUPPORT_FULL_CONTACT_H
#define TESTS_SUPPORT_FULL_CONTACT_H

#include <string>
#include <vector>

#include "api/ItemRecords.h"
#include "support/Documents.h"

namespace airsync_test {

using AIRSYNC_STACK::AS_CONTACT_T;

/// One field that is an element's text, as the protocol documents it.
struct ContactText {
  const char* tag;
  char* AS_CONTACT_T::*field;
  const char* value;
};

inline constexpr ContactText kContactTexts[] = {
    {"Body", &AS_CONTACT_T::Body, "body"},
    {"AssistantName", &AS_CONTACT_T::AssistantName, "assistantname"},
    {"AssistnamePhoneNumber", &AS_CONTACT_T::AssistantPhoneNumber, "assistnamephonenumber"},
    {"Business2PhoneNumber", &AS_CONTACT_T::Business2PhoneNumber, "business2phonenumber"},
    {"BusinessCity", &AS_CONTACT_T::BusinessCity, "businesscity"},
    {"BusinessCountry", &AS_CONTACT_T::BusinessCountry, "businesscountry"},
    {"BusinessPostalCode", &AS_CONTACT_T::BusinessPostalCode, "businesspostalcode"},
    {"BusinessState", &AS_CONTACT_T::BusinessState, "businessstate"},
    {"BusinessStreet", &AS_CONTACT_T::BusinessStreet, "businessstreet"},
    {"BusinessFaxNumber", &AS_CONTACT_T::BusinessFaxNumber, "businessfaxnumber"},
    {"BusinessPhoneNumber", &AS_CONTACT_T::BusinessPhoneNumber, "businessphonenumber"},
    {"CarPhoneNumber", &AS_CONTACT_T::CarPhoneNumber, "carphonenumber"},
    {"CompanyName", &AS_CONTACT_T::CompanyName, "companyname"},
    {"Department", &AS_CONTACT_T::Department, "department"},
    {"Email1Address", &AS_CONTACT_T::Email1Address, "email1address"},
    {"Email2Address", &AS_CONTACT_T::Email2Address, "email2address"},
    {"Email3Address", &AS_CONTACT_T::Email3Address, "email3address"},
    {"FileAs", &AS_CONTACT_T::FileAs, "fileas"},
    {"FirstName", &AS_CONTACT_T::FirstName, "firstname"},
    {"Home2PhoneNumber", &AS_CONTACT_T::Home2PhoneNumber, "home2phonenumber"},
    {"HomeCity", &AS_CONTACT_T::HomeCity, "homecity"},
    {"HomeCountry", &AS_CONTACT_T::HomeCountry, "homecountry"},
    {"HomePostalCode", &AS_CONTACT_T::HomePostalCode, "homepostalcode"},
    {"HomeState", &AS_CONTACT_T::HomeState, "homestate"},
    {"HomeStreet", &AS_CONTACT_T::HomeStreet, "homestreet"},
    {"HomeFaxNumber", &AS_CONTACT_T::HomeFaxNumber, "homefaxnumber"},
    {"HomePhoneNumber", &AS_CONTACT_T::HomePhoneNumber, "homephonenumber"},
    {"JobTitle", &AS_CONTACT_T::JobTitle, "jobtitle"},
    {"LastName", &AS_CONTACT_T::LastName, "lastname"},
    {"MiddleName", &AS_CONTACT_T::MiddleName, "middlename"},
    {"MobilePhoneNumber", &AS_CONTACT_T::MobilePhoneNumber, "mobilephonenumber"},
    {"OfficeLocation", &AS_CONTACT_T::OfficeLocation, "officelocation"},
    {"OtherCity", &AS_CONTACT_T::OtherCity, "othercity"},
    {"OtherCountry", &AS_CONTACT_T::OtherCountry, "othercountry"},
    {"OtherPostalCode", &AS_CONTACT_T::OtherPostalCode, "otherpostalcode"},
    {"OtherState", &AS_CONTACT_T::OtherState, "otherstate"},
    {"OtherStreet", &AS_CONTACT_T::OtherStreet, "otherstreet"},
    {"PagerNumber", &AS_CONTACT_T::PagerNumber, "pagernumber"},
    {"RadioPhoneNumber", &AS_CONTACT_T::RadioPhoneNumber, "radiophonenumber"},
    {"Spouse", &AS_CONTACT_T::Spouse, "spouse"},
    {"Suffix", &AS_CONTACT_T::Suffix, "suffix"},
    {"Title", &AS_CONTACT_T::Title, "title"},
    {"WebPage", &AS_CONTACT_T::WebPage, "webpage"},
    {"YOMICompanyName", &AS_CONTACT_T::YomiCompanyName, "yomicompanyname"},
    {"YOMIFirstName", &AS_CONTACT_T::YomiFirstName, "yomifirstname"},
    {"YOMILastName", &AS_CONTACT_T::YomiLastName, "yomilastname"},
};
static_assert(sizeof(kContactTexts) / sizeof(kContactTexts[0]) == 46, "52 less 2 dates, 2 lists, 2 numbers");

/// The record, with dates 2004-06-12 00:00:00 and 1970-01-01 00:00:00 and lists of two and three entries. The
/// library reads its texts only.
struct FullContact {
  AS_CONTACT_T record = {};
  struct tm anniversary = {};
  struct tm birthday = {};

  FullContact() {
    for (const ContactText& text : kContactTexts) record.*text.field = const_cast<char*>(text.value);
    record.Categories = const_cast<char*>("Friends@@Chess");
    record.Children = const_cast<char*>("Anna@@Bert@@Cleo");
    anniversary.tm_year = 104;
    anniversary.tm_mon = 5;
    anniversary.tm_mday = 12;
    birthday.tm_year = 70;
    birthday.tm_mday = 1;
    record.Anniversary = &anniversary;
    record.Birthday = &birthday;
  }
};

}  // namespace airsync_test

#endif
