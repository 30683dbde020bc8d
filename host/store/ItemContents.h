// What items of one class hold: the part of the store that differs between contacts, events and mails.
#ifndef AIRSYNC_HOST_STORE_ITEM_CONTENTS_H
#define AIRSYNC_HOST_STORE_ITEM_CONTENTS_H

#include <memory>
#include <string>

#include "store/Database.h"
#include "store/StoreTypes.h"
#include "support/Error.h"

namespace airsync {

// An item's contents exist in up to three versions.
enum class Version {
  shown = 0,   // what people see, local changes included
  server = 1,  // what the server has, kept while a local change waits
  sent = 2,    // what a request carried whose answer has not come, where it was edited since
};

/// A record for the library that owns what it points to.
class OutgoingRecord {
 public:
  virtual ~OutgoingRecord() = default;
  virtual void* record() = 0;
};

// How much of an item a record from the server carries.
enum class Extent {
  whole,    // all there is: an addition, or an item that was fetched
  changes,  // a change: of contacts and events all there is, of mails perhaps only what changed
};

/// Reads and writes the contents of items. `record` is a record of the class (an AS_CONTACT_T and so on), and
/// a value holds the alternative that belongs to it.
class ItemContents {
 public:
  /// `table` has one row per item and version, in the columns item_id and version, from which all other rows
  /// of the contents hang.
  ItemContents(Database& database, std::string table);
  virtual ~ItemContents() = default;
  ItemContents(const ItemContents&) = delete;
  ItemContents& operator=(const ItemContents&) = delete;

  const std::string& table() const { return table_; }

  /// Whether a device may make items of this class.
  virtual bool canBeAdded() const { return true; }

  /// Throws Error (item) for a value that is not of this class or can't be sent.
  virtual void validate(const ItemValue& value) const = 0;

  /// Replaces one version.
  virtual void write(ItemNumber item, Version version, const ItemValue& value) = 0;
  virtual void write(ItemNumber item, Version version, const void* record) = 0;

  /// Whether a server's change of an item that is not here holds enough to be one: of a mail, more than
  /// whether it was read.
  virtual bool standsAlone(const void* /*record*/) const { return true; }

  /// What a record from the server makes of the shown version, when no local change stands against it.
  virtual void update(ItemNumber item, const void* record, Extent extent);

  /// The same while a local change of the item stays: what it makes of the server's version.
  virtual void updateBehind(ItemNumber item, const void* record, Extent extent);

  /// An empty value when there is no such version.
  virtual ItemValue load(ItemNumber item, Version version) = 0;

  /// What a request carries of it.
  virtual std::unique_ptr<OutgoingRecord> read(ItemNumber item, Version version) = 0;

  bool has(ItemNumber item, Version version);

  /// Makes one version the other, which is replaced. There must be one of `from`.
  void move(ItemNumber item, Version from, Version to);

  void drop(ItemNumber item, Version version);

  /// Whether the record has everything that a version has: it may be that item, come back from the server,
  /// which may have added fields of its own. Fields that a server keeps to itself don't count.
  virtual bool covered(ItemNumber item, Version version, const void* record) = 0;

  /// Whether the record says what a version says: nobody edited the item in between. Stamps that a server
  /// renews don't count, nor fields that it fills in where a device left them out.
  virtual bool same(ItemNumber item, Version version, const void* record) = 0;

  /// What an item is called by everywhere (an event's UID); empty where the class has no such thing, or the
  /// record does not tell.
  virtual std::string identity(const void* /*record*/) const { return {}; }

  /// Gives a value an identity of its own, also where it has that of another item (`anew`). For classes
  /// without identities nothing.
  virtual void identify(ItemValue& /*value*/, bool /*anew*/) const {}

  /// A text that is equal for an item and for a record that covers it (unless the server added one of the few
  /// fields that the text is made of); for finding candidates quickly.
  virtual std::string likeness(const void* record) = 0;

  /// The columns that a line of a list needs, for a query that names the table by its own name, and the
  /// line's details from a row of such a query in which they begin at `column`.
  virtual const std::string& summaryColumns() const = 0;
  virtual ItemDetails summary(const Query& query, int column) const = 0;

  /// What messages call the item; empty where there is nothing.
  virtual std::string displayName(ItemNumber item) = 0;

 protected:
  Database& database() { return database_; }

 private:
  Database& database_;
  std::string table_;
};

/// The value as the class's own type. Throws Error (item) for another one's.
template <typename Value>
const Value& valueOf(const ItemValue& value) {
  if (const auto* own = std::get_if<Value>(&value)) return *own;
  throw Error({.kind = ErrorKind::item,
               .operation = "storing the item",
               .subject = {},
               .cause = "its folder is for items of another class",
               .advice = "Choose a folder for items of its class."});
}

/// As it stands in the columns `version`.
constexpr std::int64_t columnOf(Version version) { return static_cast<std::int64_t>(version); }

}  // namespace airsync

#endif
