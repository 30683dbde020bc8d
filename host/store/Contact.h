// A contact as the host handles it: a value that may be copied, compared, edited and kept.
#ifndef AIRSYNC_HOST_STORE_CONTACT_H
#define AIRSYNC_HOST_STORE_CONTACT_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "api/ContactFields.h"
#include "store/UtcTime.h"

namespace airsync {

/// The 52 fields of a contact, each of them possibly absent. An absent field is not an empty one.
///
/// Fields are addressed by their index in AIRSYNC_STACK::AS_CONTACT_FIELDS or by the name that they have
/// there ("FirstName"). The form of a field, which that table tells, decides the type of its value:
///
///   AS_FORM_TEXT, AS_FORM_QUOTED   std::string   bytes, UTF-8 unless the server sent something else
///   AS_FORM_NUMBER                 std::int32_t
///   AS_FORM_FLAG                   bool
///   AS_FORM_TIME                   UtcTime
///   AS_FORM_LIST                   Contact::List
class Contact {
 public:
  using List = std::vector<std::string>;
  using Value = std::variant<std::monostate, std::string, std::int32_t, bool, UtcTime, List>;

  static constexpr std::size_t kFields = AIRSYNC_STACK::AS_CONTACT_FIELD_COUNT;

  /// The index of a field, by its name; empty when no field is called so.
  static std::optional<std::size_t> field(std::string_view name);

  /// A copy of a record of the library. Null pointers become absent fields.
  static Contact fromRecord(const AIRSYNC_STACK::AS_CONTACT_T& record);

  /// The value of a field; std::monostate where it is absent.
  const Value& operator[](std::size_t field) const { return values_.at(field); }

  /// The value of a field as the type that its form has; null where it is absent.
  template <typename T>
  const T* get(std::size_t field) const {
    return std::get_if<T>(&values_.at(field));
  }
  template <typename T>
  const T* get(std::string_view name) const {
    const auto index = field(name);
    return index ? get<T>(*index) : nullptr;
  }

  /// Sets a field, or with std::monostate removes it. Throws Error (item) when the value's type is not the
  /// one of the field's form, or no field is called `name`.
  void set(std::size_t field, Value value);
  void set(std::string_view name, Value value);

  /// Throws Error (item), naming the field, when a value can't be sent as it stands: a text with a NUL in it,
  /// a time that is no date, list entries that would not come apart again at "@@"; or when the whole is
  /// larger than any request. Whatever arrives from a person passes here first; what arrives from a server is
  /// kept as it is.
  void validate() const;

  /// What a list of contacts shows: the name under which the contact is filed, or the best there is instead
  /// (first and last name, company, e-mail address); the first e-mail address; the first telephone number.
  /// Empty where there is nothing.
  std::string displayName() const;
  std::string email() const;
  std::string phone() const;

  friend bool operator==(const Contact&, const Contact&) = default;

 private:
  std::array<Value, kFields> values_;
};

/// Packed lists: one text whose entries are joined by "@@". A text has at least one entry, which may be
/// empty, so the empty text and the list without entries stand for each other.
std::string packList(const Contact::List& entries);
Contact::List unpackList(std::string_view packed);

}  // namespace airsync

#endif
