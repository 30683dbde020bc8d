// The tables of contacts.
#ifndef AIRSYNC_HOST_STORE_CONTACT_TABLE_H
#define AIRSYNC_HOST_STORE_CONTACT_TABLE_H

#include <memory>
#include <string>

#include "store/Contact.h"
#include "store/FieldColumns.h"
#include "store/ItemContents.h"

namespace airsync {

class ContactTable final : public ItemContents {
 public:
  explicit ContactTable(Database& database);

  void validate(const ItemValue& value) const override;
  void write(ItemNumber item, Version version, const ItemValue& value) override;
  void write(ItemNumber item, Version version, const void* record) override;
  ItemValue load(ItemNumber item, Version version) override;
  std::unique_ptr<OutgoingRecord> read(ItemNumber item, Version version) override;
  bool covered(ItemNumber item, const void* record) override;
  std::string likeness(const void* record) override;
  const std::string& summaryColumns() const override;
  ItemDetails summary(const Query& query, int column) const override;
  std::string displayName(ItemNumber item) override;

 private:
  void writeContact(ItemNumber item, Version version, const Contact& contact);
  Contact loadContact(ItemNumber item, Version version);

  FieldColumns<AIRSYNC_STACK::AS_CONTACT_T> contacts_;
};

}  // namespace airsync

#endif
