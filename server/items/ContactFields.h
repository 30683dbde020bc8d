// The 52 fields of a contact: their names in records, their tags on the wire, and what they hold.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace demoserver {

enum class FieldKind : std::uint8_t {
  Text,
  Date,           // "YYYY-MM-DDThh:mm:ss.000Z"
  Address,        // an e-mail address, possibly with a display name in double quotes before it
  Categories,     // a list of texts, each in a Category element
  Children,       // a list of texts, each in a Child element
  Body,           // a text that may be cut on its way to a client
  BodySize,       // computed: bytes of the whole Body
  BodyTruncated,  // computed: whether the Body was cut
};

struct ContactField {
  std::string_view name;
  std::string_view tag;
  FieldKind kind = FieldKind::Text;
};

inline constexpr std::array<ContactField, 52> kContactFields = {{
    {"Body", "Body", FieldKind::Body},
    {"BodySize", "BodySize", FieldKind::BodySize},
    {"BodyTruncated", "BodyTruncated", FieldKind::BodyTruncated},
    {"Anniversary", "Anniversary", FieldKind::Date},
    {"AssistantName", "AssistantName"},
    {"AssistantPhoneNumber", "AssistnamePhoneNumber"},
    {"Birthday", "Birthday", FieldKind::Date},
    {"Business2PhoneNumber", "Business2PhoneNumber"},
    {"BusinessCity", "BusinessCity"},
    {"BusinessCountry", "BusinessCountry"},
    {"BusinessPostalCode", "BusinessPostalCode"},
    {"BusinessState", "BusinessState"},
    {"BusinessStreet", "BusinessStreet"},
    {"BusinessFaxNumber", "BusinessFaxNumber"},
    {"BusinessPhoneNumber", "BusinessPhoneNumber"},
    {"CarPhoneNumber", "CarPhoneNumber"},
    {"Categories", "Categories", FieldKind::Categories},
    {"Children", "Children", FieldKind::Children},
    {"CompanyName", "CompanyName"},
    {"Department", "Department"},
    {"Email1Address", "Email1Address", FieldKind::Address},
    {"Email2Address", "Email2Address", FieldKind::Address},
    {"Email3Address", "Email3Address", FieldKind::Address},
    {"FileAs", "FileAs"},
    {"FirstName", "FirstName"},
    {"Home2PhoneNumber", "Home2PhoneNumber"},
    {"HomeCity", "HomeCity"},
    {"HomeCountry", "HomeCountry"},
    {"HomePostalCode", "HomePostalCode"},
    {"HomeState", "HomeState"},
    {"HomeStreet", "HomeStreet"},
    {"HomeFaxNumber", "HomeFaxNumber"},
    {"HomePhoneNumber", "HomePhoneNumber"},
    {"JobTitle", "JobTitle"},
    {"LastName", "LastName"},
    {"MiddleName", "MiddleName"},
    {"MobilePhoneNumber", "MobilePhoneNumber"},
    {"OfficeLocation", "OfficeLocation"},
    {"OtherCity", "OtherCity"},
    {"OtherCountry", "OtherCountry"},
    {"OtherPostalCode", "OtherPostalCode"},
    {"OtherState", "OtherState"},
    {"OtherStreet", "OtherStreet"},
    {"PagerNumber", "PagerNumber"},
    {"RadioPhoneNumber", "RadioPhoneNumber"},
    {"Spouse", "Spouse"},
    {"Suffix", "Suffix"},
    {"Title", "Title"},
    {"WebPage", "WebPage"},
    {"YomiCompanyName", "YOMICompanyName"},
    {"YomiFirstName", "YOMIFirstName"},
    {"YomiLastName", "YOMILastName"},
}};

}  // namespace demoserver
