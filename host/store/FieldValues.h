// The fields of an item record, or of a part of one, as the host handles them: values that may be copied,
// compared, edited and kept.
//
//   FieldValues<AS_ATTACHMENT_T> attachment;
//   attachment.set("Name", std::string("plan.pdf"));
//   if (const auto* size = attachment.get<std::int32_t>("Size")) ...
//
// Items are made of these: see Contact.h, Event.h and Mail.h.
#ifndef AIRSYNC_HOST_STORE_FIELD_VALUES_H
#define AIRSYNC_HOST_STORE_FIELD_VALUES_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "api/CalendarFields.h"
#include "api/ContactFields.h"
#include "api/EmailFields.h"
#include "store/UtcTime.h"

namespace airsync {

/// The entries of a packed list.
using List = std::vector<std::string>;

/// One entry of an attendee list; either text may be empty.
struct Attendee {
  std::string name;
  std::string email;
  friend bool operator==(const Attendee&, const Attendee&) = default;
};

/// The protocol's time-zone structure, never interpreted here.
using ZoneBlock = std::array<std::uint8_t, AIRSYNC_STACK::AS_ZONE_SIZE>;

/// The value of a field; std::monostate where the item does not carry it. The field's form, which its table
/// tells, decides the type:
///
///   AS_FORM_TEXT, AS_FORM_QUOTED          std::string   bytes, UTF-8 unless the server sent something else
///   AS_FORM_NUMBER, AS_FORM_INLINE_NUMBER std::int32_t
///   AS_FORM_FLAG, AS_FORM_INLINE_FLAG     bool
///   AS_FORM_TIME, AS_FORM_COMPACT_TIME    UtcTime       perhaps no date: see UtcTime::valid
///   AS_FORM_LIST                          List
///   AS_FORM_ATTENDEES                     std::vector<Attendee>
///   AS_FORM_ZONE                          ZoneBlock
using FieldValue = std::variant<std::monostate, std::string, std::int32_t, bool, UtcTime, List,
                                std::vector<Attendee>, ZoneBlock>;

/// Which table a record's fields stand in, and what people call what it describes. The rule of a meeting
/// request has a table of its own, which has other tags for the same fields; here there are names only.
template <typename Record>
struct FieldTable;
template <>
struct FieldTable<AIRSYNC_STACK::AS_CONTACT_T> {
  static constexpr const auto& kRows = AIRSYNC_STACK::AS_CONTACT_FIELDS;
  static constexpr const char* kNoun = "contact";
};
template <>
struct FieldTable<AIRSYNC_STACK::AS_CALENDAR_T> {
  static constexpr const auto& kRows = AIRSYNC_STACK::AS_CALENDAR_FIELDS;
  static constexpr const char* kNoun = "event";
};
template <>
struct FieldTable<AIRSYNC_STACK::AS_RECURRENCE_T> {
  static constexpr const auto& kRows = AIRSYNC_STACK::AS_RECURRENCE_FIELDS;
  static constexpr const char* kNoun = "recurrence";
};
template <>
struct FieldTable<AIRSYNC_STACK::AS_EXCEPTION_T> {
  static constexpr const auto& kRows = AIRSYNC_STACK::AS_EXCEPTION_FIELDS;
  static constexpr const char* kNoun = "exception";
};
template <>
struct FieldTable<AIRSYNC_STACK::AS_EMAIL_T> {
  static constexpr const auto& kRows = AIRSYNC_STACK::AS_EMAIL_FIELDS;
  static constexpr const char* kNoun = "mail";
};
template <>
struct FieldTable<AIRSYNC_STACK::AS_ATTACHMENT_T> {
  static constexpr const auto& kRows = AIRSYNC_STACK::AS_ATTACHMENT_FIELDS;
  static constexpr const char* kNoun = "attachment";
};
template <>
struct FieldTable<AIRSYNC_STACK::AS_MEETING_REQUEST_T> {
  static constexpr const auto& kRows = AIRSYNC_STACK::AS_MEETING_REQUEST_FIELDS;
  static constexpr const char* kNoun = "meeting request";
};

/// What people can't send in one item, in bytes: requests are measured in 16 bits, and a longer one would go
/// out with a wrong length. What tags and markup add is less than what is left up to 65,535.
constexpr std::size_t kMostItemBytes = 60'000;

/// The library reads no more of a text than this, whatever its length is on the server.
constexpr std::size_t kLongestReceivedText = 65'536;

/// All fields of a record, each of them possibly absent. An absent field is not an empty one. Inline numbers
/// and flags are always there; they are 0 and false until they are set.
///
/// Fields are addressed by their index in the table or by the name that they have there ("FirstName").
/// Sub-records and counts are no fields.
template <typename Record>
class FieldValues {
 public:
  static constexpr std::size_t kFields = std::size(FieldTable<Record>::kRows);

