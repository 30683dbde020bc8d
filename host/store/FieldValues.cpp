#include "store/FieldValues.h"

#include <algorithm>
#include <unordered_map>
#include <utility>

#include "support/Error.h"

namespace airsync {
namespace {

using namespace AIRSYNC_STACK;

using Attendees = std::vector<Attendee>;

constexpr std::string_view kSeparator = "@@";
constexpr std::string_view kNameEnd = "##";

[[noreturn]] void refuse(const char* noun, std::string_view field, const std::string& cause,
                         const std::string& advice) {
  throw Error({.kind = ErrorKind::item,
               .operation = std::string("checking the ") + noun + "'s field",
               .subject = std::string(field),
               .cause = cause,
               .advice = advice});
}

// What a field of this form holds: a value of the right type, and what an inline field begins with.
FieldValue sampleOf(AS_FIELD_FORM_T form) {
  switch (form) {
    case AS_FORM_TEXT:
    case AS_FORM_QUOTED:
      return std::string();
    case AS_FORM_NUMBER:
    case AS_FORM_INLINE_NUMBER:
      return std::int32_t{0};
    case AS_FORM_FLAG:
    case AS_FORM_INLINE_FLAG:
      return false;
    case AS_FORM_TIME:
    case AS_FORM_COMPACT_TIME:
      return UtcTime();
    case AS_FORM_LIST:
      return List();
    case AS_FORM_ATTENDEES:
      return Attendees();
    case AS_FORM_ZONE:
      return ZoneBlock();
  }
  return {};
}

bool isInline(AS_FIELD_FORM_T form) { return form == AS_FORM_INLINE_NUMBER || form == AS_FORM_INLINE_FLAG; }

FieldValue initialValue(AS_FIELD_FORM_T form) { return isInline(form) ? sampleOf(form) : FieldValue(); }

FieldValue zoneOf(const UINT8* bytes) {
  ZoneBlock zone = {};
  std::copy_n(bytes, zone.size(), zone.begin());
  return zone;
}

template <typename Record>
FieldValue valueOf(const AS_FIELD_T<Record>& field, const Record& record) {
  switch (field.form) {
    case AS_FORM_NUMBER:
      if (const INT32* number = record.*field.number) return *number;
      break;
    case AS_FORM_INLINE_NUMBER:
      return record.*field.inlineNumber;
    case AS_FORM_FLAG:
      if (const UINT8* flag = record.*field.flag) return *flag != 0;
      break;
    case AS_FORM_INLINE_FLAG:
      return record.*field.inlineFlag != 0;
    case AS_FORM_TIME:
    case AS_FORM_COMPACT_TIME:
      if (const std::tm* time = record.*field.time) return UtcTime::fromTm(*time);
      break;
    case AS_FORM_ZONE:
      if (const UINT8* zone = record.*field.flag) return zoneOf(zone);
      break;
    case AS_FORM_LIST:
      if (const char* packed = record.*field.text) return unpackList(packed);
      break;
    case AS_FORM_ATTENDEES:
      if (const char* packed = record.*field.text) return unpackAttendees(packed);
      break;
    case AS_FORM_TEXT:
    case AS_FORM_QUOTED:
      if (const char* text = record.*field.text) return std::string(text);
      break;
  }
  return {};
}

// Refuses a value of the field that could not be sent as it stands, and knows what it takes in a request.
struct Checker {
  const char* noun;
  const char* field;

  std::size_t operator()(std::monostate /*absent*/) const { return 0; }
  std::size_t operator()(const std::string& text) const {
    checkText(text);
    return text.size();
  }
  std::size_t operator()(std::int32_t /*number*/) const { return 16; }
  std::size_t operator()(bool /*flag*/) const { return 8; }
  std::size_t operator()(const UtcTime& time) const {
    if (!time.valid()) {
      refuse(noun, field, "\"" + time.text() + "\" is no date", "Write it like 1970-12-31T00:00:00Z.");
    }
    return 32;
  }
  std::size_t operator()(const List& entries) const {
    constexpr std::size_t markup = 4;
    std::size_t size = 0;
    for (const std::string& entry : entries) {
      checkText(entry);
      size += entry.size() + markup;
    }
    const bool oneEmptyEntry = entries.size() == 1 && entries.front().empty();
    if (!oneEmptyEntry && unpackList(packList(entries)) != entries) {
      refuse(noun, field, "an entry holds \"@@\" or ends with \"@\"",
             "Change that entry: the protocol separates the entries of a list by \"@@\".");
    }
    return size;
  }
  std::size_t operator()(const Attendees& attendees) const {
    constexpr std::size_t markup = 12;
    std::size_t size = 0;
    for (const Attendee& attendee : attendees) {
      checkText(attendee.name);
      checkText(attendee.email);
      size += attendee.name.size() + attendee.email.size() + markup;
      if (attendee.name.empty() && attendee.email.empty()) {
        refuse(noun, field, "an attendee has neither a name nor an e-mail address", "Give one of them.");
      }
      if (attendee.email.find(kNameEnd) != std::string::npos) refuseSeparators();
    }
    if (unpackAttendees(packAttendees(attendees)) != attendees) refuseSeparators();
    return size;
  }
  std::size_t operator()(const ZoneBlock& zone) const { return zone.size() * 4 / 3 + 8; }

