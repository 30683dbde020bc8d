// The fields of a contact.
#ifndef KROAIRSYNC_API_CONTACT_FIELDS_H
#define KROAIRSYNC_API_CONTACT_FIELDS_H

#include "api/ItemFields.h"

namespace AIRSYNC_STACK {

typedef AS_FIELD_T<AS_CONTACT_T> AS_CONTACT_FIELD_T;

// In the order of the record. Some tags are spelled in ways that look wrong; the protocol spells them so.
inline constexpr AS_CONTACT_FIELD_T AS_CONTACT_FIELDS[] = {
    {"Body", "Body", &AS_CONTACT_T::Body},
    {"BodySize", "BodySize", &AS_CONTACT_T::BodySize},
    {"BodyTruncated", "BodyTruncated", &AS_CONTACT_T::BodyTruncated},
    {"Anniversary", "Anniversary", &AS_CONTACT_T::Anniversary},
    {"AssistantName", "AssistantName", &AS_CONTACT_T::AssistantName},
    {"AssistantPhoneNumber", "AssistnamePhoneNumber", &AS_CONTACT_T::AssistantPhoneNumber},
    {"Birthday", "Birthday", &AS_CONTACT_T::Birthday},
    {"Business2PhoneNumber", "Business2PhoneNumber", &AS_CONTACT_T::Business2PhoneNumber},
    {"BusinessCity", "BusinessCity", &AS_CONTACT_T::BusinessCity},
    {"BusinessCountry", "BusinessCountry", &AS_CONTACT_T::BusinessCountry},
    {"BusinessPostalCode", "BusinessPostalCode", &AS_CONTACT_T::BusinessPostalCode},
    {"BusinessState", "BusinessState", &AS_CONTACT_T::BusinessState},
    {"BusinessStreet", "BusinessStreet", &AS_CONTACT_T::BusinessStreet},
    {"BusinessFaxNumber", "BusinessFaxNumber", &AS_CONTACT_T::BusinessFaxNumber},
    {"BusinessPhoneNumber", "BusinessPhoneNumber", &AS_CONTACT_T::BusinessPhoneNumber},
    {"CarPhoneNumber", "CarPhoneNumber", &AS_CONTACT_T::CarPhoneNumber},
    {"Categories", "Categories", &AS_CONTACT_T::Categories, "Category"},
    {"Children", "Children", &AS_CONTACT_T::Children, "Child", true},
    {"CompanyName", "CompanyName", &AS_CONTACT_T::CompanyName},
    {"Department", "Department", &AS_CONTACT_T::Department},
    {"Email1Address", "Email1Address", &AS_CONTACT_T::Email1Address, AS_FORM_QUOTED},
    {"Email2Address", "Email2Address", &AS_CONTACT_T::Email2Address, AS_FORM_QUOTED},
    {"Email3Address", "Email3Address", &AS_CONTACT_T::Email3Address, AS_FORM_QUOTED},
    {"FileAs", "FileAs", &AS_CONTACT_T::FileAs},
    {"FirstName", "FirstName", &AS_CONTACT_T::FirstName},
    {"Home2PhoneNumber", "Home2PhoneNumber", &AS_CONTACT_T::Home2PhoneNumber},
    {"HomeCity", "HomeCity", &AS_CONTACT_T::HomeCity},
    {"HomeCountry", "HomeCountry", &AS_CONTACT_T::HomeCountry},
    {"HomePostalCode", "HomePostalCode", &AS_CONTACT_T::HomePostalCode},
    {"HomeState", "HomeState", &AS_CONTACT_T::HomeState},
    {"HomeStreet", "HomeStreet", &AS_CONTACT_T::HomeStreet},
    {"HomeFaxNumber", "HomeFaxNumber", &AS_CONTACT_T::HomeFaxNumber},
    {"HomePhoneNumber", "HomePhoneNumber", &AS_CONTACT_T::HomePhoneNumber},
    {"JobTitle", "JobTitle", &AS_CONTACT_T::JobTitle},
    {"LastName", "LastName", &AS_CONTACT_T::LastName},
    {"MiddleName", "MiddleName", &AS_CONTACT_T::MiddleName},
    {"MobilePhoneNumber", "MobilePhoneNumber", &AS_CONTACT_T::MobilePhoneNumber},
    {"OfficeLocation", "OfficeLocation", &AS_CONTACT_T::OfficeLocation},
    {"OtherCity", "OtherCity", &AS_CONTACT_T::OtherCity},
    {"OtherCountry", "OtherCountry", &AS_CONTACT_T::OtherCountry},
    {"OtherPostalCode", "OtherPostalCode", &AS_CONTACT_T::OtherPostalCode},
    {"OtherState", "OtherState", &AS_CONTACT_T::OtherState},
    {"OtherStreet", "OtherStreet", &AS_CONTACT_T::OtherStreet},
    {"PagerNumber", "PagerNumber", &AS_CONTACT_T::PagerNumber},
    {"RadioPhoneNumber", "RadioPhoneNumber", &AS_CONTACT_T::RadioPhoneNumber},
    {"Spouse", "Spouse", &AS_CONTACT_T::Spouse},
    {"Suffix", "Suffix", &AS_CONTACT_T::Suffix},
    {"Title", "Title", &AS_CONTACT_T::Title},
    {"WebPage", "WebPage", &AS_CONTACT_T::WebPage},
    {"YomiCompanyName", "YOMICompanyName", &AS_CONTACT_T::YomiCompanyName},
    {"YomiFirstName", "YOMIFirstName", &AS_CONTACT_T::YomiFirstName},
    {"YomiLastName", "YOMILastName", &AS_CONTACT_T::YomiLastName},
};

inline constexpr unsigned AS_CONTACT_FIELD_COUNT = sizeof(AS_CONTACT_FIELDS) / sizeof(AS_CONTACT_FIELDS[0]);
static_assert(AS_CONTACT_FIELD_COUNT == 52, "one row per field");

}  // namespace AIRSYNC_STACK

#endif
