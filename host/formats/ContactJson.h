// Contacts as JSON: one object, whose members are called like the fields of the record.
//
//   texts              "FirstName": "Ann"
//   numbers            "BodySize": 120
//   flags              "BodyTruncated": false
//   times              "Birthday": "1970-01-31T00:00:00Z"  (reading also takes "1970-01-31")
//   lists              "Categories": ["Friends", "Rowing"]
//
// A field that the contact does not carry has no member. In a patch, null clears a field.
#ifndef AIRSYNC_FORMATS_CONTACT_JSON_H
#define AIRSYNC_FORMATS_CONTACT_JSON_H

#include <cstddef>
#include <nlohmann/json_fwd.hpp>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "store/Contact.h"

namespace airsync {

/// A text that is no record. what() says what is wrong with which field; the place is where reading ended,
/// both counted from 1, the column in bytes.
class RecordError : public std::runtime_error {
 public:
  RecordError(const std::string& what, std::size_t line, std::size_t column)
      : std::runtime_error(what), line_(line), column_(column) {}

  std::size_t line() const { return line_; }
  std::size_t column() const { return column_; }

 private:
  std::size_t line_;
  std::size_t column_;
};

/// The fields that a text names, in its order, with their new values (std::monostate for null).
struct ContactPatch {
  struct Entry {
    std::size_t field;
    Contact::Value value;
  };
  std::vector<Entry> entries;

  bool names(std::string_view field) const;
  void applyTo(Contact& contact) const;
};

/// Reads one record. Throws RecordError for anything but one object of known fields with fitting values:
/// unknown and repeated names, wrong types, dates that do not exist, texts that could not be sent.
ContactPatch parseContactPatch(std::string_view json);

/// The record of a contact, in the order of the fields. Bytes that are no UTF-8 come out as U+FFFD when the
/// result is dumped with the "replace" error handler.
nlohmann::ordered_json contactToJson(const Contact& contact);

}  // namespace airsync

#endif
