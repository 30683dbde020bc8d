// The tables of events.
#ifndef AIRSYNC_HOST_STORE_EVENT_TABLE_H
#define AIRSYNC_HOST_STORE_EVENT_TABLE_H

#include <memory>
#include <string>

#include "store/Event.h"
#include "store/FieldColumns.h"
#include "store/ItemContents.h"

namespace airsync {

class EventTable final : public ItemContents {
 public:
  explicit EventTable(Database& database);

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
  void writeEvent(ItemNumber item, Version version, const Event& event);
  Event loadEvent(ItemNumber item, Version version);

  FieldColumns<AIRSYNC_STACK::AS_CALENDAR_T> events_;
  FieldColumns<AIRSYNC_STACK::AS_RECURRENCE_T> recurrences_;
  FieldColumns<AIRSYNC_STACK::AS_EXCEPTION_T> exceptions_;
};

}  // namespace airsync

#endif
