#include "store/Contact.h"

#include <initializer_list>

namespace airsync {
namespace {

// The first of the fields that holds a text that is not empty.
std::string firstText(const Contact& contact, std::initializer_list<const char*> names) {
  for (const char* name : names) {
    const std::string* text = contact.get<std::string>(name);
    if (text != nullptr && !text->empty()) return *text;
  }
  return {};
}

}  // namespace

std::string Contact::displayName() const {
  std::string name = firstText(*this, {"FileAs"});
  if (!name.empty()) return name;
  name = firstText(*this, {"FirstName"});
  const std::string last = firstText(*this, {"LastName"});
  if (!name.empty() && !last.empty()) name += " ";
  name += last;
  return name.empty() ? firstText(*this, {"CompanyName", "Email1Address", "Email2Address", "Email3Address"})
                      : name;
}

std::string Contact::email() const {
  return firstText(*this, {"Email1Address", "Email2Address", "Email3Address"});
}

std::string Contact::phone() const {
  return firstText(*this, {"MobilePhoneNumber", "HomePhoneNumber", "BusinessPhoneNumber", "CarPhoneNumber",
                           "Home2PhoneNumber", "Business2PhoneNumber"});
}

}  // namespace airsync
