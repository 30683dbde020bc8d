#include "store/Contact.h"

#include <initializer_list>
#include <unordered_map>
#include <utility>

#include "support/Error.h"

namespace airsync {
namespace {

using namespace AIRSYNC_STACK;

constexpr std::string_view kSeparator = "@@";

[[noreturn]] void refuse(std::string_view field, const std::string& cause, const std::string& advice) {
  throw Error({.kind = ErrorKind::item,
               .operation = "checking the contact's field",
               .subject = std::string(field),
               .cause = cause,
               .advice = advice});
}

// Which alternative of Contact::Value belongs to a form.
std::size_t alternativeOf(AS_FIELD_FORM_T form) {
  switch (form) {
    case AS_FORM_NUMBER:
      return Contact::Value(std::int32_t{0}).index();
    case AS_FORM_FLAG:
      return Contact::Value(false).index();
    case AS_FORM_TIME:
      return Contact::Value(UtcTime()).index();
    case AS_FORM_LIST:
      return Contact::Value(Contact::List()).index();
    default:  // a text: contacts have no fields of other forms
      break;
  }
  return Contact::Value(std::string()).index();
}

Contact::Value valueOf(const AS_CONTACT_FIELD_T& field, const AS_CONTACT_T& record) {
  switch (field.form) {
    case AS_FORM_NUMBER:
      if (const INT32* number = record.*field.number) return *number;
      break;
    case AS_FORM_FLAG:
      if (const UINT8* flag = record.*field.flag) return *flag != 0;
      break;
    case AS_FORM_TIME:
      if (const std::tm* time = record.*field.time) return UtcTime::fromTm(*time);
      break;
    case AS_FORM_LIST:
      if (const char* packed = record.*field.text) return unpackList(packed);
      break;
    default:  // a text
      if (const char* text = record.*field.text) return std::string(text);
      break;
  }
  return {};
}

void checkText(const char* field, const std::string& text) {
  if (text.find('\0') == std::string::npos) return;
  refuse(field, "the text holds a NUL character", "Remove it: the protocol can't carry it.");
}

void checkList(const char* field, const Contact::List& entries) {
  for (const std::string& entry : entries) checkText(field, entry);
  const bool oneEmptyEntry = entries.size() == 1 && entries.front().empty();
  if (oneEmptyEntry || unpackList(packList(entries)) == entries) return;
  refuse(field, "an entry holds \"@@\" or ends with \"@\"",
         "Change that entry: the protocol separates the entries of a list by \"@@\".");
}

// The library measures requests in 16 bits, and a longer change would go out with a wrong length. What its
// tags and markup add is far less than what is left up to 65,535.
constexpr std::size_t kMostBytes = 60'000;

std::size_t sizeOf(const Contact::Value& value) {
  if (const auto* text = std::get_if<std::string>(&value)) return text->size();
  const auto* entries = std::get_if<Contact::List>(&value);
  if (entries == nullptr) return 0;
  constexpr std::size_t markup = 4;  // of one entry
  std::size_t size = 0;
  for (const std::string& entry : *entries) size += entry.size() + markup;
  return size;
}

// The first of the fields that holds a text that is not empty.
std::string firstText(const Contact& contact, std::initializer_list<const char*> names) {
  for (const char* name : names) {
    const std::string* text = contact.get<std::string>(name);
    if (text != nullptr && !text->empty()) return *text;
  }
  return {};
}

}  // namespace

std::optional<std::size_t> Contact::field(std::string_view name) {
  static const std::unordered_map<std::string_view, std::size_t> indices = [] {
    std::unordered_map<std::string_view, std::size_t> map;
    for (std::size_t index = 0; index < kFields; ++index) map.emplace(AS_CONTACT_FIELDS[index].name, index);
    return map;
  }();
  const auto found = indices.find(name);
  return found == indices.end() ? std::nullopt : std::optional(found->second);
}

Contact Contact::fromRecord(const AS_CONTACT_T& record) {
  Contact contact;
  for (std::size_t index = 0; index < kFields; ++index) {
    contact.values_[index] = valueOf(AS_CONTACT_FIELDS[index], record);
  }
  return contact;
}

void Contact::set(std::size_t field, Value value) {
  const AS_CONTACT_FIELD_T& description = AS_CONTACT_FIELDS[field];
  const bool absent = std::holds_alternative<std::monostate>(value);
  if (!absent && value.index() != alternativeOf(description.form)) {
    refuse(description.name, "the value has the wrong type", "See the list of fields for its type.");
  }
  values_.at(field) = std::move(value);
}

void Contact::set(std::string_view name, Value value) {
  const auto index = field(name);
  if (!index) refuse(name, "there is no such field", "See the list of fields for their names.");
  set(*index, std::move(value));
}

void Contact::validate() const {
  std::size_t size = 0;
  for (std::size_t index = 0; index < kFields; ++index) {
    const char* name = AS_CONTACT_FIELDS[index].name;
    if (const auto* text = get<std::string>(index)) checkText(name, *text);
    if (const auto* entries = get<List>(index)) checkList(name, *entries);
    const auto* time = get<UtcTime>(index);
    if (time != nullptr && !time->valid()) {
      refuse(name, "\"" + time->text() + "\" is no date", "Write it like 1970-12-31T00:00:00Z.");
    }
    size += sizeOf(values_[index]);
    if (size > kMostBytes) {
      refuse(name, "with it the contact has more than " + std::to_string(kMostBytes) + " bytes",
             "Shorten it: no request can carry that much.");
    }
  }
}

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

std::string packList(const Contact::List& entries) {
  std::string packed;
  for (const std::string& entry : entries) {
    if (&entry != &entries.front()) packed += kSeparator;
    packed += entry;
  }
  return packed;
}

Contact::List unpackList(std::string_view packed) {
  Contact::List entries;
  if (packed.empty()) return entries;
  for (;;) {
    const std::size_t end = packed.find(kSeparator);
    entries.emplace_back(packed.substr(0, end));
    if (end == std::string_view::npos) return entries;
    packed.remove_prefix(end + kSeparator.size());
  }
}

}  // namespace airsync
