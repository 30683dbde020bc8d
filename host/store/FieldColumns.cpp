#include "store/FieldColumns.h"

#include <algorithm>
#include <array>

namespace airsync {
namespace {

using namespace AIRSYNC_STACK;

constexpr const char* kOfVersion = " WHERE item_id = ? AND version = ?";

std::string quoted(const char* name) { return "\"" + std::string(name) + "\""; }

std::string parameters(std::size_t count) {
  std::string marks = "?";
  for (std::size_t index = 1; index < count; ++index) marks += ", ?";
  return marks;
}

template <typename Record>
std::string columns() {
  std::string list;
  for (const auto& field : FieldValues<Record>::table()) list += ", " + quoted(field.name);
  return list;
}

// A column that not every place has, before or after others.
std::string also(const char* column) { return column == nullptr ? "" : std::string(", ") + column; }
std::string andIs(const char* column) {
  return column == nullptr ? "" : " AND " + std::string(column) + " = ?";
}
std::size_t one(const char* column) { return column == nullptr ? 0 : 1; }

// Binds one value. Texts are bound without a copy, so one that is made here is left in `made`.
struct Binder {
  Query& query;
  std::string& made;

  void operator()(std::monostate /*absent*/) const { query.bindNull(); }
  void operator()(const std::string& text) const { query.bind(text); }
  void operator()(std::int32_t number) const { query.bind(std::int64_t{number}); }
  void operator()(bool flag) const { query.bind(std::int64_t{flag ? 1 : 0}); }
  void operator()(const UtcTime& time) const {
    made = time.text();
    query.bind(made);
  }
  void operator()(const List& entries) const { query.bind(static_cast<std::int64_t>(entries.size())); }
  void operator()(const std::vector<Attendee>& attendees) const {
    query.bind(static_cast<std::int64_t>(attendees.size()));
  }
  void operator()(const ZoneBlock& zone) const { query.bindBlob(zone.data(), zone.size()); }
};

// A foreign hand may have stored fewer bytes, or more.
ZoneBlock zoneOf(const std::string& bytes) {
  ZoneBlock zone = {};
  std::copy_n(bytes.begin(), std::min(bytes.size(), zone.size()), zone.begin());
  return zone;
}

FieldValue timeOf(const std::string& text) {
  const auto time = UtcTime::parse(text);
  return time ? FieldValue(*time) : FieldValue();
}

}  // namespace

template <typename Record>
FieldColumns<Record>::FieldColumns(Database& database, const FieldPlace& place)
    : database_(database),
      place_(place),
      insert_("INSERT INTO " + std::string(place.table) + "(item_id, version" + also(place.position) +
              columns<Record>() + ") VALUES (" +
              parameters(2 + one(place.position) + FieldValues<Record>::kFields) + ")"),
      select_("SELECT " + std::string(place.position == nullptr ? "0" : place.position) + columns<Record>() +
              " FROM " + place.table + kOfVersion +
              (place.position == nullptr ? "" : " ORDER BY " + std::string(place.position))) {
  if (place.entries != nullptr) {
    insertEntry_ = "INSERT INTO " + std::string(place.entries) + "(item_id, version" + also(place.listName) +
                   also(place.listOwner) + ", position, value) VALUES (" +
                   parameters(4 + one(place.listName) + one(place.listOwner)) + ")";
    selectEntries_ = "SELECT value FROM " + std::string(place.entries) + kOfVersion + andIs(place.listName) +
                     andIs(place.listOwner) + " ORDER BY position";
  }
  if (place.attendees != nullptr) {
    insertAttendee_ = "INSERT INTO " + std::string(place.attendees) +
                      "(item_id, version, position, name, email) VALUES (?, ?, ?, ?, ?)";
    selectAttendees_ =
        "SELECT name, email FROM " + std::string(place.attendees) + kOfVersion + " ORDER BY position";
  }
}

template <typename Record>
void FieldColumns<Record>::insert(ItemNumber item, Version version, const FieldValues<Record>& values,
                                  std::int64_t position) {
  const Key key = {item, version, position};
  std::array<std::string, FieldValues<Record>::kFields> made;
  {
    Query query(database_, insert_);
    query.bind(item).bind(columnOf(version));
    if (place_.position != nullptr) query.bind(position);
    for (std::size_t index = 0; index < made.size(); ++index) {
      std::visit(Binder{query, made.at(index)}, values[index]);
    }
    query.run();
  }
  insertLists(key, values);
}

template <typename Record>
void FieldColumns<Record>::insertLists(const Key& key, const FieldValues<Record>& values) {
  const auto table = FieldValues<Record>::table();
  for (std::size_t index = 0; index < table.size(); ++index) {
    if (const auto* entries = std::get_if<List>(&values[index])) {
      insertEntries(key, table[index].name, *entries);
    } else if (const auto* attendees = std::get_if<std::vector<Attendee>>(&values[index])) {
      insertAttendees(key, *attendees);
    }
  }
}

template <typename Record>
void FieldColumns<Record>::bindOwner(Query& query, const Key& key, const std::string& field) const {
  query.bind(key.item).bind(columnOf(key.version));
  if (place_.listName != nullptr) query.bind(field);
  if (place_.listOwner != nullptr) query.bind(key.position);
}

template <typename Record>
void FieldColumns<Record>::insertEntries(const Key& key, const std::string& field, const List& entries) {
  std::int64_t position = 0;
  for (const std::string& entry : entries) {
    Query query(database_, insertEntry_);
    bindOwner(query, key, field);
    query.bind(position++).bind(entry).run();
  }
}

template <typename Record>
void FieldColumns<Record>::insertAttendees(const Key& key, const std::vector<Attendee>& attendees) {
  std::int64_t position = 0;
  for (const Attendee& attendee : attendees) {
    Query(database_, insertAttendee_)
        .bind(key.item)
        .bind(columnOf(key.version))
        .bind(position++)
        .bind(attendee.name)
        .bind(attendee.email)
        .run();
  }
}

template <typename Record>
std::vector<FieldValues<Record>> FieldColumns<Record>::load(ItemNumber item, Version version) {
  std::vector<FieldValues<Record>> records;
  Query query(database_, select_);
  query.bind(item).bind(columnOf(version));
  while (query.step()) records.push_back(loadRow(query, {item, version, query.integer(0)}));
  return records;
}

template <typename Record>
FieldValues<Record> FieldColumns<Record>::loadRow(const Query& query, const Key& key) {
  FieldValues<Record> values;
  const auto table = FieldValues<Record>::table();
  for (std::size_t index = 0; index < table.size(); ++index) {
    const int column = static_cast<int>(index) + 1;
    if (query.null(column)) continue;
    switch (table[index].form) {
      case AS_FORM_NUMBER:
      case AS_FORM_INLINE_NUMBER:
        values.set(index, static_cast<std::int32_t>(query.integer(column)));
        break;
      case AS_FORM_FLAG:
      case AS_FORM_INLINE_FLAG:
        values.set(index, query.integer(column) != 0);
        break;
      case AS_FORM_TIME:
      case AS_FORM_COMPACT_TIME:
        values.set(index, timeOf(query.text(column)));
        break;
      case AS_FORM_LIST:
      case AS_FORM_ATTENDEES:
        values.set(index, loadList(key, table[index]));
        break;
      case AS_FORM_ZONE:
        values.set(index, zoneOf(query.text(column)));
        break;
      case AS_FORM_TEXT:
      case AS_FORM_QUOTED:
        values.set(index, query.text(column));
        break;
    }
  }
  return values;
}

template <typename Record>
FieldValue FieldColumns<Record>::loadList(const Key& key, const AS_FIELD_T<Record>& field) {
  if (field.form == AS_FORM_ATTENDEES) {
    std::vector<Attendee> attendees;
    Query query(database_, selectAttendees_);
    query.bind(key.item).bind(columnOf(key.version));
    while (query.step()) attendees.push_back({query.text(0), query.text(1)});
    return attendees;
  }
  const std::string name = field.name;
  List entries;
  Query query(database_, selectEntries_);
  bindOwner(query, key, name);
  while (query.step()) entries.push_back(query.text(0));
  return entries;
}

template class FieldColumns<AS_CONTACT_T>;
template class FieldColumns<AS_CALENDAR_T>;
template class FieldColumns<AS_RECURRENCE_T>;
template class FieldColumns<AS_EXCEPTION_T>;
template class FieldColumns<AS_EMAIL_T>;
template class FieldColumns<AS_ATTACHMENT_T>;
template class FieldColumns<AS_MEETING_REQUEST_T>;

}  // namespace airsync