  FieldValues();

  /// The descriptions of the fields, in their order.
  static std::span<const AIRSYNC_STACK::AS_FIELD_T<Record>> table() { return FieldTable<Record>::kRows; }

  /// The index of a field, by its name; empty when no field is called so.
  static std::optional<std::size_t> field(std::string_view name);

  /// A copy of a record of the library. Null pointers become absent fields. A Body of kLongestReceivedText
  /// bytes is marked as truncated, since most likely the library cut it: the server does not say so.
  static FieldValues fromRecord(const Record& record);

  /// The value of a field; std::monostate where it is absent.
  const FieldValue& operator[](std::size_t field) const { return values_.at(field); }

  /// The value of a field as the type that its form has; null where it is absent or of another type.
  template <typename T>
  const T* get(std::size_t field) const {
    return std::get_if<T>(&values_.at(field));
  }
  template <typename T>
  const T* get(std::string_view name) const {
    const auto index = field(name);
    return index ? get<T>(*index) : nullptr;
  }

  /// Sets a field, or with std::monostate removes it (an inline one becomes 0 or false). Throws Error (item)
  /// when the value's type is not the one of the field's form, or no field is called `name`.
  void set(std::size_t field, FieldValue value);
  void set(std::string_view name, FieldValue value);

  /// Throws Error (item), naming the field, when a value can't be sent as it stands: a text with a NUL in it,
  /// a time that is no date, entries of a list or attendees that would not come apart again; or when with it
  /// the whole has more than kMostItemBytes, of which `size` are in other parts of the item. Returns the sum.
  /// Whatever arrives from a person passes here first; what arrives from a server is kept as it is.
  std::size_t validate(std::size_t size = 0) const;

  friend bool operator==(const FieldValues&, const FieldValues&) = default;

 private:
  void noteCutBody();

  std::array<FieldValue, kFields> values_;
};

extern template class FieldValues<AIRSYNC_STACK::AS_CONTACT_T>;
extern template class FieldValues<AIRSYNC_STACK::AS_CALENDAR_T>;
extern template class FieldValues<AIRSYNC_STACK::AS_RECURRENCE_T>;
extern template class FieldValues<AIRSYNC_STACK::AS_EXCEPTION_T>;
extern template class FieldValues<AIRSYNC_STACK::AS_EMAIL_T>;
extern template class FieldValues<AIRSYNC_STACK::AS_ATTACHMENT_T>;
extern template class FieldValues<AIRSYNC_STACK::AS_MEETING_REQUEST_T>;

/// Packed lists: one text whose entries are joined by "@@". A text has at least one entry, which may be
/// empty, so the empty text and the list without entries stand for each other.
std::string packList(const List& entries);
List unpackList(std::string_view packed);

/// Attendee lists: packed lists whose entries are name, "##", e-mail address. An entry without "##" is a
/// name; empty entries are nobody.
std::string packAttendees(const std::vector<Attendee>& attendees);
std::vector<Attendee> unpackAttendees(std::string_view packed);

}  // namespace airsync

#endif
