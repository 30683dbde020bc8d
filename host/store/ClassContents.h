// What the contents of all classes do alike: they go in and out as values of a class's own type.
#ifndef AIRSYNC_HOST_STORE_CLASS_CONTENTS_H
#define AIRSYNC_HOST_STORE_CLASS_CONTENTS_H

#include <memory>

#include "store/ItemContents.h"

namespace airsync {

/// `Value` is the class's own alternative of ItemValue (Contact and so on), `Record` the library's record of
/// it. A class says how a value is put into its tables and taken out of them.
template <typename Value, typename Record>
class ClassContents : public ItemContents {
 public:
  using ItemContents::ItemContents;

  void write(ItemNumber item, Version version, const ItemValue& value) override {
    replace(item, version, valueOf<Value>(value));
  }
  void write(ItemNumber item, Version version, const void* record) override {
    replace(item, version, valueFrom(record));
  }
  ItemValue load(ItemNumber item, Version version) override { return get(item, version); }
  std::string displayName(ItemNumber item) override { return get(item, Version::shown).displayName(); }
  bool same(ItemNumber item, Version version, const void* record) override {
    return has(item, version) && sameValue(get(item, version), valueFrom(record));
  }

 protected:
  static Value valueFrom(const void* record) {
    return Value::fromRecord(*static_cast<const Record*>(record));
  }

  void replace(ItemNumber item, Version version, const Value& value) {
    drop(item, version);
    insert(item, version, value);
  }

  /// See ItemContents::same.
  virtual bool sameValue(const Value& ours, const Value& theirs) const = 0;

  /// Adds a version that is not there.
  virtual void insert(ItemNumber item, Version version, const Value& value) = 0;
  /// A value without any field when there is no such version.
  virtual Value get(ItemNumber item, Version version) = 0;
};

/// An OutgoingRecord made of a class's owner of records (ContactRecord and so on).
template <typename Owner>
class OwnedRecord final : public OutgoingRecord {
 public:
  template <typename Value>
  explicit OwnedRecord(const Value& value) : owner_(value) {}
  void* record() override { return &owner_.record(); }

 private:
  Owner owner_;
};

}  // namespace airsync

#endif
