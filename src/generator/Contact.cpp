// The children of a contact's ApplicationData, on the contacts' code page.
#include <ctime>

#include "api/ContactFields.h"
#include "generator/Generator.h"
#include "support/Porting.h"

namespace AIRSYNC_STACK {

namespace {

const UINT8 kContactsPage = 1;

typedef sml_element* (Generator::*ContactBuilder)(AS_CONTACT_T*);

// In the order in which they are written.
constexpr ContactBuilder kContactBuilders[] = {
    &Generator::Anniversary,
    &Generator::AssistantName,
    &Generator::AssistantPhoneNumber,
    &Generator::Birthday,
    &Generator::Body,
    &Generator::Business2PhoneNumber,
    &Generator::BusinessCity,
    &Generator::BusinessCountry,
    &Generator::BusinessPostalCode,
    &Generator::BusinessState,
    &Generator::BusinessStreet,
    &Generator::BusinessFaxNumber,
    &Generator::BusinessTelephoneNumber,
    &Generator::CarPhoneNumber,
    &Generator::Categories,
    &Generator::Children,
    &Generator::CompanyName,
    &Generator::Department,
    &Generator::Email1Address,
    &Generator::Email2Address,
    &Generator::Email3Address,
    &Generator::FileAs,
    &Generator::FirstName,
    &Generator::Home2PhoneNumber,
    &Generator::HomeCity,
    &Generator::HomeCountry,
    &Generator::HomePostalCode,
    &Generator::HomeState,
    &Generator::HomeStreet,
    &Generator::HomeFaxNumber,
    &Generator::HomePhoneNumber,
    &Generator::JobTitle,
    &Generator::LastName,
    &Generator::MiddleName,
    &Generator::MobileTelephoneNumber,
    &Generator::OfficeLocation,
    &Generator::OtherCity,
    &Generator::OtherCountry,
    &Generator::OtherPostalCode,
    &Generator::OtherState,
    &Generator::OtherStreet,
    &Generator::PagerNumber,
    &Generator::RadioPhoneNumber,
    &Generator::Spouse,
    &Generator::Suffix,
    &Generator::Title,
    &Generator::WebPage,
    &Generator::YomiCompanyName,
    &Generator::YomiFirstName,
    &Generator::YomiLastName,
};
static_assert(sizeof(kContactBuilders) / sizeof(kContactBuilders[0]) == 50, "one builder per element");

// The tag of a record's text field, found while compiling.
constexpr const char* TagOf(char* AS_CONTACT_T::*field) {
  for (const AS_CONTACT_FIELD_T& row : AS_CONTACT_FIELDS) {
    if (row.text == field) return row.tag;
  }
  return nullptr;
}

}  // namespace

void Generator::ContactChildren(sml_element* data, bool) {
  AS_CONTACT_T* contact = static_cast<AS_CONTACT_T*>(item_);
  for (const ContactBuilder& builder : kContactBuilders) SE_AddChild(data, (this->*builder)(contact));
}

template <char* AS_CONTACT_T::*kField>
sml_element* Generator::ContactText(AS_CONTACT_T* contact) {
  constexpr const char* kTag = TagOf(kField);
  static_assert(kTag != nullptr, "every text field has its row in the table");
  return buildDataElement(kTag, reinterpret_cast<unsigned char*>(contact->*kField));
}

// No time-zone conversion: the record holds UTC.
sml_element* Generator::ContactDate(const char* tag, const struct tm* date) {
  if (date == nullptr) return nullptr;
  // Six numbers of up to eleven characters, and the rest of the pattern.
  char text[6 * 11 + 16];
  SmlSprintf(text, "%04d-%02d-%02dT%02d:%02d:%02d.000Z", FullYear(*date), FullMonth(*date), date->tm_mday,
             date->tm_hour, date->tm_min, date->tm_sec);
  return SE_New(tag, text);
}

sml_element* Generator::Anniversary(AS_CONTACT_T* contact) {
  return ContactDate("Anniversary", contact->Anniversary);
}
sml_element* Generator::Birthday(AS_CONTACT_T* contact) { return ContactDate("Birthday", contact->Birthday); }
sml_element* Generator::Categories(AS_CONTACT_T* contact) {
  return PackedList("Categories", "Category", contact->Categories, kContactsPage);
}
sml_element* Generator::Children(AS_CONTACT_T* contact) {
  return PackedList("Children", "Child", contact->Children, kContactsPage);
}

sml_element* Generator::AssistantName(AS_CONTACT_T* contact) {
  return ContactText<&AS_CONTACT_T::AssistantName>(contact);
}
sml_element* Generator::AssistantPhoneNumber(AS_CONTACT_T* contact) {
  return ContactText<&AS_CONTACT_T::AssistantPhoneNumber>(contact);
}
sml_element* Generator::Body(AS_CONTACT_T* contact) { return ContactText<&AS_CONTACT_T::Body>(contact); }
sml_element* Generator::Business2PhoneNumber(AS_CONTACT_T* contact) {
  return ContactText<&AS_CONTACT_T::Business2PhoneNumber>(contact);
}
sml_element* Generator::BusinessCity(AS_CONTACT_T* contact) {
  return ContactText<&AS_CONTACT_T::BusinessCity>(contact);
}
sml_element* Generator::BusinessCountry(AS_CONTACT_T* contact) {
  return ContactText<&AS_CONTACT_T::BusinessCountry>(contact);
}
sml_element* Generator::BusinessPostalCode(AS_CONTACT_T* contact) {
  return ContactText<&AS_CONTACT_T::BusinessPostalCode>(contact);
}
sml_element* Generator::BusinessState(AS_CONTACT_T* contact) {
  return ContactText<&AS_CONTACT_T::BusinessState>(contact);
}
sml_element* Generator::BusinessStreet(AS_CONTACT_T* contact) {
  return ContactText<&AS_CONTACT_T::BusinessStreet>(contact);
}
sml_element* Generator::BusinessFaxNumber(AS_CONTACT_T* contact) {
  return ContactText<&AS_CONTACT_T::BusinessFaxNumber>(contact);
}
sml_element* Generator::BusinessTelephoneNumber(AS_CONTACT_T* contact) {
  return ContactText<&AS_CONTACT_T::BusinessPhoneNumber>(contact);
}
sml_element* Generator::CarPhoneNumber(AS_CONTACT_T* contact) {
  return ContactText<&AS_CONTACT_T::CarPhoneNumber>(contact);
}
sml_element* Generator::CompanyName(AS_CONTACT_T* contact) {
  return ContactText<&AS_CONTACT_T::CompanyName>(contact);
}
sml_element* Generator::Department(AS_CONTACT_T* contact) {
  return ContactText<&AS_CONTACT_T::Department>(contact);
}
sml_element* Generator::Email1Address(AS_CONTACT_T* contact) {
  return ContactText<&AS_CONTACT_T::Email1Address>(contact);
}
sml_element* Generator::Email2Address(AS_CONTACT_T* contact) {
  return ContactText<&AS_CONTACT_T::Email2Address>(contact);
}
sml_element* Generator::Email3Address(AS_CONTACT_T* contact) {
  return ContactText<&AS_CONTACT_T::Email3Address>(contact);
}
sml_element* Generator::FileAs(AS_CONTACT_T* contact) { return ContactText<&AS_CONTACT_T::FileAs>(contact); }
sml_element* Generator::FirstName(AS_CONTACT_T* contact) {
  return ContactText<&AS_CONTACT_T::FirstName>(contact);
}
sml_element* Generator::Home2PhoneNumber(AS_CONTACT_T* contact) {
  return ContactText<&AS_CONTACT_T::Home2PhoneNumber>(contact);
}
sml_element* Generator::HomeCity(AS_CONTACT_T* contact) {
  return ContactText<&AS_CONTACT_T::HomeCity>(contact);
}
sml_element* Generator::HomeCountry(AS_CONTACT_T* contact) {
  return ContactText<&AS_CONTACT_T::HomeCountry>(contact);
}
sml_element* Generator::HomePostalCode(AS_CONTACT_T* contact) {
  return ContactText<&AS_CONTACT_T::HomePostalCode>(contact);
}
sml_element* Generator::HomeState(AS_CONTACT_T* contact) {
  return ContactText<&AS_CONTACT_T::HomeState>(contact);
}
sml_element* Generator::HomeStreet(AS_CONTACT_T* contact) {
  return ContactText<&AS_CONTACT_T::HomeStreet>(contact);
}
sml_element* Generator::HomeFaxNumber(AS_CONTACT_T* contact) {
  return ContactText<&AS_CONTACT_T::HomeFaxNumber>(contact);
}
sml_element* Generator::HomePhoneNumber(AS_CONTACT_T* contact) {
  return ContactText<&AS_CONTACT_T::HomePhoneNumber>(contact);
}
sml_element* Generator::JobTitle(AS_CONTACT_T* contact) {
  return ContactText<&AS_CONTACT_T::JobTitle>(contact);
}
sml_element* Generator::LastName(AS_CONTACT_T* contact) {
  return ContactText<&AS_CONTACT_T::LastName>(contact);
}
sml_element* Generator::MiddleName(AS_CONTACT_T* contact) {
  return ContactText<&AS_CONTACT_T::MiddleName>(contact);
}
sml_element* Generator::MobileTelephoneNumber(AS_CONTACT_T* contact) {
  return ContactText<&AS_CONTACT_T::MobilePhoneNumber>(contact);
}
sml_element* Generator::OfficeLocation(AS_CONTACT_T* contact) {
  return ContactText<&AS_CONTACT_T::OfficeLocation>(contact);
}
sml_element* Generator::OtherCity(AS_CONTACT_T* contact) {
  return ContactText<&AS_CONTACT_T::OtherCity>(contact);
}
sml_element* Generator::OtherCountry(AS_CONTACT_T* contact) {
  return ContactText<&AS_CONTACT_T::OtherCountry>(contact);
}
sml_element* Generator::OtherPostalCode(AS_CONTACT_T* contact) {
  return ContactText<&AS_CONTACT_T::OtherPostalCode>(contact);
}
sml_element* Generator::OtherState(AS_CONTACT_T* contact) {
  return ContactText<&AS_CONTACT_T::OtherState>(contact);
}
sml_element* Generator::OtherStreet(AS_CONTACT_T* contact) {
  return ContactText<&AS_CONTACT_T::OtherStreet>(contact);
}
sml_element* Generator::PagerNumber(AS_CONTACT_T* contact) {
  return ContactText<&AS_CONTACT_T::PagerNumber>(contact);
}
sml_element* Generator::RadioPhoneNumber(AS_CONTACT_T* contact) {
  return ContactText<&AS_CONTACT_T::RadioPhoneNumber>(contact);
}
sml_element* Generator::Spouse(AS_CONTACT_T* contact) { return ContactText<&AS_CONTACT_T::Spouse>(contact); }
sml_element* Generator::Suffix(AS_CONTACT_T* contact) { return ContactText<&AS_CONTACT_T::Suffix>(contact); }
sml_element* Generator::Title(AS_CONTACT_T* contact) { return ContactText<&AS_CONTACT_T::Title>(contact); }
sml_element* Generator::WebPage(AS_CONTACT_T* contact) {
  return ContactText<&AS_CONTACT_T::WebPage>(contact);
}
sml_element* Generator::YomiCompanyName(AS_CONTACT_T* contact) {
  return ContactText<&AS_CONTACT_T::YomiCompanyName>(contact);
}
sml_element* Generator::YomiFirstName(AS_CONTACT_T* contact) {
  return ContactText<&AS_CONTACT_T::YomiFirstName>(contact);
}
sml_element* Generator::YomiLastName(AS_CONTACT_T* contact) {
  return ContactText<&AS_CONTACT_T::YomiLastName>(contact);
}

}  // namespace AIRSYNC_STACK
