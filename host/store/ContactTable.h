// The tables of contacts.
#ifndef AIRSYNC_HOST_STORE_CONTACT_TABLE_H
#define AIRSYNC_HOST_STORE_CONTACT_TABLE_H

#include <memory>
#include <string>

#include "store/ClassContents.h"
#include "store/Contact.h"
#include "store/FieldColumns.h"

namespace airsync {

class ContactTable final : public ClassContents<Contact, AIRSYNC_STACK::AS_CONTACT_T> {
 public:
  explicit ContactTable(Database& database);

  void validate(const ItemValue& value) const override { valueOf<Contact>(value).validate(); }
  std::unique_ptr<OutgoingRecord> read(ItemNumber item, Version version) override;
  bool covered(ItemNumber item, Version version, const void* record) override;
  std::string likeness(const void* record) override;
  const std::string& summaryColumns() const override;
  ItemDetails summary(const Query& query, int column) const override;

 private:
  void insert(ItemNumber item, Version version, const Contact& contact) override;
  Contact get(ItemNumber item, Version version) override;
  bool sameValue(const Contact& ours, const Contact& theirs) const override;

  FieldColumns<AIRSYNC_STACK::AS_CONTACT_T> contacts_;
};

}  // namespace airsync

#endif
