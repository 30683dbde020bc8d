// The fields of item records as members of JSON objects, for all records by the same rules.
//
//   texts       "Subject": "Lunch"
//   numbers     "Reminder": 15
//   flags       "AllDayEvent": false
//   times       "StartTime": "2026-11-21T09:00:00Z"  (reading also takes "2026-11-21")
//   lists       "Categories": ["Friends", "Rowing"]
//   attendees   "Attendees": [{"Name": "Ann", "Email": "ann@example.com"}]
//   zones       "Timezone": base64 of its 172 bytes
//
// A field that the record does not carry has no member. In what people write, null stands for "not there".
#ifndef AIRSYNC_FORMATS_FIELD_JSON_H
#define AIRSYNC_FORMATS_FIELD_JSON_H

#include <algorithm>
#include <cstddef>
#include <nlohmann/json.hpp>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "formats/JsonTree.h"
#include "store/FieldValues.h"

namespace airsync {

/// The fields that a text names, in its order, with their new values (std::monostate for null).
template <typename Record>
struct FieldPatch {
  struct Entry {
    std::size_t field;
    FieldValue value;
  };
  std::vector<Entry> entries;

  bool names(std::string_view name) const {
    const auto index = FieldValues<Record>::field(name);
    return std::any_of(entries.begin(), entries.end(),
                       [&index](const Entry& entry) { return entry.field == index; });
  }
  void applyTo(FieldValues<Record>& values) const {
    for (const Entry& entry : entries) values.set(entry.field, entry.value);
  }
};

/// Reads the value of a field. Throws RecordError, which calls the field `name`.
FieldValue readField(const JsonTree& tree, const JsonNode& node, const std::string& name,
                     AIRSYNC_STACK::AS_FIELD_FORM_T form);

/// Throws RecordError unless `node` is an object; `example` is one of its members.
void requireRecord(const JsonTree& tree, const JsonNode& node, const char* example);

/// Throws RecordError for a name that stands in an object twice. `path` is put before names in messages.
void refuseRepeatedNames(const JsonTree& tree, const JsonNode& object, const std::string& path);

[[noreturn]] void failUnknownName(const JsonTree& tree, const JsonMember& member, const std::string& path);

/// Reads an object. Members that are no fields are given to `other`, which returns whether it knows them.
/// Throws RecordError for repeated and unknown names and for values that do not fit.
template <typename Record, typename Other>
FieldPatch<Record> readFields(const JsonTree& tree, const JsonNode& object, const std::string& path,
                              const Other& other) {
  refuseRepeatedNames(tree, object, path);
  FieldPatch<Record> patch;
  for (const JsonMember& member : object.members) {
    if (const auto field = FieldValues<Record>::field(member.name)) {
      const auto form = FieldValues<Record>::table()[*field].form;
      patch.entries.push_back({*field, readField(tree, member.value, path + member.name, form)});
    } else if (!other(member)) {
      failUnknownName(tree, member, path);
    }
  }
  return patch;
}

/// Adds the value to `record`, unless there is none. Bytes that are no UTF-8 come out as U+FFFD when the
/// result is dumped with the "replace" error handler.
void writeField(nlohmann::ordered_json& record, const char* name, const FieldValue& value);

/// The fields that are there, in the order of the table.
template <typename Record>
nlohmann::ordered_json fieldsToJson(const FieldValues<Record>& values) {
  nlohmann::ordered_json record = nlohmann::ordered_json::object();
  const auto table = FieldValues<Record>::table();
  for (std::size_t field = 0; field < table.size(); ++field) {
    writeField(record, table[field].name, values[field]);
  }
  return record;
}

}  // namespace airsync

#endif