 private:
  void checkText(const std::string& text) const {
    if (text.find('\0') == std::string::npos) return;
    refuse(noun, field, "the text holds a NUL character", "Remove it: the protocol can't carry it.");
  }
  [[noreturn]] void refuseSeparators() const {
    refuse(
        noun, field,
        "a name or an address holds \"##\" or \"@@\", or there is a \"#\" or \"@\" where one of them begins",
        "Change that attendee: the protocol separates names, addresses and attendees by these.");
  }
};

}  // namespace

template <typename Record>
FieldValues<Record>::FieldValues() {
  for (std::size_t index = 0; index < kFields; ++index) values_[index] = initialValue(table()[index].form);
}

template <typename Record>
std::optional<std::size_t> FieldValues<Record>::field(std::string_view name) {
  static const std::unordered_map<std::string_view, std::size_t> indices = [] {
    std::unordered_map<std::string_view, std::size_t> map;
    for (std::size_t index = 0; index < kFields; ++index) map.emplace(table()[index].name, index);
    return map;
  }();
  const auto found = indices.find(name);
  return found == indices.end() ? std::nullopt : std::optional(found->second);
}

template <typename Record>
FieldValues<Record> FieldValues<Record>::fromRecord(const Record& record) {
  FieldValues values;
  for (std::size_t index = 0; index < kFields; ++index) {
    values.values_[index] = valueOf(table()[index], record);
  }
  values.noteCutBody();
  return values;
}

template <typename Record>
void FieldValues<Record>::noteCutBody() {
  const auto* body = get<std::string>("Body");
  const auto mark = field("BodyTruncated");
  if (body != nullptr && mark && body->size() == kLongestReceivedText) values_[*mark] = true;
}

template <typename Record>
void FieldValues<Record>::set(std::size_t field, FieldValue value) {
  FieldValue& place = values_.at(field);
  const AS_FIELD_T<Record>& description = table()[field];
  if (std::holds_alternative<std::monostate>(value)) {
    place = initialValue(description.form);
    return;
  }
  if (value.index() != sampleOf(description.form).index()) {
    refuse(FieldTable<Record>::kNoun, description.name, "the value has the wrong type",
           "See the list of fields for its type.");
  }
  place = std::move(value);
}

template <typename Record>
void FieldValues<Record>::set(std::string_view name, FieldValue value) {
  const auto index = field(name);
  if (!index) {
    refuse(FieldTable<Record>::kNoun, name, "there is no such field",
           "See the list of fields for their names.");
  }
  set(*index, std::move(value));
}

template <typename Record>
std::size_t FieldValues<Record>::validate(std::size_t size) const {
  constexpr const char* noun = FieldTable<Record>::kNoun;
  for (std::size_t index = 0; index < kFields; ++index) {
    const char* name = table()[index].name;
    size += std::visit(Checker{noun, name}, values_[index]);
    if (size > kMostItemBytes) {
      refuse(noun, name, "with it the item has more than " + std::to_string(kMostItemBytes) + " bytes",
             "Shorten it: no request can carry that much.");
    }
  }
  return size;
}

template class FieldValues<AS_CONTACT_T>;
template class FieldValues<AS_CALENDAR_T>;
template class FieldValues<AS_RECURRENCE_T>;
template class FieldValues<AS_EXCEPTION_T>;
template class FieldValues<AS_EMAIL_T>;
template class FieldValues<AS_ATTACHMENT_T>;
template class FieldValues<AS_MEETING_REQUEST_T>;

std::string packList(const List& entries) {
  std::string packed;
  for (const std::string& entry : entries) {
    if (&entry != &entries.front()) packed += kSeparator;
    packed += entry;
  }
  return packed;
}

List unpackList(std::string_view packed) {
  List entries;
  if (packed.empty()) return entries;
  for (;;) {
    const std::size_t end = packed.find(kSeparator);
    entries.emplace_back(packed.substr(0, end));
    if (end == std::string_view::npos) return entries;
    packed.remove_prefix(end + kSeparator.size());
  }
}

std::string packAttendees(const std::vector<Attendee>& attendees) {
  List entries;
  entries.reserve(attendees.size());
  for (const Attendee& attendee : attendees) {
    entries.push_back(attendee.name + std::string(kNameEnd) + attendee.email);
  }
  return packList(entries);
}

std::vector<Attendee> unpackAttendees(std::string_view packed) {
  std::vector<Attendee> attendees;
  for (const std::string& entry : unpackList(packed)) {
    if (entry.empty()) continue;
    const std::size_t end = entry.find(kNameEnd);
    const bool nameOnly = end == std::string::npos;
    attendees.push_back({entry.substr(0, end), nameOnly ? "" : entry.substr(end + kNameEnd.size())});
  }
  return attendees;
}

}  // namespace airsync
