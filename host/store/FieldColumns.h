// Records in tables: one column per field, called like it, and tables beside for the entries of lists.
//
//   texts               TEXT, the bytes as they are
//   numbers, flags      INTEGER
//   times               TEXT, as UtcTime writes them
//   zones               BLOB of 172 bytes
//   lists, attendees    INTEGER: the number of entries, which are in tables of their own
//
// A field that the item does not carry is NULL.
#ifndef AIRSYNC_HOST_STORE_FIELD_COLUMNS_H
#define AIRSYNC_HOST_STORE_FIELD_COLUMNS_H

#include <cstdint>
#include <string>
#include <vector>

#include "store/Database.h"
#include "store/FieldValues.h"
#include "store/ItemContents.h"

namespace airsync {

// Which tables one kind of record is kept in. All have the columns item_id and version; those of entries also
// `position`, which counts from 0.
struct FieldPlace {
  const char* table;
  const char* position = nullptr;   // the column that counts the records of one item; null: there is only one
  const char* entries = nullptr;    // the table of the lists' entries; their texts are in its column `value`
  const char* listName = nullptr;   // its column that names the list; null: the record has one list
  const char* listOwner = nullptr;  // its column that tells the record's position; null: there is only one
  const char* attendees = nullptr;  // the table of attendees, with the columns `name` and `email`
};

/// Writes and reads records of one kind in their tables.
template <typename Record>
class FieldColumns {
 public:
  /// `place` and its texts live as long as this object.
  FieldColumns(Database& database, const FieldPlace& place);

  /// Adds a record. `position` has a meaning only where there may be several.
  void insert(ItemNumber item, Version version, const FieldValues<Record>& values, std::int64_t position = 0);

  /// The records of one item, in their order.
  std::vector<FieldValues<Record>> load(ItemNumber item, Version version);

 private:
  struct Key {
    ItemNumber item;
    Version version;
    std::int64_t position;
  };

  void insertLists(const Key& key, const FieldValues<Record>& values);
  void insertEntries(const Key& key, const std::string& field, const List& entries);
  void insertAttendees(const Key& key, const std::vector<Attendee>& attendees);
  FieldValues<Record> loadRow(const Query& query, const Key& key);
  FieldValue loadList(const Key& key, const AIRSYNC_STACK::AS_FIELD_T<Record>& field);
  void bindOwner(Query& query, const Key& key, const std::string& field) const;

  Database& database_;
  const FieldPlace& place_;
  std::string insert_;
  std::string select_;
  std::string insertEntry_;
  std::string selectEntries_;
  std::string insertAttendee_;
  std::string selectAttendees_;
};

extern template class FieldColumns<AIRSYNC_STACK::AS_CONTACT_T>;
extern template class FieldColumns<AIRSYNC_STACK::AS_CALENDAR_T>;
extern template class FieldColumns<AIRSYNC_STACK::AS_RECURRENCE_T>;
extern template class FieldColumns<AIRSYNC_STACK::AS_EXCEPTION_T>;
extern template class FieldColumns<AIRSYNC_STACK::AS_EMAIL_T>;
extern template class FieldColumns<AIRSYNC_STACK::AS_ATTACHMENT_T>;
extern template class FieldColumns<AIRSYNC_STACK::AS_MEETING_REQUEST_T>;

}  // namespace airsync

#endif
