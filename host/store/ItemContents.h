// What items of one class hold: the part of the store that differs between contacts, events and mails.
#ifndef AIRSYNC_HOST_STORE_ITEM_CONTENTS_H
#define AIRSYNC_HOST_STORE_ITEM_CONTENTS_H

#include <memory>
#include <string>

#include "store/StoreTypes.h"

namespace airsync {

// An item's contents exist in up to two versions.
enum class Version {
  shown = 0,   // what people see, local changes included
  server = 1,  // what the server has, kept while a local change waits
};

/// A record for the library that owns what it points to.
class OutgoingRecord {
 public:
  virtual ~OutgoingRecord() = default;
  virtual void* record() = 0;
};

/// Reads and writes the contents of items. `record` is a record of the class (an AS_CONTACT_T and so on).
class ItemContents {
 public:
  virtual ~ItemContents() = default;

  /// Replaces one version by a copy of the record.
  virtual void write(ItemNumber item, Version version, const void* record) = 0;

  virtual std::unique_ptr<OutgoingRecord> read(ItemNumber item, Version version) = 0;

  virtual bool has(ItemNumber item, Version version) = 0;

  /// Makes one version the other, which is replaced. There must be one of `from`.
  virtual void move(ItemNumber item, Version from, Version to) = 0;

  virtual void drop(ItemNumber item, Version version) = 0;

  /// Whether the record has everything that the shown version has: it may be that item, come back from the
  /// server, which may have added fields of its own. Fields that a server keeps to itself don't count.
  virtual bool covered(ItemNumber item, const void* record) = 0;

  /// A text that is equal for an item and for a record that covers it (unless the server added one of the few
  /// fields that the text is made of); for finding candidates quickly.
  virtual std::string likeness(const void* record) = 0;
};

}  // namespace airsync

#endif
