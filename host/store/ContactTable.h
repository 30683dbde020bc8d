// The table of contacts.
#ifndef AIRSYNC_HOST_STORE_CONTACT_TABLE_H
#define AIRSYNC_HOST_STORE_CONTACT_TABLE_H

#include <functional>
#include <memory>
#include <string>

#include "store/Contact.h"
#include "store/Database.h"
#include "store/ItemContents.h"

namespace airsync {

class ContactTable final : public ItemContents {
 public:
  explicit ContactTable(Database& database);

  void write(ItemNumber item, Version version, const Contact& contact);
  Contact load(ItemNumber item, Version version);

  /// The fields that a list of contacts needs, as columns of `contact` for a query, and a contact with just
  /// those, from a row of such a query in which they begin at `column`.
  static const std::string& summaryColumns();
  static Contact summary(const Query& query, int column);

  void write(ItemNumber item, Version version, const void* record) override;
  std::unique_ptr<OutgoingRecord> read(ItemNumber item, Version version) override;
  bool has(ItemNumber item, Version version) override;
  void move(ItemNumber item, Version from, Version to) override;
  void drop(ItemNumber item, Version version) override;
  bool covered(ItemNumber item, const void* record) override;
  std::string likeness(const void* record) override;

 private:
  void writeEntries(ItemNumber item, Version version, const char* field, const Contact::List& entries);
  Contact::List loadEntries(ItemNumber item, Version version, const char* field);

  Database& database_;
  std::string select_;
  std::string insert_;
};

}  // namespace airsync

#endif
